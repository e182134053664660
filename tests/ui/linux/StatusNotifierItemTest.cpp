#include "ui/linux/StatusNotifierItem.h"

#include <gtest/gtest.h>

namespace voltaro::ui {
namespace {

TEST(StatusNotifierItemTest, SendsPixelsRowByRowAsStraightAlphaArgbInNetworkByteOrder) {
    QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(255, 0, 0, 128));
    image.setPixelColor(1, 0, QColor(0x12, 0x34, 0x56));
    image.setPixelColor(0, 1, QColor(0x99, 0xaa, 0xbb));
    image.setPixelColor(1, 1, QColor(0xdd, 0xee, 0xff));
    image.setDevicePixelRatio(2);  // pixels are pixels, whatever the scale

    const auto pixmap = StatusNotifierItem::pixmapOf(image);
    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 2);
    EXPECT_EQ(pixmap.argb.toHex(), "80ff0000ff123456ff99aabbffddeeff");
}

TEST(StatusNotifierItemTest, StaysOffTheBusWithoutOne) {
    StatusNotifierItem item(QDBusConnection(QStringLiteral("voltaro-no-bus")),
                            QDBusObjectPath(QStringLiteral("/MenuBar")));
    EXPECT_FALSE(item.isExported());
    EXPECT_FALSE(item.isWatcherPresent());
}

}  // namespace
}  // namespace voltaro::ui
