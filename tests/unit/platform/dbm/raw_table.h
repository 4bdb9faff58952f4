/* A table of a closed database, reached with the engine itself past the library. */
#ifndef TESTS_PLATFORM_DBM_RAW_TABLE_H
#define TESTS_PLATFORM_DBM_RAW_TABLE_H

#include <gtest/gtest.h>
#include <lmdb.h>

#include <functional>
#include <string>

/* Runs `change` in a transaction on table isp-domain of the database in the directory; committed
 * when it has no fatal failure. */
inline void ChangeRawTable(const std::string& directory,
                           const std::function<void(MDB_txn*, MDB_dbi)>& change) {
    MDB_env* env;
    MDB_txn* txn;
    MDB_dbi dbi;
    ASSERT_EQ(mdb_env_create(&env), 0);
    mdb_env_set_maxdbs(env, 8);
    ASSERT_EQ(mdb_env_open(env, directory.c_str(), 0, 0), 0);
    ASSERT_EQ(mdb_txn_begin(env, nullptr, 0, &txn), 0);
    ASSERT_EQ(mdb_dbi_open(txn, "isp-domain", 0, &dbi), 0);
    change(txn, dbi);
    ASSERT_FALSE(testing::Test::HasFatalFailure());
    ASSERT_EQ(mdb_txn_commit(txn), 0);
    mdb_env_close(env);
}

#endif
