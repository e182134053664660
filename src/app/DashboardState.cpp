#include "app/DashboardState.h"

namespace voltaro {

DashboardState DashboardState::of(BatteryMonitor& monitor) {
    return DashboardState{
        .snapshot = monitor.snapshot().get(),
        .lowPowerMode = monitor.isLowPowerModeKnown().get()
                            ? std::optional<bool>(monitor.isLowPowerModeEnabled().get())
                            : std::nullopt,
        .applications = monitor.topApplications().get(),
        .collectedSeconds = monitor.appEnergyWindowDuration().get(),
        .windowLabel = monitor.appEnergyWindowLabel(),
    };
}

}  // namespace voltaro
