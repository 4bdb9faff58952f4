// Raw LMDB with its defaults: a transaction a value, synced when it is committed. Its writers wait
// for each other on its own mutex.
#include <lmdb.h>

#include "store.h"
#include "workspace.h"

namespace bench {
namespace {

constexpr size_t kMapSize = size_t{1} << 30;

class LmdbStore : public Store {
  public:
    explicit LmdbStore(const std::string& directory) {
        MDB_txn* txn = nullptr;
        Demand(mdb_env_create(&env_) == 0 && mdb_env_set_mapsize(env_, kMapSize) == 0 &&
                   mdb_env_open(env_, directory.c_str(), 0, 0600) == 0 &&
                   mdb_txn_begin(env_, nullptr, 0, &txn) == 0 &&
                   mdb_dbi_open(txn, nullptr, MDB_INTEGERKEY, &dbi_) == 0 &&
                   mdb_txn_commit(txn) == 0,
               "opening LMDB");
    }
    ~LmdbStore() override { mdb_env_close(env_); }
    void Put(int, uint32_t number, const std::string& value) override {
        MDB_val key{sizeof number, &number};
        MDB_val data{value.size(), const_cast<char*>(value.data())};
        MDB_txn* txn = nullptr;
        Demand(mdb_txn_begin(env_, nullptr, 0, &txn) == 0 &&
                   mdb_put(txn, dbi_, &key, &data, 0) == 0 && mdb_txn_commit(txn) == 0,
               "LMDB put");
    }

  private:
    MDB_env* env_ = nullptr;
    MDB_dbi dbi_ = 0;
};

}  // namespace

std::unique_ptr<Store> MakeLmdbStore(const std::string& directory) {
    return std::make_unique<LmdbStore>(directory);
}

uint64_t LmdbTransactions(const std::string& directory) {
    MDB_env* env = nullptr;
    MDB_envinfo info{};
    Demand(mdb_env_create(&env) == 0, "opening LMDB");
    const bool good = mdb_env_open(env, directory.c_str(), MDB_RDONLY, 0600) == 0 &&
                      mdb_env_info(env, &info) == 0;
    mdb_env_close(env);
    Demand(good, "reading what LMDB has committed");
    return info.me_last_txnid;
}

}  // namespace bench
