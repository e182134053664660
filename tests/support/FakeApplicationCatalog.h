#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "core/energy/ApplicationCatalog.h"

namespace voltaro::testing {

// Applications as bundles on disk: a process belongs to the outermost .app around its executable.
// Counts the calls.
class FakeApplicationCatalog final : public ApplicationCatalog {
  public:
    // Descriptions by key; any other key is described as a bundle that cannot be opened.
    std::map<std::string, ApplicationInfo> applications;
    std::map<ProcessID, ApplicationIcon> runningIcons;
    std::set<ProcessID> sessionMachinery;

    int containingApplicationCalls = 0;
    std::map<std::string, int> describeCalls;

    std::optional<std::string> containingApplication(
        ProcessID pid, const std::optional<std::string>& executablePath) override;
    ApplicationInfo describeApplication(const std::string& application) override;
    std::optional<ApplicationIcon> runningApplicationIcon(ProcessID pid) override;
    bool endsParentWalk(ProcessID pid, const std::optional<std::string>& executablePath,
                        const std::string& name) override;
};

}  // namespace voltaro::testing
