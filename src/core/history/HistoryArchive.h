#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/history/HistoryStore.h"
#include "core/runtime/Clock.h"
#include "core/runtime/MainExecutor.h"
#include "core/runtime/SerialWorker.h"

namespace voltaro {

// The history behind a worker thread: the main thread hands records in and asks for them back,
// and never waits for the disk. The store is opened by the first task; a store that cannot be
// opened or written leaves an archive that keeps nothing.
class HistoryArchive {
  public:
    // Returns null when there is no store to use; then the message says why.
    using StoreOpener = std::function<std::unique_ptr<HistoryStore>(std::string& message)>;
    // Called on the worker thread, at most once per reason.
    using MessageSink = std::function<void(const std::string&)>;
    using RecordsReady = std::function<void(std::vector<HistoryRecord>)>;

    HistoryArchive(StoreOpener openStore, MainExecutor& mainExecutor, MessageSink tell,
                   const Clock& clock = SystemClock::instance());
    HistoryArchive(const HistoryArchive&) = delete;
    HistoryArchive& operator=(const HistoryArchive&) = delete;

    void append(HistoryRecord record);
    // The records since the given time, oldest first, handed to done on the main thread.
    void load(WallTime since, RecordsReady done);

  private:
    // Worker thread only.
    HistoryStore* store();
    void pruneIfDue(WallTime now);
    void passOnMessage();

    StoreOpener openStore_;
    MainExecutor& mainExecutor_;
    MessageSink tell_;
    const Clock& clock_;
    bool opened_ = false;
    std::unique_ptr<HistoryStore> store_;
    std::optional<WallTime> lastPrune_;
    SerialWorker worker_;  // last: stopped before the store it uses goes
};

}  // namespace voltaro
