#include "ui/macos/RgbaBitmapImage.h"

#include <gtest/gtest.h>

namespace voltaro::ui {
namespace {

TEST(RgbaBitmapImageTest, HandsAppKitRedGreenBlueAlphaWithPremultipliedColour) {
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(255, 0, 0, 255));
    image.setPixelColor(1, 0, QColor(0, 0, 255, 128));  // half transparent blue

    const RgbaBitmap bitmap = RgbaBitmapImage::fromImage(image);

    EXPECT_EQ(bitmap.widthPixels, 2);
    EXPECT_EQ(bitmap.heightPixels, 1);
    EXPECT_EQ(bitmap.bytes, (std::vector<std::uint8_t>{255, 0, 0, 255, 0, 0, 128, 128}));
}

TEST(RgbaBitmapImageTest, ComesBackAsTheSamePicture) {
    QImage image(3, 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixelColor(2, 1, QColor(10, 200, 30, 255));

    const QImage back = RgbaBitmapImage::toImage(RgbaBitmapImage::fromImage(image));

    EXPECT_EQ(back.convertToFormat(QImage::Format_ARGB32_Premultiplied), image);
}

TEST(RgbaBitmapImageTest, BytesThatDoNotFillTheSizeGiveNoPicture) {
    EXPECT_TRUE(RgbaBitmapImage::fromImage(QImage()).bytes.empty());
    EXPECT_TRUE(RgbaBitmapImage::toImage({2, 2, std::vector<std::uint8_t>(15)}).isNull());
    EXPECT_TRUE(RgbaBitmapImage::toImage({0, 2, {}}).isNull());
    EXPECT_TRUE(RgbaBitmapImage::toImage({-1, -4, std::vector<std::uint8_t>(16)}).isNull());
}

}  // namespace
}  // namespace voltaro::ui
