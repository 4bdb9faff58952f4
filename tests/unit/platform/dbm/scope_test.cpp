#include <atomic>
#include <future>
#include <thread>

#include "database_test.h"

namespace {

class TransactionScope : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        handle_ = Create();
    }
    /* What another thread reads: the last commit. */
    std::string GetElsewhere(const std::string& key) {
        return std::async(std::launch::async, [&] { return Get(handle_, key); }).get();
    }
    template <class Work>
    static auto Elsewhere(Work work) {
        return std::async(std::launch::async, work).get();
    }
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

TEST_F(TransactionScope, TheThreadReadsItsWritesAndOthersTheLastCommit) {
    Set(handle_, "k", "old");
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    Set(handle_, "k", "new");
    EXPECT_EQ(Get(handle_, "k"), "new");
    EXPECT_EQ(GetElsewhere("k"), "old");
    EXPECT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(GetElsewhere("k"), "new");
}

TEST_F(TransactionScope, AnotherHandleOnTheDatabaseJoins) {
    const DBM_HANDLE other = OpenExisting();
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    Set(other, "k", "v");
    EXPECT_EQ(Get(handle_, "k"), "v");
    EXPECT_EQ(DBM_Commit(other), 0u);
    EXPECT_EQ(GetElsewhere("k"), "v");
}

TEST_F(TransactionScope, OnlyTheOutermostCommitWrites) {
    DBM_Begin(handle_);
    DBM_Begin(handle_);
    Set(handle_, "k", "v");
    EXPECT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(GetElsewhere("k"), "");
    EXPECT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(GetElsewhere("k"), "v");
    EXPECT_EQ(DBM_Commit(handle_), kFailed);
}

TEST_F(TransactionScope, TheOutermostAbortRollsBackAtOnce) {
    DBM_Begin(handle_);
    Set(handle_, "k", "v");
    EXPECT_EQ(DBM_Abort(handle_), 0u);
    EXPECT_FALSE(Exists(handle_, "k"));
    EXPECT_EQ(DBM_Abort(handle_), kFailed);
}

TEST_F(TransactionScope, AnInnerAbortFailsTheOutermostCommit) {
    DBM_Begin(handle_);
    Set(handle_, "a", "v");
    DBM_Begin(handle_);
    Set(handle_, "b", "v");
    EXPECT_EQ(DBM_Abort(handle_), 0u);
    EXPECT_EQ(DBM_Commit(handle_), kFailed);
    EXPECT_FALSE(Exists(handle_, "a"));
    EXPECT_FALSE(Exists(handle_, "b"));
    EXPECT_EQ(Set(handle_, "a", "again"), 0u);
}

TEST_F(TransactionScope, ARefusedCallDoesNotSpoilTheScope) {
    DBM_Begin(handle_);
    Set(handle_, "k", "v");
    EXPECT_EQ(DBM_DeleteKey(handle_, "none", 4), kFailed);
    EXPECT_EQ(DBM_SetArray(handle_, "k", 1, 0, 1, "x", 1), -1);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Get(handle_, "k"), "v");
}

TEST_F(TransactionScope, OtherThreadsWritesWait) {
    DBM_Begin(handle_);
    Set(handle_, "k", "scope");
    std::atomic<bool> written{false};
    std::thread writer([&] {
        Set(handle_, "k", "other");
        written = true;
    });
    usleep(50000);
    EXPECT_FALSE(written);
    DBM_Commit(handle_);
    writer.join();
    EXPECT_EQ(Get(handle_, "k"), "other");
}

TEST_F(TransactionScope, AThreadWithoutScopeCannotEndIt) {
    DBM_Begin(handle_);
    EXPECT_EQ(Elsewhere([&] { return DBM_Commit(handle_); }), kFailed);
    EXPECT_EQ(Elsewhere([&] { return DBM_Abort(handle_); }), kFailed);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
}

TEST_F(TransactionScope, OpeningAKnownTableInsideIsFine) {
    DBM_Begin(handle_);
    Set(handle_, "k", "v");
    const DBM_HANDLE reader = OpenExisting();
    ASSERT_NE(reader, DBM_INVALID_HANDLE);
    EXPECT_EQ(Get(reader, "k"), "v");
    EXPECT_EQ(DBM_Close(reader), 0u);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
}

