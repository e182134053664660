#include "platform/macos/CFPropertyReader.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace voltaro::platform {
namespace {

// Registry entries nest two or three levels; anything deeper is left out rather than followed.
constexpr int kMaximumDepth = 16;

bool isFloatType(CFIndexValue type) {
    switch (type) {
        case kCFNumberFloat32:
        case kCFNumberFloat64:
        case kCFNumberFloat:
        case kCFNumberDouble:
        case kCFNumberCGFloat:
            return true;
        default:
            return false;
    }
}

bool isIntegerType(CFIndexValue type) {
    switch (type) {
        case kCFNumberSInt8:
        case kCFNumberSInt16:
        case kCFNumberSInt32:
        case kCFNumberSInt64:
        case kCFNumberChar:
        case kCFNumberShort:
        case kCFNumberInt:
        case kCFNumberLong:
        case kCFNumberLongLong:
        case kCFNumberCFIndex:
        case kCFNumberNSInteger:
            return true;
        default:
            return false;
    }
}

}  // namespace

CFPropertyReader::CFPropertyReader(const CoreFoundationCalls& calls) : calls_(calls) {}

std::optional<PropertyDictionary> CFPropertyReader::dictionary(CFObject object) const {
    return dictionary(object, 0);
}

std::optional<std::string> CFPropertyReader::text(CFObject object) const {
    if (!hasType(object, calls_.stringGetTypeID())) {
        return std::nullopt;
    }
    const CFIndexValue length = calls_.stringGetLength(object);
    if (length < 0) {
        return std::nullopt;
    }
    const CFIndexValue maximumBytes =
        calls_.stringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8Value);
    if (maximumBytes < 0 || maximumBytes == std::numeric_limits<CFIndexValue>::max()) {
        return std::nullopt;
    }
    // One more byte for the terminating zero.
    std::vector<char> buffer(static_cast<std::size_t>(maximumBytes) + 1, '\0');
    if (!calls_.stringGetCString(object, buffer.data(), maximumBytes + 1,
                                 kCFStringEncodingUTF8Value)) {
        return std::nullopt;
    }
    return std::string(buffer.data(),
                       std::find(buffer.begin(), buffer.end(), '\0') - buffer.begin());
}

std::optional<PropertyDictionary> CFPropertyReader::dictionary(CFObject object, int depth) const {
    if (depth > kMaximumDepth || !hasType(object, calls_.dictionaryGetTypeID())) {
        return std::nullopt;
    }
    const CFIndexValue count = calls_.dictionaryGetCount(object);
    if (count < 0) {
        return std::nullopt;
    }
    std::vector<CFObject> keys(static_cast<std::size_t>(count), nullptr);
    std::vector<CFObject> values(static_cast<std::size_t>(count), nullptr);
    if (count > 0) {
        calls_.dictionaryGetKeysAndValues(object, keys.data(), values.data());
    }
    const CFTypeIdentifier stringType = calls_.stringGetTypeID();
    PropertyDictionary result;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!hasType(keys[i], stringType)) {
            return std::nullopt;
        }
        auto key = text(keys[i]);
        auto converted = value(values[i], depth + 1);
        if (key && converted) {
            result.set(std::move(*key), std::move(*converted));
        }
    }
    return result;
}

std::optional<PropertyValue> CFPropertyReader::value(CFObject object, int depth) const {
    if (object == nullptr) {
        return std::nullopt;
    }
    const CFTypeIdentifier type = calls_.getTypeID(object);
    if (type == calls_.booleanGetTypeID()) {
        return PropertyValue(calls_.booleanGetValue(object));
    }
    if (type == calls_.numberGetTypeID()) {
        return number(object);
    }
    if (type == calls_.stringGetTypeID()) {
        auto converted = text(object);
        return converted ? std::optional<PropertyValue>(std::move(*converted)) : std::nullopt;
    }
    if (type == calls_.dictionaryGetTypeID()) {
        auto nested = dictionary(object, depth);
        return nested ? std::optional<PropertyValue>(std::move(*nested)) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<PropertyValue> CFPropertyReader::number(CFObject object) const {
    const CFIndexValue type = calls_.numberGetType(object);
    if (isFloatType(type)) {
        double value = 0;
        if (!calls_.numberGetValue(object, kCFNumberFloat64, &value)) {
            return std::nullopt;
        }
        return PropertyValue(value);
    }
    if (!isIntegerType(type)) {
        return std::nullopt;
    }
    // Integers come out sign-extended to 64 bits. A value above the signed range (an unsigned
    // 64-bit number, which CoreFoundation keeps in a wider form and reports as SInt64) comes out
    // as its low 64 bits, whether or not the call calls that lossy; its floating-point value tells
    // it apart from a negative number.
    std::int64_t lowBits = 0;
    const bool fits = calls_.numberGetValue(object, kCFNumberSInt64, &lowBits);
    if (fits && lowBits >= 0) {
        return PropertyValue(lowBits);
    }
    double approximate = 0;
    calls_.numberGetValue(object, kCFNumberFloat64, &approximate);
    // 2^64 itself included: the largest unsigned values round up to it.
    if (approximate >= 0x1p63 && approximate <= 0x1p64) {
        return PropertyValue(static_cast<std::uint64_t>(lowBits));
    }
    if (fits) {
        return PropertyValue(lowBits);
    }
    return std::nullopt;
}

bool CFPropertyReader::hasType(CFObject object, CFTypeIdentifier type) const {
    return object != nullptr && calls_.getTypeID(object) == type;
}

}  // namespace voltaro::platform
