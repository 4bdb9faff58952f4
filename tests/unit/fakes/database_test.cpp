#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "fakes/fake_platform.h"

namespace {

constexpr uint32_t kFailed = 0x40010001u;

class FakeDatabase : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        const DBM_OPEN_ATTR attr{0, 1, 0, "1"};
        ASSERT_EQ(0u, DBM_Open("DOM_DB", "isp-domain", DBM_MODE_CREATE, &attr, &handle_));
    }
    void TearDown() override { fake::Reset(); }
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

TEST_F(FakeDatabase, OpeningWhatIsNotThereLeavesTheHandleAlone) {
    const DBM_OPEN_ATTR attr{};
    DBM_HANDLE handle = -1;
    EXPECT_NE(0u, DBM_Open("OTHER", "isp-domain", DBM_MODE_OPEN, &attr, &handle));
    EXPECT_EQ(-1, handle);
    EXPECT_EQ(0u, DBM_Open("DOM_DB", "isp-domain", DBM_MODE_OPEN, &attr, &handle));
    EXPECT_NE(-1, handle);
}

TEST_F(FakeDatabase, KeysOfDifferentLengthAreDifferent) {
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "key", 3, -1, 1, "a", 2));
    EXPECT_EQ(1u, DBM_IsKeyExist(handle_, "key", 3));
    EXPECT_EQ(0u, DBM_IsKeyExist(handle_, "key", 4));
}

TEST_F(FakeDatabase, ArraysAreSparse) {
    char buffer[8];
    EXPECT_EQ(0, DBM_SetArray(handle_, "array", 5, 3, 4, "abcd", 1));
    EXPECT_EQ(0, DBM_SetArray(handle_, "array", 5, 1024, 1, "x", 1));
    EXPECT_EQ(4, DBM_GetArray(handle_, "array", 5, 3, 8, buffer));
    EXPECT_EQ(2, DBM_GetArray(handle_, "array", 5, 3, 2, buffer));
    EXPECT_EQ(0, DBM_GetArray(handle_, "array", 5, 4, 8, buffer));
    EXPECT_EQ(3, DBM_GetNextArrayIndex(handle_, "array", 5, -1));
    EXPECT_EQ(1024, DBM_GetNextArrayIndex(handle_, "array", 5, 3));
    EXPECT_EQ(-1, DBM_GetNextArrayIndex(handle_, "array", 5, 1024));
    EXPECT_EQ(0, DBM_SetArray(handle_, "array", 5, 3, 0, nullptr, 1));
    EXPECT_EQ(0, DBM_GetArray(handle_, "array", 5, 3, 8, buffer));
    EXPECT_EQ(-1, DBM_GetBinary(handle_, "array", 5, 0, 8, buffer));
}

TEST_F(FakeDatabase, AnEmptyBinaryIsStored) {
    char buffer[4];
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "b", 1, -1, 0, nullptr, 2));
    EXPECT_EQ(1u, DBM_IsKeyExist(handle_, "b", 1));
    EXPECT_EQ(0, DBM_GetBinary(handle_, "b", 1, 0, 4, buffer));
    EXPECT_EQ(kFailed, DBM_SetBinary(handle_, "b", 1, 1, 0, nullptr, 2));
}

