#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/runtime/Clock.h"
#include "core/telemetry/BatteryHealth.h"

namespace voltaro {

// One reading of the internal battery and the power flowing through the machine. Every measured
// quantity is optional: absent means unknown, never zero.
struct BatterySnapshot {
    std::int64_t level = 0;  // percent, 0...100; 0 when unknown
    std::optional<double> systemWatts;
    std::optional<double> batteryPowerWatts;  // positive while charge flows into the battery
    std::optional<double> adapterWatts;
    std::optional<double> adapterCapacityWatts;
    std::optional<double> temperatureCelsius;
    std::optional<std::int64_t> timeToFullMinutes;
    bool isConnectedToPower = false;
    bool isCharging = false;
    WallTime updatedAt;
    BatteryHealth health;

    // The snapshot of a battery not read yet or unreadable; its time is that of its first use.
    static const BatterySnapshot& empty();

    // "Charging", "Power adapter" or "On battery", translated.
    std::string stateLabel() const;

    // Field by field, updatedAt included; NaN equals nothing, -0.0 equals 0.0.
    friend bool operator==(const BatterySnapshot&, const BatterySnapshot&) = default;
};

}  // namespace voltaro
