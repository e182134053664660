// Desktop entries: the first line is the locale, the rest the .desktop file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "platform/linux/DesktopEntry.h"

using namespace voltaro::platform;
using voltaro::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t firstLineEnd = std::min(text.find('\n'), text.size());
    const std::string_view locale = text.substr(0, firstLineEnd);
    text.remove_prefix(std::min(firstLineEnd + 1, text.size()));

    // At most lang_COUNTRY@MODIFIER, lang_COUNTRY, lang@MODIFIER and lang, all distinct, all
    // starting with the language, which comes last.
    const std::vector<std::string> order = localeMatchOrder(locale);
    check(order.size() <= 4);
    for (auto suffix = order.begin(); suffix != order.end(); ++suffix) {
        check(!suffix->empty() && suffix->starts_with(order.back()));
        check(std::find(order.begin(), suffix, *suffix) == suffix);
    }
    check(order.empty() || order.back().find_first_of("_@.") == std::string::npos);

    const auto entry = parseDesktopEntry(text, locale);
    const auto unlocalized = parseDesktopEntry(text, "C");
    check(entry.has_value() == unlocalized.has_value());
    if (!entry) {
        return 0;
    }
    check(text.find("[Desktop Entry]") != std::string_view::npos);
    check(!entry->name || !entry->name->empty());
    check(!entry->icon || !entry->icon->empty());
    // The locale picks among names; it never takes one away nor touches the other keys.
    check(!unlocalized->name || entry->name);
    check(entry->icon == unlocalized->icon && entry->isHidden == unlocalized->isHidden);
    return 0;
}
