#include "ui/SymbolView.h"

#include <QPainter>

#include "ui/SymbolImage.h"

namespace voltaro::ui {

SymbolView::SymbolView(std::string_view name, QSize frameSize, QSizeF symbolSize, QWidget* parent)
    : QWidget(parent), name_(name), frameSize_(frameSize), symbolSize_(symbolSize) {
    setFixedSize(frameSize);
}

void SymbolView::setSymbol(std::string_view name) {
    if (name == name_) {
        return;
    }
    name_ = std::string(name);
    rendered_ = QPixmap();
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    const QColor color = palette().color(foregroundRole());
    const qreal scale = devicePixelRatioF();
    if (rendered_.isNull() || renderedColor_ != color.rgba() || renderedScale_ != scale) {
        rendered_ = symbolPixmap(name_, symbolSize_, scale, color);
        renderedColor_ = color.rgba();
        renderedScale_ = scale;
    }
    const QPointF origin((width() - symbolSize_.width()) / 2,
                         (height() - symbolSize_.height()) / 2);
    QPainter painter(this);
    painter.drawPixmap(origin, rendered_);
}

}  // namespace voltaro::ui
