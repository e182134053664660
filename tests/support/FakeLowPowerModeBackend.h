#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include "core/controls/LowPowerModeBackend.h"

namespace voltaro::testing {

// Answers at once with what the test set; safe to call from the controller's worker thread.
class FakeLowPowerModeBackend final : public LowPowerModeBackend {
  public:
    void setCurrent(std::optional<bool> value) {
        std::lock_guard lock(mutex_);
        current_ = value;
    }
    void setOutcome(std::optional<LowPowerModeError> outcome) {
        std::lock_guard lock(mutex_);
        outcome_ = std::move(outcome);
    }
    int queries() const {
        std::lock_guard lock(mutex_);
        return queries_;
    }
    std::vector<bool> requests() const {
        std::lock_guard lock(mutex_);
        return requests_;
    }

    std::optional<bool> currentValue() override {
        std::lock_guard lock(mutex_);
        ++queries_;
        return current_;
    }
    std::optional<LowPowerModeError> setEnabled(bool enabled) override {
        std::lock_guard lock(mutex_);
        requests_.push_back(enabled);
        return outcome_;
    }

  private:
    mutable std::mutex mutex_;
    std::optional<bool> current_;
    std::optional<LowPowerModeError> outcome_;
    int queries_ = 0;
    std::vector<bool> requests_;
};

}  // namespace voltaro::testing
