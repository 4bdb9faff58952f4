/* The file is damaged while it is open: calls fail with a line that names it, the process lives. */
#include <fcntl.h>

#include <functional>
#include <string_view>

#include "database_test.h"

namespace {

constexpr size_t kPage = 4096;
constexpr size_t kKindAt = 10;  /* of a page: 1 branch, 2 leaf, 4 overflow */
constexpr size_t kLowerAt = 12; /* of a page: the end of its list of entries */
constexpr uint16_t kEmptyList = 16;
constexpr int kKeys = 400;
#ifdef __SANITIZE_THREAD__
constexpr unsigned kSeeds = 4; /* each is a process of its own, which is slow there */
#else
constexpr unsigned kSeeds = 24;
#endif

class OpenDamage : public DatabaseTest {
  protected:
    static std::string Key(int number) { return "key" + std::to_string(number); }

    DBM_HANDLE Filled() {
        const DBM_HANDLE handle = Create();
        EXPECT_EQ(DBM_Begin(handle), 0u);
        for (int i = 0; i < kKeys; ++i) Set(handle, Key(i), std::string(100 + i * 10, 'v'));
        EXPECT_EQ(DBM_Commit(handle), 0u);
        return handle;
    }

    /* Calls change(number, bytes) for each page behind the two meta pages and writes it back. */
    void ChangePages(const std::function<void(size_t, uint8_t*)>& change) const {
        const int file = open(DataFile().c_str(), O_RDWR | O_CLOEXEC);
        uint8_t page[kPage];
        for (size_t number = 2; pread(file, page, kPage, number * kPage) == kPage; ++number) {
            change(number, page);
            (void)!pwrite(file, page, kPage, number * kPage);
        }
        close(file);
    }
    static void Put16(uint8_t* at, uint16_t value) { memcpy(at, &value, sizeof value); }
    /* LMDB asserts that a branch page has two entries. */
    static void EmptyBranch(size_t, uint8_t* page) {
        if (page[kKindAt] == 1) Put16(page + kLowerAt, kEmptyList);
    }

    /* The list of free pages is read by changes alone. */
    size_t FreeListRoot() const {
        const int file = open(DataFile().c_str(), O_RDONLY | O_CLOEXEC);
        uint64_t roots[2] = {}, transactions[2] = {};
        for (int i = 0; i < 2; ++i) {
            (void)!pread(file, &roots[i], sizeof roots[i], i * kPage + 80);
            (void)!pread(file, &transactions[i], sizeof transactions[i], i * kPage + 144);
        }
        close(file);
        return roots[transactions[1] > transactions[0] ? 1 : 0];
    }

