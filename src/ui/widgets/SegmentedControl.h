#pragma once

#include <QStringList>
#include <QWidget>

namespace voltaro::ui {

// A row of equally wide segments of which at most one is selected, painted as one rounded control.
// Choosing a segment only asks for it (segmentChosen); the owner selects it once the choice holds,
// so the control always shows the stored state, including "none of these".
class SegmentedControl : public QWidget {
    Q_OBJECT

  public:
    explicit SegmentedControl(QStringList segments, QWidget* parent = nullptr);

    int count() const { return static_cast<int>(segments_.size()); }
    // -1 when no segment is selected.
    int selectedIndex() const { return selected_; }
    void setSelectedIndex(int index);
    QRect segmentRect(int index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  signals:
    void segmentChosen(int index);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    int segmentAt(const QPoint& position) const;
    QRectF trackRect() const;

    QStringList segments_;
    int selected_ = -1;
    int pressed_ = -1;
    // The segment the keyboard points at, for the focus ring.
    int focused_ = 0;
};

}  // namespace voltaro::ui
