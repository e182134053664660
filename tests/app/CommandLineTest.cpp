#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace voltaro {
namespace {

CommandLine parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "voltaro");
    return parseCommandLine(arguments);
}

TEST(CommandLineTest, ReadsModesAndIgnoresUnknownArguments) {
    const CommandLine plain = parse({});
    EXPECT_EQ(plain.mode, CommandLine::Mode::dashboard);
    EXPECT_FALSE(plain.json);
    EXPECT_FALSE(plain.immediateOutput);

    const CommandLine once =
        parse({"--bogus", "--once", "--json", "--sysfs-root", "/tmp/x", "stray", "-z"});
    EXPECT_EQ(once.mode, CommandLine::Mode::once);
    EXPECT_TRUE(once.json);
    EXPECT_EQ(once.sysfsRoot, "/tmp/x");
    EXPECT_FALSE(once.immediateOutput);

    EXPECT_EQ(parse({"--watch"}).mode, CommandLine::Mode::watch);
    EXPECT_FALSE(parse({}).traceRefreshes);
    EXPECT_TRUE(parse({"--trace-refreshes"}).traceRefreshes);
}

TEST(CommandLineTest, OnlyTheExactPreviewSwitchOpensThePreviewWindow) {
    const struct {
        std::vector<std::string> arguments;
        bool previewWindow;
    } cases[] = {
        {{"--preview-window"}, true},    {{"-psn_0_1234", "--preview-window", "--bogus"}, true},
        {{"--preview-window-x"}, false}, {{"--preview-window=1"}, false},
        {{"--preview-window="}, false},  {{"--preview"}, false},
        {{"-preview-window"}, false},    {{"--PREVIEW-WINDOW"}, false},
    };
    for (const auto& c : cases) {
        const CommandLine commandLine = parse(c.arguments);
        EXPECT_EQ(commandLine.previewWindow, c.previewWindow) << c.arguments.front();
        EXPECT_FALSE(commandLine.immediateOutput) << c.arguments.front();
    }
}

TEST(CommandLineTest, HelpAndVersionOnlyPrint) {
    const CommandLine help = parse({"--help"});
    ASSERT_TRUE(help.immediateOutput);
    EXPECT_NE(help.immediateOutput->find("--sysfs-root"), std::string::npos);
    EXPECT_EQ(help.exitCode, 0);

    const CommandLine version = parse({"--version"});
    ASSERT_TRUE(version.immediateOutput);
    EXPECT_EQ(version.immediateOutput->rfind("Voltaro ", 0), 0u);
}

TEST(CommandLineTest, MissingDirectoryIsAUsageError) {
    const CommandLine bad = parse({"--sysfs-root"});
    ASSERT_TRUE(bad.immediateOutput);
    EXPECT_EQ(bad.exitCode, 2);
}

}  // namespace
}  // namespace voltaro
