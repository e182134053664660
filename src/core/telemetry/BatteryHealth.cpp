#include "core/telemetry/BatteryHealth.h"

#include <cmath>

#include "core/telemetry/BatteryReader.h"

namespace voltaro {
namespace {

// Far beyond any battery: a figure past these is the firmware's garbage.
constexpr std::int64_t maximumCycles = 100'000;
constexpr double maximumMilliampHours = 1'000'000;
constexpr double maximumWattHours = 10'000;
constexpr double maximumPercent = 200;
constexpr std::size_t maximumTextLength = 64;

std::optional<double> positiveUpTo(std::optional<double> value, double maximum) {
    if (value && std::isfinite(*value) && *value > 0 && *value <= maximum) {
        return value;
    }
    return std::nullopt;
}

std::optional<double> number(const PropertyDictionary& properties, std::string_view key) {
    return BatteryReader::doubleValue(properties.find(key));
}

std::optional<double> wattHours(const PropertyDictionary& properties, std::string_view key) {
    const auto milliwattHours = number(properties, key);
    return positiveUpTo(milliwattHours ? std::optional(*milliwattHours / 1000) : std::nullopt,
                        maximumWattHours);
}

std::optional<std::string> text(const PropertyDictionary& properties, std::string_view key) {
    const PropertyValue* value = properties.find(key);
    const std::string* held = value ? value->getIf<std::string>() : nullptr;
    const auto first = held ? held->find_first_not_of(" \t\n") : std::string::npos;
    if (first == std::string::npos) {
        return std::nullopt;
    }
    std::string trimmed = held->substr(first, held->find_last_not_of(" \t\n") - first + 1);
    if (trimmed.size() > maximumTextLength) {
        return std::nullopt;
    }
    return trimmed;
}

std::optional<double> percentOf(std::optional<double> full, std::optional<double> design) {
    if (!full || !design) {
        return std::nullopt;
    }
    const double percent = *full / *design * 100;
    return percent <= maximumPercent ? std::optional(percent) : std::nullopt;
}

}  // namespace

BatteryHealth batteryHealth(const PropertyDictionary& properties) {
    BatteryHealth health;
    const auto cycles = BatteryReader::integer(properties.find("CycleCount"));
    if (cycles && *cycles >= 0 && *cycles <= maximumCycles) {
        health.cycleCount = cycles;
    }

    health.designWattHours = wattHours(properties, "DesignEnergy");
    health.fullChargeWattHours = wattHours(properties, "FullChargeEnergy");
    health.designMilliampHours =
        positiveUpTo(number(properties, "DesignCapacity"), maximumMilliampHours);
    // Where a raw figure stands beside it, MaxCapacity is a percentage and the raw figure the mAh;
    // elsewhere MaxCapacity is in mAh, and a pack that holds at most 100 mAh is no pack.
    std::optional<double> maxCapacityPercent;
    if (properties.contains("AppleRawMaxCapacity")) {
        health.fullChargeMilliampHours =
            positiveUpTo(number(properties, "AppleRawMaxCapacity"), maximumMilliampHours);
    } else if (const auto maximum = number(properties, "MaxCapacity");
               maximum && *maximum <= 100 && health.designMilliampHours.value_or(0) > 100) {
        maxCapacityPercent = positiveUpTo(maximum, 100);
    } else {
        health.fullChargeMilliampHours = positiveUpTo(maximum, maximumMilliampHours);
    }

    health.capacityPercent = percentOf(health.fullChargeWattHours, health.designWattHours);
    if (!health.capacityPercent) {
        health.capacityPercent =
            percentOf(health.fullChargeMilliampHours, health.designMilliampHours);
    }
    if (!health.capacityPercent) {
        health.capacityPercent = maxCapacityPercent;
    }

    health.manufacturer = text(properties, "Manufacturer");
    health.model = text(properties, "DeviceName");
    health.technology = text(properties, "Technology");
    return health;
}

}  // namespace voltaro
