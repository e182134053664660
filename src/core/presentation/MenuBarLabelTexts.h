#pragma once

#include <optional>
#include <string>

#include "core/telemetry/BatterySnapshot.h"

namespace voltaro {

// What the tray label shows beside the glyph, by the user's three label choices.
struct MenuBarLabelChoices {
    bool showsPercentage = true;
    bool showsPowerUsage = true;
    bool highlightsBatteryDrain = true;
};

// "57% · 13 W", "57%", "13 W", or nothing when there is nothing to show.
std::optional<std::string> statusText(const BatterySnapshot& snapshot,
                                      const MenuBarLabelChoices& choices);
// The widest text the label can show with these choices, so it keeps one width.
std::string reservedStatusText(const MenuBarLabelChoices& choices);
// Yellow text: connected to power, yet the battery drains.
bool isHighlighted(const BatterySnapshot& snapshot, const MenuBarLabelChoices& choices);
// "Battery 57 percent, Charging"
std::string accessibilityText(const BatterySnapshot& snapshot);
// For panels that show no label: the label's whole text, and while charging the time to full.
// "57% · 13 W\nUntil fully charged: 1 hour, 5 minutes"
std::string toolTipDescription(const BatterySnapshot& snapshot);

}  // namespace voltaro
