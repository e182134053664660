#pragma once

#include <QImage>

#include "ui/macos/RgbaBitmap.h"

namespace voltaro::ui::RgbaBitmapImage {

// Any Qt image as AppKit takes it; empty for a null image.
RgbaBitmap fromImage(const QImage& image);
// Back into a Qt image; a null image when the bytes do not fill the size.
QImage toImage(const RgbaBitmap& bitmap);

}  // namespace voltaro::ui::RgbaBitmapImage
