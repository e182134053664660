// Declaration-only mirror of the parts of <IOKit/IOKitLib.h> the bindings use.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>
#include <os/availability.h>
#include <stddef.h>
#include <stdint.h>

extern "C" {

typedef mach_port_t io_object_t;
typedef io_object_t io_connect_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef kern_return_t IOReturn;
typedef UInt32 IOOptionBits;

extern const mach_port_t kIOMainPortDefault API_AVAILABLE(macos(12.0));
// The same port under its old name.

kern_return_t IOObjectRelease(io_object_t object);

CFMutableDictionaryRef IOServiceMatching(const char* name);
// Consumes one reference to matching.
io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching);

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connect);
kern_return_t IOServiceClose(io_connect_t connect);
kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector,
                                        const void* inputStruct, size_t inputStructCnt,
                                        void* outputStruct, size_t* outputStructCnt);

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);

}  // extern "C"
