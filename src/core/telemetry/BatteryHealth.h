#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/telemetry/PropertyDictionary.h"

namespace voltaro {

// How worn the battery is and what it is, as far as the hardware tells. Capacities come as energy
// or as charge, whichever the battery counts in; several batteries count as one.
struct BatteryHealth {
    std::optional<std::int64_t> cycleCount{};
    // Full-charge capacity over design capacity; above 100 when the battery holds more than new.
    std::optional<double> capacityPercent{};
    std::optional<double> fullChargeWattHours{};
    std::optional<double> designWattHours{};
    std::optional<double> fullChargeMilliampHours{};
    std::optional<double> designMilliampHours{};
    std::optional<std::string> manufacturer{};
    std::optional<std::string> model{};
    std::optional<std::string> technology{};  // "Li-ion", "Li-poly", ...

    friend bool operator==(const BatteryHealth&, const BatteryHealth&) = default;
};

// The health figures of a smart-battery dictionary: "CycleCount", "DesignCapacity" and
// "AppleRawMaxCapacity" (mAh), "MaxCapacity" (mAh, or percent where the raw figure stands beside
// it), "DesignEnergy" and "FullChargeEnergy" (mWh), "Manufacturer", "DeviceName", "Technology".
// An implausible figure is unknown, never clamped.
BatteryHealth batteryHealth(const PropertyDictionary& properties);

}  // namespace voltaro
