#include "app/TextDashboard.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <sstream>

#include "core/common/Localization.h"

namespace voltaro {
namespace {

constexpr const char* unknownValue = "—";

std::string decimal(double value, int fractionDigits) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", fractionDigits, value);
    return text;
}

std::string watts(std::optional<double> value) {
    return (value ? decimal(*value, 1) : unknownValue) + " " + localized("W");
}

std::string row(const std::string& title, const std::string& value) {
    constexpr std::size_t column = 22;
    std::string line = "  " + title;
    // Pad by characters, not bytes, so UTF-8 titles line up.
    std::size_t characters = 0;
    for (const char c : line) {
        characters += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }
    line.append(characters < column ? column - characters : 1, ' ');
    return line + value + "\n";
}

std::string temperature(std::optional<double> celsius) {
    return (celsius ? decimal(*celsius, 1) : unknownValue) + std::string(" °C");
}

std::string timeToFull(const BatterySnapshot& s) {
    if (s.level >= 100) {
        return localized("Battery is fully charged");
    }
    if (!(s.isConnectedToPower && s.isCharging)) {
        return localized("Not charging");
    }
    if (!s.timeToFullMinutes) {
        return localized("Calculating time…");
    }
    const auto hours = *s.timeToFullMinutes / 60;
    const auto minutes = *s.timeToFullMinutes % 60;
    return std::to_string(hours) + " h " + std::to_string(minutes) + " min " +
           localized("until fully charged");
}

void batteryLines(std::ostringstream& out, const BatterySnapshot& s) {
    out << localized("Battery") << " — " << s.level << "%  ·  " << s.stateLabel() << "  ·  "
        << timeToFull(s) << "\n";
    out << row(localized("Power usage"), watts(s.systemWatts));
    if (s.isConnectedToPower) {
        const bool draining = s.batteryPowerWatts && *s.batteryPowerWatts < -0.1;
        const auto magnitude = s.batteryPowerWatts
                                   ? std::optional<double>(std::fabs(*s.batteryPowerWatts))
                                   : std::nullopt;
        out << row(localized(draining ? "From battery" : "To battery"), watts(magnitude));
        std::string charger = watts(s.adapterWatts);
        if (s.adapterCapacityWatts) {
            charger += "  (" + localized("rated") + " " +
                       std::to_string(std::llround(*s.adapterCapacityWatts)) + " " +
                       localized("W") + ")";
        }
        out << row(localized("Charger output"), charger);
    }
    out << row(localized("Temperature"), temperature(s.temperatureCelsius));
}

std::string applicationWatts(double watts) {
    if (watts > 0 && watts < 0.01) {
        return localized("less than 0.01 W");
    }
    return decimal(watts, 2) + " " + localized("W");
}

}  // namespace

std::string textDashboard(const DashboardState& state) {
    std::ostringstream out;
    if (state.snapshot == BatterySnapshot::empty()) {
        out << localized("No battery found") << "\n";
    } else {
        batteryLines(out, state.snapshot);
    }
    out << row(localized("Low Power Mode"),
               state.lowPowerMode ? localized(*state.lowPowerMode ? "On" : "Off") : unknownValue);
    out << localized("App energy usage") << " (" << state.windowLabel << ")\n";
    if (state.applications.empty()) {
        out << "  " << localized("Gathering data…") << "\n";
    }
    int rank = 0;
    for (const AppEnergy& application : state.applications) {
        out << row(std::to_string(++rank) + "  " + application.name,
                   applicationWatts(application.watts));
    }
    return out.str();
}

}  // namespace voltaro
