#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/PlatformServices.h"
#include "app/RefreshTrace.h"
#include "app/TerminalFrontEnd.h"
#include "core/common/RunLoop.h"
#include "core/monitor/BatteryMonitor.h"

#ifdef VOLTARO_WITH_DESKTOP
#include "app/DesktopFrontEnd.h"
#endif

#ifdef VOLTARO_WITH_DESKTOP
namespace {

// A display server to talk to, or a Qt platform chosen on purpose.
bool hasGraphicalSession() {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return true;
        }
    }
    return false;
}

}  // namespace
#endif

int main(int argc, char** argv) {
    using namespace voltaro;
    const CommandLine commandLine = parseCommandLine(std::vector<std::string>(argv, argv + argc));
    if (commandLine.immediateOutput) {
        (commandLine.exitCode == 0 ? std::cout : std::cerr) << *commandLine.immediateOutput;
        return commandLine.exitCode;
    }
    // A closed pipe shows up as a failed write, which ends the loop.
    std::signal(SIGPIPE, SIG_IGN);

    const PlatformServices platformServices = PlatformServices::make(
        {.sysfsRoot = commandLine.sysfsRoot, .procRoot = commandLine.procRoot});

    if (commandLine.previewWindow && !commandLine.switchLowPowerModeTo) {
#ifdef VOLTARO_WITH_DESKTOP
        if (hasGraphicalSession()) {
            return runDesktopFrontEnd(argc, argv, commandLine, platformServices);
        }
        std::cerr << "voltaro: no graphical session, showing the dashboard here instead\n";
#else
        std::cerr << "voltaro: built without windows, showing the dashboard here instead\n";
#endif
    }

    RunLoop runLoop;
    BatteryMonitor::configureShared(platformServices.monitorServices(runLoop));
    std::optional<RefreshTrace> trace;
    if (commandLine.traceRefreshes) {
        trace.emplace(BatteryMonitor::shared(), runLoop, SystemClock::instance(), std::cerr);
    }
    const bool redrawInPlace = commandLine.mode == CommandLine::Mode::dashboard &&
                               !commandLine.json && isatty(STDOUT_FILENO);
    TerminalFrontEnd frontEnd(BatteryMonitor::shared(), runLoop, std::cout, commandLine,
                              redrawInPlace);
    return frontEnd.run();
}
