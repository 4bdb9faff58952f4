// User records in the run database against raw LMDB: the same names, values, batches and sync mode,
// each in a new database; and a page of the 50 newest of a growing list. AAADOM_BENCH_RECORDS is
// the length of the longest list, a million when it is not set, 20000 in quick mode.
#include <aaadom/aaadom.h>
#include <lmdb.h>
#include <platform/dbm.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include "race.h"
#include "timing.h"
#include "workspace.h"

namespace bench {
namespace {

constexpr uint32_t kPage = 50;

uint32_t LongestList(const Extent& extent) {
    const char* text = getenv("AAADOM_BENCH_RECORDS");
    const long number = text == nullptr ? 0 : strtol(text, nullptr, 10);
    if (number >= 1000) return static_cast<uint32_t>(number);
    return extent.quick ? 20000 : 1000000;
}

UserRecord SomeRecord() {
    UserRecord record{};
    record.second_number = 26;
    strcpy(record.first_name, "isp0500.example.net");
    strcpy(record.second_name, "alice@isp0500.example.net");
    strcpy(record.interface_name, "Ten-GigabitEthernet1/0/1");
    return record;
}

/// The library's run database in a directory of its own.
class RunDb {
  public:
    RunDb() {
        (void)DBM_SetRoot(nullptr, directory_.Path().c_str());
        DOM_SetRecordRunDBHandle(DOM_CreateRecordRunDB());
        good_ = DOM_CreateAllRecordDBAvlList() == DOM_OK;
    }
    ~RunDb() { (void)DOM_DestroyRecordRunDB(); }
    bool Good() const { return good_; }
    bool Fill(uint32_t count, uint32_t batch) {
        const DBM_HANDLE handle = DOM_GetRecordRunDBHandle();
        UserRecord record = SomeRecord();
        while (record.serial < count) {
            bool stored = batch == 1 || DBM_Begin(handle) == 0;
            for (uint32_t i = 0; i < batch && record.serial < count; ++i) {
                ++record.serial;
                stored &= DOM_SetOnlineFailedRecordInfoToRunDB(&record) == DOM_OK;
            }
            if (batch != 1) stored &= DBM_Commit(handle) == 0;
            if (!stored) return false;
        }
        return true;
    }
    static uint32_t ReadPage(char* buffer, uint32_t size) {
        DBM_CURSOR* cursor = nullptr;
        if (DBM_CursorOpen(DOM_GetRecordRunDBHandle(), DOM_RUN_DB_KEY_ONLINE_FAIL,
                           DOM_RUN_DB_KEY_ONLINE_FAIL_LEN, &cursor) != 0)
            return 0;
        uint32_t read = 0;
        for (int32_t got = DBM_CursorLast(cursor, size, buffer); got > 0;
             got = DBM_CursorPrev(cursor, size, buffer)) {
            if (++read == kPage) break;
        }
        DBM_CursorClose(cursor);
        return read;
    }

