#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace voltaro {

struct CommandLine {
    enum class Mode { dashboard, once, watch, history };

    Mode mode = Mode::dashboard;
    bool json = false;
    bool csv = false;  // --history only
    std::chrono::seconds historySince{std::chrono::hours(24)};
    // Only an argument that is exactly "--preview-window" counts.
    bool previewWindow = false;
    // Hidden: one line on stderr per refresh, for checking the loop from outside.
    bool traceRefreshes = false;
    std::optional<std::string> sysfsRoot;
    std::optional<std::string> procRoot;
    std::optional<bool> switchLowPowerModeTo;  // --low-power on|off

    // Set when the program should only print this text and exit with exitCode.
    std::optional<std::string> immediateOutput;
    int exitCode = 0;
    // One line for stderr naming the arguments the desktop application ignores.
    std::optional<std::string> warning;
};

// Reads the arguments. Unknown ones never stop the desktop application, which launchers give
// their own, but are a mistake beside any of the command-line modes.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

}  // namespace voltaro
