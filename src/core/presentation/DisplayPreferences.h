#pragma once

#include <string_view>

namespace voltaro {

// The stored display choices: each reader states the default itself, nothing is registered, so an
// absent key reads as its default and nothing is written until the user changes a control.
struct BooleanPreference {
    std::string_view key;
    bool defaultValue;
};

inline constexpr std::string_view temperatureUnitKey = "temperatureUnit";
inline constexpr std::string_view temperatureUnitDefault = "celsius";
inline constexpr BooleanPreference showsPercentageInMenuBar{"showsPercentageInMenuBar", true};
inline constexpr BooleanPreference showsPowerUsageInMenuBar{"showsPowerUsageInMenuBar", true};
inline constexpr BooleanPreference highlightsBatteryDrainInMenuBar{
    "highlightsBatteryDrainInMenuBar", true};

}  // namespace voltaro
