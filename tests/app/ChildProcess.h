#pragma once

#include <string>
#include <vector>

namespace voltaro::testing {

// A program started by a test, with a pipe from one of its outputs; stopped and reaped when the
// object goes, so no test leaves a process behind.
class ChildProcess {
  public:
    // Runs the program with the extra environment entries ("NAME=value"); the chosen descriptor
    // of the child (2 for stderr, or any other) writes into the pipe read by readLine.
    ChildProcess(const std::vector<std::string>& arguments,
                 const std::vector<std::string>& environment, int pipedDescriptor);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    // The next line from the pipe, waiting at most the given time; false at the end or on time.
    bool readLine(std::string& line, int timeoutMilliseconds);
    // Whether the child still runs.
    bool running();

  private:
    int pid_ = -1;
    int pipe_ = -1;
    std::string buffered_;
};

// Runs a command line through the shell and returns what it printed.
std::string outputOf(const std::string& command);

}  // namespace voltaro::testing
