#pragma once

#include <memory>

#include "core/energy/ApplicationCatalog.h"
#include "platform/macos/ApplicationWorkspace.h"

namespace voltaro::platform {

// Applications as macOS knows them: the outermost .app bundle around a process's executable, named
// and identified by its information entries. Icons are paths whose workspace icon the ui shows.
class BundleApplicationCatalog final : public ApplicationCatalog {
  public:
    explicit BundleApplicationCatalog(std::unique_ptr<ApplicationWorkspace> workspace);

    std::optional<std::string> containingApplication(
        ProcessID pid, const std::optional<std::string>& executablePath) override;
    // The bundle identifier as id, or the bundle's path when it has none or does not open.
    ApplicationInfo describeApplication(const std::string& bundlePath) override;
    std::optional<ApplicationIcon> runningApplicationIcon(ProcessID pid) override;
    // The walk up the parent chain ends at the launch daemon alone, which the monitor knows.
    bool endsParentWalk(ProcessID pid, const std::optional<std::string>& executablePath,
                        const std::string& name) override;

  private:
    std::unique_ptr<ApplicationWorkspace> workspace_;
};

}  // namespace voltaro::platform
