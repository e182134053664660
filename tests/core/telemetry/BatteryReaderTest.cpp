#include "core/telemetry/BatteryReader.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "core/telemetry/UnavailableSMCController.h"
#include "support/FakeBatteryRegistry.h"
#include "support/ManualScheduler.h"

namespace voltaro {
namespace {

using D = PropertyDictionary;
using Watts = std::optional<double>;
constexpr std::nullopt_t unknown = std::nullopt;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t unsignedMinusThousand = 18446744073709550616ULL;

D telemetry(D values) {
    return {{"PowerTelemetryData", std::move(values)}};
}

D with(D base, const D& more) {
    for (const auto& entry : more.entries()) {
        base.set(entry.key, entry.value);
    }
    return base;
}

const D adapterRating{{"AdapterDetails", D{{"Watts", 96}}}};
const D ipd{{"PowerDistribution", D{{"IPDInputPower", 41000}}}};

struct ReaderFixture : ::testing::Test {
    testing::FakeBatteryRegistry registry;
    UnavailableSMCController smc;
    testing::ManualScheduler clock;
    BatteryReader reader{registry, smc, clock};
};

void expectWatts(const Watts& actual, const Watts& expected, const char* field) {
    ASSERT_EQ(actual.has_value(), expected.has_value()) << field;
    if (expected) {
        EXPECT_NEAR(*actual, *expected, 1e-9) << field;
    }
}

TEST_F(ReaderFixture, FollowsTheFallbackChains) {
    const std::optional<std::string> none, ac = "AC Power", battery = "Battery Power";
    const struct {
        const char* description;
        std::optional<std::string> powerSourceType;
        std::int64_t level;
        Watts systemWatts, batteryPowerWatts, adapterWatts;
        bool isCharging;
        D properties;
    } cases[] = {
        {"capacity above 100 is clamped", none, 100, unknown, unknown, unknown, false,
         D{{"CurrentCapacity", 105}}},
        {"negative capacity is zero", none, 0, unknown, unknown, unknown, false,
         D{{"CurrentCapacity", -3}}},
        {"missing capacity is zero", none, 0, unknown, unknown, unknown, false, D{}},
        {"fractional capacity is truncated", none, 57, unknown, unknown, unknown, false,
         D{{"CurrentCapacity", 57.9}}},
        {"numbers that are not numbers are unknown", none, 0, unknown, unknown, unknown, false,
         with(telemetry({{"SystemLoad", nan}}), {{"CurrentCapacity", nan}})},
        {"unsigned amperage is reinterpreted", none, 0, 12.0, -12.0, unknown, false,
         D{{"Voltage", 12000}, {"Amperage", unsignedMinusThousand}, {"IsCharging", true}}},
        {"power from current beyond the limit is absent", none, 0, unknown, unknown, unknown, true,
         D{{"Voltage", 12600}, {"InstantAmperage", 20000}, {"IsCharging", true}}},
        {"missing voltage gives zero watts", none, 0, 0.0, 0.0, unknown, true,
         D{{"Amperage", 1500}, {"IsCharging", true}}},
        {"telemetry battery power wins over current", battery, 0, 5.0, -5.0, unknown, false,
         with(telemetry({{"BatteryPower", -5000}}), {{"Voltage", 12000}, {"Amperage", 100}})},
        {"unsigned battery power is reinterpreted", battery, 0, 1.0, -1.0, unknown, false,
         telemetry({{"BatteryPower", unsignedMinusThousand}})},
        {"on battery, the system draws what the battery gives", battery, 0, 8.0, -8.0, unknown,
         false, telemetry({{"BatteryPower", -8000}})},
        {"on the adapter, the system draws input minus battery", ac, 0, 25.0, 5.0, 30.0, true,
         telemetry({{"SystemPowerIn", 30000}, {"BatteryPower", 5000}})},
        {"input below what the battery takes gives no system power", ac, 0, unknown, 5.0, 3.0, true,
         telemetry({{"SystemPowerIn", 3000}, {"BatteryPower", 5000}})},
        {"input without battery power gives no system power", ac, 0, unknown, unknown, 30.0, false,
         telemetry({{"SystemPowerIn", 30000}})},
        {"negative load counts by its size", battery, 0, 12.0, unknown, unknown, false,
         telemetry({{"SystemLoad", -12000}})},
        {"a load under a watt counts", battery, 0, 0.5, unknown, unknown, false,
         telemetry({{"SystemLoad", 500}})},
        {"250 W is still plausible", battery, 0, 250.0, unknown, unknown, false,
         telemetry({{"SystemLoad", 250000}})},
        {"adapter from the load alone", ac, 0, 12.0, unknown, 12.0, false,
         telemetry({{"SystemLoad", 12000}})},
        {"adapter from load plus battery", ac, 0, 12.0, 3.0, 15.0, true,
         telemetry({{"SystemLoad", 12000}, {"BatteryPower", 3000}})},
        {"rejected candidate falls back to IPD", ac, 0, 4.0, -6.0, 41.0, false,
         with(with(telemetry({{"SystemLoad", 4000}, {"BatteryPower", -6000}}), ipd),
              adapterRating)},
        {"rejected candidate falls back to the rating", ac, 0, 4.0, -6.0, 96.0, false,
         with(telemetry({{"SystemLoad", 4000}, {"BatteryPower", -6000}}), adapterRating)},
        {"no telemetry uses IPD", ac, 0, unknown, unknown, 41.0, false, with(ipd, adapterRating)},
        {"no telemetry uses the rating", ac, 0, unknown, unknown, 96.0, false, adapterRating},
        {"no telemetry, no rating", ac, 0, unknown, unknown, unknown, false, D{}},
        {"on battery, no adapter power", battery, 0, unknown, unknown, unknown, false,
         with(telemetry({{"SystemPowerIn", 30000}}), adapterRating)},
        {"small positive flow follows the registry's flag", ac, 0, unknown, 0.05, 0.05, false,
         with(telemetry({{"BatteryPower", 50}}), {{"IsCharging", false}})},
        {"above the threshold is charging", ac, 0, unknown, 0.2, 0.2, true,
         with(telemetry({{"BatteryPower", 200}}), {{"IsCharging", false}})},
        {"draining is not charging", ac, 0, unknown, -0.5, unknown, false,
         with(telemetry({{"BatteryPower", -500}}), {{"IsCharging", true}})},
        {"instant amperage as text hides the amperage", none, 0, unknown, unknown, unknown, false,
         D{{"Voltage", 12000}, {"InstantAmperage", "n/a"}, {"Amperage", -1000}}},
        {"nested key outside its dictionary is ignored", battery, 0, unknown, unknown, unknown,
         false, D{{"SystemLoad", 9000}, {"PowerTelemetryData", "not a dictionary"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.description);
        registry.dictionary = c.properties;
        registry.powerSourceType = c.powerSourceType;
        const BatterySnapshot snapshot = reader.read();
        EXPECT_EQ(snapshot.level, c.level);
        expectWatts(snapshot.systemWatts, c.systemWatts, "systemWatts");
        expectWatts(snapshot.batteryPowerWatts, c.batteryPowerWatts, "batteryPowerWatts");
        expectWatts(snapshot.adapterWatts, c.adapterWatts, "adapterWatts");
        EXPECT_EQ(snapshot.isCharging, c.isCharging);
        EXPECT_EQ(snapshot.updatedAt, clock.wallNow());
    }
}

TEST_F(ReaderFixture, UnreadableBatteryGivesTheSharedEmptySnapshotAndAnEmptyOneIsRead) {
    registry.powerSourceType = "AC Power";
    EXPECT_EQ(reader.read(), BatterySnapshot::empty());
    registry.dictionary = D{};
    EXPECT_NE(reader.read(), BatterySnapshot::empty());
}

TEST_F(ReaderFixture, PowerSourceServiceWinsOverRegistryFlag) {
    const std::tuple<bool, std::optional<std::string>, bool> cases[] = {
        {false, "AC Power", true},
        {true, "Battery Power", false},
        {true, "UPS Power", true},
        {true, std::nullopt, true},
    };
    for (const auto& [flag, type, connected] : cases) {
        registry.dictionary = D{{"ExternalConnected", flag}};
        registry.powerSourceType = type;
        EXPECT_EQ(reader.read().isConnectedToPower, connected) << type.value_or("none");
    }
}

// Read with no power source connected: the rating stays known while on battery.
TEST_F(ReaderFixture, AdapterRatingAndTemperatureWithinLimits) {
    const std::pair<int, std::optional<double>> ratings[] = {
        {300, std::nullopt}, {0, 0.0}, {96, 96.0}};
    for (const auto& [watts, expected] : ratings) {
        registry.dictionary = D{{"AdapterDetails", D{{"Watts", watts}}}};
        EXPECT_EQ(reader.read().adapterCapacityWatts, expected) << watts;
    }
    const std::pair<int, std::optional<double>> temperatures[] = {
        {2981, 24.95}, {3600, std::nullopt}, {2631, std::nullopt}, {2631 + 1, -9.95}};
    for (const auto& [decikelvin, celsius] : temperatures) {
        registry.dictionary = D{{"Temperature", decikelvin}};
        expectWatts(reader.read().temperatureCelsius, celsius, "temperatureCelsius");
    }
}

TEST_F(ReaderFixture, HealthLeavesImplausibleFiguresUnknown) {
    const D appleSilicon{
        {"DesignCapacity", 4382}, {"AppleRawMaxCapacity", 3944}, {"MaxCapacity", 88}};
    const std::tuple<D, std::optional<std::int64_t>, std::optional<double>> cases[] = {
        {with(appleSilicon, {{"CycleCount", 412}}), 412, 3944.0 / 4382 * 100},  // raw mAh
        {D{{"DesignCapacity", 4382}, {"MaxCapacity", 88}}, unknown, 88},    // no raw: a percentage
        {D{{"DesignCapacity", 5000}, {"MaxCapacity", 4600}}, unknown, 92},  // Intel: mAh
        {with(appleSilicon, {{"DesignEnergy", 50000}, {"FullChargeEnergy", 52000}}), unknown, 104},
        {D{{"DesignCapacity", 0}, {"AppleRawMaxCapacity", 3000}}, unknown, unknown},
        {D{{"DesignCapacity", 1000}, {"AppleRawMaxCapacity", 2500}}, unknown, unknown},  // 250 %
        {D{{"CycleCount", 0}}, 0, unknown},
        {D{{"CycleCount", -1}}, unknown, unknown},
        {D{{"CycleCount", 100001}}, unknown, unknown},
    };
    int row = 0;
    for (const auto& [properties, cycles, percent] : cases) {
        SCOPED_TRACE(row++);
        registry.dictionary = properties;
        const BatteryHealth health = reader.read().health;
        EXPECT_EQ(health.cycleCount, cycles);
        expectWatts(health.capacityPercent, percent, "capacityPercent");
    }
}

TEST(BatteryReaderHelpersTest, TimeEstimateTakesTheFirstPlausibleCandidate) {
    const PropertyValue noEstimate = 65535, minusOne = -1, fortyTwo = 42, fullDay = 1440,
                        dayAndMinute = 1441, zero = 0, text = "42";
    EXPECT_EQ(BatteryReader::validTimeEstimate({&noEstimate, &fortyTwo}), 42);
    EXPECT_EQ(BatteryReader::validTimeEstimate({nullptr, &text, &minusOne, &fullDay}), 1440);
    EXPECT_EQ(BatteryReader::validTimeEstimate({&dayAndMinute, &zero}), 0);
    EXPECT_EQ(BatteryReader::validTimeEstimate({&dayAndMinute, &minusOne}), std::nullopt);
}

}  // namespace
}  // namespace voltaro
