#include "core/energy/ProcessEnergyMonitor.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <deque>
#include <limits>
#include <string>
#include <vector>

#include "support/EnergyMonitorHarness.h"

namespace voltaro {
namespace {

using namespace std::chrono_literals;
using Report = ProcessEnergyMonitor::Report;

std::vector<std::string> namesOf(const Report& report) {
    std::vector<std::string> names;
    for (const AppEnergy& application : report.applications) {
        names.push_back(application.name);
    }
    return names;
}

class ProcessEnergyMonitorTest : public ::testing::Test, protected testing::EnergyMonitorHarness {
  protected:
    // A process outside every application, standing for itself.
    void addTool(ProcessID pid, const std::string& name, std::uint64_t startTime = 1) {
        source.add(pid, 1, "/usr/bin/" + name, name, startTime);
    }
};

TEST_F(ProcessEnergyMonitorTest, FirstPassIsEmptyThenTheWindowFills) {
    addTool(100, "worker");
    const Report first = monitor.sample(std::nullopt);
    EXPECT_TRUE(first.applications.empty());
    EXPECT_EQ(first.collectedDuration, 0);

    // 0.2 s is too short for an estimate.
    EXPECT_TRUE(passAfter(200ms, {{100, 1.0}}).applications.empty());

    const Report second = passAfter(1800ms, {{100, 1.0}});
    ASSERT_EQ(second.applications.size(), 1u);
    EXPECT_EQ(second.applications[0],
              (AppEnergy{"process:/usr/bin/worker", "worker", 1.0, std::nullopt}));
    EXPECT_DOUBLE_EQ(second.collectedDuration, 2);

    passAfter(16s, {{100, 1.0}});
    EXPECT_DOUBLE_EQ(passAfter(2s, {{100, 1.0}}).collectedDuration, 20);
    EXPECT_DOUBLE_EQ(passAfter(30s, {{100, 1.0}}).collectedDuration, 20);
}

TEST_F(ProcessEnergyMonitorTest, EstimatesFromTheNewestSampleBeforeTheWindow) {
    addTool(100, "worker");
    monitor.sample(std::nullopt);
    Report report;
    for (int second = 2; second <= 24; second += 2) {
        report = passAfter(2s, {{100, second <= 4 ? 1.0 : 3.0}});
    }
    // Pass at 24 s: the cutoff is 4 s, so the estimate covers 4 s to 24 s only.
    ASSERT_EQ(report.applications.size(), 1u);
    EXPECT_NEAR(report.applications[0].watts, 3.0, 1e-9);
    EXPECT_EQ(monitor.cacheSizes().storedSamples, 11u);

    // After a gap the two newest samples stay, however old the first of them is.
    report = passAfter(50s, {{100, 2.0}});
    EXPECT_EQ(monitor.cacheSizes().storedSamples, 2u);
    EXPECT_NEAR(report.applications[0].watts, 2.0, 1e-9);
}

TEST_F(ProcessEnergyMonitorTest, CalibratesAgainstTheAverageOfPlausibleSystemPower) {
    // Two processes of 200 W each: 250 W is still a plausible system power, 250.5 W is not.
    for (const auto& [systemWatts, shownWatts] : {std::pair{250.0, 125.0}, {250.5, 200.0}}) {
        testing::EnergyMonitorHarness pass;
        pass.source.add(100, 1, "/usr/bin/render", "render");
        pass.source.add(101, 1, "/usr/bin/encode", "encode");
        pass.monitor.sample(systemWatts);
        const Report report = pass.passAfter(2s, {{100, 200}, {101, 200}}, systemWatts);
        ASSERT_EQ(report.applications.size(), 2u);
        EXPECT_NEAR(report.applications[0].watts, shownWatts, 1e-9) << systemWatts;
    }
}

TEST_F(ProcessEnergyMonitorTest, KeepsTwoOldSystemPowerSamplesWhenNoneArrive) {
    addTool(100, "worker");
    monitor.sample(10.0);
    passAfter(2s, {{100, 20}}, 20.0);
    // 30 s without a reading: the average of 10 W and 20 W still calibrates 20 W down to 15 W.
    const Report report = passAfter(30s, {{100, 20}});
    EXPECT_EQ(monitor.cacheSizes().systemPowerHistory, 2u);
    EXPECT_NEAR(report.applications[0].watts, 15.0, 1e-9);
}

TEST_F(ProcessEnergyMonitorTest, ListsFiveButCalibratesWithAll) {
    std::map<ProcessID, double> watts;
    for (ProcessID pid = 1; pid <= 6; ++pid) {
        addTool(100 + pid, "tool" + std::to_string(pid));
        watts[100 + pid] = pid;
    }
    monitor.sample(10.0);
    const Report report = passAfter(2s, watts, 10.0);
    EXPECT_EQ(namesOf(report),
              (std::vector<std::string>{"tool6", "tool5", "tool4", "tool3", "tool2"}));
    // 21 W estimated against 10 W measured.
    EXPECT_NEAR(report.applications[0].watts, 6 * 10.0 / 21, 1e-9);
    EXPECT_NEAR(report.applications[4].watts, 2 * 10.0 / 21, 1e-9);
}

TEST_F(ProcessEnergyMonitorTest, BreaksTiesByNameInCodePointOrder) {
    source.add(10, 1, "/opt/b1", "beta");
    source.add(11, 1, "/opt/b2", "Beta");
    source.add(12, 1, "/opt/a", "Alpha");
    source.add(13, 1, "/opt/z", "Zeta");
    monitor.sample(std::nullopt);
    const Report report = passAfter(2s, {{10, 1}, {11, 1}, {12, 1}, {13, 2}});
    EXPECT_EQ(namesOf(report), (std::vector<std::string>{"Zeta", "Alpha", "Beta", "beta"}));
}

TEST_F(ProcessEnergyMonitorTest, MergesTheProcessesOfOneApplication) {
    catalog.applications["/Applications/Foo.app"] = {
        "com.example.foo", "Foo", ApplicationIcon{ApplicationIcon::Kind::bundlePath, "foo"}};
    source.add(100, 1, "/Applications/Foo.app/Contents/MacOS/Foo", "Foo");
    source.add(101, 100, "/Applications/Foo.app/Contents/MacOS/Foo Helper", "Foo Helper");
    // Another copy of the same application merges by its identifier.
    catalog.applications["/Users/me/Foo.app"] = {"com.example.foo", "Foo Copy", std::nullopt};
    source.add(102, 1, "/Users/me/Foo.app/Contents/MacOS/Foo", "Foo");
    monitor.sample(std::nullopt);
    const Report report = passAfter(2s, {{100, 1.0}, {101, 0.5}, {102, 0.25}});
    ASSERT_EQ(report.applications.size(), 1u);
    EXPECT_EQ(report.applications[0].id, "com.example.foo");
    EXPECT_NEAR(report.applications[0].watts, 1.75, 1e-9);
    EXPECT_TRUE(report.applications[0].name == "Foo" || report.applications[0].name == "Foo Copy");
}

TEST_F(ProcessEnergyMonitorTest, NamesProcessesFromWhatCouldBeRead) {
    source.add(4711, 1, std::nullopt, std::nullopt);
    source.add(4713, 1, std::nullopt, "kworker");
    source.add(4714, 1, "", "");  // empty answers count as failed reads
    catalog.runningIcons[4713] = ApplicationIcon{ApplicationIcon::Kind::themeName, "utilities"};
    monitor.sample(std::nullopt);
    const Report report = passAfter(2s, {{4711, 3}, {4713, 2}, {4714, 1}});
    ASSERT_EQ(report.applications.size(), 3u);
    EXPECT_EQ(report.applications[0], (AppEnergy{"process:PID 4711", "PID 4711", 3, std::nullopt}));
    EXPECT_EQ(report.applications[1],
              (AppEnergy{"process:kworker", "kworker", 2, catalog.runningIcons[4713]}));
    EXPECT_EQ(report.applications[2].name, "PID 4714");
}

TEST_F(ProcessEnergyMonitorTest, ReadsMetadataOncePerIncarnation) {
    addTool(100, "worker");
    addTool(101, "gone");
    source.process(101).isUsageReadable = false;
    addTool(102, "secret");
    source.process(102).metadata.reset();
    source.extraListedIDs = {0, -7, 100};

    monitor.sample(std::nullopt);
    passAfter(2s, {{100, 1.0}});  // ranked, so that its identity is cached
    passAfter(2s, {{100, 1.0}});
    EXPECT_EQ(source.usageCalls[100], 3);
    EXPECT_EQ(source.metadataCalls[100], 1);
    EXPECT_EQ(source.metadataCalls[101], 0);  // its usage could not be read
    EXPECT_EQ(source.metadataCalls[102], 3);  // tried again every pass
    EXPECT_EQ(source.usageCalls[0] + source.usageCalls[-7], 0);
    EXPECT_EQ(monitor.cacheSizes().metadataCache, 1u);

    // The process ID is taken over by a new process.
    addTool(100, "successor", 2);
    const Report report = passAfter(2s, {{100, 1.0}});
    EXPECT_EQ(source.metadataCalls[100], 2);
    EXPECT_TRUE(report.applications.empty());  // its history starts over
    EXPECT_EQ(namesOf(passAfter(2s, {{100, 1.0}})), std::vector<std::string>{"successor"});
}

TEST_F(ProcessEnergyMonitorTest, ProcessMissingFromAPassStartsOver) {
    addTool(100, "worker");
    monitor.sample(std::nullopt);
    source.process(100).isUsageReadable = false;
    passAfter(2s, {{100, 1.0}});
    EXPECT_EQ(monitor.cacheSizes(), ProcessEnergyMonitor::CacheSizes{});
    source.process(100).isUsageReadable = true;
    EXPECT_TRUE(passAfter(2s, {{100, 1.0}}).applications.empty());
    EXPECT_EQ(passAfter(2s, {{100, 1.0}}).applications.size(), 1u);
}

TEST_F(ProcessEnergyMonitorTest, WallClockSetBackStopsEstimatesUntilItCatchesUp) {
    addTool(100, "worker");
    const WallTime start = clock.wallNow();
    monitor.sample(std::nullopt);
    passAfter(2s, {{100, 1.0}});

    clock.setWallClock(start - 60s);
    Report report = passAfter(0ms, {{100, 1.0}});
    EXPECT_TRUE(report.applications.empty());
    EXPECT_DOUBLE_EQ(report.collectedDuration, -60);
    report = passAfter(30s, {{100, 1.0}});
    EXPECT_TRUE(report.applications.empty());
    EXPECT_EQ(monitor.cacheSizes().storedSamples, 4u);  // nothing is trimmed meanwhile

    report = passAfter(40s, {{100, 1.0}});  // 10 s past the start again
    ASSERT_EQ(report.applications.size(), 1u);
    EXPECT_DOUBLE_EQ(report.collectedDuration, 10);
}

TEST_F(ProcessEnergyMonitorTest, HoldsOnlyLiveProcessesAfterManyHaveComeAndGone) {
    catalog.applications["/Applications/Foo.app"] = {"com.example.foo", "Foo", std::nullopt};
    std::deque<ProcessID> live;
    std::uint64_t incarnations = 0;
    const auto spawn = [&] {
        ++incarnations;
        // Process IDs cycle through a small range, so they are reused by later incarnations.
        const ProcessID pid = static_cast<ProcessID>(1000 + incarnations % 400);
        const ProcessID parent = live.empty() ? 1 : live.back();
        const std::string path = incarnations % 3 == 0
                                     ? "/Applications/Foo.app/Contents/MacOS/Foo"
                                     : "/usr/bin/job" + std::to_string(incarnations);
        source.add(pid, parent, path, std::nullopt, incarnations);
        live.push_back(pid);
    };
    for (int i = 0; i < 250; ++i) {
        spawn();
    }
    while (incarnations < 10'000) {
        for (int i = 0; i < 50; ++i) {
            source.remove(live.front());
            live.pop_front();
            spawn();
        }
        std::map<ProcessID, double> watts;
        for (const ProcessID pid : live) {
            watts[pid] = 0.01;
        }
        passAfter(2s, watts, 8.0);
    }
    const ProcessEnergyMonitor::CacheSizes sizes = monitor.cacheSizes();
    EXPECT_EQ(sizes.sampleHistory, live.size());
    EXPECT_EQ(sizes.metadataCache, live.size());
    EXPECT_EQ(sizes.identityCache, live.size() - 50);  // the newest have no estimate yet
    EXPECT_LE(sizes.storedSamples, live.size() * 11);
    EXPECT_LE(sizes.systemPowerHistory, 11u);
    EXPECT_EQ(sizes.applicationCache, 1u);
}

}  // namespace
}  // namespace voltaro
