#include "platform/macos/PmsetLowPowerModeBackend.h"

#include <gtest/gtest.h>

#include <deque>

namespace voltaro {
namespace {

using Backend = platform::PmsetLowPowerModeBackend;

TEST(PmsetLowPowerModeBackendTest, ReadsTheFirstLowPowerModeLine) {
    const std::pair<std::string, std::optional<bool>> cases[] = {
        {" lowpowermode 1\n", true},
        {" lowpowermode 0\n", false},
        {" lowpowermode 2\n", false},  // only exactly 1 is on
        {" lowpowermode 01\n", false},
        {"Battery Power:\n lowpowermode 1\n standby 1\nAC Power:\n lowpowermode 0\n", true},
        {"AC Power:\n lowpowermode 0\n lowpowermode 1\n", false},
        {"\n\n\t  lowpowermode \t\t  1 \t \n", true},
        {" lowpowermode 1", true},
        {"lowpowermode 1\n", true},  // the key at the very start
        {"Batterie \xE2\x80\x93 \xC3\xA9nergie\n lowpowermode 1\n", true},
        {"Battery Power:\n standby 1\n powernap 0\n", std::nullopt},
        {" LowPowerMode 1\n", std::nullopt},
        {"", std::nullopt},
        {" lowpowermode 1\n \xC0\xAF\n", std::nullopt},  // not UTF-8
    };
    for (const auto& [listing, expected] : cases) {
        EXPECT_EQ(Backend::parseCustomSettings(listing), expected) << listing;
    }
}

TEST(PmsetLowPowerModeBackendTest, MapsTheScriptingHostsOutcome) {
    const LowPowerModeError cancelled = LowPowerModeError::cancelled();
    const struct {
        int exitStatus;
        std::string standardError;
        std::optional<LowPowerModeError> expected;
    } cases[] = {
        {0, "", std::nullopt},
        {0, "cancel", std::nullopt},
        {1, "0:70: execution error: User canceled. (-128)\n", cancelled},
        {1, "execution error: not permitted\n", cancelled},
        {7, "CANCEL", cancelled},
        {2, "the request was Cancelled by policy", cancelled},
        {2, "  \t execution error: denied (5)\n",
         LowPowerModeError::failed("execution error: denied (5)")},
        {3, "\nfirst line\r\nsecond line\n\n",
         LowPowerModeError::failed("first line\r\nsecond line")},
        {3, "\xC2\xA0r\xC3\xA9sultat\xE2\x80\xA8", LowPowerModeError::failed("r\xC3\xA9sultat")},
        {2, "", LowPowerModeError::failed("")},
        {2, "cancel \xFF\xFE", LowPowerModeError::failed("")},  // not UTF-8: no text
        {1, "\xED\xA0\x80", cancelled},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Backend::switchOutcome(c.exitStatus, c.standardError), c.expected)
            << c.exitStatus << " " << c.standardError;
    }
}

struct Call {
    std::string executable;
    std::vector<std::string> arguments;
    bool operator==(const Call&) const = default;
};

// Records each command and answers with the next prepared result; none left: it cannot start.
// Running real commands is PosixCommandRunnerTest's.
struct RecordingRunner final : CommandRunner {
    std::vector<Call> calls;
    std::deque<CommandResult> results;

    std::optional<CommandResult> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override {
        calls.push_back({executable, arguments});
        if (results.empty()) {
            return std::nullopt;
        }
        const CommandResult result = results.front();
        results.pop_front();
        return result;
    }
};

class PmsetCommandTest : public ::testing::Test {
  protected:
    RecordingRunner* runner_ = new RecordingRunner;
    Backend backend_{std::unique_ptr<CommandRunner>(runner_)};
};

TEST_F(PmsetCommandTest, ReadsPmsetsListingUnlessItFails) {
    EXPECT_EQ(backend_.currentValue(), std::nullopt);  // cannot start
    runner_->results = {{0, " lowpowermode 1\n", "pmset: stray warning\n"},
                        {1, " lowpowermode 1\n", ""}};
    EXPECT_EQ(backend_.currentValue(), true);
    EXPECT_EQ(backend_.currentValue(), std::nullopt);
    EXPECT_EQ(runner_->calls, std::vector<Call>(3, {"/usr/bin/pmset", {"-g", "custom"}}));
}

TEST_F(PmsetCommandTest, SwitchesThroughTheScriptingHostWithAdministratorRights) {
    EXPECT_EQ(backend_.setEnabled(false), LowPowerModeError::launchFailed());
    runner_->results = {{0, "ignored output\n", ""}, {2, "", "execution error: denied (5)\n"}};
    EXPECT_EQ(backend_.setEnabled(true), std::nullopt);
    EXPECT_EQ(backend_.setEnabled(false), LowPowerModeError::failed("execution error: denied (5)"));
    const auto script = [](const char* value) {
        return Call{"/usr/bin/osascript",
                    {"-e", std::string("do shell script \"/usr/bin/pmset -a lowpowermode ") +
                               value + "\" with administrator privileges"}};
    };
    EXPECT_EQ(runner_->calls, (std::vector<Call>{script("0"), script("1"), script("0")}));
}

}  // namespace
}  // namespace voltaro
