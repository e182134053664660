#include "core/presentation/MenuBarLabelTexts.h"

#include <gtest/gtest.h>

#include "support/BatterySnapshots.h"

namespace voltaro {
namespace {

using testing::battery;
using testing::batteryAt;

TEST(MenuBarLabelTextsTest, StatusAndReservedTextsFollowTheChoices) {
    const struct {
        const char* description;
        BatterySnapshot snapshot;
        bool showsPercentage;
        bool showsPowerUsage;
        std::optional<std::string> status;
        std::string reserved;
    } cases[] = {
        {"both off", batteryAt(57, 12.5), false, false, std::nullopt, ""},
        {"percentage only, full", batteryAt(100, 12.5), true, false, "100%", "100%"},
        {"power only", batteryAt(57, 7.4), false, true, "7 W", "000 W"},
        {"power only, unknown", batteryAt(57, std::nullopt), false, true, std::nullopt, "000 W"},
        {"both, power unknown", batteryAt(5, std::nullopt), true, true, "5%", "100% · 000 W"},
        {"both, half a watt rounds away from zero", batteryAt(57, 12.5), true, true, "57% · 13 W",
         "100% · 000 W"},
        {"both, large draw", batteryAt(100, 119.6), true, true, "100% · 120 W", "100% · 000 W"},
    };
    for (const auto& c : cases) {
        const MenuBarLabelChoices choices{c.showsPercentage, c.showsPowerUsage, true};
        EXPECT_EQ(statusText(c.snapshot, choices), c.status) << c.description;
        EXPECT_EQ(reservedStatusText(choices), c.reserved) << c.description;
    }
}

TEST(MenuBarLabelTextsTest, HighlightsOnlyADrainWhileConnected) {
    const struct {
        bool connected;
        std::optional<double> batteryWatts;
        bool preference;
        bool highlighted;
    } cases[] = {
        {true, -0.05, true, false}, {true, -0.2, true, true},   {true, std::nullopt, true, false},
        {false, -12, true, false},  {true, -0.2, false, false}, {true, -0.1, true, false},
        {true, -0.11, true, true},
    };
    for (const auto& c : cases) {
        const BatterySnapshot snapshot = battery(50, c.connected, false, c.batteryWatts, 10);
        EXPECT_EQ(isHighlighted(snapshot, {true, true, c.preference}), c.highlighted)
            << c.connected << " " << c.batteryWatts.value_or(0) << " " << c.preference;
    }
}

TEST(MenuBarLabelTextsTest, AccessibilityTextNamesLevelAndState) {
    EXPECT_EQ(accessibilityText(batteryAt(0, std::nullopt)), "Battery 0 percent, On battery");
    EXPECT_EQ(accessibilityText(battery(57, true, true)), "Battery 57 percent, Charging");
}

TEST(MenuBarLabelTextsTest, ToolTipGivesChargePowerAndTimeToFull) {
    const struct {
        BatterySnapshot snapshot;
        bool charging;
        std::optional<std::int64_t> minutesToFull;
        std::string description;
    } cases[] = {
        {batteryAt(57, 12.5), false, 40, "57% · 13 W"},
        {batteryAt(57, std::nullopt), true, std::nullopt, "57%"},
        {batteryAt(57, 20), true, 65, "57% · 20 W\nUntil fully charged: 1 hour, 5 minutes"},
        {batteryAt(100, 20), true, 0, "100% · 20 W"},
    };
    for (auto c : cases) {
        c.snapshot.isCharging = c.charging;
        c.snapshot.timeToFullMinutes = c.minutesToFull;
        EXPECT_EQ(toolTipDescription(c.snapshot), c.description);
    }
}

}  // namespace
}  // namespace voltaro