  private:
    Directory directory_{"records"};
    bool good_ = false;
};

/// LMDB alone: one unnamed table, not synced, as the run database is not.
class RawDb {
  public:
    RawDb() {
        const std::string path = directory_.Path() + "/raw";
        std::filesystem::create_directory(path);
        MDB_txn* txn = nullptr;
        good_ = mdb_env_create(&env_) == 0 && mdb_env_set_mapsize(env_, size_t{4} << 30) == 0 &&
                mdb_env_open(env_, path.c_str(), MDB_NOSYNC, 0600) == 0 &&
                mdb_txn_begin(env_, nullptr, 0, &txn) == 0 &&
                mdb_dbi_open(txn, nullptr, 0, &dbi_) == 0 && mdb_txn_commit(txn) == 0;
    }
    ~RawDb() { mdb_env_close(env_); }
    bool Good() const { return good_; }
    bool Fill(uint32_t count, uint32_t batch) {
        // The name under which the run database stores an entry: tag, key length, key, serial.
        uint8_t name[3 + DOM_RUN_DB_KEY_ONLINE_FAIL_LEN + 8] = {4, 0,
                                                                DOM_RUN_DB_KEY_ONLINE_FAIL_LEN};
        memcpy(name + 3, DOM_RUN_DB_KEY_ONLINE_FAIL, DOM_RUN_DB_KEY_ONLINE_FAIL_LEN);
        UserRecord record = SomeRecord();
        uint8_t bytes[1024];
        while (record.serial < count) {
            MDB_txn* txn = nullptr;
            if (mdb_txn_begin(env_, nullptr, 0, &txn) != 0) return false;
            for (uint32_t i = 0; i < batch && record.serial < count; ++i) {
                ++record.serial;
                for (size_t byte = 0; byte < 8; ++byte)
                    name[sizeof name - 1 - byte] = static_cast<uint8_t>(record.serial >> 8 * byte);
                if (length_ == 0)
                    length_ = DOM_userrecord_tlv_EncodeUserRecordStlv(&record, sizeof bytes, bytes);
                memcpy(bytes + DOM_RUN_DB_SERIAL_OFFSET, &record.serial, DOM_RUN_DB_SERIAL_SIZE);
                MDB_val key{sizeof name, name};
                MDB_val value{length_, bytes};
                if (mdb_put(txn, dbi_, &key, &value, MDB_NOOVERWRITE) != 0) return false;
            }
            if (mdb_txn_commit(txn) != 0) return false;
        }
        return true;
    }

  private:
    Directory directory_{"records"};
    MDB_env* env_ = nullptr;
    MDB_dbi dbi_ = 0;
    uint32_t length_ = 0;
    bool good_ = false;
};

/// One window fills a new database; making it does not count.
template <class Database>
Window Insert(uint32_t count, uint32_t batch) {
    return [=](double) {
        Database database;
        Demand(database.Good(), "opening a database of records");
        const auto start = Clock::now();
        Demand(database.Fill(count, batch), "inserting records");
        return SecondsSince(start) * 1e9 / count;
    };
}

std::vector<Contestant> PrepareInsert(uint32_t count, uint32_t batch) {
    return {{"run database", Insert<RunDb>(count, batch)},
            {"raw LMDB", Insert<RawDb>(count, batch)}};
}

/// In this process; the shared root of run databases allows one at a time, so the long and the
/// short list are in two races.
std::vector<Contestant> PreparePages(uint32_t count) {
    auto database = std::make_shared<RunDb>();
    Demand(database->Good() && database->Fill(count, 1000), "inserting records");
    return {{"run database", [=](double seconds) {
                 char buffer[1024];
                 uint64_t bad = 0;
                 const double ns = TimeLoop<ThreadClock>(seconds, [&](uint64_t) {
                     bad += RunDb::ReadPage(buffer, sizeof buffer) != kPage;
                 });
                 Demand(bad == 0, "reading a page of records");
                 return ns;
             }}};
}

}  // namespace

void AddRecordRaces(const Extent& extent, std::vector<Race>& races) {
    std::vector<uint32_t> counts;
    for (uint32_t count = 1000; count < LongestList(extent); count *= 10) counts.push_back(count);
    counts.push_back(LongestList(extent));
    for (uint32_t batch : {1u, 100u}) {
        const std::string number = std::to_string(batch);
        for (uint32_t count : counts) {
            races.push_back({"records-" + number,
                             batch == 1 ? "Store user records one by one"
                                        : "Store user records, " + number + " a transaction",
                             "record",
                             static_cast<int>(count),
                             "records",
                             {{"raw LMDB", Goal::kSpeedAtLeast, 0.85}},
                             0,
                             [=] { return PrepareInsert(count, batch); }});
        }
    }
    for (uint32_t count : counts) {
        races.push_back({"pages-library",
                         "Page of the 50 newest records, in the library",
                         "page",
                         static_cast<int>(count),
                         "records",
                         {},
                         extent.Seconds(0.1),
                         [=] { return PreparePages(count); }});
    }
}

}  // namespace bench
