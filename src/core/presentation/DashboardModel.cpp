#include "core/presentation/DashboardModel.h"

#include <algorithm>
#include <cmath>

#include "core/monitor/BatteryMonitor.h"
#include "core/presentation/TemperatureUnitPreference.h"
#include "core/text/Localization.h"

namespace voltaro {
namespace {

constexpr double drainThresholdWatts = -0.1;
constexpr std::int64_t minutesPerHour = 60;
// Larger than any adapter, so that a rating beyond it (or NaN) is never rounded into an integer.
constexpr double largestRatingWatts = 1e9;

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

// A card's value: "12.3 W", or "— W" when unknown.
std::string wattsText(std::optional<double> watts) {
    return (watts ? formatDecimal(*watts, 1) : std::string("—")) + " " + wattUnit();
}

// An application's power: "1.23 W", or "less than 0.01 W" for a trace.
std::string applicationWattsText(double watts) {
    if (watts > 0 && watts < 0.01) {
        return localized("less than 0.01 W");
    }
    return formatDecimal(watts, 2) + " " + wattUnit();
}

std::string batteryFlowTitle(const BatterySnapshot& snapshot) {
    return localized(isBatteryDraining(snapshot) ? "From battery" : "To battery");
}

std::optional<std::string> adapterCaption(const BatterySnapshot& snapshot) {
    const auto rating = snapshot.adapterCapacityWatts;
    if (!rating || !(std::fabs(*rating) < largestRatingWatts)) {
        return std::nullopt;
    }
    const auto rounded = static_cast<long long>(std::round(*rating));
    return formatText(localized("Charger rated at %@"), std::to_string(rounded) + " " + wattUnit());
}

DashboardSection powerSection(const BatterySnapshot& snapshot, const DashboardDisplay& display) {
    DashboardSection section{.title = localized("Power")};
    section.rows.push_back({.title = localized(display.systemPowerTitle),
                            .value = wattsText(snapshot.systemWatts),
                            .symbol = "bolt"});
    if (snapshot.isConnectedToPower) {
        const auto flow = snapshot.batteryPowerWatts;
        section.rows.push_back(
            {.title = batteryFlowTitle(snapshot),
             .value = wattsText(flow ? std::optional(std::fabs(*flow)) : std::nullopt),
             .symbol = isBatteryDraining(snapshot) ? "arrow.up.to.line.compact"
                                                   : "arrow.down.to.line.compact"});
        section.rows.push_back({.title = localized("Charger output"),
                                .value = wattsText(snapshot.adapterWatts),
                                .caption = adapterCaption(snapshot),
                                .symbol = "powerplug"});
    }
    return section;
}

DashboardRow lowPowerRow(const DashboardState& state) {
    const auto& enabled = state.lowPowerMode;
    SwitchState shown = SwitchState::unknown;
    if (state.isChangingLowPowerMode) {
        shown = SwitchState::changing;
    } else if (enabled) {
        shown = *enabled ? SwitchState::on : SwitchState::off;
    }
    return {.title = localized("Low Power Mode"),
            .value = enabled ? localized(*enabled ? "On" : "Off") : "—",
            .caption = state.lowPowerModeError,
            .symbol = "leaf",
            .switchState = shown};
}

DashboardSection applicationSection(const DashboardState& state) {
    DashboardSection section{.title = localized("App energy usage"), .detail = state.windowLabel};
    int rank = 0;
    for (const AppEnergy& application : state.applications) {
        section.rows.push_back({.title = application.name,
                                .value = applicationWattsText(application.watts),
                                .symbol = "app",
                                .rank = ++rank,
                                .icon = application.icon});
    }
    if (section.rows.empty()) {
        section.placeholder = localized("Gathering data…");
    }
    return section;
}

// "47.2 of 50.5 Wh": in the unit the battery counts in.
std::optional<std::string> capacityCaption(const BatteryHealth& health) {
    const auto ofDesign = [](double full, double design, int digits, const std::string& unit) {
        return formatText(formatText(localized("%@ of %@"), formatDecimal(full, digits)),
                          formatDecimal(design, digits)) +
               " " + unit;
    };
    if (health.fullChargeWattHours && health.designWattHours) {
        return ofDesign(*health.fullChargeWattHours, *health.designWattHours, 1, localized("Wh"));
    }
    if (health.fullChargeMilliampHours && health.designMilliampHours) {
        return ofDesign(*health.fullChargeMilliampHours, *health.designMilliampHours, 0,
                        localized("mAh"));
    }
    return std::nullopt;
}

std::optional<std::string> joined(std::initializer_list<std::optional<std::string>> parts) {
    std::optional<std::string> text;
    for (const auto& part : parts) {
        if (part) {
            text = text ? *text + " · " + *part : *part;
        }
    }
    return text;
}

DashboardSection healthSection(const BatteryHealth& health) {
    DashboardSection section{.title = localized("Battery health")};
    const auto& percent = health.capacityPercent;
    section.rows.push_back({.title = localized("Capacity"),
                            .value = percent ? formatDecimal(*percent, 0) + "%" : "—",
                            .caption = percent ? capacityCaption(health) : std::nullopt,
                            .symbol = "battery.100percent"});
    section.rows.push_back({.title = localized("Cycle count"),
                            .value = health.cycleCount ? std::to_string(*health.cycleCount) : "—",
                            .symbol = "arrow.triangle.2.circlepath"});
    section.rows.push_back({.title = localized("Model"),
                            .value = health.model.value_or("—"),
                            .caption = joined({health.manufacturer, health.technology}),
                            .symbol = "info.circle"});
    return section;
}

}  // namespace

DashboardState DashboardState::of(BatteryMonitor& monitor) {
    return DashboardState{
        .snapshot = monitor.snapshot().get(),
        .lowPowerMode = monitor.isLowPowerModeKnown().get()
                            ? std::optional<bool>(monitor.isLowPowerModeEnabled().get())
                            : std::nullopt,
        .isChangingLowPowerMode = monitor.isChangingLowPowerMode().get(),
        .lowPowerModeError = monitor.lowPowerModeError().get(),
        .applications = monitor.topApplications().get(),
        .collectedSeconds = monitor.appEnergyWindowDuration().get(),
        .windowLabel = monitor.appEnergyWindowLabel(),
    };
}

DashboardModel dashboardModel(const DashboardState& state, const DashboardDisplay& display) {
    const BatterySnapshot& snapshot = state.snapshot;
    // A machine without a battery has no charge, flow or temperature to show.
    const bool hasBattery = snapshot != BatterySnapshot::empty();
    DashboardModel model{
        .header = {.chargeLine = hasBattery ? chargeLine(snapshot) : localized("No battery found"),
                   .stateLine = snapshot.stateLabel(),
                   .chargeTime = hasBattery ? chargeTimeText(snapshot) : ""}};
    if (hasBattery) {
        model.sections.push_back(powerSection(snapshot, display));
    }
    DashboardSection battery{.title = localized("Battery")};
    if (hasBattery) {
        battery.rows.push_back(
            {.title = localized("Temperature"),
             .value = temperatureText(snapshot.temperatureCelsius, display.temperatureUnit),
             .symbol = "thermometer.medium"});
    }
    battery.rows.push_back(lowPowerRow(state));
    model.sections.push_back(std::move(battery));
    model.sections.push_back(applicationSection(state));
    // Below the live figures: wear changes over months, not while the panel is open.
    if (hasBattery) {
        model.sections.push_back(healthSection(snapshot.health));
    }
    return model;
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

bool isBatteryDraining(const BatterySnapshot& snapshot) {
    return snapshot.batteryPowerWatts && *snapshot.batteryPowerWatts < drainThresholdWatts;
}

std::string wattUnit() {
    return localized("W");
}

}  // namespace voltaro
