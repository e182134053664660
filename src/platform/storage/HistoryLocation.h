#pragma once

#include <filesystem>
#include <optional>

namespace voltaro::platform {

// $XDG_STATE_HOME/voltaro/history.sqlite (~/.local/state by default); on macOS under
// ~/Library/Application Support/Voltaro. Absent without a home.
std::optional<std::filesystem::path> historyFile();

}  // namespace voltaro::platform
