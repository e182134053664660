#include "ui/images/MenuBarBatteryImage.h"

#include <QPainter>
#include <array>
#include <cmath>
#include <numbers>

#include "core/presentation/BatteryGlyph.h"
#include "ui/images/ShapeRecorder.h"

namespace voltaro::ui::MenuBarBatteryImage {
namespace {

// The glyph is laid out with its origin at the bottom-left and y upwards; these rectangles and
// offsets are in that system and are turned into the painter's y-down system when drawn.
constexpr QRectF bodyRect(0, 1, 22, 12);
constexpr QRectF boltRect(6, 0.5, 7, 13);
constexpr QRectF plugRect(3.25, 3.75, 12.5, 6.5);
constexpr qreal boltRotation = 0;
constexpr qreal plugRotation = std::numbers::pi / 2;  // anticlockwise

// Shifted copies of the accessory erase a ring about 0.9 point wide around it, so it stays
// readable where it overlaps the body.
constexpr std::array<QPointF, 9> haloOffsets = {
    QPointF(0, 0),        QPointF(-0.9, 0),     QPointF(0.9, 0),
    QPointF(0, -0.9),     QPointF(0, 0.9),      QPointF(-0.65, -0.65),
    QPointF(-0.65, 0.65), QPointF(0.65, -0.65), QPointF(0.65, 0.65),
};

QRectF flipped(const QRectF& rect) {
    return QRectF(rect.x(), heightPoints - rect.y() - rect.height(), rect.width(), rect.height());
}

// Draws the artwork centred on the rectangle's centre, turned anticlockwise by the angle.
void drawTurned(QPainter& painter, const SymbolDrawing& artwork, const QRectF& rect,
                qreal radians) {
    painter.save();
    painter.translate(rect.center());
    // Anticlockwise on screen is a negative angle in a y-down system.
    painter.rotate(-radians * 180 / std::numbers::pi);
    const qreal w = rect.width();
    const qreal h = rect.height();
    artwork(painter, QRectF(-w / 2, -h / 2, w, h));
    painter.restore();
}

void drawAccessory(QPainter& painter, const SymbolDrawing& artwork, const QRectF& rect,
                   qreal radians) {
    const QRectF target = flipped(rect);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    for (const QPointF& offset : haloOffsets) {
        drawTurned(painter, artwork, target.translated(offset.x(), -offset.y()), radians);
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    drawTurned(painter, artwork, target, radians);
}

// The bolt while charging, the plug on external power otherwise; a missing bolt falls back to the
// plug when connected, a missing plug to nothing.
void drawAccessoryFor(QPainter& painter, const BatterySnapshot& snapshot,
                      const SymbolLookup& symbol) {
    GlyphAccessory accessory = glyphAccessory(snapshot);
    if (accessory == GlyphAccessory::bolt) {
        if (const SymbolDrawing bolt = symbol(boltSymbol)) {
            drawAccessory(painter, bolt, boltRect, boltRotation);
            return;
        }
        accessory = snapshot.isConnectedToPower ? GlyphAccessory::plug : GlyphAccessory::none;
    }
    if (accessory == GlyphAccessory::plug) {
        if (const SymbolDrawing plug = symbol(plugSymbol)) {
            drawAccessory(painter, plug, plugRect, plugRotation);
        }
    }
}

}  // namespace

QImage make(const BatterySnapshot& snapshot, qreal devicePixelRatio) {
    return make(snapshot, devicePixelRatio, symbolDrawing);
}

QImage make(const BatterySnapshot& snapshot, qreal devicePixelRatio, const SymbolLookup& symbol) {
    QImage canvas(static_cast<int>(std::ceil(widthPoints * devicePixelRatio)),
                  static_cast<int>(std::ceil(heightPoints * devicePixelRatio)),
                  QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    {
        // Scaled by hand: a painter ignores an image's pixel ratio below 1 and would crop.
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(devicePixelRatio, devicePixelRatio);
        draw(painter, snapshot, symbol);
    }
    canvas.setDevicePixelRatio(devicePixelRatio);
    return canvas;
}

bool draw(QPainter& painter, const BatterySnapshot& snapshot, const SymbolLookup& symbol) {
    const SymbolDrawing body = symbol(batteryBodySymbol(snapshot.level));
    if (!body) {
        return false;
    }
    painter.save();
    body(painter, flipped(bodyRect));
    drawAccessoryFor(painter, snapshot, symbol);
    painter.restore();
    return true;
}

QPainterPath outline(const BatterySnapshot& snapshot) {
    ShapeRecorder recorder(QSizeF(widthPoints, heightPoints));
    QPainter painter(&recorder);
    draw(painter, snapshot, symbolDrawing);
    painter.end();
    return recorder.shape();
}

}  // namespace voltaro::ui::MenuBarBatteryImage
