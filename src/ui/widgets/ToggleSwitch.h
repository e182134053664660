#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace voltaro::ui {

// An on/off switch: a pill whose knob slides to the right when on, filled with the accent colour.
// It mirrors its owner's state: a click only asks for the other state through toggleRequested,
// and the switch moves once the owner calls setChecked.
class ToggleSwitch : public QAbstractButton {
    Q_OBJECT

  public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  signals:
    // The state the user asked for by clicking; the switch itself stays as it is.
    void toggleRequested(bool checked);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void nextCheckState() override;
    bool hitButton(const QPoint& position) const override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void moveKnob(bool checked);

    bool hovered_ = false;
    // 0 is off, 1 is on; in between while sliding.
    qreal knobPosition_ = 0;
    QVariantAnimation slide_;
};

}  // namespace voltaro::ui
