#include "app/DesktopFrontEnd.h"

#include <QApplication>
#include <QWidget>
#include <iostream>
#include <optional>

#include "app/RefreshTrace.h"
#include "ui/QtMainExecutor.h"
#include "ui/ShownTexts.h"
#include "ui/VoltaroApplication.h"

namespace voltaro {

int runDesktopFrontEnd(int& argc, char** argv, const CommandLine& commandLine,
                       const PlatformServices& platformServices) {
    QApplication application(argc, argv);
    ui::prepareApplication();
    ui::QtMainExecutor mainExecutor;
    BatteryMonitor::configureShared(platformServices.monitorServices(mainExecutor));
    BatteryMonitor& monitor = BatteryMonitor::shared();

    ui::VoltaroApplication voltaro(monitor, [] { return platform::makeLoginItemService(); });
    std::optional<RefreshTrace> trace;
    if (commandLine.traceRefreshes) {
        trace.emplace(monitor, mainExecutor, SystemClock::instance(), std::cerr, [&voltaro] {
            const QWidget* window = voltaro.previewWindow();
            return window != nullptr && window->isVisible()
                       ? ui::shownTexts(*window).join(" | ").toStdString()
                       : std::string();
        });
    }
    voltaro.start();
    // The tray item comes in here: with it the application stays reachable without windows, and
    // it is what a start without --preview-window shows.
    if (commandLine.previewWindow) {
        voltaro.showPreviewWindow();
    }
    return application.exec();
}

}  // namespace voltaro
