#include "platform/linux/SysfsPowerSupplies.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

#include "platform/linux/SysfsAttributes.h"

namespace voltaro::platform {

namespace {

// Bounds far beyond any laptop's: a value past them is a driver's garbage, not a reading.
constexpr std::int64_t maximumMicrovolts = 100'000'000;         // 100 V
constexpr std::int64_t maximumMicroamps = 100'000'000;          // 100 A
constexpr std::int64_t maximumMicrowatts = 1'000'000'000;       // 1 kW
constexpr std::int64_t maximumMicrowattHours = 10'000'000'000;  // 10 kWh
constexpr std::int64_t maximumMicroampHours = 1'000'000'000;    // 1000 Ah
constexpr std::int64_t minimumDecidegreesCelsius = -1'000;      // -100 °C
constexpr std::int64_t maximumDecidegreesCelsius = 2'000;       // 200 °C
constexpr std::int64_t maximumSeconds = 10'000'000;             // about 16 weeks
constexpr std::int64_t largestInteger = std::numeric_limits<std::int64_t>::max();

SysfsBattery readBattery(const std::filesystem::path& directory, std::string name) {
    const auto integer = [&](const char* attribute, std::int64_t minimum, std::int64_t maximum) {
        return readIntegerAttribute(directory / attribute, minimum, maximum);
    };
    SysfsBattery battery;
    battery.name = std::move(name);
    battery.status = readTextAttribute(directory / "status");
    // A gauge can overshoot after a calibration: past 100 is full, not garbage.
    if (const auto capacity = integer("capacity", 0, largestInteger)) {
        battery.capacityPercent = std::min<std::int64_t>(*capacity, 100);
    }
    battery.energyNowMicrowattHours = integer("energy_now", 0, maximumMicrowattHours);
    battery.energyFullMicrowattHours = integer("energy_full", 1, maximumMicrowattHours);
    battery.chargeNowMicroampHours = integer("charge_now", 0, maximumMicroampHours);
    battery.chargeFullMicroampHours = integer("charge_full", 1, maximumMicroampHours);
    // A battery at 0 V is one the driver cannot measure.
    battery.voltageMicrovolts = integer("voltage_now", 1, maximumMicrovolts);
    battery.currentMicroamps = integer("current_now", -maximumMicroamps, maximumMicroamps);
    battery.powerMicrowatts = integer("power_now", -maximumMicrowatts, maximumMicrowatts);
    battery.temperatureDecidegreesCelsius =
        integer("temp", minimumDecidegreesCelsius, maximumDecidegreesCelsius);
    battery.timeToFullAverageSeconds = integer("time_to_full_avg", 0, maximumSeconds);
    battery.timeToFullNowSeconds = integer("time_to_full_now", 0, maximumSeconds);
    battery.energyFullDesignMicrowattHours =
        integer("energy_full_design", 1, maximumMicrowattHours);
    battery.chargeFullDesignMicroampHours = integer("charge_full_design", 1, maximumMicroampHours);
    // ACPI firmware without a counter reports 0 cycles, and some drivers -1.
    battery.cycleCount = integer("cycle_count", 1, largestInteger);
    battery.manufacturer = readTextAttribute(directory / "manufacturer");
    battery.modelName = readTextAttribute(directory / "model_name");
    battery.technology = readTextAttribute(directory / "technology");
    if (battery.technology == "Unknown") {
        battery.technology.reset();
    }
    return battery;
}

SysfsAdapter readAdapter(const std::filesystem::path& directory, std::string name) {
    SysfsAdapter adapter;
    adapter.name = std::move(name);
    // Any positive value is power present: 1 a fixed-voltage supply, 2 a programmable one (USB-PD
    // PPS), and sources may report newer values.
    const auto online = readIntegerAttribute(directory / "online", 0, largestInteger);
    adapter.isOnline = online.value_or(0) > 0;
    adapter.voltageMaxMicrovolts =
        readIntegerAttribute(directory / "voltage_max", 1, maximumMicrovolts);
    adapter.currentMaxMicroamps =
        readIntegerAttribute(directory / "current_max", 1, maximumMicroamps);
    return adapter;
}

}  // namespace

SysfsPowerSupplies SysfsPowerSupplies::read(const std::filesystem::path& sysfsRoot) {
    const std::filesystem::path classDirectory = sysfsRoot / "class" / "power_supply";
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator it(classDirectory, error), end; !error && it != end;
         it.increment(error)) {
        names.push_back(it->path().filename().string());
    }
    std::ranges::sort(names);

    SysfsPowerSupplies supplies;
    for (std::string& name : names) {
        const std::filesystem::path directory = classDirectory / name;
        // Without a type there is nothing to go on: a vanished entry or a stray file.
        const std::optional<std::string> type = readTextAttribute(directory / "type");
        if (!type) {
            continue;
        }
        // A supply without a scope powers the whole system.
        if (readTextAttribute(directory / "scope") == "Device") {
            continue;
        }
        if (*type == "Battery") {
            // An empty bay (a ThinkPad's second battery taken out) still has an entry.
            if (readIntegerAttribute(directory / "present", 0, 1) == 0) {
                continue;
            }
            supplies.batteries.push_back(readBattery(directory, std::move(name)));
        } else {
            supplies.adapters.push_back(readAdapter(directory, std::move(name)));
        }
    }
    return supplies;
}

}  // namespace voltaro::platform
