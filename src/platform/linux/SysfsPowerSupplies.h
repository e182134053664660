#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace voltaro::platform {

// One internal battery as the kernel reports it, in the kernel's own units. A value the kernel
// does not give, or gives garbled or beyond any laptop battery, is absent.
struct SysfsBattery {
    std::string name{};
    std::optional<std::string> status{};  // "Charging", "Discharging", "Not charging", "Full", ...
    std::optional<std::int64_t> capacityPercent{};
    std::optional<std::int64_t> energyNowMicrowattHours{};
    std::optional<std::int64_t> energyFullMicrowattHours{};
    std::optional<std::int64_t> chargeNowMicroampHours{};
    std::optional<std::int64_t> chargeFullMicroampHours{};
    std::optional<std::int64_t> voltageMicrovolts{};
    std::optional<std::int64_t> currentMicroamps{};  // sign as the driver reports it
    std::optional<std::int64_t> powerMicrowatts{};   // sign as the driver reports it
    std::optional<std::int64_t> temperatureDecidegreesCelsius{};
    std::optional<std::int64_t> timeToFullAverageSeconds{};
    std::optional<std::int64_t> timeToFullNowSeconds{};
    std::optional<std::int64_t> energyFullDesignMicrowattHours{};
    std::optional<std::int64_t> chargeFullDesignMicroampHours{};
    std::optional<std::int64_t> cycleCount{};
    std::optional<std::string> manufacturer{};
    std::optional<std::string> modelName{};
    std::optional<std::string> technology{};
};

// An external supply of the whole machine: mains, USB, USB-PD, wireless.
struct SysfsAdapter {
    std::string name{};
    bool isOnline = false;  // false also when the kernel cannot tell
    std::optional<std::int64_t> voltageMaxMicrovolts{};
    std::optional<std::int64_t> currentMaxMicroamps{};
};

// The machine's own power supplies, read fresh from <root>/class/power_supply; supplies of a
// single device (a mouse's battery, a dock's charger) are left out. Sorted by name, so "first"
// means BAT0 before BAT1.
struct SysfsPowerSupplies {
    std::vector<SysfsBattery> batteries{};
    std::vector<SysfsAdapter> adapters{};

    static SysfsPowerSupplies read(const std::filesystem::path& sysfsRoot);
};

}  // namespace voltaro::platform
