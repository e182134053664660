#include "ui/macos/CocoaScreenCoordinates.h"

#include <cmath>

namespace voltaro::ui {

ScreenRect topLeftScreenRect(const CocoaRect& rect, double primaryScreenHeight) {
    // Rounding the edges rather than origin and size keeps the rectangle covering the item.
    const double left = std::floor(rect.x);
    const double right = std::ceil(rect.x + rect.width);
    const double top = std::floor(primaryScreenHeight - (rect.y + rect.height));
    const double bottom = std::ceil(primaryScreenHeight - rect.y);
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
            static_cast<int>(bottom - top)};
}

}  // namespace voltaro::ui
