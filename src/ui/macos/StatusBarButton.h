#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/presentation/PopupPlacement.h"
#include "ui/macos/RgbaBitmap.h"

namespace voltaro::ui {

// What the label shows beside the glyph. The reserved text is the widest the label can show and
// fixes the item's width; empty, the item shows the glyph alone.
struct StatusTitle {
    std::string text;
    std::string reservedText;
    bool highlighted = false;  // yellow, the system's warning colour
    friend bool operator==(const StatusTitle&, const StatusTitle&) = default;
};

// The menu bar's button of our status item.
class StatusBarButton {
  public:
    // Called on each click with the item's rectangle in the desktop's coordinates, when known.
    using ClickHandler = std::function<void(std::optional<ScreenRect> itemRect)>;

    virtual ~StatusBarButton() = default;
    // A template: only the alpha counts, the menu bar gives the colour.
    virtual void setTemplateImage(const RgbaBitmap& bitmap, double widthPoints,
                                  double heightPoints) = 0;
    virtual void setTitle(const StatusTitle& title) = 0;
    virtual void setAccessibilityLabel(const std::string& label) = 0;
    virtual void setClickHandler(ClickHandler handler) = 0;
};

}  // namespace voltaro::ui
