#pragma once

#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/macos/CoreFoundationCalls.h"

namespace voltaro::testing {

template <typename T>
bool storeNumber(void* destination, T value, bool exact) {
    std::memcpy(destination, &value, sizeof value);
    return exact;
}

// CoreFoundation objects in memory, with CoreFoundation's ownership and conversions: every object
// starts with one reference, a container owns its children and releases them with itself, numbers
// convert as CFNumberGetValue does. Misuse (reading or releasing a dead object, a conversion
// nobody asks a real CFNumber for) is recorded rather than crashing.
class FakeCoreFoundation {
  public:
    using CFObject = platform::CFObject;
    using Entries = std::vector<std::pair<CFObject, CFObject>>;

    CFObject number(platform::CFIndexValue type, std::int64_t value) {
        return add({.kind = Kind::number, .numberType = type, .integer = value});
    }
    CFObject number(platform::CFIndexValue type, double value) {
        using namespace voltaro::platform;
        const double stored = type == kCFNumberFloat32 ? static_cast<float>(value) : value;
        return add({.kind = Kind::number, .numberType = type, .floating = stored});
    }
    // Above the signed 64-bit range CoreFoundation stores 128 bits and calls the type SInt64.
    // Some releases call the conversion to SInt64 lossy, some do not; both give the low bits.
    CFObject wideUnsigned(std::uint64_t value, bool conversionReportsLoss) {
        using namespace voltaro::platform;
        return add({.kind = Kind::number,
                    .numberType = kCFNumberSInt64,
                    .integer = static_cast<std::int64_t>(value),
                    .floating = static_cast<double>(value),
                    .wide = true,
                    .wideConversionReportsLoss = conversionReportsLoss});
    }
    CFObject boolean(bool value) { return add({.kind = Kind::boolean, .boolean = value}); }
    CFObject string(std::string utf8) {
        long units = 0;
        for (unsigned char byte : utf8) {
            units += (byte & 0xC0) != 0x80;  // one unit per character…
            units += byte >= 0xF0;           // …and two beyond the basic plane
        }
        return add({.kind = Kind::string, .text = std::move(utf8), .utf16Length = units});
    }
    // A string holding a lone UTF-16 surrogate: it has a length but no UTF-8 form.
    CFObject unconvertibleString() { return add({.kind = Kind::string, .utf16Length = 1}); }
    CFObject dictionary(Entries entries) {
        return add({.kind = Kind::dictionary, .entries = std::move(entries)});
    }
    // Data, arrays, dates: anything else, owning the given children.
    CFObject other(std::vector<CFObject> children = {}) {
        Object object{.kind = Kind::other};
        for (CFObject child : children) {
            object.entries.emplace_back(nullptr, child);
        }
        return add(std::move(object));
    }

