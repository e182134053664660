#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "platform/macos/AppleSystemTypes.h"

namespace voltaro::platform {

// The IOKit functions the battery registry and the SMC connection take, one member per function.
// The bindings supply the arguments that never vary: kIOMainPortDefault, kCFAllocatorDefault and
// no options.
struct IOKitCalls {
    // IOServiceMatching: a matching dictionary that the next call consumes, or null.
    std::function<CFObject(const char* serviceClass)> serviceMatching;
    // IOServiceGetMatchingService: consumes the matching dictionary; 0 when nothing matches.
    std::function<MachPort(CFObject matching)> serviceGetMatchingService;
    // IORegistryEntryCreateCFProperties: on success the caller owns *properties.
    std::function<KernReturn(MachPort entry, CFObject* properties)> registryEntryCreateCFProperties;
    std::function<KernReturn(MachPort object)> objectRelease;

    std::function<MachPort()> taskSelf;  // mach_task_self()
    std::function<KernReturn(MachPort service, MachPort owningTask, std::uint32_t type,
                             MachPort* connection)>
        serviceOpen;
    // IOConnectCallStructMethod: *outputSize holds the capacity going in and the answer's size
    // coming out.
    std::function<KernReturn(MachPort connection, std::uint32_t selector, const void* input,
                             std::size_t inputSize, void* output, std::size_t* outputSize)>
        connectCallStructMethod;
    std::function<KernReturn(MachPort connection)> serviceClose;
};

// The power-source service of IOKit.
struct PowerSourceCalls {
    // IOPSCopyPowerSourcesInfo: the caller owns the blob; null when unavailable.
    std::function<CFObject()> copyPowerSourcesInfo;
    // IOPSGetProvidingPowerSourceType: a string owned by the blob, or null.
    std::function<CFObject(CFObject blob)> getProvidingPowerSourceType;
};

}  // namespace voltaro::platform
