#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QString>
#include <array>

#include "core/telemetry/BatterySnapshot.h"

// The battery glyph as panels take it: square icons at the sizes they ask for, and a symbolic
// SVG that the panel colours itself.
namespace voltaro::ui::TrayGlyphImage {

// The square sizes panels draw status icons at, and their doubles for dense screens.
inline constexpr std::array<int, 9> sides = {16, 22, 24, 32, 44, 48, 64, 96, 128};

// The glyph's outline (22 × 14 points) filled in the colour, as wide as the square and centred
// upright in it: drawn for that size, never scaled from another.
QImage square(const QPainterPath& outline, int side, const QColor& color);
QList<QImage> squares(const QPainterPath& outline, const QColor& color);

// The outline as a 22 × 22 SVG of plain fills, the form GTK and Plasma recolour to the panel's
// text colour; hosts that draw it as it is (LXQt) show it in the colour given.
QByteArray symbolicSvg(const QPainterPath& outline, const QColor& color);

// One icon name per look of the glyph: its body's fill band and its accessory.
QString iconName(const BatterySnapshot& snapshot);

}  // namespace voltaro::ui::TrayGlyphImage
