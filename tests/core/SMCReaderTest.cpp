#include "core/telemetry/SMCReader.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "core/telemetry/SMCKeyData.h"
#include "core/telemetry/SMCValue.h"
#include "support/FakeSMCController.h"

namespace voltaro {
namespace {

using testing::FakeSMCController;
using Key = FakeSMCController::Key;
using Request = FakeSMCController::Request;

TEST(SMCReaderTest, ReadsTheFirstPlausibleTemperatureKey) {
    const Key sp78Of30_5("sp78", {0x1E, 0x80});
    const struct {
        const char* description;
        std::map<std::string, Key> keys;
        std::optional<double> celsius;
    } cases[] = {
        {"battery key in tenths of a kelvin", {{"B0AT", Key("ui16", {0x8A, 0x0B})}}, 22.25},
        {"hot battery key falls back to the thermistor",
         {{"B0AT", Key("ui16", {0x10, 0x0E})}, {"TB0T", sp78Of30_5}},
         30.5},
        {"battery key below the range", {{"B0AT", Key("ui16", {0x47, 0x0A})}}, std::nullopt},
        {"battery key of another type is not range checked",
         {{"B0AT", Key("sp78", {0x5F, 0x00})}},
         95.0},
        {"battery key missing", {{"TB0T", sp78Of30_5}}, 30.5},
        {"negative sp78", {{"TB0T", Key("sp78", {0xFF, 0x00})}}, -1.0},
        {"sp78 at the lower bound", {{"TB0T", Key("sp78", {0xF6, 0x00})}}, -10.0},
        {"hot float thermistor falls back to the second",
         {{"TB0T", Key("flt ", {0x00, 0x00, 0xBE, 0x42})},
          {"TB1T", Key("flt ", {0x00, 0x00, 0xF8, 0x41})}},
         31.0},
        {"ui16 thermistor is little-endian", {{"TB0T", Key("ui16", {0x00, 0x1E})}}, 30.0},
        {"float with too few bytes", {{"TB0T", Key("flt ", {0x00, 0x00})}}, std::nullopt},
        {"type that is not ASCII", {{"TB0T", sp78Of30_5.withTypeCode(0xF3703738)}}, std::nullopt},
        {"battery float that is not a number",
         {{"B0AT", Key("flt ", {0x00, 0x00, 0xC0, 0x7F})}},
         std::nullopt},
        {"unknown type", {{"TB0T", Key("fp88", {0x1E, 0x00})}}, std::nullopt},
        {"failed call skips the key",
         {{"B0AT", Key("ui16", {0x8A, 0x0B}).failingCalls()}, {"TB1T", sp78Of30_5}},
         30.5},
        {"failed second reply skips the key",
         {{"B0AT", Key("ui16", {0x8A, 0x0B}).withSecondResult(0x85)}},
         std::nullopt},
    };
    for (const auto& c : cases) {
        FakeSMCController controller;
        for (const auto& [name, key] : c.keys) {
            controller.setKey(name, key);
        }
        const auto celsius = SMCReader(controller).batteryTemperatureCelsius();
        ASSERT_EQ(celsius.has_value(), c.celsius.has_value()) << c.description;
        if (celsius) {
            EXPECT_NEAR(*celsius, *c.celsius, 1e-9) << c.description;
        }
    }
}

TEST(SMCReaderTest, RejectsUnusableInformationWithoutReadingBytes) {
    for (const Key& key :
         {Key("ui16", {0x8A, 0x0B}).withDataSize(0), Key("ui16", {0x8A, 0x0B}).withDataSize(40),
          Key("ui16", {0x8A, 0x0B}).withFirstResult(0x84)}) {
        FakeSMCController controller;
        controller.setKey("B0AT", key);
        SMCReader reader(controller);

        EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
        EXPECT_EQ(controller.requests(),
                  (std::vector<Request>{{"B0AT", 9}, {"TB0T", 9}, {"TB1T", 9}}));
    }
}

TEST(SMCReaderTest, ReadsAFullSizeValue) {
    FakeSMCController controller;
    controller.setKey("B0AT", Key("flt ", {0x00, 0x00, 0xF8, 0x41}).withDataSize(32));
    SMCReader reader(controller);

    EXPECT_EQ(reader.batteryTemperatureCelsius(), 31.0);
    EXPECT_EQ(controller.requests(), (std::vector<Request>{{"B0AT", 9}, {"B0AT", 5}}));
}

TEST(SMCReaderTest, RetriesOpeningUntilAServiceOpensThenKeepsIt) {
    FakeSMCController controller;
    controller.setKey("B0AT", Key("ui16", {0x8A, 0x0B}));
    controller.refuseToOpen("AppleSMC");
    controller.refuseToOpen("AppleSMCKeysEndpoint");
    { SMCReader unused(controller); }
    EXPECT_TRUE(controller.closedConnections().empty()) << "nothing opened, nothing to close";
    {
        SMCReader reader(controller);
        EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
        EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
        EXPECT_TRUE(controller.requests().empty());

        controller.allowToOpen("AppleSMCKeysEndpoint");
        EXPECT_NE(reader.batteryTemperatureCelsius(), std::nullopt);
        controller.allowToOpen("AppleSMC");
        controller.setKey("B0AT", Key("ui16", {0x8A, 0x0B}).failingCalls());
        EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
        EXPECT_EQ(
            controller.openAttempts(),
            (std::vector<std::string>{"AppleSMC", "AppleSMCKeysEndpoint", "AppleSMC",
                                      "AppleSMCKeysEndpoint", "AppleSMC", "AppleSMCKeysEndpoint"}));
        EXPECT_TRUE(controller.closedConnections().empty());
        EXPECT_EQ(controller.openedConnections().size(), 1u);
    }
    EXPECT_EQ(controller.closedConnections(), controller.openedConnections());
}

TEST(SMCKeyDataTest, LaysOutFieldsLittleEndianAtFixedOffsets) {
    detail::SMCKeyData data;
    data.key = 0x54423054;
    data.dataSize = 2;
    data.dataType = 0x75693136;
    data.dataAttributes = {0xD4, 1, 2, 3};
    data.result = 0x84;
    data.status = 7;
    data.command = 5;
    data.data32 = 0xA1B2C3D4;
    data.bytes[0] = 0x8A;
    data.bytes[31] = 0x0B;

    SMCKeyDataBuffer expected{};
    for (auto [offset, byte] : std::initializer_list<std::pair<int, std::uint8_t>>{
             {0, 0x54},  {1, 0x30},  {2, 0x42},  {3, 0x54},  {28, 2},    {32, 0x36},
             {33, 0x31}, {34, 0x69}, {35, 0x75}, {36, 0xD4}, {37, 1},    {38, 2},
             {39, 3},    {40, 0x84}, {41, 7},    {42, 5},    {44, 0xD4}, {45, 0xC3},
             {46, 0xB2}, {47, 0xA1}, {48, 0x8A}, {79, 0x0B}}) {
        expected[offset] = byte;
    }
    EXPECT_EQ(data.encode(), expected);
    EXPECT_EQ(detail::SMCKeyData::decode(expected), data);

    expected[4] = expected[27] = expected[43] = 0xFF;  // reserved and padding are not read
    EXPECT_EQ(detail::SMCKeyData::decode(expected), data);
}

TEST(SMCKeyDataTest, PacksAndUnpacksFourCharacterCodes) {
    EXPECT_EQ(detail::fourCharacterCode("TB0T"), 0x54423054u);
    EXPECT_EQ(detail::fourCharacterCode("TB0TX"), 0x54423054u);
    EXPECT_EQ(detail::fourCharacterCode("ab"), 0x6162u);
    EXPECT_EQ(detail::fourCharacterCode(""), 0u);
    EXPECT_EQ(detail::fourCharacterString(0x666C7420), "flt ");
    EXPECT_EQ(detail::fourCharacterString(0x54423080), "");
}

}  // namespace
}  // namespace voltaro
