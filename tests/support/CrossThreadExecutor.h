#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>

#include "support/ManualScheduler.h"

namespace voltaro::testing {

// Lets the worker thread post into the manual scheduler, and the test wait for those posts
// without sleeping.
class CrossThreadExecutor final : public MainExecutor {
  public:
    explicit CrossThreadExecutor(ManualScheduler& scheduler) : scheduler_(scheduler) {}

    void post(Task task) override {
        {
            std::lock_guard lock(mutex_);
            scheduler_.post(std::move(task));
            ++posts_;
        }
        posted_.notify_all();
    }
    TimerId runAfter(std::chrono::milliseconds delay, Task task) override {
        return scheduler_.runAfter(delay, std::move(task));
    }
    void cancel(TimerId timer) override { scheduler_.cancel(timer); }

    void waitForPosts(std::size_t count) {
        std::unique_lock lock(mutex_);
        posted_.wait(lock, [&] { return posts_ >= count; });
    }
    void runPosted() {
        std::lock_guard lock(mutex_);
        scheduler_.runPosted();
    }

  private:
    ManualScheduler& scheduler_;
    std::mutex mutex_;
    std::condition_variable posted_;
    std::size_t posts_ = 0;
};

}  // namespace voltaro::testing
