#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/telemetry/BatteryRegistry.h"

namespace voltaro::testing {

// A battery whose properties the test sets; onRead runs at every read (to spend time, count...).
class FakeBatteryRegistry final : public BatteryRegistry {
  public:
    std::optional<PropertyDictionary> dictionary;
    std::optional<std::string> powerSourceType;
    std::function<void()> onRead;

    std::optional<PropertyDictionary> properties() override {
        if (onRead) {
            onRead();
        }
        return dictionary;
    }
    std::optional<std::string> providingPowerSourceType() override { return powerSourceType; }
};

}  // namespace voltaro::testing
