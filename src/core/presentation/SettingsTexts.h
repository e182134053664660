#pragma once

#include <optional>
#include <string>

namespace voltaro {

// "Version 1.4 (27)"; "Version 1.4" without a build number, "Version —" without a version.
std::string versionText(const std::optional<std::string>& version,
                        const std::optional<std::string>& buildNumber);

}  // namespace voltaro