TEST_F(TransactionScope, OpeningANewTableInsideFailsInsteadOfWaitingForItself) {
    DBM_Begin(handle_);
    DBM_OPEN_ATTR attr{0, 1, 0, "1"};
    DBM_HANDLE other = DBM_INVALID_HANDLE;
    EXPECT_EQ(DBM_Open("DOM_DB", "new", DBM_MODE_CREATE, &attr, &other), kFailed);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
}

TEST_F(TransactionScope, ClosingTheLastHandleRollsBack) {
    DBM_Begin(handle_);
    Set(handle_, "k", "v");
    EXPECT_EQ(Elsewhere([&] { return DBM_Close(handle_); }), kFailed);
    EXPECT_EQ(DBM_Close(handle_), 0u);
    const DBM_HANDLE again = Create();
    EXPECT_FALSE(Exists(again, "k"));
    EXPECT_EQ(Set(again, "k", "v"), 0u);
}

TEST_F(TransactionScope, AFullMapSpoilsTheScopeAndNothingOfItIsStored) {
    DBM_Close(handle_);
    aaadom::dbm::dbm_SetMapSize(size_t{1} << 20);
    handle_ = Create();
    ASSERT_EQ(Set(handle_, "kept", "v"), 0u);
    DBM_Begin(handle_);
    EXPECT_EQ(Set(handle_, "small", "v"), 0u);
    EXPECT_EQ(Set(handle_, "big", std::string(4 << 20, 'x')), kFailed);
    EXPECT_EQ(DBM_Commit(handle_), kFailed);
    EXPECT_FALSE(Exists(handle_, "small"));
    EXPECT_EQ(Get(handle_, "kept"), "v");
    EXPECT_EQ(Set(handle_, "small", "v"), 0u);
}

TEST_F(TransactionScope, ABorrowerWritesInTheOwnersScope) {
    DBM_Begin(handle_);
    Set(handle_, "owner", "1");
    uint64_t token = 0;
    ASSERT_EQ(DBM_LendScope(handle_, &token), 0u);
    const bool all = Elsewhere([&] {
        bool good = DBM_BorrowScope(token) == 0;
        good &= Get(handle_, "owner") == "1";
        good &= Set(handle_, "borrower", "2") == 0;
        good &= DBM_Begin(handle_) == 0 && DBM_Commit(handle_) == 0;
        /* The outermost level is the owner's. */
        good &= DBM_Commit(handle_) == kFailed && DBM_Abort(handle_) == kFailed;
        good &= DBM_ReturnScope(token) == 0;
        return good;
    });
    EXPECT_TRUE(all);
    EXPECT_EQ(Get(handle_, "borrower"), "2");
    EXPECT_EQ(GetElsewhere("borrower"), "");
    EXPECT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(GetElsewhere("borrower"), "2");
}

TEST_F(TransactionScope, TheOwnersCallsFailWhileItIsLent) {
    Set(handle_, "k", "v");
    DBM_Begin(handle_);
    uint64_t token = 0;
    DBM_LendScope(handle_, &token);
    EXPECT_EQ(Set(handle_, "k", "w"), kFailed);
    EXPECT_EQ(Get(handle_, "k"), "<failed>");
    EXPECT_EQ(DBM_Begin(handle_), kFailed);
    EXPECT_EQ(DBM_Commit(handle_), kFailed);
    EXPECT_EQ(DBM_Close(handle_), kFailed);
    EXPECT_EQ(DBM_BorrowScope(token), kFailed);
    EXPECT_EQ(DBM_LendScope(handle_, &token), kFailed);
    EXPECT_EQ(DBM_RecallScope(handle_), 0u);
    EXPECT_EQ(Set(handle_, "k", "w"), 0u);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
}

TEST_F(TransactionScope, ATokenIsGoodForOneBorrowing) {
    DBM_Begin(handle_);
    uint64_t token = 0;
    DBM_LendScope(handle_, &token);
    EXPECT_EQ(Elsewhere([&] { return DBM_BorrowScope(token) + DBM_ReturnScope(token); }), 0u);
    EXPECT_EQ(Elsewhere([&] { return DBM_BorrowScope(token); }), kFailed);
    EXPECT_EQ(DBM_RecallScope(handle_), 0u);
    uint64_t second = 0;
    DBM_LendScope(handle_, &second);
    EXPECT_NE(second, token);
    EXPECT_EQ(DBM_RecallScope(handle_), 0u);
    EXPECT_EQ(Elsewhere([&] { return DBM_BorrowScope(second); }), kFailed);
    EXPECT_EQ(DBM_BorrowScope(0), kFailed);
    DBM_Abort(handle_);
}

