#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace voltaro::testing {

// A program started by a test, with a pipe from one of its outputs; ended and reaped with the
// object, and killed with the test if that crashes, so no test leaves a process behind.
class ChildProcess {
  public:
    struct Options {
        std::vector<std::string> arguments;  // the program first
        // Set on top of the test's own environment.
        std::map<std::string, std::string> environment = {};
        int pipedDescriptor = STDOUT_FILENO;
        // Run under this user and group instead of the test's own (needs root).
        std::optional<std::pair<uid_t, gid_t>> user = {};
    };

    explicit ChildProcess(Options options);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    // The next line from the pipe; nothing at its end or when none comes in time.
    std::optional<std::string> readLine(std::chrono::milliseconds timeout);
    // The next line as JSON; nothing also when it is not JSON.
    std::optional<nlohmann::json> nextReport(
        std::chrono::milliseconds timeout = std::chrono::seconds(20));
    // Whether the child still runs.
    bool running();

  private:
    pid_t pid_ = -1;
    int pipe_ = -1;
    std::string buffered_;
};

// Runs a command line through the shell and returns what it printed.
std::string outputOf(const std::string& command);

}  // namespace voltaro::testing
