// /proc/PID/cgroup and the systemd unit names in it: the path of the systemd cgroup, unescaping,
// the application a unit is named after, and the user's service manager.
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "platform/linux/CgroupScope.h"

using namespace voltaro::platform;
using voltaro::fuzz::check;

namespace {

// What a usable desktop-file ID looks like: a file name under an applications directory.
bool isUsableID(const std::string& id) {
    return !id.empty() && id.size() <= 255 && id.front() != '.' &&
           id.find_first_of(std::string_view("/\0\n", 3)) == std::string::npos;
}

// systemd's escaping: everything but [A-Za-z0-9:_.] as \xNN.
std::string escaped(std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) || c == ':' || c == '_' || c == '.') {
            result += c;
        } else {
            result += "\\x";
            result += hex[byte >> 4];
            result += hex[byte & 0xF];
        }
    }
    return result;
}

void checkUnit(std::string_view name) {
    const auto unit = parseApplicationUnit(name);
    if (!unit) {
        return;
    }
    check(!unit->candidateIDs.empty());
    for (auto id = unit->candidateIDs.begin(); id != unit->candidateIDs.end(); ++id) {
        check(isUsableID(*id));
        check(std::find(unit->candidateIDs.begin(), id, *id) == id);
    }
    check(!unit->fallbackID || isUsableID(*unit->fallbackID));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    const auto path = systemdCgroupPath(text);
    if (path) {
        check(!path->empty() && path->front() == '/' && path->find('\n') == std::string::npos);
        check(text.find(*path) != std::string_view::npos);
    }

    const std::string unescaped = unescapeUnitName(text);
    check(unescaped.size() <= text.size());
    check(text.find('\\') != std::string_view::npos || unescaped == text);
    check(unescapeUnitName(escaped(text)) == text);

    // The input as one unit name, and as a cgroup path of several.
    checkUnit(text);
    const std::string_view cgroupPath = path ? std::string_view(*path) : text;
    std::size_t start = 0;
    while (start <= cgroupPath.size()) {
        const std::size_t end = std::min(cgroupPath.find('/', start), cgroupPath.size());
        checkUnit(cgroupPath.substr(start, end - start));
        start = end + 1;
    }

    // With no desktop entries only a launcher's own unit names the application; with every ID
    // known the innermost unit's likeliest ID wins.
    std::size_t asked = 0;
    const auto none = applicationIDForCgroup(cgroupPath, [&asked](const std::string& id) {
        check(isUsableID(id));
        ++asked;
        return false;
    });
    check(!none || isUsableID(*none));
    const auto all = applicationIDForCgroup(cgroupPath, [](const std::string&) { return true; });
    check(!all || isUsableID(*all));
    check(all.has_value() == (asked > 0));

    if (isServiceManagerCgroup(cgroupPath)) {
        check(cgroupPath.ends_with(".service/init.scope"));
        check(cgroupPath.find("user@") != std::string_view::npos);
    }
    return 0;
}
