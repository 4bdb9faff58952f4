/* Cursors at the edges: of the list, of the table, beside keys that begin alike. */
#include "database_test.h"

namespace {

class CursorEdges : public DatabaseTest {
  protected:
    static constexpr uint32_t kText[4] = {0, 8, DBM_KEY_KIND_TEXT, 0};

    void Open(const std::string& key, const std::vector<std::string>& texts) {
        handle_ = Create("DOM_DB", "isp-domain", 0);
        const auto length = static_cast<uint32_t>(key.size());
        ASSERT_EQ(DBM_CreateSortList(handle_, key.data(), length, kText, 1, 4), 0u);
        for (const std::string& text : texts) {
            char entry[8] = {};
            text.copy(entry, sizeof entry);
            ASSERT_EQ(DBM_InsertSortList(handle_, key.data(), length, 8, entry, 4), 0u);
        }
        ASSERT_EQ(DBM_CursorOpen(handle_, key.data(), length, &cursor_), 0u);
    }
    void TearDown() override {
        DBM_CursorClose(cursor_);
        DatabaseTest::TearDown();
    }
    template <class Step>
    std::string Take(Step step) {
        char entry[9] = {};
        const int32_t got = step(cursor_, 8, entry);
        return got < 0 ? "failed" : got == 0 ? "none" : entry;
    }
    void Remove(const std::string& key, const std::string& text) {
        char entry[8] = {};
        text.copy(entry, sizeof entry);
        ASSERT_EQ(DBM_RemoveSortList(handle_, key.data(), key.size(), 8, entry), 0u);
    }
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
    DBM_CURSOR* cursor_ = nullptr;
};

// The smallest key behind all that begin with 0xFF is one with another length in front.
TEST_F(CursorEdges, LastEntryUnderAKeyOfTheHighestBytes) {
    Open("\xFF\xFF", {"a", "b"});
    EXPECT_EQ(Take(DBM_CursorLast), "b");
    EXPECT_EQ(Take(DBM_CursorPrev), "a");
    EXPECT_EQ(Take(DBM_CursorPrev), "none");
}

TEST_F(CursorEdges, StandsBesideTheListUntilItTurns) {
    Open("list", {"a", "b"});
    EXPECT_EQ(Take(DBM_CursorLast), "b");
    EXPECT_EQ(Take(DBM_CursorNext), "none");
    EXPECT_EQ(Take(DBM_CursorNext), "none");
    EXPECT_EQ(Take(DBM_CursorPrev), "b");
    EXPECT_EQ(Take(DBM_CursorPrev), "a");
    EXPECT_EQ(Take(DBM_CursorPrev), "none");
    EXPECT_EQ(Take(DBM_CursorPrev), "none");
    EXPECT_EQ(Take(DBM_CursorNext), "a");
}

TEST_F(CursorEdges, SuccessorOfARemovedEntryIsNotSkipped) {
    Open("list", {"ab", "abc", "abd"});
    EXPECT_EQ(Take(DBM_CursorFirst), "ab");
    Remove("list", "ab");
    EXPECT_EQ(Take(DBM_CursorNext), "abc");  // begins alike
    Remove("list", "abc");
    EXPECT_EQ(Take(DBM_CursorNext), "abd");  // as long
    Remove("list", "abd");
    EXPECT_EQ(Take(DBM_CursorNext), "none");
}

TEST_F(CursorEdges, ListBehindIsNotWalkedInto) {
    Open("list", {"a"});
    const char entry[8] = "z";
    ASSERT_EQ(DBM_CreateSortList(handle_, "lisu", 4, kText, 1, 4), 0u);
    ASSERT_EQ(DBM_InsertSortList(handle_, "lisu", 4, 8, entry, 4), 0u);
    EXPECT_EQ(Take(DBM_CursorFirst), "a");
    Remove("list", "a");
    EXPECT_EQ(Take(DBM_CursorNext), "none");
    EXPECT_EQ(Take(DBM_CursorLast), "none");
}

TEST_F(CursorEdges, ValuesAndEntriesAboveTheirLimitAreRefused) {
    Open("list", {});
    EXPECT_EQ(DBM_SetBinary(handle_, "k", 1, -1, uint32_t{INT32_MAX} + 1, "x", 2), kFailed);
    EXPECT_EQ(DBM_InsertSortList(handle_, "list", 4, uint32_t{INT32_MAX} + 1, "x", 4), kFailed);
    EXPECT_FALSE(Exists(handle_, "k"));
}

TEST_F(CursorEdges, OtherKindsOfKeysGiveNoCursor) {
    Open("list", {});
    Set(handle_, "k", "v");
    DBM_CURSOR* cursor = nullptr;
    EXPECT_EQ(DBM_CursorOpen(handle_, "k", 1, &cursor), kFailed);
    EXPECT_EQ(DBM_CursorOpen(handle_, "none", 4, &cursor), kFailed);
    EXPECT_EQ(cursor, nullptr);
}

TEST_F(CursorEdges, EntriesOfAnotherSizeAreNeitherFoundNorRemoved) {
    Open("list", {"a"});
    char larger[16] = "a";
    EXPECT_EQ(DBM_GetSortList(handle_, "list", 4, sizeof larger, larger), -1);
    EXPECT_EQ(DBM_RemoveSortList(handle_, "list", 4, sizeof larger, larger), kFailed);
    EXPECT_EQ(Take(DBM_CursorFirst), "a");
}

}  // namespace
