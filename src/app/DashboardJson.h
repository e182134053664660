#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "app/DashboardState.h"

namespace voltaro {

// One refresh as a JSON object; unknown values are null, times ISO 8601 in UTC.
nlohmann::ordered_json dashboardJson(const DashboardState& state);
// The same as one line of text, as --json prints it; bytes that are not UTF-8 become U+FFFD.
std::string dashboardJsonLine(const DashboardState& state);
std::string iso8601(WallTime time);

}  // namespace voltaro
