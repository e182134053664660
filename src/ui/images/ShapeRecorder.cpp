#include "ui/images/ShapeRecorder.h"

#include <QPaintEngine>
#include <QPainterPathStroker>
#include <cmath>

namespace voltaro::ui {
namespace {

constexpr qreal millimetresPerPoint = 25.4 / 72;

}  // namespace

class ShapeRecorder::Engine final : public QPaintEngine {
  public:
    Engine() : QPaintEngine(QPaintEngine::AllFeatures) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    Type type() const override { return QPaintEngine::User; }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

    void drawPath(const QPainterPath& path) override {
        QPainterPath covered;
        if (state->brush().style() != Qt::NoBrush) {
            covered = path;
        }
        if (state->pen().style() != Qt::NoPen && state->pen().widthF() > 0) {
            covered.addPath(QPainterPathStroker(state->pen()).createStroke(path));
        }
        covered.setFillRule(Qt::WindingFill);
        covered = state->transform().map(covered).simplified();
        if (covered.isEmpty()) {
            return;
        }
        if (state->compositionMode() == QPainter::CompositionMode_DestinationOut) {
            shape = shape.subtracted(covered);
        } else {
            shape = shape.united(covered);
        }
    }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        if (mode != PolylineMode) {
            path.closeSubpath();
        } else {
            // A polyline is only ever stroked.
            path = QPainterPathStroker(state->pen()).createStroke(path);
        }
        path.setFillRule(mode == OddEvenMode ? Qt::OddEvenFill : Qt::WindingFill);
        drawPath(path);
    }
    void drawRects(const QRectF* rects, int count) override {
        QPainterPath path;
        for (int i = 0; i < count; ++i) {
            path.addRect(rects[i]);
        }
        drawPath(path);
    }
    void drawEllipse(const QRectF& rect) override {
        QPainterPath path;
        path.addEllipse(rect);
        drawPath(path);
    }

    QPainterPath shape;
};

ShapeRecorder::ShapeRecorder(QSizeF size) : size_(size), engine_(std::make_unique<Engine>()) {}

ShapeRecorder::~ShapeRecorder() = default;

QPaintEngine* ShapeRecorder::paintEngine() const {
    return engine_.get();
}

QPainterPath ShapeRecorder::shape() const {
    return engine_->shape;
}

int ShapeRecorder::metric(PaintDeviceMetric metric) const {
    switch (metric) {
        case PdmWidth:
            return static_cast<int>(std::ceil(size_.width()));
        case PdmHeight:
            return static_cast<int>(std::ceil(size_.height()));
        case PdmWidthMM:
            return static_cast<int>(std::ceil(size_.width() * millimetresPerPoint));
        case PdmHeightMM:
            return static_cast<int>(std::ceil(size_.height() * millimetresPerPoint));
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 72;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmNumColors:
            return 0;
        case PdmDepth:
            return 32;
        default:
            return 0;
    }
}

}  // namespace voltaro::ui
