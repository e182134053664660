// Declaration-only mirror of the parts of <IOKit/ps/IOPowerSources.h> the bindings use.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

// Returns a blob the caller releases with CFRelease.
CFTypeRef IOPSCopyPowerSourcesInfo(void);
// Returns a string the blob owns: "AC Power", "Battery Power" or "UPS Power".
CFStringRef IOPSGetProvidingPowerSourceType(CFTypeRef snapshot);

}  // extern "C"
