#pragma once

#include <QCheckBox>

namespace voltaro::ui {

// An on/off switch that shows only the state it is given: a click asks for the other state
// through clicked(), and the owner sets it once the change has really happened.
class ToggleSwitch : public QCheckBox {
    Q_OBJECT

  public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void nextCheckState() override {}
    bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace voltaro::ui
