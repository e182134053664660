#pragma once

#include <stdlib.h>

#include <optional>
#include <string>
#include <utility>

namespace voltaro::testing {

// Sets or unsets one environment variable and puts the old value back at the end.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, const std::optional<std::string>& value)
        : name_(std::move(name)) {
        if (const char* old = ::getenv(name_.c_str())) {
            old_ = old;
        }
        apply(value);
    }
    ~ScopedEnvironment() { apply(old_); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    void apply(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> old_;
};

}  // namespace voltaro::testing
