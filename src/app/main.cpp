#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/FrontEndChoice.h"
#include "app/HistoryListing.h"
#include "app/PlatformServices.h"
#include "app/RefreshTrace.h"
#include "app/TerminalFrontEnd.h"
#include "core/monitor/BatteryMonitor.h"
#include "core/runtime/RunLoop.h"
#include "platform/posix/ProcessChecks.h"

#ifdef VOLTARO_WITH_DESKTOP
#include "app/DesktopFrontEnd.h"
#endif

int main(int argc, char** argv) {
    using namespace voltaro;
    const CommandLine commandLine = parseCommandLine(std::vector<std::string>(argv, argv + argc));
    if (commandLine.immediateOutput) {
        (commandLine.exitCode == 0 ? std::cout : std::cerr) << *commandLine.immediateOutput;
        return commandLine.exitCode;
    }
    if (commandLine.warning) {
        std::cerr << *commandLine.warning << "\n";
    }
    // A closed pipe shows up as a failed write, which ends the loop.
    std::signal(SIGPIPE, SIG_IGN);
    if (commandLine.mode == CommandLine::Mode::history) {
        return printHistory(commandLine, std::cout, std::cerr);
    }

    GraphicalSession session = GraphicalSession::fromEnvironment();
#ifdef VOLTARO_WITH_DESKTOP
    session.builtWithWindows = true;
    session.platformOpens = [&] { return desktopPlatformOpens(argc, argv); };
#endif
    // Chosen before any service starts a thread: the platform check forks.
    const FrontEndChoice choice = chooseFrontEnd(commandLine, session);
    if (choice.note) {
        std::cerr << *choice.note << "\n";
    }

    // Never destroyed, like the shared monitor that uses them: a low power change may still be
    // running on its worker while the process exits. Static, so it stays reachable to the end.
    static const PlatformServices& platformServices = *new PlatformServices(PlatformServices::make(
        {.sysfsRoot = commandLine.sysfsRoot, .procRoot = commandLine.procRoot}));
#ifdef VOLTARO_WITH_DESKTOP
    if (choice.frontEnd == FrontEnd::desktop) {
        return runDesktopFrontEnd(argc, argv, commandLine, platformServices);
    }
#endif

    RunLoop runLoop;
    BatteryMonitor::configureShared(platformServices.monitorServices(runLoop));
    std::optional<RefreshTrace> trace;
    if (commandLine.traceRefreshes) {
        trace.emplace(BatteryMonitor::shared(), runLoop, SystemClock::instance(), std::cerr);
    }
    const bool redrawInPlace = commandLine.mode == CommandLine::Mode::dashboard &&
                               !commandLine.json && platform::standardOutputIsTerminal();
    TerminalFrontEnd frontEnd(BatteryMonitor::shared(), runLoop, std::cout, commandLine,
                              redrawInPlace);
    return frontEnd.run();
}