    platform::CoreFoundationCalls calls() {
        using namespace voltaro::platform;
        CoreFoundationCalls calls;
        calls.getTypeID = [this](CFObject object) {
            const Object* target = live(object, "CFGetTypeID");
            return static_cast<CFTypeIdentifier>(target ? target->kind : Kind::other);
        };
        calls.numberGetTypeID = [] { return static_cast<CFTypeIdentifier>(Kind::number); };
        calls.booleanGetTypeID = [] { return static_cast<CFTypeIdentifier>(Kind::boolean); };
        calls.stringGetTypeID = [] { return static_cast<CFTypeIdentifier>(Kind::string); };
        calls.dictionaryGetTypeID = [] { return static_cast<CFTypeIdentifier>(Kind::dictionary); };
        calls.numberGetType = [this](CFObject object) {
            const Object* target = live(object, "CFNumberGetType");
            return target ? target->numberType : CFIndexValue{0};
        };
        calls.numberGetValue = [this](CFObject object, CFIndexValue type, void* value) {
            return numberValue(object, type, value);
        };
        calls.booleanGetValue = [this](CFObject object) {
            const Object* target = live(object, "CFBooleanGetValue");
            return target && target->boolean;
        };
        calls.stringGetLength = [this](CFObject object) {
            const Object* target = live(object, "CFStringGetLength");
            return target ? target->utf16Length : 0;
        };
        calls.stringGetMaximumSizeForEncoding = [this](CFIndexValue length,
                                                       std::uint32_t encoding) {
            if (encoding != kCFStringEncodingUTF8Value) {
                misuse.push_back("CFStringGetMaximumSizeForEncoding for another encoding");
            }
            return 3 * length;  // what CoreFoundation answers for UTF-8
        };
        calls.stringGetCString = [this](CFObject object, char* buffer, CFIndexValue size,
                                        std::uint32_t encoding) {
            const Object* target = live(object, "CFStringGetCString");
            if (target == nullptr || !target->text || encoding != kCFStringEncodingUTF8Value ||
                static_cast<CFIndexValue>(target->text->size()) + 1 > size) {
                return false;
            }
            std::memcpy(buffer, target->text->c_str(), target->text->size() + 1);
            return true;
        };
        calls.dictionaryGetCount = [this](CFObject object) {
            const Object* target = live(object, "CFDictionaryGetCount");
            return target ? static_cast<CFIndexValue>(target->entries.size()) : 0;
        };
        calls.dictionaryGetKeysAndValues = [this](CFObject object, CFObject* keys,
                                                  CFObject* values) {
            if (const Object* target = live(object, "CFDictionaryGetKeysAndValues")) {
                for (const auto& [key, value] : target->entries) {
                    *keys++ = key;
                    *values++ = value;
                }
            }
        };
        calls.release = [this](CFObject object) { release(object); };
        return calls;
    }
    int referenceCount(CFObject object) const {
        return static_cast<const Object*>(object)->references;
    }

    std::vector<std::string> misuse;

  private:
    // Valued as the type identifiers CFGetTypeID answers with.
    enum class Kind : platform::CFTypeIdentifier {
        string = 7,
        dictionary = 18,
        other = 19,
        boolean = 21,
        number = 22
    };
    struct Object {
        Kind kind;
        int references = 1;
        platform::CFIndexValue numberType = 0;
        std::int64_t integer = 0;  // low 64 bits for a wide unsigned value
        double floating = 0;
        bool wide = false;
        bool wideConversionReportsLoss = false;
        bool boolean = false;
        std::optional<std::string> text{};
        long utf16Length = 0;
        Entries entries{};  // children of containers; keys are empty for `other`
    };

    CFObject add(Object object) {
        objects_.push_back(std::move(object));
        return &objects_.back();
    }
    Object* live(CFObject object, const char* call) {
        for (Object& candidate : objects_) {
            if (&candidate == object) {
                if (candidate.references < 1) {
                    misuse.push_back(std::string(call) + " on a released object");
                    return nullptr;
                }
                return &candidate;
            }
        }
        misuse.push_back(std::string(call) + " on something that is no CoreFoundation object");
        return nullptr;
    }
    void release(CFObject object) {
        Object* target = live(object, "CFRelease");
        if (target != nullptr && --target->references == 0) {
            for (const auto& [key, value] : target->entries) {
                if (key != nullptr) {
                    release(key);
                }
                release(value);
            }
        }
    }
    bool numberValue(CFObject number, platform::CFIndexValue type, void* value) {
        using namespace voltaro::platform;
        const Object* object = live(number, "CFNumberGetValue");
        if (object == nullptr || object->kind != Kind::number) {
            return false;
        }
        const bool isFloat = object->numberType == kCFNumberFloat32 ||
                             object->numberType == kCFNumberFloat64 ||
                             object->numberType == kCFNumberDouble;
        const double asDouble =
            isFloat || object->wide ? object->floating : static_cast<double>(object->integer);
        const std::int64_t asInteger =
            isFloat ? static_cast<std::int64_t>(object->floating) : object->integer;
        switch (type) {
            case kCFNumberSInt64:
                return storeNumber(value, asInteger,
                                   !(object->wide && object->wideConversionReportsLoss));
            case kCFNumberFloat64:
                return storeNumber(value, asDouble, true);
            default:
                misuse.push_back("CFNumberGetValue asked for type " + std::to_string(type));
                return false;
        }
    }

    std::deque<Object> objects_;
};

}  // namespace voltaro::testing
