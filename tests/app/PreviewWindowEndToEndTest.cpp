// Runs the real binary with --preview-window on a virtual X server and looks at it from outside:
// the window the X server holds, and the line the program writes for each refresh.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "VirtualDisplay.h"
#include "support/TemporaryDirectory.h"

namespace voltaro {
namespace {

namespace fs = std::filesystem;
using testing::ChildProcess;
using testing::VirtualDisplay;

constexpr int screenWidth = VirtualDisplay::width;
constexpr int screenHeight = VirtualDisplay::height;
const fs::path fixture = fs::path(VOLTARO_TEST_DATA) / "sysfs" / "asus-zenbook-14-charging";

struct Refresh {
    long long number;
    long long milliseconds;
    std::string line;
};

class PreviewWindowEndToEndTest : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* program : {"Xvfb", "xwininfo", "xprop"}) {
            if (!testing::installed(program)) {
                GTEST_SKIP() << program << " is missing (scripts/install-dependencies.sh)";
            }
        }
        display_.emplace();
        ASSERT_FALSE(display_->name().empty()) << "Xvfb did not start";
        voltaro_.emplace(
            ChildProcess::Options{.arguments = {VOLTARO_BINARY, "--preview-window", "--sysfs-root",
                                                fixture.string(), "--trace-refreshes"},
                                  .environment = {{"DISPLAY", display_->name()},
                                                  {"QT_QPA_PLATFORM", "xcb"},
                                                  {"LC_ALL", "C"},
                                                  {"LANGUAGE", ""},
                                                  {"XDG_CONFIG_HOME", configHome_.path().string()},
                                                  {"XDG_STATE_HOME", configHome_.path().string()}},
                                  .pipedDescriptor = STDERR_FILENO});
        ASSERT_TRUE(voltaro_->started());
    }

    // The refresh lines written within the time; other lines (Qt's own notes) are left out.
    std::vector<Refresh> refreshesWithin(std::chrono::milliseconds time) {
        static const std::regex refreshLine(R"(^refresh (\d+) at (\d+) ms: .*)");
        std::vector<Refresh> refreshes;
        const auto deadline = std::chrono::steady_clock::now() + time;
        while (const std::optional<std::string> line =
                   voltaro_->readLine(std::chrono::duration_cast<std::chrono::milliseconds>(
                       deadline - std::chrono::steady_clock::now()))) {
            std::smatch match;
            if (std::regex_match(*line, match, refreshLine)) {
                refreshes.push_back({std::stoll(match[1]), std::stoll(match[2]), *line});
            }
        }
        return refreshes;
    }

    std::string x11(const std::string& command) { return display_->run(command); }

    testing::TemporaryDirectory configHome_;
    std::optional<VirtualDisplay> display_;
    std::optional<ChildProcess> voltaro_;
};

TEST_F(PreviewWindowEndToEndTest, ShowsOneFixedWindowInTheMiddleAndRefreshesEveryTwoSeconds) {
    const std::vector<Refresh> refreshes = refreshesWithin(std::chrono::milliseconds(3500));
    ASSERT_TRUE(voltaro_->running()) << "voltaro ended early";

    // The window: "0x400006 "Voltaro Preview": ("voltaro" "voltaro")  380x550+450+125  +450+125"
    const std::string tree = x11("xwininfo -root -tree");
    std::smatch window;
    ASSERT_TRUE(std::regex_search(
        tree, window,
        std::regex(R"re((0x[0-9a-f]+) "Voltaro Preview": .*?(\d+)x(\d+)\+(-?\d+)\+(-?\d+))re")))
        << tree;
    EXPECT_EQ(std::stoi(window[2]), 380);
    EXPECT_EQ(std::stoi(window[3]), 550);
    EXPECT_EQ(std::stoi(window[4]), (screenWidth - 380) / 2);
    EXPECT_EQ(std::stoi(window[5]), (screenHeight - 550) / 2);
    const std::string id = window[1];
    const std::string state = x11("xwininfo -id " + id);
    EXPECT_NE(state.find("Map State: IsViewable"), std::string::npos) << state;
    // Not resizable: the smallest and the largest size the window allows are the same.
    const std::string hints = x11("xprop -id " + id + " WM_NORMAL_HINTS");
    EXPECT_NE(hints.find("minimum size: 380 by 550"), std::string::npos) << hints;
    EXPECT_NE(hints.find("maximum size: 380 by 550"), std::string::npos) << hints;

    // One loop: a refresh at once, then one 2 s later, not twice as often. The timers may fire
    // a little early or late; a second loop would put refreshes far closer together.
    ASSERT_GE(refreshes.size(), 2u);
    ASSERT_LE(refreshes.size(), 2u);
    EXPECT_LT(refreshes.front().milliseconds, 1900) << refreshes.front().line;
    for (std::size_t at = 1; at < refreshes.size(); ++at) {
        SCOPED_TRACE(refreshes[at].line);
        EXPECT_EQ(refreshes[at].number, refreshes[at - 1].number + 1);
        const long long gap = refreshes[at].milliseconds - refreshes[at - 1].milliseconds;
        EXPECT_GE(gap, 1700);
        EXPECT_LE(gap, 3500);
    }
    // What the monitor read from the fixture laptop, and what the window shows of it.
    const std::string& line = refreshes.back().line;
    EXPECT_NE(line.find("level 57, Charging"), std::string::npos) << line;
    const std::string screen = line.substr(line.find("; screen: ") + 10);
    EXPECT_NE(screen.find("Battery — 57%"), std::string::npos) << line;
}

}  // namespace
}  // namespace voltaro
