#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace voltaro::platform {

// What Voltaro shows of a desktop entry (a .desktop file's [Desktop Entry] group).
struct DesktopEntry {
    std::optional<std::string> name;   // in the best matching language
    std::optional<std::string> icon;   // a theme icon name or an absolute file path
    bool isHidden = false;             // Hidden=true: the entry counts as deleted
    bool isAutostartDisabled = false;  // X-GNOME-Autostart-enabled=false
    friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

// The locale suffixes a localized key is matched against, best first, for a POSIX locale name
// lang_COUNTRY.ENCODING@MODIFIER: lang_COUNTRY@MODIFIER, lang_COUNTRY, lang@MODIFIER, lang.
// Empty for "C", "POSIX" and an empty name.
std::vector<std::string> localeMatchOrder(std::string_view locale);

// Nothing when the text has no [Desktop Entry] group.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale);
// The entry in a .desktop file; nothing when the file cannot be read or holds no entry.
std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file,
                                             std::string_view locale);

}  // namespace voltaro::platform
