// Runs the real binary on this machine's /proc beside a program that burns a core and one that
// sleeps.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "app/ChildProcess.h"
#include "platform/linux/LinuxApplicationCatalog.h"
#include "support/TemporaryDirectory.h"

#ifdef __linux__

namespace voltaro {
namespace {

namespace fs = std::filesystem;
using User = std::pair<uid_t, gid_t>;

// The user IDs of the machine's processes.
std::set<uid_t> usersWithProcesses() {
    std::set<uid_t> users;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream status(entry.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("Uid:")) {
                users.insert(static_cast<uid_t>(std::stoul(line.substr(4))));
                break;
            }
        }
    }
    return users;
}

// As root, every root process of the machine (a compiler next door) would compete for the top, and
// so would the programs of a second run of this test under a shared user such as nobody. A user
// of our own, which no process has, leaves only this test's programs and the binary itself.
std::optional<User> userOfOurOwn() {
    if (::getuid() != 0) {
        return std::nullopt;
    }
    // From the range Debian leaves to be allocated on demand, so no account has it.
    constexpr uid_t first = 61000;
    constexpr uid_t count = 3000;
    const std::set<uid_t> taken = usersWithProcesses();
    for (uid_t offset = 0; offset < count; ++offset) {
        const uid_t id = first + (static_cast<uid_t>(::getpid()) + offset) % count;
        if (taken.contains(id)) {
            continue;
        }
        // Whether the system lets us become it (a user namespace may not map it).
        const User user{id, id};
        testing::ChildProcess probe({.arguments = {"/bin/echo", "switched"}, .user = user});
        return probe.readLine(std::chrono::seconds(10)) == "switched" ? std::optional(user)
                                                                      : std::nullopt;
    }
    return std::nullopt;
}

// A program started by a shell that ends at once, so that its parent is the machine's or
// session's reaper: a parent walk from it ends there instead of reaching the test. Killed with the
// object.
class DetachedProgram {
  public:
    DetachedProgram(const std::string& commandLine, const std::optional<User>& user) {
        testing::ChildProcess shell(
            {.arguments = {"/bin/sh", "-c", commandLine + " </dev/null >/dev/null 2>&1 & echo $!"},
             .user = user});
        pid_ = std::stoi(shell.readLine(std::chrono::seconds(10)).value_or("-1"));
    }
    DetachedProgram(const DetachedProgram&) = delete;
    DetachedProgram& operator=(const DetachedProgram&) = delete;
    ~DetachedProgram() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
        }
    }

    pid_t pid() const { return pid_; }

  private:
    pid_t pid_ = -1;
};

std::string procText(pid_t pid, const char* file) {
    std::ifstream stream("/proc/" + std::to_string(pid) + "/" + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// Waits until the program runs its own image (not the loader's start-up) in the given state:
// R for running, S for asleep with a run time that no longer moves.
bool settles(pid_t pid, const fs::path& executable, char state) {
    std::string previousRunTime;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::error_code failed;
        const fs::path running = fs::read_symlink("/proc/" + std::to_string(pid) + "/exe", failed);
        const std::string stat = procText(pid, "stat");
        const std::size_t nameEnd = stat.rfind(") ");
        const std::string runTime = procText(pid, "schedstat");
        if (!failed && running == executable && nameEnd != std::string::npos &&
            stat[nameEnd + 2] == state && (state != 'S' || runTime == previousRunTime)) {
            return true;
        }
        previousRunTime = runTime;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

// A copy of a system program under a name of its own, in a directory any user may run it from.
fs::path copyProgram(const testing::TemporaryDirectory& workshop, const fs::path& program,
                     const std::string& name) {
    const fs::path copy = workshop / name;
    fs::copy_file(program, copy);
    for (const fs::path& path : {workshop.path(), copy}) {
        fs::permissions(path, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                  fs::perms::others_read | fs::perms::others_exec);
    }
    return copy;
}

TEST(LiveProcEndToEndTest, ABusyProgramRanksFirstAndASleepingOneIsNotListed) {
    const testing::TemporaryDirectory workshop;
    const std::optional<User> user = userOfOurOwn();
    const fs::path busyProgram = copyProgram(workshop, "/bin/bash", "voltaro-busy");
    const fs::path idleProgram = copyProgram(workshop, "/bin/sleep", "voltaro-idle");
    // A builtin loop: no system calls, so no wake-ups, only CPU time. Both end on their own.
    const DetachedProgram busy(busyProgram.string() + " -c 'while (( SECONDS < 60 )); do :; done'",
                               user);
    const DetachedProgram idle(idleProgram.string() + " 60", user);
    ASSERT_TRUE(settles(busy.pid(), busyProgram, 'R'));
    ASSERT_TRUE(settles(idle.pid(), idleProgram, 'S'));

    // Whom the busy program belongs to: on a desktop, the application whose scope the test runs
    // in; elsewhere, itself, since its parent is a reaper.
    platform::LinuxApplicationCatalog catalog(
        platform::LinuxApplicationCatalog::Options::fromEnvironment());
    const std::string busyID = catalog.containingApplication(busy.pid(), std::nullopt)
                                   .value_or("process:" + busyProgram.string());
    const std::string idleID = "process:" + idleProgram.string();

    const fs::path binary =
        user ? copyProgram(workshop, VOLTARO_BINARY, "voltaro") : VOLTARO_BINARY;
    testing::ChildProcess voltaro({.arguments = {binary, "--watch", "--json"}, .user = user});
    ASSERT_TRUE(voltaro.started());

    std::vector<nlohmann::json> ranked;
    for (int refresh = 0; refresh < 6 && ranked.size() < 2; ++refresh) {
        const std::optional<nlohmann::json> report = voltaro.nextReport();
        ASSERT_TRUE(report) << "no report from the binary";
        if (!report->at("applications").empty()) {
            ranked.push_back(*report);
        }
    }
    ASSERT_EQ(ranked.size(), 2u);
    bool busyRanksFirst = false;
    for (const nlohmann::json& report : ranked) {
        const nlohmann::json& applications = report.at("applications");
        busyRanksFirst = busyRanksFirst || applications.at(0).at("id") == busyID;
        for (const nlohmann::json& application : applications) {
            EXPECT_NE(application.at("id"), idleID) << applications.dump(1);
            EXPECT_NE(application.at("name"), "voltaro-idle") << applications.dump(1);
        }
    }
    EXPECT_TRUE(busyRanksFirst) << busyID << "\n" << ranked[0].dump(1) << "\n" << ranked[1].dump(1);
}

}  // namespace
}  // namespace voltaro

#endif  // __linux__
