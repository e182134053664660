#include "ui/ToggleSwitch.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace voltaro::ui {
namespace {

constexpr int trackWidth = 32;
constexpr int trackHeight = 18;
constexpr qreal knobInset = 2;

}  // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent) : QCheckBox(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

QSize ToggleSwitch::sizeHint() const {
    return {trackWidth + 2, trackHeight + 2};  // room for the focus ring
}

bool ToggleSwitch::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QStyleOptionButton option;
    initStyleOption(&option);
    const bool on = isChecked();
    const bool enabled = isEnabled();

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track((width() - trackWidth) / 2.0, (height() - trackHeight) / 2.0, trackWidth,
                       trackHeight);
    const qreal radius = trackHeight / 2.0;

    QColor trackColor = palette().color(on ? QPalette::Highlight : QPalette::WindowText);
    if (!on) {
        trackColor.setAlphaF(0.22f);
    }
    if (!enabled) {
        trackColor.setAlphaF(trackColor.alphaF() * 0.5f);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(trackColor);
    painter.drawRoundedRect(track, radius, radius);

    const qreal knobDiameter = trackHeight - 2 * knobInset;
    const qreal knobX = on ? track.right() - knobInset - knobDiameter : track.left() + knobInset;
    const QRectF knob(knobX, track.top() + knobInset, knobDiameter, knobDiameter);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawEllipse(knob.translated(0, 0.5));
    painter.setBrush(enabled ? QColor(Qt::white) : QColor(245, 245, 245));
    painter.drawEllipse(knob);

    if ((option.state & QStyle::State_HasFocus) &&
        (option.state & QStyle::State_KeyboardFocusChange)) {
        QColor ring = palette().color(QPalette::Highlight);
        ring.setAlphaF(0.6f);
        painter.setPen(QPen(ring, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track.adjusted(-1, -1, 1, 1), radius + 1, radius + 1);
    }
}

}  // namespace voltaro::ui
