#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <utility>

#include "core/runtime/Clock.h"
#include "core/runtime/MainExecutor.h"

namespace voltaro::testing {

// A clock and main executor that move only when a test says so: nothing sleeps.
class ManualScheduler final : public Clock, public MainExecutor {
  public:
    explicit ManualScheduler(WallTime start = WallTime{} + std::chrono::hours(24 * 365 * 56))
        : wall_(start) {}

    WallTime wallNow() const override { return wall_; }
    MonotonicTime monotonicNow() const override { return monotonic_; }

    void post(Task task) override { posted_.push_back(std::move(task)); }
    TimerId runAfter(std::chrono::milliseconds delay, Task task) override {
        timers_.emplace(monotonic_ + delay, std::make_pair(++lastTimer_, std::move(task)));
        return lastTimer_;
    }
    void cancel(TimerId timer) override {
        std::erase_if(timers_, [timer](const auto& entry) { return entry.second.first == timer; });
    }

    // Runs the posted tasks, including those they post.
    void runPosted() {
        while (!posted_.empty()) {
            Task task = std::move(posted_.front());
            posted_.pop_front();
            task();
        }
    }
    // Moves both clocks forward, firing every timer that falls due on the way, in order.
    void advance(std::chrono::milliseconds duration) {
        const MonotonicTime end = monotonic_ + duration;
        runPosted();
        while (!timers_.empty() && timers_.begin()->first <= end) {
            const auto due = timers_.begin()->first;
            wall_ += due - monotonic_;
            monotonic_ = due;
            Task task = std::move(timers_.begin()->second.second);
            timers_.erase(timers_.begin());
            task();
            runPosted();
        }
        wall_ += end - monotonic_;
        monotonic_ = end;
    }
    // Moves only the wall clock, as when the user sets the time.
    void setWallClock(WallTime time) { wall_ = time; }
    // Lets the monotonic clock pass without firing timers, as a slow refresh would.
    void spend(std::chrono::milliseconds duration) {
        wall_ += duration;
        monotonic_ += duration;
    }

    std::size_t pendingTimers() const { return timers_.size(); }

  private:
    WallTime wall_;
    MonotonicTime monotonic_{};
    std::deque<Task> posted_;
    std::multimap<MonotonicTime, std::pair<TimerId, Task>> timers_;
    TimerId lastTimer_ = 0;
};

}  // namespace voltaro::testing
