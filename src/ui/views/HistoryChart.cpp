#include "ui/views/HistoryChart.h"

#include <QDateTime>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/application/Translation.h"
#include "ui/widgets/TextStyle.h"

namespace voltaro::ui {
namespace {

constexpr qreal readoutHeight = 20;
constexpr qreal axisWidth = 34;
constexpr qreal timeLabelHeight = 16;
constexpr qreal legendHeight = 24;

QDateTime localTime(WallTime time) {
    return QDateTime::fromSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count());
}

WallTime wallTime(const QDateTime& time) {
    return WallTime(std::chrono::seconds(time.toSecsSinceEpoch()));
}

// The top of the watts axis: a round number a little above the highest bar.
double niceCeiling(double watts) {
    for (const double step : {5.0, 10.0, 20.0, 30.0, 40.0, 60.0, 80.0, 100.0, 150.0}) {
        if (watts <= step) {
            return step;
        }
    }
    return std::ceil(watts / 50) * 50;
}

bool spansDays(const HistorySpan& period) {
    return period.end - period.start > std::chrono::hours(36);
}

QString wattsText(double watts, int digits) {
    return QLocale().toString(watts, 'f', digits) + QStringLiteral(" ") + ui::tr("W");
}

}  // namespace

QColor chargeLineColor(const QPalette& palette) {
    return isDark(palette) ? QColor(0x30, 0xd1, 0x58) : QColor(0x1e, 0x9e, 0x40);
}

QColor chargingShadeColor(const QPalette& palette) {
    return withAlpha(chargeLineColor(palette), isDark(palette) ? 0.16 : 0.12);
}

QColor powerBarColor(const QPalette& palette) {
    return isDark(palette) ? QColor(0x64, 0x9c, 0xff, 150) : QColor(0x2f, 0x6f, 0xd8, 110);
}

HistoryChart::HistoryChart(QWidget* parent) : QWidget(parent) {
    setObjectName("historyChart");
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void HistoryChart::setModel(HistoryChartModel model) {
    model_ = std::move(model);
    // A reload under a resting pointer keeps showing the record there.
    const std::optional<WallTime> shownTime =
        shownPoint_ ? std::optional(shownPoint_->time) : std::nullopt;
    showPointNear(shownTime);
}

void HistoryChart::showPointNear(std::optional<WallTime> time) {
    // Within half a bar: close enough to mean that record, never across a gap.
    const auto tolerance = std::chrono::duration_cast<std::chrono::seconds>(
        (model_.period.end - model_.period.start) / historyBarsPerPeriod / 2);
    shownPoint_ = time ? model_.pointNear(*time, std::max(tolerance, std::chrono::seconds(90)))
                       : std::nullopt;
    update();
}

QRectF HistoryChart::plotRect() const {
    return QRectF(axisWidth, readoutHeight, width() - 2 * axisWidth,
                  height() - readoutHeight - timeLabelHeight - legendHeight);
}

double HistoryChart::xOf(WallTime time) const {
    const QRectF plot = plotRect();
    const double length =
        std::chrono::duration<double>(model_.period.end - model_.period.start).count();
    const double offset = std::chrono::duration<double>(time - model_.period.start).count();
    return plot.left() + (length > 0 ? offset / length : 0) * plot.width();
}

WallTime HistoryChart::timeAt(double x) const {
    const QRectF plot = plotRect();
    const double fraction = std::clamp((x - plot.left()) / plot.width(), 0.0, 1.0);
    const auto length = model_.period.end - model_.period.start;
    return model_.period.start + std::chrono::duration_cast<WallTime::duration>(length * fraction);
}

double HistoryChart::wattsScale() const {
    return niceCeiling(std::max(model_.highestBarWatts, 1.0));
}

void HistoryChart::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(captionFont(font()));
    paintCharging(painter);
    paintGrid(painter);
    paintBars(painter);
    paintChargeLines(painter);
    if (model_.chargeLines.empty()) {
        painter.setPen(secondaryTextColor(palette()));
        painter.drawText(plotRect(), Qt::AlignCenter, ui::tr("Nothing recorded in this period"));
    }
    paintTimeLabels(painter);
    paintShownPoint(painter);
    paintLegend(painter);
}

void HistoryChart::paintGrid(QPainter& painter) const {
    const QRectF plot = plotRect();
    const QColor secondary = secondaryTextColor(palette());
    const double scale = wattsScale();
    for (int step = 0; step <= 2; ++step) {
        const double y = plot.bottom() - plot.height() * step / 2;
        painter.setPen(QPen(separatorColor(palette()), 1));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        painter.setPen(secondary);
        const QRectF left(0, y - 8, axisWidth - 5, 16);
        painter.drawText(left, Qt::AlignRight | Qt::AlignVCenter,
                         QLocale().toString(step * 50) + QStringLiteral("%"));
        const QRectF right(plot.right() + 5, y - 8, axisWidth - 5, 16);
        painter.drawText(right, Qt::AlignLeft | Qt::AlignVCenter, wattsText(scale * step / 2, 0));
    }
}

