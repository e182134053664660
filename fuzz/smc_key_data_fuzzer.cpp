// Arbitrary controller replies: the key-data record and the temperature decoders on the first 80
// bytes, then SMCReader against a controller that answers every call with the bytes that follow.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "FuzzCheck.h"
#include "core/telemetry/SMCKeyData.h"
#include "core/telemetry/SMCReader.h"
#include "core/telemetry/SMCValue.h"

using namespace voltaro;
using voltaro::fuzz::check;

namespace {

void checkRecord(const std::uint8_t* data, std::size_t size) {
    SMCKeyDataBuffer buffer{};
    std::copy_n(data, std::min(size, buffer.size()), buffer.begin());

    const auto record = detail::SMCKeyData::decode(buffer);
    check(detail::SMCKeyData::decode(record.encode()) == record);

    const std::string type = detail::fourCharacterString(record.dataType);
    check(type.empty() || detail::fourCharacterCode(type) == record.dataType);

    const std::size_t byteCount = std::min<std::size_t>(record.dataSize, record.bytes.size());
    const detail::SMCValue value{type, {record.bytes.begin(), record.bytes.begin() + byteCount}};
    for (const auto celsius :
         {detail::decodeTemperature(value), detail::decodeBatteryTemperature(value)}) {
        check(!celsius || std::isfinite(*celsius));
    }
    if (value.dataType == "ui16" && byteCount >= 2) {
        const auto celsius = detail::decodeBatteryTemperature(value);
        check(!celsius || detail::isPlausibleBatteryCelsius(*celsius));
    }
}

// Answers from the fuzz bytes, and checks that the reader keeps to the protocol: the selector,
// the open connection, information before bytes, and the information echoed back.
class FuzzedController final : public SMCController {
  public:
    explicit FuzzedController(FuzzedDataProvider& provider) : provider_(provider) {}

    std::optional<SMCConnection> open(std::string_view serviceClass) override {
        check(serviceClass == "AppleSMC" || serviceClass == "AppleSMCKeysEndpoint");
        check(opened_ == std::nullopt || *opened_ == 0);
        if (provider_.ConsumeBool()) {
            return std::nullopt;
        }
        opened_ = provider_.ConsumeIntegral<SMCConnection>();
        return opened_;
    }

    bool callStructMethod(SMCConnection connection, std::uint32_t selector,
                          const SMCKeyDataBuffer& input, SMCKeyDataBuffer& output) override {
        check(selector == detail::kSMCKeyDataSelector);
        check(opened_ && connection == *opened_ && connection != 0 && closed_.empty());
        const auto request = detail::SMCKeyData::decode(input);
        const std::string key = detail::fourCharacterString(request.key);
        check(key == "B0AT" || key == "TB0T" || key == "TB1T");
        if (request.command == detail::kSMCReadKeyInformation) {
            check(request.dataSize == 0);
            informationKey_ = key;
        } else {
            check(request.command == detail::kSMCReadBytes);
            check(informationKey_ == key && information_);
            check(request.dataSize == information_->dataSize &&
                  request.dataType == information_->dataType &&
                  request.dataAttributes == information_->dataAttributes);
            check(request.dataSize >= 1 && request.dataSize <= detail::kSMCMaximumDataSize);
            lastRead_ = {key, detail::fourCharacterString(request.dataType)};
        }

        const bool succeeds = provider_.ConsumeBool();
        const std::vector<std::uint8_t> reply = provider_.ConsumeBytes<std::uint8_t>(80);
        output.fill(0);
        std::copy(reply.begin(), reply.end(), output.begin());
        if (request.command == detail::kSMCReadKeyInformation) {
            information_ = detail::SMCKeyData::decode(output);
        }
        return succeeds;
    }

    void close(SMCConnection connection) override {
        check(opened_ && connection == *opened_);
        closed_.push_back(connection);
    }

    struct Read {
        std::string key;
        std::string type;
    };
    const std::optional<Read>& lastRead() const { return lastRead_; }
    bool isOpen() const { return opened_ && *opened_ != 0; }
    const std::vector<SMCConnection>& closed() const { return closed_; }

  private:
    FuzzedDataProvider& provider_;
    std::optional<SMCConnection> opened_;
    std::string informationKey_;
    std::optional<detail::SMCKeyData> information_;
    std::optional<Read> lastRead_;
    std::vector<SMCConnection> closed_;
};

void checkReader(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    FuzzedController controller(provider);
    {
        SMCReader reader(controller);
        for (int refresh = 0; refresh < 2; ++refresh) {
            const auto celsius = reader.batteryTemperatureCelsius();
            if (!celsius) {
                continue;
            }
            // A value comes from a key that was read; the thermistors' and the battery's own
            // tenths of a kelvin are range checked.
            check(std::isfinite(*celsius) && controller.lastRead());
            const auto& read = *controller.lastRead();
            if (read.key != "B0AT" || read.type == "ui16") {
                check(detail::isPlausibleBatteryCelsius(*celsius));
            }
        }
    }
    check(controller.closed().size() == (controller.isOpen() ? 1U : 0U));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    checkRecord(data, size);
    checkReader(data, size);
    return 0;
}
