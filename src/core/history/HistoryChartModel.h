#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "core/history/HistoryRecord.h"
#include "core/runtime/Clock.h"

namespace voltaro {

// Records further apart than this were not taken in one stretch: Voltaro was not running or the
// machine slept, and the chart leaves the time empty.
constexpr std::chrono::minutes historyGap{3};

struct HistorySpan {
    WallTime start;
    WallTime end;
    friend bool operator==(const HistorySpan&, const HistorySpan&) = default;
};

struct HistoryPoint {
    WallTime time;
    double chargePercent = 0;
    std::optional<double> systemWatts;
    bool isCharging = false;
};

struct HistoryPowerBar {
    HistorySpan span;
    double systemWatts = 0;  // average of the records in the span
};

struct HistoryApplicationEnergy {
    std::string id;
    std::string name;
    double wattHours = 0;
};

// What the history chart shows of one period.
struct HistoryChartModel {
    HistorySpan period;
    std::vector<std::vector<HistoryPoint>> chargeLines;  // one per stretch without a gap
    std::vector<HistorySpan> chargingSpans;
    std::vector<HistoryPowerBar> powerBars;  // only spans that hold a measurement
    double highestBarWatts = 0;
    std::vector<HistoryApplicationEnergy> topApplications;  // most energy first

    // The recorded point closest to the time, if one lies within the tolerance.
    std::optional<HistoryPoint> pointNear(WallTime time, std::chrono::seconds tolerance) const;
};

constexpr std::size_t historyBarsPerPeriod = 96;
constexpr std::size_t historyApplicationsShown = 5;

// The chart of the period that ends at `end`, from records in time order. A record stands for
// the time until the next one, or a minute when a gap or the end follows.
HistoryChartModel historyChartOf(const std::vector<HistoryRecord>& records, WallTime end,
                                 std::chrono::seconds length);

}  // namespace voltaro
