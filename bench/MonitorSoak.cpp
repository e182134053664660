// A day of refreshes in simulated time: processes come and go with reused IDs, applications
// appear and vanish, the battery's readings flicker, the wall clock is set back twice and the low
// power worker is kept busy. Prints the heap in use and the energy caches over the day, and fails
// when memory keeps growing after the first hour or a cache holds more than the live processes.
#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <thread>

#include "core/monitor/BatteryMonitor.h"
#include "core/telemetry/UnavailableSMCController.h"
#include "support/CrossThreadExecutor.h"
#include "support/FakeBatteryRegistry.h"
#include "support/ManualScheduler.h"

namespace voltaro {
namespace {

using namespace std::chrono_literals;

constexpr ProcessID lowestPID = 1000;
constexpr ProcessID pidSpace = 2000;  // small, so IDs are reused all day
constexpr int liveProcesses = 300;
constexpr int churnPerRefresh = 5;
constexpr int incarnationsPerApplication = 2000;
// The applications installed: which of them run changes all day, but the catalog remembers each
// one it has described, as it should.
constexpr std::size_t installedApplications = 40;

// Processes in memory, each belonging to one of a rolling set of applications.
class SoakProcesses final : public ProcessSource, public ApplicationCatalog {
  public:
    std::size_t incarnations = 0;

    void spawn(std::mt19937& random) {
        ProcessID pid = 0;
        do {
            pid = lowestPID + static_cast<ProcessID>(random() % pidSpace);
        } while (processes_.count(pid) != 0);
        const std::string application =
            "app-" + std::to_string((incarnations / incarnationsPerApplication + random() % 8) %
                                    installedApplications);
        processes_[pid] = {ProcessUsage{++startTime_, 0, 0, 0, 0}, application};
        ++incarnations;
    }
    void exitOne(std::mt19937& random) {
        auto victim = processes_.begin();
        std::advance(victim, static_cast<long>(random() % processes_.size()));
        processes_.erase(victim);
    }
    void run(std::mt19937& random) {
        for (auto& [pid, process] : processes_) {
            if (random() % 4 == 0) {
                process.usage.energyNanojoules += random() % 200'000'000;
                ++process.usage.wakeups;
            }
        }
    }
    std::size_t live() const { return processes_.size(); }

    std::vector<ProcessID> userProcessIDs() override {
        std::vector<ProcessID> pids;
        pids.reserve(processes_.size());
        for (const auto& entry : processes_) {
            pids.push_back(entry.first);
        }
        return pids;
    }
    std::optional<ProcessUsage> usage(ProcessID pid) override {
        const auto found = processes_.find(pid);
        return found == processes_.end() ? std::nullopt : std::optional(found->second.usage);
    }
    std::optional<RawProcessMetadata> metadata(ProcessID pid) override {
        const auto found = processes_.find(pid);
        if (found == processes_.end()) {
            return std::nullopt;
        }
        return RawProcessMetadata{1, "/usr/bin/" + found->second.application,
                                  found->second.application};
    }

    std::optional<std::string> containingApplication(ProcessID pid,
                                                     const std::optional<std::string>&) override {
        const auto found = processes_.find(pid);
        return found == processes_.end() ? std::nullopt : std::optional(found->second.application);
    }
    ApplicationInfo describeApplication(const std::string& application) override {
        return {application, application, std::nullopt};
    }
    std::optional<ApplicationIcon> runningApplicationIcon(ProcessID) override {
        return std::nullopt;
    }
    bool endsParentWalk(ProcessID, const std::optional<std::string>&, const std::string&) override {
        return true;
    }

