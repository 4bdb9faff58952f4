#include "database_test.h"

namespace {

constexpr uint32_t kVlanAttributes[4] = {0, 2, 2, 0};
constexpr uint32_t kNameAttributes[4] = {40, 32, 5, 0};
constexpr uint32_t kSerialAttributes[4] = {4, 8, 20, 0};

struct VlanEntry {
    uint16_t vlan;
    char nas_id[32];
};
static_assert(sizeof(VlanEntry) == 34);

VlanEntry Vlan(uint16_t vlan, const char* nas_id = "") {
    VlanEntry entry{};
    entry.vlan = vlan;
    strncpy(entry.nas_id, nas_id, sizeof entry.nas_id - 1);
    return entry;
}

std::string Record(uint64_t serial, const std::string& text) {
    std::string entry(12, '\0');
    memcpy(entry.data() + 4, &serial, sizeof serial);
    return entry + text;
}

class SortedList : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        handle_ = Create();
        ASSERT_EQ(DBM_CreateSortList(handle_, "list", 5, kVlanAttributes, 1, 5), 0u);
    }
    uint32_t Insert(const VlanEntry& entry) {
        return DBM_InsertSortList(handle_, "list", 5, sizeof entry, &entry, 5);
    }
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

class AvlList : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        handle_ = Create("gRECORD", "isp-domain", 0);
        ASSERT_EQ(DBM_CreateAvlList(handle_, "list", 5, kSerialAttributes, 1, 41), 0u);
    }
    uint32_t Insert(uint64_t serial, const std::string& text = "") {
        const std::string entry = Record(serial, text);
        return DBM_InsertAvlList(handle_, "list", 5, entry.size(), entry.data());
    }
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

TEST_F(SortedList, AnEmptyListIsAKeyOfItsType) {
    EXPECT_EQ(DBM_IsKeyExist(handle_, "list", 5), 1u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, 5), 1u);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "list", 5), 0u);
}

TEST_F(SortedList, CreatingAnExistingKeyFailsAndKeepsIt) {
    Insert(Vlan(7, "x"));
    EXPECT_EQ(DBM_CreateSortList(handle_, "list", 5, kVlanAttributes, 1, 6), kFailed);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "list", 5), 1u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, 5), 1u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, 6), 0u);
}

TEST_F(SortedList, TheProbeIsOverwrittenByTheStoredEntry) {
    Insert(Vlan(100, "first"));
    Insert(Vlan(200, "second"));
    VlanEntry probe = Vlan(200, "whatever the probe says");
    EXPECT_GE(DBM_GetSortList(handle_, "list", 5, sizeof probe, &probe), 0);
    EXPECT_STREQ(probe.nas_id, "second");
    probe = Vlan(300, "kept");
    EXPECT_LT(DBM_GetSortList(handle_, "list", 5, sizeof probe, &probe), 0);
    EXPECT_STREQ(probe.nas_id, "kept");
}

TEST_F(SortedList, InsertingAnExistingSortKeyReplacesTheEntry) {
    Insert(Vlan(100, "old"));
    EXPECT_EQ(Insert(Vlan(100, "new")), 0u);
    VlanEntry probe = Vlan(100);
    DBM_GetSortList(handle_, "list", 5, sizeof probe, &probe);
    EXPECT_STREQ(probe.nas_id, "new");
    EXPECT_EQ(DBM_GetEntryNum(handle_, "list", 5), 1u);
}

TEST_F(SortedList, RemovingLooksAtTheSortKeyAlone) {
    Insert(Vlan(100, "text"));
    const VlanEntry probe = Vlan(100, "other text");
    EXPECT_EQ(DBM_RemoveSortList(handle_, "list", 5, sizeof probe, &probe), 0u);
    EXPECT_EQ(DBM_RemoveSortList(handle_, "list", 5, sizeof probe, &probe), kFailed);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "list", 5), 0u);
    EXPECT_EQ(DBM_IsKeyExist(handle_, "list", 5), 1u);
}

