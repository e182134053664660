// The README's pictures of the dashboard, written only when VOLTARO_SCREENSHOT_DIR names a folder
// (docs/screenshots).
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>

#include "ui/DashboardHarness.h"

namespace voltaro::ui {
namespace {

QString screenshotFolder() {
    const QString folder = qEnvironmentVariable("VOLTARO_SCREENSHOT_DIR");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
    }
    return folder;
}

// A dark desktop theme: the other shades follow from the button and window colours.
QPalette darkPalette() {
    QPalette palette(QColor(0x3b, 0x3b, 0x3e), QColor(0x2a, 0x2a, 0x2c));
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    return palette;
}

// An application icon as desktops draw them: a rounded square with an initial.
ApplicationIcon drawnIcon(const QTemporaryDir& directory, const QString& name, QColor color) {
    QImage image(96, 96, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(6, 6, 84, 84), 20, 20);
    QFont font = painter.font();
    font.setPixelSize(48);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(6, 6, 84, 84), Qt::AlignCenter, name.left(1).toUpper());
    painter.end();
    const QString path = directory.filePath(name + ".png");
    image.save(path);
    return {ApplicationIcon::Kind::filePath, path.toStdString()};
}

// The dashboard as the panel shows it, kept when a folder is named.
QImage renderDashboard(testing::DashboardHarness& harness, const char* name,
                       bool scrolledToEnd = false) {
    harness.view().show();
    QCoreApplication::processEvents();  // the layout settles as it would in the event loop
    if (scrolledToEnd) {
        QScrollBar* bar = harness.view().findChild<QScrollArea*>("scrollArea")->verticalScrollBar();
        bar->setValue(bar->maximum());
        QCoreApplication::processEvents();
    }
    const QImage image = harness.view().grab().toImage();
    if (const QString folder = screenshotFolder(); !folder.isEmpty()) {
        image.save(QDir(folder).filePath(QStringLiteral("dashboard-%1.png").arg(name)));
    }
    return image;
}

TEST(Screenshots, Dashboard) {
    QTemporaryDir icons;
    const std::vector<testing::Application> applications = {
        {"Firefox", 4.8, drawnIcon(icons, "firefox", QColor(0xe6, 0x60, 0x00))},
        {"Visual Studio Code", 3.1, drawnIcon(icons, "code", QColor(0x00, 0x7a, 0xcc))},
        {"Slack", 1.4, drawnIcon(icons, "slack", QColor(0x4a, 0x15, 0x4b))},
        {"gnome-terminal-server", 0.62, std::nullopt},
        {"Rhythmbox", 0.004, drawnIcon(icons, "music", QColor(0xd0, 0x2a, 0x4a))},
    };
    testing::DashboardHarness charging;
    charging.setBattery({.level = 80,
                         .connected = true,
                         .systemMilliwatts = 11400,
                         .batteryMilliwatts = 18600,
                         .inputMilliwatts = 30000,
                         .ratedWatts = 65,
                         .timeToFullMinutes = 95,
                         .decikelvin = 3062});
    charging.view();
    charging.runApplications(applications);
    renderDashboard(charging, "charging");
}

// The health section, at the end of the list, in both themes.
TEST(Screenshots, DashboardHealth) {
    const PropertyDictionary health{{"CycleCount", 143},          {"DesignEnergy", 50500},
                                    {"FullChargeEnergy", 47230},  {"Manufacturer", "SMP"},
                                    {"DeviceName", "5B10W13930"}, {"Technology", "Li-poly"}};
    for (const bool dark : {false, true}) {
        testing::DashboardHarness harness;
        harness.setBattery(
            {.level = 70, .systemMilliwatts = 8300, .decikelvin = 3041, .more = health});
        harness.view().setPalette(dark ? darkPalette() : harness.view().palette());
        harness.runApplications({{"Firefox", 4.8}, {"Slack", 1.4}});
        const QImage image = renderDashboard(harness, dark ? "health-dark" : "health-light", true);
        // The background follows the palette; nothing paints the light default over it.
        EXPECT_EQ(image.pixelColor(2, image.height() / 2).lightnessF() < 0.3, dark);
    }
}

}  // namespace
}  // namespace voltaro::ui
