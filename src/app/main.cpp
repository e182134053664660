#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/TerminalFrontEnd.h"
#include "core/common/RunLoop.h"
#include "core/monitor/BatteryMonitor.h"
#include "platform/Platform.h"

int main(int argc, char** argv) {
    using namespace voltaro;
    const CommandLine commandLine = parseCommandLine(std::vector<std::string>(argv, argv + argc));
    if (commandLine.immediateOutput) {
        (commandLine.exitCode == 0 ? std::cout : std::cerr) << *commandLine.immediateOutput;
        return commandLine.exitCode;
    }
    // A closed pipe shows up as a failed write, which ends the loop.
    std::signal(SIGPIPE, SIG_IGN);

    const platform::PlatformOptions options{.sysfsRoot = commandLine.sysfsRoot,
                                            .procRoot = commandLine.procRoot};
    const auto batteryRegistry = platform::makeBatteryRegistry(options);
    const auto smcController = platform::makeSMCController();
    const auto processSource = platform::makeProcessSource(options);
    const auto applicationCatalog = platform::makeApplicationCatalog(options);
    const auto lowPowerModeBackend = platform::makeLowPowerModeBackend();
    RunLoop runLoop;
    BatteryMonitor::configureShared({*batteryRegistry, *smcController, *processSource,
                                     *applicationCatalog, *lowPowerModeBackend, runLoop,
                                     SystemClock::instance()});

    const bool redrawInPlace = commandLine.mode == CommandLine::Mode::dashboard &&
                               !commandLine.json && isatty(STDOUT_FILENO);
    TerminalFrontEnd frontEnd(BatteryMonitor::shared(), runLoop, std::cout, commandLine,
                              redrawInPlace);
    return frontEnd.run();
}
