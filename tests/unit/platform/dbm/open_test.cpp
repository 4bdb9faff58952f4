#include <thread>

#include <fcntl.h>

#include "database_test.h"

namespace {

class Opening : public DatabaseTest {};
class Handles : public DatabaseTest {};
class Processes : public DatabaseTest {};

TEST_F(Opening, ModeOneCreatesNothingAndLeavesTheHandleAlone) {
    DBM_OPEN_ATTR attr{};
    DBM_HANDLE handle = 4711;
    EXPECT_EQ(DBM_Open("DOM_DB", "isp-domain", DBM_MODE_OPEN, &attr, &handle), kFailed);
    EXPECT_EQ(handle, 4711);
    EXPECT_TRUE(std::filesystem::is_empty(base_));
}

TEST_F(Opening, ModeOneDoesNotMakeATable) {
    Create("DOM_DB", "one");
    EXPECT_EQ(OpenExisting("DOM_DB", "two"), DBM_INVALID_HANDLE);
    EXPECT_EQ(Lines().size(), 1u);
}

TEST_F(Opening, ModeSevenKeepsWhatIsThere) {
    Set(Create(), "k", "v");
    for (DBM_HANDLE handle : opened_) DBM_Close(handle);
    EXPECT_EQ(Get(Create(), "k"), "v");
}

TEST_F(Opening, OtherModesAreRefused) {
    DBM_OPEN_ATTR attr{0, 1, 0, "1"};
    DBM_HANDLE handle = -1;
    for (uint32_t mode : {0u, 2u, 3u, 5u, 8u, ~0u})
        EXPECT_EQ(DBM_Open("DOM_DB", "t", mode, &attr, &handle), kFailed);
    EXPECT_TRUE(std::filesystem::is_empty(base_));
}

TEST_F(Opening, NamesCannotLeaveTheRoot) {
    DBM_OPEN_ATTR attr{0, 1, 0, "1"};
    DBM_HANDLE handle = -1;
    const std::string text(65, 'n');
    for (const char* name : {"", ".", "..", "a/b", "/a", ".hidden", "a:b", text.c_str()}) {
        EXPECT_EQ(DBM_Open(name, "t", 7, &attr, &handle), kFailed) << name;
        EXPECT_EQ(DBM_Open("d", name, 7, &attr, &handle), kFailed) << name;
    }
    EXPECT_EQ(DBM_Open(nullptr, "t", 7, &attr, &handle), kFailed);
    EXPECT_EQ(DBM_Open("d", nullptr, 7, &attr, &handle), kFailed);
    EXPECT_EQ(DBM_Open("d", "t", 7, &attr, nullptr), kFailed);
    EXPECT_TRUE(std::filesystem::is_empty(base_));
}

TEST_F(Opening, TheAttributeWordChoosesTheRootAndModeOneFindsBoth) {
    Set(Create("DOM_DB", "isp-domain", 1), "k", "durable");
    Set(Create("gRECORD", "isp-domain", 0), "k", "run-time");
    EXPECT_TRUE(std::filesystem::exists(base_ + "/lib/DOM_DB/data.mdb"));
    EXPECT_TRUE(std::filesystem::exists(base_ + "/run/gRECORD/data.mdb"));
    EXPECT_EQ(Get(OpenExisting("DOM_DB"), "k"), "durable");
    EXPECT_EQ(Get(OpenExisting("gRECORD"), "k"), "run-time");
}

TEST_F(Opening, DirectoriesAreForOwnerAndGroup) {
    Create();
    struct stat status;
    for (const char* path : {"/lib", "/lib/DOM_DB"}) {
        ASSERT_EQ(stat((base_ + path).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0750u) << path;
    }
}

TEST_F(Opening, AMissingParentDirectoryIsReportedOnce) {
    DBM_SetRoot((base_ + "/no/lib").c_str(), nullptr);
    DBM_OPEN_ATTR attr{0, 1, 0, "1"};
    DBM_HANDLE handle = -1;
    EXPECT_EQ(DBM_Open("DOM_DB", "t", 7, &attr, &handle), kFailed);
    ASSERT_EQ(Lines().size(), 1u);
    EXPECT_NE(Lines()[0].find(base_ + "/no/lib"), std::string::npos);
    EXPECT_NE(Lines()[0].find("create the parent directory"), std::string::npos);
}

// Not "no such database": nobody would look at the root then.
TEST_F(Opening, RootThatIsNoDirectoryIsNamed) {
    const std::string file = base_ + "/file";
    ASSERT_GE(creat(file.c_str(), 0600), 0);
    const std::pair<std::string, std::string> roots[] = {{file, base_ + "/run"},
                                                         {base_ + "/lib", file}};
    for (const auto& [persistent, runtime] : roots) {
        ASSERT_EQ(DBM_SetRoot(persistent.c_str(), runtime.c_str()), 0u);
        Lines().clear();
        EXPECT_EQ(OpenExisting(), DBM_INVALID_HANDLE);
        ASSERT_EQ(Lines().size(), 1u);
        EXPECT_EQ(Lines()[0].find(file + "/DOM_DB: open failed: Not a directory"), 0u)
            << Lines()[0];
        DBM_OPEN_ATTR attr{0, file == persistent ? 1u : 0u, 0, "1"};
        DBM_HANDLE handle = DBM_INVALID_HANDLE;
        EXPECT_EQ(DBM_Open("DOM_DB", "isp-domain", DBM_MODE_CREATE, &attr, &handle), kFailed);
        EXPECT_EQ(handle, DBM_INVALID_HANDLE);
    }
}

TEST_F(Opening, RootsKeepTheirValueForNull) {
    EXPECT_EQ(DBM_SetRoot(nullptr, nullptr), 0u);
    EXPECT_EQ(DBM_SetRoot("", nullptr), kFailed);
    EXPECT_EQ(DBM_SetRoot((base_ + "/other").c_str(), std::string(5000, 'x').c_str()), kFailed);
    Create();
    EXPECT_TRUE(std::filesystem::exists(base_ + "/lib/DOM_DB/data.mdb"));
}

TEST_F(Opening, ANullAttributeBlockIsARunTimeDatabase) {
    DBM_HANDLE handle = -1;
    EXPECT_EQ(DBM_Open("x", "t", 7, nullptr, &handle), 0u);
    EXPECT_TRUE(std::filesystem::exists(base_ + "/run/x/data.mdb"));
    EXPECT_EQ(DBM_Close(handle), 0u);
}

TEST_F(Handles, DeadHandlesFailEveryCall) {
    const DBM_HANDLE closed = Create();
    Set(closed, "k", "v");
    const DBM_HANDLE open = OpenExisting();
    ASSERT_EQ(DBM_Close(closed), 0u);
    const uint32_t attributes[4] = {0, 2, 2, 0};
    char buffer[64] = {};
    for (DBM_HANDLE handle : {closed, DBM_HANDLE{-1}, DBM_HANDLE{0}, DBM_HANDLE{1}, open + 1,
                              open + 65536, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(DBM_Close(handle), kFailed);
        EXPECT_EQ(DBM_SetArray(handle, "k", 1, 0, 1, "v", 1), -1);
        EXPECT_LT(DBM_GetArray(handle, "k", 1, 0, 1, buffer), 0);
        EXPECT_LT(DBM_GetNextArrayIndex(handle, "k", 1, -1), 0);
        EXPECT_EQ(DBM_SetBinary(handle, "k", 1, -1, 1, "v", 1), kFailed);
        EXPECT_LT(DBM_GetBinary(handle, "k", 1, 0, 1, buffer), 0);
        EXPECT_LT(DBM_GetBinaryLen(handle, "k", 1), 0);
        EXPECT_EQ(DBM_IsKeyExist(handle, "k", 1), 0u);
        EXPECT_EQ(DBM_DeleteKey(handle, "k", 1), kFailed);
        EXPECT_EQ(DBM_CreateSortList(handle, "l", 1, attributes, 1, 1), kFailed);
        EXPECT_LT(DBM_GetSortList(handle, "l", 1, 2, buffer), 0);
        EXPECT_EQ(DBM_InsertSortList(handle, "l", 1, 2, buffer, 1), kFailed);
        EXPECT_EQ(DBM_RemoveSortList(handle, "l", 1, 2, buffer), kFailed);
        EXPECT_EQ(DBM_CreateAvlList(handle, "l", 1, attributes, 1, 1), kFailed);
        EXPECT_EQ(DBM_InsertAvlList(handle, "l", 1, 2, buffer), kFailed);
        EXPECT_EQ(DBM_RemoveAvlList(handle, "l", 1, 2, buffer), kFailed);
        EXPECT_EQ(DBM_ClearAvlList(handle, "l", 1), kFailed);
        EXPECT_EQ(DBM_GetKeyNumByValueType(handle, 1), 0u);
        DBM_KEY_SLOT slot;
        EXPECT_EQ(DBM_GetKeysByValueType(handle, 1, 2, nullptr, &slot), 0u);
        DBM_CURSOR* cursor = nullptr;
        EXPECT_EQ(DBM_CursorOpen(handle, "l", 1, &cursor), kFailed);
        EXPECT_EQ(DBM_GetEntryNum(handle, "k", 1), 0u);
        EXPECT_EQ(DBM_Begin(handle), kFailed);
        EXPECT_EQ(DBM_Commit(handle), kFailed);
        EXPECT_EQ(DBM_Abort(handle), kFailed);
        uint64_t token;
        EXPECT_EQ(DBM_LendScope(handle, &token), kFailed);
        EXPECT_EQ(DBM_RecallScope(handle), kFailed);
    }
    EXPECT_EQ(Get(open, "k"), "v");
    DBM_CursorClose(nullptr);
    EXPECT_LT(DBM_CursorFirst(nullptr, 0, nullptr), 0);
}

TEST_F(Handles, ASlotThatIsUsedAgainDoesNotReviveTheOldHandle) {
    const DBM_HANDLE first = Create();
    DBM_Close(first);
    const DBM_HANDLE second = Create();
    EXPECT_NE(first, second);
    EXPECT_EQ(Set(first, "k", "v"), kFailed);
    EXPECT_EQ(Set(second, "k", "v"), 0u);
}

TEST_F(Handles, OneHandlesEndDoesNotDisturbAnother) {
    const DBM_HANDLE first = Create();
    for (int i = 0; i < 20; ++i) {
        const DBM_HANDLE reader = OpenExisting();
        ASSERT_EQ(DBM_Close(reader), 0u);
        ASSERT_EQ(Set(first, "k", std::to_string(i)), 0u);
    }
    EXPECT_EQ(Get(first, "k"), "19");
}

TEST_F(Handles, TwoPathsToOneDirectoryShareTheEnvironment) {
    const DBM_HANDLE direct = Create();
    std::filesystem::create_symlink(base_ + "/lib", base_ + "/link");
    DBM_SetRoot((base_ + "/link").c_str(), nullptr);
    const DBM_HANDLE linked = Create();
    /* Two environments on one file would hide the scope's writes from the second handle. */
    ASSERT_EQ(DBM_Begin(direct), 0u);
    Set(direct, "k", "v");
    EXPECT_EQ(Get(linked, "k"), "v");
    EXPECT_EQ(DBM_Commit(direct), 0u);
}

TEST_F(Processes, AReaderSeesWhatAWriterCommittedMeanwhile) {
    int go[2], done[2];
    ASSERT_EQ(pipe(go) + pipe(done), 0);
    const pid_t child = fork();
    if (child == 0) {
        char byte;
        if (read(go[0], &byte, 1) != 1) _exit(9);
        DBM_OPEN_ATTR attr{};
        DBM_HANDLE handle = -1;
        if (DBM_Open("DOM_DB", "isp-domain", 1, &attr, &handle) != 0) _exit(1);
        if (Get(handle, "k") != "first") _exit(2);
        if (write(done[1], "x", 1) != 1 || read(go[0], &byte, 1) != 1) _exit(9);
        if (Get(handle, "k") != "second") _exit(3);
        _exit(Set(handle, "child", "wrote") == 0 ? 0 : 4);
    }
    const DBM_HANDLE handle = Create();
    Set(handle, "k", "first");
    char byte;
    ASSERT_EQ(write(go[1], "x", 1), 1);
    ASSERT_EQ(read(done[0], &byte, 1), 1);
    Set(handle, "k", "second");
    ASSERT_EQ(write(go[1], "x", 1), 1);
    int status;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Get(handle, "child"), "wrote");
}

TEST_F(Processes, AReaderInAnotherProcessDoesNotWaitForAScope) {
    Set(Create(), "k", "old");
    for (DBM_HANDLE handle : opened_) DBM_Close(handle);
    int begun[2];
    ASSERT_EQ(pipe(begun), 0);
    const pid_t child = fork();
    if (child == 0) {
        DBM_OPEN_ATTR attr{};
        DBM_HANDLE handle = -1;
        if (DBM_Open("DOM_DB", "isp-domain", 1, &attr, &handle) != 0) _exit(1);
        DBM_Begin(handle);
        Set(handle, "k", "new");
        if (write(begun[1], "x", 1) != 1) _exit(2);
        pause();
        _exit(3);
    }
    char byte;
    ASSERT_EQ(read(begun[0], &byte, 1), 1);
    const DBM_HANDLE reader = OpenExisting();
    EXPECT_EQ(Get(reader, "k"), "old");
    /* The killed writer's half scope is gone, and its lock too. */
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(Get(reader, "k"), "old");
    EXPECT_EQ(Set(reader, "k", "mine"), 0u);
}

TEST_F(Processes, WhatAKilledWriterCommittedIsThere) {
    int count[2];
    ASSERT_EQ(pipe(count), 0);
    const pid_t child = fork();
    if (child == 0) {
        DBM_OPEN_ATTR attr{0, 1, 0, "1"};
        DBM_HANDLE handle = -1;
        if (DBM_Open("DOM_DB", "isp-domain", 7, &attr, &handle) != 0) _exit(1);
        for (uint32_t i = 0;; ++i) {
            if (DBM_SetArray(handle, "array", 5, i, sizeof i, &i, 1) != 0) _exit(2);
            if (write(count[1], &i, sizeof i) != sizeof i) _exit(3);
        }
    }
    uint32_t last = 0;
    while (last < 50) ASSERT_EQ(read(count[0], &last, sizeof last), ssize_t{sizeof last});
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const DBM_HANDLE handle = OpenExisting();
    ASSERT_NE(handle, DBM_INVALID_HANDLE);
    for (uint32_t i = 0; i <= last; ++i) {
        uint32_t value = ~0u;
        EXPECT_EQ(DBM_GetArray(handle, "array", 5, i, sizeof value, &value), 4);
        EXPECT_EQ(value, i);
    }
}

TEST_F(Processes, AHandleDoesNotSurviveAFork) {
    const DBM_HANDLE handle = Create();
    Set(handle, "k", "v");
    EXPECT_EQ(InChild([&] {
                  if (Set(handle, "k", "child") != kFailed || Exists(handle, "k")) return 1;
                  if (DBM_Close(handle) != kFailed) return 2;
                  DBM_OPEN_ATTR attr{};
                  DBM_HANDLE own = -1;
                  if (DBM_Open("DOM_DB", "isp-domain", 1, &attr, &own) != 0) return 3;
                  if (own == handle || Get(own, "k") != "v") return 4;
                  return DBM_Close(own) == 0 ? 0 : 5;
              }),
              0);
    EXPECT_EQ(Set(handle, "k", "parent"), 0u);
}

TEST_F(Processes, ALargerMapOfAnotherProcessIsTakenOver) {
    aaadom::dbm::dbm_SetMapSize(size_t{1} << 20);
    const DBM_HANDLE handle = Create();
    Set(handle, "k", "v");
    const std::string big(3 << 20, 'b');
    ASSERT_EQ(InChild([&] {
                  aaadom::dbm::dbm_SetMapSize(size_t{64} << 20);
                  DBM_OPEN_ATTR attr{};
                  DBM_HANDLE own = -1;
                  if (DBM_Open("DOM_DB", "isp-domain", 1, &attr, &own) != 0) return 1;
                  return Set(own, "big", big) == 0 ? 0 : 2;
              }),
              0);
    EXPECT_EQ(DBM_GetBinaryLen(handle, "big", 3), 3 << 20);
    EXPECT_EQ(Set(handle, "k", "w"), 0u);
    EXPECT_TRUE(Lines().empty());
}

}  // namespace
