#include "ui/images/TrayGlyphImage.h"

#include <gtest/gtest.h>
#include <QPainter>
#include <QSvgRenderer>

#include "support/BatterySnapshots.h"
#include "ui/images/MenuBarBatteryImage.h"

namespace voltaro::ui {
namespace {

using voltaro::testing::battery;

// How the squares fill a 16 px icon is lxqt_panel.py's and trayer.py's, in real panels.

// The symbolic icon is the same shape as the pixels, and a host drawing it as it is (as Qt does)
// draws it in the colour given: rendered at 44 px they differ nowhere by more than
// antialiasing does.
TEST(TrayGlyphImageTest, TheSymbolicIconHasTheGlyphsShape) {
    for (const auto& snapshot : {battery(5, false, false), battery(57, true, true),
                                 battery(80, true, false), battery(100, false, false)}) {
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
