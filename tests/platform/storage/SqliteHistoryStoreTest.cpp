#include "platform/storage/SqliteHistoryStore.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "support/TemporaryDirectory.h"

namespace voltaro::platform {
namespace {

using namespace std::chrono_literals;
using Status = HistoryOpening::Status;

const WallTime now{std::chrono::seconds(1'800'000'000)};

HistoryRecord recordAt(WallTime time, std::int64_t charge, bool charging) {
    return {.time = time,
            .chargePercent = charge,
            .systemWatts = 7.25,
            .batteryWatts = -3.5,
            .isConnectedToPower = charging,
            .isCharging = charging,
            .isLowPowerModeEnabled = !charging,
            .applications = {{"firefox", "Firefox", 2.125}, {"code", "Code", 0.5}}};
}

struct SqliteHistoryStoreTest : ::testing::Test {
    testing::TemporaryDirectory directory;
    std::filesystem::path file = directory / "state/voltaro/history.sqlite";
};

// Whole seconds and milliwatts come back exactly; a second writer is refused while the first
// holds the file, and a reader works beside it.
TEST_F(SqliteHistoryStoreTest, RecordsRoundTripOneWriterHoldsItAndOldRecordsArePruned) {
    HistoryOpening writer = SqliteHistoryStore::openForWriting(file, now);
    ASSERT_EQ(writer.status, Status::ready) << writer.message;
    HistoryRecord unknown = recordAt(now - 1min, 40, false);
    unknown.systemWatts = unknown.batteryWatts = std::nullopt;
    unknown.applications.clear();
    const std::vector<HistoryRecord> written = {recordAt(now - 31 * 24h, 90, true), unknown,
                                                recordAt(now, 41, true)};
    for (const HistoryRecord& record : written) {
        ASSERT_TRUE(writer.store->append(record));
    }
    EXPECT_EQ(writer.store->recordsSince(now - 40 * 24h), written);

    const HistoryOpening second = SqliteHistoryStore::openForWriting(file, now);
    EXPECT_EQ(second.status, Status::inUse);
    EXPECT_NE(second.message.find("in use"), std::string::npos) << second.message;

    writer.store->pruneBefore(now - 30 * 24h);
    const HistoryOpening reader = SqliteHistoryStore::openForReading(file);
    ASSERT_EQ(reader.status, Status::ready) << reader.message;
    EXPECT_EQ(reader.store->recordsSince(now - 40 * 24h),
              std::vector<HistoryRecord>(written.begin() + 1, written.end()));
    EXPECT_EQ(reader.store->recordsSince(now - 30s).size(), 1u);

    writer.store.reset();
    EXPECT_EQ(SqliteHistoryStore::openForWriting(file, now).status, Status::ready);
    EXPECT_EQ(SqliteHistoryStore::openForReading(directory / "none.sqlite").status,
              Status::missing);
}

// Nothing throws, nothing the user had is deleted, and a damaged file gives way to a new one.
TEST_F(SqliteHistoryStoreTest, DamagedFilesAreSetAsideAndUnreachableOnesLeaveNoStore) {
    const struct {
        const char* name;
        std::function<void(const std::filesystem::path&)> spoil;
        Status status;
        const char* says;
    } cases[] = {
        {"not a database", [](const auto& f) { std::ofstream(f) << std::string(5000, 'x'); },
         Status::ready, "moved it to"},
        {"pages overwritten",
         [](const auto& f) {
             {
                 auto store = SqliteHistoryStore::openForWriting(f, now).store;
                 for (int minute = 0; minute < 2000; ++minute) {
                     store->append(recordAt(now + minute * 1min, minute % 100, false));
                 }
             }
             std::fstream bytes(f, std::ios::in | std::ios::out | std::ios::binary);
             bytes.seekp(4096 * 3);
             bytes << std::string(4096 * 2, '\x7f');
         },
         Status::ready, "moved it to"},
        {"a file where the folder should be",
         [](const auto& f) {
             std::filesystem::remove_all(f.parent_path());
             std::ofstream(f.parent_path()) << "x";
         },
         Status::unavailable, "running without history"},
        {"read-only folder",
         [](const auto& f) {
             std::filesystem::permissions(f.parent_path(), std::filesystem::perms::owner_read |
                                                               std::filesystem::perms::owner_exec);
         },
         Status::unavailable, "running without history"},
    };
    for (const auto& c : cases) {
        if (std::string_view(c.name) == "read-only folder" && ::geteuid() == 0) {
            continue;  // root writes anywhere
        }
        testing::TemporaryDirectory scratch;
        const std::filesystem::path spoiled = scratch / "voltaro/history.sqlite";
        std::filesystem::create_directories(spoiled.parent_path());
        c.spoil(spoiled);
        EXPECT_NE(SqliteHistoryStore::openForReading(spoiled).status, Status::ready) << c.name;
        const HistoryOpening opening = SqliteHistoryStore::openForWriting(spoiled, now);
        EXPECT_EQ(opening.status, c.status) << c.name;
        EXPECT_NE(opening.message.find(c.says), std::string::npos) << c.name << opening.message;
        if (c.status == Status::ready) {
            ASSERT_TRUE(opening.store) << c.name;
            EXPECT_TRUE(opening.store->append(recordAt(now, 50, true))) << c.name;
            EXPECT_EQ(opening.store->recordsSince(now).size(), 1u) << c.name;
            EXPECT_TRUE(std::filesystem::exists(spoiled.string() + ".corrupt-20270115T080000Z"))
                << c.name;
        }
        std::filesystem::permissions(spoiled.parent_path(), std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add);
    }
}

}  // namespace
}  // namespace voltaro::platform
