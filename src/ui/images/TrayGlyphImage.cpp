#include "ui/images/TrayGlyphImage.h"

#include <QPainter>

#include "core/presentation/BatteryGlyph.h"
#include "ui/images/MenuBarBatteryImage.h"

namespace voltaro::ui::TrayGlyphImage {
namespace {

// The glyph's top within a square of its width.
constexpr qreal glyphTopPoints =
    (MenuBarBatteryImage::widthPoints - MenuBarBatteryImage::heightPoints) / 2;

QByteArray number(qreal value) {
    return QByteArray::number(value, 'f', 3);
}

QByteArray pathData(const QPainterPath& outline) {
    QByteArray data;
    for (int i = 0; i < outline.elementCount(); ++i) {
        const QPainterPath::Element element = outline.elementAt(i);
        switch (element.type) {
            case QPainterPath::MoveToElement:
                data += 'M';
                break;
            case QPainterPath::LineToElement:
                data += 'L';
                break;
            case QPainterPath::CurveToElement:
                data += 'C';
                break;
            case QPainterPath::CurveToDataElement:
                data += ' ';
                break;
        }
        data += number(element.x) + ' ' + number(element.y + glyphTopPoints);
    }
    return data;
}

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

QByteArray symbolicSvg(const QPainterPath& outline, const QColor& color) {
    // Plasma takes the colour from the style sheet's class; GTK overrides every fill.
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"22\" height=\"22\" "
           "viewBox=\"0 0 22 22\">\n"
           "<style id=\"current-color-scheme\">.ColorScheme-Text{color:" +
           color.name(QColor::HexRgb).toLatin1() +
           ";}</style>\n"
           "<path class=\"ColorScheme-Text\" fill=\"currentColor\" fill-rule=\"" +
           QByteArray(outline.fillRule() == Qt::OddEvenFill ? "evenodd" : "nonzero") + "\" d=\"" +
           pathData(outline) + "\"/>\n</svg>\n";
}

QString iconName(const BatterySnapshot& snapshot) {
    static constexpr const char* accessories[] = {"", "-charging", "-plugged"};
    const std::string_view body = batteryBodySymbol(snapshot.level);
    // "battery.50percent" → "50"
    const std::size_t start = body.find('.') + 1;
    const std::string_view band = body.substr(start, body.find("percent") - start);
    return QStringLiteral("voltaro-battery-%1%2-symbolic")
        .arg(QString::fromUtf8(band.data(), static_cast<qsizetype>(band.size())),
             QString::fromLatin1(accessories[static_cast<int>(glyphAccessory(snapshot))]));
}

}  // namespace voltaro::ui::TrayGlyphImage
