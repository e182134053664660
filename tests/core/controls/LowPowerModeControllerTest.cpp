#include "core/controls/LowPowerModeController.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "support/CrossThreadExecutor.h"
#include "support/ManualScheduler.h"

namespace voltaro {
namespace {

// Answers each change with the next prepared outcome, once the test opens the gate for it.
class GatedBackend final : public LowPowerModeBackend {
  public:
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<bool> requests;
        std::vector<std::thread::id> threads;
        std::vector<std::optional<LowPowerModeError>> outcomes;
        std::size_t opened = 0;
        int running = 0;
        int mostRunning = 0;
    };

    explicit GatedBackend(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

    std::optional<bool> currentValue() override { return std::nullopt; }

    std::optional<LowPowerModeError> setEnabled(bool enabled) override {
        std::unique_lock lock(shared_->mutex);
        const std::size_t index = shared_->requests.size();
        shared_->requests.push_back(enabled);
        shared_->threads.push_back(std::this_thread::get_id());
        shared_->mostRunning = std::max(shared_->mostRunning, ++shared_->running);
        shared_->changed.notify_all();
        shared_->changed.wait(lock, [&] { return shared_->opened > index; });
        --shared_->running;
        return shared_->outcomes.at(index);
    }

  private:
    std::shared_ptr<Shared> shared_;
};

class LowPowerModeControllerTest : public ::testing::Test {
  protected:
    void open(std::size_t count) {
        {
            std::lock_guard lock(shared_->mutex);
            shared_->opened = count;
        }
        shared_->changed.notify_all();
    }
    void waitForRequests(std::size_t count) {
        std::unique_lock lock(shared_->mutex);
        shared_->changed.wait(lock, [&] { return shared_->requests.size() >= count; });
    }

    testing::ManualScheduler scheduler_;
    testing::CrossThreadExecutor executor_{scheduler_};
    std::shared_ptr<GatedBackend::Shared> shared_ = std::make_shared<GatedBackend::Shared>();
    GatedBackend backend_{shared_};
    LowPowerModeController controller_{backend_};
};

TEST_F(LowPowerModeControllerTest, RunsChangesOffTheMainThreadOneAtATimeAndHandsOutcomesBack) {
    using Outcomes = std::vector<std::optional<LowPowerModeError>>;
    shared_->outcomes = {LowPowerModeError::failed("pmset: no such setting"),
                         LowPowerModeError::cancelled()};
    Outcomes received;
    std::vector<std::thread::id> receivedOn;
    const auto collect = [&](std::optional<LowPowerModeError> outcome) {
        received.push_back(std::move(outcome));
        receivedOn.push_back(std::this_thread::get_id());
    };

    controller_.setEnabled(true, executor_, collect);
    controller_.setEnabled(false, executor_, collect);
    waitForRequests(1);
    EXPECT_NE(shared_->threads[0], std::this_thread::get_id());
    open(2);
    executor_.waitForPosts(2);
    EXPECT_TRUE(received.empty()) << "the outcomes wait for the main thread";

    executor_.runPosted();
    EXPECT_EQ(shared_->requests, (std::vector<bool>{true, false}));
    EXPECT_EQ(shared_->mostRunning, 1);
    EXPECT_EQ(received, shared_->outcomes);
    EXPECT_EQ(receivedOn, std::vector<std::thread::id>(2, std::this_thread::get_id()));
}

}  // namespace
}  // namespace voltaro