TEST_F(FakeDatabase, SortedListsReplaceAndAvlListsRefuse) {
    const uint32_t sorted[4] = {0, 2, DBM_KEY_KIND_U16, 0};
    EXPECT_EQ(0u, DBM_CreateSortList(handle_, "s", 1, sorted, 1, 5));
    EXPECT_EQ(kFailed, DBM_CreateSortList(handle_, "s", 1, sorted, 1, 5));
    EXPECT_EQ(0u, DBM_InsertSortList(handle_, "s", 1, 4,
                                     "\x01\x00"
                                     "aa",
                                     5));
    EXPECT_EQ(0u, DBM_InsertSortList(handle_, "s", 1, 4,
                                     "\x01\x00"
                                     "bb",
                                     5));
    char probe[5] = "\x01\x00__";
    EXPECT_EQ(4, DBM_GetSortList(handle_, "s", 1, 4, probe));
    EXPECT_EQ('b', probe[2]);
    EXPECT_EQ(1u, DBM_GetEntryNum(handle_, "s", 1));

    const uint32_t avl[4] = {4, 8, DBM_KEY_KIND_U64, 0};
    EXPECT_EQ(0u, DBM_CreateAvlList(handle_, "a", 1, avl, 1, 41));
    char entry[16] = {};
    entry[5] = 1;  // 256
    EXPECT_EQ(0u, DBM_InsertAvlList(handle_, "a", 1, 14, entry));
    EXPECT_EQ(kFailed, DBM_InsertAvlList(handle_, "a", 1, 14, entry));
    entry[5] = 0;
    entry[4] = 2;
    EXPECT_EQ(0u, DBM_InsertAvlList(handle_, "a", 1, 12, entry));
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(0u, DBM_CursorOpen(handle_, "a", 1, &cursor));
    EXPECT_EQ(12, DBM_CursorFirst(cursor, sizeof entry, entry)) << "2 comes before 256";
    EXPECT_EQ(14, DBM_CursorNext(cursor, sizeof entry, entry));
    EXPECT_EQ(0, DBM_CursorNext(cursor, sizeof entry, entry));
    EXPECT_EQ(14, DBM_CursorPrev(cursor, sizeof entry, entry)) << "from behind the last";
    EXPECT_EQ(12, DBM_CursorPrev(cursor, sizeof entry, entry));
    EXPECT_EQ(0, DBM_CursorPrev(cursor, sizeof entry, entry));
    DBM_CursorClose(cursor);
    EXPECT_EQ(0u, DBM_ClearAvlList(handle_, "a", 1));
    EXPECT_EQ(1u, DBM_IsKeyExist(handle_, "a", 1));
    EXPECT_EQ(0u, DBM_GetEntryNum(handle_, "a", 1));
}

TEST_F(FakeDatabase, KeysAreFoundByValueType) {
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "one", 4, -1, 1, "a", 8));
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "two", 4, -1, 1, "a", 8));
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "other", 6, -1, 1, "a", 9));
    EXPECT_EQ(2u, DBM_GetKeyNumByValueType(handle_, 8));
    void* iterator = nullptr;
    DBM_KEY_SLOT slots[2];
    EXPECT_EQ(1u, DBM_GetKeysByValueType(handle_, 1, 8, &iterator, slots));
    DBM_FreeIterator(iterator);
    EXPECT_EQ(2u, DBM_GetKeysByValueType(handle_, 2, 8, &iterator, slots));
    DBM_FreeIterator(iterator);
    EXPECT_STREQ("one", slots[0].key) << "the text outlives the iterator";
    EXPECT_STREQ("two", slots[1].key);
}

TEST_F(FakeDatabase, AScopeEndsWhollyOrNotAtAll) {
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "k", 1, -1, 1, "a", 2));
    EXPECT_EQ(0u, DBM_Begin(handle_));
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "k", 1, -1, 1, "b", 2));
    char mine = 0, others = 0;
    EXPECT_EQ(1, DBM_GetBinary(handle_, "k", 1, 0, 1, &mine));
    std::thread([&] { DBM_GetBinary(handle_, "k", 1, 0, 1, &others); }).join();
    EXPECT_EQ('b', mine);
    EXPECT_EQ('a', others) << "another thread sees the last commit";
    EXPECT_EQ(0u, DBM_Abort(handle_));
    EXPECT_EQ(1, DBM_GetBinary(handle_, "k", 1, 0, 1, &mine));
    EXPECT_EQ('a', mine);

    EXPECT_EQ(0u, DBM_Begin(handle_));
    EXPECT_EQ(0u, DBM_Begin(handle_));
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "k", 1, -1, 1, "c", 2));
    EXPECT_EQ(0u, DBM_Abort(handle_));
    EXPECT_EQ(kFailed, DBM_Commit(handle_)) << "an inner abort fails the whole scope";
    EXPECT_EQ(1, DBM_GetBinary(handle_, "k", 1, 0, 1, &mine));
    EXPECT_EQ('a', mine);
}

