#include "app/DashboardJson.h"

#include <gtest/gtest.h>

namespace voltaro {
namespace {

TEST(DashboardJsonTest, WritesEveryFieldWithNullForUnknown) {
    BatterySnapshot snapshot;
    snapshot.level = 57;
    snapshot.systemWatts = 12.5;
    snapshot.timeToFullMinutes = 95;
    snapshot.isConnectedToPower = true;
    snapshot.isCharging = true;
    snapshot.updatedAt = WallTime{} + std::chrono::milliseconds(1'795'000'000'123);

    const DashboardState state{
        .snapshot = snapshot,
        .lowPowerMode = std::nullopt,
        .applications =
            {{.id = "org.gnome.Nautilus", .name = "Files", .watts = 1.25, .icon = std::nullopt}},
        .collectedSeconds = 12,
        .windowLabel = "Last 12 s",
    };
    const auto json = nlohmann::json::parse(dashboardJson(state).dump());
    const auto& s = json.at("snapshot");
    EXPECT_EQ(s.at("level"), 57);
    EXPECT_EQ(s.at("systemWatts"), 12.5);
    EXPECT_TRUE(s.at("batteryPowerWatts").is_null());
    EXPECT_TRUE(s.at("adapterWatts").is_null());
    EXPECT_TRUE(s.at("adapterCapacityWatts").is_null());
    EXPECT_TRUE(s.at("temperatureCelsius").is_null());
    EXPECT_EQ(s.at("timeToFullMinutes"), 95);
    EXPECT_EQ(s.at("isConnectedToPower"), true);
    EXPECT_EQ(s.at("isCharging"), true);
    EXPECT_EQ(s.at("stateLabel"), "Charging");
    EXPECT_EQ(s.at("updatedAt"), "2026-11-18T11:06:40.123Z");
    EXPECT_TRUE(json.at("lowPowerMode").is_null());
    EXPECT_EQ(
        json.at("applications"),
        nlohmann::json::parse(R"([{"id":"org.gnome.Nautilus","name":"Files","watts":1.25}])"));
    EXPECT_EQ(json.at("collectedSeconds"), 12);
}

}  // namespace
}  // namespace voltaro
