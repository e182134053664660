#include "ui/QtMainExecutor.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <atomic>
#include <thread>
#include <vector>

#include "ui/EventLoop.h"

namespace voltaro::ui {
namespace {

TEST(QtMainExecutorTest, RunsTasksPostedFromAnotherThreadOnTheMainThread) {
    QtMainExecutor executor;
    std::atomic<bool> ranOnMainThread = false;
    const auto mainThread = std::this_thread::get_id();
    std::thread worker([&] {
        executor.post([&] { ranOnMainThread = std::this_thread::get_id() == mainThread; });
    });
    worker.join();
    EXPECT_TRUE(processEventsUntil([&] { return ranOnMainThread.load(); }));
}

TEST(QtMainExecutorTest, FiresTimersInOrderAndDropsCancelledOnes) {
    QtMainExecutor executor;
    std::vector<int> fired;
    executor.runAfter(std::chrono::milliseconds(30), [&] { fired.push_back(2); });
    const auto cancelled =
        executor.runAfter(std::chrono::milliseconds(10), [&] { fired.push_back(0); });
    executor.runAfter(std::chrono::milliseconds(0), [&] {
        fired.push_back(1);
        // A task may schedule the next one, as the refresh loop does.
        executor.runAfter(std::chrono::milliseconds(40), [&] { fired.push_back(3); });
    });
    executor.cancel(cancelled);
    executor.cancel(12345);
    EXPECT_TRUE(processEventsUntil([&] { return fired.size() == 3; }));
    EXPECT_EQ(fired, (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace voltaro::ui