TEST_F(SortedList, AMissingListTakesNoEntry) {
    VlanEntry entry = Vlan(1);
    EXPECT_EQ(DBM_InsertSortList(handle_, "none", 5, sizeof entry, &entry, 5), kFailed);
    EXPECT_EQ(DBM_RemoveSortList(handle_, "none", 5, sizeof entry, &entry), kFailed);
    EXPECT_LT(DBM_GetSortList(handle_, "none", 5, sizeof entry, &entry), 0);
    EXPECT_EQ(DBM_IsKeyExist(handle_, "none", 5), 0u);
}

TEST_F(SortedList, AllEntriesHaveTheSizeOfTheFirst) {
    Insert(Vlan(1));
    char entry[64] = {2};
    EXPECT_EQ(DBM_InsertSortList(handle_, "list", 5, 33, entry, 5), kFailed);
    EXPECT_EQ(DBM_InsertSortList(handle_, "list", 5, 35, entry, 5), kFailed);
    EXPECT_EQ(DBM_RemoveSortList(handle_, "list", 5, 35, entry), kFailed);
    EXPECT_LT(DBM_GetSortList(handle_, "list", 5, 35, entry), 0);
}

TEST_F(SortedList, AnEntryThatDoesNotHoldTheSortKeyIsRefused) {
    const char byte = 1;
    EXPECT_EQ(DBM_InsertSortList(handle_, "list", 5, 1, &byte, 5), kFailed);
    EXPECT_EQ(DBM_InsertSortList(handle_, "list", 5, 34, nullptr, 5), kFailed);
}

TEST_F(SortedList, TextKeysEndAtTheirTerminator) {
    ASSERT_EQ(DBM_CreateSortList(handle_, "names", 6, kNameAttributes, 1, 24), 0u);
    char entry[72] = "first";
    strcpy(entry + 40, "same");
    ASSERT_EQ(DBM_InsertSortList(handle_, "names", 6, 72, entry, 24), 0u);
    char probe[72] = {};
    memset(probe, '#', sizeof probe);
    memcpy(probe + 40, "same", 5);
    EXPECT_GE(DBM_GetSortList(handle_, "names", 6, 72, probe), 0);
    EXPECT_STREQ(probe, "first");
}

TEST_F(SortedList, ATextKeyMayFillItsFieldWithoutTerminator) {
    ASSERT_EQ(DBM_CreateSortList(handle_, "names", 6, kNameAttributes, 1, 24), 0u);
    char entry[72];
    memset(entry, 'n', sizeof entry);
    ASSERT_EQ(DBM_InsertSortList(handle_, "names", 6, 72, entry, 24), 0u);
    EXPECT_GE(DBM_GetSortList(handle_, "names", 6, 72, entry), 0);
}

TEST_F(SortedList, UnusableAttributesAreRefused) {
    const uint32_t kind[4] = {0, 2, 3, 0};
    const uint32_t length[4] = {0, 4, 2, 0};
    const uint32_t none[4] = {0, 0, 5, 0};
    const uint32_t huge[4] = {0, 505, 5, 0};
    for (const uint32_t* attributes : {kind, length, none, huge})
        EXPECT_EQ(DBM_CreateSortList(handle_, "bad", 4, attributes, 1, 5), kFailed);
    EXPECT_EQ(DBM_CreateSortList(handle_, "bad", 4, nullptr, 1, 5), kFailed);
    EXPECT_EQ(DBM_CreateSortList(handle_, "bad", 4, kVlanAttributes, 2, 5), kFailed);
    EXPECT_EQ(DBM_IsKeyExist(handle_, "bad", 4), 0u);
}

