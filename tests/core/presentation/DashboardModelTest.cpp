#include "core/presentation/DashboardModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/BatterySnapshots.h"

namespace voltaro {
namespace {

using testing::battery;

BatterySnapshot with(BatterySnapshot snapshot, void (*change)(BatterySnapshot&)) {
    change(snapshot);
    return snapshot;
}

BatterySnapshot worn(BatteryHealth health) {
    BatterySnapshot snapshot = battery(50, false, false);
    snapshot.health = std::move(health);
    return snapshot;
}

DashboardState state(BatterySnapshot snapshot, std::optional<bool> lowPowerMode = std::nullopt) {
    return {.snapshot = snapshot, .lowPowerMode = lowPowerMode, .windowLabel = "average"};
}

// One line per row, so that each case reads like the part of the dashboard it describes.
std::vector<std::string> lines(const DashboardModel& model, std::string_view sectionTitle) {
    const auto& header = model.header;
    if (sectionTitle.empty()) {
        return {header.chargeLine + " | " + header.stateLine + " | " + header.chargeTime};
    }
    std::vector<std::string> shown;
    for (const DashboardSection& section : model.sections) {
        if (section.title != sectionTitle) {
            continue;
        }
        shown.push_back("# " + section.detail + section.placeholder.value_or(""));
        for (const DashboardRow& row : section.rows) {
            shown.push_back(
                (row.rank ? std::to_string(*row.rank) + ". " : "") + row.title + " | " + row.value +
                " | " + std::string(row.symbol) + (row.caption ? " | " + *row.caption : "") +
                (row.switchState ? " | switch " + std::to_string(static_cast<int>(*row.switchState))
                                 : ""));
        }
    }
    return shown;
}

TEST(DashboardModelTest, DecidesEveryRowFromTheStateAndTheDisplayChoices) {
    const BatterySnapshot charging = battery(80, true, true, 20);
    const BatterySnapshot onAdapter = with(battery(80, true, false, -3.2), [](auto& s) {
        s.systemWatts = 33.2;
        s.adapterWatts = 30;
        s.adapterCapacityWatts = 29.5;
    });
    DashboardState changing =
        state(with(battery(50, false, false), [](auto& s) { s.temperatureCelsius = 31.46; }), true);
    changing.isChangingLowPowerMode = true;
    changing.lowPowerModeError = "Change cancelled";
    DashboardState ranked = state(battery(50, false, false));
    for (const double watts : {6.0, 1.2345, 0.01, 0.005, 0.0}) {
        ranked.applications.push_back({.id = "id", .name = "app", .watts = watts, .icon = {}});
    }
    const char* up = "arrow.up.to.line.compact";
    const char* down = "arrow.down.to.line.compact";
    const struct {
        const char* description;
        DashboardState state;
        const char* unit;
        const char* section;  // empty: the header
        std::vector<std::string> expected;
    } cases[] = {
        {"charging with an estimate",
         state(with(charging, [](auto& s) { s.timeToFullMinutes = 95; })),
         "celsius",
         "",
         {"Battery — 80% | Charging | Until fully charged\n1 hour, 35 minutes"}},
        {"charging without an estimate",
         state(charging),
         "celsius",
         "",
         {"Battery — 80% | Charging | Calculating time…"}},
        {"charging but not connected",
         state(battery(80, false, true)),
         "celsius",
         "",
         {"Battery — 80% | Charging | Not charging"}},
        {"on adapter",
         state(onAdapter),
         "celsius",
         "",
         {"Battery — 80% | Power adapter | Not charging"}},
        {"draining",
         state(battery(45, false, false, -9)),
         "celsius",
         "",
         {"Battery — 45% | On battery | Not charging"}},
        {"fully charged",
         state(battery(100, true, true)),
         "celsius",
         "",
         {"Battery — 100% | Charging | Battery is fully charged"}},
        {"one percent short of full",
         state(battery(99, true, true)),
         "celsius",
         "",
         {"Battery — 99% | Charging | Calculating time…"}},
        {"no battery",
         state(BatterySnapshot::empty()),
         "celsius",
         "",
         {"No battery found | On battery | "}},
        {"draining: only the machine's power",
         state(battery(45, false, false, -9)),
         "celsius",
         "Power",
         {"# ", "Power usage | — W | bolt"}},
        {"charging: the flow into the battery",
         state(charging),
         "celsius",
         "Power",
         {"# ", "Power usage | — W | bolt", "To battery | 20.0 W | " + std::string(down),
          "Charger output | — W | powerplug"}},
        {"on adapter, drained",
         state(onAdapter),
         "celsius",
         "Power",
         {"# ", "Power usage | 33.2 W | bolt", "From battery | 3.2 W | " + std::string(up),
          "Charger output | 30.0 W | powerplug | Charger rated at 30 W"}},
        {"no battery: no power section", state(BatterySnapshot::empty()), "celsius", "Power", {}},
        {"the battery section",
         state(battery(50, false, false), false),
         "fahrenheit",
         "Battery",
         {"# ", "Temperature | — °F | thermometer.medium",
          "Low Power Mode | Off | leaf | switch 0"}},
        {"temperature in Fahrenheit, low power on",
         changing,
         "fahrenheit",
         "Battery",
         {"# ", "Temperature | 88.6 °F | thermometer.medium",
          "Low Power Mode | On | leaf | Change cancelled | switch 3"}},
        {"low power unknown, no battery",
         state(BatterySnapshot::empty()),
         "celsius",
         "Battery",
         {"# ", "Low Power Mode | — | leaf | switch 2"}},
        {"empty ranking",
         state(charging),
         "celsius",
         "App energy usage",
         {"# averageGathering data…"}},
        {"full ranking",
         ranked,
         "celsius",
         "App energy usage",
         {"# average", "1. app | 6.00 W | app", "2. app | 1.23 W | app", "3. app | 0.01 W | app",
          "4. app | less than 0.01 W | app", "5. app | 0.00 W | app"}},
        {"health in watt-hours",
         state(worn({.cycleCount = 143,
                     .capacityPercent = 93.52,
                     .fullChargeWattHours = 47.23,
                     .designWattHours = 50.5,
                     .manufacturer = "SMP",
                     .technology = "Li-poly"})),
         "celsius",
         "Battery health",
         {"# ", "Capacity | 94% | battery.100percent | 47.2 of 50.5 Wh",
          "Cycle count | 143 | arrow.triangle.2.circlepath",
          "Model | — | info.circle | SMP · Li-poly"}},
        {"no battery: no health", state(BatterySnapshot::empty()), "celsius", "Battery health", {}},
    };
    for (const auto& c : cases) {
        const DashboardModel model = dashboardModel(c.state, {c.unit, "Power usage"});
        EXPECT_EQ(lines(model, c.section), c.expected) << c.description;
    }
}

TEST(DashboardModelTest, BatteryFlowDrainsOnlyBelowATenthOfAWatt) {
    const std::pair<std::optional<double>, const char*> cases[] = {
        {-0.15, "From battery | 0.1 W | arrow.up.to.line.compact"},
        {-0.1, "To battery | 0.1 W | arrow.down.to.line.compact"},
        {-0.05, "To battery | 0.1 W | arrow.down.to.line.compact"},
        {0.0, "To battery | 0.0 W | arrow.down.to.line.compact"},
        {std::nullopt, "To battery | — W | arrow.down.to.line.compact"},
    };
    for (const auto& [watts, expected] : cases) {
        const auto model =
            dashboardModel(state(battery(50, true, false, watts)), {"", "Power usage"});
        EXPECT_EQ(lines(model, "Power").at(2), expected);
    }
}

TEST(DashboardModelTest, ChargerRatingRoundsHalfAwayFromZeroAndSkipsWhatCannotBeWritten) {
    const std::pair<double, std::optional<std::string>> cases[] = {{96.0, "Charger rated at 96 W"},
                                                                   {29.5, "Charger rated at 30 W"},
                                                                   {29.49, "Charger rated at 29 W"},
                                                                   {NAN, std::nullopt},
                                                                   {1e300, std::nullopt}};
    for (const auto& [watts, expected] : cases) {
        BatterySnapshot snapshot = battery(50, true, false, 0);
        snapshot.adapterCapacityWatts = watts;
        const auto model = dashboardModel(state(snapshot), {"", "Power usage"});
        EXPECT_EQ(model.sections.at(0).rows.at(2).caption, expected) << watts;
    }
}

}  // namespace
}  // namespace voltaro
