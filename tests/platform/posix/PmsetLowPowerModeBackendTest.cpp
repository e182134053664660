#include "core/controls/PmsetLowPowerModeBackend.h"

#include <gtest/gtest.h>

#include <map>

#include "support/TemporaryDirectory.h"
#include "platform/posix/PosixCommandRunner.h"

namespace voltaro {
namespace {

struct Call {
    std::string executable;
    std::vector<std::string> arguments;
    bool operator==(const Call&) const = default;
};

// Runs a stand-in script in place of the system's command, through the real runner.
class StandInRunner final : public CommandRunner {
  public:
    std::map<std::string, std::filesystem::path> standIns;
    std::vector<Call> calls;

    std::optional<CommandResult> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override {
        calls.push_back({executable, arguments});
        const auto found = standIns.find(executable);
        return real_.run(
            found == standIns.end() ? "/nonexistent/voltaro-stand-in" : found->second.string(),
            arguments);
    }

  private:
    platform::PosixCommandRunner real_;
};

class PmsetLowPowerModeBackendTest : public ::testing::Test {
  protected:
    // A stand-in for `executable` that prints the given bytes and ends with `exitStatus`.
    void standIn(const std::string& executable, std::string_view standardOutput,
                 std::string_view standardError, int exitStatus) {
        const auto name = std::filesystem::path(executable).filename();
        const auto out = directory_.write(name.string() + ".out", standardOutput);
        const auto err = directory_.write(name.string() + ".err", standardError);
        runner_->standIns[executable] =
            directory_.writeScript(name, "cat '" + out.string() + "'\ncat '" + err.string() +
                                             "' >&2\nexit " + std::to_string(exitStatus) + "\n");
    }