TEST_F(SortedList, OtherKindsRefuseTheKey) {
    char byte;
    EXPECT_EQ(DBM_SetBinary(handle_, "list", 5, -1, 1, "y", 5), kFailed);
    EXPECT_LT(DBM_GetBinary(handle_, "list", 5, 0, 1, &byte), 0);
    EXPECT_EQ(DBM_SetArray(handle_, "list", 5, 0, 1, "y", 5), -1);
    EXPECT_EQ(DBM_InsertAvlList(handle_, "list", 5, 34, "0123456789012345678901234567890123"),
              kFailed);
    EXPECT_EQ(DBM_ClearAvlList(handle_, "list", 5), kFailed);
}

TEST_F(AvlList, ADuplicateFailsAndChangesNothing) {
    EXPECT_EQ(Insert(5, "first"), 0u);
    EXPECT_EQ(Insert(5, "second"), kFailed);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "list", 5), 1u);
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle_, "list", 5, &cursor), 0u);
    char buffer[64] = {};
    EXPECT_EQ(DBM_CursorFirst(cursor, sizeof buffer, buffer), 17);
    EXPECT_STREQ(buffer + 12, "first");
    DBM_CursorClose(cursor);
}

TEST_F(AvlList, RemovingTakesTheBufferSizeAsLength) {
    Insert(5, "text");
    std::vector<char> buffer(65535);
    const std::string probe = Record(5, "");
    memcpy(buffer.data(), probe.data(), probe.size());
    EXPECT_EQ(DBM_RemoveAvlList(handle_, "list", 5, 65535, buffer.data()), 0u);
    EXPECT_EQ(DBM_RemoveAvlList(handle_, "list", 5, 65535, buffer.data()), kFailed);
    EXPECT_EQ(DBM_RemoveAvlList(handle_, "list", 5, 11, buffer.data()), kFailed);
}

TEST_F(AvlList, EntriesMayHaveAnyLengthThatHoldsTheKey) {
    EXPECT_EQ(Insert(1), 0u);
    EXPECT_EQ(Insert(2, std::string(65535 - 12, 'x')), 0u);
    EXPECT_EQ(Insert(3, std::string(65535 - 11, 'x')), kFailed);
    EXPECT_EQ(DBM_InsertAvlList(handle_, "list", 5, 11, Record(4, "").data()), kFailed);
}

TEST_F(AvlList, ClearingKeepsTheList) {
    for (uint64_t serial = 1; serial <= 300; ++serial) Insert(serial, "some text");
    EXPECT_EQ(DBM_ClearAvlList(handle_, "list", 5), 0u);
    EXPECT_EQ(DBM_GetEntryNum(handle_, "list", 5), 0u);
    EXPECT_EQ(DBM_GetKeyNumByValueType(handle_, 41), 1u);
    EXPECT_EQ(Insert(1), 0u);
}

TEST_F(AvlList, AMissingListFails) {
    EXPECT_EQ(DBM_ClearAvlList(handle_, "none", 5), kFailed);
    EXPECT_EQ(DBM_InsertAvlList(handle_, "none", 5, 12, Record(1, "").data()), kFailed);
    EXPECT_EQ(DBM_RemoveAvlList(handle_, "none", 5, 12, Record(1, "").data()), kFailed);
    DBM_CURSOR* cursor = nullptr;
    EXPECT_EQ(DBM_CursorOpen(handle_, "none", 5, &cursor), kFailed);
    EXPECT_EQ(cursor, nullptr);
}

