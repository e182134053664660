#include "platform/storage/SqliteDatabase.h"

#include <string>

namespace voltaro::platform {

SqliteStatement::SqliteStatement(sqlite3* database, std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    prepareResult_ = sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    statement_.reset(statement);
}

SqliteStatement& SqliteStatement::bind(int index, std::int64_t value) {
    sqlite3_bind_int64(statement_.get(), index, value);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, std::optional<std::int64_t> value) {
    if (value) {
        return bind(index, *value);
    }
    sqlite3_bind_null(statement_.get(), index);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, std::string_view text) {
    sqlite3_bind_text(statement_.get(), index, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

int SqliteStatement::step() {
    return sqlite3_step(statement_.get());
}

int SqliteStatement::run() {
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW) {
        result = step();
    }
    reset();
    return result;
}

void SqliteStatement::reset() {
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
}

std::int64_t SqliteStatement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::optional<std::int64_t> SqliteStatement::optionalInteger(int column) const {
    if (sqlite3_column_type(statement_.get(), column) == SQLITE_NULL) {
        return std::nullopt;
    }
    return integer(column);
}

std::string SqliteStatement::text(int column) const {
    const auto* bytes = sqlite3_column_text(statement_.get(), column);
    return bytes == nullptr
               ? std::string()
               : std::string(
                     reinterpret_cast<const char*>(bytes),
                     static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
}

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file, int flags) {
    sqlite3* database = nullptr;
    openResult_ = sqlite3_open_v2(file.c_str(), &database, flags, nullptr);
    database_.reset(database);
    if (database != nullptr) {
        sqlite3_extended_result_codes(database, 1);
        // A reader meeting the writer's checkpoint waits a moment instead of failing.
        sqlite3_busy_timeout(database, 2000);
    }
}

int SqliteDatabase::execute(std::string_view sql) {
    return sqlite3_exec(database_.get(), std::string(sql).c_str(), nullptr, nullptr, nullptr);
}

std::optional<std::string> SqliteDatabase::firstText(std::string_view sql, int& result) {
    SqliteStatement statement(database_.get(), sql);
    result = statement.prepareResult();
    if (!statement) {
        return std::nullopt;
    }
    result = statement.step();
    if (result != SQLITE_ROW) {
        return std::nullopt;
    }
    result = SQLITE_OK;
    return statement.text(0);
}

std::string SqliteDatabase::lastError() const {
    return database_ ? sqlite3_errmsg(database_.get()) : "out of memory";
}

}  // namespace voltaro::platform
