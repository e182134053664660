#include "core/controls/LowPowerModeController.h"

#include <utility>

namespace voltaro {

LowPowerModeController::LowPowerModeController(LowPowerModeBackend& backend) : backend_(backend) {}

std::optional<bool> LowPowerModeController::currentValue() const {
    return backend_.currentValue();
}

void LowPowerModeController::setEnabled(bool enabled, MainExecutor& executor,
                                        Completion completion) {
    LowPowerModeBackend* backend = &backend_;
    worker_.enqueue([backend, enabled, &executor, completion = std::move(completion)]() mutable {
        auto outcome = backend->setEnabled(enabled);
        executor.post([completion = std::move(completion), outcome = std::move(outcome)] {
            completion(outcome);
        });
    });
}

}  // namespace voltaro
