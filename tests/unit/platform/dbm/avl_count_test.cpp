/* The number of entries of an AVL list, whatever happens between two changes of it. */
#include <algorithm>

#include "database_test.h"

namespace {

constexpr uint32_t kAttributes[4] = {4, 8, 20, 0};

/* A process that works when it is told to; made while this one has nothing open. */
class OtherProcess {
  public:
    template <class Work>
    explicit OtherProcess(Work work) {
        EXPECT_EQ(pipe(go_) | pipe(done_), 0);
        child_ = fork();
        if (child_ != 0) return;
        char byte;
        if (read(go_[0], &byte, 1) != 1) _exit(2);
        const uint32_t result = work();
        (void)!write(done_[1], "x", 1);
        _exit(result == 0 ? 0 : 1);
    }
    ~OtherProcess() {
        for (int fd : {go_[0], go_[1], done_[0], done_[1]}) close(fd);
    }
    /* Waits for the end of the work, which must succeed. */
    void Run() {
        char byte = 0;
        ASSERT_EQ(write(go_[1], "x", 1), 1);
        ASSERT_EQ(read(done_[0], &byte, 1), 1);
        int status = -1;
        waitpid(child_, &status, 0);
        EXPECT_EQ(status, 0);
    }

  private:
    int go_[2];
    int done_[2];
    pid_t child_;
};

class AvlCount : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        handle_ = Create();
        for (const char* list : {"list", "next"}) {
            ASSERT_EQ(DBM_CreateAvlList(handle_, list, 5, kAttributes, 1, 41), 0u);
        }
    }
    static std::string Entry(uint64_t serial) {
        std::string bytes(12, 'h');
        memcpy(bytes.data() + 4, &serial, sizeof serial);
        return bytes;
    }
    uint32_t Insert(uint64_t serial, const char* list = "list") {
        return DBM_InsertAvlList(handle_, list, 5, 12, Entry(serial).data());
    }
    uint32_t Remove(uint64_t serial, const char* list = "list") {
        return DBM_RemoveAvlList(handle_, list, 5, 12, Entry(serial).data());
    }
    uint32_t Count(const char* list = "list") { return DBM_GetEntryNum(handle_, list, 5); }
    void CloseAll() {
        ASSERT_EQ(DBM_Close(handle_), 0u);
        opened_.clear();
    }
    uint32_t InsertAnew(uint64_t serial) {
        handle_ = Create();
        return Insert(serial);
    }
    /* The serial numbers that a walk meets. */
    std::vector<uint64_t> Walk(bool up, const char* list = "list") {
        std::vector<uint64_t> serials;
        DBM_CURSOR* cursor = nullptr;
        EXPECT_EQ(DBM_CursorOpen(handle_, list, 5, &cursor), 0u);
        char buffer[12];
        auto step = up ? DBM_CursorNext : DBM_CursorPrev;
        int32_t got = up ? DBM_CursorFirst(cursor, 12, buffer) : DBM_CursorLast(cursor, 12, buffer);
        for (; got > 0; got = step(cursor, 12, buffer)) {
            uint64_t serial;
            memcpy(&serial, buffer + 4, sizeof serial);
            serials.push_back(serial);
        }
        EXPECT_EQ(got, 0);
        DBM_CursorClose(cursor);
        return serials;
    }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

using Serials = std::vector<uint64_t>;

TEST_F(AvlCount, FollowsInsertsAndRemovals) {
    EXPECT_EQ(Count(), 0u);
    EXPECT_EQ(Insert(1), 0u);
    EXPECT_EQ(Insert(2), 0u);
    EXPECT_EQ(Count(), 2u);
    EXPECT_EQ(Remove(1), 0u);
    EXPECT_EQ(Count(), 1u);
    EXPECT_EQ(Remove(2), 0u);
    EXPECT_EQ(Count(), 0u);
}

