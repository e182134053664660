#pragma once

#include "core/monitor/BatteryMonitor.h"
#include "core/telemetry/UnavailableSMCController.h"
#include "support/FakeApplicationCatalog.h"
#include "support/FakeBatteryRegistry.h"
#include "support/FakeLowPowerModeBackend.h"
#include "support/FakeProcessSource.h"

namespace voltaro::testing {

// Everything a monitor reads from.
struct FakeMonitorServices {
    FakeBatteryRegistry registry;
    UnavailableSMCController smc;
    FakeProcessSource processes;
    FakeApplicationCatalog catalog;
    FakeLowPowerModeBackend lowPowerMode;

    BatteryMonitor::Services on(MainExecutor& executor, const Clock& clock) {
        return {registry, smc, processes, catalog, lowPowerMode, executor, clock};
    }
};

}  // namespace voltaro::testing
