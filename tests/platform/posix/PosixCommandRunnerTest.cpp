#include "platform/posix/PosixCommandRunner.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace voltaro::platform {
namespace {

class PosixCommandRunnerTest : public ::testing::Test {
  protected:
    testing::TemporaryDirectory directory_;
    PosixCommandRunner runner_;
};

TEST_F(PosixCommandRunnerTest, PassesArgumentsAsGivenAndKeepsTheStreamsApart) {
    const auto script = directory_.writeScript("echo-args", R"(for a in "$@"; do echo "[$a]"; done
echo "to stderr" >&2
exit 3
)");
    const auto result = runner_.run(script, {"-e", "two words", "", "\"quoted\" $HOME"});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitStatus, 3);
    EXPECT_EQ(result->standardOutput, "[-e]\n[two words]\n[]\n[\"quoted\" $HOME]\n");
    EXPECT_EQ(result->standardError, "to stderr\n");
}

TEST_F(PosixCommandRunnerTest, DrainsSeveralMegabytesOnBothStreams) {
    // Error output first: a reader that waited for the end of standard output would stall here.
    const auto script = directory_.writeScript("flood", R"(head -c 6000000 /dev/zero | tr '\0' e >&2
head -c 5000000 /dev/zero | tr '\0' o
head -c 3000000 /dev/zero | tr '\0' e >&2
)");
    const auto result = runner_.run(script, {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitStatus, 0);
    EXPECT_EQ(result->standardOutput, std::string(5000000, 'o'));
    EXPECT_EQ(result->standardError, std::string(9000000, 'e'));
}

TEST_F(PosixCommandRunnerTest, ACommandThatCannotStartGivesNothing) {
    const auto notExecutable = directory_.write("plain-file", "#!/bin/sh\nexit 0\n");
    EXPECT_FALSE(runner_.run((directory_.path() / "missing").string(), {}));
    EXPECT_FALSE(runner_.run(notExecutable, {}));
    EXPECT_FALSE(runner_.run(directory_.path(), {}));
}

TEST_F(PosixCommandRunnerTest, ACommandEndedByASignalReportsFailure) {
    const auto script = directory_.writeScript("killed", "echo partial\nkill -KILL $$\n");
    const auto result = runner_.run(script, {});
    ASSERT_TRUE(result);
    EXPECT_NE(result->exitStatus, 0);
    EXPECT_EQ(result->standardOutput, "partial\n");
}

TEST_F(PosixCommandRunnerTest, TheCommandGetsNoInputAndNoneOfOurDescriptors) {
    const int inherited = ::open("/dev/null", O_RDONLY);  // deliberately without O_CLOEXEC
    ASSERT_GE(inherited, 0);
    const auto script = directory_.writeScript("descriptors", R"(readlink /proc/$$/fd/0
test -e /proc/$$/fd/$1 && echo leaked
exit 0
)");
    const auto result = runner_.run(script, {std::to_string(inherited)});
    ::close(inherited);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "/dev/null\n");
}

}  // namespace
}  // namespace voltaro::platform
