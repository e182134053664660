#include "core/telemetry/BatteryReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <variant>

namespace voltaro {
namespace {

constexpr double maximumWatts = 250;
constexpr double minimumCelsius = -10;
constexpr double maximumCelsius = 80;
constexpr std::int64_t maximumEstimateMinutes = 1440;
constexpr double chargingThresholdWatts = 0.1;

// Truncates toward zero; a value that no 64-bit integer holds has no integer value.
std::optional<std::int64_t> truncated(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!std::isfinite(value) || value >= limit || value < -limit) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(value);
}

// The value as a signed 64-bit pattern: an unsigned number wraps as two's complement.
std::optional<std::int64_t> signedPattern(const PropertyValue* value) {
    if (value == nullptr || !value->isNumber()) {
        return std::nullopt;
    }
    return std::visit(
        [](const auto& number) -> std::optional<std::int64_t> {
            using T = std::decay_t<decltype(number)>;
            if constexpr (std::is_same_v<T, std::uint64_t>) {
                return std::bit_cast<std::int64_t>(number);
            } else if constexpr (std::is_same_v<T, double>) {
                return truncated(number);
            } else if constexpr (std::is_same_v<T, std::int64_t> || std::is_same_v<T, bool>) {
                return static_cast<std::int64_t>(number);
            } else {
                return std::nullopt;
            }
        },
        value->storage());
}

std::optional<double> accepted(double value, double minimum, double maximum) {
    if (std::isfinite(value) && value >= minimum && value <= maximum) {
        return value;
    }
    return std::nullopt;
}

const PropertyValue* find(const PropertyDictionary* dictionary, std::string_view key) {
    return dictionary ? dictionary->find(key) : nullptr;
}

bool flag(const PropertyDictionary& properties, std::string_view key) {
    const auto value = BatteryReader::doubleValue(properties.find(key));
    return value.has_value() && *value != 0;
}

}  // namespace

BatteryReader::BatteryReader(BatteryRegistry& registry, SMCController& smcController,
                             const Clock& clock)
    : registry_(registry), smcReader_(smcController), clock_(clock) {}

std::optional<std::int64_t> BatteryReader::integer(const PropertyValue* value) {
    if (value == nullptr || !value->isNumber()) {
        return std::nullopt;
    }
    if (const double* number = value->getIf<double>()) {
        return truncated(*number);
    }
    return signedPattern(value);
}

std::optional<double> BatteryReader::doubleValue(const PropertyValue* value) {
    if (value == nullptr || !value->isNumber()) {
        return std::nullopt;
    }
    return std::visit(
        [](const auto& number) -> std::optional<double> {
            using T = std::decay_t<decltype(number)>;
            if constexpr (std::is_arithmetic_v<T>) {
                return static_cast<double>(number);
            } else {
                return std::nullopt;
            }
        },
        value->storage());
}

std::optional<double> BatteryReader::signedCurrent(const PropertyValue* value) {
    const auto pattern = signedPattern(value);
    return pattern ? std::optional<double>(static_cast<double>(*pattern)) : std::nullopt;
}

std::optional<double> BatteryReader::wattsFromMilliwatts(const PropertyValue* value) {
    const auto milliwatts = doubleValue(value);
    if (!milliwatts) {
        return std::nullopt;
    }
    return accepted(std::fabs(*milliwatts) / 1000, 0, maximumWatts);
}

std::optional<double> BatteryReader::signedWattsFromMilliwatts(const PropertyValue* value) {
    const auto milliwatts = signedCurrent(value);
    if (!milliwatts) {
        return std::nullopt;
    }
    return accepted(*milliwatts / 1000, -maximumWatts, maximumWatts);
}

std::optional<double> BatteryReader::temperatureFromRegistry(const PropertyValue* value) {
    const auto decikelvin = doubleValue(value);
    if (!decikelvin) {
        return std::nullopt;
    }
    return accepted(*decikelvin / 10 - 273.15, minimumCelsius, maximumCelsius);
}

std::optional<std::int64_t> BatteryReader::validTimeEstimate(
    std::initializer_list<const PropertyValue*> candidates) {
    for (const PropertyValue* candidate : candidates) {
        const auto minutes = integer(candidate);
        if (minutes && *minutes >= 0 && *minutes <= maximumEstimateMinutes) {
            return minutes;
        }
    }
    return std::nullopt;
}

