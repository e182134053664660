#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace voltaro::platform {

// The fields of /proc/PID/stat that the energy accounting uses.
struct StatFields {
    std::int32_t parentPID = 0;
    std::uint64_t userTicks = 0;
    std::uint64_t systemTicks = 0;
    std::uint64_t startTimeTicks = 0;  // since boot
    friend bool operator==(const StatFields&, const StatFields&) = default;
};

// The fields of /proc/PID/status that the energy accounting uses.
struct StatusFields {
    std::uint32_t realUID = 0;
    std::uint64_t voluntaryContextSwitches = 0;  // 0 when the kernel does not report it
    bool isKernelThread = false;  // kernels before 6.0 do not say; their threads are root's
    friend bool operator==(const StatusFields&, const StatusFields&) = default;
};

// The storage traffic of /proc/PID/io.
struct IoFields {
    std::uint64_t readBytes = 0;
    std::uint64_t writeBytes = 0;
    friend bool operator==(const IoFields&, const IoFields&) = default;
};

// A decimal number without sign, nothing when it is empty, holds anything else or does not fit.
std::optional<std::uint64_t> parseDecimal(std::string_view text);

// Nothing when the text is not a whole stat line. The process name may hold spaces and
// parentheses, so the fields are counted from the last ')'.
std::optional<StatFields> parseStat(std::string_view text);
// Nothing without a readable "Uid:" line.
std::optional<StatusFields> parseStatus(std::string_view text);
// Nothing without both byte counts.
std::optional<IoFields> parseIo(std::string_view text);
// The first field of /proc/PID/schedstat: nanoseconds the task has run.
std::optional<std::uint64_t> parseSchedstatRunTime(std::string_view text);

}  // namespace voltaro::platform