  private:
    struct Process {
        ProcessUsage usage;
        std::string application;
    };
    std::map<ProcessID, Process> processes_;
    std::uint64_t startTime_ = 0;
};

// A switch that takes a while, as a password prompt would.
class SlowLowPowerMode final : public LowPowerModeBackend {
  public:
    std::optional<bool> currentValue() override { return std::nullopt; }
    std::optional<LowPowerModeError> setEnabled(bool) override {
        std::this_thread::sleep_for(1ms);
        return std::nullopt;
    }
};

std::size_t heapBytes() {
    return mallinfo2().uordblks;
}

PropertyDictionary batteryReading(int refresh) {
    switch (refresh % 7) {
        case 3:
            return PropertyDictionary{{"CurrentCapacity", "garbled"}};
        case 5:
            return PropertyDictionary{};
        default:
            return PropertyDictionary{{"CurrentCapacity", 40 + refresh % 50},
                                      {"MaxCapacity", 100},
                                      {"Amperage", -1000 - refresh % 500},
                                      {"Voltage", 11500}};
    }
}

int soak() {
    testing::ManualScheduler scheduler;
    testing::CrossThreadExecutor executor(scheduler);
    testing::FakeBatteryRegistry registry;
    UnavailableSMCController smc;
    SoakProcesses processes;
    SlowLowPowerMode lowPowerMode;
    BatteryMonitor monitor{
        {registry, smc, processes, processes, lowPowerMode, executor, scheduler}};
    std::mt19937 random(20261123);
    for (int i = 0; i < liveProcesses; ++i) {
        processes.spawn(random);
    }

    constexpr int refreshesPerHour = 1800;
    constexpr int hours = 24;
    std::size_t heapAfterFirstHour = 0;
    std::size_t largestHeapLater = 0;
    bool cachesBounded = true;
    std::printf("%6s %12s %10s %10s %10s %10s\n", "hour", "heap bytes", "processes", "histories",
                "identities", "apps");
    const auto report = [&](int hour) {
        const auto caches = monitor.energyCacheSizes();
        std::printf("%6d %12zu %10zu %10zu %10zu %10zu\n", hour, heapBytes(), processes.live(),
                    caches.sampleHistory, caches.identityCache, caches.applicationCache);
    };
    report(0);
    auto loop = monitor.run();
    for (int refresh = 1; refresh <= hours * refreshesPerHour; ++refresh) {
        for (int i = 0; i < churnPerRefresh; ++i) {
            processes.exitOne(random);
            processes.spawn(random);
        }
        processes.run(random);
        registry.dictionary = batteryReading(refresh);
        if (refresh % 15 == 0) {
            monitor.setLowPowerMode(refresh % 30 == 0);
        }
        if (refresh == 6 * refreshesPerHour || refresh == 18 * refreshesPerHour) {
            scheduler.setWallClock(scheduler.wallNow() - 1h);
        }
        scheduler.advance(2s);
        executor.runPosted();

        const auto caches = monitor.energyCacheSizes();
        // Every process with a history or an identity is one that the last pass saw alive.
        if (caches.sampleHistory > processes.live() || caches.identityCache > processes.live() ||
            caches.metadataCache > processes.live() ||
            caches.applicationCache > installedApplications) {
            cachesBounded = false;
        }
        if (refresh % refreshesPerHour == 0) {
            const int hour = refresh / refreshesPerHour;
            report(hour);
            if (hour == 1) {
                heapAfterFirstHour = heapBytes();
            } else {
                largestHeapLater = std::max(largestHeapLater, heapBytes());
            }
        }
    }
    loop.cancel();
    // Let a change still on the worker come back before the monitor goes.
    while (monitor.isChangingLowPowerMode().get()) {
        std::this_thread::sleep_for(1ms);
        executor.runPosted();
    }

    std::printf("incarnations: %zu\n", processes.incarnations);
    // Allocator noise may move the heap a little; a leak of one record per incarnation would add
    // megabytes.
    const std::size_t allowedGrowth = 256 * 1024;
    const bool memoryFlat = largestHeapLater <= heapAfterFirstHour + allowedGrowth;
    std::printf("memory after the first hour: %s; caches hold only live processes: %s\n",
                memoryFlat ? "flat" : "GROWING", cachesBounded ? "yes" : "NO");
    return memoryFlat && cachesBounded && processes.incarnations >= 200'000 ? 0 : 1;
}

}  // namespace
}  // namespace voltaro

int main() {
    return voltaro::soak();
}
