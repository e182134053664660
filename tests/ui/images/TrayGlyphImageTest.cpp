#include "ui/images/TrayGlyphImage.h"

#include <gtest/gtest.h>
#include <QPainter>
#include <QSvgRenderer>

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

// The symbolic icon is the same shape as the pixels, and a host drawing it as it is (as Qt does)
// draws it in the colour given: rendered at 44 px they differ nowhere by more than
// antialiasing does.
TEST(TrayGlyphImageTest, TheSymbolicIconHasTheGlyphsShape) {
    for (const auto& snapshot : {state(5, false, false), state(57, true, true),
                                 state(80, true, false), state(100, false, false)}) {
        const QPainterPath outline = MenuBarBatteryImage::outline(snapshot);
        const QColor sky(0x20, 0x80, 0xff);
        const QImage drawn = TrayGlyphImage::square(outline, 44, sky);
        QSvgRenderer renderer(TrayGlyphImage::symbolicSvg(outline, sky));
        ASSERT_TRUE(renderer.isValid());
        QImage rendered(44, 44, QImage::Format_ARGB32_Premultiplied);
        rendered.fill(Qt::transparent);
        QPainter painter(&rendered);
        renderer.render(&painter);
        painter.end();
        int differing = 0;
        for (int y = 0; y < 44; ++y) {
            for (int x = 0; x < 44; ++x) {
                const QRgb a = drawn.pixel(x, y);
                const QRgb b = rendered.pixel(x, y);
                differing += std::abs(qAlpha(a) - qAlpha(b)) > 64 ||
                             std::abs(qBlue(a) - qBlue(b)) > 64 || std::abs(qRed(a) - qRed(b)) > 64;
            }
        }
        EXPECT_LE(differing, 4) << TrayGlyphImage::iconName(snapshot).toStdString();
    }
}

}  // namespace
}  // namespace voltaro::ui
