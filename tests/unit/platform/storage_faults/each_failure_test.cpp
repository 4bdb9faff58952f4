// Every call of the database, and in each one every call that it makes refused in turn: it fails
// and nothing has changed, or it is done and everything has; the same call works right after.
#include <errno.h>
#include <lmdb.h>

#include <functional>

#include "../dbm/database_test.h"
#include "unit/platform/fault_window.h"

namespace {

constexpr uint32_t kAttributes[4] = {0, 8, DBM_KEY_KIND_U64, 0};

struct Entry {
    uint64_t key;
    char text[8];
};

/* Keys of four kinds, some of them stored. */
void Fill(DBM_HANDLE handle) {
    ASSERT_EQ(DBM_SetBinary(handle, "b", 1, -1, 3, "old", 2), 0u);
    for (uint32_t i : {1u, 5u}) ASSERT_EQ(DBM_SetArray(handle, "a", 1, i, 3, "old", 3), 0);
    ASSERT_EQ(DBM_CreateSortList(handle, "s", 1, kAttributes, 1, 4), 0u);
    ASSERT_EQ(DBM_CreateAvlList(handle, "v", 1, kAttributes, 1, 5), 0u);
    for (uint64_t key : {10u, 20u, 30u}) {
        const Entry entry{key, "old"};
        ASSERT_EQ(DBM_InsertSortList(handle, "s", 1, sizeof entry, &entry, 4), 0u);
        ASSERT_EQ(DBM_InsertAvlList(handle, "v", 1, sizeof entry, &entry), 0u);
    }
}

std::string Walk(DBM_HANDLE handle, const char* key) {
    DBM_CURSOR* cursor = nullptr;
    if (DBM_CursorOpen(handle, key, 1, &cursor) != 0) return "failed";
    std::string text;
    Entry entry{};
    int32_t got = DBM_CursorFirst(cursor, sizeof entry, &entry);
    for (; got > 0; got = DBM_CursorNext(cursor, sizeof entry, &entry)) {
        text += std::to_string(entry.key) + entry.text + " ";
    }
    DBM_CursorClose(cursor);
    return got < 0 ? "failed" : text;
}

/* Everything that the table holds, in words. */
std::string Everything(DBM_HANDLE handle) {
    std::string text;
    for (uint32_t type = 1; type <= 9; ++type) {
        DBM_KEY_SLOT slots[8];
        const uint32_t count = DBM_GetKeysByValueType(handle, 8, type, nullptr, slots);
        text += std::to_string(DBM_GetKeyNumByValueType(handle, type)) + ":";
        for (uint32_t i = 0; i < count; ++i) {
            const char* key = slots[i].key;
            text += std::string(key) + "/" + std::to_string(slots[i].kind) + "/" +
                    std::to_string(slots[i].value_length) + "=";
            char value[64] = "";
            if (slots[i].kind == DBM_KIND_BINARY) {
                (void)DBM_GetBinary(handle, key, 1, 0, sizeof value - 1, value);
                text += value;
            } else if (slots[i].kind == DBM_KIND_ARRAY) {
                int32_t at = -1;
                while ((at = DBM_GetNextArrayIndex(handle, key, 1, at)) >= 0) {
                    memset(value, 0, sizeof value);
                    (void)DBM_GetArray(handle, key, 1, static_cast<uint32_t>(at), 63, value);
                    text += std::to_string(at) + value + " ";
                }
            } else {
                text += Walk(handle, key);
            }
        }
        text += "\n";
    }
    return text;
}

std::string Done(bool done) {
    return done ? "done" : "failed";
}
std::string Bytes(int32_t got, const void* bytes) {
    return got < 0 ? "failed"
                   : std::string(static_cast<const char*>(bytes), static_cast<size_t>(got));
}

struct Row {
    const char* name;
    std::function<std::string(DBM_HANDLE)> call;
    /* What a failed call tells; numbers have no value of their own for it. */
    const char* failure = "failed";
};

const Entry kNew{15, "new"};
const Entry kOld{20, "new"};

uint32_t SetBinary(DBM_HANDLE handle, const char* key, uint32_t type) {
    return DBM_SetBinary(handle, key, 1, -1, 3, "new", type);
}

template <class Work>
Row Change(const char* name, Work work) {
    return {name, [work](DBM_HANDLE handle) { return Done(work(handle) == 0); }};
}

/* Several changes in one scope: all or none. A change that failed may not be left out silently. */
std::string InOneScope(DBM_HANDLE handle, bool nested) {
    if (DBM_Begin(handle) != 0) return "failed";
    bool all = SetBinary(handle, "b", 2) == 0;
    if (nested) all = DBM_Begin(handle) == 0 && all;
    all = DBM_InsertAvlList(handle, "v", 1, sizeof kNew, &kNew) == 0 && all;
    all = DBM_RemoveAvlList(handle, "v", 1, sizeof kOld, &kOld) == 0 && all;
    if (nested) all = DBM_Commit(handle) == 0 && all;
    all = DBM_SetArray(handle, "n", 1, 7, 3, "new", 3) == 0 && all;
    all = DBM_InsertSortList(handle, "s", 1, sizeof kNew, &kNew, 4) == 0 && all;
    if (!all) {
        (void)DBM_Abort(handle);
        return "failed";
    }
    return Done(DBM_Commit(handle) == 0);
}

const Row kRows[] = {
    Change("SetBinary", [](DBM_HANDLE h) { return SetBinary(h, "b", 2); }),
    Change("SetBinaryOfANewKey", [](DBM_HANDLE h) { return SetBinary(h, "n", 2); }),
    Change("SetBinaryOfAnotherType", [](DBM_HANDLE h) { return SetBinary(h, "b", 6); }),
    Change("SetBinaryOverAList", [](DBM_HANDLE h) { return SetBinary(h, "s", 4) != kFailed; }),
    Change("SetArray", [](DBM_HANDLE h) { return DBM_SetArray(h, "a", 1, 5, 3, "new", 3); }),
    Change("SetArrayOfANewKey",
           [](DBM_HANDLE h) { return DBM_SetArray(h, "n", 1, 5, 3, "new", 3); }),
    Change("SetArrayOfAnotherType",
           [](DBM_HANDLE h) { return DBM_SetArray(h, "a", 1, 9, 3, "new", 7); }),
    Change("RemoveArrayElement",
           [](DBM_HANDLE h) { return DBM_SetArray(h, "a", 1, 5, 0, nullptr, 3); }),
    Change("DeleteBinary", [](DBM_HANDLE h) { return DBM_DeleteKey(h, "b", 1); }),
    Change("DeleteArray", [](DBM_HANDLE h) { return DBM_DeleteKey(h, "a", 1); }),
    Change("DeleteSortedList", [](DBM_HANDLE h) { return DBM_DeleteKey(h, "s", 1); }),
    Change("DeleteAvlList", [](DBM_HANDLE h) { return DBM_DeleteKey(h, "v", 1); }),
    Change("CreateSortedList",
           [](DBM_HANDLE h) { return DBM_CreateSortList(h, "n", 1, kAttributes, 1, 4); }),
    Change("CreateAvlList",
           [](DBM_HANDLE h) { return DBM_CreateAvlList(h, "n", 1, kAttributes, 1, 5); }),
    Change("InsertSorted",
           [](DBM_HANDLE h) { return DBM_InsertSortList(h, "s", 1, sizeof kNew, &kNew, 4); }),
    Change("ReplaceSorted",
           [](DBM_HANDLE h) { return DBM_InsertSortList(h, "s", 1, sizeof kOld, &kOld, 4); }),
    Change("InsertSortedOfAnotherType",
           [](DBM_HANDLE h) { return DBM_InsertSortList(h, "s", 1, sizeof kNew, &kNew, 8); }),
    Change("RemoveSorted",
           [](DBM_HANDLE h) { return DBM_RemoveSortList(h, "s", 1, sizeof kOld, &kOld); }),
    Change("InsertAvl",
           [](DBM_HANDLE h) { return DBM_InsertAvlList(h, "v", 1, sizeof kNew, &kNew); }),
    Change("RemoveAvl",
           [](DBM_HANDLE h) { return DBM_RemoveAvlList(h, "v", 1, sizeof kOld, &kOld); }),
    Change("ClearAvl", [](DBM_HANDLE h) { return DBM_ClearAvlList(h, "v", 1); }),
    {"OneScope", [](DBM_HANDLE h) { return InOneScope(h, false); }},
    {"NestedScope", [](DBM_HANDLE h) { return InOneScope(h, true); }},
    {"GetBinary",
     [](DBM_HANDLE h) {
         char value[8];
         return Bytes(DBM_GetBinary(h, "b", 1, 0, sizeof value, value), value);
     }},
    {"GetBinaryLength",
     [](DBM_HANDLE h) {
         const int32_t got = DBM_GetBinaryLen(h, "b", 1);
         return got < 0 ? "failed" : std::to_string(got);
     }},
    {"GetArray",
     [](DBM_HANDLE h) {
         char value[8];
         return Bytes(DBM_GetArray(h, "a", 1, 5, sizeof value, value), value);
     }},
    {"GetNextArrayIndex",
     [](DBM_HANDLE h) {
         const int32_t got = DBM_GetNextArrayIndex(h, "a", 1, 1);
         return got < 0 ? "failed" : std::to_string(got);
     }},
    {"GetSorted",
     [](DBM_HANDLE h) -> std::string {
         Entry entry{20, ""};
         return DBM_GetSortList(h, "s", 1, sizeof entry, &entry) < 0 ? "failed" : entry.text;
     }},
    {"EntryNumOfAList", [](DBM_HANDLE h) { return std::to_string(DBM_GetEntryNum(h, "v", 1)); },
     "0"},
    {"EntryNumOfAnArray", [](DBM_HANDLE h) { return std::to_string(DBM_GetEntryNum(h, "a", 1)); },
     "0"},
    {"IsKeyExist", [](DBM_HANDLE h) { return std::to_string(DBM_IsKeyExist(h, "s", 1)); }, "0"},
    {"KeyNumber", [](DBM_HANDLE h) { return std::to_string(DBM_GetKeyNumByValueType(h, 2)); }, "0"},
    {"Keys",
     [](DBM_HANDLE h) {
         DBM_KEY_SLOT slots[2];
         void* iterator = nullptr;
         const uint32_t got = DBM_GetKeysByValueType(h, 2, 4, &iterator, slots);
         DBM_FreeIterator(iterator);
         return got == 0 ? "0" : slots[0].key + std::to_string(slots[0].value_length);
     },
     "0"},
    {"WalkForwards",
     [](DBM_HANDLE h) -> std::string {
         DBM_CURSOR* cursor = nullptr;
         if (DBM_CursorOpen(h, "v", 1, &cursor) != 0) return "failed";
         std::string text;
         Entry entry{};
         int32_t got = DBM_CursorFirst(cursor, sizeof entry, &entry);
         for (; got > 0; got = DBM_CursorNext(cursor, sizeof entry, &entry)) {
             text += std::to_string(entry.key) + " ";
         }
         DBM_CursorClose(cursor);
         return got < 0 ? "failed" : text;
     }},
    {"WalkBackwards",
     [](DBM_HANDLE h) -> std::string {
         DBM_CURSOR* cursor = nullptr;
         if (DBM_CursorOpen(h, "s", 1, &cursor) != 0) return "failed";
         std::string text;
         Entry entry{};
         int32_t got = DBM_CursorLast(cursor, sizeof entry, &entry);
         for (; got > 0; got = DBM_CursorPrev(cursor, sizeof entry, &entry)) {
             text += std::to_string(entry.key) + " ";
         }
         DBM_CursorClose(cursor);
         return got < 0 ? "failed" : text;
     }},
    {"Seek",
     [](DBM_HANDLE h) -> std::string {
         DBM_CURSOR* cursor = nullptr;
         if (DBM_CursorOpen(h, "v", 1, &cursor) != 0) return "failed";
         Entry entry{};
         const uint64_t key = 11;
         const int32_t got = DBM_CursorSeek(cursor, &key, sizeof entry, &entry);
         DBM_CursorClose(cursor);
         return got < 0 ? "failed" : std::to_string(entry.key);
     }},
};

class EachFailure : public DatabaseTest, public testing::WithParamInterface<Row> {
  protected:
    /* A table as Fill leaves it, in a database that is not synced: thousands of commits are made.
     */
    DBM_HANDLE Fresh() {
        const DBM_HANDLE handle = Create("DOM_DB", ("t" + std::to_string(++tables_)).c_str(), 0);
        Fill(handle);
        return handle;
    }
    void Sweep(int error);
    int tables_ = 0;
};

void EachFailure::Sweep(int error) {
    const Row& row = GetParam();
    DBM_HANDLE handle = Fresh();
    const std::string before = Everything(handle);
    std::string expected;
    int calls = 0;
    {
        const fault_window::Window window(0, 0);
        expected = row.call(handle);
        calls = fault_window::Window::Calls();
    }
    ASSERT_NE(expected, row.failure);
    ASSERT_GT(calls, 0);
    const std::string after = Everything(handle);
    for (int failing = 1; failing <= calls; ++failing) {
        (void)DBM_Close(opened_.back());
        opened_.pop_back();
        handle = Fresh();
        std::string told;
        {
            const fault_window::Window window(failing, error);
            told = row.call(handle);
        }
        SCOPED_TRACE("call " + std::to_string(failing) + " of " + std::to_string(calls) + ", " +
                     fault_window::Refused() + ", error " + std::to_string(error));
        if (told != expected) {
            ASSERT_EQ(told, row.failure);
            ASSERT_EQ(Everything(handle), before);
            ASSERT_EQ(row.call(handle), expected);
        }
        ASSERT_EQ(Everything(handle), after);
    }
}

TEST_P(EachFailure, ReadErrorFailsAndChangesNothing) {
    Sweep(EIO);
}
TEST_P(EachFailure, FullFileFailsAndChangesNothing) {
    Sweep(MDB_MAP_FULL);
}

INSTANTIATE_TEST_SUITE_P(Calls, EachFailure, testing::ValuesIn(kRows),
                         [](const auto& info) { return info.param.name; });

/* Opening is a change of its own: what it made before it failed may stay, nothing is torn. The
 * table's name is so long that the name of its index needs memory: when that was refused, the
 * transaction stayed open, with the lock for changes, and the next opening waited for ever. */
constexpr const char* kLongName = "isp-domain";

class EachFailureOfOpening : public DatabaseTest, public testing::WithParamInterface<uint32_t> {
  protected:
    uint32_t Open(DBM_HANDLE* handle) const {
        DBM_OPEN_ATTR attr{};
        attr.persistent = 1;
        return DBM_Open("DOM_DB", kLongName, GetParam(), &attr, handle);
    }
    void FreshRoot() {
        std::filesystem::remove_all(base_ + "/lib");
        if (GetParam() == DBM_MODE_CREATE) return;
        const DBM_HANDLE handle = Create("DOM_DB", kLongName);
        Fill(handle);
        ASSERT_EQ(DBM_Close(handle), 0u);
        opened_.pop_back();
    }
};

TEST_P(EachFailureOfOpening, GivesNoHandleAndOpensTheNextTime) {
    FreshRoot();
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    int calls = 0;
    {
        const fault_window::Window window(0, 0);
        ASSERT_EQ(Open(&handle), 0u);
        calls = fault_window::Window::Calls();
    }
    const std::string expected = Everything(handle);
    ASSERT_EQ(DBM_Close(handle), 0u);
    for (int failing = 1; failing <= calls; ++failing) {
        FreshRoot();
        handle = DBM_INVALID_HANDLE;
        uint32_t result = 0;
        {
            const fault_window::Window window(failing, EIO);
            result = Open(&handle);
        }
        SCOPED_TRACE("call " + std::to_string(failing) + " of " + std::to_string(calls) + ", " +
                     fault_window::Refused());
        ASSERT_EQ(result == 0, handle != DBM_INVALID_HANDLE);
        if (result != 0) {
            ASSERT_EQ(Open(&handle), 0u);
        }
        EXPECT_EQ(Everything(handle), expected);
        ASSERT_EQ(DBM_Close(handle), 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, EachFailureOfOpening,
                         testing::Values(uint32_t{DBM_MODE_OPEN}, uint32_t{DBM_MODE_CREATE}),
                         [](const auto& info) {
                             return info.param == DBM_MODE_OPEN ? "OpenExisting" : "Create";
                         });

}  // namespace