    static int ReadAll(DBM_HANDLE handle) {
        int read = 0;
        for (int i = 0; i < kKeys; ++i) read += Get(handle, Key(i)) != "<failed>";
        DBM_KEY_SLOT slots[kKeys];
        (void)DBM_GetKeysByValueType(handle, kKeys, 2, nullptr, slots);
        return read;
    }
    static int ReadsRight(DBM_HANDLE handle) {
        int right = 0;
        for (int i = 0; i < kKeys; ++i)
            right += Get(handle, Key(i)) == std::string(100 + i * 10, 'v');
        return right;
    }
    static bool Told(const std::string& text) {
        for (const std::string& line : Lines())
            if (line.find(text) != std::string::npos) return true;
        return false;
    }
};

// A map over a file that was cut off gives SIGBUS where the file ends now.
TEST_F(OpenDamage, FileCutOffFailsReadsAndChangesAndIsNamed) {
    for (const size_t kept : {size_t{0}, kPage, 2 * kPage, 5 * kPage, 40 * kPage}) {
        SCOPED_TRACE(kept);
        EXPECT_EQ(InChild([&] {
                      const DBM_HANDLE handle = Filled();
                      if (ReadsRight(handle) != kKeys) return 1;
                      std::filesystem::resize_file(DataFile(), kept);
                      if (ReadAll(handle) == kKeys) return 2;
                      if (!Told(DataFile()) || !Told("damaged")) return 3;
                      if (Set(handle, "new", "value") != kFailed) return 4;
                      if (DBM_Begin(handle) != kFailed) return 5;
                      return DBM_Close(handle) == 0 ? 0 : 6;
                  }),
                  0);
        std::filesystem::remove_all(base_ + "/lib");
    }
}

TEST_F(OpenDamage, WhatLiesElsewhereStaysReadable) {
    EXPECT_EQ(InChild([&] {
                  const DBM_HANDLE handle = Filled();
                  ChangePages([](size_t, uint8_t* page) {
                      const std::string_view bytes(reinterpret_cast<char*>(page), kPage);
                      if (page[kKindAt] == 2 && bytes.find(Key(200)) != bytes.npos)
                          Put16(page + kKindAt, 0);
                  });
                  if (Get(handle, Key(200)) != "<failed>") return 1;
                  return ReadsRight(handle) > kKeys / 2 ? 0 : 2;
              }),
              0);
}

// The check at the opening came too early for this damage; an assertion ended the process.
TEST_F(OpenDamage, FailedAssertionOfTheStorageFailsTheCall) {
    EXPECT_EQ(InChild([&] {
                  const DBM_HANDLE handle = Filled();
                  ChangePages(EmptyBranch);
                  if (ReadAll(handle) != 0) return 1;
                  return Told("damaged") ? 0 : 2;
              }),
              0);
}

TEST_F(OpenDamage, ChangesAreRefusedBeforeTheyTouchADamagedPage) {
    EXPECT_EQ(InChild([&] {
                  const DBM_HANDLE handle = Filled();
                  ChangePages([](size_t, uint8_t* page) {
                      if (page[kKindAt] == 2) Put16(page + kLowerAt + 2, 0xFFFE);
                  });
                  for (int i = 0; i < kKeys; ++i)
                      if (Set(handle, Key(i), std::string(3000, 'w')) != kFailed) return 1;
                  return Told("damaged") ? 0 : 2;
              }),
              0);
}

// A failed commit leaves pages in the file that no snapshot holds, and another time stamp.
TEST_F(OpenDamage, ForeignChangeThatDamagesNothingIsNoReasonToRefuse) {
    const DBM_HANDLE handle = Filled();
    ASSERT_EQ(chmod(DataFile().c_str(), 0600), 0);
    EXPECT_EQ(Set(handle, "new", "value"), 0u);
    std::filesystem::resize_file(DataFile(), std::filesystem::file_size(DataFile()) + 10 * kPage);
    EXPECT_EQ(Set(handle, "newer", "value"), 0u);
    EXPECT_EQ(Get(handle, "newer"), "value");
}

TEST_F(OpenDamage, RepairInPlaceIsNoticed) {
    EXPECT_EQ(InChild([&] {
                  const DBM_HANDLE handle = Filled();
                  std::filesystem::copy_file(DataFile(), base_ + "/copy");
                  ChangePages(EmptyBranch);
                  if (Set(handle, "new", "value") != kFailed) return 1;
                  std::filesystem::copy_file(base_ + "/copy", DataFile(),
                                             std::filesystem::copy_options::overwrite_existing);
                  if (Set(handle, "new", "value") != 0) return 2;
                  return ReadsRight(handle) == kKeys ? 0 : 3;
              }),
              0);
}

// LMDB's transaction and its lock are beyond repair then; nothing may wait for them.
TEST_F(OpenDamage, DamageMetByAChangeEndsTheChangesOfThisProcess) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "a lost writer's lock is never released: the thread sanitizer takes every lock"
                    " that follows for one in the wrong order";
#endif
    EXPECT_EQ(InChild([&] {
                  alarm(60);
                  const DBM_HANDLE handle = Filled();
                  if (DBM_Begin(handle) != 0) return 1;
                  const size_t root = FreeListRoot();
                  if (root < 2) return 11;
                  ChangePages([&](size_t number, uint8_t* page) {
                      if (number != root) return;
                      Put16(page + kKindAt, 1);
                      EmptyBranch(number, page);
                  });
                  if (Set(handle, Key(7), "other") != kFailed) return 2;
                  if (Set(handle, Key(8), "other") != kFailed) return 3;
                  if (Get(handle, Key(8)) == "other") return 4;
                  if (DBM_Commit(handle) != kFailed) return 5;
                  if (DBM_Begin(handle) != kFailed) return 6;
                  if (Set(handle, "new", "value") != kFailed) return 7;
                  (void)ReadAll(handle);
                  if (DBM_Close(handle) != 0) return 8;
                  DBM_OPEN_ATTR attr{0, 1, 0, "1"};
                  DBM_HANDLE again = DBM_INVALID_HANDLE;
                  if (DBM_Open("DOM_DB", "isp-domain", DBM_MODE_CREATE, &attr, &again) != kFailed)
                      return 9;
                  std::filesystem::rename(base_ + "/lib/DOM_DB", base_ + "/lib/away");
                  const DBM_HANDLE fresh = Create();
                  return Set(fresh, "new", "value") == 0 && Get(fresh, "new") == "value" ? 0 : 10;
              }),
              0);
}

