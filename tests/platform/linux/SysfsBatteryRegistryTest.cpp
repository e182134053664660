#include "platform/linux/SysfsBatteryRegistry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iomanip>
#include <map>
#include <sstream>
#include <variant>

#include "platform/linux/SmartBatteryProperties.h"
#include "platform/linux/SysfsAttributes.h"
#include "support/TemporaryDirectory.h"

namespace voltaro::platform {
namespace {

namespace fs = std::filesystem;

// Keys sorted and every value tagged with its kind, so that two dictionaries compare equal as text
// when they hold the same in any order.
std::string describe(const PropertyValue& value) {
    std::ostringstream out;
    out << std::setprecision(17) << std::boolalpha;
    std::visit(
        [&](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<T, PropertyDictionary>) {
                std::map<std::string, std::string> sorted;
                for (const auto& entry : held.entries()) {
                    sorted[entry.key] = describe(entry.value);
                }
                out << "{";
                for (const auto& [key, text] : sorted) {
                    out << key << ": " << text << ", ";
                }
                out << "}";
            } else {
                out << held << (std::is_same_v<T, double> ? "d" : "");
            }
        },
        value.storage());
    return out.str();
}

using D = PropertyDictionary;

TEST(SysfsAttributesTest, ParsesOnlyWholeIntegers) {
    const std::vector<std::pair<std::string, std::optional<std::int64_t>>> cases = {
        {"42\n", 42},
        {"  -17 \n", -17},
        {"-9223372036854775808", INT64_MIN},
        {"", std::nullopt},
        {" \n", std::nullopt},
        {"12abc", std::nullopt},
        {"1.5", std::nullopt},
        {"1 2", std::nullopt},
        {"+5", std::nullopt},
        {"0x10", std::nullopt},
        {"99999999999999999999", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(parseIntegerAttribute(text), expected) << '"' << text << '"';
    }
}

// Writes one power supply's attributes into a temporary sysfs tree.
fs::path writeSupply(const testing::TemporaryDirectory& sysfs, const std::string& name,
                     const std::map<std::string, std::string>& attributes) {
    const fs::path supply = fs::path("class/power_supply") / name;
    for (const auto& [attribute, value] : attributes) {
        sysfs.write(supply / attribute, value + "\n");
    }
    return sysfs / supply;
}

TEST(SysfsAttributesTest, ReadsTrimmedTextAndRejectsWhatIsNoAttribute) {
    testing::TemporaryDirectory directory;
    directory.write("status", "Not charging  \n");
    directory.write("model_name", std::string(5000, 'x'));
    fs::create_directory(directory / "capacity");
    EXPECT_EQ(readTextAttribute(directory / "status"), "Not charging");
    for (const char* file : {"capacity", "model_name", "missing"}) {
        EXPECT_EQ(readTextAttribute(directory / file), std::nullopt) << file;
    }
}

TEST(SysfsBatteryRegistryTest, ReadsAfreshAndSurvivesEntriesVanishing) {
    testing::TemporaryDirectory sysfs;
    writeSupply(sysfs, "AC", {{"type", "Mains"}, {"online", "0"}});
    const fs::path battery = writeSupply(sysfs, "BAT0",
                                         {{"type", "Battery"},
                                          {"status", "Discharging"},
                                          {"energy_now", "30000000"},
                                          {"energy_full", "40000000"},
                                          {"voltage_now", "12000000"},
                                          {"power_now", "6000000"}});
    writeSupply(sysfs, "BAT1", {{"type", "Battery"}, {"present", "0"}});  // empty bay
    // A class link whose device went away between listing and reading.
    fs::create_directory_symlink("../../devices/platform/gone/BAT2",
                                 sysfs / "class/power_supply/BAT2");
    SysfsBatteryRegistry registry(sysfs.path());

    EXPECT_EQ(describe(*registry.properties()),
              describe(D{{"CurrentCapacity", 75},
                         {"IsCharging", false},
                         {"ExternalConnected", false},
                         {"Voltage", 12000.0},
                         {"FullChargeEnergy", 40000},
                         {"PowerTelemetryData", D{{"BatteryPower", -6000}}}}));
    // Plugged in between the two questions of one refresh: both answer from the same reading.
    writeSupply(sysfs, "AC", {{"online", "1"}});
    EXPECT_EQ(registry.providingPowerSourceType(), "Battery Power");
    writeSupply(sysfs, "AC", {{"online", "0"}});

    for (const char* attribute : {"power_now", "energy_full", "status"}) {
        fs::remove(battery / attribute);
    }
    EXPECT_EQ(describe(*registry.properties()),
              describe(D{{"ExternalConnected", false}, {"Voltage", 12000.0}}));
    EXPECT_EQ(registry.providingPowerSourceType(), "Battery Power");

    fs::remove_all(battery);
    EXPECT_EQ(registry.properties(), std::nullopt);
    EXPECT_EQ(registry.providingPowerSourceType(), std::nullopt);

    // Any positive value is power present (USB-PD sources report newer ones); a gauge past 100
    // after a calibration reads full.
    writeSupply(sysfs, "AC", {{"online", "4"}});
    writeSupply(sysfs, "BAT3", {{"type", "Battery"}, {"capacity", "104"}});
    EXPECT_EQ(describe(*registry.properties()),
              describe(D{{"CurrentCapacity", 100}, {"ExternalConnected", true}}));
    EXPECT_EQ(registry.providingPowerSourceType(), "AC Power");
}

// One battery's current and power: the status decides the sign, whatever the driver wrote.
TEST(SmartBatteryPropertiesTest, SignsFlowByStatus) {
    const std::vector<std::tuple<std::string, std::int64_t, std::int64_t>> cases = {
        {"Discharging", 1500000, -1500}, {"Discharging", -1500000, -1500},
        {"Charging", -1500000, 1500},    {"Charging", 1500000, 1500},
        {"Full", -20000, -20},           {"Unknown", 20000, 20},
    };
    for (const auto& [status, micro, milli] : cases) {
        SysfsPowerSupplies supplies;
        supplies.batteries.push_back({.name = "BAT0",
                                      .status = status,
                                      .currentMicroamps = micro,
                                      .powerMicrowatts = micro});
        const auto properties = smartBatteryProperties(supplies);
        EXPECT_EQ(*properties->find("InstantAmperage"), PropertyValue(milli)) << status;
        EXPECT_EQ(*properties->dictionary("PowerTelemetryData")->find("BatteryPower"),
                  PropertyValue(milli))
            << status;
    }
}

TEST(SmartBatteryPropertiesTest, PercentFromEnergyOrChargeWithoutCapacity) {
    SysfsPowerSupplies supplies;
    supplies.batteries.push_back(
        {.name = "BAT0", .chargeNowMicroampHours = 2000000, .chargeFullMicroampHours = 3000000});
    EXPECT_EQ(*smartBatteryProperties(supplies)->find("CurrentCapacity"), PropertyValue(67));
    // Just calibrated: holds more than it last called full.
    supplies.batteries[0].energyNowMicrowattHours = 51000000;
    supplies.batteries[0].energyFullMicrowattHours = 50000000;
    EXPECT_EQ(*smartBatteryProperties(supplies)->find("CurrentCapacity"), PropertyValue(100));
}

TEST(SmartBatteryPropertiesTest, TimeToFullFromTheKernelElseEstimatedWhileCharging) {
    SysfsBattery battery{.name = "BAT0",
                         .status = "Charging",
                         .energyNowMicrowattHours = 40000000,
                         .energyFullMicrowattHours = 50000000,
                         .voltageMicrovolts = 12500000,
                         .currentMicroamps = 1600000,  // 20 W: 30 minutes for 10 Wh
                         .timeToFullNowSeconds = 1830};
    const auto minutes = [&](const std::string& key) -> std::optional<PropertyValue> {
        const auto properties = smartBatteryProperties({.batteries = {battery}});
        const PropertyValue* value = properties->find(key);
        return value ? std::optional(*value) : std::nullopt;
    };
    EXPECT_EQ(minutes("InstantTimeToFull"), PropertyValue(31));
    battery.timeToFullNowSeconds.reset();
    EXPECT_EQ(minutes("InstantTimeToFull"), PropertyValue(30));
    battery.status = "Not charging";
    EXPECT_EQ(minutes("InstantTimeToFull"), std::nullopt);
    battery.status = "Charging";
    battery.currentMicroamps = 0;
    EXPECT_EQ(minutes("InstantTimeToFull"), std::nullopt);
}

TEST(SmartBatteryPropertiesTest, CombinesBatteriesThatReportDifferently) {
    SysfsPowerSupplies supplies;
    supplies.batteries = {
        {.name = "BAT0",
         .status = "Discharging",
         .capacityPercent = 40,
         .energyNowMicrowattHours = 20000000,
         .energyFullMicrowattHours = 50000000,
         .voltageMicrovolts = 12000000,
         .powerMicrowatts = 6000000,
         .temperatureDecidegreesCelsius = 310},
        {.name = "BAT1",
         .status = "Discharging",
         .capacityPercent = 90,
         .voltageMicrovolts = 11000000,
         .currentMicroamps = 500000,  // 5.5 W
         .temperatureDecidegreesCelsius = 335,
         .timeToFullAverageSeconds = 600},
    };
    // The offline port's higher rating is no charger in use.
    supplies.adapters = {{.name = "AC",
                          .isOnline = false,
                          .voltageMaxMicrovolts = 20000000,
                          .currentMaxMicroamps = 6500000},
                         {.name = "usb-a",
                          .isOnline = true,
                          .voltageMaxMicrovolts = 5000000,
                          .currentMaxMicroamps = 3000000},
                         {.name = "usb-b",
                          .isOnline = true,
                          .voltageMaxMicrovolts = 20000000,
                          .currentMaxMicroamps = 5000000}};
    // Mixed units: the mean; power only as current for BAT1, so no telemetry; 11.5 W over 12 V.
    EXPECT_EQ(describe(*smartBatteryProperties(supplies)),
              describe(D{{"CurrentCapacity", 65},
                         {"IsCharging", false},
                         {"ExternalConnected", true},
                         {"Voltage", 12000.0},
                         {"InstantAmperage", -958},
                         {"Temperature", 3066.5},
                         {"AdapterDetails", D{{"Watts", 100.0}}}}));
    EXPECT_EQ(providingPowerSourceType(supplies), "AC Power");

    supplies.batteries[1].currentMicroamps.reset();
    const auto properties = smartBatteryProperties(supplies);
    EXPECT_FALSE(properties->contains("InstantAmperage"));
    EXPECT_TRUE(properties->contains("Voltage"));
}

}  // namespace
}  // namespace voltaro::platform
