#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/controls/LoginItemService.h"

namespace voltaro::testing {

// Reports the status the test set and records every change asked of it.
class FakeLoginItemService final : public LoginItemService {
  public:
    LoginItemStatus currentStatus = LoginItemStatus::notRegistered;
    std::optional<std::string> nextFailure;
    // Status the service reports after a change, failed or not.
    std::optional<LoginItemStatus> statusAfterChange;
    std::function<void()> duringChange;
    std::vector<std::string> calls;

    LoginItemStatus status() override { return currentStatus; }
    std::optional<std::string> registerItem() override { return change("register"); }
    std::optional<std::string> unregisterItem() override { return change("unregister"); }

  private:
    std::optional<std::string> change(const std::string& name) {
        calls.push_back(name);
        if (duringChange) {
            duringChange();
        }
        if (statusAfterChange) {
            currentStatus = *statusAfterChange;
        }
        return std::exchange(nextFailure, std::nullopt);
    }
};

}  // namespace voltaro::testing
