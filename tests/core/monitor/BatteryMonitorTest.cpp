#include "core/monitor/BatteryMonitor.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "core/runtime/RunLoop.h"
#include "support/CrossThreadExecutor.h"
#include "support/FakeMonitorServices.h"
#include "support/ManualScheduler.h"

namespace voltaro {
namespace {

using namespace std::chrono_literals;

using testing::FakeMonitorServices;

class BatteryMonitorTest : public ::testing::Test, protected FakeMonitorServices {
  protected:
    BatteryMonitorTest() { registry.dictionary = PropertyDictionary{{"CurrentCapacity", 57}}; }

    testing::ManualScheduler scheduler;
    testing::CrossThreadExecutor executor{scheduler};
    BatteryMonitor monitor{on(executor, scheduler)};
};

TEST_F(BatteryMonitorTest, RefreshesAtOnceThenTwoSecondsAfterEachRefreshEnded) {
    std::vector<double> readSeconds;
    registry.onRead = [&] {
        const auto sinceStart = scheduler.monotonicNow() - MonotonicTime{};
        readSeconds.push_back(std::chrono::duration<double>(sinceStart).count());
        scheduler.spend(300ms);  // a slow read shifts the cadence; nothing catches up
    };
    auto task = monitor.run();
    scheduler.advance(7s);
    EXPECT_EQ(readSeconds, (std::vector<double>{0, 2.3, 4.6, 6.9}));
    EXPECT_EQ(monitor.refreshCount().get(), 4);
    monitor.refreshNow();  // from the dashboard: counts like the loop's
    EXPECT_EQ(monitor.refreshCount().get(), 5);
    task.cancel();
}

TEST_F(BatteryMonitorTest, SecondRunReturnsAtOnceAndOneLoopRemainsUntilCancelled) {
    int runningChanges = 0;
    monitor.isRunning().subscribe([&](bool) { ++runningChanges; });

    auto first = monitor.run();
    auto second = monitor.run();
    EXPECT_EQ(runningChanges, 1);
    EXPECT_EQ(monitor.refreshCount().get(), 1);

    scheduler.advance(4s);
    EXPECT_EQ(monitor.refreshCount().get(), 3);  // 0, 2 and 4 s: not twice as often

    second.cancel();  // inert
    EXPECT_TRUE(monitor.isRunning().get());
    first.cancel();  // while it sleeps
    EXPECT_FALSE(monitor.isRunning().get());
    EXPECT_EQ(scheduler.pendingTimers(), 0u);
    scheduler.advance(10s);
    EXPECT_EQ(monitor.refreshCount().get(), 3);

    auto again = monitor.run();
    EXPECT_EQ(monitor.refreshCount().get(), 4);  // at once, count not reset
    EXPECT_TRUE(monitor.isRunning().get());
    again.cancel();
}

TEST_F(BatteryMonitorTest, ReaderMayCancelTheLoopWhileBeingToldOfARefresh) {
    BatteryMonitor::LoopTask task;
    monitor.refreshCount().subscribe([&](std::int64_t count) {
        if (count == 2) {
            task.cancel();
        }
    });
    task = monitor.run();
    scheduler.advance(10s);
    EXPECT_EQ(monitor.refreshCount().get(), 2);
    EXPECT_FALSE(monitor.isRunning().get());
    EXPECT_EQ(scheduler.pendingTimers(), 0u);
}

TEST_F(BatteryMonitorTest, SnapshotNotifiesOnlyOnChange) {
    std::vector<BatterySnapshot> told;
    monitor.snapshot().subscribe([&](const BatterySnapshot& s) { told.push_back(s); });

    registry.dictionary.reset();  // unreadable: the shared empty snapshot, equal to the start
    monitor.refreshNow();
    monitor.refreshNow();
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(monitor.refreshCount().get(), 2);

    registry.dictionary = PropertyDictionary{{"CurrentCapacity", 57}};
    monitor.refreshNow();
    monitor.refreshNow();  // same numbers, but the clock has not moved: equal, so silent
    scheduler.spend(1s);
    monitor.refreshNow();  // same numbers, later time: a new snapshot
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0].level, 57);
    EXPECT_NE(told[0], told[1]);
    EXPECT_NE(told[0], BatterySnapshot::empty());
}

TEST_F(BatteryMonitorTest, PublishesTheEnergyReportOfEachRefresh) {
    registry.dictionary =
        PropertyDictionary{{"PowerTelemetryData", PropertyDictionary{{"SystemLoad", 20000}}}};
    processes.add(100, 1, "/usr/bin/compiler", "compiler");
    int told = 0;
    monitor.topApplications().subscribe([&](const auto&) { ++told; });

    monitor.refreshNow();
    EXPECT_TRUE(monitor.topApplications().get().empty());
    EXPECT_EQ(monitor.appEnergyWindowDuration().get(), 0);

    scheduler.spend(2s);
    processes.addEnergy(100, 20);  // 10 W over 2 s
    monitor.refreshNow();
    ASSERT_EQ(monitor.topApplications().get().size(), 1u);
    EXPECT_EQ(monitor.topApplications().get()[0].name, "compiler");
    EXPECT_EQ(monitor.appEnergyWindowDuration().get(), 2);

    scheduler.spend(2s);
    monitor.refreshNow();  // nothing used: an empty list, told all the same
    EXPECT_EQ(told, 3);
}

