#pragma once

namespace voltaro::ui {

// How the application shows in the Dock and the menu bar: accessory, only the status item;
// regular, also a Dock icon and an application menu.
enum class ActivationPolicy { regular, accessory };

// The preview window is an ordinary window, which users expect to find in the Dock.
constexpr ActivationPolicy activationPolicy(bool withPreviewWindow) {
    return withPreviewWindow ? ActivationPolicy::regular : ActivationPolicy::accessory;
}

}  // namespace voltaro::ui
