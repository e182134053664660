#pragma once

namespace voltaro::ui {

// The battery pane of System Settings.
inline constexpr const char* batterySettingsUrl =
    "x-apple.systempreferences:com.apple.Battery-Settings.extension";

}  // namespace voltaro::ui
