// Declaration-only mirror of <os/availability.h>: when a declaration appeared on macOS and when it
// was deprecated, so that a call deprecated before the deployment target warns as on a Mac.
// Compilers without the attribute (GCC) see nothing.
#pragma once

#if defined(__has_attribute) && __has_attribute(availability)
#define __API_AVAILABLE_PLATFORM_macos(version) macos, introduced = version
#define __API_DEPRECATED_PLATFORM_macos(introducedVersion, deprecatedVersion) \
    macos, introduced = introducedVersion, deprecated = deprecatedVersion
#define API_AVAILABLE(platform) __attribute__((availability(__API_AVAILABLE_PLATFORM_##platform)))
#define API_DEPRECATED(text, platform) \
    __attribute__((availability(__API_DEPRECATED_PLATFORM_##platform, message = text)))
#else
#define API_AVAILABLE(...)
#define API_DEPRECATED(...)
#endif
