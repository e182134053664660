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
