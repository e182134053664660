#include "platform/storage/HistoryLocation.h"

#include <cstdlib>
#include <string_view>

namespace voltaro::platform {
namespace {

std::optional<std::filesystem::path> absoluteVariable(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value != '/') {
        return std::nullopt;  // relative values are ignored, as the XDG rules say
    }
    return std::filesystem::path(value);
}

}  // namespace

std::optional<std::filesystem::path> historyFile() {
#ifdef __APPLE__
    if (const auto home = absoluteVariable("HOME")) {
        return *home / "Library" / "Application Support" / "Voltaro" / "history.sqlite";
    }
#else
    if (const auto state = absoluteVariable("XDG_STATE_HOME")) {
        return *state / "voltaro" / "history.sqlite";
    }
    if (const auto home = absoluteVariable("HOME")) {
        return *home / ".local" / "state" / "voltaro" / "history.sqlite";
    }
#endif
    return std::nullopt;
}

}  // namespace voltaro::platform
