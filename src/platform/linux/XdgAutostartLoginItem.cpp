#include "platform/linux/XdgAutostartLoginItem.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "platform/linux/DesktopEntry.h"

namespace voltaro::platform {
namespace {

constexpr const char* homeUnknown = "Could not find the home folder";

std::string describe(int error) {
    return std::error_code(error, std::generic_category()).message();
}

// One argument of the Exec key: quoted when it holds a reserved character, then escaped as a
// string value; '%' is doubled so that no field code is seen.
std::string execArgument(std::string_view argument) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    const bool quote = argument.empty() || argument.find_first_of(reserved) != std::string::npos;
    std::string quoted = quote ? "\"" : "";
    for (char c : argument) {
        if (quote && (c == '"' || c == '`' || c == '$' || c == '\\')) {
            quoted += '\\';
        }
        quoted += c == '%' ? std::string("%%") : std::string(1, c);
    }
    if (quote) {
        quoted += '"';
    }
    std::string escaped;
    for (char c : quoted) {
        switch (c) {
            case '\\':
                escaped += "\\\\";
                break;
            case '\n':
                escaped += "\\n";
                break;
            case '\t':
                escaped += "\\t";
                break;
            case '\r':
                escaped += "\\r";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Writes to a temporary file beside the target and renames it over the target, so a crash or
// a full disk never leaves a half-written entry for the session to start. Returns 0 or errno.
int replaceFile(const std::filesystem::path& target, std::string_view contents) {
    // Appended rather than "." + name: g++ 12 at -O3 warns falsely on that (-Wrestrict).
    std::string name = ".";
    name += target.filename().string();
    name += ".XXXXXX";
    std::string temporary = (target.parent_path() / name).string();
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        return errno;
    }
    int error = 0;
    if (::fchmod(fd, 0644) != 0 || !writeAll(fd, contents) || ::fsync(fd) != 0) {
        error = errno;
    }
    if (::close(fd) != 0 && error == 0 && errno != EINTR) {
        error = errno;
    }
    if (error == 0 && ::rename(temporary.c_str(), target.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlink(temporary.c_str());
        return error;
    }
    // Make the rename itself durable; the entry is complete either way.
    const int directory = ::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return 0;
}

}  // namespace

XdgAutostartLoginItem::XdgAutostartLoginItem(std::optional<std::filesystem::path> configHome,
                                             std::string executable)
    : executable_(std::move(executable)) {
    if (configHome) {
        entryPath_ = *configHome / "autostart" / "voltaro.desktop";
    }
}

std::optional<std::filesystem::path> XdgAutostartLoginItem::configHomeFromEnvironment() {
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr && configHome[0] == '/') {
        return std::filesystem::path(configHome);
    }
    const char* home = std::getenv("HOME");
    if (home != nullptr && home[0] == '/') {
        return std::filesystem::path(home) / ".config";
    }
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_dir != nullptr && found->pw_dir[0] == '/') {
        return std::filesystem::path(found->pw_dir) / ".config";
    }
    return std::nullopt;
}

std::string XdgAutostartLoginItem::desktopEntry(std::string_view executable) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Voltaro\n"
           "Exec=" +
           execArgument(executable) +
           "\n"
           "Terminal=false\n";
}

LoginItemStatus XdgAutostartLoginItem::status() {
    std::error_code ignored;
    if (!entryPath_ || !std::filesystem::is_regular_file(*entryPath_, ignored)) {
        return LoginItemStatus::notRegistered;
    }
    // Without an entry group (or empty, or unreadable) the session starts nothing from it.
    const std::optional<DesktopEntry> entry = readDesktopEntry(*entryPath_, "C");
    const bool starts = entry && !entry->isHidden && !entry->isAutostartDisabled;
    return starts ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

std::optional<std::string> XdgAutostartLoginItem::registerItem() {
    if (!entryPath_) {
        return homeUnknown;
    }
    const auto folder = entryPath_->parent_path();
    std::error_code created;
    std::filesystem::create_directories(folder, created);
    if (created) {
        return "Could not create " + folder.string() + ": " + created.message();
    }
    if (const int error = replaceFile(*entryPath_, desktopEntry(executable_)); error != 0) {
        return "Could not write " + entryPath_->string() + ": " + describe(error);
    }
    return std::nullopt;
}

std::optional<std::string> XdgAutostartLoginItem::unregisterItem() {
    if (!entryPath_) {
        return homeUnknown;
    }
    if (::unlink(entryPath_->c_str()) != 0) {
        const int error = errno;
        if (error != ENOENT && error != ENOTDIR) {
            return "Could not remove " + entryPath_->string() + ": " + describe(error);
        }
    }
    return std::nullopt;
}

}  // namespace voltaro::platform
