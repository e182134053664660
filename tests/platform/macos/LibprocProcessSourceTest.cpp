#include "platform/macos/LibprocProcessSource.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/macos/FakeLibproc.h"

namespace voltaro::platform {
namespace {

using testing::FakeLibproc;
constexpr std::uint64_t kMaximum = std::numeric_limits<std::uint64_t>::max();

TEST(LibprocProcessSourceTest, ListsTheUsersProcessesAsTheKernelAnswers) {
    std::vector<std::int32_t> forty(40);
    for (int i = 0; i < 40; ++i) {
        forty[static_cast<std::size_t>(i)] = 100 + i;
    }
    const struct {
        const char* description;
        std::vector<std::int32_t> listing;
        std::optional<int> firstAnswer;
        std::optional<int> secondAnswer;
        std::vector<ProcessID> expected;
        std::vector<int> bufferSizes;  // one per listing call
    } cases[] = {
        {"in the kernel's order", {4711, 1, 300}, {}, {}, {4711, 1, 300}, {0, (3 + 32) * 4}},
        {"zero and negative entries left out", {0, 12, -3, 13}, {}, {}, {12, 13}, {0, 144}},
        {"nothing needed", {12}, 0, {}, {}, {0}},
        {"sizing fails", {12}, -1, {}, {}, {0}},
        {"nonsense size", {12}, std::numeric_limits<int>::max(), {}, {}, {0}},
        {"filling fails", {12}, {}, 0, {}, {0, 132}},
        {"answer beyond the buffer is cut to it",
         forty,
         8,
         160,
         {forty.begin(), forty.begin() + 34},
         {0, 34 * 4}},
        {"partial entry ignored", {12, 13, 14}, {}, 10, {12, 13}, {0, 140}},
    };
    for (const auto& c : cases) {
        FakeLibproc libproc;
        libproc.listing = c.listing;
        libproc.firstListingAnswer = c.firstAnswer;
        libproc.secondListingAnswer = c.secondAnswer;

        EXPECT_EQ(LibprocProcessSource(libproc.calls()).userProcessIDs(), c.expected)
            << c.description;
        EXPECT_EQ(libproc.listingBufferSizes, c.bufferSizes) << c.description;
        EXPECT_EQ(libproc.misuse, std::vector<std::string>{}) << c.description;
    }
}

TEST(LibprocProcessSourceTest, ReadsTheUsageCountersWithASaturatingWakeUpSum) {
    using Process = FakeLibproc::Process;
    const auto wakeups = [](std::uint64_t packageIdle, std::uint64_t interrupt) {
        return Process{.packageIdleWakeups = packageIdle, .interruptWakeups = interrupt};
    };
    const struct {
        std::optional<Process> process;
        std::optional<ProcessUsage> expected;
    } cases[] = {
        {Process{.startTime = 88,
                 .userTime = 900'000'000'000,
                 .energyNanojoules = 5'000'000'000,
                 .diskBytesRead = 4096,
                 .diskBytesWritten = 512,
                 .packageIdleWakeups = 3,
                 .interruptWakeups = 4},
         ProcessUsage{88, 5'000'000'000, 4096, 512, 7}},
        // No energy counter (Intel Macs): the CPU time at the nominal power of a busy core.
        {Process{.startTime = 5, .userTime = 3'000'000'000, .systemTime = 1'000'000'000},
         ProcessUsage{5, 40'000'000'000, 0, 0, 0}},
        {Process{.userTime = kMaximum, .systemTime = 1}, ProcessUsage{1, kMaximum, 0, 0, 0}},
        {Process{.usageFails = true}, std::nullopt},
        {std::nullopt, std::nullopt},
        {wakeups(kMaximum, 1), ProcessUsage{1, 0, 0, 0, kMaximum}},
        {wakeups(1, kMaximum), ProcessUsage{1, 0, 0, 0, kMaximum}},
        {wakeups(kMaximum - 1, 1), ProcessUsage{1, 0, 0, 0, kMaximum}},
        {wakeups(kMaximum, kMaximum), ProcessUsage{1, 0, 0, 0, kMaximum}},
        {wakeups(1ull << 63, 1ull << 62), ProcessUsage{1, 0, 0, 0, (1ull << 63) + (1ull << 62)}},
    };
    for (const auto& c : cases) {
        FakeLibproc libproc;
        if (c.process) {
            libproc.processes[7] = *c.process;
        }
        EXPECT_EQ(LibprocProcessSource(libproc.calls()).usage(7), c.expected);
    }
}

TEST(LibprocProcessSourceTest, ReadsMetadataOnlyFromAWholeBasicRecord) {
    const std::string unterminated = std::string(1023, 'a').append("\xFF");
    const struct {
        const char* description;
        FakeLibproc::Process process;
        std::optional<RawProcessMetadata> expected;
        std::vector<std::string> calls;
    } cases[] = {
        {"everything",
         {.parentPID = 1, .path = "/usr/local/bin/worker", .name = "worker"},
         RawProcessMetadata{1, "/usr/local/bin/worker", "worker"},
         {"pidinfo", "pidpath", "name"}},
        {"no basic record", {.bsdInfoAnswer = 0}, std::nullopt, {"pidinfo"}},
        {"short basic record", {.bsdInfoAnswer = 135}, std::nullopt, {"pidinfo"}},
        {"path fails", {.parentPID = 9, .name = "w"}, RawProcessMetadata{9, {}, "w"}, {}},
        {"name fails", {.path = "/bin/w"}, RawProcessMetadata{1, "/bin/w", {}}, {}},
        {"parent above the signed range",
         {.parentPID = 0xFFFFFFFF, .name = "w"},
         RawProcessMetadata{-1, {}, "w"},
         {}},
        {"name without a terminating zero",
         {.name = unterminated},
         RawProcessMetadata{1, {}, std::string(1023, 'a').append("\uFFFD")},
         {}},
    };
    for (const auto& c : cases) {
        FakeLibproc libproc;
        libproc.processes[4711] = c.process;
        const auto metadata = LibprocProcessSource(libproc.calls()).metadata(4711);

        ASSERT_EQ(metadata.has_value(), c.expected.has_value()) << c.description;
        if (metadata) {
            EXPECT_EQ(metadata->parentPID, c.expected->parentPID) << c.description;
            EXPECT_EQ(metadata->executablePath, c.expected->executablePath) << c.description;
            EXPECT_EQ(metadata->name, c.expected->name) << c.description;
        }
        if (!c.calls.empty()) {
            EXPECT_EQ(libproc.calledBy[4711], c.calls) << c.description;
        }
        EXPECT_EQ(libproc.misuse, std::vector<std::string>{}) << c.description;
    }
}

}  // namespace
}  // namespace voltaro::platform
