#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace voltaro::platform {

// One prepared statement, reset after each use by whoever steps it.
class SqliteStatement {
  public:
    SqliteStatement() = default;
    SqliteStatement(sqlite3* database, std::string_view sql);

    explicit operator bool() const { return statement_ != nullptr; }
    int prepareResult() const { return prepareResult_; }

    SqliteStatement& bind(int index, std::int64_t value);
    SqliteStatement& bind(int index, std::optional<std::int64_t> value);
    SqliteStatement& bind(int index, std::string_view text);
    // SQLITE_ROW, SQLITE_DONE or the error.
    int step();
    // Steps to the end and resets; the last result code.
    int run();
    void reset();

    std::int64_t integer(int column) const;
    std::optional<std::int64_t> optionalInteger(int column) const;
    std::string text(int column) const;

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
    int prepareResult_ = SQLITE_MISUSE;
};

// An open connection; closed with the object.
class SqliteDatabase {
  public:
    // The result code of sqlite3_open_v2 is in openResult(); the handle may exist even then.
    SqliteDatabase(const std::filesystem::path& file, int flags);

    sqlite3* handle() const { return database_.get(); }
    int openResult() const { return openResult_; }
    // Runs statements without results; the result code of the first that fails, else SQLITE_OK.
    int execute(std::string_view sql);
    // The first column of the first row, if there is one.
    std::optional<std::string> firstText(std::string_view sql, int& result);
    std::string lastError() const;

  private:
    struct Closer {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    std::unique_ptr<sqlite3, Closer> database_;
    int openResult_ = SQLITE_CANTOPEN;
};

// Whether an error means the file itself is damaged rather than out of reach.
inline bool isDamage(int result) {
    const int primary = result & 0xff;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

}  // namespace voltaro::platform
