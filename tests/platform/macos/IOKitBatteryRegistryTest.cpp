#include "platform/macos/IOKitBatteryRegistry.h"

#include <gtest/gtest.h>

#include "core/telemetry/BatteryReader.h"
#include "core/telemetry/UnavailableSMCController.h"
#include "platform/macos/FakeCoreFoundation.h"
#include "platform/macos/FakeIOKit.h"
#include "support/ManualScheduler.h"

namespace voltaro::platform {
namespace {

using testing::FakeCoreFoundation;
using testing::FakeIOKit;

struct Machine {
    FakeCoreFoundation cf;
    FakeIOKit ioKit;
    IOKitBatteryRegistry registry{ioKit.calls(), ioKit.powerSourceCalls(), cf.calls()};

    void expectEverythingReleased(CFObject owned) {
        EXPECT_EQ(cf.referenceCount(owned), 0);
        EXPECT_EQ(ioKit.unreleasedObjects, std::set<MachPort>{});
        EXPECT_EQ(cf.misuse, std::vector<std::string>{});
        EXPECT_EQ(ioKit.misuse, std::vector<std::string>{});
    }
};

TEST(IOKitBatteryRegistryTest, ReadsTheSmartBatteryEntryForTheBatteryReader) {
    Machine machine;
    auto& cf = machine.cf;
    // The registry reports the discharge current as an unsigned 64-bit number.
    const CFObject properties = cf.dictionary({
        {cf.string("Voltage"), cf.number(kCFNumberSInt32, std::int64_t{12000})},
        {cf.string("Amperage"), cf.wideUnsigned(18446744073709550616u, false)},
        {cf.string("IsCharging"), cf.boolean(true)},
        {cf.string("CurrentCapacity"), cf.number(kCFNumberSInt64, std::int64_t{57})},
        // Apple silicon: MaxCapacity is a percentage, the raw figure holds the mAh.
        {cf.string("CycleCount"), cf.number(kCFNumberSInt32, std::int64_t{412})},
        {cf.string("DesignCapacity"), cf.number(kCFNumberSInt32, std::int64_t{4382})},
        {cf.string("MaxCapacity"), cf.number(kCFNumberSInt32, std::int64_t{88})},
        {cf.string("AppleRawMaxCapacity"), cf.number(kCFNumberSInt32, std::int64_t{3944})},
        {cf.string("DeviceName"), cf.string(" bq40z651\n")},  // padded, as firmware has it
    });
    machine.ioKit.services["AppleSmartBattery"].properties = properties;
    testing::ManualScheduler clock;
    UnavailableSMCController smc;

    const BatterySnapshot snapshot = BatteryReader(machine.registry, smc, clock).read();

    EXPECT_EQ(snapshot.level, 57);
    EXPECT_EQ(snapshot.batteryPowerWatts, -12.0);
    EXPECT_FALSE(snapshot.isCharging);
    EXPECT_EQ(snapshot.health.cycleCount, 412);
    EXPECT_NEAR(*snapshot.health.capacityPercent, 90.0, 0.01);
    EXPECT_EQ(snapshot.health.model, "bq40z651");
    EXPECT_EQ(machine.ioKit.matchedClasses, std::vector<std::string>{"AppleSmartBattery"});
    machine.expectEverythingReleased(properties);
}

TEST(IOKitBatteryRegistryTest, HasNoPropertiesWithoutAReadableEntry) {
    Machine noEntry;
    EXPECT_EQ(noEntry.registry.properties(), std::nullopt);
    EXPECT_EQ(noEntry.ioKit.misuse, std::vector<std::string>{});

    Machine refused;
    const CFObject partial = refused.cf.dictionary({});
    refused.ioKit.services["AppleSmartBattery"] = {.properties = partial,
                                                   .propertiesResult = FakeIOKit::kIOReturnError};
    EXPECT_EQ(refused.registry.properties(), std::nullopt);
    refused.expectEverythingReleased(partial);

    Machine notADictionary;
    const CFObject data = notADictionary.cf.other();
    notADictionary.ioKit.services["AppleSmartBattery"].properties = data;
    EXPECT_EQ(notADictionary.registry.properties(), std::nullopt);
    notADictionary.expectEverythingReleased(data);
}

TEST(IOKitBatteryRegistryTest, ReadsTheProvidingSourceBeforeReleasingTheBlob) {
    enum class Type { ac, battery, absent, notText };
    const struct {
        bool hasBlob;
        Type type;
        std::optional<std::string> expected;
    } cases[] = {
        {true, Type::ac, "AC Power"},        {true, Type::battery, "Battery Power"},
        {true, Type::absent, std::nullopt},  {true, Type::notText, std::nullopt},
        {false, Type::absent, std::nullopt},
    };
    for (const auto& c : cases) {
        Machine machine;
        auto& cf = machine.cf;
        CFObject type = nullptr;
        if (c.type == Type::ac || c.type == Type::battery) {
            type = cf.string(c.type == Type::ac ? "AC Power" : "Battery Power");
        } else if (c.type == Type::notText) {
            type = cf.number(kCFNumberInt, std::int64_t{1});
        }
        // The blob owns the type it answers with.
        const CFObject blob = cf.other(type ? std::vector{type} : std::vector<CFObject>{});
        machine.ioKit.powerSourcesInfo = c.hasBlob ? blob : nullptr;
        machine.ioKit.providingPowerSourceType = type;

        EXPECT_EQ(machine.registry.providingPowerSourceType(), c.expected);
        EXPECT_EQ(cf.referenceCount(blob), c.hasBlob ? 0 : 1);
        EXPECT_EQ(cf.misuse, std::vector<std::string>{});
    }
}

}  // namespace
}  // namespace voltaro::platform
