#include "platform/macos/BundleApplicationCatalog.h"

#include <utility>

#include "core/energy/ExecutablePath.h"

namespace voltaro::platform {
namespace {

// Foo for /Applications/Foo.app; the name as it is when it has no extension.
std::string nameWithoutExtension(const std::string& bundlePath) {
    std::string name = lastPathComponent(bundlePath);
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos && dot != 0) {
        name.resize(dot);
    }
    return name;
}

}  // namespace

BundleApplicationCatalog::BundleApplicationCatalog(std::unique_ptr<ApplicationWorkspace> workspace)
    : workspace_(std::move(workspace)) {}

std::optional<std::string> BundleApplicationCatalog::containingApplication(
    ProcessID, const std::optional<std::string>& executablePath) {
    if (!executablePath) {
        return std::nullopt;
    }
    return outermostApplicationPath(*executablePath);
}

ApplicationInfo BundleApplicationCatalog::describeApplication(const std::string& bundlePath) {
    const std::optional<BundleInfo> bundle = workspace_->bundleInfo(bundlePath);
    ApplicationInfo info;
    info.id = bundle && bundle->identifier ? *bundle->identifier : bundlePath;
    // An empty display name is the bundle's own choice and is kept.
    if (bundle && bundle->displayName) {
        info.name = *bundle->displayName;
    } else if (bundle && bundle->name) {
        info.name = *bundle->name;
    } else {
        info.name = nameWithoutExtension(bundlePath);
    }
    // The workspace has an icon for every path, a generic one at worst.
    info.icon = ApplicationIcon{ApplicationIcon::Kind::bundlePath, bundlePath};
    return info;
}

std::optional<ApplicationIcon> BundleApplicationCatalog::runningApplicationIcon(ProcessID pid) {
    std::optional<std::string> path = workspace_->runningApplicationIconPath(pid);
    if (!path || path->empty()) {
        return std::nullopt;
    }
    return ApplicationIcon{ApplicationIcon::Kind::bundlePath, std::move(*path)};
}

bool BundleApplicationCatalog::endsParentWalk(ProcessID, const std::optional<std::string>&,
                                              const std::string&) {
    return false;
}

}  // namespace voltaro::platform
