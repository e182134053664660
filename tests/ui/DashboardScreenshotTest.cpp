#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTemporaryDir>

#include "ui/DashboardHarness.h"

namespace voltaro::ui {
namespace {

using testing::Application;

// An application icon as desktops draw them: a rounded square with an initial.
ApplicationIcon drawnIcon(const QTemporaryDir& directory, const QString& name, QColor color) {
    QImage image(96, 96, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, 0, 96);
    gradient.setColorAt(0, color.lighter(125));
    gradient.setColorAt(1, color.darker(115));
    QPainterPath square;
    square.addRoundedRect(QRectF(6, 6, 84, 84), 20, 20);
    painter.fillPath(square, gradient);
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

// A dark desktop theme: the other shades follow from the button and window colours.
QPalette darkPalette() {
    QPalette palette(QColor(0x3b, 0x3b, 0x3e), QColor(0x2a, 0x2a, 0x2c));
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    return palette;
}

// Renders the dashboard as the panel shows it; with VOLTARO_SCREENSHOT_DIR set, also keeps it.
QImage render(testing::DashboardHarness& harness, const char* name) {
    DashboardView& view = harness.view();
    view.show();
    QCoreApplication::processEvents();  // the layout settles as it would in the event loop
    const QImage image = view.grab().toImage();
    const QString directory = qEnvironmentVariable("VOLTARO_SCREENSHOT_DIR");
    if (!directory.isEmpty()) {
        QDir().mkpath(directory);
        image.save(QDir(directory).filePath(QStringLiteral("dashboard-%1.png").arg(name)));
    }
    return image;
}

class DashboardScreenshotTest : public ::testing::Test {
  protected:
    void runFiveApplications() {
        harness.runApplications({
            {"Firefox", 4.8, drawnIcon(icons, "firefox", QColor(0xe6, 0x60, 0x00))},
            {"Visual Studio Code", 3.1, drawnIcon(icons, "code", QColor(0x00, 0x7a, 0xcc))},
            {"Slack", 1.4, drawnIcon(icons, "slack", QColor(0x4a, 0x15, 0x4b))},
            {"gnome-terminal-server", 0.62, std::nullopt},
            {"Rhythmbox", 0.004, drawnIcon(icons, "music", QColor(0xd0, 0x2a, 0x4a))},
        });
    }

    QTemporaryDir icons;
    testing::DashboardHarness harness;
};

TEST_F(DashboardScreenshotTest, ChargingWithFiveApplications) {
    harness.setBattery({.level = 80,
                        .connected = true,
                        .systemMilliwatts = 11400,
                        .batteryMilliwatts = 18600,
                        .inputMilliwatts = 30000,
                        .ratedWatts = 65,
                        .timeToFullMinutes = 95,
                        .decikelvin = 3062});
    harness.view();
    runFiveApplications();
    const QImage image = render(harness, "charging");
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(380, 550));
}

TEST_F(DashboardScreenshotTest, OnBatteryGatheringData) {
    harness.setBattery({.level = 64, .systemMilliwatts = 8400, .decikelvin = 3021});
    const QImage image = render(harness, "on-battery");
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(380, 550));
}

TEST_F(DashboardScreenshotTest, DarkPaletteWithALowPowerError) {
    harness.setBattery({.level = 42,
                        .connected = true,
                        .systemMilliwatts = 33200,
                        .batteryMilliwatts = -3200,
                        .inputMilliwatts = 30000,
                        .ratedWatts = 29.5,
                        .decikelvin = 3101});
    harness.view().setPalette(darkPalette());
    runFiveApplications();
    harness.lowPowerMode.setOutcome(LowPowerModeError::cancelled());
    harness.monitor.setLowPowerMode(true);
    harness.finishLowPowerChange();
    const QImage image = render(harness, "dark");
    // The background follows the palette; nothing paints the light default over it.
    EXPECT_LT(image.pixelColor(2, image.height() / 2).lightnessF(), 0.3);
}

}  // namespace
}  // namespace voltaro::ui
