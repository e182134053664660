#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/energy/ProcessSource.h"

namespace voltaro::testing {

// Processes held in memory, listed in the order they were added; counts the reads.
class FakeProcessSource final : public ProcessSource {
  public:
    struct Process {
        ProcessUsage usage;
        std::optional<RawProcessMetadata> metadata;  // nothing: basic information unreadable
        bool isUsageReadable = true;
    };

    // Adds a process, or replaces the one with that ID in place (a reused process ID).
    Process& add(ProcessID pid, ProcessID parentPID, std::optional<std::string> executablePath,
                 std::optional<std::string> name, std::uint64_t startTime = 1) {
        if (!processes_.contains(pid)) {
            order_.push_back(pid);
        }
        Process& process = processes_[pid] = Process{};
        process.usage.processStartTime = startTime;
        process.metadata =
            RawProcessMetadata{parentPID, std::move(executablePath), std::move(name)};
        return process;
    }
    Process& process(ProcessID pid) { return processes_.at(pid); }
    void remove(ProcessID pid) {
        processes_.erase(pid);
        std::erase(order_, pid);
    }
    // Lets a process use this much energy more.
    void addEnergy(ProcessID pid, double joules) {
        process(pid).usage.energyNanojoules += static_cast<std::uint64_t>(joules * 1e9);
    }

    // Listed after the processes without being one, as a garbled listing would.
    std::vector<ProcessID> extraListedIDs;
    std::map<ProcessID, int> usageCalls;
    std::map<ProcessID, int> metadataCalls;

    std::vector<ProcessID> userProcessIDs() override {
        std::vector<ProcessID> pids = order_;
        pids.insert(pids.end(), extraListedIDs.begin(), extraListedIDs.end());
        return pids;
    }
    std::optional<ProcessUsage> usage(ProcessID pid) override {
        ++usageCalls[pid];
        const auto found = processes_.find(pid);
        if (found == processes_.end() || !found->second.isUsageReadable) {
            return std::nullopt;
        }
        return found->second.usage;
    }
    std::optional<RawProcessMetadata> metadata(ProcessID pid) override {
        ++metadataCalls[pid];
        const auto found = processes_.find(pid);
        return found == processes_.end() ? std::nullopt : found->second.metadata;
    }

  private:
    std::map<ProcessID, Process> processes_;
    std::vector<ProcessID> order_;
};

}  // namespace voltaro::testing
