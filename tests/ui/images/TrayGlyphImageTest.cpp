#include "ui/images/TrayGlyphImage.h"

#include <gtest/gtest.h>

#include "ui/images/MenuBarBatteryImage.h"

namespace voltaro::ui {
namespace {

BatterySnapshot state(std::int64_t level, bool connected, bool charging) {
    BatterySnapshot snapshot;
    snapshot.level = level;
    snapshot.isConnectedToPower = connected;
    snapshot.isCharging = charging;
    return snapshot;
}

int alphaAtPoint(const QImage& image, qreal x, qreal y) {
    const qreal pixelsPerPoint = image.width() / MenuBarBatteryImage::widthPoints;
    return qAlpha(
        image.pixel(static_cast<int>(x * pixelsPerPoint), static_cast<int>(y * pixelsPerPoint)));
}

// In the square's points: the body's right side, its tip, both ends of its bottom side, and
// the empty band above the glyph.
TEST(TrayGlyphImageTest, EverySizeHoldsTheWholeBattery) {
    const QPainterPath outline = MenuBarBatteryImage::outline(state(100, false, false));
    for (const int side : TrayGlyphImage::sides) {
        const QImage icon = TrayGlyphImage::square(outline, side, Qt::white);
        ASSERT_EQ(icon.size(), QSize(side, side));
        EXPECT_GT(alphaAtPoint(icon, 18.5, 11), 128) << side << " right side";
        EXPECT_GT(alphaAtPoint(icon, 20.9, 11), 96) << side << " tip";
        EXPECT_GT(alphaAtPoint(icon, 4, 16.25), 96) << side << " bottom left";
        EXPECT_GT(alphaAtPoint(icon, 15, 16.25), 96) << side << " bottom right";
        EXPECT_EQ(alphaAtPoint(icon, 11, 3), 0) << side << " above";
        EXPECT_EQ(qRed(icon.pixel(icon.width() * 18.5 / 22, icon.height() / 2)),
                  qAlpha(icon.pixel(icon.width() * 18.5 / 22, icon.height() / 2)))
            << side << " in the colour asked for";
    }
}

}  // namespace
}  // namespace voltaro::ui
