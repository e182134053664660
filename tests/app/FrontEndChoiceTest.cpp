#include "app/FrontEndChoice.h"

#include <gtest/gtest.h>

#include "support/ScopedEnvironment.h"

namespace voltaro {
namespace {

CommandLine parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "voltaro");
    return parseCommandLine(arguments);
}

GraphicalSession x11Session() {
    GraphicalSession session;
    session.builtWithWindows = true;
    session.display = ":0";
    session.platformOpens = [] { return true; };
    return session;
}

TEST(FrontEndChoiceTest, WindowsWhenAskedForAndTheSessionCanShowThem) {
    const struct {
        std::vector<std::string> arguments;
        FrontEnd expected;
    } cases[] = {
        {{}, FrontEnd::desktop},
        {{"--preview-window"}, FrontEnd::desktop},
        {{"--trace-refreshes", "--sysfs-root", "/"}, FrontEnd::desktop},
        // The preview window wins over the terminal modes.
        {{"--preview-window", "--once", "--json"}, FrontEnd::desktop},
        {{"--once"}, FrontEnd::terminal},
        {{"--watch"}, FrontEnd::terminal},
        {{"--json"}, FrontEnd::terminal},
        {{"--low-power", "on"}, FrontEnd::terminal},
        {{"--low-power", "off", "--preview-window"}, FrontEnd::terminal},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        int probes = 0;
        GraphicalSession session = x11Session();
        session.platformOpens = [&probes] { return ++probes > 0; };
        const FrontEndChoice choice = chooseFrontEnd(parse(c.arguments), session);
        EXPECT_EQ(choice.frontEnd, c.expected);
        EXPECT_EQ(choice.note, std::nullopt);
        // Asking for terminal output never touches the display server.
        EXPECT_EQ(probes, c.expected == FrontEnd::desktop ? 1 : 0);
    }
}

TEST(FrontEndChoiceTest, SaysWhyTheTerminalStandsInForTheWindows) {
    const auto noteFor = [](const GraphicalSession& session,
                            std::vector<std::string> arguments = {}) {
        const FrontEndChoice choice = chooseFrontEnd(parse(std::move(arguments)), session);
        EXPECT_EQ(choice.frontEnd, FrontEnd::terminal);
        return choice.note.value_or("(none)");
    };
    GraphicalSession noDisplay = x11Session();
    noDisplay.display.reset();
    for (const auto& arguments : {std::vector<std::string>{}, {"--preview-window", "--once"}}) {
        EXPECT_EQ(noteFor(noDisplay, arguments),
                  "voltaro: no graphical session (neither DISPLAY nor WAYLAND_DISPLAY is set), "
                  "showing the dashboard here instead");
    }

    GraphicalSession deadDisplay = x11Session();
    deadDisplay.platformOpens = [] { return false; };
    EXPECT_EQ(noteFor(deadDisplay),
              "voltaro: no graphical session (DISPLAY=:0 does not open), showing the dashboard "
              "here instead");
    deadDisplay.waylandDisplay = "wayland-1";
    EXPECT_EQ(noteFor(deadDisplay),
              "voltaro: no graphical session (WAYLAND_DISPLAY=wayland-1 does not open), showing "
              "the dashboard here instead");

    GraphicalSession withoutWindows = x11Session();
    withoutWindows.builtWithWindows = false;
    EXPECT_EQ(noteFor(withoutWindows),
              "voltaro: built without windows, showing the dashboard here instead");
}

// A platform chosen on purpose counts as a session; a window server needs neither a display
// variable nor a probe.
TEST(FrontEndChoiceTest, APlatformChosenOnPurposeOrAWindowServerNeedsNoDisplayVariable) {
    GraphicalSession session = x11Session();
    session.display.reset();
    session.qtPlatform = "offscreen";
    EXPECT_EQ(chooseFrontEnd(parse({}), session).frontEnd, FrontEnd::desktop);
    session.qtPlatform.reset();
    session.hasWindowServer = true;
    session.platformOpens = [] { return false; };
    EXPECT_EQ(chooseFrontEnd(parse({}), session).frontEnd, FrontEnd::desktop);
    EXPECT_EQ(chooseFrontEnd(parse({"--json"}), session).frontEnd, FrontEnd::terminal);
}

TEST(FrontEndChoiceTest, ReadsTheSessionFromTheEnvironmentWithEmptyMeaningUnset) {
    testing::ScopedEnvironment display("DISPLAY", ":3");
    testing::ScopedEnvironment wayland("WAYLAND_DISPLAY", "");
    testing::ScopedEnvironment platform("QT_QPA_PLATFORM", std::nullopt);
    const GraphicalSession session = GraphicalSession::fromEnvironment();
    EXPECT_EQ(session.display, ":3");
    EXPECT_EQ(session.waylandDisplay, std::nullopt);
    EXPECT_EQ(session.qtPlatform, std::nullopt);
}

}  // namespace
}  // namespace voltaro