class ListCursor : public AvlList {
  protected:
    void SetUp() override {
        AvlList::SetUp();
        /* Neighbours on both sides of the list: the walk must not leave it. */
        DBM_CreateAvlList(handle_, "lisa", 5, kSerialAttributes, 1, 41);
        DBM_CreateAvlList(handle_, "lisz", 5, kSerialAttributes, 1, 41);
        for (const char* name : {"lisa", "lisz"})
            DBM_InsertAvlList(handle_, name, 5, 12, Record(9999, "").data());
        for (uint64_t serial : {uint64_t{256}, uint64_t{1}, uint64_t{65536}, ~uint64_t{0}})
            Insert(serial);
        ASSERT_EQ(DBM_CursorOpen(handle_, "list", 5, &cursor_), 0u);
    }
    void TearDown() override {
        DBM_CursorClose(cursor_);
        DatabaseTest::TearDown();
    }
    using Step = int32_t (*)(DBM_CURSOR*, uint32_t, void*);
    uint64_t Take(Step step) {
        char entry[12];
        if (step(cursor_, sizeof entry, entry) != 12) return 0;
        uint64_t serial;
        memcpy(&serial, entry + 4, sizeof serial);
        return serial;
    }
    uint64_t Seek(uint64_t serial) {
        char entry[12];
        if (DBM_CursorSeek(cursor_, &serial, sizeof entry, entry) != 12) return 0;
        memcpy(&serial, entry + 4, sizeof serial);
        return serial;
    }
    DBM_CURSOR* cursor_ = nullptr;
};

TEST_F(ListCursor, WalksUpInNumericOrder) {
    EXPECT_EQ(Take(DBM_CursorNext), 1u);
    EXPECT_EQ(Take(DBM_CursorNext), 256u);
    EXPECT_EQ(Take(DBM_CursorNext), 65536u);
    EXPECT_EQ(Take(DBM_CursorNext), ~uint64_t{0});
    EXPECT_EQ(Take(DBM_CursorNext), 0u);
    EXPECT_EQ(Take(DBM_CursorNext), 0u);
    EXPECT_EQ(Take(DBM_CursorPrev), ~uint64_t{0});
}

TEST_F(ListCursor, WalksDownInNumericOrder) {
    EXPECT_EQ(Take(DBM_CursorLast), ~uint64_t{0});
    EXPECT_EQ(Take(DBM_CursorPrev), 65536u);
    EXPECT_EQ(Take(DBM_CursorPrev), 256u);
    EXPECT_EQ(Take(DBM_CursorPrev), 1u);
    EXPECT_EQ(Take(DBM_CursorPrev), 0u);
    EXPECT_EQ(Take(DBM_CursorNext), 1u);
}

TEST_F(ListCursor, SeeksTheFirstAtOrBehind) {
    EXPECT_EQ(Seek(256), 256u);
    EXPECT_EQ(Seek(257), 65536u);
    EXPECT_EQ(Seek(0), 1u);
    EXPECT_EQ(Take(DBM_CursorNext), 256u);
}

TEST_F(ListCursor, GoesOnFromAnEntryThatWasRemoved) {
    EXPECT_EQ(Seek(256), 256u);
    DBM_RemoveAvlList(handle_, "list", 5, 12, Record(256, "").data());
    EXPECT_EQ(Take(DBM_CursorNext), 65536u);
    EXPECT_EQ(Take(DBM_CursorPrev), 1u);
}

TEST_F(ListCursor, FailsWhenItsHandleIsClosed) {
    DBM_Close(handle_);
    char entry[12];
    EXPECT_EQ(DBM_CursorFirst(cursor_, sizeof entry, entry), -1);
}

TEST_F(ListCursor, TheLastListOfTheTableEndsToo) {
    DBM_CURSOR* last = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle_, "lisz", 5, &last), 0u);
    char entry[12];
    EXPECT_EQ(DBM_CursorLast(last, sizeof entry, entry), 12);
    EXPECT_EQ(DBM_CursorNext(last, sizeof entry, entry), 0);
    DBM_CursorClose(last);
}

TEST_F(SortedList, VlanNumbersSortNumerically) {
    for (uint16_t vlan : {256, 1, 4094, 255}) Insert(Vlan(vlan));
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle_, "list", 5, &cursor), 0u);
    std::vector<uint16_t> walked;
    VlanEntry entry;
    while (DBM_CursorNext(cursor, sizeof entry, &entry) > 0) walked.push_back(entry.vlan);
    DBM_CursorClose(cursor);
    EXPECT_EQ(walked, (std::vector<uint16_t>{1, 255, 256, 4094}));
}

}  // namespace
