// A durable change end to end through the daemon against a raw LMDB put with a synced commit of a
// value of the same size, on the same file system, with 1 and 16 clients.
#include <benchmark/benchmark.h>
#include <lmdb.h>
#include <sys/stat.h>

#include <vector>

#include "stage.h"

namespace bench {
namespace {

void SetDurable(benchmark::State& state) {
    Daemon::Running();
    uint16_t number = static_cast<uint16_t>(state.thread_index());
    for (auto _ : state) {
        TLV_MSG* request = DOM_EncodeSessionTime(kFullDomain, ++number);
        uint32_t result = 1;
        if (DOM_lipc_CfgMsgProc(request, DOM_OP_SET, &result) != DOM_OK || result != DOM_OK) {
            state.SkipWithError("change refused");
        }
        TLV_Destroy(request);
    }
}
BENCHMARK(SetDurable)->Threads(1)->Threads(16)->UseRealTime();

struct RawDatabase {
    MDB_env* env = nullptr;
    MDB_dbi dbi = 0;

    RawDatabase() {
        const std::string path = Daemon::Running().Directory() + "/raw";
        mkdir(path.c_str(), 0700);
        mdb_env_create(&env);
        mdb_env_set_mapsize(env, 1u << 30);
        mdb_env_open(env, path.c_str(), 0, 0600);
        MDB_txn* txn = nullptr;
        mdb_txn_begin(env, nullptr, 0, &txn);
        mdb_dbi_open(txn, nullptr, 0, &dbi);
        mdb_txn_commit(txn);
    }
    ~RawDatabase() { mdb_env_close(env); }
};

void PutRaw(benchmark::State& state) {
    static RawDatabase database;
    std::vector<char> bytes(1500, 'x');  // about a domain's record
    uint32_t key = static_cast<uint32_t>(state.thread_index());
    for (auto _ : state) {
        ++bytes[0];
        MDB_val stored_key{sizeof key, &key};
        MDB_val value{bytes.size(), bytes.data()};
        MDB_txn* txn = nullptr;
        if (mdb_txn_begin(database.env, nullptr, 0, &txn) != 0 ||
            mdb_put(txn, database.dbi, &stored_key, &value, 0) != 0 || mdb_txn_commit(txn) != 0) {
            state.SkipWithError("put failed");
        }
    }
}
BENCHMARK(PutRaw)->Threads(1)->Threads(16)->UseRealTime();

}  // namespace
}  // namespace bench
