#include <gtest/gtest.h>
#include <QDir>
#include <QPainter>

#include "ui/MenuBarLabel.h"

namespace voltaro::ui {
namespace {

// Draws a label on a dark panel strip at 2×, as a panel would show it.
void save(const BatterySnapshot& snapshot, const MenuBarLabelChoices& choices,
          const QString& path) {
    constexpr qreal scale = 2;
    const QImage label = MenuBarLabel::render(snapshot, choices, QColor(240, 240, 240), scale);
    const QSizeF size = label.deviceIndependentSize() + QSizeF(16, 10);
    QImage panel((size * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    panel.setDevicePixelRatio(scale);
    panel.fill(QColor(40, 40, 44));
    QPainter painter(&panel);
    painter.drawImage(QPointF(8, 5), label);
    painter.end();
    EXPECT_TRUE(panel.save(path)) << path.toStdString();
}

// The label at the right end of a dark top panel, beside the clock, at 2×.
void savePanel(const BatterySnapshot& snapshot, const QString& path) {
    constexpr qreal scale = 2;
    const QColor text(238, 238, 240);
    const QSizeF size(520, 30);
    QImage panel((size * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    panel.setDevicePixelRatio(scale);
    panel.fill(QColor(28, 28, 31));
    QPainter painter(&panel);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(text);
    const QString clock = QStringLiteral("Mon 23 Nov 14:32");
    const qreal clockWidth = painter.fontMetrics().horizontalAdvance(clock);
    const QRectF clockArea(size.width() - 14 - clockWidth, 0, clockWidth, size.height());
    painter.drawText(clockArea, Qt::AlignVCenter | Qt::AlignLeft, clock);
    const QImage label = MenuBarLabel::render(snapshot, {}, text, scale);
    const QSizeF labelSize = label.deviceIndependentSize();
    painter.drawImage(QPointF(clockArea.left() - 16 - labelSize.width(),
                              (size.height() - labelSize.height()) / 2),
                      label);
    painter.end();
    EXPECT_TRUE(panel.save(path)) << path.toStdString();
}

// Not a check: refreshes docs/screenshots when asked, e.g.
// VOLTARO_SCREENSHOT_DIR=docs/screenshots build/tests/ui_tests --gtest_filter='TrayLabel*'
TEST(TrayLabelScreenshots, Save) {
    const QString directory = qEnvironmentVariable("VOLTARO_SCREENSHOT_DIR");
    if (directory.isEmpty()) {
        GTEST_SKIP() << "set VOLTARO_SCREENSHOT_DIR to write the tray label screenshots";
    }
    QDir().mkpath(directory);

    BatterySnapshot onBattery;
    onBattery.level = 57;
    onBattery.systemWatts = 12.5;
    onBattery.batteryPowerWatts = -11.8;
    save(onBattery, {}, directory + "/tray-label-57-13w.png");
    save(onBattery, {false, false, true}, directory + "/tray-label-glyph-only.png");
    savePanel(onBattery, directory + "/tray-panel.png");

    BatterySnapshot weakAdapter;
    weakAdapter.level = 42;
    weakAdapter.systemWatts = 38.4;
    weakAdapter.batteryPowerWatts = -8.2;
    weakAdapter.adapterWatts = 30;
    weakAdapter.isConnectedToPower = true;
    save(weakAdapter, {}, directory + "/tray-label-highlighted.png");
}

}  // namespace
}  // namespace voltaro::ui
