// The text of one sysfs attribute: trimming and whole-integer parsing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "platform/linux/SysfsAttributes.h"

using namespace voltaro::platform;
using voltaro::fuzz::check;

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    const std::string_view trimmed = trimmedAttribute(text);
    check(trimmed.empty() || (trimmed.data() >= text.data() &&
                              trimmed.data() + trimmed.size() <= text.data() + text.size()));
    check(trimmed.empty() || (!isSpace(trimmed.front()) && !isSpace(trimmed.back())));
    check(trimmedAttribute(trimmed) == trimmed);

    const auto value = parseIntegerAttribute(text);
    check(parseIntegerAttribute(trimmed) == value);
    if (value) {
        // Only a sign and digits make a number, and the number reads back the same.
        const std::string_view digits = trimmed.substr(trimmed.front() == '-' ? 1 : 0);
        check(!digits.empty());
        for (const char c : digits) {
            check(c >= '0' && c <= '9');
        }
        check(parseIntegerAttribute(std::to_string(*value)) == value);
        check(parseIntegerAttribute(" " + std::string(trimmed) + "\n") == value);
    }
    return 0;
}
