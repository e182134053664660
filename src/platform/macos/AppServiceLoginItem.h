#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/controls/LoginItemService.h"
#include "platform/macos/AppService.h"

namespace voltaro::platform {

// The status a raw service status stands for; numbers the system may add later count as off.
LoginItemStatus loginItemStatus(long serviceStatus);

// The sentence the settings window shows for a failed change: the system's own description, or,
// when it gives none, one that names the error so it can be looked up.
std::string failureMessage(const AppServiceFailure& failure);

// Launch at login through the system's login-item service for the application itself.
class AppServiceLoginItem final : public LoginItemService {
  public:
    explicit AppServiceLoginItem(std::unique_ptr<AppService> service);

    LoginItemStatus status() override;
    std::optional<std::string> registerItem() override;
    std::optional<std::string> unregisterItem() override;

  private:
    std::unique_ptr<AppService> service_;
};

}  // namespace voltaro::platform
