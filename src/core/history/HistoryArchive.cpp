#include "core/history/HistoryArchive.h"

#include <utility>

#include "core/history/HistoryRecording.h"

namespace voltaro {

HistoryArchive::HistoryArchive(StoreOpener openStore, MainExecutor& mainExecutor, MessageSink tell,
                               const Clock& clock)
    : openStore_(std::move(openStore)),
      mainExecutor_(mainExecutor),
      tell_(std::move(tell)),
      clock_(clock) {}

void HistoryArchive::append(HistoryRecord record) {
    worker_.enqueue([this, record = std::move(record)] {
        HistoryStore* const history = store();
        if (history == nullptr) {
            return;
        }
        pruneIfDue(record.time);
        if (!history->append(record)) {
            passOnMessage();
            store_.reset();
        }
    });
}

void HistoryArchive::load(WallTime since, RecordsReady done) {
    worker_.enqueue([this, since, done = std::move(done)]() mutable {
        std::vector<HistoryRecord> records;
        if (HistoryStore* const history = store()) {
            records = history->recordsSince(since);
        }
        mainExecutor_.post([done = std::move(done), records = std::move(records)]() mutable {
            done(std::move(records));
        });
    });
}

HistoryStore* HistoryArchive::store() {
    if (!opened_) {
        opened_ = true;
        std::string message;
        store_ = openStore_(message);
        if (!message.empty() && tell_) {
            tell_(message);
        }
        if (store_) {
            pruneIfDue(clock_.wallNow());
        }
    }
    return store_.get();
}

void HistoryArchive::pruneIfDue(WallTime now) {
    if (lastPrune_ && now - *lastPrune_ < std::chrono::hours(24) && now >= *lastPrune_) {
        return;
    }
    lastPrune_ = now;
    store_->pruneBefore(now - historyKeptFor);
}

void HistoryArchive::passOnMessage() {
    if (const std::optional<std::string> message = store_->takeMessage(); message && tell_) {
        tell_(*message);
    }
}

}  // namespace voltaro
