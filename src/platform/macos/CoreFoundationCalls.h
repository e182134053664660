#pragma once

#include <cstdint>
#include <functional>

#include "platform/macos/AppleSystemTypes.h"

namespace voltaro::platform {

// CFNumberType values used to ask CFNumberGetValue for a representation.
inline constexpr CFIndexValue kCFNumberSInt8 = 1;
inline constexpr CFIndexValue kCFNumberSInt16 = 2;
inline constexpr CFIndexValue kCFNumberSInt32 = 3;
inline constexpr CFIndexValue kCFNumberSInt64 = 4;
inline constexpr CFIndexValue kCFNumberFloat32 = 5;
inline constexpr CFIndexValue kCFNumberFloat64 = 6;
inline constexpr CFIndexValue kCFNumberChar = 7;
inline constexpr CFIndexValue kCFNumberShort = 8;
inline constexpr CFIndexValue kCFNumberInt = 9;
inline constexpr CFIndexValue kCFNumberLong = 10;
inline constexpr CFIndexValue kCFNumberLongLong = 11;
inline constexpr CFIndexValue kCFNumberFloat = 12;
inline constexpr CFIndexValue kCFNumberDouble = 13;
inline constexpr CFIndexValue kCFNumberCFIndex = 14;
inline constexpr CFIndexValue kCFNumberNSInteger = 15;
inline constexpr CFIndexValue kCFNumberCGFloat = 16;

inline constexpr std::uint32_t kCFStringEncodingUTF8Value = 0x08000100;

// The CoreFoundation functions that reading a property list takes, one member per function.
// Objects passed in are borrowed; only `release` gives one up.
struct CoreFoundationCalls {
    std::function<CFTypeIdentifier(CFObject)> getTypeID;
    std::function<CFTypeIdentifier()> numberGetTypeID;
    std::function<CFTypeIdentifier()> booleanGetTypeID;
    std::function<CFTypeIdentifier()> stringGetTypeID;
    std::function<CFTypeIdentifier()> dictionaryGetTypeID;

    std::function<CFIndexValue(CFObject number)> numberGetType;
    // Converts as CFNumberGetValue does; false when the conversion lost information.
    std::function<bool(CFObject number, CFIndexValue type, void* value)> numberGetValue;
    std::function<bool(CFObject boolean)> booleanGetValue;

    std::function<CFIndexValue(CFObject string)> stringGetLength;
    // -1 (kCFNotFound) when the size does not fit a CFIndex.
    std::function<CFIndexValue(CFIndexValue length, std::uint32_t encoding)>
        stringGetMaximumSizeForEncoding;
    // False when the text does not convert or does not fit, terminating zero included.
    std::function<bool(CFObject string, char* buffer, CFIndexValue bufferSize,
                       std::uint32_t encoding)>
        stringGetCString;

    std::function<CFIndexValue(CFObject dictionary)> dictionaryGetCount;
    std::function<void(CFObject dictionary, CFObject* keys, CFObject* values)>
        dictionaryGetKeysAndValues;

    std::function<void(CFObject)> release;
};

}  // namespace voltaro::platform
