#pragma once

#include <optional>

#include "core/history/HistoryArchive.h"
#include "core/history/HistoryRecord.h"
#include "core/monitor/BatteryMonitor.h"
#include "core/runtime/Clock.h"

namespace voltaro {

// Keeps the monitor's state in the archive after each refresh, as often as the recording rules
// ask. Main thread only; lives no longer than the monitor and the archive.
class HistoryRecorder {
  public:
    HistoryRecorder(BatteryMonitor& monitor, HistoryArchive& archive,
                    const Clock& clock = SystemClock::instance());
    ~HistoryRecorder();
    HistoryRecorder(const HistoryRecorder&) = delete;
    HistoryRecorder& operator=(const HistoryRecorder&) = delete;

  private:
    void consider();

    BatteryMonitor& monitor_;
    HistoryArchive& archive_;
    const Clock& clock_;
    std::optional<HistoryRecord> lastRecorded_;
    Observable<std::int64_t>::SubscriptionId subscription_;
};

}  // namespace voltaro
