#include "ui/QtMainExecutor.h"

#include <QMetaObject>
#include <utility>

namespace voltaro::ui {

QtMainExecutor::QtMainExecutor() : context_(std::make_unique<QObject>()) {}

QtMainExecutor::~QtMainExecutor() = default;

void QtMainExecutor::post(Task task) {
    QMetaObject::invokeMethod(context_.get(), std::move(task), Qt::QueuedConnection);
}

MainExecutor::TimerId QtMainExecutor::runAfter(std::chrono::milliseconds delay, Task task) {
    const TimerId id = ++lastTimer_;
    auto timer = std::make_unique<QTimer>();
    timer->setSingleShot(true);
    timer->setTimerType(Qt::CoarseTimer);  // lets the system bundle wake-ups
    QObject::connect(timer.get(), &QTimer::timeout, context_.get(),
                     [this, id, task = std::move(task)] {
                         // The timer is inside its own signal: delete it once control returns
                         // to the event loop, which keeps this task alive while it runs.
                         if (auto fired = timers_.extract(id)) {
                             fired.mapped().release()->deleteLater();
                         }
                         task();
                     });
    timer->start(delay);
    timers_.emplace(id, std::move(timer));
    return id;
}

void QtMainExecutor::cancel(TimerId timer) {
    timers_.erase(timer);
}

}  // namespace voltaro::ui
