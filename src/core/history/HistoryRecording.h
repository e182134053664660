#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include "core/energy/AppEnergy.h"
#include "core/history/HistoryRecord.h"
#include "core/telemetry/BatterySnapshot.h"

namespace voltaro {

// One record a minute is enough for a chart of hours and days; changes of state come at once so
// that a charging period starts where it really started.
constexpr std::chrono::seconds historyRecordInterval{60};
constexpr std::size_t historyApplicationsKept = 5;
constexpr std::chrono::days historyKeptFor{30};

// The record of the monitor's present state, at whole seconds.
HistoryRecord historyRecordOf(const BatterySnapshot& snapshot,
                              const std::vector<AppEnergy>& topApplications,
                              bool isLowPowerModeEnabled, WallTime now);

// Whether the candidate is stored, given the last record stored in this run.
bool isWorthRecording(const std::optional<HistoryRecord>& lastRecorded,
                      const HistoryRecord& candidate);

}  // namespace voltaro
