#pragma once

#include <optional>
#include <string>

#include "core/telemetry/PropertyDictionary.h"
#include "platform/macos/CoreFoundationCalls.h"

namespace voltaro::platform {

// Turns a CoreFoundation property list into the core's PropertyDictionary. Booleans stay booleans
// (CFBoolean is not a CFNumber), integers keep their sign, floating point stays double, text
// becomes UTF-8. What the battery reader has no use for (data, arrays, dates) is left out, and so
// is an entry whose key or text does not convert. Borrows the objects it reads; releases nothing.
class CFPropertyReader {
  public:
    explicit CFPropertyReader(const CoreFoundationCalls& calls);

    // Nothing unless the object is a dictionary whose keys are all strings.
    std::optional<PropertyDictionary> dictionary(CFObject object) const;
    // Nothing unless the object is a string that converts to UTF-8.
    std::optional<std::string> text(CFObject object) const;

  private:
    std::optional<PropertyDictionary> dictionary(CFObject object, int depth) const;
    std::optional<PropertyValue> value(CFObject object, int depth) const;
    std::optional<PropertyValue> number(CFObject object) const;
    bool hasType(CFObject object, CFTypeIdentifier type) const;

    const CoreFoundationCalls& calls_;
};

}  // namespace voltaro::platform
