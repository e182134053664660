#pragma once

#include <QWidget>
#include <optional>

#include "core/history/HistoryChartModel.h"

namespace voltaro::ui {

// Charge as a line and system power as bars over one period, charging shaded, gaps left empty.
// Hovering shows the nearest record's time and values.
class HistoryChart : public QWidget {
    Q_OBJECT

  public:
    explicit HistoryChart(QWidget* parent = nullptr);

    void setModel(HistoryChartModel model);
    const HistoryChartModel& model() const { return model_; }
    // The point the pointer is over, as hovering chooses it; none clears it.
    void showPointNear(std::optional<WallTime> time);
    const std::optional<HistoryPoint>& shownPoint() const { return shownPoint_; }

    QSize sizeHint() const override { return {348, 220}; }
    QSize minimumSizeHint() const override { return {240, 160}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    QRectF plotRect() const;
    double xOf(WallTime time) const;
    WallTime timeAt(double x) const;
    double wattsScale() const;

    void paintGrid(QPainter& painter) const;
    void paintTimeLabels(QPainter& painter) const;
    void paintCharging(QPainter& painter) const;
    void paintBars(QPainter& painter) const;
    void paintChargeLines(QPainter& painter) const;
    void paintShownPoint(QPainter& painter) const;
    void paintLegend(QPainter& painter) const;

    HistoryChartModel model_;
    std::optional<HistoryPoint> shownPoint_;
};

// The colours of the chart, the same in its legend and the pictures of it.
QColor chargeLineColor(const QPalette& palette);
QColor chargingShadeColor(const QPalette& palette);
QColor powerBarColor(const QPalette& palette);

}  // namespace voltaro::ui
