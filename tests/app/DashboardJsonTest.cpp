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
    EXPECT_EQ(nlohmann::json::parse(dashboardJson(state).dump()), nlohmann::json::parse(R"({
        "snapshot": {"level": 57, "systemWatts": 12.5, "batteryPowerWatts": null,
                     "adapterWatts": null, "adapterCapacityWatts": null,
                     "temperatureCelsius": null, "timeToFullMinutes": 95,
                     "isConnectedToPower": true, "isCharging": true,
                     "updatedAt": "2026-11-18T11:06:40.123Z", "stateLabel": "Charging"},
        "lowPowerMode": null,
        "applications": [{"id": "org.gnome.Nautilus", "name": "Files", "watts": 1.25}],
        "collectedSeconds": 12})"));
}

TEST(DashboardJsonTest, PrintsNamesThatAreNotUtf8AndTheClocksFarthestTimes) {
    DashboardState state;
    state.snapshot.updatedAt = WallTime::min();
    state.applications = {
        {.id = "comm:caf\xC3\xA9\xFF", .name = "\xC0\xAFx", .watts = 2, .icon = std::nullopt}};
    const auto written = nlohmann::json::parse(dashboardJsonLine(state));
    EXPECT_EQ(written["applications"][0]["id"], "comm:caf\xC3\xA9\xEF\xBF\xBD");
    EXPECT_EQ(written["applications"][0]["name"], "\xEF\xBF\xBD\xEF\xBF\xBDx");
    EXPECT_EQ(written["snapshot"]["updatedAt"], "1677-09-21T00:12:43.145Z");
    EXPECT_EQ(iso8601(WallTime::max()), "2262-04-11T23:47:16.854Z");
}

}  // namespace
}  // namespace voltaro
