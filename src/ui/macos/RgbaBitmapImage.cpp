#include "ui/macos/RgbaBitmapImage.h"

#include <cstring>

namespace voltaro::ui::RgbaBitmapImage {

RgbaBitmap fromImage(const QImage& image) {
    if (image.isNull()) {
        return {};
    }
    // Qt's ARGB32 is BGRA in memory on little-endian machines; this format is RGBA everywhere.
    const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    RgbaBitmap bitmap{rgba.width(), rgba.height(), {}};
    const auto rowBytes = static_cast<std::size_t>(rgba.width()) * 4;
    bitmap.bytes.resize(rowBytes * static_cast<std::size_t>(rgba.height()));
    for (int row = 0; row < rgba.height(); ++row) {
        std::memcpy(bitmap.bytes.data() + rowBytes * static_cast<std::size_t>(row),
                    rgba.constScanLine(row), rowBytes);
    }
    return bitmap;
}

QImage toImage(const RgbaBitmap& bitmap) {
    if (bitmap.widthPixels <= 0 || bitmap.heightPixels <= 0) {
        return {};
    }
    const auto rowBytes = static_cast<std::size_t>(bitmap.widthPixels) * 4;
    if (bitmap.bytes.size() != rowBytes * static_cast<std::size_t>(bitmap.heightPixels)) {
        return {};
    }
    QImage image(bitmap.widthPixels, bitmap.heightPixels, QImage::Format_RGBA8888_Premultiplied);
    for (int row = 0; row < bitmap.heightPixels; ++row) {
        std::memcpy(image.scanLine(row),
                    bitmap.bytes.data() + rowBytes * static_cast<std::size_t>(row), rowBytes);
    }
    return image;
}

}  // namespace voltaro::ui::RgbaBitmapImage
