#pragma once

#include <QObject>
#include <QTimer>
#include <map>
#include <memory>

#include "core/common/MainExecutor.h"

namespace voltaro::ui {

// The main thread's queue on the Qt event loop.
class QtMainExecutor final : public MainExecutor {
  public:
    QtMainExecutor();
    ~QtMainExecutor() override;

    void post(Task task) override;
    TimerId runAfter(std::chrono::milliseconds delay, Task task) override;
    void cancel(TimerId timer) override;

  private:
    // Posted tasks are delivered to this object, so none runs after the executor is gone.
    std::unique_ptr<QObject> context_;
    std::map<TimerId, std::unique_ptr<QTimer>> timers_;
    TimerId lastTimer_ = 0;
};

}  // namespace voltaro::ui
