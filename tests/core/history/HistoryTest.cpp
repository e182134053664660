#include <gtest/gtest.h>

#include "core/history/HistoryArchive.h"
#include "core/history/HistoryChartModel.h"
#include "core/history/HistoryRecording.h"
#include "support/BatterySnapshots.h"
#include "support/CrossThreadExecutor.h"

namespace voltaro {
namespace {

using namespace std::chrono_literals;

const WallTime start{std::chrono::seconds(1'800'000'000)};

HistoryRecord at(std::chrono::seconds offset, bool connected = false, bool charging = false,
                 bool lowPower = false) {
    HistoryRecord record;
    record.time = start + offset;
    record.isConnectedToPower = connected;
    record.isCharging = charging;
    record.isLowPowerModeEnabled = lowPower;
    return record;
}

// Each row: the candidates offered one after another, and which of them are kept.
TEST(HistoryRecordingTest, KeepsOneRecordAMinuteAndEveryChangeOfState) {
    const struct {
        const char* name;
        std::vector<HistoryRecord> offered;
        std::vector<bool> kept;
    } cases[] = {
        {"refreshes every 2 s",
         {at(0s), at(2s), at(58s), at(60s), at(62s), at(120s)},
         {true, false, false, true, false, true}},
        {"plugged in, then charging",
         {at(0s), at(2s, true), at(4s, true), at(6s, true, true)},
         {true, true, false, true}},
        {"unplugged", {at(0s, true, true), at(2s)}, {true, true}},
        {"low power mode", {at(0s), at(2s, false, false, true), at(4s)}, {true, true, true}},
        {"clock set back", {at(100s), at(10s), at(12s)}, {true, true, false}},
    };
    for (const auto& c : cases) {
        std::optional<HistoryRecord> last;
        for (std::size_t i = 0; i < c.offered.size(); ++i) {
            const bool kept = isWorthRecording(last, c.offered[i]);
            EXPECT_EQ(kept, c.kept[i]) << c.name << ", candidate " << i;
            if (kept) {
                last = c.offered[i];
            }
        }
    }
    const std::vector<AppEnergy> ranked(7, AppEnergy{"a", "A", 1.5, std::nullopt});
    const HistoryRecord record =
        historyRecordOf(testing::battery(0, false, true), ranked, true, start + 1500ms);
    EXPECT_EQ(record.time, start + 1s);
    EXPECT_EQ(record.applications.size(), historyApplicationsKept);
    EXPECT_TRUE(record.isCharging && record.isLowPowerModeEnabled);
}

// Two hours: an hour of minutes charging, a 30-minute gap, then 30 minutes on battery.
TEST(HistoryChartModelTest, SplitsAtGapsShadesChargingAndSumsEnergy) {
    std::vector<HistoryRecord> records;
    for (int minute = 0; minute < 120; ++minute) {
        if (minute >= 60 && minute < 90) {
            continue;
        }
        HistoryRecord record = at(minute * 60s, minute < 60, minute < 60);
        record.chargePercent = minute;
        record.systemWatts = minute < 60 ? 6.0 : 12.0;
        record.applications = {{"web", "Web", minute < 60 ? 1.0 : 5.0}, {"mail", "Mail", 2.0}};
        records.push_back(record);
    }
    const HistoryChartModel chart = historyChartOf(records, start + 2h, 2h);
    ASSERT_EQ(chart.chargeLines.size(), 2u);
    EXPECT_EQ(chart.chargeLines[0].size(), 60u);
    ASSERT_EQ(chart.chargingSpans.size(), 1u);
    EXPECT_EQ(chart.chargingSpans[0], (HistorySpan{start, start + 60min}));
    EXPECT_EQ(chart.powerBars.size(), historyBarsPerPeriod * 90 / 120);
    EXPECT_DOUBLE_EQ(chart.highestBarWatts, 12.0);
    ASSERT_EQ(chart.topApplications.size(), 2u);
    // Web: 1 W for an hour and 5 W for half an hour; Mail: 2 W for an hour and a half.
    EXPECT_EQ(chart.topApplications[0].name, "Web");
    EXPECT_NEAR(chart.topApplications[0].wattHours, 3.5, 1e-9);
    EXPECT_NEAR(chart.topApplications[1].wattHours, 3.0, 1e-9);
    EXPECT_EQ(chart.pointNear(start + 61min, 5min)->chargePercent, 59);
    EXPECT_FALSE(chart.pointNear(start + 75min, 5min));
    EXPECT_TRUE(historyChartOf(records, start + 10h, 2h).chargeLines.empty());
}

struct FailingStore final : HistoryStore {
    bool append(const HistoryRecord&) override { return false; }
    std::vector<HistoryRecord> recordsSince(WallTime) override { return {at(0s)}; }
    void pruneBefore(WallTime) override {}
    std::optional<std::string> takeMessage() override { return "disk full"; }
};

// A store that cannot be opened or written leaves an archive that answers with nothing.
TEST(HistoryArchiveTest, AStoreThatFailsIsDroppedAfterOneMessage) {
    testing::ManualScheduler scheduler;
    testing::CrossThreadExecutor executor(scheduler);
    std::vector<std::string> told;
    std::vector<std::size_t> loaded;
    {
        HistoryArchive archive([](std::string&) { return std::make_unique<FailingStore>(); },
                               executor, [&](const std::string& m) { told.push_back(m); });
        archive.load(start, [&](auto records) { loaded.push_back(records.size()); });
        archive.append(at(0s));
        archive.append(at(60s));
        archive.load(start, [&](auto records) { loaded.push_back(records.size()); });
        executor.waitForPosts(2);
    }
    executor.runPosted();
    EXPECT_EQ(told, std::vector<std::string>{"disk full"});
    EXPECT_EQ(loaded, (std::vector<std::size_t>{1, 0}));
}

}  // namespace
}  // namespace voltaro
