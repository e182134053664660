#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace voltaro::testing {

// The real binary as a child process whose JSON reports are read one at a time, so that a test can
// change the world between two refreshes. Killed and reaped with the object.
class RunningVoltaro {
  public:
    struct Options {
        std::vector<std::string> arguments;
        // Set on top of the test's own environment.
        std::map<std::string, std::string> environment;
        std::string executable = VOLTARO_BINARY;
        // Run under this user and group instead of the test's own (needs root).
        std::optional<std::pair<uid_t, gid_t>> user;
    };

    explicit RunningVoltaro(Options options);
    RunningVoltaro(const RunningVoltaro&) = delete;
    RunningVoltaro& operator=(const RunningVoltaro&) = delete;
    ~RunningVoltaro();

    bool hasStarted() const { return pid_ > 0; }
    pid_t pid() const { return pid_; }

    // The next report; nothing when none arrives in time (a hung binary), the binary has ended,
    // or the line is not JSON.
    std::optional<nlohmann::json> nextReport(
        std::chrono::milliseconds timeout = std::chrono::seconds(20));

  private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string pending_;
};

}  // namespace voltaro::testing
