#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/runtime/Clock.h"

namespace voltaro {

// One application's share of a stored minute.
struct HistoryApplication {
    std::string id;  // merge key across records
    std::string name;
    double watts = 0;
    friend bool operator==(const HistoryApplication&, const HistoryApplication&) = default;
};

// What the history keeps of one moment; whole seconds and milliwatts survive storage exactly.
struct HistoryRecord {
    WallTime time;
    std::int64_t chargePercent = 0;
    std::optional<double> systemWatts;
    std::optional<double> batteryWatts;  // positive while charge flows into the battery
    bool isConnectedToPower = false;
    bool isCharging = false;
    bool isLowPowerModeEnabled = false;
    std::vector<HistoryApplication> applications;  // ranked, most watts first
    friend bool operator==(const HistoryRecord&, const HistoryRecord&) = default;
};

}  // namespace voltaro
