#pragma once

#include <QObject>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/controls/LoginItemService.h"
#include "core/monitor/BatteryMonitor.h"
#include "core/runtime/Clock.h"

class QWidget;

namespace voltaro {
class HistoryArchive;
}

namespace voltaro::ui {

class DashboardPopup;
class HistoryView;
struct DashboardActions;
class SettingsView;
class StatusItem;

// Names the application (so its preferences land in ~/.config/Voltaro/Voltaro.conf), keeps it
// alive without windows, and speaks the user's language. Call once, after QApplication exists.
void prepareApplication();

// The desktop front end's windows around the one monitor, and the one refresh loop that feeds
// them. Main thread only.
class VoltaroApplication : public QObject {
    Q_OBJECT

  public:
    using LoginItemServiceFactory = std::function<std::unique_ptr<LoginItemService>()>;

    // The dashboard's power card carries the platform's title, and its button opens the
    // system's battery settings. The clock tells a second click on the tray item from the click
    // that closed the popup.
    VoltaroApplication(BatteryMonitor& monitor, LoginItemServiceFactory loginItems,
                       std::string_view systemPowerTitle, std::function<void()> openBatterySettings,
                       const Clock& clock = SystemClock::instance());
    ~VoltaroApplication() override;

    // Starts the monitor's loop, which runs as long as this object.
    void start();
    // The dashboard in an ordinary window, 380 × 550, in the middle of the screen and in front.
    // Shown once; closing it only hides it.
    void showPreviewWindow();
    // One settings window: opened on first use, brought to the front after that.
    void openSettings();
    // With a history, the dashboard offers it; set before the dashboard is first built.
    void setHistory(HistoryArchive& history) { history_ = &history; }
    // One history window, read again each time it is shown.
    void openHistory();
    // The dashboard as a popup beside the anchor (the tray item's rectangle or the clicked
    // point); without one, at the cursor. Each opening refreshes the monitor once.
    void openDashboard(std::optional<QRect> anchor);
    // A click on the tray item: the popup opens, or closes when it is open.
    void toggleDashboard(std::optional<QRect> anchor);
    void quit();

    // From now on the tray item's clicks and menu reach the windows, and while a panel shows
    // the item, closing the last window no longer quits: the item keeps the application within
    // reach.
    void attachTrayItem(StatusItem& tray);

    // The tray item keeps the application within reach after its last window closes. Until one
    // is there, closing the last window quits, so no invisible process lingers.
    void setReachableWithoutWindows(bool reachable);
    bool isReachableWithoutWindows() const { return reachableWithoutWindows_; }

    QWidget* previewWindow() const { return previewWindow_.get(); }
    SettingsView* settingsWindow() const { return settingsWindow_.get(); }
    HistoryView* historyWindow() const { return historyWindow_.get(); }
    DashboardPopup* dashboardPopup() const { return dashboardPopup_.get(); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    virtual void quitApplication();

  private:
    void quitIfNoWindowIsLeft();
    DashboardPopup& popup();
    DashboardActions dashboardActions();

    BatteryMonitor& monitor_;
    LoginItemServiceFactory loginItems_;
    std::string systemPowerTitle_;
    std::function<void()> openBatterySettings_;
    const Clock& clock_;
    std::optional<BatteryMonitor::LoopTask> loop_;
    std::unique_ptr<QWidget> previewWindow_;
    std::unique_ptr<SettingsView> settingsWindow_;
    HistoryArchive* history_ = nullptr;
    std::unique_ptr<HistoryView> historyWindow_;
    std::unique_ptr<DashboardPopup> dashboardPopup_;
    bool reachableWithoutWindows_ = false;
};

}  // namespace voltaro::ui
