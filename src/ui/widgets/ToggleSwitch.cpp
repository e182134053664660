#include "ui/widgets/ToggleSwitch.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/widgets/TextStyle.h"

namespace voltaro::ui {
namespace {

constexpr QSizeF trackSize(34, 20);
constexpr qreal focusRingWidth = 2;
constexpr qreal knobInset = 2;
constexpr int slideMilliseconds = 140;

QColor mixed(const QColor& base, const QColor& over, qreal amount) {
    return QColor::fromRgbF(
        static_cast<float>(base.redF() + (over.redF() - base.redF()) * amount),
        static_cast<float>(base.greenF() + (over.greenF() - base.greenF()) * amount),
        static_cast<float>(base.blueF() + (over.blueF() - base.blueF()) * amount));
}

}  // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    // Reached by Tab like other controls, but a click does not steal the focus ring.
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);

    slide_.setDuration(slideMilliseconds);
    slide_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&slide_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        knobPosition_ = value.toReal();
        update();
    });
    connect(this, &QAbstractButton::toggled, this, &ToggleSwitch::moveKnob);
}

QSize ToggleSwitch::sizeHint() const {
    return QSizeF(trackSize.width() + 2 * focusRingWidth, trackSize.height() + 2 * focusRingWidth)
        .toSize();
}

void ToggleSwitch::nextCheckState() {
    emit toggleRequested(!isChecked());
}

bool ToggleSwitch::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void ToggleSwitch::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    update();
    QAbstractButton::enterEvent(event);
}

void ToggleSwitch::leaveEvent(QEvent* event) {
    hovered_ = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void ToggleSwitch::moveKnob(bool checked) {
    const qreal target = checked ? 1 : 0;
    slide_.stop();
    // A hidden switch has nobody to show the slide to.
    if (!isVisible()) {
        knobPosition_ = target;
        update();
        return;
    }
    slide_.setStartValue(knobPosition_);
    slide_.setEndValue(target);
    slide_.start();
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    prepareControlPainter(painter, *this);

    const QPalette& colors = palette();
    const bool dark = isDark(colors);
    const QRectF track(
        QPointF((width() - trackSize.width()) / 2, (height() - trackSize.height()) / 2), trackSize);
    const qreal radius = track.height() / 2;

    const QColor window = colors.color(QPalette::Window);
    QColor off = mixed(window, colors.color(QPalette::WindowText), dark ? 0.22 : 0.13);
    QColor on = colors.color(QPalette::Highlight);
    if (isDown() || hovered_) {
        off = mixed(off, colors.color(QPalette::WindowText), isDown() ? 0.12 : 0.06);
        on = mixed(on, dark ? Qt::white : Qt::black, isDown() ? 0.14 : 0.07);
    }

    if (hasFocus()) {
        QColor ring = colors.color(QPalette::Highlight);
        ring.setAlphaF(0.5f);
        painter.setPen(QPen(ring, focusRingWidth));
        painter.setBrush(Qt::NoBrush);
        const qreal grow = focusRingWidth / 2;
        painter.drawRoundedRect(track.adjusted(-grow, -grow, grow, grow), radius + grow,
                                radius + grow);
    }

    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(off, on, knobPosition_));
    painter.drawRoundedRect(track, radius, radius);

    const qreal knobDiameter = track.height() - 2 * knobInset;
    const qreal travel = track.width() - 2 * knobInset - knobDiameter;
    const QRectF knob(track.left() + knobInset + travel * knobPosition_, track.top() + knobInset,
                      knobDiameter, knobDiameter);
    // A soft shadow under the knob lifts it off the track.
    painter.setBrush(QColor(0, 0, 0, dark ? 70 : 40));
    painter.drawEllipse(knob.translated(0, 0.6).adjusted(-0.3, -0.3, 0.3, 0.3));
    painter.setBrush(dark && !isChecked() ? QColor(0xd8, 0xd8, 0xdc) : QColor(Qt::white));
    painter.drawEllipse(knob);
}

}  // namespace voltaro::ui
