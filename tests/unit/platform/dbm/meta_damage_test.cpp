/* A key whose description no call of this library wrote: every call on it fails, the key next to it
 * is as it was. */
#include <functional>

#include "database_test.h"
#include "raw_table.h"

namespace {

class MetaDamage : public DatabaseTest {
  protected:
    static constexpr uint32_t kAttributes[4] = {0, 8, DBM_KEY_KIND_U64, 0};
    static constexpr const char* kKey = "key";

    void SetUp() override {
        DatabaseTest::SetUp();
        const DBM_HANDLE handle = Create();
        ASSERT_EQ(DBM_CreateSortList(handle, kKey, 3, kAttributes, 1, 4), 0u);
        Set(handle, "next", "sound", 4);
        CloseAll();
    }
    /* Changes the description of kKey with the engine itself. */
    void Damage(const std::function<void(std::string&)>& change) const {
        ChangeRawTable(base_ + "/lib/DOM_DB", [&](MDB_txn* txn, MDB_dbi dbi) {
            char name[] = {0, 0, 3, 'k', 'e', 'y'};
            MDB_val key{sizeof name, name}, data;
            ASSERT_EQ(mdb_get(txn, dbi, &key, &data), 0);
            std::string meta(static_cast<char*>(data.mv_data), data.mv_size);
            change(meta);
            data = {meta.size(), meta.data()};
            ASSERT_EQ(mdb_put(txn, dbi, &key, &data, 0), 0);
        });
    }
    static void ExpectFailures(DBM_HANDLE handle) {
        uint64_t entry[2] = {1, 2};
        char buffer[16];
        DBM_CURSOR* cursor = nullptr;
        EXPECT_EQ(DBM_IsKeyExist(handle, kKey, 3), 0u);
        EXPECT_EQ(DBM_GetEntryNum(handle, kKey, 3), 0u);
        EXPECT_EQ(DBM_GetBinary(handle, kKey, 3, 0, sizeof buffer, buffer), -1);
        EXPECT_EQ(DBM_GetBinaryLen(handle, kKey, 3), -1);
        EXPECT_EQ(DBM_GetArray(handle, kKey, 3, 0, sizeof buffer, buffer), -1);
        EXPECT_EQ(DBM_GetSortList(handle, kKey, 3, sizeof entry, entry), -1);
        EXPECT_EQ(DBM_CursorOpen(handle, kKey, 3, &cursor), kFailed);
        EXPECT_EQ(Set(handle, kKey, "value"), kFailed);
        EXPECT_NE(DBM_SetArray(handle, kKey, 3, 0, 1, "v", 1), 0);
        EXPECT_NE(DBM_SetArray(handle, kKey, 3, 0, 0, nullptr, 1), 0);
        EXPECT_EQ(DBM_CreateSortList(handle, kKey, 3, kAttributes, 1, 4), kFailed);
        EXPECT_EQ(DBM_InsertSortList(handle, kKey, 3, sizeof entry, entry, 4), kFailed);
        EXPECT_EQ(DBM_RemoveSortList(handle, kKey, 3, sizeof entry, entry), kFailed);
        EXPECT_EQ(DBM_InsertAvlList(handle, kKey, 3, sizeof entry, entry), kFailed);
        EXPECT_EQ(DBM_ClearAvlList(handle, kKey, 3), kFailed);
        EXPECT_EQ(DBM_DeleteKey(handle, kKey, 3), kFailed);
    }
};

TEST_F(MetaDamage, FailsEveryCallOnTheKeyAlone) {
    const std::pair<const char*, std::function<void(std::string&)>> damages[] = {
        {"too short", [](std::string& meta) { meta.pop_back(); }},
        {"too long", [](std::string& meta) { meta.push_back('\0'); }},
        {"unknown version", [](std::string& meta) { meta[0] = 2; }},
        {"no kind", [](std::string& meta) { meta[1] = 0; }},
        {"unknown kind", [](std::string& meta) { meta[1] = 9; }},
        {"sort key of no length", [](std::string& meta) { meta[15] = 0; }},
        {"unknown kind of sort key", [](std::string& meta) { meta[19] = 99; }},
    };
    for (const auto& [name, change] : damages) {
        SCOPED_TRACE(name);
        std::string sound;
        Damage([&](std::string& meta) {
            sound = meta;
            change(meta);
        });
        Lines().clear();
        const DBM_HANDLE handle = Create();
        ExpectFailures(handle);
        ASSERT_FALSE(Lines().empty());
        EXPECT_NE(Lines()[0].find("damaged"), std::string::npos) << Lines()[0];
        EXPECT_EQ(Get(handle, "next"), "sound");
        CloseAll();
        Damage([&](std::string& meta) { meta = sound; });
    }
}

/* The list is described as one of another kind while somebody walks it. */
TEST_F(MetaDamage, SeekingInAListThatIsNoneAnyMoreFails) {
    const DBM_HANDLE handle = Create();
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle, kKey, 3, &cursor), 0u);
    uint64_t entry[2] = {}, wanted = 1;
    EXPECT_EQ(DBM_CursorSeek(cursor, &wanted, sizeof entry, entry), 0);
    ASSERT_EQ(DBM_DeleteKey(handle, kKey, 3), 0u);
    EXPECT_EQ(DBM_CursorSeek(cursor, &wanted, sizeof entry, entry), -1);
    Set(handle, kKey, "value");
    EXPECT_EQ(DBM_CursorSeek(cursor, &wanted, sizeof entry, entry), -1);
    DBM_CursorClose(cursor);
}

/* More entries than the count tells of. */
TEST_F(MetaDamage, CountOfASortedListNeverFallsBelowZero) {
    const uint64_t entry[2] = {1, 2};
    ASSERT_EQ(DBM_InsertSortList(Create(), kKey, 3, sizeof entry, entry, 4), 0u);
    CloseAll();
    Damage([](std::string& meta) { meta[31] = 0; });
    const DBM_HANDLE handle = Create();
    EXPECT_EQ(DBM_RemoveSortList(handle, kKey, 3, sizeof entry, entry), 0u);
    EXPECT_EQ(DBM_GetEntryNum(handle, kKey, 3), 0u);
}

}  // namespace
