#include <sys/resource.h>

#include <fstream>

#include "database_test.h"

namespace {

class StorageErrors : public DatabaseTest {
  protected:
    void Fill() {
        const DBM_HANDLE handle = Create();
        ASSERT_EQ(DBM_Begin(handle), 0u);
        for (int i = 0; i < 400; ++i)
            Set(handle, "key" + std::to_string(i), std::string(100 + i * 20, 'v'), 2);
        ASSERT_EQ(DBM_Commit(handle), 0u);
        for (int i = 0; i < 400; i += 3) Set(handle, "key" + std::to_string(i), "short", 3);
        ASSERT_EQ(DBM_Close(handle), 0u);
    }

    /* Everything a program might do with a database that may be damaged. */
    static int UseAll(DBM_HANDLE handle) {
        for (int i = 0; i < 400; ++i) (void)Get(handle, "key" + std::to_string(i));
        DBM_KEY_SLOT slots[400];
        (void)DBM_GetKeysByValueType(handle, 400, 2, nullptr, slots);
        for (int i = 0; i < 400; i += 7) {
            (void)Set(handle, "key" + std::to_string(i), std::string(50 * i, 'w'), 4);
            const std::string key = "key" + std::to_string(i + 1);
            (void)DBM_DeleteKey(handle, key.data(), key.size());
        }
        return 0;
    }

    static int OpenAndUse() {
        DBM_OPEN_ATTR attr{0, 1, 0, "1"};
        DBM_HANDLE handle = -1;
        if (DBM_Open("DOM_DB", "isp-domain", 7, &attr, &handle) != 0) return 1;
        /* One scope: one sync, not a hundred. */
        (void)DBM_Begin(handle);
        UseAll(handle);
        (void)DBM_Commit(handle);
        return 0;
    }

