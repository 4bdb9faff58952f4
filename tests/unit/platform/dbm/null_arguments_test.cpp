// Callers hand over what they have got, also nothing: every call fails then, and changes nothing.
#include "database_test.h"

namespace {

constexpr uint32_t kAttributes[4] = {0, 8, DBM_KEY_KIND_U64, 0};

class NullArguments : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        handle_ = Create("DOM_DB", "t", 0);
        ASSERT_EQ(DBM_CreateSortList(handle_, "s", 1, kAttributes, 1, 4), 0u);
        ASSERT_EQ(DBM_CreateAvlList(handle_, "v", 1, kAttributes, 1, 5), 0u);
        ASSERT_EQ(DBM_InsertAvlList(handle_, "v", 1, sizeof entry_, &entry_), 0u);
        ASSERT_EQ(DBM_CursorOpen(handle_, "v", 1, &cursor_), 0u);
    }
    void TearDown() override {
        DBM_CursorClose(cursor_);
        DatabaseTest::TearDown();
    }
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
    DBM_CURSOR* cursor_ = nullptr;
    uint64_t entry_ = 10;
};

TEST_F(NullArguments, WithoutAnEntryListsRefuse) {
    EXPECT_EQ(DBM_GetSortList(handle_, "s", 1, 8, nullptr), -1);
    EXPECT_EQ(DBM_InsertSortList(handle_, "s", 1, 8, nullptr, 4), kFailed);
    EXPECT_EQ(DBM_RemoveSortList(handle_, "s", 1, 8, nullptr), kFailed);
    EXPECT_EQ(DBM_InsertAvlList(handle_, "v", 1, 8, nullptr), kFailed);
    EXPECT_EQ(DBM_RemoveAvlList(handle_, "v", 1, 8, nullptr), kFailed);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "s", 1), 0u);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "v", 1), 1u);
}

TEST_F(NullArguments, WithoutACursorStepsFail) {
    uint64_t entry = 0;
    EXPECT_EQ(DBM_CursorOpen(handle_, "v", 1, nullptr), kFailed);
    EXPECT_EQ(DBM_CursorFirst(nullptr, sizeof entry, &entry), -1);
    EXPECT_EQ(DBM_CursorNext(nullptr, sizeof entry, &entry), -1);
    EXPECT_EQ(DBM_CursorLast(nullptr, sizeof entry, &entry), -1);
    EXPECT_EQ(DBM_CursorPrev(nullptr, sizeof entry, &entry), -1);
    EXPECT_EQ(DBM_CursorSeek(nullptr, &entry_, sizeof entry, &entry), -1);
    DBM_CursorClose(nullptr);
}

TEST_F(NullArguments, WithoutABufferAStepThatWantsBytesFailsAndTheCursorStays) {
    EXPECT_EQ(DBM_CursorFirst(cursor_, 8, nullptr), -1);
    EXPECT_EQ(DBM_CursorSeek(cursor_, &entry_, 8, nullptr), -1);
    uint64_t entry = 0;
    EXPECT_EQ(DBM_CursorSeek(cursor_, nullptr, sizeof entry, &entry), -1);
    EXPECT_EQ(DBM_CursorNext(cursor_, sizeof entry, &entry), 8);
    EXPECT_EQ(entry, 10u);
}

TEST_F(NullArguments, ABufferOfNoBytesMayBeMissing) {
    EXPECT_EQ(DBM_CursorFirst(cursor_, 0, nullptr), 0);
    EXPECT_EQ(DBM_CursorSeek(cursor_, &entry_, 0, nullptr), 0);
}

TEST_F(NullArguments, WithoutAKeyEveryCallFails) {
    uint64_t value = 0;
    EXPECT_EQ(DBM_SetBinary(handle_, nullptr, 1, -1, 1, "x", 2), kFailed);
    EXPECT_EQ(DBM_GetBinary(handle_, nullptr, 1, 0, sizeof value, &value), -1);
    EXPECT_EQ(DBM_GetBinaryLen(handle_, nullptr, 1), -1);
    EXPECT_EQ(DBM_SetArray(handle_, nullptr, 1, 0, 1, "x", 3), -1);
    EXPECT_EQ(DBM_GetArray(handle_, nullptr, 1, 0, sizeof value, &value), -1);
    EXPECT_EQ(DBM_GetNextArrayIndex(handle_, nullptr, 1, -1), -1);
    EXPECT_EQ(DBM_IsKeyExist(handle_, nullptr, 1), 0u);
    EXPECT_EQ(DBM_DeleteKey(handle_, nullptr, 1), kFailed);
    EXPECT_EQ(DBM_GetSortList(handle_, nullptr, 1, 8, &value), -1);
    EXPECT_EQ(DBM_InsertAvlList(handle_, nullptr, 1, 8, &value), kFailed);
    EXPECT_EQ(DBM_ClearAvlList(handle_, nullptr, 1), kFailed);
    EXPECT_EQ(DBM_GetEntryNum(handle_, nullptr, 1), 0u);
    DBM_CURSOR* cursor = cursor_;
    EXPECT_EQ(DBM_CursorOpen(handle_, nullptr, 1, &cursor), kFailed);
    EXPECT_EQ(cursor, nullptr);
}

TEST_F(NullArguments, WithoutABufferReadersThatWantBytesFail) {
    Set(handle_, "b", "value");
    ASSERT_EQ(DBM_SetArray(handle_, "a", 1, 0, 1, "x", 3), 0);
    EXPECT_EQ(DBM_GetBinary(handle_, "b", 1, 0, 8, nullptr), -1);
    EXPECT_EQ(DBM_GetArray(handle_, "a", 1, 0, 8, nullptr), -1);
    EXPECT_EQ(DBM_GetBinary(handle_, "b", 1, 0, 0, nullptr), 0);
    EXPECT_EQ(DBM_SetBinary(handle_, "b", 1, -1, 8, nullptr, 2), kFailed);
    EXPECT_EQ(DBM_GetKeysByValueType(handle_, 4, 2, nullptr, nullptr), 0u);
    EXPECT_EQ(Get(handle_, "b"), "value");
}

TEST_F(NullArguments, TokensOfNoScopeAreRefused) {
    EXPECT_EQ(DBM_BorrowScope(0), kFailed);
    EXPECT_EQ(DBM_BorrowScope(4711), kFailed);
    EXPECT_EQ(DBM_ReturnScope(4711), kFailed);
    EXPECT_EQ(DBM_RecallScope(handle_), kFailed);
    EXPECT_EQ(DBM_LendScope(handle_, nullptr), kFailed);
    uint64_t token = 0;
    EXPECT_EQ(DBM_LendScope(handle_, &token), kFailed);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(DBM_LendScope(handle_, nullptr), kFailed);
    EXPECT_EQ(DBM_Abort(handle_), 0u);
}

}  // namespace
