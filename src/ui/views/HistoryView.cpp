#include "ui/views/HistoryView.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

#include "core/history/HistoryChartModel.h"
#include "ui/application/Translation.h"
#include "ui/views/HistoryChart.h"
#include "ui/widgets/Divider.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/TextStyle.h"

namespace voltaro::ui {
namespace {

constexpr int padding = 16;
constexpr std::chrono::seconds periods[] = {std::chrono::hours(24), std::chrono::hours(24 * 7)};

QLabel* label(const QString& text, const QFont& font, QWidget* parent) {
    auto* shown = new QLabel(text, parent);
    shown->setFont(font);
    return shown;
}

}  // namespace

HistoryView::HistoryView(Loader load, const Clock& clock, QWidget* parent)
    : QWidget(parent), load_(std::move(load)), clock_(clock) {
    setObjectName("history");
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setSpacing(10);

    auto* header = new QHBoxLayout;
    header->addWidget(label(ui::tr("Power history"), headlineFont(font()), this));
    header->addStretch(1);
    period_ = new SegmentedControl({ui::tr("24 hours"), ui::tr("7 days")}, this);
    period_->setObjectName("historyPeriod");
    period_->setFont(captionFont(font()));
    period_->setSelectedIndex(0);
    connect(period_, &SegmentedControl::segmentChosen, this, &HistoryView::choosePeriod);
    header->addWidget(period_);
    layout->addLayout(header);

    chart_ = new HistoryChart(this);
    layout->addWidget(chart_, 1);
    layout->addWidget(new Divider(0, 0, this));

    applicationsTitle_ = label(QString(), captionFont(font()), this);
    useSecondaryColor(applicationsTitle_);
    layout->addWidget(applicationsTitle_);
    applications_ = new QGridLayout;
    applications_->setHorizontalSpacing(10);
    applications_->setVerticalSpacing(6);
    applications_->setColumnStretch(1, 1);
    layout->addLayout(applications_);
    showApplications();
    // A new record comes once a minute; an open window follows.
    refresh_ = new QTimer(this);
    refresh_->setInterval(std::chrono::minutes(1));
    connect(refresh_, &QTimer::timeout, this, &HistoryView::reload);
}

void HistoryView::choosePeriod(int index) {
    if (index < 0 || index >= static_cast<int>(std::size(periods))) {
        return;
    }
    period_->setSelectedIndex(index);
    length_ = periods[index];
    reload();
}

void HistoryView::reload() {
    if (!load_) {
        return;
    }
    const std::uint64_t request = ++request_;
    QPointer<HistoryView> alive(this);
    load_(clock_.wallNow() - length_, [alive, request](std::vector<HistoryRecord> records) {
        // An answer for a closed view, or overtaken by a later question, is dropped.
        if (alive && alive->request_ == request) {
            alive->showRecords(records);
        }
    });
}

void HistoryView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    reload();
    refresh_->start();
}

void HistoryView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    refresh_->stop();
}

void HistoryView::showRecords(const std::vector<HistoryRecord>& records) {
    chart_->setModel(historyChartOf(records, clock_.wallNow(), length_));
    showApplications();
}

void HistoryView::showApplications() {
    while (QLayoutItem* item = applications_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    applicationsTitle_->setText(length_ > std::chrono::hours(24)
                                    ? ui::tr("Most energy over 7 days")
                                    : ui::tr("Most energy over 24 hours"));
    const auto& ranked = chart_->model().topApplications;
    if (ranked.empty()) {
        auto* none = label(ui::tr("No application energy recorded yet"), font(), this);
        useSecondaryColor(none);
        applications_->addWidget(none, 0, 0, 1, 3);
        return;
    }
    const QFont digits = withTabularDigits(font());
    for (int row = 0; row < static_cast<int>(ranked.size()); ++row) {
        const HistoryApplicationEnergy& application = ranked[static_cast<std::size_t>(row)];
        auto* rank = label(QLocale().toString(row + 1), digits, this);
        useSecondaryColor(rank);
        auto* name = new ElidedLabel(this);
        name->setFullText(QString::fromStdString(application.name));
        auto* energy = label(
            QLocale().toString(application.wattHours, 'f', application.wattHours < 10 ? 1 : 0) +
                QStringLiteral(" ") + ui::tr("Wh"),
            digits, this);
        energy->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        applications_->addWidget(rank, row, 0);
        applications_->addWidget(name, row, 1);
        applications_->addWidget(energy, row, 2);
    }
}

}  // namespace voltaro::ui
