#include "platform/macos/IOKitBatteryRegistry.h"

#include "platform/macos/CFPropertyReader.h"

namespace voltaro::platform {

IOKitBatteryRegistry::IOKitBatteryRegistry(IOKitCalls ioKit, PowerSourceCalls powerSources,
                                           CoreFoundationCalls coreFoundation)
    : ioKit_(std::move(ioKit)),
      powerSources_(std::move(powerSources)),
      coreFoundation_(std::move(coreFoundation)) {}

std::optional<PropertyDictionary> IOKitBatteryRegistry::properties() {
    const CFObject matching = ioKit_.serviceMatching("AppleSmartBattery");
    if (matching == nullptr) {
        return std::nullopt;
    }
    // The lookup consumes the matching dictionary.
    const MachPort service = ioKit_.serviceGetMatchingService(matching);
    if (service == 0) {
        return std::nullopt;
    }
    CFObject properties = nullptr;
    const KernReturn created = ioKit_.registryEntryCreateCFProperties(service, &properties);
    ioKit_.objectRelease(service);
    if (properties == nullptr) {
        return std::nullopt;
    }
    std::optional<PropertyDictionary> result;
    if (created == kKernSuccess) {
        result = CFPropertyReader(coreFoundation_).dictionary(properties);
    }
    coreFoundation_.release(properties);
    return result;
}

std::optional<std::string> IOKitBatteryRegistry::providingPowerSourceType() {
    const CFObject blob = powerSources_.copyPowerSourcesInfo();
    if (blob == nullptr) {
        return std::nullopt;
    }
    // The type belongs to the blob: read it before the blob goes.
    auto type =
        CFPropertyReader(coreFoundation_).text(powerSources_.getProvidingPowerSourceType(blob));
    coreFoundation_.release(blob);
    return type;
}

}  // namespace voltaro::platform
