#pragma once

#include "core/telemetry/BatteryRegistry.h"
#include "platform/macos/CoreFoundationCalls.h"
#include "platform/macos/IOKitCalls.h"

namespace voltaro::platform {

// The "AppleSmartBattery" registry entry's properties and the power-source service's providing
// source type. Every object it is handed to own is released before a call returns.
class IOKitBatteryRegistry final : public BatteryRegistry {
  public:
    IOKitBatteryRegistry(IOKitCalls ioKit, PowerSourceCalls powerSources,
                         CoreFoundationCalls coreFoundation);

    std::optional<PropertyDictionary> properties() override;
    std::optional<std::string> providingPowerSourceType() override;

  private:
    IOKitCalls ioKit_;
    PowerSourceCalls powerSources_;
    CoreFoundationCalls coreFoundation_;
};

}  // namespace voltaro::platform
