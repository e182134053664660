#include "ui/application/VoltaroApplication.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QCursor>
#include <QPushButton>
#include <QScreen>
#include <QWidget>

#include "core/history/HistoryArchive.h"
#include "support/CrossThreadExecutor.h"
#include "support/FakeLoginItemService.h"
#include "support/FakeMonitorServices.h"
#include "support/ManualScheduler.h"
#include "ui/QtPrinters.h"
#include "ui/TemporaryPreferences.h"
#include "ui/application/DisplayPreferencesStore.h"
#include "ui/application/StatusItem.h"
#include "ui/views/DashboardPopup.h"
#include "ui/views/DashboardView.h"
#include "ui/views/HistoryView.h"
#include "ui/views/SettingsView.h"

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

// The windows' view of an item in a panel: only its signals, and whether a panel shows it.
class PanelItem final : public StatusItem {
  public:
    bool isInPanel() const override { return false; }
    std::optional<QRect> lastKnownAnchor() const override { return anchor; }
    std::optional<QRect> anchor;
};

class VoltaroApplicationTest : public ::testing::Test,
                               protected voltaro::testing::FakeMonitorServices {
  protected:
    VoltaroApplicationTest() { registry.dictionary = PropertyDictionary{{"CurrentCapacity", 57}}; }

    voltaro::testing::ManualScheduler scheduler;
    BatteryMonitor monitor{on(scheduler, scheduler)};
    testing::TemporaryPreferences preferences;
    std::optional<QuitCountingApplication> application{std::in_place,
                                                       monitor,
                                                       [] { return std::make_unique<voltaro::testing::FakeLoginItemService>(); },
                                                       "Power usage",
                                                       [] {},
                                                       scheduler};

    std::int64_t refreshes() { return monitor.refreshCount().get(); }
};

// The preview window's size and place on a real X server are tests/app/preview_window.sh's.
TEST_F(VoltaroApplicationTest, OneLoopServesEveryWindowAndTheWindowsRefreshNothingThemselves) {
    application->start();
    EXPECT_EQ(monitor.refreshCount().get(), 1);
    application->showPreviewWindow();
    QWidget* preview = application->previewWindow();
    application->showPreviewWindow();
    EXPECT_EQ(application->previewWindow(), preview) << "one preview window";
    application->openSettings();
    application->start();
    EXPECT_EQ(monitor.refreshCount().get(), 1);
    scheduler.advance(4s);
    EXPECT_EQ(monitor.refreshCount().get(), 3);  // 0, 2 and 4 s: not twice as often

    application.reset();
    EXPECT_FALSE(monitor.isRunning().get());
    EXPECT_EQ(scheduler.pendingTimers(), 0u);
}

TEST_F(VoltaroApplicationTest, ClosingTheLastWindowQuitsUnlessTheApplicationStaysReachable) {
    application->showPreviewWindow();
    application->openSettings();
    QWidget* preview = application->previewWindow();
    SettingsView* settings = application->settingsWindow();
    ASSERT_NE(settings, nullptr);
    EXPECT_TRUE(settings->isVisible());

    close(settings);
    EXPECT_EQ(application->quits, 0) << "the preview is still open";
    application->openSettings();
    EXPECT_EQ(application->settingsWindow(), settings) << "opened once, brought back";
    EXPECT_TRUE(settings->isVisible());
    close(settings);
    close(preview);
    EXPECT_EQ(application->quits, 1);

    application->showPreviewWindow();
    application->setReachableWithoutWindows(true);
    close(preview);
    EXPECT_EQ(application->quits, 1);
}

TEST_F(VoltaroApplicationTest, WhileAPanelShowsTheItemClosingTheLastWindowDoesNotQuit) {
    PanelItem tray;
    ASSERT_FALSE(tray.isInPanel());
    application->attachTrayItem(tray);
    application->openSettings();
    close(application->settingsWindow());
    EXPECT_EQ(application->quits, 1) << "no panel shows it yet";

    emit tray.panelPresenceChanged(true);
    application->openSettings();
    close(application->settingsWindow());
    EXPECT_EQ(application->quits, 1);

    emit tray.panelPresenceChanged(false);
    EXPECT_FALSE(application->isReachableWithoutWindows());
}

