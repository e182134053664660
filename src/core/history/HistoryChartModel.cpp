#include "core/history/HistoryChartModel.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/history/HistoryRecording.h"

namespace voltaro {
namespace {

// How long each record stands for: until the next one, or one interval before a gap.
std::vector<std::chrono::seconds> coveredDurations(const std::vector<HistoryRecord>& records) {
    std::vector<std::chrono::seconds> durations;
    durations.reserve(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto covered = std::chrono::seconds(historyRecordInterval);
        if (i + 1 < records.size()) {
            const auto toNext = std::chrono::duration_cast<std::chrono::seconds>(
                records[i + 1].time - records[i].time);
            if (toNext >= std::chrono::seconds(0) && toNext <= historyGap) {
                covered = toNext;
            }
        }
        durations.push_back(covered);
    }
    return durations;
}

void addChargingSpan(std::vector<HistorySpan>& spans, HistorySpan span) {
    if (!spans.empty() && spans.back().end == span.start) {
        spans.back().end = span.end;
    } else {
        spans.push_back(span);
    }
}

void rankApplications(HistoryChartModel& chart, const std::vector<HistoryRecord>& records,
                      const std::vector<std::chrono::seconds>& durations) {
    std::map<std::string, HistoryApplicationEnergy> totals;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const double hours = std::chrono::duration<double, std::ratio<3600>>(durations[i]).count();
        for (const HistoryApplication& application : records[i].applications) {
            HistoryApplicationEnergy& total = totals[application.id];
            total.id = application.id;
            total.name = application.name;  // the latest name wins
            total.wattHours += application.watts * hours;
        }
    }
    for (auto& [id, total] : totals) {
        chart.topApplications.push_back(std::move(total));
    }
    std::stable_sort(chart.topApplications.begin(), chart.topApplications.end(),
                     [](const auto& a, const auto& b) { return a.wattHours > b.wattHours; });
    if (chart.topApplications.size() > historyApplicationsShown) {
        chart.topApplications.resize(historyApplicationsShown);
    }
}

void addPowerBars(HistoryChartModel& chart, const std::vector<HistoryRecord>& records) {
    const auto barLength = (chart.period.end - chart.period.start) / historyBarsPerPeriod;
    if (barLength <= WallTime::duration::zero()) {
        return;
    }
    std::vector<double> sums(historyBarsPerPeriod, 0);
    std::vector<int> counts(historyBarsPerPeriod, 0);
    for (const HistoryRecord& record : records) {
        if (!record.systemWatts) {
            continue;
        }
        const auto bar = static_cast<std::size_t>((record.time - chart.period.start) / barLength);
        if (bar < historyBarsPerPeriod) {
            sums[bar] += *record.systemWatts;
            ++counts[bar];
        }
    }
    for (std::size_t bar = 0; bar < historyBarsPerPeriod; ++bar) {
        if (counts[bar] == 0) {
            continue;
        }
        const WallTime start = chart.period.start + barLength * static_cast<int>(bar);
        const double watts = sums[bar] / counts[bar];
        chart.powerBars.push_back({{start, start + barLength}, watts});
        chart.highestBarWatts = std::max(chart.highestBarWatts, watts);
    }
}

}  // namespace

std::optional<HistoryPoint> HistoryChartModel::pointNear(WallTime time,
                                                         std::chrono::seconds tolerance) const {
    std::optional<HistoryPoint> nearest;
    auto bestDistance = std::chrono::duration_cast<WallTime::duration>(tolerance);
    for (const auto& line : chargeLines) {
        for (const HistoryPoint& point : line) {
            const auto distance = point.time > time ? point.time - time : time - point.time;
            if (distance <= bestDistance) {
                bestDistance = distance;
                nearest = point;
            }
        }
    }
    return nearest;
}

HistoryChartModel historyChartOf(const std::vector<HistoryRecord>& allRecords, WallTime end,
                                 std::chrono::seconds length) {
    HistoryChartModel chart;
    chart.period = {end - length, end};
    std::vector<HistoryRecord> records;
    std::copy_if(
        allRecords.begin(), allRecords.end(), std::back_inserter(records),
        [&](const HistoryRecord& r) { return r.time >= chart.period.start && r.time <= end; });
    const std::vector<std::chrono::seconds> durations = coveredDurations(records);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const HistoryRecord& record = records[i];
        const bool startsStretch = i == 0 || durations[i - 1] != record.time - records[i - 1].time;
        if (startsStretch) {
            chart.chargeLines.emplace_back();
        }
        chart.chargeLines.back().push_back({record.time, static_cast<double>(record.chargePercent),
                                            record.systemWatts, record.isCharging});
        if (record.isCharging) {
            addChargingSpan(chart.chargingSpans,
                            {record.time, std::min(end, record.time + durations[i])});
        }
    }
    addPowerBars(chart, records);
    rankApplications(chart, records, durations);
    return chart;
}

}  // namespace voltaro
