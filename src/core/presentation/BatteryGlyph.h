#pragma once

#include <cstdint>
#include <string_view>

#include "core/telemetry/BatterySnapshot.h"

namespace voltaro {

// What the battery glyph is made of; the ui draws it.
enum class GlyphAccessory { none, bolt, plug };

// "battery.0percent" … "battery.100percent", by charge level in bands of a quarter.
std::string_view batteryBodySymbol(std::int64_t level);
// The bolt while charge flows in, the plug on external power otherwise.
GlyphAccessory glyphAccessory(const BatterySnapshot& snapshot);

inline constexpr std::string_view boltSymbol = "bolt.fill";
inline constexpr std::string_view plugSymbol = "powerplug.fill";

}  // namespace voltaro
