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
    EXPECT_FALSE(plain.json || plain.traceRefreshes || plain.immediateOutput);

    const CommandLine once = parse({"--bogus", "--once", "--json", "--sysfs-root", "/tmp/x",
                                    "stray", "-z", "--trace-refreshes"});
    EXPECT_EQ(once.mode, CommandLine::Mode::once);
    EXPECT_TRUE(once.json && once.traceRefreshes);
    EXPECT_EQ(once.sysfsRoot, "/tmp/x");
    EXPECT_FALSE(once.immediateOutput);

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

TEST(CommandLineTest, HelpVersionAndAMissingDirectoryOnlyPrint) {
    const CommandLine help = parse({"--help"});
    ASSERT_TRUE(help.immediateOutput);
    EXPECT_NE(help.immediateOutput->find("--sysfs-root"), std::string::npos);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(parse({"--version"}).immediateOutput.value_or("").rfind("Voltaro ", 0), 0u);
    const CommandLine bad = parse({"--sysfs-root"});
    EXPECT_TRUE(bad.immediateOutput);
    EXPECT_EQ(bad.exitCode, 2);
}

}  // namespace
}  // namespace voltaro
