#pragma once

#include <optional>
#include <string>

namespace voltaro::platform {

// A failed call of the system's login-item service, as its error object describes it.
struct AppServiceFailure {
    std::string domain;
    long code = 0;
    std::optional<std::string> localizedDescription;
};

// The system's login-item service for this application, answering with its own raw values.
class AppService {
  public:
    virtual ~AppService() = default;
    // The service's status number: 0 not registered, 1 enabled, 2 requires approval, 3 not found.
    virtual long status() = 0;
    // Nothing on success.
    virtual std::optional<AppServiceFailure> registerApplication() = 0;
    virtual std::optional<AppServiceFailure> unregisterApplication() = 0;
};

}  // namespace voltaro::platform
