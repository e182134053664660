#include "ui/application/QtMainExecutor.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTest>
#include <thread>
#include <vector>

namespace voltaro::ui {
namespace {

// As the low power worker hands back its outcome: while the main loop runs, in order, with
// what the worker wrote visible to the main thread (the thread checker watches this one).
TEST(QtMainExecutorTest, RunsTasksPostedFromAnotherThreadOnTheMainThreadInOrder) {
    QtMainExecutor executor;
    const auto mainThread = std::this_thread::get_id();
    std::vector<int> received;
    bool allOnMainThread = true;
    bool done = false;
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i) {
            const int outcome = i;
            executor.post([&, outcome] {
                allOnMainThread = allOnMainThread && std::this_thread::get_id() == mainThread;
                received.push_back(outcome);
            });
        }
        executor.post([&] { done = true; });
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return done; }));
    worker.join();
    ASSERT_EQ(received.size(), 100u);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(received[static_cast<std::size_t>(i)], i);
    }
    EXPECT_TRUE(allOnMainThread);
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
    EXPECT_TRUE(QTest::qWaitFor([&] { return fired.size() == 3; }));
    EXPECT_EQ(fired, (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace voltaro::ui