TEST_F(AvlCount, RefusedChangesDoNotCount) {
    EXPECT_EQ(Insert(1), 0u);
    EXPECT_EQ(Insert(1), kFailed);
    EXPECT_EQ(Remove(2), kFailed);
    EXPECT_EQ(Insert(3), 0u);
    EXPECT_EQ(Count(), 2u);
}

TEST_F(AvlCount, IsSeenInsideAScope) {
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(Insert(1), 0u);
    EXPECT_EQ(Insert(1), kFailed);
    EXPECT_EQ(Count(), 1u);
    EXPECT_EQ(Insert(2), 0u);
    EXPECT_EQ(Remove(1), 0u);
    EXPECT_EQ(Insert(3), 0u);
    EXPECT_EQ(Walk(true), (Serials{2, 3}));
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Count(), 2u);
}

TEST_F(AvlCount, OfListsThatTakeTurnsInAScope) {
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    for (uint64_t serial = 1; serial <= 5; ++serial) {
        EXPECT_EQ(Insert(serial), 0u);
        EXPECT_EQ(Insert(serial, "next"), 0u);
        if (serial <= 2) continue;
        EXPECT_EQ(Remove(serial - 2, "next"), 0u);
    }
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Count("list"), 5u);
    EXPECT_EQ(Count("next"), 2u);
}