std::optional<double> BatteryReader::estimatedSystemWatts(bool externalConnected,
                                                          std::optional<double> adapterWatts,
                                                          std::optional<double> batteryWatts) {
    if (externalConnected) {
        if (!adapterWatts || !batteryWatts) {
            return std::nullopt;
        }
        return accepted(*adapterWatts - *batteryWatts, 0, maximumWatts);
    }
    if (!batteryWatts) {
        return std::nullopt;
    }
    return accepted(std::fabs(*batteryWatts), 0, maximumWatts);
}

std::optional<bool> BatteryReader::isDrawingFromExternalPower() {
    const auto type = registry_.providingPowerSourceType();
    if (type == "AC Power") {
        return true;
    }
    if (type == "Battery Power") {
        return false;
    }
    return std::nullopt;
}

BatterySnapshot BatteryReader::read() {
    const auto properties = registry_.properties();
    if (!properties) {
        return BatterySnapshot::empty();
    }
    BatterySnapshot snapshot;

    const auto reportedCapacity = integer(properties->find("CurrentCapacity"));
    const bool registryConnected = flag(*properties, "ExternalConnected");
    snapshot.isConnectedToPower = isDrawingFromExternalPower().value_or(registryConnected);
    const bool registryCharging = flag(*properties, "IsCharging");

    const double voltage = doubleValue(properties->find("Voltage")).value_or(0);
    // The instant reading wins by its presence alone, even when it is not a number.
    const PropertyValue* amperage = properties->contains("InstantAmperage")
                                        ? properties->find("InstantAmperage")
                                        : properties->find("Amperage");
    std::optional<double> powerFromCurrent;
    if (const auto current = signedCurrent(amperage)) {
        powerFromCurrent = accepted(voltage * *current / 1'000'000, -maximumWatts, maximumWatts);
    }

    const PropertyDictionary* telemetry = properties->dictionary("PowerTelemetryData");
    const auto systemPowerIn = wattsFromMilliwatts(find(telemetry, "SystemPowerIn"));
    snapshot.batteryPowerWatts = signedWattsFromMilliwatts(find(telemetry, "BatteryPower"));
    if (!snapshot.batteryPowerWatts) {
        snapshot.batteryPowerWatts = powerFromCurrent;
    }
    snapshot.systemWatts = wattsFromMilliwatts(find(telemetry, "SystemLoad"));
    if (!snapshot.systemWatts) {
        snapshot.systemWatts = estimatedSystemWatts(snapshot.isConnectedToPower, systemPowerIn,
                                                    snapshot.batteryPowerWatts);
    }

    if (!snapshot.batteryPowerWatts) {
        snapshot.isCharging = registryCharging;
    } else if (*snapshot.batteryPowerWatts > chargingThresholdWatts) {
        snapshot.isCharging = true;
    } else if (*snapshot.batteryPowerWatts >= -chargingThresholdWatts) {
        snapshot.isCharging = registryCharging;
    } else {
        snapshot.isCharging = false;
    }

    if (const auto rated = doubleValue(find(properties->dictionary("AdapterDetails"), "Watts"))) {
        snapshot.adapterCapacityWatts = accepted(*rated, 0, maximumWatts);
    }
    const auto ipdInputPower =
        wattsFromMilliwatts(find(properties->dictionary("PowerDistribution"), "IPDInputPower"));

    if (snapshot.isConnectedToPower) {
        if (systemPowerIn) {
            snapshot.adapterWatts = systemPowerIn;
        } else if (snapshot.systemWatts || snapshot.batteryPowerWatts) {
            snapshot.adapterWatts =
                accepted(snapshot.systemWatts.value_or(0) + snapshot.batteryPowerWatts.value_or(0),
                         0, maximumWatts);
        }
        if (!snapshot.adapterWatts) {
            snapshot.adapterWatts = ipdInputPower ? ipdInputPower : snapshot.adapterCapacityWatts;
        }
    }

    snapshot.temperatureCelsius = smcReader_.batteryTemperatureCelsius();
    if (!snapshot.temperatureCelsius) {
        snapshot.temperatureCelsius = temperatureFromRegistry(properties->find("Temperature"));
    }

    snapshot.timeToFullMinutes =
        validTimeEstimate({properties->find("AvgTimeToFull"), properties->find("InstantTimeToFull"),
                           find(properties->dictionary("BatteryData"), "AvgTimeToFull")});

    snapshot.level = std::clamp<std::int64_t>(reportedCapacity.value_or(0), 0, 100);
    snapshot.health = batteryHealth(*properties);
    snapshot.updatedAt = clock_.wallNow();
    return snapshot;
}

}  // namespace voltaro
