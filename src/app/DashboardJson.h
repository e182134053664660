#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "core/presentation/DashboardModel.h"

namespace voltaro {

// One refresh as a JSON object: the state's values (unknown ones null, times ISO 8601 in UTC)
// and, under "dashboard", the model as the other front ends show it.
nlohmann::ordered_json dashboardJson(const DashboardState& state, const DashboardModel& model);
// The same as one line of text, as --json prints it; bytes that are not UTF-8 become U+FFFD.
std::string dashboardJsonLine(const DashboardState& state, const DashboardModel& model);
std::string iso8601(WallTime time);

// JSON null for an unknown value.
template <typename T>
nlohmann::ordered_json orNull(const std::optional<T>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

// The id, name and watts of each application, of the live ranking or of a history record.
template <typename Applications>
nlohmann::ordered_json applicationsJson(const Applications& applications) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& application : applications) {
        list.push_back(
            {{"id", application.id}, {"name", application.name}, {"watts", application.watts}});
    }
    return list;
}

}  // namespace voltaro
