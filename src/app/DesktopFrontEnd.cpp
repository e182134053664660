#include "app/DesktopFrontEnd.h"

#include <QApplication>
#include <QGuiApplication>
#include <QWidget>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>

#include "app/HistoryListing.h"
#include "app/RefreshTrace.h"
#include "core/history/HistoryArchive.h"
#include "core/history/HistoryRecorder.h"
#include "platform/posix/PosixCommandRunner.h"
#include "platform/posix/ProcessChecks.h"
#include "ui/application/DesktopShell.h"
#include "ui/application/DisplayPreferencesStore.h"
#include "ui/application/QtMainExecutor.h"
#include "ui/application/ShownTexts.h"
#include "ui/application/VoltaroApplication.h"
#include "ui/views/DashboardPopup.h"

namespace voltaro {
namespace {

// The texts of the window the user looks at: the popup while it is open, else the preview.
std::string shownTextsOf(const ui::VoltaroApplication& voltaro) {
    const QWidget* popup = voltaro.dashboardPopup();
    const QWidget* preview = voltaro.previewWindow();
    for (const QWidget* window : {popup, preview}) {
        if (window != nullptr && window->isVisible()) {
            return ui::shownTexts(*window).join(" | ").toStdString();
        }
    }
    return {};
}

}  // namespace

int runDesktopFrontEnd(int& argc, char** argv, const CommandLine& commandLine,
                       const PlatformServices& platformServices) {
    QApplication application(argc, argv);
    ui::prepareApplication();
    // A start from the menu, autostart or a terminal while Voltaro runs brings that one forward.
    // The preview window is a developer's view and stands on its own.
    ui::StatusItem* runningTray = nullptr;
    if (!commandLine.previewWindow) {
        switch (ui::DesktopShell::claimSession(application, [&runningTray] {
            if (runningTray != nullptr) {
                emit runningTray->openDashboardRequested();
            }
        })) {
            case ui::DesktopShell::SessionStart::first:
                break;
            case ui::DesktopShell::SessionStart::handedOver:
                return 0;
            case ui::DesktopShell::SessionStart::unanswered:
                std::cerr << "voltaro: Voltaro already runs in this session but does not answer; "
                             "end it and start Voltaro again\n";
                return 1;
        }
    }
    ui::QtMainExecutor mainExecutor;
    BatteryMonitor::configureShared(platformServices.monitorServices(mainExecutor));
    BatteryMonitor& monitor = BatteryMonitor::shared();
    // Only the single instance records: a preview beside it must not take the history's lock.
    std::optional<HistoryArchive> history;
    std::optional<HistoryRecorder> recorder;
    if (!commandLine.previewWindow) {
        history.emplace(userHistoryOpener(), mainExecutor,
                        [](const std::string& message) { std::cerr << message << '\n'; });
        recorder.emplace(monitor, *history);
    }

    platform::PosixCommandRunner commandRunner;
    ui::VoltaroApplication voltaro(
        monitor, [] { return platform::makeLoginItemService(); }, platform::systemPowerTitle(),
        [&commandRunner] { ui::DesktopShell::openBatterySettings(commandRunner); });
    if (history) {
        voltaro.setHistory(*history);
    }
    std::optional<RefreshTrace> trace;
    if (commandLine.traceRefreshes) {
        trace.emplace(monitor, mainExecutor, SystemClock::instance(), std::cerr,
                      [&voltaro] { return shownTextsOf(voltaro); });
    }
    const std::unique_ptr<ui::StatusItem> tray =
        ui::DesktopShell::makeStatusItem(monitor.snapshot(), ui::DisplayPreferencesStore::shared());
    voltaro.attachTrayItem(*tray);
    runningTray = tray.get();
    if (!tray->isInPanel()) {
        std::cerr << "voltaro: no tray in the panel yet; the battery shows there once one "
                     "appears\n";
    }
    voltaro.start();
    ui::DesktopShell::presentApplication(commandLine.previewWindow);
    if (commandLine.previewWindow) {
        voltaro.showPreviewWindow();
    }
    return application.exec();
}

bool desktopPlatformOpens(int argc, char** argv) {
    // When no child can be started nothing tells; Qt then tries for real.
    const std::optional<bool> opens = platform::succeedsInChildProcess([&] {
        // Qt's fatal message comes before its abort(): leave quietly, without a core dump.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString&) {
            if (type == QtFatalMsg) {
                std::_Exit(1);
            }
        });
        QGuiApplication probe(argc, argv);
        return true;
    });
    return opens.value_or(true);
}

}  // namespace voltaro
