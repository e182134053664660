#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/history/HistoryRecord.h"
#include "core/runtime/Clock.h"

namespace voltaro {

// Where the history lives. Used from one thread at a time; every failure is a value.
class HistoryStore {
  public:
    virtual ~HistoryStore() = default;

    // False when the record could not be written; the store is then unavailable.
    virtual bool append(const HistoryRecord& record) = 0;
    // Oldest first; empty when nothing can be read.
    virtual std::vector<HistoryRecord> recordsSince(WallTime since) = 0;
    // Drops what is older than the limit.
    virtual void pruneBefore(WallTime limit) = 0;
    // Why the store stopped, once, for the person running Voltaro.
    virtual std::optional<std::string> takeMessage() = 0;
};

}  // namespace voltaro