TEST_F(TransactionScope, RecallFailsWhileTheBorrowerWorks) {
    DBM_Begin(handle_);
    uint64_t token = 0;
    DBM_LendScope(handle_, &token);
    std::promise<void> borrowed, recalled;
    std::thread borrower([&] {
        EXPECT_EQ(DBM_BorrowScope(token), 0u);
        borrowed.set_value();
        recalled.get_future().wait();
        EXPECT_EQ(DBM_ReturnScope(token), 0u);
    });
    borrowed.get_future().wait();
    EXPECT_EQ(DBM_RecallScope(handle_), kFailed);
    recalled.set_value();
    borrower.join();
    EXPECT_EQ(DBM_RecallScope(handle_), 0u);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
}

TEST_F(TransactionScope, LevelsLeftOpenByTheBorrowerFailTheScope) {
    DBM_Begin(handle_);
    uint64_t token = 0;
    DBM_LendScope(handle_, &token);
    EXPECT_EQ(Elsewhere([&] {
                  (void)DBM_BorrowScope(token);
                  DBM_Begin(handle_);
                  return DBM_ReturnScope(token);
              }),
              kFailed);
    EXPECT_EQ(DBM_Commit(handle_), kFailed);
}

// The owner's levels are the owner's: whoever works for it can neither end nor lend them.
TEST_F(TransactionScope, BorrowerEndsOnlyItsOwnLevels) {
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    uint64_t token = 0;
    ASSERT_EQ(DBM_LendScope(handle_, &token), 0u);
    EXPECT_EQ(Elsewhere([&] {
                  uint64_t another = 0;
                  EXPECT_EQ(DBM_BorrowScope(token), 0u);
                  EXPECT_EQ(DBM_Commit(handle_), kFailed);
                  EXPECT_EQ(DBM_Abort(handle_), kFailed);
                  EXPECT_EQ(DBM_LendScope(handle_, &another), kFailed);
                  EXPECT_EQ(DBM_BorrowScope(token), kFailed);
                  EXPECT_EQ(Elsewhere([&] { return DBM_BorrowScope(token); }), kFailed);
                  EXPECT_EQ(Elsewhere([&] { return DBM_ReturnScope(token); }), kFailed);
                  EXPECT_EQ(Set(handle_, "k", "v"), 0u);
                  return DBM_ReturnScope(token);
              }),
              0u);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
    EXPECT_EQ(Get(handle_, "k"), "v");
}

TEST_F(TransactionScope, ReturningWhatNobodyBorrowedFails) {
    ASSERT_EQ(DBM_Begin(handle_), 0u);
    uint64_t token = 0;
    ASSERT_EQ(DBM_LendScope(handle_, &token), 0u);
    EXPECT_EQ(Elsewhere([&] { return DBM_ReturnScope(token); }), kFailed);
    EXPECT_EQ(Elsewhere([&] { return DBM_BorrowScope(token) + DBM_ReturnScope(token); }), 0u);
    EXPECT_EQ(DBM_Commit(handle_), 0u);
}

TEST_F(TransactionScope, ManyThreadsReadWriteAndLendAtOnce) {
    DBM_Close(handle_);
    handle_ = Create("gRECORD", "isp-domain", 0);
    std::vector<std::thread> threads;
    std::atomic<int> failures{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            const std::string mine = "key" + std::to_string(t);
            for (int i = 0; i < 100; ++i) {
                const std::string value = std::to_string(i);
                if (t == 0) {
                    if (DBM_Begin(handle_) != 0) ++failures;
                    uint64_t token = 0;
                    if (DBM_LendScope(handle_, &token) != 0) ++failures;
                    std::thread helper([&] {
                        if (DBM_BorrowScope(token) != 0 || Set(handle_, mine, value) != 0 ||
                            DBM_ReturnScope(token) != 0)
                            ++failures;
                    });
                    helper.join();
                    if (DBM_Commit(handle_) != 0) ++failures;
                } else if (Set(handle_, mine, value) != 0) {
                    ++failures;
                }
                if (Get(handle_, mine) != value) ++failures;
                DBM_OPEN_ATTR attr{};
                DBM_HANDLE own = DBM_INVALID_HANDLE;
                (void)DBM_Open("gRECORD", "isp-domain", DBM_MODE_OPEN, &attr, &own);
                if (!Exists(own, mine) || DBM_Close(own) != 0) ++failures;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(Get(handle_, "key0"), "99");
}

}  // namespace
