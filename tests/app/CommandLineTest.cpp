#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace voltaro {
namespace {

CommandLine parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "voltaro");
    return parseCommandLine(arguments);
}

TEST(CommandLineTest, ReadsModesAndOnlyWarnsTheDesktopApplicationOfUnknownArguments) {
    const CommandLine plain = parse({});
    EXPECT_EQ(plain.mode, CommandLine::Mode::dashboard);
    EXPECT_FALSE(plain.json || plain.traceRefreshes || plain.immediateOutput || plain.warning);

    // Launchers and session managers add their own arguments.
    const CommandLine launched = parse({"-psn_0_1234", "--bogus", "stray", "--trace-refreshes"});
    EXPECT_EQ(launched.mode, CommandLine::Mode::dashboard);
    EXPECT_FALSE(launched.immediateOutput);
    EXPECT_EQ(launched.warning, "voltaro: ignoring unknown arguments: -psn_0_1234 --bogus stray");

    const CommandLine once =
        parse({"--once", "--json", "--sysfs-root", "/", "--proc-root", "/", "--trace-refreshes"});
    EXPECT_EQ(once.mode, CommandLine::Mode::once);
    EXPECT_TRUE(once.json && once.traceRefreshes);
    EXPECT_EQ(once.sysfsRoot, "/");
    EXPECT_FALSE(once.immediateOutput || once.warning);

    EXPECT_EQ(parse({"--watch"}).mode, CommandLine::Mode::watch);
}

TEST(CommandLineTest, OnlyTheExactPreviewSwitchOpensThePreviewWindow) {
    const std::pair<std::vector<std::string>, bool> cases[] = {
        {{"--preview-window"}, true},    {{"-psn_0_1234", "--preview-window", "--bogus"}, true},
        {{"--preview-window-x"}, false}, {{"--preview-window=1"}, false},
        {{"--preview-window="}, false},  {{"--preview"}, false},
        {{"-preview-window"}, false},    {{"--PREVIEW-WINDOW"}, false},
    };
    for (const auto& [arguments, previewWindow] : cases) {
        const CommandLine commandLine = parse(arguments);
        EXPECT_EQ(commandLine.previewWindow, previewWindow) << arguments.front();
        EXPECT_FALSE(commandLine.immediateOutput) << arguments.front();
    }
}

// Whenever one of the command-line modes is asked for, a mistake prints why and the usage.
TEST(CommandLineTest, HelpVersionAndMistakesOnlyPrint) {
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        std::string says;
    } cases[] = {
        {{"--help"}, 0, "--sysfs-root DIR"},
        {{"--version"}, 0, "Voltaro "},
        {{"--sysfs-root"}, 2, "--sysfs-root"},
        {{"--once", "--jsn"}, 2, "not expected: --jsn"},
        {{"--watch", "--bogus", "stray"}, 2, "not expected: --bogus stray"},
        {{"--low-power", "on", "-x"}, 2, "not expected: -x"},
        {{"--proc-root", "/", "--bogus"}, 2, "not expected: --bogus"},
        {{"--sysfs-root", "/no/such/folder"}, 2, "/no/such/folder"},
        {{"--json", "--proc-root", "/no/such/folder"}, 2, "/no/such/folder"},
        {{"--history", "--since", "7w"}, 2, "'7w' is not a duration like 90m"},
        {{"--since", "24h"}, 2, "requires --history"},
        {{"--history", "--csv", "--json"}, 2, "excludes"},
        {{"--once", "--history"}, 2, "excludes"},
    };
    for (const auto& c : cases) {
        const CommandLine commandLine = parse(c.arguments);
        const std::string output = commandLine.immediateOutput.value_or("");
        EXPECT_EQ(commandLine.exitCode, c.exitCode) << c.arguments.back();
        EXPECT_NE(output.find(c.says), std::string::npos) << c.arguments.back() << ": " << output;
        if (c.exitCode != 0) {
            EXPECT_NE(output.find("Usage:"), std::string::npos) << output;
        }
    }
}

TEST(CommandLineTest, HistoryReadsHowFarBack) {
    using std::chrono::seconds;
    const std::pair<std::string, std::optional<seconds>> cases[] = {
        {"90m", seconds(5400)},
        {"24h", seconds(86400)},
        {"7d", seconds(604800)},
        {"366d", seconds(366 * 86400)},
        {"367d", {}},
        {"0h", {}},
        {"-5m", {}},
        {"+5m", {}},
        {"1.5h", {}},
        {"5 m", {}},
        {"h", {}},
        {"", {}},
        {"99999999999999999999d", {}},
    };
    for (const auto& [since, seconds] : cases) {
        const CommandLine commandLine = parse({"--history", "--csv", "--since", since});
        EXPECT_EQ(commandLine.exitCode, seconds ? 0 : 2) << since;
        if (seconds) {
            EXPECT_EQ(commandLine.mode, CommandLine::Mode::history);
            EXPECT_EQ(commandLine.historySince, *seconds) << since;
            EXPECT_TRUE(commandLine.csv);
        }
    }
    EXPECT_EQ(parse({"--history"}).historySince, std::chrono::hours(24));
}

}  // namespace
}  // namespace voltaro
