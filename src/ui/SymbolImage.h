#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QSizeF>
#include <string_view>

namespace voltaro::ui {

// Our symbol artwork (resources/symbols/<name>.svg), used as a template: only its shape counts,
// the colour is the caller's.
bool hasSymbol(std::string_view name);

// The symbol stretched to fill logicalSize, at the given scale; a null image without artwork.
QImage renderSymbol(std::string_view name, const QSizeF& logicalSize, qreal devicePixelRatio,
                    const QColor& color);

// The symbol fitted into logicalSize keeping its proportions, centred; transparent without
// artwork.
QPixmap symbolPixmap(std::string_view name, const QSizeF& logicalSize, qreal devicePixelRatio,
                     const QColor& color);

}  // namespace voltaro::ui
