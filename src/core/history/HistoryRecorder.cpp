#include "core/history/HistoryRecorder.h"

#include "core/history/HistoryRecording.h"

namespace voltaro {

HistoryRecorder::HistoryRecorder(BatteryMonitor& monitor, HistoryArchive& archive,
                                 const Clock& clock)
    : monitor_(monitor), archive_(archive), clock_(clock) {
    subscription_ = monitor_.refreshCount().subscribe([this](std::int64_t) { consider(); });
}

HistoryRecorder::~HistoryRecorder() {
    monitor_.refreshCount().unsubscribe(subscription_);
}

void HistoryRecorder::consider() {
    const BatterySnapshot& snapshot = monitor_.snapshot().get();
    // A machine without a readable battery has no history worth keeping.
    if (snapshot == BatterySnapshot::empty()) {
        return;
    }
    HistoryRecord candidate =
        historyRecordOf(snapshot, monitor_.topApplications().get(),
                        monitor_.isLowPowerModeEnabled().get(), clock_.wallNow());
    if (!isWorthRecording(lastRecorded_, candidate)) {
        return;
    }
    lastRecorded_ = candidate;
    archive_.append(std::move(candidate));
}

}  // namespace voltaro
