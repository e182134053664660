#include "platform/linux/LinuxApplicationCatalog.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "platform/linux/CgroupScope.h"
#include "platform/linux/ProcDirectory.h"

namespace voltaro::platform {
namespace {

// Caches keyed by unit start over when they grow this large: scopes carry a fresh random part
// for every launch.
constexpr std::size_t largestCache = 4096;

// The session's own machinery: it starts unrelated applications as its children.
constexpr std::array sessionProcessNames = {
    // service managers and buses
    "systemd", "dbus-daemon", "dbus-broker", "dbus-broker-launch", "xdg-desktop-portal",
    // GNOME
    "gnome-shell", "gnome-session-binary", "gnome-session-ctl", "gnome-session-init-worker",
    "gdm-x-session", "gdm-wayland-session",
    // KDE Plasma
    "plasmashell", "kwin_x11", "kwin_wayland", "kwin_wayland_wrapper", "ksmserver", "kded5",
    "kded6", "startplasma-x11", "startplasma-wayland", "plasma_session", "sddm-helper",
    // Xfce, LXQt, LXDE, MATE, Cinnamon, Budgie
    "xfce4-session", "xfce4-panel", "xfdesktop", "xfwm4", "lxqt-session", "lxqt-panel", "lxsession",
    "lxpanel", "mate-session", "mate-panel", "cinnamon", "cinnamon-session",
    "cinnamon-session-binary", "cinnamon-launcher", "budgie-panel", "budgie-wm",
    // stand-alone compositors and window managers
    "sway", "Hyprland", "niri", "labwc", "wayfire", "weston", "openbox", "i3", "awesome", "bspwm",
    "xinit", "lightdm"};

// The kernel keeps the first 15 bytes of a process name.
constexpr std::size_t longestProcessName = 15;

bool isSessionProcessName(std::string_view name, bool mayBeTruncated) {
    return std::any_of(
        sessionProcessNames.begin(), sessionProcessNames.end(), [&](std::string_view known) {
            return name == known || (mayBeTruncated && known.size() > name.size() &&
                                     name.size() == longestProcessName && known.starts_with(name));
        });
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string{} : std::string(value);
}

// An ID names a file inside the applications directories, never outside them.
bool isDesktopFileID(const std::string& id) {
    return !id.empty() && id.front() != '.' && id.find('/') == std::string::npos &&
           id.find('\0') == std::string::npos;
}

bool isDirectory(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

LinuxApplicationCatalog::Options LinuxApplicationCatalog::Options::fromEnvironment(
    std::string procRoot) {
    Options options;
    options.procRoot = std::move(procRoot);
    // Relative paths are invalid in these variables and are ignored.
    std::string dataHome = environment("XDG_DATA_HOME");
    if (dataHome.empty() || dataHome.front() != '/') {
        const std::string home = environment("HOME");
        dataHome = home.empty() ? std::string{} : home + "/.local/share";
    }
    if (!dataHome.empty()) {
        options.applicationDirectories.push_back(dataHome + "/applications");
    }
    std::string dataDirs = environment("XDG_DATA_DIRS");
    if (dataDirs.empty()) {
        dataDirs = "/usr/local/share/:/usr/share/";
    }
    std::string_view remaining = dataDirs;
    while (!remaining.empty()) {
        const std::size_t end = remaining.find(':');
        std::string directory(remaining.substr(0, end));
        remaining = end == std::string_view::npos ? std::string_view{} : remaining.substr(end + 1);
        if (directory.empty() || directory.front() != '/') {
            continue;
        }
        while (directory.size() > 1 && directory.back() == '/') {
            directory.pop_back();
        }
        options.applicationDirectories.push_back(directory + "/applications");
    }
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (std::string locale = environment(variable); !locale.empty()) {
            options.locale = std::move(locale);
            break;
        }
    }
    return options;
}

LinuxApplicationCatalog::LinuxApplicationCatalog(Options options) : options_(std::move(options)) {}

std::optional<std::string> LinuxApplicationCatalog::cgroupPath(ProcessID pid) const {
    if (pid <= 0) {
        return std::nullopt;
    }
    int error = 0;
    const ProcDirectory directory =
        ProcDirectory::open(options_.procRoot + "/" + std::to_string(pid), error);
    std::string text;
    if (!directory.isOpen() || directory.readFile("cgroup", text) != 0) {
        return std::nullopt;
    }
    return systemdCgroupPath(text);
}

std::optional<std::string> LinuxApplicationCatalog::containingApplication(
    ProcessID pid, const std::optional<std::string>&) {
    const std::optional<std::string> path = cgroupPath(pid);
    if (!path) {
        return std::nullopt;
    }
    if (const auto cached = applicationByCgroup_.find(*path);
        cached != applicationByCgroup_.end()) {
        return cached->second;
    }
    std::optional<std::string> application =
        applicationIDForCgroup(*path, [this](const std::string& id) {
            const std::optional<DesktopEntry>& entry = desktopEntry(id);
            return entry && !entry->isHidden;
        });
    if (applicationByCgroup_.size() >= largestCache) {
        applicationByCgroup_.clear();
    }
    applicationByCgroup_.emplace(*path, application);
    return application;
}

ApplicationInfo LinuxApplicationCatalog::describeApplication(const std::string& application) {
    ApplicationInfo info{application, application, std::nullopt};
    const std::optional<DesktopEntry>& entry = desktopEntry(application);
    if (!entry || entry->isHidden) {
        return info;
    }
    if (entry->name) {
        info.name = *entry->name;
    }
    if (entry->icon) {
        const bool isPath = entry->icon->front() == '/';
        info.icon = ApplicationIcon{
            isPath ? ApplicationIcon::Kind::filePath : ApplicationIcon::Kind::themeName,
            *entry->icon};
    }
    return info;
}

std::optional<ApplicationIcon> LinuxApplicationCatalog::runningApplicationIcon(ProcessID) {
    // A process outside every application scope has no desktop entry to take an icon from.
    return std::nullopt;
}

bool LinuxApplicationCatalog::endsParentWalk(ProcessID pid,
                                             const std::optional<std::string>& executablePath,
                                             const std::string& name) {
    if (isSessionProcessName(name, true)) {
        return true;
    }
    if (executablePath) {
        const std::size_t slash = executablePath->rfind('/');
        const std::string_view file = std::string_view(*executablePath).substr(slash + 1);
        if (isSessionProcessName(file, false)) {
            return true;
        }
    }
    const std::optional<std::string> path = cgroupPath(pid);
    return path && isServiceManagerCgroup(*path);
}

const std::optional<DesktopEntry>& LinuxApplicationCatalog::desktopEntry(const std::string& id) {
    if (const auto cached = entries_.find(id); cached != entries_.end()) {
        return cached->second;
    }
    std::optional<DesktopEntry> entry;
    // The first directory that has the ID decides, also when its entry is hidden.
    for (const std::string& directory :
         isDesktopFileID(id) ? options_.applicationDirectories : std::vector<std::string>{}) {
        const std::optional<std::string> file = findDesktopFile(directory, id);
        if (!file) {
            continue;
        }
        entry = readDesktopEntry(*file, options_.locale);
        break;
    }
    if (entries_.size() >= largestCache) {
        entries_.clear();
    }
    return entries_.insert_or_assign(id, std::move(entry)).first->second;
}

// A desktop-file ID names a file under an applications directory with each '/' turned into '-':
// kde4-kate is kde4-kate.desktop or kde4/kate.desktop.
std::optional<std::string> LinuxApplicationCatalog::findDesktopFile(const std::string& directory,
                                                                    const std::string& id) const {
    if (id.empty()) {
        return std::nullopt;
    }
    if (std::string file = directory + "/" + id + ".desktop"; isRegularFile(file)) {
        return file;
    }
    for (std::size_t dash = id.find('-'); dash != std::string::npos;
         dash = id.find('-', dash + 1)) {
        const std::string subdirectory = directory + "/" + id.substr(0, dash);
        if (dash > 0 && isDirectory(subdirectory)) {
            if (auto file = findDesktopFile(subdirectory, id.substr(dash + 1))) {
                return file;
            }
        }
    }
    return std::nullopt;
}

}  // namespace voltaro::platform
