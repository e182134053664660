#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/energy/AppEnergy.h"
#include "core/monitor/BatteryMonitor.h"
#include "core/telemetry/BatterySnapshot.h"

namespace voltaro {

// What the terminal front end prints at one refresh, copied out of the monitor.
struct DashboardState {
    BatterySnapshot snapshot;
    std::optional<bool> lowPowerMode;  // nothing until the system has told it
    std::vector<AppEnergy> applications;
    double collectedSeconds = 0;
    std::string windowLabel;

    static DashboardState of(BatteryMonitor& monitor);
};

}  // namespace voltaro
