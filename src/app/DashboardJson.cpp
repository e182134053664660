#include "app/DashboardJson.h"

#include <cstdio>
#include <ctime>

namespace voltaro {
namespace {

nlohmann::ordered_json rowJson(const DashboardRow& row) {
    static constexpr const char* switchNames[] = {"off", "on", "unknown", "changing"};
    nlohmann::ordered_json json = {{"title", row.title},
                                   {"value", row.value},
                                   {"caption", orNull(row.caption)},
                                   {"symbol", std::string(row.symbol)}};
    if (row.rank) {
        json["rank"] = *row.rank;
    }
    if (row.switchState) {
        json["switch"] = switchNames[static_cast<int>(*row.switchState)];
    }
    return json;
}

nlohmann::ordered_json modelJson(const DashboardModel& model) {
    nlohmann::ordered_json sections = nlohmann::ordered_json::array();
    for (const DashboardSection& section : model.sections) {
        nlohmann::ordered_json rows = nlohmann::ordered_json::array();
        for (const DashboardRow& row : section.rows) {
            rows.push_back(rowJson(row));
        }
        sections.push_back({{"title", section.title},
                            {"detail", section.detail},
                            {"rows", rows},
                            {"placeholder", orNull(section.placeholder)}});
    }
    return {{"header",
             {{"chargeLine", model.header.chargeLine},
              {"stateLine", model.header.stateLine},
              {"chargeTime", model.header.chargeTime}}},
            {"sections", sections}};
}

nlohmann::ordered_json healthJson(const BatteryHealth& health) {
    return {{"cycleCount", orNull(health.cycleCount)},
            {"capacityPercent", orNull(health.capacityPercent)},
            {"fullChargeWattHours", orNull(health.fullChargeWattHours)},
            {"designWattHours", orNull(health.designWattHours)},
            {"fullChargeMilliampHours", orNull(health.fullChargeMilliampHours)},
            {"designMilliampHours", orNull(health.designMilliampHours)},
            {"manufacturer", orNull(health.manufacturer)},
            {"model", orNull(health.model)},
            {"technology", orNull(health.technology)}};
}

}  // namespace

std::string iso8601(WallTime time) {
    // Whole milliseconds first: flooring the clock's nanoseconds straight to seconds can step
    // below the range of its own type near the earliest time it holds.
    const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
    const auto milliseconds = (sinceEpoch - seconds).count();
    const std::time_t whole = seconds.count();
    std::tm utc{};
    gmtime_r(&whole, &utc);
    char text[40];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
    std::snprintf(text + length, sizeof text - length, ".%03lldZ",
                  static_cast<long long>(milliseconds));
    return text;
}

nlohmann::ordered_json dashboardJson(const DashboardState& state, const DashboardModel& model) {
    const BatterySnapshot& s = state.snapshot;
    return {{"snapshot",
             {{"level", s.level},
              {"systemWatts", orNull(s.systemWatts)},
              {"batteryPowerWatts", orNull(s.batteryPowerWatts)},
              {"adapterWatts", orNull(s.adapterWatts)},
              {"adapterCapacityWatts", orNull(s.adapterCapacityWatts)},
              {"temperatureCelsius", orNull(s.temperatureCelsius)},
              {"timeToFullMinutes", orNull(s.timeToFullMinutes)},
              {"isConnectedToPower", s.isConnectedToPower},
              {"isCharging", s.isCharging},
              {"updatedAt", iso8601(s.updatedAt)},
              {"stateLabel", model.header.stateLine},
              {"health", healthJson(s.health)}}},
            {"lowPowerMode", orNull(state.lowPowerMode)},
            {"applications", applicationsJson(state.applications)},
            {"collectedSeconds", state.collectedSeconds},
            {"dashboard", modelJson(model)}};
}

std::string dashboardJsonLine(const DashboardState& state, const DashboardModel& model) {
    // Names come from process names and desktop files, which need not be UTF-8; JSON text must be.
    return dashboardJson(state, model)
        .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace voltaro
