#include "platform/linux/ProcProcessSource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "support/TemporaryDirectory.h"

namespace voltaro::platform {
namespace {

using ::testing::Contains;
using ::testing::Not;
using testing::TemporaryDirectory;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;

const std::string procFixtures = std::string(VOLTARO_TEST_DATA) + "/proc/";
constexpr std::uint32_t desktopUser = 1000;

ProcProcessSource fixtureSource(const std::filesystem::path& root, std::uint32_t uid = desktopUser,
                                std::optional<std::size_t> openDirectoryLimit = std::nullopt) {
    return ProcProcessSource(ProcProcessSource::Options{
        root.string(), uid, ProcProcessSource::RunTimeClock::schedstatFile, openDirectoryLimit});
}

// 3420's stat once it has run: 9000 + 200 ticks.
const std::string ranStat =
    "3420 (cc1plus) R 3415 3415 3322 34816 3415 4194560 41022 0 0 0 9000 200 0 0 20 0 1 0 53012 "
    "254316544 6720\n";

std::uint64_t nanojoulesOfTicks(std::uint64_t ticks) {
    return ticks * nominalWattsPerBusyCore * 1'000'000'000 /
           static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
}

std::uint64_t usageOfEveryone(ProcProcessSource& source) {
    std::uint64_t energy = 0;
    for (const ProcessID pid : source.userProcessIDs()) {
        energy += source.usage(pid).value_or(ProcessUsage{}).energyNanojoules;
    }
    return energy;
}

TEST(ProcProcessSourceTest, ListsTheProcessesWhoseRealUserIsTheCallers) {
    ProcProcessSource desktop = fixtureSource(procFixtures + "gnome");
    // sudo (3450) runs with our real user; another user's shell (4000) and root's daemons do not.
    // Kernel threads (2) are root's but no one's application.
    EXPECT_THAT(
        desktop.userProcessIDs(),
        UnorderedElementsAreArray({1490, 1504, 1505, 1521, 1526, 1590, 1610, 1702, 1800, 2810,
                                   2870, 2905, 2950, 3012, 3044, 3101, 3150, 3188, 3300, 3322,
                                   3401, 3415, 3420, 3450, 3500, 3598, 3610, 4100}));
    ProcProcessSource root = fixtureSource(procFixtures + "gnome", 0);
    EXPECT_THAT(root.userProcessIDs(), UnorderedElementsAre(1, 952));
    ProcProcessSource nobody = fixtureSource(procFixtures + "missing");
    EXPECT_TRUE(nobody.userProcessIDs().empty());
}

TEST(ProcProcessSourceTest, ReadsCountersAndMetadata) {
    ProcProcessSource source = fixtureSource(procFixtures + "gnome");
    source.userProcessIDs();

    EXPECT_EQ(source.usage(3420),
              (ProcessUsage{53012, nanojoulesOfTicks(2411 + 180), 8409088, 31457280, 31}));
    const auto compiler = source.metadata(3420);
    ASSERT_TRUE(compiler);
    EXPECT_EQ(compiler->parentPID, 3415);
    EXPECT_EQ(compiler->executablePath, "/usr/lib/gcc/x86_64-linux-gnu/12/cc1plus");
    EXPECT_EQ(compiler->name, "cc1plus");

    // sudo's io is not ours to read: no disk traffic, but a process all the same.
    EXPECT_EQ(source.usage(3450), (ProcessUsage{54001, nanojoulesOfTicks(3), 0, 0, 9}));
    // A kernel thread has no executable.
    ProcProcessSource root = fixtureSource(procFixtures + "gnome", 0);
    root.userProcessIDs();
    EXPECT_EQ(root.metadata(2)->executablePath, std::nullopt);
    EXPECT_EQ(root.metadata(2)->parentPID, 0);
}

// The names themselves are the parser's and the end-to-end run's to check.
TEST(ProcProcessSourceTest, ReadsProcessesWithOddNamesOrFiles) {
    ProcProcessSource source = fixtureSource(procFixtures + "odd-names");
    EXPECT_THAT(source.userProcessIDs(), UnorderedElementsAre(700, 710, 777, 778, 779));
    // An executable replaced since it started: the path it had.
    EXPECT_EQ(source.metadata(778)->executablePath, "/home/user/bin/a (b) c");
    // A stat file cut short: no counters, no metadata, no crash.
    EXPECT_EQ(source.usage(779), std::nullopt);
    EXPECT_EQ(source.metadata(779), std::nullopt);
}

TEST(ProcProcessSourceTest, AProcessThatVanishesIsAbsent) {
    TemporaryDirectory tree(procFixtures + "gnome");
    ProcProcessSource source = fixtureSource(tree.path());
    source.userProcessIDs();

    tree.remove("3420");
    tree.remove("3415");
    EXPECT_EQ(source.usage(3420), std::nullopt);  // between listing and reading
    EXPECT_EQ(source.metadata(3415), std::nullopt);
    EXPECT_THAT(source.userProcessIDs(), Not(Contains(3420)));
    EXPECT_EQ(source.usage(3420), std::nullopt);
    // A status without its Uid line: not known to be ours.
    tree.write("3401/status", "Name:\tmake\n");
    tree.write("3401/schedstat", "1 0 0\n");
    EXPECT_THAT(source.userProcessIDs(), Not(Contains(3401)));
}

TEST(ProcProcessSourceTest, RereadsOnlyProcessesThatRan) {
    TemporaryDirectory tree(procFixtures + "gnome");
    ProcProcessSource source = fixtureSource(tree.path());
    const std::uint64_t first = usageOfEveryone(source);
    EXPECT_EQ(source.processesReadInLastListing(), 32u);

    // Counters that changed while the run time stayed: the source does not look.
    tree.write("3420/stat", ranStat);
    EXPECT_EQ(usageOfEveryone(source), first);
    EXPECT_EQ(source.processesReadInLastListing(), 0u);
    EXPECT_EQ(source.usage(3420)->energyNanojoules, nanojoulesOfTicks(2411 + 180));

    tree.write("3420/schedstat", "92000000000 120000 40\n");
    EXPECT_EQ(usageOfEveryone(source), first + nanojoulesOfTicks(9200 - 2591));
    EXPECT_EQ(source.processesReadInLastListing(), 1u);
    EXPECT_EQ(source.usage(3420)->energyNanojoules, nanojoulesOfTicks(9200));
}

TEST(ProcProcessSourceTest, AReusedPIDIsANewProcess) {
    const std::string after = procFixtures + "pid-reuse/after/";
    for (const bool inPlace : {false, true}) {
        TemporaryDirectory tree(procFixtures + "pid-reuse/before");
        ProcProcessSource source = fixtureSource(tree.path());
        EXPECT_THAT(source.userProcessIDs(), UnorderedElementsAre(500, 501));
        EXPECT_EQ(source.usage(500)->processStartTime, 1000u);
        EXPECT_EQ(source.metadata(500)->name, "bash");

        tree.remove("501");
        tree.replace("502", after + "502");
        if (inPlace) {  // the same directory, as a copied tree allows
            for (const auto& file : std::filesystem::directory_iterator(after + "500")) {
                tree.replace("500" / file.path().filename(), file.path());
            }
        } else {
            tree.replace("500", after + "500");
        }
        EXPECT_THAT(source.userProcessIDs(), UnorderedElementsAre(500, 502)) << inPlace;
        EXPECT_EQ(source.usage(500), (ProcessUsage{5000, nanojoulesOfTicks(4), 0, 0, 20}))
            << inPlace;
        EXPECT_EQ(source.metadata(500)->name, "python3") << inPlace;
        EXPECT_EQ(source.usage(501), std::nullopt) << inPlace;
    }
}

TEST(ProcProcessSourceTest, ReadsEveryProcessAfreshWhenItMayNotKeepDirectoriesOpen) {
    TemporaryDirectory tree(procFixtures + "gnome");
    ProcProcessSource source = fixtureSource(tree.path(), desktopUser, 0);
    ProcProcessSource tracking = fixtureSource(tree.path());
    const std::vector<ProcessID> pids = source.userProcessIDs();
    EXPECT_THAT(pids, UnorderedElementsAreArray(tracking.userProcessIDs()));
    for (const ProcessID pid : pids) {
        EXPECT_EQ(source.usage(pid), tracking.usage(pid)) << pid;
    }
    EXPECT_EQ(source.metadata(3420)->name, "cc1plus");

    tree.write("3420/stat", ranStat);
    source.userProcessIDs();
    EXPECT_EQ(source.processesReadInLastListing(), 32u);
    EXPECT_EQ(source.usage(3420)->energyNanojoules, nanojoulesOfTicks(9200));
}

std::uint64_t uptimeTicks() {
    std::ifstream uptime("/proc/uptime");
    double seconds = 0;
    uptime >> seconds;
    return static_cast<std::uint64_t>(seconds * static_cast<double>(::sysconf(_SC_CLK_TCK))) + 1;
}

TEST(ProcProcessSourceTest, KeepsASleepingChildsCountersAndDropsItOnceReaped) {  // live /proc
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(ready[0]);
        ::close(ready[1]);  // tells the parent it has started
        ::pause();
        ::_exit(0);
    }
    ::close(ready[1]);
    char ignored = 0;
    ASSERT_EQ(::read(ready[0], &ignored, 1), 0);
    ::close(ready[0]);
    // Its counters stand still only once it sleeps in pause(): going to sleep is a switch.
    for (std::string stat; stat.find(") S ") == std::string::npos;) {
        std::ifstream file("/proc/" + std::to_string(child) + "/stat");
        std::getline(file, stat);
    }

    ProcProcessSource source;
    const std::vector<ProcessID> pids = source.userProcessIDs();
    EXPECT_TRUE(std::is_sorted(pids.begin(), pids.end()));
    EXPECT_EQ(std::count(pids.begin(), pids.end(), child), 1);
    const auto first = source.usage(child);
    ASSERT_TRUE(first);
    EXPECT_GT(first->processStartTime, 0u);
    EXPECT_LE(first->processStartTime, uptimeTicks());
    source.userProcessIDs();
    EXPECT_EQ(source.usage(child), first);
    const auto metadata = source.metadata(child);
    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->parentPID, ::getpid());
    EXPECT_EQ(metadata->executablePath, std::filesystem::read_symlink("/proc/self/exe").string());
    // Kept for the life of every process: no path-sized buffer behind the text.
    EXPECT_LT(metadata->executablePath->capacity(), 256u);
    EXPECT_TRUE(metadata->name);

    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_THAT(source.userProcessIDs(), Not(Contains(child)));
    EXPECT_EQ(source.usage(child), std::nullopt);
    EXPECT_EQ(source.metadata(child), std::nullopt);
}

}  // namespace
}  // namespace voltaro::platform
