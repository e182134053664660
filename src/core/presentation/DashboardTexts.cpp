#include "core/presentation/DashboardTexts.h"

#include <algorithm>
#include <cmath>

#include "core/common/Localization.h"

namespace voltaro {
namespace {

constexpr double drainThresholdWatts = -0.1;
constexpr std::int64_t minutesPerHour = 60;

}  // namespace

std::string chargeLine(const BatterySnapshot& snapshot) {
    return localized("Battery") + " — " + std::to_string(snapshot.level) + "%";
}

std::string chargeTimeText(const BatterySnapshot& snapshot) {
    if (snapshot.level >= 100) {
        return localized("Battery is fully charged");
    }
    if (!(snapshot.isConnectedToPower && snapshot.isCharging)) {
        return localized("Not charging");
    }
    if (!snapshot.timeToFullMinutes) {
        return localized("Calculating time…");
    }
    return localized("Until fully charged") + "\n" +
           formattedChargeDuration(*snapshot.timeToFullMinutes);
}

std::string formattedChargeDuration(std::int64_t minutes) {
    minutes = std::max<std::int64_t>(minutes, 0);
    const std::int64_t hours = minutes / minutesPerHour;
    const std::int64_t remainder = minutes % minutesPerHour;
    if (hours == 0) {
        return localizedCount("%n minute(s)", remainder);
    }
    const std::string hoursText = localizedCount("%n hour(s)", hours);
    if (remainder == 0) {
        return hoursText;
    }
    return hoursText + localized(", ") + localizedCount("%n minute(s)", remainder);
}

std::string systemPowerTitle() {
#ifdef __APPLE__
    return localized("Mac power usage");
#else
    return localized("Power usage");
#endif
}

bool isBatteryDraining(const BatterySnapshot& snapshot) {
    return snapshot.batteryPowerWatts && *snapshot.batteryPowerWatts < drainThresholdWatts;
}

std::string batteryFlowTitle(const BatterySnapshot& snapshot) {
    return localized(isBatteryDraining(snapshot) ? "From battery" : "To battery");
}

std::string_view batteryFlowSymbol(const BatterySnapshot& snapshot) {
    return isBatteryDraining(snapshot) ? "arrow.up.to.line.compact" : "arrow.down.to.line.compact";
}

std::optional<double> batteryFlowWatts(const BatterySnapshot& snapshot) {
    if (!snapshot.batteryPowerWatts) {
        return std::nullopt;
    }
    return std::fabs(*snapshot.batteryPowerWatts);
}

std::optional<std::string> adapterCaption(const BatterySnapshot& snapshot) {
    if (!snapshot.adapterCapacityWatts) {
        return std::nullopt;
    }
    const auto rounded = static_cast<long long>(std::round(*snapshot.adapterCapacityWatts));
    return formatText(localized("Charger rated at %@"), std::to_string(rounded) + " " + wattUnit());
}

std::string metricValueText(std::optional<double> value, std::string_view unit) {
    return (value ? formatDecimal(*value, 1) : std::string("—")) + " " + std::string(unit);
}

std::string applicationWattsText(double watts) {
    if (watts > 0 && watts < 0.01) {
        return localized("less than 0.01 W");
    }
    return formatDecimal(watts, 2) + " " + wattUnit();
}

std::string wattUnit() {
    return localized("W");
}

}  // namespace voltaro
