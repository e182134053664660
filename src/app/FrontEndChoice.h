#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/CommandLine.h"

namespace voltaro {

// What the process could show windows on.
struct GraphicalSession {
    bool builtWithWindows = false;
    std::optional<std::string> display;         // DISPLAY
    std::optional<std::string> waylandDisplay;  // WAYLAND_DISPLAY
    std::optional<std::string> qtPlatform;      // QT_QPA_PLATFORM: a platform chosen on purpose
    // macOS draws every login session through its one window server, which no variable names.
    bool hasWindowServer = false;
    // Whether Qt's platform really opens; asked last, as it talks to the display server.
    std::function<bool()> platformOpens;

    // The variables as this process has them (empty ones count as unset), and whether this OS
    // has a window server.
    static GraphicalSession fromEnvironment();
};

enum class FrontEnd { desktop, terminal };

struct FrontEndChoice {
    FrontEnd frontEnd = FrontEnd::terminal;
    // Why the terminal stands in for the windows the user asked for: one line for stderr.
    std::optional<std::string> note;
};

// The tray application (or the preview window) when the command line asks for no terminal output
// and the session can show windows; the terminal dashboard otherwise.
FrontEndChoice chooseFrontEnd(const CommandLine& commandLine, const GraphicalSession& session);

}  // namespace voltaro
