#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/macos/LibprocCalls.h"
#include "platform/macos/LibprocRecords.h"

namespace voltaro::testing {

template <typename T, std::size_t N>
void put(std::array<std::byte, N>& bytes, std::size_t offset, T value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

// A process table behind libproc's calls, answering as the kernel does: byte counts, partial fills
// of short buffers, 0 or -1 for a process that is gone. Records every call and any misuse.
class FakeLibproc {
  public:
    struct Process {
        std::uint64_t startTime = 1;
        std::uint64_t userTime = 0;
        std::uint64_t systemTime = 0;
        std::uint64_t energyNanojoules = 0;
        std::uint64_t diskBytesRead = 0;
        std::uint64_t diskBytesWritten = 0;
        std::uint64_t packageIdleWakeups = 0;
        std::uint64_t interruptWakeups = 0;
        std::uint32_t parentPID = 1;
        std::optional<std::string> path{};  // nothing: the path call fails
        std::optional<std::string> name{};  // copied as is, so it may lack a terminating zero
        bool usageFails = false;
        int bsdInfoAnswer = 136;  // bytes the basic-information call reports
    };

    std::uint32_t uid = 501;
    std::vector<std::int32_t> listing;      // the kernel's list, zero and negative entries included
    std::optional<int> firstListingAnswer;  // replaces the bytes needed
    std::optional<int> secondListingAnswer;  // replaces the bytes filled
    std::map<int, Process> processes;

    // Calls made, by process and function ("rusage", "pidinfo", "pidpath", "name").
    std::map<int, std::vector<std::string>> calledBy;
    std::vector<int> listingBufferSizes;
    std::vector<std::string> misuse;

    platform::LibprocCalls calls() {
        using namespace voltaro::platform;
        LibprocCalls calls;
        calls.getUID = [this] { return uid; };
        calls.procListPids = [this](std::uint32_t type, std::uint32_t typeInfo, void* buffer,
                                    int bufferSize) {
            if (type != kProcUIDOnly || typeInfo != uid) {
                misuse.push_back("proc_listpids for another type or user");
            }
            listingBufferSizes.push_back(bufferSize);
            const int listBytes = static_cast<int>(listing.size() * sizeof(std::int32_t));
            if (buffer == nullptr) {
                return firstListingAnswer.value_or(listBytes);
            }
            const std::size_t fitting = std::min(
                listing.size(), static_cast<std::size_t>(bufferSize) / sizeof(std::int32_t));
            std::memcpy(buffer, listing.data(), fitting * sizeof(std::int32_t));
            return secondListingAnswer.value_or(static_cast<int>(fitting * sizeof(std::int32_t)));
        };
        calls.procPidRusage = [this](int pid, int flavor, void* record) {
            calledBy[pid].push_back("rusage");
            const auto process = processes.find(pid);
            if (flavor != kRusageInfoV6 || process == processes.end() ||
                process->second.usageFails) {
                return -1;  // errno ESRCH or EINVAL
            }
            const Process& p = process->second;
            RusageInfoV6Record filled;
            using Layout = RusageInfoV6Layout;
            put(filled.bytes, Layout::processStartAbsoluteTime, p.startTime);
            put(filled.bytes, Layout::userTime, p.userTime);
            put(filled.bytes, Layout::systemTime, p.systemTime);
            put(filled.bytes, Layout::energyNanojoules, p.energyNanojoules);
            put(filled.bytes, Layout::diskBytesRead, p.diskBytesRead);
            put(filled.bytes, Layout::diskBytesWritten, p.diskBytesWritten);
            put(filled.bytes, Layout::packageIdleWakeups, p.packageIdleWakeups);
            put(filled.bytes, Layout::interruptWakeups, p.interruptWakeups);
            std::memcpy(record, filled.bytes.data(), filled.bytes.size());
            return 0;
        };
        calls.procPidInfo = [this](int pid, int flavor, std::uint64_t argument, void* buffer,
                                   int bufferSize) {
            calledBy[pid].push_back("pidinfo");
            const auto process = processes.find(pid);
            if (flavor != kProcPIDTBSDInfo || argument != 0 || bufferSize != 136) {
                misuse.push_back("proc_pidinfo with another flavour, argument or size");
                return 0;
            }
            if (process == processes.end()) {
                return 0;  // errno ESRCH
            }
            ProcBSDInfoRecord filled;
            put(filled.bytes, ProcBSDInfoLayout::parentPID, process->second.parentPID);
            const int answer = process->second.bsdInfoAnswer;
            std::memcpy(buffer, filled.bytes.data(),
                        static_cast<std::size_t>(std::clamp(answer, 0, 136)));
            return answer;
        };
        calls.procPidPath = [this](int pid, void* buffer, std::uint32_t bufferSize) {
            calledBy[pid].push_back("pidpath");
            const auto process = processes.find(pid);
            if (bufferSize != 4096) {
                misuse.push_back("proc_pidpath with another buffer size");
            }
            if (process == processes.end() || !process->second.path ||
                process->second.path->size() >= bufferSize) {
                return 0;
            }
            const std::string& path = *process->second.path;
            std::memcpy(buffer, path.c_str(), path.size() + 1);
            return static_cast<int>(path.size());
        };
        calls.procName = [this](int pid, void* buffer, std::uint32_t bufferSize) {
            calledBy[pid].push_back("name");
            const auto process = processes.find(pid);
            if (bufferSize != 1024) {
                misuse.push_back("proc_name with another buffer size");
            }
            if (process == processes.end() || !process->second.name) {
                return 0;
            }
            const std::string& name = *process->second.name;
            const std::size_t copied = std::min<std::size_t>(name.size(), bufferSize);
            std::memcpy(buffer, name.data(), copied);
            return static_cast<int>(copied);
        };
        return calls;
    }
};

}  // namespace voltaro::testing
