#include "ui/BusyIndicator.h"

#include <QPainter>
#include <algorithm>

#include "ui/TextStyle.h"

namespace voltaro::ui {
namespace {

constexpr int frameIntervalMilliseconds = 33;
constexpr qint64 turnMilliseconds = 900;
constexpr int arcDegrees = 100;

}  // namespace

BusyIndicator::BusyIndicator(int diameter, QWidget* parent) : QWidget(parent), diameter_(diameter) {
    setFixedSize(diameter, diameter);
    timer_.setInterval(frameIntervalMilliseconds);
    connect(&timer_, &QTimer::timeout, this, qOverload<>(&QWidget::update));
    clock_.start();
}

void BusyIndicator::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    timer_.start();
}

void BusyIndicator::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

void BusyIndicator::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal penWidth = std::max<qreal>(1.5, diameter_ / 8.0);
    const QRectF circle =
        QRectF(rect()).adjusted(penWidth / 2, penWidth / 2, -penWidth / 2, -penWidth / 2);

    painter.setPen(QPen(separatorColor(palette()), penWidth));
    painter.drawEllipse(circle);

    const qreal turn = static_cast<qreal>(clock_.elapsed() % turnMilliseconds) / turnMilliseconds;
    // Qt counts angles anticlockwise in sixteenths of a degree; the arc turns clockwise.
    const int start = static_cast<int>((90 - turn * 360) * 16);
    QColor arcColor = palette().color(QPalette::WindowText);
    arcColor.setAlphaF(0.7f);
    painter.setPen(QPen(arcColor, penWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, start, -arcDegrees * 16);
}

}  // namespace voltaro::ui
