#include "ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

extern char** environ;

namespace voltaro::testing {

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const std::vector<std::string>& environment, int pipedDescriptor) {
    // Close-on-exec, so the child keeps only the copy made for it below.
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return;
    }
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        variables.emplace_back(*entry);
    }
    variables.insert(variables.end(), environment.begin(), environment.end());
    std::vector<char*> argv;
    for (const auto& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    std::vector<char*> envp;
    // Later entries win, as the extra ones must.
    for (auto it = variables.rbegin(); it != variables.rend(); ++it) {
        envp.push_back(const_cast<char*>(it->c_str()));
    }
    envp.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], pipedDescriptor);
    pid_t pid = -1;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data()) == 0) {
        pid_ = pid;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    pipe_ = ends[0];
}

ChildProcess::~ChildProcess() {
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    if (pipe_ >= 0) {
        close(pipe_);
    }
}

bool ChildProcess::readLine(std::string& line, int timeoutMilliseconds) {
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    while (true) {
        if (const auto end = buffered_.find('\n'); end != std::string::npos) {
            line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            return true;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd readable{pipe_, POLLIN, 0};
        if (left.count() <= 0 || poll(&readable, 1, static_cast<int>(left.count())) <= 0) {
            return false;
        }
        char chunk[4096];
        const ssize_t count = read(pipe_, chunk, sizeof chunk);
        if (count <= 0) {
            return false;
        }
        buffered_.append(chunk, static_cast<std::size_t>(count));
    }
}

bool ChildProcess::running() {
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_) {
        pid_ = -1;  // reaped: the number may belong to another process now
    }
    return pid_ > 0;
}

std::string outputOf(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return output;
    }
    char buffer[4096];
    while (const std::size_t count = fread(buffer, 1, sizeof buffer, pipe)) {
        output.append(buffer, count);
    }
    pclose(pipe);
    return output;
}

}  // namespace voltaro::testing
