#include "support/FakeSMCController.h"

#include <algorithm>
#include <array>

#include "core/telemetry/SMCKeyData.h"

namespace voltaro::testing {
namespace {

// Attribute bytes a reader must echo back untouched in its second request.
constexpr std::array<std::uint8_t, 4> kAttributes = {0xD4, 0x01, 0x02, 0x03};

}  // namespace

std::optional<SMCConnection> FakeSMCController::open(std::string_view serviceClass) {
    openAttempts_.emplace_back(serviceClass);
    if (refused_.contains(std::string(serviceClass))) {
        return std::nullopt;
    }
    const SMCConnection connection = nextConnection_++;
    open_.insert(connection);
    opened_.push_back(connection);
    return connection;
}

bool FakeSMCController::callStructMethod(SMCConnection connection, std::uint32_t selector,
                                         const SMCKeyDataBuffer& input, SMCKeyDataBuffer& output) {
    if (!open_.contains(connection) || selector != detail::kSMCKeyDataSelector) {
        return false;
    }
    const auto request = detail::SMCKeyData::decode(input);
    const std::string name = detail::fourCharacterString(request.key);
    requests_.push_back({name, request.command});

    detail::SMCKeyData reply;
    const auto found = keys_.find(name);
    if (found == keys_.end()) {
        reply.result = kKeyNotFound;
        output = reply.encode();
        return true;
    }
    const Key& key = found->second;
    if (key.callFails) {
        return false;
    }
    const std::uint32_t typeCode = key.typeCode.value_or(detail::fourCharacterCode(key.type));
    const auto dataSize = key.dataSize.value_or(static_cast<std::uint32_t>(key.bytes.size()));
    if (request.command == detail::kSMCReadKeyInformation) {
        reply.result = key.firstResult;
        reply.dataSize = dataSize;
        reply.dataType = typeCode;
        reply.dataAttributes = kAttributes;
    } else if (request.command == detail::kSMCReadBytes && request.dataSize == dataSize &&
               request.dataType == typeCode && request.dataAttributes == kAttributes) {
        reply.result = key.secondResult;
        std::copy_n(key.bytes.begin(), std::min(key.bytes.size(), reply.bytes.size()),
                    reply.bytes.begin());
    } else {
        reply.result = kBadArgument;
    }
    output = reply.encode();
    return true;
}

void FakeSMCController::close(SMCConnection connection) {
    open_.erase(connection);
    closed_.push_back(connection);
}

}  // namespace voltaro::testing
