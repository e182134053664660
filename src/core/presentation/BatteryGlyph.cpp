#include "core/presentation/BatteryGlyph.h"

namespace voltaro {

std::string_view batteryBodySymbol(std::int64_t level) {
    if (level < 13) {
        return "battery.0percent";
    }
    if (level < 38) {
        return "battery.25percent";
    }
    if (level < 63) {
        return "battery.50percent";
    }
    if (level < 88) {
        return "battery.75percent";
    }
    return "battery.100percent";
}

GlyphAccessory glyphAccessory(const BatterySnapshot& snapshot) {
    if (snapshot.isCharging) {
        return GlyphAccessory::bolt;
    }
    if (!snapshot.isConnectedToPower) {
        return GlyphAccessory::none;
    }
    return snapshot.batteryPowerWatts.value_or(0) > 0 ? GlyphAccessory::bolt : GlyphAccessory::plug;
}

}  // namespace voltaro
