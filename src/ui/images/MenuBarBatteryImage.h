#pragma once

#include <QImage>
#include <QPainterPath>
#include <functional>
#include <string_view>

#include "core/telemetry/BatterySnapshot.h"
#include "ui/images/SymbolImage.h"

namespace voltaro::ui::MenuBarBatteryImage {

inline constexpr qreal widthPoints = 22;
inline constexpr qreal heightPoints = 14;

// A symbol's artwork by name, drawn in black; empty when the symbol has none.
using SymbolLookup = std::function<SymbolDrawing(std::string_view name)>;

// The battery glyph for the snapshot: 22 × 14 points at the given scale, a template whose alpha
// is the shape (drawn in black; the caller tints it to its surroundings). Blank when the battery
// body has no artwork.
QImage make(const BatterySnapshot& snapshot, qreal devicePixelRatio);

// The same, drawn from the artwork the lookup gives.
QImage make(const BatterySnapshot& snapshot, qreal devicePixelRatio, const SymbolLookup& symbol);

// Paints the glyph into the painter's 22 × 14 point box at its origin; false, painting nothing,
// without the body's artwork.
bool draw(QPainter& painter, const BatterySnapshot& snapshot, const SymbolLookup& symbol);

// The glyph's shape as one filled outline in that box (y downwards): the same drawing, kept as
// geometry, so it can be filled crisply at any size or written out as vector artwork.
QPainterPath outline(const BatterySnapshot& snapshot);

}  // namespace voltaro::ui::MenuBarBatteryImage
