#pragma once

#include <QWidget>
#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "core/history/HistoryRecord.h"
#include "core/runtime/Clock.h"

class QGridLayout;
class QLabel;
class QTimer;

namespace voltaro::ui {

class HistoryChart;
class SegmentedControl;

// The last 24 hours or 7 days: the chart, and the applications that drew the most energy then.
// Reads the history each time it is shown or the period changes, without waiting for it.
class HistoryView : public QWidget {
    Q_OBJECT

  public:
    using RecordsReady = std::function<void(std::vector<HistoryRecord>)>;
    // Asks for the records since a time; the answer comes later, on the main thread.
    using Loader = std::function<void(WallTime since, RecordsReady done)>;

    explicit HistoryView(Loader load, const Clock& clock = SystemClock::instance(),
                         QWidget* parent = nullptr);

    // 0: 24 hours, 1: 7 days.
    void choosePeriod(int index);
    void reload();
    HistoryChart& chart() const { return *chart_; }

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void showRecords(const std::vector<HistoryRecord>& records);
    void showApplications();

    Loader load_;
    const Clock& clock_;
    std::chrono::seconds length_{std::chrono::hours(24)};
    std::uint64_t request_ = 0;
    SegmentedControl* period_ = nullptr;
    HistoryChart* chart_ = nullptr;
    QLabel* applicationsTitle_ = nullptr;
    QGridLayout* applications_ = nullptr;
    QTimer* refresh_ = nullptr;
};

}  // namespace voltaro::ui