TEST_F(VoltaroApplicationTest, ThePopupOpensBesideTheItemOrAtTheCursor) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    ASSERT_EQ(screen->geometry(), QRect(0, 0, 800, 800)) << "the offscreen platform's screen";
    ASSERT_EQ(screen->availableGeometry(), screen->geometry());
    QCursor::setPos(300, 20);
    const struct {
        const char* name;
        std::optional<QRect> anchor;
        QPoint expected;
    } cases[] = {
        // Above an item in a bottom panel, centred on it.
        {"item in a bottom panel", QRect(390, 776, 24, 24), QPoint(211, 220)},
        {"no anchor", std::nullopt, QPoint(109, 24)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        application->openDashboard(c.anchor);
        DashboardPopup* popup = application->dashboardPopup();
        ASSERT_NE(popup, nullptr);
        EXPECT_TRUE(popup->isVisible());
        EXPECT_TRUE(popup->windowFlags().testFlag(Qt::Popup));
        EXPECT_EQ(popup->size(), QSize(382, 552)) << "the dashboard and a hairline around it";
        ASSERT_NE(popup->findChild<DashboardView*>(), nullptr);
        EXPECT_EQ(popup->findChild<DashboardView*>()->size(), QSize(380, 550));
        EXPECT_EQ(popup->geometry().topLeft(), c.expected);
        popup->close();
    }
}

TEST_F(VoltaroApplicationTest, EachOpeningOfThePopupRefreshesOnceAndTheClicksToggleIt) {
    application->start();
    application->showPreviewWindow();
    EXPECT_EQ(refreshes(), 1) << "showing the preview window refreshes nothing";

    application->toggleDashboard(QRect(780, 10, 0, 0));
    DashboardPopup* popup = application->dashboardPopup();
    ASSERT_NE(popup, nullptr);
    EXPECT_TRUE(popup->isVisible());
    EXPECT_EQ(refreshes(), 2);

    application->toggleDashboard(QRect(780, 10, 0, 0));
    EXPECT_FALSE(popup->isVisible()) << "a second click closes it";
    EXPECT_EQ(refreshes(), 2);
    application->toggleDashboard(QRect(780, 10, 0, 0));
    EXPECT_TRUE(popup->isVisible());
    EXPECT_EQ(refreshes(), 3);

    application->openDashboard(std::nullopt);
    EXPECT_TRUE(popup->isVisible());
    EXPECT_EQ(refreshes(), 3) << "already open: nothing new to show";
    scheduler.advance(2s);
    EXPECT_EQ(refreshes(), 4) << "the one loop goes on beside it";
}

// Clicks, the menu's dashboard and quit from a panel are the real panels'
// (tests/ui/linux/desktops).
TEST_F(VoltaroApplicationTest, TheMenuAndTheDashboardsButtonOpenTheSettings) {
    PanelItem tray;
    application->attachTrayItem(tray);
    emit tray.openSettingsRequested();
    ASSERT_NE(application->settingsWindow(), nullptr);
    EXPECT_TRUE(application->settingsWindow()->isVisible());
    application->settingsWindow()->hide();

    application->openDashboard(QRect(780, 10, 0, 0));
    DashboardPopup* popup = application->dashboardPopup();
    popup->findChild<QPushButton*>("settingsButton")->click();
    EXPECT_FALSE(popup->isVisible());
    EXPECT_TRUE(application->settingsWindow()->isVisible());
}

// Without a store the window still opens, and says that nothing was recorded.
TEST_F(VoltaroApplicationTest, TheDashboardOpensTheHistoryWhereThereIsOne) {
    voltaro::testing::CrossThreadExecutor executor(scheduler);
    HistoryArchive history([](std::string&) { return nullptr; }, executor, {});
    application->setHistory(history);
    application->openDashboard(QRect(780, 10, 0, 0));
    auto* historyButton = application->dashboardPopup()->findChild<QPushButton*>("historyButton");
    ASSERT_NE(historyButton, nullptr);
    historyButton->click();
    EXPECT_FALSE(application->dashboardPopup()->isVisible());
    ASSERT_NE(application->historyWindow(), nullptr);
    EXPECT_TRUE(application->historyWindow()->isVisible());
    executor.waitForPosts(1);
    executor.runPosted();
    application->historyWindow()->hide();
}

}  // namespace
}  // namespace voltaro::ui
