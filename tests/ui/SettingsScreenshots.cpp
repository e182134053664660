// Renders the settings window for the documentation. Not part of the test run:
//   ui_tests --gtest_also_run_disabled_tests --gtest_filter='*Screenshots*'
#include <gtest/gtest.h>
#include <QDir>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "support/FakeLoginItemService.h"
#include "ui/SettingsView.h"
#include "ui/TemporaryPreferences.h"

namespace voltaro::ui {
namespace {

QPalette lightPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xec, 0xec, 0xec));
    palette.setColor(QPalette::WindowText, QColor(0x1d, 0x1d, 0x1f));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, QColor(0x1d, 0x1d, 0x1f));
    palette.setColor(QPalette::Button, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::ButtonText, QColor(0x1d, 0x1d, 0x1f));
    palette.setColor(QPalette::Highlight, QColor(0x00, 0x7a, 0xff));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2a, 0x2a, 0x2c));
    palette.setColor(QPalette::WindowText, QColor(0xf2, 0xf2, 0xf7));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::Text, QColor(0xf2, 0xf2, 0xf7));
    palette.setColor(QPalette::Button, QColor(0x48, 0x48, 0x4a));
    palette.setColor(QPalette::ButtonText, QColor(0xf2, 0xf2, 0xf7));
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Light, QColor(0x5a, 0x5a, 0x5c));
    palette.setColor(QPalette::Midlight, QColor(0x48, 0x48, 0x4a));
    palette.setColor(QPalette::Mid, QColor(0x3a, 0x3a, 0x3c));
    palette.setColor(QPalette::Dark, QColor(0x20, 0x20, 0x22));
    palette.setColor(QPalette::Shadow, Qt::black);
    return palette;
}

void writeScreenshot(const QPalette& palette, const QString& name) {
    testing::TemporaryPreferences preferences("[General]\nshowsPowerUsageInMenuBar=false\n");
    auto service = std::make_unique<voltaro::testing::FakeLoginItemService>();
    service->currentStatus = LoginItemStatus::requiresApproval;
    SettingsView view(std::move(service), {"0.1.0", "27"});
    view.setPalette(palette);
    view.setAutoFillBackground(true);
    view.adjustSize();
    view.show();

    constexpr qreal scale = 2;
    QPixmap image(view.size() * scale);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    view.render(&image);
    const QDir folder(QStringLiteral(VOLTARO_TEST_DATA "/../../docs/screenshots"));
    ASSERT_TRUE(QDir().mkpath(folder.path()));
    ASSERT_TRUE(image.save(folder.filePath(name)));
}

TEST(SettingsScreenshots, DISABLED_LightAndDark) {
    writeScreenshot(lightPalette(), "settings-light.png");
    writeScreenshot(darkPalette(), "settings-dark.png");
}

}  // namespace
}  // namespace voltaro::ui
