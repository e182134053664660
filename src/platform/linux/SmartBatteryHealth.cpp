#include "platform/linux/SmartBatteryHealth.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

namespace voltaro::platform {
namespace {

using Field = std::optional<std::int64_t> SysfsBattery::*;
using TextField = std::optional<std::string> SysfsBattery::*;

// The total in thousandths of the kernel's unit, or absent when one battery lacks the value: a
// part of the pack would pass for all of it.
std::optional<std::int64_t> totalThousandths(const std::vector<SysfsBattery>& batteries,
                                             Field field) {
    double total = 0;
    for (const SysfsBattery& battery : batteries) {
        if (!(battery.*field)) {
            return std::nullopt;
        }
        total += static_cast<double>(*(battery.*field));
    }
    return std::llround(total / 1000);
}

// The wear shows in the most used battery.
std::optional<std::int64_t> highestCycleCount(const std::vector<SysfsBattery>& batteries) {
    std::optional<std::int64_t> highest;
    for (const SysfsBattery& battery : batteries) {
        if (battery.cycleCount) {
            highest = std::max(highest.value_or(0), *battery.cycleCount);
        }
    }
    return highest;
}

std::optional<std::string> joinedTexts(const std::vector<SysfsBattery>& batteries,
                                       TextField field) {
    std::vector<std::string> distinct;
    for (const SysfsBattery& battery : batteries) {
        const auto& value = battery.*field;
        if (value && std::ranges::find(distinct, *value) == distinct.end()) {
            distinct.push_back(*value);
        }
    }
    if (distinct.empty()) {
        return std::nullopt;
    }
    std::string joined = distinct.front();
    for (std::size_t i = 1; i < distinct.size(); ++i) {
        joined += ", " + distinct[i];
    }
    return joined;
}

}  // namespace

void addHealthProperties(PropertyDictionary& properties,
                         const std::vector<SysfsBattery>& batteries) {
    const auto setIfKnown = [&](const char* key, const auto& value) {
        if (value) {
            properties.set(key, *value);
        }
    };
    setIfKnown("CycleCount", highestCycleCount(batteries));
    setIfKnown("DesignEnergy",
               totalThousandths(batteries, &SysfsBattery::energyFullDesignMicrowattHours));
    setIfKnown("FullChargeEnergy",
               totalThousandths(batteries, &SysfsBattery::energyFullMicrowattHours));
    setIfKnown("DesignCapacity",
               totalThousandths(batteries, &SysfsBattery::chargeFullDesignMicroampHours));
    setIfKnown("AppleRawMaxCapacity",
               totalThousandths(batteries, &SysfsBattery::chargeFullMicroampHours));
    setIfKnown("Manufacturer", joinedTexts(batteries, &SysfsBattery::manufacturer));
    setIfKnown("DeviceName", joinedTexts(batteries, &SysfsBattery::modelName));
    setIfKnown("Technology", joinedTexts(batteries, &SysfsBattery::technology));
}

}  // namespace voltaro::platform
