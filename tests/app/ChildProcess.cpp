#include "ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>

#ifdef __linux__
#include <sys/prctl.h>
#endif

extern char** environ;

namespace voltaro::testing {

ChildProcess::ChildProcess(Options options) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        const std::size_t equals = text.find('=');
        if (equals != std::string::npos) {
            variables.emplace(text.substr(0, equals), text.substr(equals + 1));
        }
    }
    for (const auto& [name, value] : options.environment) {
        variables[name] = value;
    }
    // Everything the child needs is built before the fork.
    std::vector<std::string> environmentTexts;
    for (const auto& [name, value] : variables) {
        environmentTexts.push_back(name + "=" + value);
    }
    std::vector<char*> environmentPointers;
    for (std::string& text : environmentTexts) {
        environmentPointers.push_back(text.data());
    }
    environmentPointers.push_back(nullptr);
    std::vector<char*> argumentPointers;
    for (std::string& argument : options.arguments) {
        argumentPointers.push_back(argument.data());
    }
    argumentPointers.push_back(nullptr);

    // Close-on-exec, so the child keeps only the copy made for it below.
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return;
    }
    const pid_t parent = ::getpid();
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(ends[1], options.pipedDescriptor);
#ifdef __linux__
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
        if (::getppid() != parent) {
            ::_exit(127);
        }
        ::execve(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    pipe_ = ends[0];
}

ChildProcess::~ChildProcess() {
    if (pid_ > 0) {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
    if (pipe_ >= 0) {
        ::close(pipe_);
    }
}

std::optional<std::string> ChildProcess::readLine(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (true) {
        if (const auto end = buffered_.find('\n'); end != std::string::npos) {
            std::string line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            return line;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd readable{pipe_, POLLIN, 0};
        const int ready =
            left.count() > 0 ? ::poll(&readable, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            return std::nullopt;
        }
        char chunk[4096];
        const ssize_t count = ::read(pipe_, chunk, sizeof chunk);
        if (count <= 0) {
            return std::nullopt;
        }
        buffered_.append(chunk, static_cast<std::size_t>(count));
    }
}

bool ChildProcess::running() {
    if (pid_ > 0 && ::waitpid(pid_, nullptr, WNOHANG) == pid_) {
        pid_ = -1;  // reaped: the number may belong to another process now
    }
    return pid_ > 0;
}

std::string outputOf(const std::string& command) {
    std::string output;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return output;
    }
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe)) {
        output.append(buffer, count);
    }
    ::pclose(pipe);
    return output;
}

}  // namespace voltaro::testing
