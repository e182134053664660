#pragma once

#include <optional>
#include <string>

#include "core/energy/ProcessSource.h"

namespace voltaro::platform {

// A bundle's information entries, each present only when the bundle gives it as text.
struct BundleInfo {
    std::optional<std::string> displayName;  // CFBundleDisplayName, localized
    std::optional<std::string> name;         // CFBundleName, localized
    std::optional<std::string> identifier;
};

// What the application catalog asks of the system about bundles and running applications.
class ApplicationWorkspace {
  public:
    virtual ~ApplicationWorkspace() = default;
    // Nothing when no bundle opens at the path.
    virtual std::optional<BundleInfo> bundleInfo(const std::string& bundlePath) = 0;
    // When the system has a running application with an icon for the process: the path whose
    // workspace icon is that picture (its bundle, else its executable).
    virtual std::optional<std::string> runningApplicationIconPath(ProcessID pid) = 0;
};

}  // namespace voltaro::platform
