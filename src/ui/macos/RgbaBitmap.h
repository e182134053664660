#pragma once

#include <cstdint>
#include <vector>

namespace voltaro::ui {

// Pixels handed between Qt and AppKit: 8-bit red, green, blue, alpha in that byte order, alpha
// premultiplied, rows from the top, no padding.
struct RgbaBitmap {
    int widthPixels = 0;
    int heightPixels = 0;
    std::vector<std::uint8_t> bytes;
    friend bool operator==(const RgbaBitmap&, const RgbaBitmap&) = default;
};

}  // namespace voltaro::ui
