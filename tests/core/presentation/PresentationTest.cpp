#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "core/presentation/BatteryGlyph.h"
#include "core/presentation/DashboardModel.h"
#include "core/presentation/SettingsTexts.h"
#include "core/presentation/TemperatureUnitPreference.h"
#include "core/text/Localization.h"
#include "support/BatterySnapshots.h"

namespace voltaro {
namespace {

using testing::battery;

TEST(BatteryGlyphTest, ChoosesTheBodyByLevelBand) {
    const std::pair<std::int64_t, std::string_view> cases[] = {
        {0, "battery.0percent"},    {12, "battery.0percent"},  {13, "battery.25percent"},
        {37, "battery.25percent"},  {38, "battery.50percent"}, {62, "battery.50percent"},
        {63, "battery.75percent"},  {87, "battery.75percent"}, {88, "battery.100percent"},
        {100, "battery.100percent"}};
    for (const auto& [level, symbol] : cases) {
        EXPECT_EQ(batteryBodySymbol(level), symbol) << level;
    }
}

TEST(BatteryGlyphTest, ChoosesTheAccessoryByPowerState) {
    const struct {
        const char* description;
        BatterySnapshot snapshot;
        GlyphAccessory expected;
    } cases[] = {
        {"on battery", battery(50, false, false, -12), GlyphAccessory::none},
        {"charging without a connection", battery(50, false, true), GlyphAccessory::bolt},
        {"charging", battery(50, true, true, 20), GlyphAccessory::bolt},
        {"connected, charge still flowing in", battery(50, true, false, 0.01),
         GlyphAccessory::bolt},
        {"connected and idle", battery(50, true, false, 0), GlyphAccessory::plug},
        {"connected, flow unknown", battery(50, true, false), GlyphAccessory::plug},
        {"connected but drained", battery(50, true, false, -3.2), GlyphAccessory::plug},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(glyphAccessory(c.snapshot), c.expected) << c.description;
    }
}

TEST(ChargeDurationTest, WritesInAtMostTwoUnitsWithPlurals) {
    const std::pair<std::int64_t, std::string> cases[] = {
        {0, "0 minutes"},   {1, "1 minute"},          {59, "59 minutes"},
        {60, "1 hour"},     {61, "1 hour, 1 minute"}, {125, "2 hours, 5 minutes"},
        {1440, "24 hours"}, {-5, "0 minutes"},
    };
    for (const auto& [minutes, expected] : cases) {
        EXPECT_EQ(formattedChargeDuration(minutes), expected) << minutes;
    }
}

TEST(TemperatureUnitPreferenceTest, OnlyTheExactFahrenheitTextSwitchesTheUnit) {
    const struct {
        std::optional<double> celsius;
        const char* stored;
        const char* expected;
    } cases[] = {
        {31.46, "celsius", "31.5 °C"},    {31.46, "fahrenheit", "88.6 °F"},
        {31.46, "Fahrenheit", "31.5 °C"}, {31.46, "kelvin", "31.5 °C"},
        {31.46, "", "31.5 °C"},           {std::nullopt, "fahrenheit", "— °F"},
        {std::nullopt, "kelvin", "— °C"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(temperatureText(c.celsius, c.stored), c.expected) << c.stored;
    }
}

TEST(SettingsTextsTest, VersionLineLeavesOutAnEmptyBuildNumber) {
    EXPECT_EQ(versionText("1.4", "27"), "Version 1.4 (27)");
    EXPECT_EQ(versionText("1.4", std::nullopt), "Version 1.4");
    EXPECT_EQ(versionText("1.4", ""), "Version 1.4");
    EXPECT_EQ(versionText(std::nullopt, "27"), "Version — (27)");
}

TEST(LocalizationTest, InstalledHooksTranslateCountsAndNumbers) {
    installCountTranslator(
        [](std::string_view english, long long count) -> std::optional<std::string> {
            return english == "%n hour(s)"
                       ? std::to_string(count) + (count == 1 ? " Stunde" : " Stunden")
                       : std::to_string(count) + (count == 1 ? " Minute" : " Minuten");
        });
    installDecimalFormatter([](double value, int digits) {
        std::string text =
            std::to_string(static_cast<long long>(std::round(value * std::pow(10, digits))));
        text.insert(text.size() - static_cast<std::size_t>(digits), ",");
        return text;
    });
    EXPECT_EQ(formattedChargeDuration(125), "2 Stunden, 5 Minuten");
    EXPECT_EQ(temperatureText(31.46, "celsius"), "31,5 °C");
    installCountTranslator(nullptr);
    installDecimalFormatter(nullptr);
    EXPECT_EQ(formattedChargeDuration(1), "1 minute");
}

}  // namespace
}  // namespace voltaro
