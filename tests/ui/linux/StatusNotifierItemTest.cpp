#include "ui/linux/StatusNotifierItem.h"

#include <gtest/gtest.h>

namespace voltaro::ui {
namespace {

TEST(StatusNotifierItemTest, SendsPixelsAsStraightAlphaArgbInNetworkByteOrder) {
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(255, 0, 0, 128));
    image.setPixelColor(1, 0, QColor(0x12, 0x34, 0x56));
    image.setDevicePixelRatio(2);  // pixels are pixels, whatever the scale

    const auto pixmap = StatusNotifierItem::pixmapOf(image);
    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 1);
    const QByteArray expected("\x80\xff\x00\x00\xff\x12\x34\x56", 8);
    EXPECT_EQ(pixmap.argb, expected);
}

TEST(StatusNotifierItemTest, StaysOffTheBusWithoutOne) {
    StatusNotifierItem item(QDBusConnection(QStringLiteral("voltaro-no-bus")),
                            QDBusObjectPath(QStringLiteral("/MenuBar")));
    EXPECT_FALSE(item.isExported());
    EXPECT_FALSE(item.isWatcherPresent());
}

}  // namespace
}  // namespace voltaro::ui
