#include "core/history/HistoryRecording.h"

#include <algorithm>

namespace voltaro {

HistoryRecord historyRecordOf(const BatterySnapshot& snapshot,
                              const std::vector<AppEnergy>& topApplications,
                              bool isLowPowerModeEnabled, WallTime now) {
    HistoryRecord record{
        .time = std::chrono::time_point_cast<std::chrono::seconds>(now),
        .chargePercent = std::clamp<std::int64_t>(snapshot.level, 0, 100),
        .systemWatts = snapshot.systemWatts,
        .batteryWatts = snapshot.batteryPowerWatts,
        .isConnectedToPower = snapshot.isConnectedToPower,
        .isCharging = snapshot.isCharging,
        .isLowPowerModeEnabled = isLowPowerModeEnabled,
        .applications = {},
    };
    const std::size_t kept = std::min(topApplications.size(), historyApplicationsKept);
    for (std::size_t i = 0; i < kept; ++i) {
        const AppEnergy& application = topApplications[i];
        record.applications.push_back({application.id, application.name, application.watts});
    }
    return record;
}

bool isWorthRecording(const std::optional<HistoryRecord>& lastRecorded,
                      const HistoryRecord& candidate) {
    if (!lastRecorded) {
        return true;
    }
    const bool stateChanged =
        lastRecorded->isConnectedToPower != candidate.isConnectedToPower ||
        lastRecorded->isCharging != candidate.isCharging ||
        lastRecorded->isLowPowerModeEnabled != candidate.isLowPowerModeEnabled;
    const auto elapsed = candidate.time - lastRecorded->time;
    // A clock set back starts the minute again rather than waiting for the old time.
    return stateChanged || elapsed >= historyRecordInterval || elapsed < std::chrono::seconds(0);
}

}  // namespace voltaro
