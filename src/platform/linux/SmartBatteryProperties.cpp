#include "platform/linux/SmartBatteryProperties.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "platform/linux/SmartBatteryHealth.h"

namespace voltaro::platform {

namespace {

using Batteries = std::vector<SysfsBattery>;
using Field = std::optional<std::int64_t> SysfsBattery::*;

constexpr double decikelvinAtZeroCelsius = 2731.5;
// A wait beyond this (about 19 years) is no estimate.
constexpr double maximumEstimateMinutes = 10'000'000.0;
// The largest magnitude a double rounds to without leaving the 64-bit range.
constexpr double largestRoundable = 9.0e18;

// Arithmetic runs in double, so that no sum or product of kernel values can overflow; only the
// final figures are rounded, and one that does not fit is left out.
std::optional<std::int64_t> rounded(std::optional<double> value) {
    if (!value || !std::isfinite(*value) || std::fabs(*value) > largestRoundable) {
        return std::nullopt;
    }
    return std::llround(*value);
}

std::optional<double> real(std::optional<std::int64_t> value) {
    if (!value) {
        return std::nullopt;
    }
    return static_cast<double>(*value);
}

bool isCharging(const SysfsBattery& battery) {
    return battery.status == "Charging";
}

// Drivers disagree on the sign of current and power (ACPI reports magnitudes); the status says
// which way the charge flows, and otherwise the driver's sign stands.
std::optional<double> signedByStatus(std::optional<std::int64_t> value,
                                     const std::optional<std::string>& status) {
    if (!value) {
        return std::nullopt;
    }
    const double magnitude = std::fabs(static_cast<double>(*value));
    if (status == "Discharging") {
        return -magnitude;
    }
    if (status == "Charging") {
        return magnitude;
    }
    return static_cast<double>(*value);
}

std::optional<double> signedPowerMicrowatts(const SysfsBattery& battery) {
    if (const auto power = signedByStatus(battery.powerMicrowatts, battery.status)) {
        return power;
    }
    const auto current = signedByStatus(battery.currentMicroamps, battery.status);
    if (current && battery.voltageMicrovolts) {
        return static_cast<double>(*battery.voltageMicrovolts) * *current / 1e6;
    }
    return std::nullopt;
}

// The sum over all batteries, or absent when one of them lacks the value.
template <typename Value>
std::optional<double> totalOf(const Batteries& batteries, Value value) {
    double total = 0;
    for (const SysfsBattery& battery : batteries) {
        const std::optional<double> part = value(battery);
        if (!part) {
            return std::nullopt;
        }
        total += *part;
    }
    return total;
}

std::optional<double> totalOf(const Batteries& batteries, Field field) {
    return totalOf(batteries,
                   [field](const SysfsBattery& battery) { return real(battery.*field); });
}

std::optional<double> totalSignedPowerMicrowatts(const Batteries& batteries) {
    return totalOf(batteries, signedPowerMicrowatts);
}

std::optional<double> totalSignedCurrentMicroamps(const Batteries& batteries) {
    return totalOf(batteries, [](const SysfsBattery& battery) {
        return signedByStatus(battery.currentMicroamps, battery.status);
    });
}

std::optional<std::int64_t> percent(std::optional<double> now, std::optional<double> full) {
    if (!now || !full || !(*full > 0)) {
        return std::nullopt;
    }
    // Right after a calibration a battery can hold a little more than it last called full.
    return rounded(std::min(100.0, *now * 100.0 / *full));
}

std::optional<std::int64_t> batteryPercent(const SysfsBattery& battery) {
    if (battery.capacityPercent) {
        return battery.capacityPercent;
    }
    if (const auto energy = percent(real(battery.energyNowMicrowattHours),
                                    real(battery.energyFullMicrowattHours))) {
        return energy;
    }
    return percent(real(battery.chargeNowMicroampHours), real(battery.chargeFullMicroampHours));
}

// Several batteries: the share of all the energy (or charge) they hold, which weighs a big
// battery more than a small one; the plain mean of their percentages only as a last resort.
std::optional<std::int64_t> combinedPercent(const Batteries& batteries) {
    if (batteries.size() == 1) {
        return batteryPercent(batteries.front());
    }
    if (const auto energy = percent(totalOf(batteries, &SysfsBattery::energyNowMicrowattHours),
                                    totalOf(batteries, &SysfsBattery::energyFullMicrowattHours))) {
        return energy;
    }
    if (const auto charge = percent(totalOf(batteries, &SysfsBattery::chargeNowMicroampHours),
                                    totalOf(batteries, &SysfsBattery::chargeFullMicroampHours))) {
        return charge;
    }
    const auto sum = totalOf(
        batteries, [](const SysfsBattery& battery) { return real(batteryPercent(battery)); });
    if (!sum) {
        return std::nullopt;
    }
    return rounded(*sum / static_cast<double>(batteries.size()));
}

std::optional<bool> anyCharging(const Batteries& batteries) {
    if (std::ranges::any_of(batteries, isCharging)) {
        return true;
    }
    if (std::ranges::any_of(
            batteries, [](const SysfsBattery& battery) { return battery.status.has_value(); })) {
        return false;
    }
    return std::nullopt;
}

std::optional<std::int64_t> minutesToFull(double now, double full, double rate) {
    if (!(rate > 0)) {
        return std::nullopt;
    }
    const double minutes = std::max(0.0, full - now) / rate * 60.0;
    if (!(minutes <= maximumEstimateMinutes)) {
        return std::nullopt;
    }
    return rounded(minutes);
}

// What is missing to full over the rate it flows in: energy over power, else charge over current.
std::optional<std::int64_t> estimatedMinutesToFull(const Batteries& batteries) {
    const auto energyNow = totalOf(batteries, &SysfsBattery::energyNowMicrowattHours);
    const auto energyFull = totalOf(batteries, &SysfsBattery::energyFullMicrowattHours);
    const auto power = totalSignedPowerMicrowatts(batteries);
    if (energyNow && energyFull && power) {
        return minutesToFull(*energyNow, *energyFull, *power);
    }
    const auto chargeNow = totalOf(batteries, &SysfsBattery::chargeNowMicroampHours);
    const auto chargeFull = totalOf(batteries, &SysfsBattery::chargeFullMicroampHours);
    const auto current = totalSignedCurrentMicroamps(batteries);
    if (chargeNow && chargeFull && current) {
        return minutesToFull(*chargeNow, *chargeFull, *current);
    }
    return std::nullopt;
}

std::optional<std::int64_t> minutesFromSeconds(std::optional<std::int64_t> seconds) {
    const auto value = real(seconds);
    return value ? rounded(*value / 60.0) : std::nullopt;
}

std::optional<std::int64_t> thousandths(std::optional<double> micro) {
    return micro ? rounded(*micro / 1000.0) : std::nullopt;
}

std::optional<double> hottestDecikelvin(const Batteries& batteries) {
    std::optional<std::int64_t> hottest;
    for (const SysfsBattery& battery : batteries) {
        if (battery.temperatureDecidegreesCelsius &&
            (!hottest || *battery.temperatureDecidegreesCelsius > *hottest)) {
            hottest = battery.temperatureDecidegreesCelsius;
        }
    }
    if (!hottest) {
        return std::nullopt;
    }
    return static_cast<double>(*hottest) + decikelvinAtZeroCelsius;
}

// The strongest online adapter's rating.
std::optional<double> adapterRatingWatts(const std::vector<SysfsAdapter>& adapters) {
    std::optional<double> strongest;
    for (const SysfsAdapter& adapter : adapters) {
        if (!adapter.isOnline || !adapter.voltageMaxMicrovolts || !adapter.currentMaxMicroamps) {
            continue;
        }
        const double watts = static_cast<double>(*adapter.voltageMaxMicrovolts) *
                             static_cast<double>(*adapter.currentMaxMicroamps) / 1e12;
        strongest = std::max(strongest.value_or(watts), watts);
    }
    return strongest;
}

bool anyAdapterOnline(const std::vector<SysfsAdapter>& adapters) {
    return std::ranges::any_of(adapters, &SysfsAdapter::isOnline);
}

struct Flow {
    std::optional<double> voltageMillivolts;
    std::optional<std::int64_t> amperageMilliamps;
    std::optional<std::int64_t> batteryPowerMilliwatts;
};

Flow singleBatteryFlow(const SysfsBattery& battery) {
    const auto voltage = real(battery.voltageMicrovolts);
    return Flow{
        .voltageMillivolts = voltage ? std::optional(*voltage / 1000.0) : std::nullopt,
        .amperageMilliamps = thousandths(signedByStatus(battery.currentMicroamps, battery.status)),
        .batteryPowerMilliwatts =
            thousandths(signedByStatus(battery.powerMicrowatts, battery.status)),
    };
}

// Batteries in parallel or taking turns may sit at different voltages, so there is no one pack
// current. The first battery's voltage stands for the pack and the amperage is the total power
// over it: voltage × amperage then gives the total power the batteries move.
Flow combinedFlow(const Batteries& batteries) {
    const auto voltage = real(batteries.front().voltageMicrovolts);
    const auto power = totalSignedPowerMicrowatts(batteries);
    const bool allMeasurePower = std::ranges::all_of(
        batteries, [](const SysfsBattery& battery) { return battery.powerMicrowatts.has_value(); });
    Flow flow;
    if (voltage) {
        flow.voltageMillivolts = *voltage / 1000.0;
    }
    if (power && voltage) {
        flow.amperageMilliamps = rounded(*power / *voltage * 1000.0);
    }
    if (allMeasurePower) {
        flow.batteryPowerMilliwatts = thousandths(power);
    }
    return flow;
}

}  // namespace

std::optional<PropertyDictionary> smartBatteryProperties(const SysfsPowerSupplies& supplies) {
    const Batteries& batteries = supplies.batteries;
    if (batteries.empty()) {
        return std::nullopt;
    }
    const bool single = batteries.size() == 1;
    PropertyDictionary properties;
    const auto setIfKnown = [&properties](const char* key, const auto& value) {
        if (value) {
            properties.set(key, *value);
        }
    };

    setIfKnown("CurrentCapacity", combinedPercent(batteries));
    const std::optional<bool> charging = anyCharging(batteries);
    setIfKnown("IsCharging", charging);
    properties.set("ExternalConnected", anyAdapterOnline(supplies.adapters));

    const Flow flow = single ? singleBatteryFlow(batteries.front()) : combinedFlow(batteries);
    setIfKnown("Voltage", flow.voltageMillivolts);
    setIfKnown("InstantAmperage", flow.amperageMilliamps);
    setIfKnown("Temperature", hottestDecikelvin(batteries));

    // Per-battery estimates do not add up (ThinkPads charge one battery after the other), so
    // several batteries only get the estimate from their totals.
    std::optional<std::int64_t> averageMinutes;
    std::optional<std::int64_t> instantMinutes;
    if (single) {
        averageMinutes = minutesFromSeconds(batteries.front().timeToFullAverageSeconds);
        instantMinutes = minutesFromSeconds(batteries.front().timeToFullNowSeconds);
    }
    if (!averageMinutes && !instantMinutes && charging == true) {
        instantMinutes = estimatedMinutesToFull(batteries);
    }
    setIfKnown("AvgTimeToFull", averageMinutes);
    setIfKnown("InstantTimeToFull", instantMinutes);

    if (flow.batteryPowerMilliwatts) {
        properties.set("PowerTelemetryData",
                       PropertyDictionary{{"BatteryPower", *flow.batteryPowerMilliwatts}});
    }
    if (const auto watts = adapterRatingWatts(supplies.adapters)) {
        properties.set("AdapterDetails", PropertyDictionary{{"Watts", *watts}});
    }
    addHealthProperties(properties, batteries);
    return properties;
}

std::optional<std::string> providingPowerSourceType(const SysfsPowerSupplies& supplies) {
    if (anyAdapterOnline(supplies.adapters)) {
        return "AC Power";
    }
    if (!supplies.batteries.empty()) {
        return "Battery Power";
    }
    return std::nullopt;
}

}  // namespace voltaro::platform
