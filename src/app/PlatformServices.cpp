#include "app/PlatformServices.h"

namespace voltaro {

PlatformServices PlatformServices::make(const platform::PlatformOptions& options) {
    return {platform::makeBatteryRegistry(options), platform::makeSMCController(),
            platform::makeProcessSource(options), platform::makeApplicationCatalog(options),
            platform::makeLowPowerModeBackend()};
}

BatteryMonitor::Services PlatformServices::monitorServices(MainExecutor& mainExecutor) const {
    return {*batteryRegistry,     *smcController, *processSource,         *applicationCatalog,
            *lowPowerModeBackend, mainExecutor,   SystemClock::instance()};
}

}  // namespace voltaro
