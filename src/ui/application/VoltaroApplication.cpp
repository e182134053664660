#include "ui/application/VoltaroApplication.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include "ui/application/StatusItem.h"
#include "ui/application/Translation.h"
#include "ui/views/DashboardPopup.h"
#include "ui/views/DashboardView.h"
#include "ui/views/SettingsView.h"

namespace voltaro::ui {
namespace {

constexpr QSize previewSize(380, 550);

void centreOnScreen(QWidget& window) {
    QScreen* screen =
        window.screen() != nullptr ? window.screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    QRect frame(QPoint(), window.size());
    frame.moveCenter(screen->availableGeometry().center());
    window.move(frame.topLeft());
}

void bringToFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

void prepareApplication() {
    QCoreApplication::setOrganizationName("Voltaro");
    QCoreApplication::setApplicationName("Voltaro");
    // Ties the windows to the installed .desktop file, and so to its name and icon.
    QGuiApplication::setDesktopFileName(VOLTARO_APP_ID);
    QGuiApplication::setWindowIcon(
        QIcon::fromTheme(VOLTARO_APP_ID, QIcon(QStringLiteral(":/icons/" VOLTARO_APP_ID ".svg"))));
    // Windows come and go; the application decides itself when it is done.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    installTranslation(QLocale::system());
}

VoltaroApplication::VoltaroApplication(BatteryMonitor& monitor, LoginItemServiceFactory loginItems,
                                       std::string_view systemPowerTitle,
                                       std::function<void()> openBatterySettings,
                                       const Clock& clock)
    : monitor_(monitor),
      loginItems_(std::move(loginItems)),
      systemPowerTitle_(systemPowerTitle),
      openBatterySettings_(std::move(openBatterySettings)),
      clock_(clock) {}

VoltaroApplication::~VoltaroApplication() {
    if (loop_) {
        loop_->cancel();
    }
}

void VoltaroApplication::start() {
    // run() returns an inert task when a loop already runs, so this never starts a second one.
    if (!loop_) {
        loop_ = monitor_.run();
    }
}

void VoltaroApplication::showPreviewWindow() {
    if (previewWindow_) {
        bringToFront(*previewWindow_);
        return;
    }
    previewWindow_ = std::make_unique<QWidget>(
        nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                     Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                     Qt::WindowMinimizeButtonHint);
    previewWindow_->setWindowTitle("Voltaro Preview");
    auto* layout = new QVBoxLayout(previewWindow_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new DashboardView(monitor_, systemPowerTitle_, dashboardActions()));
    // Not resizable: the dashboard has one size.
    previewWindow_->setFixedSize(previewSize);
    previewWindow_->installEventFilter(this);
    centreOnScreen(*previewWindow_);
    bringToFront(*previewWindow_);
}

void VoltaroApplication::openSettings() {
    if (!settingsWindow_) {
        settingsWindow_ = std::make_unique<SettingsView>(loginItems_());
        settingsWindow_->setWindowTitle(ui::tr("Voltaro Settings"));
        settingsWindow_->installEventFilter(this);
        settingsWindow_->adjustSize();
        centreOnScreen(*settingsWindow_);
    }
    bringToFront(*settingsWindow_);
}

void VoltaroApplication::openDashboard(std::optional<QRect> anchor) {
    popup().open(anchor);
}

void VoltaroApplication::toggleDashboard(std::optional<QRect> anchor) {
    popup().toggle(anchor);
}

void VoltaroApplication::quit() {
    quitApplication();
}

void VoltaroApplication::attachTrayItem(StatusItem& tray) {
    connect(&tray, &StatusItem::activated, this, &VoltaroApplication::toggleDashboard);
    // The menu gives no place to open at: by the item where the desktop told where it is,
    // else by the cursor, where the user just was.
    connect(&tray, &StatusItem::openDashboardRequested, this,
            [this, &tray] { openDashboard(tray.lastKnownAnchor()); });
    connect(&tray, &StatusItem::openSettingsRequested, this, &VoltaroApplication::openSettings);
    connect(&tray, &StatusItem::quitRequested, this, &VoltaroApplication::quit);
    // An item no panel shows reaches nobody: then the last window closing still quits.
    connect(&tray, &StatusItem::panelPresenceChanged, this,
            &VoltaroApplication::setReachableWithoutWindows);
    setReachableWithoutWindows(tray.isInPanel());
}

DashboardActions VoltaroApplication::dashboardActions() {
    return {.openSettings = [this] { openSettings(); },
            .openBatterySettings = openBatterySettings_};
}

DashboardPopup& VoltaroApplication::popup() {
    if (!dashboardPopup_) {
        dashboardPopup_ = std::make_unique<DashboardPopup>(monitor_, systemPowerTitle_,
                                                           dashboardActions(), clock_);
    }
    return *dashboardPopup_;
}

void VoltaroApplication::setReachableWithoutWindows(bool reachable) {
    reachableWithoutWindows_ = reachable;
}

bool VoltaroApplication::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close) {
        // Look once the window has actually gone from the screen.
        QTimer::singleShot(0, this, &VoltaroApplication::quitIfNoWindowIsLeft);
    }
    return QObject::eventFilter(watched, event);
}

void VoltaroApplication::quitIfNoWindowIsLeft() {
    if (reachableWithoutWindows_) {
        return;
    }
    const bool previewShown = previewWindow_ && previewWindow_->isVisible();
    const bool settingsShown = settingsWindow_ && settingsWindow_->isVisible();
    if (!previewShown && !settingsShown) {
        quitApplication();
    }
}

void VoltaroApplication::quitApplication() {
    QCoreApplication::quit();
}

}  // namespace voltaro::ui
