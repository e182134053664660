#pragma once

#include <cstdint>
#include <functional>

namespace voltaro::platform {

// Arguments of the calls below, as the kernel's headers number them.
inline constexpr std::uint32_t kProcUIDOnly = 4;  // PROC_UID_ONLY
inline constexpr int kRusageInfoV6 = 6;           // RUSAGE_INFO_V6
inline constexpr int kProcPIDTBSDInfo = 3;        // PROC_PIDTBSDINFO
inline constexpr int kProcPathBufferSize = 4096;  // PROC_PIDPATHINFO_MAXSIZE
inline constexpr int kProcNameBufferSize = 1024;

// The C library and libproc calls that read the user's processes, one member per function, with
// the real functions' arguments and results.
struct LibprocCalls {
    std::function<std::uint32_t()> getUID;
    // Bytes needed (null buffer) or bytes filled with 32-bit process IDs; less than 1 on failure.
    std::function<int(std::uint32_t type, std::uint32_t typeInfo, void* buffer, int bufferSize)>
        procListPids;
    // Fills the record of the flavour; 0 on success.
    std::function<int(int pid, int flavor, void* record)> procPidRusage;
    // The number of bytes filled; 0 on failure.
    std::function<int(int pid, int flavor, std::uint64_t argument, void* buffer, int bufferSize)>
        procPidInfo;
    // The length of the text written; 0 on failure.
    std::function<int(int pid, void* buffer, std::uint32_t bufferSize)> procPidPath;
    std::function<int(int pid, void* buffer, std::uint32_t bufferSize)> procName;
};

}  // namespace voltaro::platform
