#include "support/FakeApplicationCatalog.h"

#include "core/energy/ExecutablePath.h"

namespace voltaro::testing {

std::optional<std::string> FakeApplicationCatalog::containingApplication(
    ProcessID, const std::optional<std::string>& executablePath) {
    ++containingApplicationCalls;
    return executablePath ? outermostApplicationPath(*executablePath) : std::nullopt;
}

ApplicationInfo FakeApplicationCatalog::describeApplication(const std::string& application) {
    ++describeCalls[application];
    if (const auto known = applications.find(application); known != applications.end()) {
        return known->second;
    }
    std::string name = lastPathComponent(application);
    name = name.substr(0, name.rfind('.'));
    return ApplicationInfo{application, name,
                           ApplicationIcon{ApplicationIcon::Kind::bundlePath, application}};
}

std::optional<ApplicationIcon> FakeApplicationCatalog::runningApplicationIcon(ProcessID pid) {
    const auto found = runningIcons.find(pid);
    return found == runningIcons.end() ? std::nullopt : std::optional(found->second);
}

bool FakeApplicationCatalog::endsParentWalk(ProcessID pid, const std::optional<std::string>&,
                                            const std::string&) {
    return sessionMachinery.contains(pid);
}

}  // namespace voltaro::testing
