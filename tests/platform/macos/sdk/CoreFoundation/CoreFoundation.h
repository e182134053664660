// Declaration-only mirror of the parts of <CoreFoundation/CoreFoundation.h> the bindings use.
#pragma once

#include <stdint.h>

extern "C" {

typedef unsigned char Boolean;
typedef unsigned int UInt32;
typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef const void* CFTypeRef;

typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFNumber* CFNumberRef;

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeID CFGetTypeID(CFTypeRef cf);
void CFRelease(CFTypeRef cf);

// CFNumber
// CF_ENUM: in C++ a named enumeration with a fixed underlying type.
enum CFNumberType : CFIndex {
    kCFNumberSInt8Type = 1,
    kCFNumberSInt16Type = 2,
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat32Type = 5,
    kCFNumberFloat64Type = 6,
    kCFNumberCharType = 7,
    kCFNumberShortType = 8,
    kCFNumberIntType = 9,
    kCFNumberLongType = 10,
    kCFNumberLongLongType = 11,
    kCFNumberFloatType = 12,
    kCFNumberDoubleType = 13,
    kCFNumberCFIndexType = 14,
    kCFNumberNSIntegerType = 15,
    kCFNumberCGFloatType = 16
};

CFTypeID CFNumberGetTypeID(void);
CFNumberType CFNumberGetType(CFNumberRef number);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr);

// CFBoolean
CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

// CFString
typedef UInt32 CFStringEncoding;
enum CFStringBuiltInEncodings : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

CFTypeID CFStringGetTypeID(void);
CFIndex CFStringGetLength(CFStringRef theString);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

// CFDictionary
CFTypeID CFDictionaryGetTypeID(void);
CFIndex CFDictionaryGetCount(CFDictionaryRef theDict);
void CFDictionaryGetKeysAndValues(CFDictionaryRef theDict, const void** keys, const void** values);

}  // extern "C"
