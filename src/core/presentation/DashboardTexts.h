#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/telemetry/BatterySnapshot.h"

namespace voltaro {

// The texts and symbol choices of the dashboard, translated and in the user's number format.

// "Battery — 85%"
std::string chargeLine(const BatterySnapshot& snapshot);
// The header's right-hand text: fully charged, not charging, calculating, or the time to full.
std::string chargeTimeText(const BatterySnapshot& snapshot);
// "2 hours, 5 minutes": hours and minutes written out, at most two units.
std::string formattedChargeDuration(std::int64_t minutes);

// The title of the machine's power card: the Mac's own name on macOS, a neutral one elsewhere.
std::string systemPowerTitle();

// The battery gives more than a tenth of a watt although it may be connected.
bool isBatteryDraining(const BatterySnapshot& snapshot);
// "From battery" while it drains, "To battery" otherwise.
std::string batteryFlowTitle(const BatterySnapshot& snapshot);
std::string_view batteryFlowSymbol(const BatterySnapshot& snapshot);
// The power that leaves or enters the battery, whichever way it flows.
std::optional<double> batteryFlowWatts(const BatterySnapshot& snapshot);
// "Charger rated at 96 W", or nothing when the rating is unknown.
std::optional<std::string> adapterCaption(const BatterySnapshot& snapshot);

// A metric card's value: "12.3 W", or "— W" when unknown.
std::string metricValueText(std::optional<double> value, std::string_view unit);
// An application's power: "1.23 W", or "less than 0.01 W" for a trace.
std::string applicationWattsText(double watts);
// The localised unit of power.
std::string wattUnit();

}  // namespace voltaro
