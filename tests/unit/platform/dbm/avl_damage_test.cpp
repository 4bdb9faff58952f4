/* Rows of an AVL list that no call of this library wrote. */
#include "database_test.h"
#include "raw_table.h"

namespace {

constexpr uint32_t kAttributes[4] = {4, 8, 20, 0};

class AvlDamage : public DatabaseTest {
  protected:
    /* Writes a row into the closed database with LMDB itself. */
    void PutRow(std::string name, std::string value) {
        ChangeRawTable(base_ + "/lib/DOM_DB", [&](MDB_txn* txn, MDB_dbi dbi) {
            MDB_val key{name.size(), name.data()};
            MDB_val data{value.size(), value.data()};
            EXPECT_EQ(mdb_put(txn, dbi, &key, &data, 0), 0);
        });
    }
    /* Name of a row: tag, length of the key, key, element. */
    static std::string Name(uint8_t tag, const std::string& key, const std::string& element = {}) {
        const char head[3] = {static_cast<char>(tag), static_cast<char>(key.size() >> 8),
                              static_cast<char>(key.size())};
        return std::string(head, sizeof head) + key + element;
    }
    static std::string Entry(uint64_t serial) {
        std::string bytes(12, 'h');
        memcpy(bytes.data() + 4, &serial, sizeof serial);
        return bytes;
    }
};

/* A meta record whose sort key leaves no room for the count behind a key of this length. */
TEST_F(AvlDamage, SortKeyThatIsTooLongForTheKeyFailsEveryCall) {
    const std::string key(400, 'k');
    for (const uint8_t length : {uint8_t{108}, uint8_t{255}}) {
        (void)Create();
        CloseAll();
        std::string meta(32, '\0');
        meta[0] = 1;                          /* version */
        meta[1] = 4;                          /* AVL list */
        meta[15] = static_cast<char>(length); /* of the sort key */
        meta[19] = 5;                         /* text */
        PutRow(Name(0, key), meta);
        const DBM_HANDLE handle = Create();
        const std::string entry(300, 'e');
        DBM_CURSOR* cursor = nullptr;
        EXPECT_EQ(DBM_InsertAvlList(handle, key.data(), 400, 300, entry.data()), kFailed);
        EXPECT_EQ(DBM_RemoveAvlList(handle, key.data(), 400, 300, entry.data()), kFailed);
        EXPECT_EQ(DBM_ClearAvlList(handle, key.data(), 400), kFailed);
        EXPECT_EQ(DBM_CursorOpen(handle, key.data(), 400, &cursor), kFailed);
        EXPECT_EQ(DBM_GetEntryNum(handle, key.data(), 400), 0u);
        CloseAll();
    }
}

class AvlCountRow : public AvlDamage, public testing::WithParamInterface<size_t> {};

TEST_P(AvlCountRow, OfAnotherSizeFailsChangesAndReadsAsZero) {
    DBM_HANDLE handle = Create();
    ASSERT_EQ(DBM_CreateAvlList(handle, "list", 5, kAttributes, 1, 41), 0u);
    ASSERT_EQ(DBM_InsertAvlList(handle, "list", 5, 12, Entry(1).data()), 0u);
    CloseAll();
    PutRow(Name(4, std::string("list", 5), std::string(9, '\xFF')),
           std::string(GetParam(), '\x01'));
    handle = Create();
    EXPECT_EQ(DBM_GetEntryNum(handle, "list", 5), 0u);
    EXPECT_EQ(DBM_InsertAvlList(handle, "list", 5, 12, Entry(2).data()), kFailed);
    EXPECT_EQ(DBM_RemoveAvlList(handle, "list", 5, 12, Entry(1).data()), kFailed);
    EXPECT_FALSE(Lines().empty());
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle, "list", 5, &cursor), 0u);
    char buffer[12];
    EXPECT_EQ(DBM_CursorLast(cursor, sizeof buffer, buffer), 12);
    EXPECT_EQ(std::string(buffer, sizeof buffer), Entry(1));
    EXPECT_EQ(DBM_CursorNext(cursor, sizeof buffer, buffer), 0);
    DBM_CursorClose(cursor);
    /* Clearing takes the row along, and the list is sound again. */
    EXPECT_EQ(DBM_ClearAvlList(handle, "list", 5), 0u);
    EXPECT_EQ(DBM_InsertAvlList(handle, "list", 5, 12, Entry(2).data()), 0u);
    EXPECT_EQ(DBM_GetEntryNum(handle, "list", 5), 1u);
}

INSTANTIATE_TEST_SUITE_P(Sizes, AvlCountRow, testing::Values(0, 3, 5, 64));

}  // namespace
