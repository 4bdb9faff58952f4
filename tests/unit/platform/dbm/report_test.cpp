/* What the line of a failure tells the operator to do. */
#include "dbm/report.h"

#include <errno.h>
#include <lmdb.h>

#include "database_test.h"

namespace {

class Report : public DatabaseTest {
  protected:
    static std::string LineOf(int code) {
        Lines().clear();
        aaadom::dbm::ReportFailure("/lib/db", "read", code);
        return Lines().empty() ? "" : Lines()[0];
    }
};

TEST_F(Report, NamesFileActionReasonAndWayOut) {
    EXPECT_EQ(LineOf(MDB_MAP_FULL),
              "/lib/db: read failed: MDB_MAP_FULL: Environment mapsize limit reached; the size "
              "limit of the database is reached: delete entries");
}

TEST_F(Report, EveryCodeHasItsWayOut) {
    const std::pair<std::vector<int>, const char*> rows[] = {
        {{ENOSPC, EDQUOT, EFBIG}, "free space on the file system or raise the limit"},
        {{ENOENT, ENOTDIR}, "create the parent directory"},
        {{EACCES, EPERM, EROFS}, "writable for this user"},
        {{MDB_INVALID, MDB_CORRUPTED, MDB_PAGE_NOTFOUND, MDB_VERSION_MISMATCH, MDB_CURSOR_FULL,
          MDB_BAD_TXN, aaadom::dbm::kDamagedFile},
         "restore data.mdb from a backup"},
        {{aaadom::dbm::kRemovedFile}, "what was saved in it is lost"},
        {{MDB_NOTFOUND}, "start the daemon"},
        {{EDEADLK}, "open tables before the transaction scope begins"},
        {{MDB_READERS_FULL}, "end some of the processes"},
        {{EIO}, "check the free space on the file system and the storage itself"},
        {{MDB_PANIC}, "check the storage, then restart"},
        {{ENOMEM}, "if it happens again check the storage"},
    };
    for (const auto& [codes, way_out] : rows)
        for (const int code : codes)
            EXPECT_NE(LineOf(code).find(way_out), std::string::npos) << LineOf(code);
}

TEST_F(Report, LongPathIsCutNotOverrun) {
    aaadom::dbm::ReportFailure(std::string(3000, 'p'), "read", EIO);
    EXPECT_EQ(Lines().back(), std::string(1023, 'p'));
}

}  // namespace
