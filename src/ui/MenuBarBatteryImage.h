#pragma once

#include <QImage>

#include "core/telemetry/BatterySnapshot.h"

namespace voltaro::ui::MenuBarBatteryImage {

inline constexpr qreal widthPoints = 22;
inline constexpr qreal heightPoints = 14;

// The battery glyph for the snapshot: 22 × 14 points at the given scale, a template whose alpha
// is the shape (drawn in black; the caller tints it to its surroundings).
QImage make(const BatterySnapshot& snapshot, qreal devicePixelRatio);

}  // namespace voltaro::ui::MenuBarBatteryImage
