/* The bytes of docs/formats/dbm.md, read with LMDB itself. */
#include <lmdb.h>

#include <map>

#include "database_test.h"

namespace {

std::string Hex(const MDB_val& value) {
    std::string text;
    char digits[3];
    for (size_t i = 0; i < value.mv_size; ++i) {
        snprintf(digits, sizeof digits, "%02x", static_cast<const uint8_t*>(value.mv_data)[i]);
        text += digits;
    }
    return text;
}

class StoredForm : public DatabaseTest {
  protected:
    std::map<std::string, std::string> Dump(const char* table) {
        std::map<std::string, std::string> rows;
        MDB_env* env;
        MDB_txn* txn;
        MDB_dbi dbi;
        MDB_cursor* cursor;
        mdb_env_create(&env);
        mdb_env_set_maxdbs(env, 8);
        EXPECT_EQ(mdb_env_open(env, (base_ + "/lib/DOM_DB").c_str(), MDB_RDONLY, 0), 0);
        EXPECT_EQ(mdb_txn_begin(env, nullptr, MDB_RDONLY, &txn), 0);
        EXPECT_EQ(mdb_dbi_open(txn, table, 0, &dbi), 0);
        EXPECT_EQ(mdb_cursor_open(txn, dbi, &cursor), 0);
        MDB_val key, value;
        while (mdb_cursor_get(cursor, &key, &value, MDB_NEXT) == 0) rows[Hex(key)] = Hex(value);
        mdb_cursor_close(cursor);
        mdb_txn_abort(txn);
        mdb_env_close(env);
        return rows;
    }
};

TEST_F(StoredForm, EveryRecordHasItsBytes) {
    const DBM_HANDLE handle = Create();
    const uint32_t attributes[4] = {0, 2, 2, 0};
    ASSERT_EQ(DBM_CreateSortList(handle, "p", 2, attributes, 1, 5), 0u);
    ASSERT_EQ(DBM_InsertSortList(handle, "p", 2, 4, "\x64\x00\x41\x00", 5), 0u);
    ASSERT_EQ(DBM_SetArray(handle, "a", 1, 258, 1, "x", 1), 0);
    ASSERT_EQ(DBM_SetBinary(handle, "b", 1, -1, 0, nullptr, 2), 0u);
    ASSERT_EQ(DBM_Close(handle), 0u);
    const std::string zeros(32, '0');
    EXPECT_EQ(
        Dump("isp-domain"),
        (std::map<std::string, std::string>{
            {"0000027000", "0103000000000005000000000000000200000002000000000000000400000001"},
            {"03000270000064", "64004100"},
            {"00000161", "0101000000000001" + zeros + "0000000000000000"},
            {"0100016100000102", "78"},
            {"00000162", "0102000000000002" + zeros + "0000000000000000"},
            {"02000162", ""},
        }));
    EXPECT_EQ(Dump("isp-domain:value-types"), (std::map<std::string, std::string>{
                                                  {"000000057000", ""},
                                                  {"0000000161", ""},
                                                  {"0000000262", ""},
                                              }));
}

TEST_F(StoredForm, AnAvlListCountsBehindItsEntries) {
    const DBM_HANDLE handle = Create();
    const uint32_t attributes[4] = {4, 8, 20, 0};
    ASSERT_EQ(DBM_CreateAvlList(handle, "r", 2, attributes, 1, 41), 0u);
    ASSERT_EQ(DBM_InsertAvlList(handle, "r", 2, 12, "head\x02\x01\0\0\0\0\0\0"), 0u);
    ASSERT_EQ(DBM_Close(handle), 0u);
    EXPECT_EQ(
        Dump("isp-domain"),
        (std::map<std::string, std::string>{
            {"0000027200", "0104000000000029000000040000000800000014000000000000000000000000"},
            {"04000272000000000000000102", "686561640201000000000000"},
            {"0400027200ffffffffffffffffff", "00000001"},
        }));
}

}  // namespace
