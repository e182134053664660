#include "app/RefreshTrace.h"

#include <chrono>

namespace voltaro {

RefreshTrace::RefreshTrace(BatteryMonitor& monitor, MainExecutor& mainExecutor, const Clock& clock,
                           std::ostream& out, DescribeScreen describeScreen)
    : monitor_(monitor),
      mainExecutor_(mainExecutor),
      clock_(clock),
      out_(out),
      describeScreen_(std::move(describeScreen)),
      start_(clock.monotonicNow()) {
    subscription_ = monitor_.refreshCount().subscribe([this](std::int64_t refresh) {
        // The count changes halfway through a refresh; the screen catches up after it.
        const MonotonicTime at = clock_.monotonicNow();
        mainExecutor_.post([this, refresh, at, alive = std::weak_ptr<bool>(alive_)] {
            if (alive.lock()) {
                write(refresh, at);
            }
        });
    });
}

RefreshTrace::~RefreshTrace() {
    monitor_.refreshCount().unsubscribe(subscription_);
}

void RefreshTrace::write(std::int64_t refresh, MonotonicTime at) {
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    const auto elapsed = duration_cast<milliseconds>(at - start_).count();
    const BatterySnapshot& snapshot = monitor_.snapshot().get();
    out_ << "refresh " << refresh << " at " << elapsed << " ms: level " << snapshot.level << ", "
         << snapshot.stateLabel();
    if (describeScreen_) {
        out_ << "; screen: " << describeScreen_();
    }
    out_ << std::endl;
}

}  // namespace voltaro
