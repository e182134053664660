#include "core/presentation/MenuBarLabelTexts.h"

#include <cmath>

#include "core/presentation/DashboardModel.h"
#include "core/text/Localization.h"

namespace voltaro {
namespace {

constexpr const char* separator = " · ";

}  // namespace

std::optional<std::string> statusText(const BatterySnapshot& snapshot,
                                      const MenuBarLabelChoices& choices) {
    std::string text;
    if (choices.showsPercentage) {
        text = std::to_string(snapshot.level) + "%";
    }
    if (choices.showsPowerUsage && snapshot.systemWatts) {
        const auto watts = static_cast<long long>(std::round(*snapshot.systemWatts));
        text += (text.empty() ? "" : separator) + std::to_string(watts) + " " + wattUnit();
    }
    if (text.empty()) {
        return std::nullopt;
    }
    return text;
}

std::string reservedStatusText(const MenuBarLabelChoices& choices) {
    std::string text;
    if (choices.showsPercentage) {
        text = "100%";
    }
    if (choices.showsPowerUsage) {
        text += (text.empty() ? "" : separator) + std::string("000 ") + wattUnit();
    }
    return text;
}

bool isHighlighted(const BatterySnapshot& snapshot, const MenuBarLabelChoices& choices) {
    return choices.highlightsBatteryDrain && snapshot.isConnectedToPower &&
           isBatteryDraining(snapshot);
}

std::string accessibilityText(const BatterySnapshot& snapshot) {
    return formatText(formatInteger(localized("Battery %d percent, %@"), snapshot.level),
                      snapshot.stateLabel());
}

std::string toolTipDescription(const BatterySnapshot& snapshot) {
    std::string text = statusText(snapshot, {true, true, false}).value_or("");
    if (snapshot.isCharging && snapshot.level < 100 && snapshot.timeToFullMinutes) {
        // Appended piece by piece: g++ 12 at -O3 warns falsely about "literal" + string.
        text.append("\n").append(localized("Until fully charged")).append(": ");
        text.append(formattedChargeDuration(*snapshot.timeToFullMinutes));
    }
    return text;
}

}  // namespace voltaro
