#pragma once

#include <cstdint>

// The few Apple system types the adapters pass around, spelled without Apple's headers so that the
// adapters build and are tested on every OS. The bindings in system/ check them against the real
// declarations.
namespace voltaro::platform {

using MachPort = std::uint32_t;          // mach_port_t, io_object_t, io_service_t, io_connect_t
using KernReturn = int;                  // kern_return_t, IOReturn
using CFObject = const void*;            // CFTypeRef and every CF…Ref
using CFTypeIdentifier = unsigned long;  // CFTypeID
using CFIndexValue = long;               // CFIndex, CFNumberType

inline constexpr KernReturn kKernSuccess = 0;

}  // namespace voltaro::platform
