#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/controls/LoginItemService.h"

namespace voltaro::platform {

// Launch at login on Linux desktops: a desktop entry in the user's XDG autostart folder.
class XdgAutostartLoginItem final : public LoginItemService {
  public:
    // `configHome` is the user's XDG configuration folder (nothing: unknown, every change
    // fails); `executable` is the program to start.
    XdgAutostartLoginItem(std::optional<std::filesystem::path> configHome, std::string executable);

    // $XDG_CONFIG_HOME when it is an absolute path, otherwise ~/.config.
    static std::optional<std::filesystem::path> configHomeFromEnvironment();
    static std::string desktopEntry(std::string_view executable);

    LoginItemStatus status() override;
    std::optional<std::string> registerItem() override;
    std::optional<std::string> unregisterItem() override;

  private:
    std::optional<std::filesystem::path> entryPath_;
    std::string executable_;
};

}  // namespace voltaro::platform