TEST_F(BatteryMonitorTest, WindowCaptionCountsWholeSecondsUntilEighteen) {
    const std::pair<double, const char*> cases[] = {
        {0, "collected 0 sec / 20 sec"},   {0.9, "collected 0 sec / 20 sec"},
        {6.5, "collected 6 sec / 20 sec"}, {17.99, "collected 17 sec / 20 sec"},
        {18, "average over 20 sec"},       {19.5, "average over 20 sec"},
        {20, "average over 20 sec"},       {-3, "collected 0 sec / 20 sec"}};
    for (const auto& [seconds, caption] : cases) {
        processes.add(1, 0, "/bin/x", "x");
        testing::ManualScheduler clock;
        // The duration comes from the energy pass: place the first pass `seconds` before now.
        BatteryMonitor probe{on(executor, clock)};
        probe.refreshNow();
        clock.setWallClock(clock.wallNow() + std::chrono::duration_cast<std::chrono::milliseconds>(
                                                 std::chrono::duration<double>(seconds)));
        probe.refreshNow();
        EXPECT_EQ(probe.appEnergyWindowLabel(), caption) << seconds;
    }
}

TEST_F(BatteryMonitorTest, QueriesLowPowerModeOnTheFirstAndEveryFifthRefresh) {
    lowPowerMode.setCurrent(true);
    std::vector<int> queriedOn;
    for (int refresh = 1; refresh <= 15; ++refresh) {
        const int before = lowPowerMode.queries();
        monitor.refreshNow();
        if (lowPowerMode.queries() > before) {
            queriedOn.push_back(refresh);
        }
        lowPowerMode.setCurrent(std::nullopt);  // unknown later: the published value stays
    }
    EXPECT_EQ(queriedOn, (std::vector<int>{1, 5, 10, 15}));
    EXPECT_TRUE(monitor.isLowPowerModeEnabled().get());
}

TEST_F(BatteryMonitorTest, OneLowPowerModeChangeAtATime) {
    monitor.setLowPowerMode(true);
    EXPECT_TRUE(monitor.isChangingLowPowerMode().get());
    monitor.setLowPowerMode(false);  // ignored while the first is pending
    executor.waitForPosts(1);
    executor.runPosted();
    EXPECT_EQ(lowPowerMode.requests(), std::vector<bool>{true});
    EXPECT_FALSE(monitor.isChangingLowPowerMode().get());
    // The follow-up query knew nothing: the requested value is taken.
    EXPECT_TRUE(monitor.isLowPowerModeEnabled().get());
    EXPECT_TRUE(monitor.isLowPowerModeKnown().get());
    EXPECT_FALSE(monitor.lowPowerModeError().get());
}

TEST_F(BatteryMonitorTest, FailedChangesShowTheirTextUntilTheNextRequest) {
    const std::pair<LowPowerModeError, const char*> cases[] = {
        {LowPowerModeError::launchFailed(), "Could not open system confirmation"},
        {LowPowerModeError::cancelled(), "Change cancelled"},
        {LowPowerModeError::failed("Profile is held by another program"),
         "Profile is held by another program"},
        {LowPowerModeError::failed(""), "Could not change mode"}};
    std::size_t posts = 0;
    for (const auto& [error, text] : cases) {
        lowPowerMode.setOutcome(error);
        monitor.setLowPowerMode(true);
        EXPECT_FALSE(monitor.lowPowerModeError().get());  // cleared at once
        executor.waitForPosts(++posts);
        executor.runPosted();
        EXPECT_EQ(monitor.lowPowerModeError().get(), text);
        EXPECT_FALSE(monitor.isLowPowerModeEnabled().get());
        EXPECT_FALSE(monitor.isChangingLowPowerMode().get());
    }
}

// The command line's own main loop rather than the manual one: the outcome, made on the
// controller's thread, is published on the loop's thread.
TEST(BatteryMonitorRunLoopTest, PublishesTheOutcomeOfAChangeOnTheLoopsThread) {
    testing::ManualScheduler clock;
    FakeMonitorServices fakes;
    RunLoop loop;
    BatteryMonitor monitor{fakes.on(loop, clock)};
    fakes.lowPowerMode.setOutcome(LowPowerModeError::failed("Profile is held by another program"));
    std::thread::id publishedOn;
    monitor.isChangingLowPowerMode().subscribe([&](bool changing) {
        if (!changing) {
            publishedOn = std::this_thread::get_id();
            loop.quit();
        }
    });

    monitor.setLowPowerMode(true);
    loop.run();
    EXPECT_EQ(publishedOn, std::this_thread::get_id());
    EXPECT_EQ(monitor.lowPowerModeError().get(), "Profile is held by another program");

    fakes.lowPowerMode.setOutcome(std::nullopt);
    fakes.lowPowerMode.setCurrent(true);
    monitor.setLowPowerMode(true);
    loop.run();
    EXPECT_TRUE(monitor.isLowPowerModeEnabled().get());
    EXPECT_FALSE(monitor.lowPowerModeError().get());
}

}  // namespace
}  // namespace voltaro