TEST_F(FakeDatabase, ALentScopeIsTheBorrowersUntilItIsReturned) {
    uint64_t token = 0;
    char value = 0;
    EXPECT_EQ(kFailed, DBM_LendScope(handle_, &token)) << "no scope";
    EXPECT_EQ(0u, DBM_Begin(handle_));
    EXPECT_EQ(0u, DBM_LendScope(handle_, &token));
    EXPECT_EQ(kFailed, DBM_SetBinary(handle_, "k", 1, -1, 1, "a", 2)) << "it is lent";
    EXPECT_EQ(kFailed, DBM_BorrowScope(token)) << "by its owner";
    std::thread([&] {
        EXPECT_EQ(0u, DBM_BorrowScope(token));
        EXPECT_EQ(0u, DBM_SetBinary(handle_, "k", 1, -1, 1, "b", 2));
        EXPECT_EQ(kFailed, DBM_Commit(handle_)) << "the outermost level is the owner's";
        EXPECT_EQ(0u, DBM_Begin(handle_));
        EXPECT_EQ(0u, DBM_Commit(handle_));
        EXPECT_EQ(0u, DBM_ReturnScope(token));
        EXPECT_EQ(kFailed, DBM_ReturnScope(token));
    }).join();
    EXPECT_EQ(1, DBM_GetBinary(handle_, "k", 1, 0, 1, &value));
    EXPECT_EQ(0u, DBM_LendScope(handle_, &token));
    EXPECT_EQ(0u, DBM_RecallScope(handle_));
    std::thread([&] { EXPECT_EQ(kFailed, DBM_BorrowScope(token)); }).join();
    EXPECT_EQ(0u, DBM_Commit(handle_));
    EXPECT_EQ(1, DBM_GetBinary(handle_, "k", 1, 0, 1, &value));
    EXPECT_EQ('b', value);
}

TEST_F(FakeDatabase, LevelsThatABorrowerLeavesOpenFailTheScope) {
    uint64_t token = 0;
    EXPECT_EQ(0u, DBM_Begin(handle_));
    EXPECT_EQ(0u, DBM_LendScope(handle_, &token));
    std::thread([&] {
        EXPECT_EQ(0u, DBM_BorrowScope(token));
        EXPECT_EQ(0u, DBM_Begin(handle_));
        EXPECT_EQ(kFailed, DBM_ReturnScope(token));
    }).join();
    EXPECT_EQ(0u, DBM_SetBinary(handle_, "k", 1, -1, 1, "a", 2));
    EXPECT_EQ(kFailed, DBM_Commit(handle_));
    EXPECT_EQ(0u, DBM_IsKeyExist(handle_, "k", 1));
}

TEST_F(FakeDatabase, DurableAndRunTimeDatabasesOfOneNameAreTwo) {
    const DBM_OPEN_ATTR run_time{0, 0, 0, "1"};
    DBM_HANDLE other = -1;
    EXPECT_EQ(0u, DBM_Open("DOM_DB", "isp-domain", DBM_MODE_CREATE, &run_time, &other));
    EXPECT_EQ(0u, DBM_SetBinary(other, "k", 1, -1, 1, "r", 2));
    EXPECT_EQ(0u, DBM_IsKeyExist(handle_, "k", 1));
}

TEST_F(FakeDatabase, AFailedCallChangesNothingAndIsRecorded) {
    fake::ClearDbmCalls();
    fake::FailDbmCall(1);
    EXPECT_EQ(-1, DBM_SetArray(handle_, "array", 5, 3, 4, "abcd", 1));
    EXPECT_EQ(0u, DBM_IsKeyExist(handle_, "array", 5));
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ("array", calls[0].key);
    EXPECT_EQ(5u, calls[0].key_length);
    EXPECT_EQ(3, calls[0].index);
    EXPECT_EQ("abcd", calls[0].value);
    EXPECT_EQ(1u, calls[0].value_type);
    EXPECT_EQ(-1, calls[0].result);
}

TEST_F(FakeDatabase, AStaleHandleFailsEveryCall) {
    EXPECT_EQ(0u, DBM_Close(handle_));
    char buffer[4];
    EXPECT_EQ(-1, DBM_SetArray(handle_, "a", 1, 0, 1, "x", 1));
    EXPECT_EQ(-1, DBM_GetArray(-1, "a", 1, 0, 4, buffer));
    EXPECT_EQ(0u, DBM_IsKeyExist(0, "a", 1));
    EXPECT_EQ(kFailed, DBM_SetBinary(handle_, "a", 1, -1, 1, "x", 1));
    EXPECT_EQ(kFailed, DBM_Commit(handle_));
    EXPECT_EQ(0u, DBM_GetKeyNumByValueType(handle_, 1));
}

}  // namespace