TEST_F(AvlCount, OfARolledBackScopeIsTheOldOne) {
    EXPECT_EQ(Insert(1), 0u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(Insert(2), 0u);
    EXPECT_EQ(Insert(3), 0u);
    ASSERT_EQ(DBM_Abort(handle_), 0u);
    EXPECT_EQ(Insert(4), 0u);
    EXPECT_EQ(Count(), 2u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(Insert(5), 0u);
    ASSERT_EQ(DBM_Abort(handle_), 0u);
    ASSERT_EQ(DBM_Commit(handle_), kFailed);
    EXPECT_EQ(Insert(6), 0u);
    EXPECT_EQ(Walk(true), (Serials{1, 4, 6}));
    EXPECT_EQ(Count(), 3u);
}

/* What is known of the list from the transaction before must not outlive these. */
TEST_F(AvlCount, StartsAnewAfterClearingInTheScopeThatInserts) {
    EXPECT_EQ(Insert(1), 0u);
    EXPECT_EQ(Insert(2), 0u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(DBM_ClearAvlList(handle_, "list", 5), 0u);
    EXPECT_EQ(Insert(3), 0u);
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Count(), 1u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(Insert(4), 0u);
    EXPECT_EQ(DBM_ClearAvlList(handle_, "list", 5), 0u);
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Insert(5), 0u);
    EXPECT_EQ(Count(), 1u);
}

TEST_F(AvlCount, StartsAnewAfterTheListWasDeletedAndMadeAgain) {
    EXPECT_EQ(Insert(1), 0u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(DBM_DeleteKey(handle_, "list", 5), 0u);
    EXPECT_EQ(Insert(2), kFailed);
    EXPECT_EQ(DBM_CreateAvlList(handle_, "list", 5, kAttributes, 1, 41), 0u);
    EXPECT_EQ(Insert(2), 0u);
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Count(), 1u);
    EXPECT_EQ(DBM_DeleteKey(handle_, "list", 5), 0u);
    EXPECT_EQ(Insert(3), kFailed);
}

TEST_F(AvlCount, FollowsAnotherProcessThatInsertsInBetween) {
    CloseAll();
    OtherProcess other([this] { return InsertAnew(2); });
    handle_ = Create();
    EXPECT_EQ(Insert(1), 0u);
    other.Run();
    EXPECT_EQ(Insert(3), 0u);
    EXPECT_EQ(Count(), 3u);
}

/* A scope that changes nothing uses up no transaction number: the other process gets its. */
TEST_F(AvlCount, FollowsAnotherProcessThatInsertsAfterAScopeWithoutAChange) {
    CloseAll();
    OtherProcess other([this] { return InsertAnew(2); });
    handle_ = Create();
    EXPECT_EQ(Insert(1), 0u);
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    EXPECT_EQ(Insert(1), kFailed);
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    other.Run();
    EXPECT_EQ(Insert(3), 0u);
    EXPECT_EQ(Count(), 3u);
    EXPECT_EQ(Walk(true), (Serials{1, 2, 3}));
}

TEST_F(AvlCount, StaysWhenTheDatabaseIsOpenedAgain) {
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    for (uint64_t serial = 1; serial <= 100; ++serial) EXPECT_EQ(Insert(serial), 0u);
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    ASSERT_EQ(DBM_Close(handle_), 0u);
    opened_.clear();
    handle_ = Create();
    EXPECT_EQ(Count(), 100u);
    EXPECT_EQ(Insert(101), 0u);
    EXPECT_EQ(Count(), 101u);
}

TEST_F(AvlCount, IsTheValueLengthOfTheKey) {
    EXPECT_EQ(Insert(1), 0u);
    EXPECT_EQ(Insert(2), 0u);
    DBM_KEY_SLOT slots[2];
    ASSERT_EQ(DBM_GetKeysByValueType(handle_, 2, 41, nullptr, slots), 2u);
    EXPECT_EQ(slots[0].value_length, 2u);
    EXPECT_EQ(slots[1].value_length, 0u);
}

TEST_F(AvlCount, IsNoEntryOfTheList) {
    const uint64_t greatest = UINT64_MAX;
    EXPECT_EQ(Insert(greatest), 0u);
    EXPECT_EQ(Insert(7), 0u);
    EXPECT_EQ(Insert(1, "next"), 0u);
    EXPECT_EQ(Walk(true), (Serials{7, greatest}));
    EXPECT_EQ(Walk(false), (Serials{greatest, 7}));
    EXPECT_EQ(Walk(false, "next"), Serials{1});
    EXPECT_EQ(Remove(greatest), 0u);
    EXPECT_EQ(Remove(7), 0u);
    EXPECT_EQ(Walk(true), Serials{});
    EXPECT_EQ(Walk(false), Serials{});
}

TEST_F(AvlCount, NeedsOneByteOfTheKeysRoom) {
    const uint32_t text[4] = {0, 107, 5, 0};
    const uint32_t longer[4] = {0, 108, 5, 0};
    const std::string key(400, 'k');
    EXPECT_EQ(DBM_CreateAvlList(handle_, key.data(), 400, longer, 1, 41), kFailed);
    EXPECT_EQ(DBM_CreateAvlList(handle_, key.data(), 400, text, 1, 41), 0u);
    const std::string entry(107, '\xFF');
    EXPECT_EQ(DBM_InsertAvlList(handle_, key.data(), 400, 107, entry.data()), 0u);
    EXPECT_EQ(DBM_GetEntryNum(handle_, key.data(), 400), 1u);
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle_, key.data(), 400, &cursor), 0u);
    char buffer[107];
    EXPECT_EQ(DBM_CursorLast(cursor, 107, buffer), 107);
    EXPECT_EQ(DBM_CursorPrev(cursor, 107, buffer), 0);
    DBM_CursorClose(cursor);
}

TEST_F(AvlCount, ManyEntriesInEveryOrderAreCounted) {
    const uint32_t kMany = 3000;
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    uint64_t serial = 1;
    for (uint32_t n = 0; n < kMany; ++n) {
        serial = serial * 6364136223846793005u + 1442695040888963407u;
        ASSERT_EQ(Insert(serial), 0u);
        if (n % 3 != 2) continue;
        ASSERT_EQ(Remove(serial), 0u);
    }
    ASSERT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Count(), kMany - kMany / 3);
    const Serials up = Walk(true);
    EXPECT_EQ(up.size(), kMany - kMany / 3);
    EXPECT_TRUE(std::is_sorted(up.begin(), up.end()));
}

}  // namespace
