#include "ui/images/TrayGlyphImage.h"

#include <QPainter>

#include "ui/images/MenuBarBatteryImage.h"

namespace voltaro::ui::TrayGlyphImage {
namespace {

// The glyph's top within a square of its width.
constexpr qreal glyphTopPoints =
    (MenuBarBatteryImage::widthPoints - MenuBarBatteryImage::heightPoints) / 2;

}  // namespace

QImage square(const QPainterPath& outline, int side, const QColor& color) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal scale = side / MenuBarBatteryImage::widthPoints;
    painter.scale(scale, scale);
    painter.translate(0, glyphTopPoints);
    painter.fillPath(outline, color);
    return image;
}

QList<QImage> squares(const QPainterPath& outline, const QColor& color) {
    QList<QImage> images;
    for (const int side : sides) {
        images.append(square(outline, side, color));
    }
    return images;
}

}  // namespace voltaro::ui::TrayGlyphImage
