#include "ui/QtMainExecutor.h"

#include <QMetaObject>
#include <utility>

namespace voltaro::ui {

QtMainExecutor::QtMainExecutor() : context_(std::make_unique<QObject>()) {}

QtMainExecutor::~QtMainExecutor() = default;

void QtMainExecutor::post(Task task) {
    bool wakeUp = false;
    {
        const std::lock_guard lock(postedMutex_);
        wakeUp = posted_.empty();
        posted_.push_back(std::move(task));
    }
    // One wake-up serves every task posted before it runs.
    if (wakeUp) {
        QMetaObject::invokeMethod(
            context_.get(), [this] { runPosted(); }, Qt::QueuedConnection);
    }
}

void QtMainExecutor::runPosted() {
    std::deque<Task> tasks;
    {
        const std::lock_guard lock(postedMutex_);
        tasks.swap(posted_);
    }
    for (Task& task : tasks) {
        task();
    }
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
