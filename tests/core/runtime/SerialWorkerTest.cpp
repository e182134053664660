#include "core/runtime/SerialWorker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <numeric>
#include <thread>
#include <vector>

namespace voltaro {
namespace {

// Tasks share plain, unguarded state: that is only sound if they never overlap and each sees
// what the one before it wrote, which the thread sanitizer build checks.
TEST(SerialWorkerTest, RunsTasksFromManyThreadsOneAfterAnotherOnOneThread) {
    constexpr int threads = 4;
    constexpr int tasksPerThread = 100;
    std::vector<std::vector<int>> seen(threads);
    std::vector<std::thread::id> ranOn;
    int running = 0;
    int mostRunning = 0;
    std::promise<void> drained;
    {
        SerialWorker worker;
        std::vector<std::thread> producers;
        for (int producer = 0; producer < threads; ++producer) {
            producers.emplace_back([&, producer] {
                for (int task = 0; task < tasksPerThread; ++task) {
                    worker.enqueue([&, producer, task] {
                        mostRunning = std::max(mostRunning, ++running);
                        seen[producer].push_back(task);
                        ranOn.push_back(std::this_thread::get_id());
                        --running;
                    });
                }
            });
        }
        for (auto& producer : producers) {
            producer.join();
        }
        worker.enqueue([&] { drained.set_value(); });
        drained.get_future().wait();
    }

    EXPECT_EQ(mostRunning, 1);
    ASSERT_EQ(ranOn.size(), std::size_t{threads * tasksPerThread});
    EXPECT_NE(ranOn.front(), std::this_thread::get_id());
    EXPECT_EQ(std::count(ranOn.begin(), ranOn.end(), ranOn.front()), threads * tasksPerThread);
    std::vector<int> inOrder(tasksPerThread);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    for (const auto& tasks : seen) {
        EXPECT_EQ(tasks, inOrder) << "each thread's tasks run in the order it gave them";
    }
}

}  // namespace
}  // namespace voltaro
