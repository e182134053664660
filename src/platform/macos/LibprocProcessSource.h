#pragma once

#include "core/energy/ProcessSource.h"
#include "platform/macos/LibprocCalls.h"

namespace voltaro::platform {

// The user's processes through libproc: the listing of the user's process IDs, each process's
// rusage_info_v6 counters, and its parent, executable path and name.
class LibprocProcessSource final : public ProcessSource {
  public:
    explicit LibprocProcessSource(LibprocCalls calls);

    std::vector<ProcessID> userProcessIDs() override;
    std::optional<ProcessUsage> usage(ProcessID pid) override;
    // The path and the name are left out where their calls fail; the core names such processes.
    std::optional<RawProcessMetadata> metadata(ProcessID pid) override;

  private:
    LibprocCalls calls_;
};

}  // namespace voltaro::platform
