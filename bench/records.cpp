// User records in the run database against raw LMDB: the same names, values, batches and sync mode,
// each in a new database; and a page of the 50 newest of a long list against one of a short list.
// AAADOM_BENCH_RECORDS is the length of the long list, 1000000 for the full run.
#include <benchmark/benchmark.h>
#include <lmdb.h>
#include <platform/dbm.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "stage.h"

namespace bench {
namespace {

constexpr uint32_t kShortList = 1000;
constexpr uint32_t kPage = 50;

uint32_t LongList() {
    const char* text = getenv("AAADOM_BENCH_RECORDS");
    const long number = text == nullptr ? 0 : strtol(text, nullptr, 10);
    return number >= 1000 ? static_cast<uint32_t>(number) : 20000;
}

/// A directory for databases, gone with its object.
class Directory {
  public:
    Directory() {
        char path[] = "/var/tmp/aaadom-records-XXXXXX";
        if (mkdtemp(path) == nullptr) abort();
        path_ = path;
    }
    ~Directory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::string& Path() const { return path_; }

  private:
    std::string path_;
};

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
    Directory directory_;
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
    Directory directory_;
    MDB_env* env_ = nullptr;
    MDB_dbi dbi_ = 0;
    uint32_t length_ = 0;
    bool good_ = false;
};

template <class Database>
void Insert(benchmark::State& state) {
    const auto batch = static_cast<uint32_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Database database;
            state.ResumeTiming();
            if (!database.Good() || !database.Fill(LongList(), batch))
                state.SkipWithError("insert failed");
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * LongList());
}

void InsertRecords(benchmark::State& state) {
    Insert<RunDb>(state);
}
void InsertRaw(benchmark::State& state) {
    Insert<RawDb>(state);
}
BENCHMARK(InsertRecords)->Arg(1)->Arg(100)->Iterations(1)->UseRealTime();
BENCHMARK(InsertRaw)->Arg(1)->Arg(100)->Iterations(1)->UseRealTime();

void ReadPages(benchmark::State& state, uint32_t length) {
    RunDb database;
    if (!database.Good() || !database.Fill(length, 1000)) {
        state.SkipWithError("insert failed");
        return;
    }
    char buffer[1024];
    for (auto _ : state) {
        if (RunDb::ReadPage(buffer, sizeof buffer) != kPage) state.SkipWithError("short page");
    }
}
void PageOfLongList(benchmark::State& state) {
    ReadPages(state, LongList());
}
void PageOfShortList(benchmark::State& state) {
    ReadPages(state, kShortList);
}
BENCHMARK(PageOfLongList)->Iterations(2000)->UseRealTime();
BENCHMARK(PageOfShortList)->Iterations(2000)->UseRealTime();

}  // namespace
}  // namespace bench
