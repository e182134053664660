#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <map>
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
    };

    explicit ChildProcess(Options options);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    // The next line from the pipe; nothing at its end or when none comes in time.
    std::optional<std::string> readLine(std::chrono::milliseconds timeout);
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
