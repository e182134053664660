#include "platform/storage/SqliteHistoryStore.h"

#include <time.h>

#include <cmath>
#include <system_error>
#include <utility>

namespace voltaro::platform {
namespace {

// Watts as whole milliwatts: exact enough for a chart, and a few bytes a value.
constexpr std::string_view schema = R"(
CREATE TABLE IF NOT EXISTS records(
    time INTEGER PRIMARY KEY,
    charge_percent INTEGER NOT NULL,
    system_milliwatts INTEGER,
    battery_milliwatts INTEGER,
    adapter_connected INTEGER NOT NULL,
    charging INTEGER NOT NULL,
    low_power_mode INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS applications(
    id INTEGER PRIMARY KEY,
    key TEXT NOT NULL UNIQUE,
    name TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS record_applications(
    time INTEGER NOT NULL,
    application INTEGER NOT NULL,
    milliwatts INTEGER NOT NULL,
    PRIMARY KEY(time, application)) WITHOUT ROWID;
PRAGMA user_version = 1;
)";

using Status = HistoryOpening::Status;

std::optional<std::int64_t> milliwatts(const std::optional<double>& watts) {
    if (!watts || !std::isfinite(*watts)) {
        return std::nullopt;
    }
    return std::llround(*watts * 1000);
}

std::optional<double> watts(const std::optional<std::int64_t>& milliwatts) {
    if (!milliwatts) {
        return std::nullopt;
    }
    return static_cast<double>(*milliwatts) / 1000;
}

std::int64_t unixSeconds(WallTime time) {
    return std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count();
}

HistoryOpening unavailable(std::string message) {
    return {Status::unavailable, nullptr,
            "voltaro: " + std::move(message) + "; running without history"};
}

// The damaged file and its log keep their data under a name that says what happened.
std::optional<std::filesystem::path> moveAside(const std::filesystem::path& file, WallTime now) {
    const time_t seconds = static_cast<time_t>(unixSeconds(now));
    tm utc{};
    gmtime_r(&seconds, &utc);
    char stamp[32] = {};
    strftime(stamp, sizeof stamp, "%Y%m%dT%H%M%SZ", &utc);
    std::filesystem::path aside = file;
    aside += std::string(".corrupt-") + stamp;
    std::error_code error;
    std::filesystem::rename(file, aside, error);
    if (error) {
        return std::nullopt;
    }
    for (const char* suffix : {"-wal", "-shm"}) {
        std::filesystem::path companion = file;
        companion += suffix;
        std::filesystem::path companionAside = aside;
        companionAside += suffix;
        std::filesystem::rename(companion, companionAside, error);
    }
    return aside;
}

// SQLITE_OK when the file is a sound history ready for writing.
int checkAndPrepare(SqliteDatabase& database) {
    int result = SQLITE_OK;
    const std::optional<std::string> check = database.firstText("PRAGMA quick_check", result);
    if (result != SQLITE_OK) {
        return result;
    }
    if (check != "ok") {
        return SQLITE_CORRUPT;
    }
    const std::optional<std::string> journal =
        database.firstText("PRAGMA journal_mode=WAL", result);
    if (result != SQLITE_OK) {
        return result;
    }
    if (journal != "wal") {
        return SQLITE_CANTOPEN;
    }
    // Losing the last minute to a power cut is fine; syncing every minute is not. The log grows to
    // about 4 MB between checkpoints and is cut back to 1 MB after each.
    result = database.execute("PRAGMA synchronous=NORMAL; PRAGMA journal_size_limit=1048576");
    return result == SQLITE_OK ? database.execute(schema) : result;
}

}  // namespace

SqliteHistoryStore::SqliteHistoryStore(std::filesystem::path file,
                                       std::unique_ptr<SqliteDatabase> database,
                                       HistoryFileLock lock)
    : file_(std::move(file)), database_(std::move(database)), lock_(std::move(lock)) {}

HistoryOpening SqliteHistoryStore::openForWriting(const std::filesystem::path& file, WallTime now) {
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    if (error) {
        return unavailable("cannot create " + file.parent_path().string() + " (" + error.message() +
                           ")");
    }
    HistoryFileLock lock;
    std::filesystem::path lockFile = file;
    lockFile += ".lock";
    switch (HistoryFileLock::claim(lockFile, lock)) {
        case HistoryFileLock::Result::held:
            break;
        case HistoryFileLock::Result::heldElsewhere:
            return {Status::inUse, nullptr,
                    "voltaro: the history in " + file.string() +
                        " is in use by another Voltaro; running without history"};
        case HistoryFileLock::Result::failed:
            return unavailable("cannot write in " + file.parent_path().string());
    }
    std::string notes;
    for (int attempt = 0;; ++attempt) {
        auto database =
            std::make_unique<SqliteDatabase>(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        int result = database->openResult();
        if (result == SQLITE_OK) {
            result = checkAndPrepare(*database);
        }
        if (result == SQLITE_OK) {
            auto store =
                std::make_unique<SqliteHistoryStore>(file, std::move(database), std::move(lock));
            if (store->prepareWriting()) {
                return {Status::ready, std::move(store), notes};
            }
            return unavailable(*store->takeMessage());
        }
        const std::string reason = database->lastError();
        if (!isDamage(result) || attempt > 0) {
            return unavailable("cannot open the history in " + file.string() + " (" + reason + ")");
        }
        database.reset();
        const std::optional<std::filesystem::path> aside = moveAside(file, now);
        if (!aside) {
            return unavailable("the history in " + file.string() + " is damaged (" + reason +
                               ") and cannot be moved aside");
        }
        notes = "voltaro: the history in " + file.string() + " was damaged (" + reason +
                "); moved it to " + aside->string() + " and started a new one";
    }
}

HistoryOpening SqliteHistoryStore::openForReading(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        return {Status::missing, nullptr, "voltaro: no history recorded yet in " + file.string()};
    }
    auto database = std::make_unique<SqliteDatabase>(file, SQLITE_OPEN_READONLY);
    // SQLite opens any file; a damaged one would otherwise read as an empty history.
    int result = database->openResult();
    if (result == SQLITE_OK && database->firstText("PRAGMA quick_check", result) != "ok" &&
        result == SQLITE_OK) {
        result = SQLITE_CORRUPT;
    }
    if (result != SQLITE_OK) {
        return {Status::unavailable, nullptr,
                "voltaro: cannot read the history in " + file.string() + " (" +
                    sqlite3_errstr(result) + ")"};
    }
    return {Status::ready,
            std::make_unique<SqliteHistoryStore>(file, std::move(database), HistoryFileLock()), ""};
}

bool SqliteHistoryStore::prepareWriting() {
    sqlite3* const handle = database_->handle();
    insertRecord_ = SqliteStatement(handle, "INSERT OR REPLACE INTO records VALUES(?,?,?,?,?,?,?)");
    clearApplications_ = SqliteStatement(handle, "DELETE FROM record_applications WHERE time=?");
    nameApplication_ = SqliteStatement(handle,
                                       "INSERT INTO applications(key,name) VALUES(?,?) "
                                       "ON CONFLICT(key) DO UPDATE SET name=excluded.name "
                                       "RETURNING id");
    insertApplication_ =
        SqliteStatement(handle, "INSERT OR REPLACE INTO record_applications VALUES(?,?,?)");
    if (!insertRecord_ || !clearApplications_ || !nameApplication_ || !insertApplication_) {
        return fail("prepare");
    }
    return true;
}

bool SqliteHistoryStore::append(const HistoryRecord& record) {
    if (!insertRecord_ || database_->execute("BEGIN IMMEDIATE") != SQLITE_OK) {
        return fail("write");
    }
    const std::int64_t time = unixSeconds(record.time);
    bool written = insertRecord_.bind(1, time)
                           .bind(2, record.chargePercent)
                           .bind(3, milliwatts(record.systemWatts))
                           .bind(4, milliwatts(record.batteryWatts))
                           .bind(5, std::int64_t{record.isConnectedToPower})
                           .bind(6, std::int64_t{record.isCharging})
                           .bind(7, std::int64_t{record.isLowPowerModeEnabled})
                           .run() == SQLITE_DONE &&
                   clearApplications_.bind(1, time).run() == SQLITE_DONE;
    for (const HistoryApplication& application : record.applications) {
        if (!written) {
            break;
        }
        nameApplication_.bind(1, application.id).bind(2, application.name);
        written = nameApplication_.step() == SQLITE_ROW;
        const std::int64_t id = nameApplication_.integer(0);
        written = nameApplication_.run() == SQLITE_DONE && written;
        written = written && insertApplication_.bind(1, time)
                                     .bind(2, id)
                                     .bind(3, milliwatts(application.watts).value_or(0))
                                     .run() == SQLITE_DONE;
    }
    if (!written || database_->execute("COMMIT") != SQLITE_OK) {
        const bool failed = fail("write");
        database_->execute("ROLLBACK");
        return failed;
    }
    return true;
}

std::vector<HistoryRecord> SqliteHistoryStore::recordsSince(WallTime since) {
    std::vector<HistoryRecord> records;
    sqlite3* const handle = database_->handle();
    // One read transaction, so both queries see the same moment of the writer.
    database_->execute("BEGIN");
    SqliteStatement rows(handle, "SELECT * FROM records WHERE time>=? ORDER BY time");
    SqliteStatement applications(handle,
                                 "SELECT r.time, a.key, a.name, r.milliwatts "
                                 "FROM record_applications r JOIN applications a "
                                 "ON a.id=r.application WHERE r.time>=? "
                                 "ORDER BY r.time, r.milliwatts DESC");
    if (!rows || !applications) {
        database_->execute("ROLLBACK");
        return records;
    }
    rows.bind(1, unixSeconds(since));
    while (rows.step() == SQLITE_ROW) {
        records.push_back({
            .time = WallTime(std::chrono::seconds(rows.integer(0))),
            .chargePercent = rows.integer(1),
            .systemWatts = watts(rows.optionalInteger(2)),
            .batteryWatts = watts(rows.optionalInteger(3)),
            .isConnectedToPower = rows.integer(4) != 0,
            .isCharging = rows.integer(5) != 0,
            .isLowPowerModeEnabled = rows.integer(6) != 0,
            .applications = {},
        });
    }
    applications.bind(1, unixSeconds(since));
    auto record = records.begin();
    while (applications.step() == SQLITE_ROW) {
        const WallTime time{std::chrono::seconds(applications.integer(0))};
        while (record != records.end() && record->time < time) {
            ++record;
        }
        if (record != records.end() && record->time == time) {
            record->applications.push_back({applications.text(1), applications.text(2),
                                            *watts(applications.optionalInteger(3))});
        }
    }
    database_->execute("COMMIT");
    return records;
}

void SqliteHistoryStore::pruneBefore(WallTime limit) {
    const std::int64_t time = unixSeconds(limit);
    sqlite3* const handle = database_->handle();
    database_->execute("BEGIN IMMEDIATE");
    SqliteStatement(handle, "DELETE FROM record_applications WHERE time<?").bind(1, time).run();
    SqliteStatement(handle, "DELETE FROM records WHERE time<?").bind(1, time).run();
    database_->execute(
        "DELETE FROM applications WHERE id NOT IN (SELECT application FROM record_applications)");
    database_->execute("COMMIT");
}

std::optional<std::string> SqliteHistoryStore::takeMessage() {
    return std::exchange(message_, std::nullopt);
}

bool SqliteHistoryStore::fail(const char* doing) {
    message_ = "voltaro: could not " + std::string(doing) + " the history in " + file_.string() +
               " (" + database_->lastError() + "); running without history";
    return false;
}

}  // namespace voltaro::platform
