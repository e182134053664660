#pragma once

#include "core/presentation/PopupPlacement.h"

namespace voltaro::ui {

// A rectangle as AppKit gives it: in points, origin at the primary screen's bottom-left corner,
// y growing upwards.
struct CocoaRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// The same rectangle as Qt places windows: origin at the primary screen's top-left corner, y
// growing downwards, whole points.
ScreenRect topLeftScreenRect(const CocoaRect& rect, double primaryScreenHeight);

}  // namespace voltaro::ui
