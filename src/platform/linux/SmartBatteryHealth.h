#pragma once

#include <vector>

#include "core/telemetry/PropertyDictionary.h"
#include "platform/linux/SysfsPowerSupplies.h"

namespace voltaro::platform {

// Adds the batteries' health under the smart-battery keys: "CycleCount", "DesignCapacity" and
// "AppleRawMaxCapacity" in mAh, "DesignEnergy" and "FullChargeEnergy" in mWh, "Manufacturer",
// "DeviceName" and "Technology". Several batteries: capacities summed, the highest cycle count,
// the distinct texts joined. A key whose source is missing is left out.
void addHealthProperties(PropertyDictionary& properties,
                         const std::vector<SysfsBattery>& batteries);

}  // namespace voltaro::platform
