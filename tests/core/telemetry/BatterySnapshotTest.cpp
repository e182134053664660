#include "core/telemetry/BatterySnapshot.h"

#include <gtest/gtest.h>

#include "support/BatterySnapshots.h"

namespace voltaro {
namespace {

TEST(BatterySnapshotTest, StateLabelFollowsChargingThenAdapter) {
    struct Case {
        bool charging, connected;
        const char* label;
    };
    for (const Case c : {Case{true, false, "Charging"}, Case{true, true, "Charging"},
                         Case{false, true, "Power adapter"}, Case{false, false, "On battery"}}) {
        EXPECT_EQ(testing::battery(0, c.connected, c.charging).stateLabel(), c.label);
    }
    EXPECT_EQ(BatterySnapshot::empty().stateLabel(), "On battery");
}

}  // namespace
}  // namespace voltaro
