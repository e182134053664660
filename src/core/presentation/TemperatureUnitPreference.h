#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace voltaro {

enum class TemperatureUnitPreference { celsius, fahrenheit };

// The stored text of a unit, and back: anything but an exact raw value is Celsius.
std::string_view rawValue(TemperatureUnitPreference unit);
TemperatureUnitPreference temperatureUnitPreference(std::string_view stored);
std::string_view unitSymbol(TemperatureUnitPreference unit);

// "31.5 °C", "88.6 °F", or "— °C" when the temperature is unknown.
std::string temperatureText(std::optional<double> celsius, std::string_view storedUnit);

}  // namespace voltaro
