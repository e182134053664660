#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/telemetry/SMCKeyData.h"
#include "platform/macos/IOKitCalls.h"

namespace voltaro::testing {

// IOKit's registry and user clients in memory: matching dictionaries that a lookup consumes,
// service objects the caller must release, connections to an SMC that answers the key protocol,
// and the power-source service. Misuse is recorded rather than crashing.
class FakeIOKit {
  public:
    using MachPort = platform::MachPort;
    using KernReturn = platform::KernReturn;

    static constexpr KernReturn kIOReturnError = static_cast<KernReturn>(0xE00002BC);
    static constexpr KernReturn kIOReturnNotPermitted = static_cast<KernReturn>(0xE00002E2);
    static constexpr MachPort kTaskSelf = 0x103;

    struct Service {
        KernReturn openResult = platform::kKernSuccess;
        // Handed to the caller of IORegistryEntryCreateCFProperties, with its reference.
        platform::CFObject properties = nullptr;
        KernReturn propertiesResult = platform::kKernSuccess;
    };
    struct SMCKey {
        std::uint32_t typeCode;
        std::vector<std::uint8_t> bytes;
        std::optional<std::uint32_t> dataSize = {};  // replaces bytes.size() in the first reply
        std::uint8_t firstResult = 0;
        std::uint8_t secondResult = 0;
        bool callFails = false;
    };
    struct SMCRequest {
        std::string key;
        std::uint8_t command;
        friend bool operator==(const SMCRequest&, const SMCRequest&) = default;
    };

    std::map<std::string, Service> services;  // by class
    std::map<std::string, SMCKey> smcKeys;
    // How every struct call ends, and how many bytes of its answer it writes.
    KernReturn structCallResult = platform::kKernSuccess;
    std::size_t structCallAnswerSize = 80;

    platform::CFObject powerSourcesInfo = nullptr;
    platform::CFObject providingPowerSourceType = nullptr;

    std::vector<std::string> matchedClasses;
    std::set<MachPort> unreleasedObjects;  // service objects handed out and not yet released
    std::set<MachPort> openConnections;
    std::vector<std::string> misuse;
    std::vector<SMCRequest> smcRequests;

    platform::IOKitCalls calls() {
        using namespace voltaro::platform;
        IOKitCalls calls;
        calls.serviceMatching = [this](const char* serviceClass) -> CFObject {
            matchedClasses.push_back(serviceClass);
            matchings_.push_back({serviceClass});
            return &matchings_.back();
        };
        calls.serviceGetMatchingService = [this](CFObject matching) -> MachPort {
            auto* dictionary = static_cast<Matching*>(const_cast<void*>(matching));
            if (dictionary->consumed) {
                misuse.push_back("matching dictionary used twice");
                return 0;
            }
            dictionary->consumed = true;
            if (!services.contains(dictionary->serviceClass)) {
                return 0;
            }
            handedOut_[nextPort_] = dictionary->serviceClass;
            unreleasedObjects.insert(nextPort_);
            return nextPort_++;
        };
        calls.registryEntryCreateCFProperties = [this](MachPort entry, CFObject* properties) {
            if (!unreleasedObjects.contains(entry)) {
                misuse.push_back("properties of an unknown or released entry");
                return kIOReturnError;
            }
            Service& service = services.at(handedOut_.at(entry));
            *properties = service.properties;
            service.properties = nullptr;
            return service.propertiesResult;
        };
        calls.objectRelease = [this](MachPort object) {
            if (unreleasedObjects.erase(object) == 0) {
                misuse.push_back("IOObjectRelease of an unknown or released object");
                return kIOReturnError;
            }
            return kKernSuccess;
        };
        calls.taskSelf = [] { return kTaskSelf; };
        calls.serviceOpen = [this](MachPort service, MachPort owningTask, std::uint32_t type,
                                   MachPort* connection) {
            if (!unreleasedObjects.contains(service) || owningTask != kTaskSelf || type != 0) {
                misuse.push_back("IOServiceOpen of a released service, for another task or type");
                return kIOReturnError;
            }
            const KernReturn result = services.at(handedOut_.at(service)).openResult;
            if (result == kKernSuccess) {
                *connection = nextPort_++;
                openConnections.insert(*connection);
            }
            return result;
        };
        calls.connectCallStructMethod = [this](MachPort connection, std::uint32_t selector,
                                               const void* input, std::size_t inputSize,
                                               void* output, std::size_t* outputSize) {
            return structCall(connection, selector, input, inputSize, output, outputSize);
        };
        calls.serviceClose = [this](MachPort connection) {
            if (openConnections.erase(connection) == 0) {
                misuse.push_back("IOServiceClose of a connection that is not open");
                return kIOReturnError;
            }
            return kKernSuccess;
        };
        return calls;
    }

    platform::PowerSourceCalls powerSourceCalls() {
        using namespace voltaro::platform;
        PowerSourceCalls calls;
        calls.copyPowerSourcesInfo = [this]() -> CFObject {
            return std::exchange(powerSourcesInfo, nullptr);
        };
        calls.getProvidingPowerSourceType = [this](CFObject) { return providingPowerSourceType; };
        return calls;
    }

  private:
    struct Matching {
        std::string serviceClass;
        bool consumed = false;
    };

    KernReturn structCall(MachPort connection, std::uint32_t selector, const void* input,
                          std::size_t inputSize, void* output, std::size_t* outputSize) {
        using namespace voltaro::platform;
        if (!openConnections.contains(connection) || selector != detail::kSMCKeyDataSelector ||
            inputSize != 80 || *outputSize < 80) {
            misuse.push_back("struct call with a closed connection, another selector or size");
            return kIOReturnError;
        }
        SMCKeyDataBuffer request;
        std::memcpy(request.data(), input, request.size());
        const auto asked = detail::SMCKeyData::decode(request);
        const std::string name = detail::fourCharacterString(asked.key);
        smcRequests.push_back({name, asked.command});
        // Attribute bytes a reader must echo back untouched in its second request.
        constexpr std::array<std::uint8_t, 4> attributes = {0xD4, 0x01, 0x02, 0x03};
        detail::SMCKeyData answer;
        const auto found = smcKeys.find(name);
        const SMCKey* key = found == smcKeys.end() ? nullptr : &found->second;
        const auto size =
            key ? key->dataSize.value_or(static_cast<std::uint32_t>(key->bytes.size())) : 0;
        if (key == nullptr) {
            answer.result = 0x84;  // key not found
        } else if (key->callFails) {
            return kIOReturnError;
        } else if (asked.command == detail::kSMCReadKeyInformation) {
            answer.result = key->firstResult;
            answer.dataSize = size;
            answer.dataType = key->typeCode;
            answer.dataAttributes = attributes;
        } else if (asked.command == detail::kSMCReadBytes && asked.dataType == key->typeCode &&
                   asked.dataSize == size && asked.dataAttributes == attributes) {
            answer.result = key->secondResult;
            std::copy_n(key->bytes.begin(), std::min(key->bytes.size(), answer.bytes.size()),
                        answer.bytes.begin());
        } else {
            answer.result = 0x89;  // bad argument
        }
        const SMCKeyDataBuffer encoded = answer.encode();
        const std::size_t written = std::min(structCallAnswerSize, encoded.size());
        std::memcpy(output, encoded.data(), written);
        *outputSize = written;
        return structCallResult;
    }

    std::deque<Matching> matchings_;
    std::map<MachPort, std::string> handedOut_;  // service objects, by port
    MachPort nextPort_ = 0x2003;
};

}  // namespace voltaro::testing
