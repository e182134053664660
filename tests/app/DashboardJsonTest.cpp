#include "app/DashboardJson.h"

#include <gtest/gtest.h>

#include "support/BatterySnapshots.h"

namespace voltaro {
namespace {

TEST(DashboardJsonTest, WritesTheStatesValuesWithNullForUnknownAndTheModelAsShown) {
    BatterySnapshot snapshot = testing::battery(57, true, true, std::nullopt, 12.5);
    snapshot.timeToFullMinutes = 95;
    snapshot.updatedAt = WallTime{} + std::chrono::milliseconds(1'795'000'000'123);
    const DashboardState state{
        .snapshot = snapshot,
        .lowPowerMode = std::nullopt,
        .applications =
            {{.id = "org.gnome.Nautilus", .name = "Files", .watts = 1.25, .icon = std::nullopt}},
        .collectedSeconds = 12,
        .windowLabel = "Last 12 s",
    };
    // Not the model of this state: the values come from the state, the texts from the model.
    const DashboardModel model{
        .header = {"Battery — 57%", "Charging", "Calculating time…"},
        .sections = {{.title = "Battery",
                      .rows = {{.title = "Low Power Mode",
                                .value = "—",
                                .caption = "Change cancelled",
                                .symbol = "leaf",
                                .switchState = SwitchState::unknown}}},
                     {.title = "App energy usage",
                      .detail = "Last 12 s",
                      .rows = {{.title = "Files", .value = "1.25 W", .symbol = "app", .rank = 1}}},
                     {.title = "Empty", .placeholder = "Gathering data…"}}};
    EXPECT_EQ(nlohmann::json::parse(dashboardJson(state, model).dump()), nlohmann::json::parse(R"({
        "snapshot": {"level": 57, "systemWatts": 12.5, "batteryPowerWatts": null,
                     "adapterWatts": null, "adapterCapacityWatts": null,
                     "temperatureCelsius": null, "timeToFullMinutes": 95,
                     "isConnectedToPower": true, "isCharging": true,
                     "updatedAt": "2026-11-18T11:06:40.123Z", "stateLabel": "Charging",
                     "health": {"cycleCount": null, "capacityPercent": null, "fullChargeWattHours":
                        null, "designWattHours": null, "fullChargeMilliampHours": null,
                        "designMilliampHours": null, "manufacturer": null, "model": null,
                        "technology": null}},
        "lowPowerMode": null,
        "applications": [{"id": "org.gnome.Nautilus", "name": "Files", "watts": 1.25}],
        "collectedSeconds": 12,
        "dashboard": {
            "header": {"chargeLine": "Battery — 57%", "stateLine": "Charging",
                       "chargeTime": "Calculating time…"},
            "sections": [
                {"title": "Battery", "detail": "", "placeholder": null,
                 "rows": [{"title": "Low Power Mode", "value": "—", "caption": "Change cancelled",
                           "symbol": "leaf", "switch": "unknown"}]},
                {"title": "App energy usage", "detail": "Last 12 s", "placeholder": null,
                 "rows": [{"title": "Files", "value": "1.25 W", "caption": null,
                           "symbol": "app", "rank": 1}]},
                {"title": "Empty", "detail": "", "rows": [], "placeholder": "Gathering data…"}]}})"));
}

TEST(DashboardJsonTest, PrintsNamesThatAreNotUtf8AndTheClocksFarthestTimes) {
    DashboardState state;
    state.snapshot.updatedAt = WallTime::min();
    state.applications = {
        {.id = "comm:caf\xC3\xA9\xFF", .name = "\xC0\xAFx", .watts = 2, .icon = std::nullopt}};
    const auto written =
        nlohmann::json::parse(dashboardJsonLine(state, dashboardModel(state, {"", ""})));
    EXPECT_EQ(written["applications"][0]["id"], "comm:caf\xC3\xA9\xEF\xBF\xBD");
    EXPECT_EQ(written["applications"][0]["name"], "\xEF\xBF\xBD\xEF\xBF\xBDx");
    EXPECT_EQ(written["dashboard"]["sections"][2]["rows"][0]["title"], "\xEF\xBF\xBD\xEF\xBF\xBDx");
    EXPECT_EQ(written["snapshot"]["updatedAt"], "1677-09-21T00:12:43.145Z");
    EXPECT_EQ(iso8601(WallTime::max()), "2262-04-11T23:47:16.854Z");
}

}  // namespace
}  // namespace voltaro
