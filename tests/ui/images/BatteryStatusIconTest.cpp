#include "ui/images/BatteryStatusIcon.h"

#include <gtest/gtest.h>
#include <QAccessible>

#include "support/BatterySnapshots.h"
#include "ui/images/MenuBarBatteryImage.h"

namespace voltaro::ui {
namespace {

using voltaro::testing::battery;

// The widget as painted, with the glyph's rectangle cut out.
QImage painted(BatteryStatusIcon& icon, const QSize& size, const QRect& glyphPixels) {
    icon.resize(size);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    icon.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image.copy(glyphPixels);
}

void expectSameShapeInColour(const QImage& shown, const QImage& glyph, QRgb colour) {
    ASSERT_EQ(shown.size(), glyph.size());
    for (int y = 0; y < glyph.height(); ++y) {
        for (int x = 0; x < glyph.width(); ++x) {
            const int alpha = qAlpha(glyph.pixel(x, y));
            ASSERT_EQ(qAlpha(shown.pixel(x, y)), alpha) << x << ", " << y;
            if (alpha == 255) {
                ASSERT_EQ(shown.pixel(x, y), colour) << x << ", " << y;
            }
        }
    }
}

TEST(BatteryStatusIconTest, PaintsTheGlyphInTheTextColourCentredAndAtItsShownSize) {
    struct Case {
        qreal width;
        QSize widgetSize;
        QRect glyphPixels;
        qreal glyphScale;
    };
    const Case cases[] = {
        {22, QSize(22, 14), QRect(0, 0, 22, 14), 1},
        {22, QSize(30, 20), QRect(4, 3, 22, 14), 1},
        {44, QSize(44, 28), QRect(0, 0, 44, 28), 2},
    };
    EXPECT_EQ(BatteryStatusIcon(32).sizeHint(), QSize(32, 21));  // 20.36 high: the height follows
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << "width " << c.width);
        BatteryStatusIcon icon(c.width);
        EXPECT_EQ(icon.sizeHint(), c.glyphPixels.size());
        icon.setSnapshot(battery(64, true, true));
        QPalette palette = icon.palette();
        palette.setColor(QPalette::WindowText, QColor(200, 30, 40));
        icon.setPalette(palette);
        QImage glyph = MenuBarBatteryImage::make(icon.snapshot(), c.glyphScale);
        expectSameShapeInColour(painted(icon, c.widgetSize, c.glyphPixels), glyph,
                                QColor(200, 30, 40).rgba());
    }
}

TEST(BatteryStatusIconTest, LeavesSpeakingToTheViewAroundIt) {
    BatteryStatusIcon icon(22);
    icon.show();
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&icon);
    ASSERT_NE(accessible, nullptr);
    EXPECT_TRUE(accessible->text(QAccessible::Name).isEmpty());
    EXPECT_TRUE(accessible->state().invisible);
}

}  // namespace
}  // namespace voltaro::ui
