#include "ui/VoltaroApplication.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QScreen>
#include <QWidget>

#include "support/FakeApplicationCatalog.h"
#include "support/FakeBatteryRegistry.h"
#include "support/FakeLoginItemService.h"
#include "support/FakeLowPowerModeBackend.h"
#include "support/FakeProcessSource.h"
#include "support/ManualScheduler.h"
#include "ui/DashboardView.h"
#include "ui/QtPrinters.h"
#include "ui/SettingsView.h"
#include "ui/TemporaryPreferences.h"

namespace voltaro::ui {
namespace {

using namespace std::chrono_literals;

// Counts the times it would have quit instead of quitting the test program.
class QuitCountingApplication : public VoltaroApplication {
  public:
    using VoltaroApplication::VoltaroApplication;
    int quits = 0;

  protected:
    void quitApplication() override { ++quits; }
};

// Closes the window and lets the application look at what is left.
void close(QWidget* window) {
    window->close();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
}

class VoltaroApplicationTest : public ::testing::Test {
  protected:
    VoltaroApplicationTest() { registry.dictionary = PropertyDictionary{{"CurrentCapacity", 57}}; }

    voltaro::testing::ManualScheduler scheduler;
    voltaro::testing::FakeBatteryRegistry registry;
    voltaro::testing::ClosedSMCController smc;
    voltaro::testing::FakeProcessSource processes;
    voltaro::testing::FakeApplicationCatalog catalog;
    voltaro::testing::FakeLowPowerModeBackend lowPowerMode;
    BatteryMonitor monitor{{registry, smc, processes, catalog, lowPowerMode, scheduler, scheduler}};
    testing::TemporaryPreferences preferences;
    std::optional<QuitCountingApplication> application{
        std::in_place, monitor,
        [] { return std::make_unique<voltaro::testing::FakeLoginItemService>(); }};
};

TEST_F(VoltaroApplicationTest, ThePreviewWindowIsTheFixedDashboardInTheMiddleOfTheScreen) {
    application->showPreviewWindow();
    QWidget* window = application->previewWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), "Voltaro Preview");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->size(), QSize(380, 550));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    EXPECT_NE(window->findChild<DashboardView*>(), nullptr);
    // The frame's margins may shift the window's content a little.
    const QPoint offCentre =
        window->geometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 4);

    application->showPreviewWindow();
    EXPECT_EQ(application->previewWindow(), window);
}

TEST_F(VoltaroApplicationTest, OneLoopServesEveryWindowAndTheWindowsRefreshNothingThemselves) {
    application->start();
    EXPECT_EQ(monitor.refreshCount().get(), 1);
    application->showPreviewWindow();
    application->openSettings();
    application->start();
    EXPECT_EQ(monitor.refreshCount().get(), 1);
    scheduler.advance(4s);
    EXPECT_EQ(monitor.refreshCount().get(), 3);  // 0, 2 and 4 s: not twice as often

    application.reset();
    EXPECT_FALSE(monitor.isRunning().get());
    EXPECT_EQ(scheduler.pendingTimers(), 0u);
}

TEST_F(VoltaroApplicationTest, TheSettingsWindowOpensOnceAndComesBackToTheFront) {
    application->openSettings();
    SettingsView* settings = application->settingsWindow();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->windowTitle(), "Voltaro Settings");
    EXPECT_TRUE(settings->isVisible());
    settings->close();
    application->openSettings();
    EXPECT_EQ(application->settingsWindow(), settings);
    EXPECT_TRUE(settings->isVisible());
}

TEST_F(VoltaroApplicationTest, ClosingTheLastWindowQuitsUnlessTheApplicationStaysReachable) {
    application->showPreviewWindow();
    application->openSettings();
    QWidget* preview = application->previewWindow();
    SettingsView* settings = application->settingsWindow();

    close(settings);
    EXPECT_EQ(application->quits, 0) << "the preview is still open";
    close(preview);
    EXPECT_EQ(application->quits, 1);

    application->showPreviewWindow();
    application->setReachableWithoutWindows(true);
    close(preview);
    EXPECT_EQ(application->quits, 1);
}

}  // namespace
}  // namespace voltaro::ui
