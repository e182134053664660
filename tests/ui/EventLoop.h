#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

namespace voltaro::ui {

// Spins the event loop until the condition holds or a generous deadline passes; calls between
// objects of this one process cannot block, as both ends need the loop.
template <typename Condition>
bool processEventsUntil(Condition condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && elapsed.elapsed() < 5000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return condition();
}

}  // namespace voltaro::ui