    void ExpectRefusedWithOneLine() {
        Lines().clear();
        EXPECT_EQ(OpenExisting(), DBM_INVALID_HANDLE);
        ASSERT_EQ(Lines().size(), 1u);
        EXPECT_NE(Lines()[0].find(DataFile()), std::string::npos) << Lines()[0];
        EXPECT_NE(Lines()[0].find("restore data.mdb from a backup"), std::string::npos);
        DBM_OPEN_ATTR attr{0, 1, 0, "1"};
        DBM_HANDLE handle = -1;
        EXPECT_EQ(DBM_Open("DOM_DB", "isp-domain", 7, &attr, &handle), kFailed);
    }
};

TEST_F(StorageErrors, AFullMapFailsTheCallAndKeepsTheRest) {
    aaadom::dbm::dbm_SetMapSize(size_t{1} << 20);
    const DBM_HANDLE handle = Create();
    Set(handle, "k", "v");
    EXPECT_EQ(Set(handle, "big", std::string(2 << 20, 'x')), kFailed);
    EXPECT_EQ(DBM_SetArray(handle, "array", 5, 0, 2 << 20, std::string(2 << 20, 'x').data(), 1),
              -1);
    EXPECT_FALSE(Exists(handle, "big"));
    EXPECT_EQ(Get(handle, "k"), "v");
    ASSERT_EQ(Lines().size(), 1u);
    EXPECT_NE(Lines()[0].find("MDB_MAP_FULL"), std::string::npos);
    EXPECT_NE(Lines()[0].find(DataFile()), std::string::npos);
    EXPECT_EQ(Set(handle, "k", "w"), 0u);
    EXPECT_EQ(Set(handle, "big", std::string(2 << 20, 'x')), kFailed);
    EXPECT_EQ(Lines().size(), 2u);
}

TEST_F(StorageErrors, NoRoomOnTheFileSystemFailsTheCall) {
    EXPECT_EQ(InChild([&] {
                  const DBM_HANDLE handle = Create();
                  Set(handle, "k", "v");
                  signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{256 * 1024, 256 * 1024};
                  if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                  if (Set(handle, "big", std::string(1 << 20, 'x')) != kFailed) return 2;
                  if (Lines().size() != 1) return 3;
                  if (Lines()[0].find("free space on the file system") == std::string::npos)
                      return 4;
                  if (Get(handle, "k") != "v" || Exists(handle, "big")) return 5;
                  return Set(handle, "k", "w") == 0 ? 0 : 6;
              }),
              0);
    EXPECT_EQ(Get(OpenExisting(), "k"), "w");
}

TEST_F(StorageErrors, ACutOffFileIsRefusedAtAnyLength) {
    Fill();
    const auto whole = std::filesystem::file_size(DataFile());
    for (const uintmax_t size : {whole / 2, uintmax_t{8193}, uintmax_t{8192}, uintmax_t{4096},
                                 uintmax_t{100}, uintmax_t{0}}) {
        std::filesystem::resize_file(DataFile(), size);
        SCOPED_TRACE(size);
        ExpectRefusedWithOneLine();
        EXPECT_EQ(std::filesystem::file_size(DataFile()), size);
    }
}

TEST_F(StorageErrors, GarbageIsRefused) {
    Fill();
    const auto whole = std::filesystem::file_size(DataFile());
    {
        std::ofstream file(DataFile(), std::ios::binary);
        for (uintmax_t i = 0; i < whole; ++i) file.put(static_cast<char>(i * 131 + i / 255));
    }
    ExpectRefusedWithOneLine();
}

// Opening would map as much and fail for want of memory, which nobody takes for damage.
TEST_F(StorageErrors, LastPageThatNobodyCanMapIsRefused) {
    Fill();
    constexpr int kLastPageAt = 136 + 4; /* the upper half of the number */
    for (const int meta : {0, 4096}) {
        std::fstream file(DataFile(), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(meta + kLastPageAt);
        file.put(0x10);
    }
    ExpectRefusedWithOneLine();
}

TEST_F(StorageErrors, GarbageBehindTheMetaPagesIsRefused) {
    Fill();
    const auto whole = std::filesystem::file_size(DataFile());
    {
        std::fstream file(DataFile(), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(8192);
        for (uintmax_t i = 8192; i < whole; ++i) file.put(static_cast<char>(i * 131 + i / 255));
    }
    ExpectRefusedWithOneLine();
}

/* Whatever bits are flipped: refused, or usable without a crash. */
TEST_F(StorageErrors, FlippedBitsNeverEndTheProcess) {
#ifdef __SANITIZE_THREAD__
    constexpr int kRounds = 10;  // each is a process of its own, which is slow there
#else
    constexpr int kRounds = 150;
#endif
    Fill();
    std::ifstream in(DataFile(), std::ios::binary);
    const std::string sound((std::istreambuf_iterator<char>(in)), {});
    unsigned random = 12345;
    const auto next = [&] { return random = random * 1103515245 + 12345; };
    int refused = 0;
    for (int round = 0; round < kRounds; ++round) {
        std::string damaged = sound;
        for (int flip = 0; flip < 4; ++flip) {
            /* Most hits in page headers and pointers, where they hurt. */
            const size_t page = (next() >> 8) % (damaged.size() / 4096);
            const size_t offset = page * 4096 + (next() >> 8) % (round % 2 != 0 ? 64 : 4096);
            damaged[offset] = static_cast<char>(damaged[offset] ^ (1u << ((next() >> 8) % 8)));
        }
        std::ofstream(DataFile(), std::ios::binary) << damaged;
        const int result = InChild([] { return OpenAndUse(); });
        EXPECT_LE(result, 1) << "round " << round;
        refused += result == 1;
    }
    EXPECT_GT(refused, 0);
}

TEST_F(StorageErrors, ADirectoryThatCannotBeWrittenIsReported) {
    ASSERT_EQ(mkdir((base_ + "/lib").c_str(), 0755), 0);
    EXPECT_EQ(InChild([&] {
                  if (geteuid() == 0 && seteuid(65534) != 0) return 10;
                  if (geteuid() != 65534) chmod((base_ + "/lib").c_str(), 0555);
                  DBM_OPEN_ATTR attr{0, 1, 0, "1"};
                  DBM_HANDLE handle = -1;
                  if (DBM_Open("DOM_DB", "isp-domain", 7, &attr, &handle) != kFailed) return 1;
                  if (handle != -1 || Lines().size() != 1) return 2;
                  return Lines()[0].find("writable for this user") != std::string::npos ? 0 : 3;
              }),
              0);
}

TEST_F(StorageErrors, AFileThatCannotBeWrittenIsOpenedForReading) {
    Set(Create(), "k", "v");
    for (DBM_HANDLE handle : opened_) DBM_Close(handle);
    const std::string directory = base_ + "/lib/DOM_DB";
    ASSERT_EQ(chmod((base_ + "/lib").c_str(), 0755), 0);
    ASSERT_EQ(chmod(directory.c_str(), 0755), 0);
    ASSERT_EQ(chmod(DataFile().c_str(), 0444), 0);
    ASSERT_EQ(chmod((directory + "/lock.mdb").c_str(), 0666), 0);
    EXPECT_EQ(InChild([&] {
                  if (geteuid() == 0 && seteuid(65534) != 0) return 10;
                  const DBM_HANDLE handle = OpenExisting();
                  if (handle == DBM_INVALID_HANDLE) return 1;
                  if (Get(handle, "k") != "v") return 2;
                  if (Set(handle, "k", "w") != kFailed || DBM_Begin(handle) != kFailed) return 3;
                  return Get(handle, "k") == "v" ? 0 : 4;
              }),
              0);
}

}  // namespace