    testing::TemporaryDirectory directory_;
    StandInRunner* runner_ = nullptr;
    PmsetLowPowerModeBackend backend_{[this] {
        auto runner = std::make_unique<StandInRunner>();
        runner_ = runner.get();
        return runner;
    }()};
};

struct ReadCase {
    std::string name;
    std::string listing;
    int exitStatus;
    std::optional<bool> expected;
};
void PrintTo(const ReadCase& c, std::ostream* out) {
    *out << c.name;
}

class PmsetReadTest : public PmsetLowPowerModeBackendTest,
                      public ::testing::WithParamInterface<ReadCase> {};

TEST_P(PmsetReadTest, ReadsTheFirstLowPowerModeLine) {
    standIn("/usr/bin/pmset", GetParam().listing, "pmset: stray warning\n", GetParam().exitStatus);
    EXPECT_EQ(backend_.currentValue(), GetParam().expected);
    EXPECT_EQ(runner_->calls, (std::vector<Call>{{"/usr/bin/pmset", {"-g", "custom"}}}));
}

const char* const batteryFirst =
    "Battery Power:\n lowpowermode         1\n standby              1\n"
    "AC Power:\n lowpowermode         0\n standby              1\n";

INSTANTIATE_TEST_SUITE_P(
    Listings, PmsetReadTest,
    ::testing::Values(
        ReadCase{"On", " lowpowermode 1\n", 0, true},
        ReadCase{"Off", " lowpowermode 0\n", 0, false},
        ReadCase{"OnlyExactlyOneCountsAsOn", " lowpowermode 2\n", 0, false},
        ReadCase{"NotOneEither", " lowpowermode 01\n", 0, false},
        ReadCase{"FirstMatchingLineDecides", batteryFirst, 0, true},
        ReadCase{"FirstMatchingLineDecidesOff", "AC Power:\n lowpowermode 0\n lowpowermode 1\n", 0,
                 false},
        ReadCase{"TabsAndSpacesAnywhere", "\n\n\t  lowpowermode \t\t  1 \t \n", 0, true},
        ReadCase{"NoMatchingLine", "Battery Power:\n standby 1\n powernap 0\n", 0, std::nullopt},
        ReadCase{"CaseMatters", " LowPowerMode 1\n", 0, std::nullopt},
        ReadCase{"EmptyOutput", "", 0, std::nullopt},
        ReadCase{"FailedCommand", " lowpowermode 1\n", 1, std::nullopt},
        ReadCase{"InvalidUtf8", " lowpowermode 1\n \xC0\xAF\n", 0, std::nullopt},
        ReadCase{"NoFinalLineFeed", " lowpowermode 1", 0, true},
        ReadCase{"UnicodeText", "Batterie \xE2\x80\x93 \xC3\xA9nergie\n lowpowermode 1\n", 0,
                 true}),
    [](const auto& info) { return info.param.name; });

TEST_F(PmsetLowPowerModeBackendTest, ACommandThatCannotStartReadsAsUnknown) {
    EXPECT_EQ(backend_.currentValue(), std::nullopt);
}

struct SwitchCase {
    std::string name;
    int exitStatus;
    std::string standardError;
    std::optional<LowPowerModeError> expected;
};
void PrintTo(const SwitchCase& c, std::ostream* out) {
    *out << c.name;
}

class PmsetSwitchTest : public PmsetLowPowerModeBackendTest,
                        public ::testing::WithParamInterface<SwitchCase> {};

TEST_P(PmsetSwitchTest, MapsTheScriptingHostsOutcome) {
    standIn("/usr/bin/osascript", "ignored output\n", GetParam().standardError,
            GetParam().exitStatus);
    EXPECT_EQ(backend_.setEnabled(true), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Outcomes, PmsetSwitchTest,
    ::testing::Values(
        SwitchCase{"Success", 0, "", std::nullopt},
        SwitchCase{"SuccessWhateverItPrints", 0, "cancel", std::nullopt},
        SwitchCase{"UserCancelled", 1, "0:70: execution error: User canceled. (-128)\n",
                   LowPowerModeError::cancelled()},
        SwitchCase{"StatusOneWithoutTheWord", 1, "execution error: not permitted\n",
                   LowPowerModeError::cancelled()},
        SwitchCase{"CapitalsWithAnotherStatus", 7, "CANCEL", LowPowerModeError::cancelled()},
        SwitchCase{"PartOfALongerWord", 2, "the request was Cancelled by policy",
                   LowPowerModeError::cancelled()},
        SwitchCase{"OtherStatusGivesTheBareText", 2, "  \t execution error: denied (5)\n",
                   LowPowerModeError::failed("execution error: denied (5)")},
        SwitchCase{"LineBreaksInsideAreKept", 3, "\nfirst line\r\nsecond line\n\n",
                   LowPowerModeError::failed("first line\r\nsecond line")},
        SwitchCase{"UnicodeSpacesTrimmed", 3, "\xC2\xA0r\xC3\xA9sultat\xE2\x80\xA8",
                   LowPowerModeError::failed("r\xC3\xA9sultat")},
        SwitchCase{"EmptyErrorOutput", 2, "", LowPowerModeError::failed("")},
        SwitchCase{"InvalidUtf8CountsAsEmpty", 2, "cancel \xFF\xFE", LowPowerModeError::failed("")},
        SwitchCase{"InvalidUtf8WithStatusOne", 1, "\xED\xA0\x80", LowPowerModeError::cancelled()}),
    [](const auto& info) { return info.param.name; });

TEST_F(PmsetLowPowerModeBackendTest, RunsPmsetThroughTheScriptingHostWithAdministratorRights) {
    standIn("/usr/bin/osascript", "", "", 0);
    EXPECT_EQ(backend_.setEnabled(true), std::nullopt);
    EXPECT_EQ(backend_.setEnabled(false), std::nullopt);
    EXPECT_EQ(
        runner_->calls,
        (std::vector<Call>{
            {"/usr/bin/osascript",
             {"-e",
              R"(do shell script "/usr/bin/pmset -a lowpowermode 1" with administrator privileges)"}},
            {"/usr/bin/osascript",
             {"-e",
              R"(do shell script "/usr/bin/pmset -a lowpowermode 0" with administrator privileges)"}}}));
}

TEST_F(PmsetLowPowerModeBackendTest, AScriptingHostThatCannotStartIsALaunchFailure) {
    EXPECT_EQ(backend_.setEnabled(false), LowPowerModeError::launchFailed());
}

}  // namespace
}  // namespace voltaro
