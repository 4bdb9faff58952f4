// What a program of a few lines would do at its start: read all domains from the disk to memory,
// and be ready. Ends as soon as it is. Usage: aaadom_bench_loader lmdb DIRECTORY NUMBER, or
// aaadom_bench_loader sqlite FILE NUMBER; the exit status is 0 when it read that many.
#include <lmdb.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "sqlite_domains.h"

namespace {

/// Scans the environment and copies every value to memory of its own; their number.
int LoadFromLmdb(const char* directory) {
    MDB_env* env = nullptr;
    MDB_txn* txn = nullptr;
    MDB_dbi dbi = 0;
    MDB_cursor* cursor = nullptr;
    if (mdb_env_create(&env) != 0 || mdb_env_set_mapsize(env, size_t{1} << 30) != 0 ||
        mdb_env_open(env, directory, 0, 0600) != 0 ||
        mdb_txn_begin(env, nullptr, MDB_RDONLY, &txn) != 0 ||
        mdb_dbi_open(txn, nullptr, 0, &dbi) != 0 || mdb_cursor_open(txn, dbi, &cursor) != 0) {
        return -1;
    }
    static void* copies[DOM_MAX_DOMAINS];
    int count = 0;
    MDB_val key;
    MDB_val value;
    while (mdb_cursor_get(cursor, &key, &value, MDB_NEXT) == 0 && count < DOM_MAX_DOMAINS) {
        copies[count] = malloc(value.mv_size);
        if (copies[count] == nullptr) return -1;
        memcpy(copies[count++], value.mv_data, value.mv_size);
    }
    return count;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const bool lmdb = std::string_view(argv[1]) == "lmdb";
    const int count = lmdb ? LoadFromLmdb(argv[2]) : bench::LoadFromSqlite(argv[2]);
    // Not exit(): being ready does not include giving the memory back.
    _exit(count == atoi(argv[3]) ? 0 : 1);
}
