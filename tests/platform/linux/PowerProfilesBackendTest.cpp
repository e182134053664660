#include "platform/linux/PowerProfilesBackend.h"

#include <gtest/gtest.h>

#include "support/ScopedEnvironment.h"
#include "support/TemporaryDirectory.h"

namespace voltaro::platform {
namespace {

struct ErrorCase {
    std::string name;
    std::string errorName;
    std::string message;
    LowPowerModeError expected;
};
void PrintTo(const ErrorCase& c, std::ostream* out) {
    *out << c.name;
}

class PowerProfilesSwitchErrorTest : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(PowerProfilesSwitchErrorTest, MapsTheErrorReply) {
    EXPECT_EQ(PowerProfilesBackend::switchError(GetParam().errorName, GetParam().message),
              GetParam().expected);
}

const LowPowerModeError noDaemon = LowPowerModeError::launchFailed();
const LowPowerModeError refused = LowPowerModeError::cancelled();

INSTANTIATE_TEST_SUITE_P(
    Replies, PowerProfilesSwitchErrorTest,
    ::testing::Values(
        ErrorCase{"NotInstalled", "org.freedesktop.DBus.Error.ServiceUnknown",
                  "The name is not activatable", noDaemon},
        ErrorCase{"NotRunning", "org.freedesktop.DBus.Error.NameHasNoOwner", "", noDaemon},
        ErrorCase{"WouldNotStart", "org.freedesktop.DBus.Error.Spawn.ChildExited", "", noDaemon},
        ErrorCase{"PolkitRefused", "org.freedesktop.PolicyKit1.Error.NotAuthorized",
                  "Not authorized", refused},
        ErrorCase{"PolkitDismissed", "org.freedesktop.PolicyKit1.Error.Cancelled", "", refused},
        ErrorCase{"DaemonRefused", "org.freedesktop.DBus.Error.AccessDenied",
                  "Not allowed to perform action", refused},
        ErrorCase{"NoAgentToAsk", "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", "",
                  refused},
        ErrorCase{"DaemonMessage", "org.freedesktop.DBus.Error.InvalidArgs",
                  "Profile 'power-saver' not available",
                  LowPowerModeError::failed("Profile 'power-saver' not available")},
        ErrorCase{"TimedOut", "org.freedesktop.DBus.Error.NoReply", "Method call timed out",
                  LowPowerModeError::failed("Method call timed out")},
        ErrorCase{"NamelessError", "", "", LowPowerModeError::failed("")},
        ErrorCase{"LookalikeName", "org.freedesktop.DBus.Error.ServiceUnknownish", "odd",
                  LowPowerModeError::failed("odd")}),
    [](const auto& info) { return info.param.name; });

TEST(PowerProfilesBackendTest, WithoutASystemBusTheModeIsUnknownAndCannotBeSwitched) {
    testing::TemporaryDirectory directory;
    testing::ScopedEnvironment bus("DBUS_SYSTEM_BUS_ADDRESS",
                                   "unix:path=" + (directory.path() / "no-bus").string());
    PowerProfilesBackend backend;
    EXPECT_EQ(backend.currentValue(), std::nullopt);
    EXPECT_EQ(backend.setEnabled(true), LowPowerModeError::launchFailed());
}

}  // namespace
}  // namespace voltaro::platform
