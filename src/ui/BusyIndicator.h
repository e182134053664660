#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

namespace voltaro::ui {

// A small turning arc for work of unknown length. It runs only while it is visible.
class BusyIndicator : public QWidget {
    Q_OBJECT

  public:
    explicit BusyIndicator(int diameter = 16, QWidget* parent = nullptr);

    bool isAnimating() const { return timer_.isActive(); }
    QSize sizeHint() const override { return {diameter_, diameter_}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    int diameter_;
    QTimer timer_;
    QElapsedTimer clock_;
};

}  // namespace voltaro::ui
