// Refusals while a database is opened that are no failure, or that only a large file shows.
#include <errno.h>
#include <lmdb.h>

#include "../dbm/database_test.h"
#include "unit/platform/fault_window.h"

namespace {

class OpeningFaults : public DatabaseTest {
  protected:
    /* A file with a value, and with a list of free pages, that lie in pages of their own. */
    void SetUp() override {
        DatabaseTest::SetUp();
        const DBM_HANDLE handle = Create("DOM_DB", "isp-domain", 0);
        Set(handle, "k", "v");
        Set(handle, "big", std::string(9000, 'b'));
        Set(handle, "large", std::string(300 * 4096, 'l'));
        ASSERT_EQ(DBM_DeleteKey(handle, "large", 5), 0u);
        CloseAll();
    }
    void CloseAll() {
        for (const DBM_HANDLE handle : opened_) ASSERT_EQ(DBM_Close(handle), 0u);
        opened_.clear();
    }
    /* Makes the call again and again, each time with another of the calls refused that it makes,
     * and looks at the result of those where the function was the one. */
    template <class Call, class Look>
    static void Refuse(const std::string& function, int error, Call call, Look look) {
        int looks = 0;
        std::string refused;
        for (int failing = 1; failing == 1 || !refused.empty(); ++failing) {
            decltype(call()) result;
            {
                const fault_window::Window window(failing, error);
                result = call();
                refused = fault_window::Refused();
            }
            SCOPED_TRACE(failing);
            const bool looked_for = refused == function;
            looks += looked_for;
            look(result, looked_for);
        }
        EXPECT_GT(looks, 0);
    }
    template <class Look>
    void RefuseOpening(const std::string& function, int error, Look look) {
        Refuse(
            function, error, [&] { return OpenExisting(); },
            [&](DBM_HANDLE handle, bool looked_for) {
                if (looked_for) look(handle);
                CloseAll();
            });
    }
};

TEST_F(OpeningFaults, InterruptedReadIsRepeated) {
    RefuseOpening("pread", EINTR, [](DBM_HANDLE handle) { EXPECT_EQ(Get(handle, "k"), "v"); });
}

TEST_F(OpeningFaults, PageThatCannotBeReadIsADamagedOne) {
    int pages = 0;
    RefuseOpening("pread", EIO, [&](DBM_HANDLE handle) {
        ++pages;
        EXPECT_EQ(handle, DBM_INVALID_HANDLE);
        EXPECT_NE(Lines().back().find("restore data.mdb from a backup"), std::string::npos);
    });
    EXPECT_GT(pages, 8);
}

// Another process made the map larger between two calls.
TEST_F(OpeningFaults, LargerMapIsTakenOverAtOnce) {
    const DBM_HANDLE handle = OpenExisting();
    Refuse(
        "mdb_txn_begin", MDB_MAP_RESIZED, [&] { return Set(handle, "k", "w"); },
        [&](uint32_t result, bool looked_for) {
            if (looked_for) {
                EXPECT_EQ(result, 0u);
                EXPECT_EQ(Get(handle, "k"), "w");
            }
        });
}

// The second time is that of the look for the tables; the check of the file fails with it.
TEST_F(OpeningFaults, LargerMapIsTakenOverWhileTablesAreLookedFor) {
    int opened = 0;
    RefuseOpening("mdb_txn_begin", MDB_MAP_RESIZED, [&](DBM_HANDLE handle) {
        if (handle == DBM_INVALID_HANDLE) return;
        ++opened;
        EXPECT_EQ(Get(handle, "k"), "v");
    });
    EXPECT_EQ(opened, 1);
}

TEST_F(OpeningFaults, FileThatTakesNoChangesIsOpenedForReading) {
    for (const int error : {EROFS, EACCES, EPERM}) {
        RefuseOpening("mdb_env_open", error, [&](DBM_HANDLE handle) {
            ASSERT_EQ(Get(handle, "k"), "v");
            EXPECT_EQ(Set(handle, "k", "w"), kFailed);
            EXPECT_NE(Lines().back().find("writable for this user"), std::string::npos);
            EXPECT_EQ(DBM_Begin(handle), kFailed);
            DBM_OPEN_ATTR attr{};
            DBM_HANDLE other = DBM_INVALID_HANDLE;
            EXPECT_EQ(DBM_Open("DOM_DB", "other", DBM_MODE_CREATE, &attr, &other), kFailed);
            EXPECT_EQ(other, DBM_INVALID_HANDLE);
            EXPECT_EQ(Get(handle, "k"), "v");
        });
    }
}

}  // namespace
