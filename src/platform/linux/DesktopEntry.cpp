#include "platform/linux/DesktopEntry.h"

#include <algorithm>
#include <fstream>

namespace voltaro::platform {
namespace {

// Desktop entries are a few kilobytes, most of it translations of keys not read here.
constexpr std::size_t largestDesktopFileBytes = 1 << 20;

std::string_view trimmed(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string unescapedValue(std::string_view value) {
    std::string text;
    text.reserve(value.size());
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] != '\\' || index + 1 == value.size()) {
            text += value[index];
            continue;
        }
        switch (value[++index]) {
            case 's':
                text += ' ';
                break;
            case 'n':
                text += '\n';
                break;
            case 't':
                text += '\t';
                break;
            case 'r':
                text += '\r';
                break;
            case '\\':
                text += '\\';
                break;
            default:  // not an escape of this value type: kept as written
                text += '\\';
                text += value[index];
                break;
        }
    }
    return text;
}

}  // namespace

std::vector<std::string> localeMatchOrder(std::string_view locale) {
    if (locale.empty() || locale == "C" || locale.starts_with("C.") || locale == "POSIX") {
        return {};
    }
    std::string_view modifier;
    if (const std::size_t at = locale.find('@'); at != std::string_view::npos) {
        modifier = locale.substr(at);
        locale = locale.substr(0, at);
    }
    locale = locale.substr(0, locale.find('.'));
    const std::string_view lang = locale.substr(0, locale.find('_'));
    if (lang.empty()) {
        return {};
    }
    const std::string_view country =
        lang.size() < locale.size() ? locale.substr(lang.size()) : std::string_view{};
    std::vector<std::string> order;
    const auto add = [&order](std::string_view a, std::string_view b, std::string_view c) {
        std::string suffix = std::string(a) + std::string(b) + std::string(c);
        if (std::find(order.begin(), order.end(), suffix) == order.end()) {
            order.push_back(std::move(suffix));
        }
    };
    if (!country.empty() && !modifier.empty()) {
        add(lang, country, modifier);
    }
    if (!country.empty()) {
        add(lang, country, {});
    }
    if (!modifier.empty()) {
        add(lang, modifier, {});
    }
    add(lang, {}, {});
    return order;
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
    const std::vector<std::string> localeOrder = localeMatchOrder(locale);
    std::optional<std::string> plainName;
    std::vector<std::optional<std::string>> localizedNames(localeOrder.size());
    DesktopEntry entry;
    bool hasGroup = false;
    bool isInGroup = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            // Keys of other groups (actions) must not leak into the entry.
            isInGroup = line == "[Desktop Entry]" && !hasGroup;
            hasGroup = hasGroup || isInGroup;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        // The first occurrence of a key counts.
        if (key == "Name") {
            if (!plainName) {
                plainName = unescapedValue(value);
            }
        } else if (key.starts_with("Name[") && key.ends_with(']')) {
            const std::string_view suffix = key.substr(5, key.size() - 6);
            const auto match = std::find(localeOrder.begin(), localeOrder.end(), suffix);
            if (match != localeOrder.end()) {
                auto& name = localizedNames[static_cast<std::size_t>(match - localeOrder.begin())];
                if (!name) {
                    name = unescapedValue(value);
                }
            }
        } else if (key == "Icon") {
            if (!entry.icon && !value.empty()) {
                entry.icon = unescapedValue(value);
            }
        } else if (key == "Hidden") {
            entry.isHidden = value == "true";
        } else if (key == "X-GNOME-Autostart-enabled") {
            entry.isAutostartDisabled = value == "false";
        }
    }
    if (!hasGroup) {
        return std::nullopt;
    }
    const auto best = std::find_if(localizedNames.begin(), localizedNames.end(),
                                   [](const auto& name) { return name && !name->empty(); });
    if (best != localizedNames.end()) {
        entry.name = std::move(**best);
    } else if (plainName && !plainName->empty()) {
        entry.name = std::move(*plainName);
    }
    return entry;
}

std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file,
                                             std::string_view locale) {
    std::ifstream stream(file, std::ios::binary);
    std::string text(largestDesktopFileBytes, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return parseDesktopEntry(text, locale);
}

}  // namespace voltaro::platform
