#include "app/FrontEndChoice.h"

#include <cstdlib>

namespace voltaro {
namespace {

constexpr const char* instead = ", showing the dashboard here instead";

std::optional<std::string> variable(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') {
        return std::nullopt;
    }
    return std::string(value);
}

bool asksForWindows(const CommandLine& commandLine) {
    if (commandLine.switchLowPowerModeTo) {
        return false;
    }
    return commandLine.previewWindow ||
           (commandLine.mode == CommandLine::Mode::dashboard && !commandLine.json);
}

// The display Qt would try, as the user would recognise it.
std::string displayName(const GraphicalSession& session) {
    if (session.qtPlatform) {
        return "QT_QPA_PLATFORM=" + *session.qtPlatform;
    }
    if (session.waylandDisplay) {
        return "WAYLAND_DISPLAY=" + *session.waylandDisplay;
    }
    return "DISPLAY=" + session.display.value_or("");
}

}  // namespace

GraphicalSession GraphicalSession::fromEnvironment() {
    GraphicalSession session;
    session.display = variable("DISPLAY");
    session.waylandDisplay = variable("WAYLAND_DISPLAY");
    session.qtPlatform = variable("QT_QPA_PLATFORM");
    session.hasWindowServer = VOLTARO_WINDOW_SERVER != 0;
    return session;
}

FrontEndChoice chooseFrontEnd(const CommandLine& commandLine, const GraphicalSession& session) {
    if (!asksForWindows(commandLine)) {
        return {};
    }
    if (!session.builtWithWindows) {
        return {FrontEnd::terminal, std::string("voltaro: built without windows") + instead};
    }
    if (session.hasWindowServer && !session.qtPlatform) {
        // Probing it would start AppKit in a forked child, which macOS does not allow.
        return {FrontEnd::desktop, std::nullopt};
    }
    if (!session.display && !session.waylandDisplay && !session.qtPlatform) {
        return {FrontEnd::terminal,
                std::string("voltaro: no graphical session (neither DISPLAY nor WAYLAND_DISPLAY "
                            "is set)") +
                    instead};
    }
    if (session.platformOpens && !session.platformOpens()) {
        return {FrontEnd::terminal, "voltaro: no graphical session (" + displayName(session) +
                                        " does not open)" + instead};
    }
    return {FrontEnd::desktop, std::nullopt};
}

}  // namespace voltaro
