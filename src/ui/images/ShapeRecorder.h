#pragma once

#include <QPaintDevice>
#include <QPainterPath>
#include <QSizeF>
#include <memory>

namespace voltaro::ui {

// A paint device that keeps the shape of what is painted on it rather than its pixels: fills and
// strokes add to the shape, destination-out erases from it. So one drawing routine gives both
// pixels and a vector outline (for SVG icons, or a fill at any size).
class ShapeRecorder final : public QPaintDevice {
  public:
    explicit ShapeRecorder(QSizeF size);
    ~ShapeRecorder() override;

    QPaintEngine* paintEngine() const override;
    // The painted shape, in the painter's device coordinates, with the winding fill rule.
    QPainterPath shape() const;

  protected:
    int metric(PaintDeviceMetric metric) const override;

  private:
    class Engine;
    QSizeF size_;
    std::unique_ptr<Engine> engine_;
};

}  // namespace voltaro::ui
