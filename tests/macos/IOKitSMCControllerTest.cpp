#include "platform/macos/IOKitSMCController.h"

#include <gtest/gtest.h>

#include "core/telemetry/SMCKeyData.h"
#include "core/telemetry/SMCReader.h"
#include "macos/FakeIOKit.h"

namespace voltaro::platform {
namespace {

using testing::FakeIOKit;

const FakeIOKit::SMCKey b0at22_25{detail::fourCharacterCode("ui16"), {0x8A, 0x0B}};

TEST(IOKitSMCControllerTest, UsesTheSecondServiceWhenTheFirstRefusesToOpen) {
    FakeIOKit ioKit;
    ioKit.services["AppleSMC"].openResult = FakeIOKit::kIOReturnNotPermitted;
    ioKit.services["AppleSMCKeysEndpoint"] = {};
    ioKit.smcKeys["B0AT"] = b0at22_25;
    IOKitSMCController controller(ioKit.calls());
    {
        SMCReader reader(controller);
        EXPECT_EQ(reader.batteryTemperatureCelsius(), 22.25);
        EXPECT_EQ(reader.batteryTemperatureCelsius(), 22.25);
        EXPECT_EQ(ioKit.openConnections().size(), 1u);
    }
    EXPECT_EQ(ioKit.matchedClasses(),
              (std::vector<std::string>{"AppleSMC", "AppleSMCKeysEndpoint"}));
    EXPECT_EQ(ioKit.unreleasedObjects(), std::set<MachPort>{});
    EXPECT_EQ(ioKit.openConnections(), std::set<MachPort>{});
    EXPECT_EQ(ioKit.misuse(), std::vector<std::string>{});
}

TEST(IOKitSMCControllerTest, TriesAgainWhileNoServiceOpens) {
    FakeIOKit ioKit;
    ioKit.services["AppleSMC"].openResult = FakeIOKit::kIOReturnNotPermitted;
    ioKit.smcKeys["B0AT"] = b0at22_25;
    IOKitSMCController controller(ioKit.calls());
    SMCReader reader(controller);

    EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
    EXPECT_EQ(reader.batteryTemperatureCelsius(), std::nullopt);
    EXPECT_EQ(ioKit.matchedClasses().size(), 4u);
    EXPECT_EQ(ioKit.unreleasedObjects(), std::set<MachPort>{});
    EXPECT_EQ(ioKit.misuse(), std::vector<std::string>{});
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
        FakeIOKit ioKit;
        ioKit.services["AppleSMC"] = {};
        ioKit.smcKeys["B0AT"] = b0at22_25;
        ioKit.structCallResult = c.result;
        ioKit.structCallAnswerSize = c.answerSize;
        IOKitSMCController controller(ioKit.calls());
        const auto connection = controller.open("AppleSMC");
        ASSERT_TRUE(connection);
        detail::SMCKeyData request;
        request.key = detail::fourCharacterCode("B0AT");
        request.command = detail::kSMCReadKeyInformation;
        SMCKeyDataBuffer reply{};

        EXPECT_EQ(controller.callStructMethod(*connection, detail::kSMCKeyDataSelector,
                                              request.encode(), reply),
                  c.accepted)
            << c.result << " " << c.answerSize;
        if (c.accepted) {
            EXPECT_EQ(detail::SMCKeyData::decode(reply).dataSize, 2u);
        }
        EXPECT_EQ(SMCReader(controller).batteryTemperatureCelsius().has_value(), c.accepted);
        EXPECT_EQ(ioKit.misuse(), std::vector<std::string>{});
    }
}

TEST(IOKitSMCControllerTest, PassesTheRecordsThroughUntouched) {
    const struct {
        const char* description;
        FakeIOKit::SMCKey key;
        std::optional<double> celsius;
    } cases[] = {
        {"sp78", {detail::fourCharacterCode("sp78"), {0x1E, 0x80}}, 30.5},
        {"type code that is not ASCII", {0xF3703738, {0x1E, 0x80}}, std::nullopt},
        {"full 32 bytes",
         {detail::fourCharacterCode("flt "), std::vector<std::uint8_t>(32, 0)},
         0.0},
    };
    for (const auto& c : cases) {
        FakeIOKit ioKit;
        ioKit.services["AppleSMC"] = {};
        ioKit.smcKeys["TB0T"] = c.key;
        IOKitSMCController controller(ioKit.calls());
        EXPECT_EQ(SMCReader(controller).batteryTemperatureCelsius(), c.celsius) << c.description;
    }
}

}  // namespace
}  // namespace voltaro::platform
