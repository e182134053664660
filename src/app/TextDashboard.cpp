#include "app/TextDashboard.h"

#include <sstream>

#include "core/common/Localization.h"
#include "core/presentation/DashboardTexts.h"
#include "core/presentation/DisplayPreferences.h"
#include "core/presentation/TemperatureUnitPreference.h"

namespace voltaro {
namespace {

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

std::string oneLine(std::string text) {
    for (char& c : text) {
        if (c == '\n') {
            c = ' ';
        }
    }
    return text;
}

void batteryLines(std::ostringstream& out, const BatterySnapshot& s) {
    out << chargeLine(s) << "  ·  " << s.stateLabel() << "  ·  " << oneLine(chargeTimeText(s))
        << "\n";
    out << row(systemPowerTitle(), metricValueText(s.systemWatts, wattUnit()));
    if (s.isConnectedToPower) {
        out << row(batteryFlowTitle(s), metricValueText(batteryFlowWatts(s), wattUnit()));
        std::string charger = metricValueText(s.adapterWatts, wattUnit());
        if (const auto caption = adapterCaption(s)) {
            charger += "  (" + *caption + ")";
        }
        out << row(localized("Charger output"), charger);
    }
    out << row(localized("Temperature"),
               temperatureText(s.temperatureCelsius, temperatureUnitDefault));
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
               state.lowPowerMode ? localized(*state.lowPowerMode ? "On" : "Off") : "—");
    out << localized("App energy usage") << " (" << state.windowLabel << ")\n";
    if (state.applications.empty()) {
        out << "  " << localized("Gathering data…") << "\n";
    }
    int rank = 0;
    for (const AppEnergy& application : state.applications) {
        out << row(std::to_string(++rank) + "  " + application.name,
                   applicationWattsText(application.watts));
    }
    return out.str();
}

}  // namespace voltaro
