// The SMC reader's rules through the IOKit controller, over the fake IOKit's key protocol.
#include "platform/macos/IOKitSMCController.h"

#include <gtest/gtest.h>

#include <map>

#include "core/telemetry/BatteryReader.h"
#include "core/telemetry/SMCKeyData.h"
#include "core/telemetry/SMCReader.h"
#include "platform/macos/FakeIOKit.h"
#include "support/FakeBatteryRegistry.h"
#include "support/ManualScheduler.h"

namespace voltaro::platform {
namespace {

using testing::FakeIOKit;
using Key = FakeIOKit::SMCKey;
using Request = FakeIOKit::SMCRequest;

Key key(const char* type, std::vector<std::uint8_t> bytes) {
    return {detail::fourCharacterCode(type), std::move(bytes)};
}
template <typename Field, typename Value>
Key with(Key key, Field Key::*field, Value value) {
    key.*field = value;
    return key;
}

const Key b0at22_25 = key("ui16", {0x8A, 0x0B});

// The fake's SMC holding the given keys.
struct FakeSMC : FakeIOKit {
    explicit FakeSMC(std::map<std::string, Key> keys) {
        services["AppleSMC"] = {};
        smcKeys = std::move(keys);
    }
    std::optional<double> celsius() {
        IOKitSMCController controller(calls());
        return SMCReader(controller).batteryTemperatureCelsius();
    }
};

TEST(SMCReaderTest, ReadsTheFirstPlausibleTemperatureKey) {
    const Key sp78Of30_5 = key("sp78", {0x1E, 0x80});
    const struct {
        const char* description;
        std::map<std::string, Key> keys;
        std::optional<double> celsius;
    } cases[] = {
        {"battery key in tenths of a kelvin", {{"B0AT", b0at22_25}}, 22.25},
        {"hot battery key falls back to the thermistor",
         {{"B0AT", key("ui16", {0x10, 0x0E})}, {"TB0T", sp78Of30_5}},
         30.5},
        {"battery key below the range", {{"B0AT", key("ui16", {0x47, 0x0A})}}, std::nullopt},
        {"battery key of another type is not range checked",
         {{"B0AT", key("sp78", {0x5F, 0x00})}},
         95.0},
        {"battery key missing", {{"TB0T", sp78Of30_5}}, 30.5},
        {"negative sp78", {{"TB0T", key("sp78", {0xFF, 0x00})}}, -1.0},
        {"sp78 at the lower bound", {{"TB0T", key("sp78", {0xF6, 0x00})}}, -10.0},
        {"hot float thermistor falls back to the second",
         {{"TB0T", key("flt ", {0x00, 0x00, 0xBE, 0x42})},
          {"TB1T", key("flt ", {0x00, 0x00, 0xF8, 0x41})}},
         31.0},
        {"ui16 thermistor is little-endian", {{"TB0T", key("ui16", {0x00, 0x1E})}}, 30.0},
        {"float with too few bytes", {{"TB0T", key("flt ", {0x00, 0x00})}}, std::nullopt},
        {"full 32 bytes", {{"TB0T", key("flt ", std::vector<std::uint8_t>(32, 0))}}, 0.0},
        {"type that is not ASCII", {{"TB0T", Key{0xF3703738, {0x1E, 0x80}}}}, std::nullopt},
        {"battery float that is not a number",
         {{"B0AT", key("flt ", {0x00, 0x00, 0xC0, 0x7F})}},
         std::nullopt},
        {"unknown type", {{"TB0T", key("fp88", {0x1E, 0x00})}}, std::nullopt},
        {"failed call skips the key",
         {{"B0AT", with(b0at22_25, &Key::callFails, true)}, {"TB1T", sp78Of30_5}},
         30.5},
        {"failed second reply skips the key",
         {{"B0AT", with(b0at22_25, &Key::secondResult, std::uint8_t{0x85})}},
         std::nullopt},
    };
    for (const auto& c : cases) {
        FakeSMC ioKit(c.keys);
        const auto celsius = ioKit.celsius();
        ASSERT_EQ(celsius.has_value(), c.celsius.has_value()) << c.description;
        if (celsius) {
            EXPECT_NEAR(*celsius, *c.celsius, 1e-9) << c.description;
        }
        EXPECT_EQ(ioKit.misuse, std::vector<std::string>{}) << c.description;
    }
}

TEST(SMCReaderTest, ReadsBytesOnlyOfUsableInformation) {
    const struct {
        Key key;
        std::vector<Request> requests;
    } cases[] = {
        {with(b0at22_25, &Key::dataSize, 0u), {{"B0AT", 9}, {"TB0T", 9}, {"TB1T", 9}}},
        {with(b0at22_25, &Key::dataSize, 40u), {{"B0AT", 9}, {"TB0T", 9}, {"TB1T", 9}}},
        {with(b0at22_25, &Key::firstResult, std::uint8_t{0x84}),
         {{"B0AT", 9}, {"TB0T", 9}, {"TB1T", 9}}},
        {with(key("flt ", {0x00, 0x00, 0xF8, 0x41}), &Key::dataSize, 32u),
         {{"B0AT", 9}, {"B0AT", 5}}},
    };
    for (const auto& c : cases) {
        FakeSMC ioKit({{"B0AT", c.key}});
        ioKit.celsius();
        EXPECT_EQ(ioKit.smcRequests, c.requests);
    }
}

TEST(SMCReaderTest, TriesTheServicesUntilOneOpensThenKeepsIt) {
    FakeIOKit ioKit;
    ioKit.services["AppleSMC"].openResult = FakeIOKit::kIOReturnNotPermitted;
    ioKit.smcKeys["B0AT"] = b0at22_25;
    IOKitSMCController controller(ioKit.calls());
    { SMCReader unused(controller); }
    {
        SMCReader reader(controller);
        EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
        EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
        EXPECT_TRUE(ioKit.smcRequests.empty());
        EXPECT_EQ(ioKit.matchedClasses.size(), 4u);

        ioKit.services["AppleSMCKeysEndpoint"] = {};
        EXPECT_EQ(reader.batteryTemperatureCelsius(), 22.25);
        ioKit.services["AppleSMC"].openResult = kKernSuccess;
        EXPECT_EQ(reader.batteryTemperatureCelsius(), 22.25);
        EXPECT_EQ(
            ioKit.matchedClasses,
            (std::vector<std::string>{"AppleSMC", "AppleSMCKeysEndpoint", "AppleSMC",
                                      "AppleSMCKeysEndpoint", "AppleSMC", "AppleSMCKeysEndpoint"}));
        EXPECT_EQ(ioKit.openConnections.size(), 1u);
    }
    EXPECT_EQ(ioKit.unreleasedObjects, std::set<MachPort>{});
    EXPECT_EQ(ioKit.openConnections, std::set<MachPort>{});
    EXPECT_EQ(ioKit.misuse, std::vector<std::string>{});
}

// The registry's own reading stands in only when the controller has none.
TEST(SMCReaderTest, TheBatteryReaderTakesTheControllersTemperatureFirst) {
    const std::pair<std::map<std::string, Key>, double> cases[] = {
        {{{"B0AT", b0at22_25}}, 22.25},
        {{}, 24.95},
    };
    for (const auto& [keys, celsius] : cases) {
        FakeSMC ioKit(keys);
        IOKitSMCController controller(ioKit.calls());
        voltaro::testing::FakeBatteryRegistry registry;
        registry.dictionary = PropertyDictionary{{"Temperature", 2981}};
        voltaro::testing::ManualScheduler clock;
        const auto read = BatteryReader(registry, controller, clock).read().temperatureCelsius;
        ASSERT_TRUE(read);
        EXPECT_NEAR(*read, celsius, 1e-9);
    }
}

TEST(IOKitSMCControllerTest, CountsOnlyAWholeAnswerReportedAsSuccess) {
    const struct {
        KernReturn result;
        std::size_t answerSize;
        bool accepted;
    } cases[] = {
        {kKernSuccess, 80, true},
        {FakeIOKit::kIOReturnError, 80, false},
        {FakeIOKit::kIOReturnNotPermitted, 80, false},
        {kKernSuccess, 0, false},
        {kKernSuccess, 40, false},
    };
    for (const auto& c : cases) {
        FakeSMC ioKit({{"B0AT", b0at22_25}});
        ioKit.structCallResult = c.result;
        ioKit.structCallAnswerSize = c.answerSize;
        EXPECT_EQ(ioKit.celsius().has_value(), c.accepted) << c.result << " " << c.answerSize;
        EXPECT_EQ(ioKit.misuse, std::vector<std::string>{});
    }
}

}  // namespace
}  // namespace voltaro::platform
