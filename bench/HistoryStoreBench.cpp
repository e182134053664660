// The history store on this machine's disk: a day of minutes written one transaction each, as the
// application writes them; 7 days read back and turned into the chart; and the size of the file
// after 30 days of minutes, each with five applications.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/history/HistoryChartModel.h"
#include "platform/storage/SqliteHistoryStore.h"

namespace {

using namespace std::chrono_literals;
using voltaro::HistoryRecord;
using voltaro::WallTime;
using voltaro::platform::SqliteHistoryStore;

const WallTime start{std::chrono::seconds(1'800'000'000)};

// A fresh folder under the temporary directory, removed with its files.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "voltaro-history-bench-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(path_); }
    std::filesystem::path file() const { return path_ / "history.sqlite"; }

  private:
    std::filesystem::path path_;
};

// Minute `index` of a made-up working life: charge drifting, five of forty applications.
HistoryRecord minute(int index) {
    HistoryRecord record;
    record.time = start + index * 1min;
    record.chargePercent = 20 + (index / 7) % 80;
    record.systemWatts = 4.0 + (index % 97) * 0.173;
    record.batteryWatts = -(*record.systemWatts);
    record.isConnectedToPower = record.isCharging = (index / 180) % 3 == 0;
    for (int rank = 0; rank < 5; ++rank) {
        const int application = (index / 30 + rank * 7) % 40;
        record.applications.push_back({"org.example.Application" + std::to_string(application),
                                       "Application " + std::to_string(application),
                                       3.0 / (rank + 1)});
    }
    return record;
}

void fill(SqliteHistoryStore& store, int minutes) {
    for (int index = 0; index < minutes; ++index) {
        store.append(minute(index));
    }
}

void BM_InsertDayOfMinutes(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        ScratchFolder folder;
        auto store = SqliteHistoryStore::openForWriting(folder.file(), start).store;
        state.ResumeTiming();
        fill(*store, 1440);
        state.PauseTiming();
        store.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 1440);
}
BENCHMARK(BM_InsertDayOfMinutes)->Unit(benchmark::kMillisecond);

void BM_ReadSevenDaysForChart(benchmark::State& state) {
    ScratchFolder folder;
    auto store = SqliteHistoryStore::openForWriting(folder.file(), start).store;
    constexpr int week = 7 * 1440;
    fill(*store, week);
    const WallTime end = start + week * 1min;
    for (auto _ : state) {
        const std::vector<HistoryRecord> records = store->recordsSince(end - 7 * 24h);
        benchmark::DoNotOptimize(voltaro::historyChartOf(records, end, 7 * 24h));
    }
}
BENCHMARK(BM_ReadSevenDaysForChart)->Unit(benchmark::kMillisecond);

// Once: the file's size after 30 days; pruning frees pages for the next day, so it stays there.
void BM_ThirtyDaysFileSize(benchmark::State& state) {
    for (auto _ : state) {
        ScratchFolder folder;
        {
            auto store = SqliteHistoryStore::openForWriting(folder.file(), start).store;
            fill(*store, 30 * 1440);
        }
        state.counters["megabytes"] =
            static_cast<double>(std::filesystem::file_size(folder.file())) / (1024 * 1024);
    }
}
BENCHMARK(BM_ThirtyDaysFileSize)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace
