#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/history/HistoryStore.h"
#include "platform/storage/HistoryFileLock.h"
#include "platform/storage/SqliteDatabase.h"

namespace voltaro::platform {

class SqliteHistoryStore;

struct HistoryOpening {
    enum class Status { ready, missing, inUse, unavailable };
    Status status = Status::unavailable;
    std::unique_ptr<SqliteHistoryStore> store;  // set when ready
    std::string message;                        // for stderr; may be set when ready too
};

// The history in one SQLite file with write-ahead logging. One writer holds it at a time; readers
// open it read-only beside that writer.
class SqliteHistoryStore final : public HistoryStore {
  public:
    // The writer: creates what is missing, sets a damaged file aside and starts again.
    static HistoryOpening openForWriting(const std::filesystem::path& file, WallTime now);
    // A reader that changes nothing; a file not written yet is missing.
    static HistoryOpening openForReading(const std::filesystem::path& file);

    bool append(const HistoryRecord& record) override;
    std::vector<HistoryRecord> recordsSince(WallTime since) override;
    void pruneBefore(WallTime limit) override;
    std::optional<std::string> takeMessage() override;

    SqliteHistoryStore(std::filesystem::path file, std::unique_ptr<SqliteDatabase> database,
                       HistoryFileLock lock);

  private:
    bool prepareWriting();
    bool fail(const char* doing);

    std::filesystem::path file_;
    std::unique_ptr<SqliteDatabase> database_;
    HistoryFileLock lock_;
    std::optional<std::string> message_;
    SqliteStatement insertRecord_;
    SqliteStatement clearApplications_;
    SqliteStatement nameApplication_;
    SqliteStatement insertApplication_;
};

}  // namespace voltaro::platform