// The lengths in the leaves point out of the map, where other memory of the process may lie.
TEST_F(OpenDamage, ValueThatIsLongerThanTheMapFailsTheCall) {
    aaadom::dbm::dbm_SetMapSize(size_t{64} << 20);
    EXPECT_EQ(InChild([&] {
                  const uint32_t attributes[4] = {0, 8, DBM_KEY_KIND_U64, 0};
                  const uint64_t entry = 1;
                  const DBM_HANDLE handle = Filled();
                  DBM_CURSOR* cursor = nullptr;
                  if (DBM_CreateSortList(handle, "list", 4, attributes, 1, 4) != 0) return 1;
                  if (DBM_InsertSortList(handle, "list", 4, sizeof entry, &entry, 4) != 0) return 2;
                  if (DBM_CursorOpen(handle, "list", 4, &cursor) != 0) return 3;
                  ChangePages([](size_t, uint8_t* page) {
                      uint16_t lower, at;
                      memcpy(&lower, page + kLowerAt, sizeof lower);
                      if (page[kKindAt] != 2) return;
                      for (size_t i = kEmptyList; i < lower; i += 2) {
                          memcpy(&at, page + i, sizeof at);
                          /* Not the table's own description. */
                          if (page[at + 4] != 2) Put16(page + at + 2, 0x7FF0);
                      }
                  });
                  char buffer[16];
                  if (DBM_CursorFirst(cursor, sizeof buffer, buffer) != -1) return 4;
                  if (ReadAll(handle) != 0) return 5;
                  DBM_CursorClose(cursor);
                  return Told("damaged") ? 0 : 6;
              }),
              0);
}

// A backup copied over the open file: the engine would go on from pages that are no more.
TEST_F(OpenDamage, OlderFileInPlaceTakesNoChanges) {
    EXPECT_EQ(InChild([&] {
                  const DBM_HANDLE handle = Filled();
                  std::filesystem::copy_file(DataFile(), base_ + "/copy");
                  for (int i = 0; i < 4; ++i)
                      if (Set(handle, "new", std::to_string(i)) != 0) return 1;
                  std::filesystem::copy_file(base_ + "/copy", DataFile(),
                                             std::filesystem::copy_options::overwrite_existing);
                  if (Set(handle, "new", "value") != kFailed) return 2;
                  return Told("damaged") ? 0 : 3;
              }),
              0);
}

TEST_F(OpenDamage, RemovedFileTakesNoChanges) {
    const DBM_HANDLE handle = Filled();
    ASSERT_TRUE(std::filesystem::remove(DataFile()));
    EXPECT_EQ(Set(handle, "new", "value"), kFailed);
    EXPECT_TRUE(Told("removed"));
    EXPECT_EQ(ReadsRight(handle), kKeys);
}

TEST_F(OpenDamage, FlippedBitsNeverEndTheProcess) {
    for (unsigned seed = 1; seed <= kSeeds; ++seed) {
        EXPECT_EQ(InChild([&] {
                      srandom(seed);
                      const DBM_HANDLE handle = Filled();
                      const bool inside = seed % 2 == 0;
                      if (inside && DBM_Begin(handle) != 0) return 1;
                      ChangePages([](size_t, uint8_t* page) {
                          if (random() % 4 != 0) return;
                          const long at =
                              random() % 4 == 0 ? random() % long{kPage} : random() % 200;
                          page[at] ^= static_cast<uint8_t>(1u << (random() % 8));
                      });
                      (void)ReadAll(handle);
                      if (inside) (void)DBM_Abort(handle);
                      for (int i = 0; i < 20; ++i) (void)Set(handle, Key(i * 17), "w");
                      (void)ReadAll(handle);
                      return 0;
                  }),
                  0)
            << "seed " << seed;
        std::filesystem::remove_all(base_ + "/lib");
    }
}

// Other faults of the process are not this layer's to swallow.
TEST_F(OpenDamage, FaultElsewhereEndsTheProcessAsEver) {
    EXPECT_NE(InChild([&] {
                  (void)Filled();
                  raise(SIGBUS);
                  return 0;
              }),
              0);
}

}  // namespace