void HistoryChart::paintTimeLabels(QPainter& painter) const {
    const QRectF plot = plotRect();
    painter.setPen(secondaryTextColor(palette()));
    const bool days = spansDays(model_.period);
    // Local midnights for a week, every sixth local hour for a day.
    QDateTime tick = localTime(model_.period.start);
    tick.setTime(days ? QTime(0, 0) : QTime(tick.time().hour() / 6 * 6, 0));
    for (; wallTime(tick) <= model_.period.end;
         tick = days ? tick.addDays(1) : tick.addSecs(6 * 3600)) {
        if (wallTime(tick) < model_.period.start) {
            continue;
        }
        const double x = xOf(wallTime(tick));
        painter.setPen(QPen(separatorColor(palette()), 1, Qt::DotLine));
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        painter.setPen(secondaryTextColor(palette()));
        const QString text = days ? QLocale().toString(tick.date(), QStringLiteral("ddd"))
                                  : QLocale().toString(tick.time(), QLocale::ShortFormat);
        // A day's name stands under the middle of its day, an hour under its line.
        const double centre = days ? xOf(wallTime(tick.addSecs(12 * 3600))) : x;
        const QRectF box(centre - 30, plot.bottom() + 2, 60, timeLabelHeight);
        if (box.left() >= 0 && box.right() <= width() && centre <= plot.right()) {
            painter.drawText(box, Qt::AlignCenter, text);
        }
    }
}

void HistoryChart::paintCharging(QPainter& painter) const {
    const QRectF plot = plotRect();
    for (const HistorySpan& span : model_.chargingSpans) {
        const double left = xOf(span.start);
        painter.fillRect(
            QRectF(left, plot.top(), std::max(1.0, xOf(span.end) - left), plot.height()),
            chargingShadeColor(palette()));
    }
}

void HistoryChart::paintBars(QPainter& painter) const {
    const QRectF plot = plotRect();
    const double scale = wattsScale();
    painter.setPen(Qt::NoPen);
    painter.setBrush(powerBarColor(palette()));
    for (const HistoryPowerBar& bar : model_.powerBars) {
        const double left = xOf(bar.span.start);
        const double barWidth = std::max(1.0, xOf(bar.span.end) - left - 1);
        const double barHeight = plot.height() * std::min(bar.systemWatts / scale, 1.0);
        painter.drawRect(QRectF(left + 0.5, plot.bottom() - barHeight, barWidth, barHeight));
    }
}

void HistoryChart::paintChargeLines(QPainter& painter) const {
    const QRectF plot = plotRect();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(chargeLineColor(palette()), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto yOf = [&](double percent) { return plot.bottom() - plot.height() * percent / 100; };
    for (const auto& line : model_.chargeLines) {
        if (line.size() == 1) {
            painter.drawPoint(QPointF(xOf(line.front().time), yOf(line.front().chargePercent)));
            continue;
        }
        QPainterPath path;
        path.moveTo(xOf(line.front().time), yOf(line.front().chargePercent));
        for (const HistoryPoint& point : line) {
            path.lineTo(xOf(point.time), yOf(point.chargePercent));
        }
        painter.drawPath(path);
    }
}

void HistoryChart::paintShownPoint(QPainter& painter) const {
    if (!shownPoint_) {
        return;
    }
    const QRectF plot = plotRect();
    const double x = xOf(shownPoint_->time);
    const double y = plot.bottom() - plot.height() * shownPoint_->chargePercent / 100;
    painter.setPen(QPen(secondaryTextColor(palette()), 1));
    painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    painter.setBrush(chargeLineColor(palette()));
    painter.setPen(QPen(palette().color(QPalette::Window), 1.5));
    painter.drawEllipse(QPointF(x, y), 4, 4);

    const QDateTime time = localTime(shownPoint_->time);
    QString text =
        (spansDays(model_.period) ? QLocale().toString(time, QStringLiteral("ddd ")) : QString()) +
        QLocale().toString(time.time(), QLocale::ShortFormat) + QStringLiteral("  ·  ") +
        QLocale().toString(qRound(shownPoint_->chargePercent)) + QStringLiteral("%  ·  ") +
        (shownPoint_->systemWatts ? wattsText(*shownPoint_->systemWatts, 1)
                                  : QStringLiteral("— ") + ui::tr("W"));
    if (shownPoint_->isCharging) {
        text += QStringLiteral("  ·  ") + ui::tr("Charging");
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(0, 0, width(), readoutHeight - 4), Qt::AlignCenter, text);
}

void HistoryChart::paintLegend(QPainter& painter) const {
    struct Entry {
        QString text;
        QColor color;
        QSizeF swatch;
    };
    const Entry entries[] = {
        {ui::tr("Charge"), chargeLineColor(palette()), QSizeF(12, 2.5)},
        {ui::tr("Power draw"), powerBarColor(palette()), QSizeF(7, 10)},
        {ui::tr("Charging"), withAlpha(chargeLineColor(palette()), 0.35), QSizeF(10, 10)},
    };
    const QFontMetricsF metrics(painter.font());
    double total = 0;
    for (const Entry& entry : entries) {
        total += entry.swatch.width() + 5 + metrics.horizontalAdvance(entry.text) + 14;
    }
    double x = (width() - total + 14) / 2;
    const double middle = height() - 9;
    for (const Entry& entry : entries) {
        painter.fillRect(QRectF(QPointF(x, middle - entry.swatch.height() / 2), entry.swatch),
                         entry.color);
        x += entry.swatch.width() + 5;
        painter.setPen(secondaryTextColor(palette()));
        const double textWidth = metrics.horizontalAdvance(entry.text);
        painter.drawText(QRectF(x, middle - 8, textWidth + 2, 16), Qt::AlignLeft | Qt::AlignVCenter,
                         entry.text);
        x += textWidth + 14;
    }
}

void HistoryChart::mouseMoveEvent(QMouseEvent* event) {
    showPointNear(timeAt(event->position().x()));
}

void HistoryChart::leaveEvent(QEvent*) {
    showPointNear(std::nullopt);
}

}  // namespace voltaro::ui
