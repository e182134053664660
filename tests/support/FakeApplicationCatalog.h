#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "core/energy/ApplicationCatalog.h"
#include "core/energy/ExecutablePath.h"

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
        ProcessID, const std::optional<std::string>& executablePath) override {
        ++containingApplicationCalls;
        return executablePath ? outermostApplicationPath(*executablePath) : std::nullopt;
    }
    ApplicationInfo describeApplication(const std::string& application) override {
        ++describeCalls[application];
        if (const auto known = applications.find(application); known != applications.end()) {
            return known->second;
        }
        std::string name = lastPathComponent(application);
        return {application, name.substr(0, name.rfind('.')),
                ApplicationIcon{ApplicationIcon::Kind::bundlePath, application}};
    }
    std::optional<ApplicationIcon> runningApplicationIcon(ProcessID pid) override {
        const auto found = runningIcons.find(pid);
        return found == runningIcons.end() ? std::nullopt : std::optional(found->second);
    }
    bool endsParentWalk(ProcessID pid, const std::optional<std::string>&,
                        const std::string&) override {
        return sessionMachinery.contains(pid);
    }
};

}  // namespace voltaro::testing
