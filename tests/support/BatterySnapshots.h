#pragma once

#include <cstdint>
#include <optional>

#include "core/telemetry/BatterySnapshot.h"

namespace voltaro::testing {

// A snapshot with what the presentation reads; everything else stays unknown.
inline BatterySnapshot battery(std::int64_t level, bool connected = false, bool charging = false,
                               std::optional<double> batteryPowerWatts = std::nullopt,
                               std::optional<double> systemWatts = std::nullopt) {
    BatterySnapshot snapshot;
    snapshot.level = level;
    snapshot.isConnectedToPower = connected;
    snapshot.isCharging = charging;
    snapshot.batteryPowerWatts = batteryPowerWatts;
    snapshot.systemWatts = systemWatts;
    return snapshot;
}

inline BatterySnapshot batteryAt(std::int64_t level, std::optional<double> systemWatts) {
    return battery(level, false, false, std::nullopt, systemWatts);
}

}  // namespace voltaro::testing
