// Runs the real binary as plain `voltaro` on a virtual X server with a private session bus: the
// tray application, whose item opens and closes the dashboard popup.
#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "ChildProcess.h"
#include "VirtualDisplay.h"
#include "support/TemporaryDirectory.h"

namespace voltaro {
namespace {

namespace fs = std::filesystem;
using testing::ChildProcess;
using testing::outputOf;
using testing::VirtualDisplay;

const fs::path fixture = fs::path(VOLTARO_TEST_DATA) / "sysfs" / "asus-zenbook-14-charging";

// Asks again until the answer passes the check or a generous deadline passes.
template <typename Ask, typename Check>
std::string pollUntil(Ask ask, Check check) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::string answer = ask();
    while (!check(answer) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        answer = ask();
    }
    return answer;
}

class TrayEndToEndTest : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* program : {"Xvfb", "xwininfo", "dbus-daemon", "dbus-send"}) {
            if (!testing::installed(program)) {
                GTEST_SKIP() << program << " is missing (scripts/install-dependencies.sh)";
            }
        }
        display_.emplace();
        ASSERT_FALSE(display_->name().empty()) << "Xvfb did not start";
        bus_.emplace(ChildProcess::Options{.arguments = {"/bin/sh", "-c",
                                                         "exec dbus-daemon --session --nofork "
                                                         "--print-address=3 2>/dev/null"},
                                           .pipedDescriptor = 3});
        const std::optional<std::string> address = bus_->readLine(std::chrono::seconds(10));
        ASSERT_TRUE(address) << "dbus-daemon did not start";
        busAddress_ = *address;
        voltaro_.emplace(ChildProcess::Options{
            .arguments = {VOLTARO_BINARY, "--sysfs-root", fixture.string(), "--trace-refreshes"},
            .environment = {{"DISPLAY", display_->name()},
                            {"QT_QPA_PLATFORM", "xcb"},
                            {"DBUS_SESSION_BUS_ADDRESS", busAddress_},
                            {"LC_ALL", "C"},
                            {"LANGUAGE", ""},
                            {"XDG_CONFIG_HOME", configHome_.path().string()},
                            {"XDG_STATE_HOME", configHome_.path().string()}},
            .pipedDescriptor = 2});
        ASSERT_TRUE(voltaro_->started());
    }

    void TearDown() override {
        voltaro_.reset();
        bus_.reset();
        display_.reset();
    }

    // Lines from voltaro's stderr up to the first that matches, within a few seconds.
    std::optional<std::string> lineMatching(const std::regex& pattern, std::string* before) {
        while (const std::optional<std::string> line =
                   voltaro_->readLine(std::chrono::seconds(5))) {
            if (std::regex_search(*line, pattern)) {
                return line;
            }
            if (before != nullptr) {
                *before += *line + "\n";
            }
        }
        return std::nullopt;
    }

    std::string bus(const std::string& arguments) {
        return outputOf("DBUS_SESSION_BUS_ADDRESS='" + busAddress_ +
                        "' dbus-send --session --print-reply " + arguments + " 2>&1");
    }

    std::string itemName() {
        const std::string names = pollUntil(
            [&] {
                return bus(
                    "--dest=org.freedesktop.DBus /org/freedesktop/DBus "
                    "org.freedesktop.DBus.ListNames");
            },
            [](const std::string& answer) {
                return answer.find("org.kde.StatusNotifierItem-") != std::string::npos;
            });
        std::smatch match;
        return std::regex_search(names, match,
                                 std::regex(R"re("(org\.kde\.StatusNotifierItem-[^"]+)")re"))
                   ? match[1].str()
                   : std::string();
    }

    std::string activate(const std::string& item, int x, int y) {
        return bus("--dest=" + item +
                   " /StatusNotifierItem org.kde.StatusNotifierItem.Activate int32:" +
                   std::to_string(x) + " int32:" + std::to_string(y));
    }

    std::optional<VirtualDisplay> display_;
    std::optional<ChildProcess> bus_;
    std::string busAddress_;
    testing::TemporaryDirectory configHome_;
    std::optional<ChildProcess> voltaro_;
};

TEST_F(TrayEndToEndTest, AClickOnTheItemOpensThePopupBesideItAndASecondClickClosesIt) {
    std::string before;
    ASSERT_TRUE(lineMatching(std::regex("^refresh 1 at"), &before)) << before;
    EXPECT_NE(before.find("no tray in the panel yet"), std::string::npos) << before;
    EXPECT_EQ(before.find("dashboard here instead"), std::string::npos) << before;

    const std::string item = itemName();
    ASSERT_FALSE(item.empty()) << "the item did not come onto the bus";
    EXPECT_EQ(display_->run("xwininfo -root -tree").find("382x552"), std::string::npos)
        << "no dashboard before the first click";

    // A click near the top right corner of the 1280 × 800 screen: the popup (the dashboard and
    // its hairline edge) opens below the point, centred on it, 4 pixels away.
    const std::string reply = activate(item, 1000, 10);
    EXPECT_NE(reply.find("method return"), std::string::npos) << reply;
    const std::regex popupWindow(R"re((0x[0-9a-f]+) "Voltaro": .*?382x552\+(-?\d+)\+(-?\d+))re");
    const std::string tree = pollUntil(
        [&] { return display_->run("xwininfo -root -tree"); },
        [&](const std::string& answer) { return std::regex_search(answer, popupWindow); });
    std::smatch window;
    ASSERT_TRUE(std::regex_search(tree, window, popupWindow)) << tree;
    EXPECT_EQ(std::stoi(window[2]), 1000 - 382 / 2);
    EXPECT_EQ(std::stoi(window[3]), 10 + 4);
    const std::string id = window[1];
    EXPECT_NE(display_->run("xwininfo -id " + id).find("Map State: IsViewable"), std::string::npos);
    // Opening refreshed the monitor, and the popup shows the fixture's battery.
    const auto shown = lineMatching(std::regex(R"(screen: .*Battery — 57%)"), nullptr);
    ASSERT_TRUE(shown);

    // Closed: unmapped, or gone with its native window.
    activate(item, 1000, 10);
    const auto viewable = [](const std::string& answer) {
        return answer.find("Map State: IsViewable") != std::string::npos;
    };
    const std::string state =
        pollUntil([&] { return display_->run("xwininfo -id " + id); },
                  [&](const std::string& answer) { return !viewable(answer); });
    EXPECT_FALSE(viewable(state)) << state;

    activate(item, 1000, 10);
    const std::string reopened = pollUntil(
        [&] { return display_->run("xwininfo -root -tree"); },
        [&](const std::string& answer) { return std::regex_search(answer, popupWindow); });
    std::smatch again;
    ASSERT_TRUE(std::regex_search(reopened, again, popupWindow)) << "a third click opens it again";
    EXPECT_TRUE(viewable(
        pollUntil([&] { return display_->run("xwininfo -id " + again[1].str()); }, viewable)));
    EXPECT_TRUE(voltaro_->running()) << "closing the popup leaves the application running";
}

}  // namespace
}  // namespace voltaro
