#include "app/RunningVoltaro.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#ifdef __linux__
#include <sys/prctl.h>
#endif

extern char** environ;

namespace voltaro::testing {

RunningVoltaro::RunningVoltaro(Options options) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        const std::size_t equals = text.find('=');
        if (equals != std::string::npos) {
            variables[text.substr(0, equals)] = text.substr(equals + 1);
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
    options.arguments.insert(options.arguments.begin(), options.executable);
    std::vector<char*> argumentPointers;
    for (std::string& argument : options.arguments) {
        argumentPointers.push_back(argument.data());
    }
    argumentPointers.push_back(nullptr);

    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0) {
        return;
    }
    ::fcntl(pipeEnds[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(pipeEnds[1], F_SETFD, FD_CLOEXEC);
    const pid_t parent = ::getpid();
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(pipeEnds[1], STDOUT_FILENO);
        if (options.user && (::setgroups(0, nullptr) != 0 || ::setgid(options.user->second) != 0 ||
                             ::setuid(options.user->first) != 0)) {
            ::_exit(127);
        }
#ifdef __linux__
        // After the change of user, which clears it: the binary must not outlive a crashed test.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
        if (::getppid() != parent) {
            ::_exit(127);
        }
        ::execve(options.executable.c_str(), argumentPointers.data(), environmentPointers.data());
        ::_exit(127);
    }
    ::close(pipeEnds[1]);
    if (pid_ < 0) {
        ::close(pipeEnds[0]);
        return;
    }
    output_ = pipeEnds[0];
}

RunningVoltaro::~RunningVoltaro() {
    if (output_ >= 0) {
        ::close(output_);
    }
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
}

std::optional<nlohmann::json> RunningVoltaro::nextReport(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::size_t newline = pending_.find('\n');
    while (newline == std::string::npos) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (output_ < 0 || left.count() <= 0) {
            return std::nullopt;
        }
        pollfd readable{output_, POLLIN, 0};
        const int ready = ::poll(&readable, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            return std::nullopt;
        }
        char buffer[4096];
        const ssize_t count = ::read(output_, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return std::nullopt;  // the binary has ended
        }
        pending_.append(buffer, static_cast<std::size_t>(count));
        newline = pending_.find('\n');
    }
    const std::string line = pending_.substr(0, newline);
    pending_.erase(0, newline + 1);
    nlohmann::json report = nlohmann::json::parse(line, nullptr, false);
    if (report.is_discarded()) {
        return std::nullopt;
    }
    return report;
}

}  // namespace voltaro::testing
