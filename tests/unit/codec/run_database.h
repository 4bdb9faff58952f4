// A run database with its three lists, and what they hold.
#pragma once

#include <aaadom/db_layout.h>
#include <aaadom/record_run_db.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>
#include <platform/dbm.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace run_db {

inline constexpr uint32_t kLists[] = {DOM_RECORD_ONLINE_FAIL, DOM_RECORD_ABNORMAL_OFFLINE,
                                      DOM_RECORD_NORMAL_OFFLINE};

inline void Open() {
    const DBM_HANDLE handle = DOM_CreateRecordRunDB();
    ASSERT_NE(handle, DBM_INVALID_HANDLE);
    DOM_SetRecordRunDBHandle(handle);
    ASSERT_EQ(DOM_CreateAllRecordDBAvlList(), DOM_OK);
}

/// The stored records of a list, byte for byte, in ascending order of their serial numbers.
inline std::vector<std::string> Entries(uint32_t kind) {
    const char* key = DOM_RUN_DB_KEY_NORMAL_OFFLINE;
    if (kind == DOM_RECORD_ONLINE_FAIL) key = DOM_RUN_DB_KEY_ONLINE_FAIL;
    if (kind == DOM_RECORD_ABNORMAL_OFFLINE) key = DOM_RUN_DB_KEY_ABNORMAL_OFFLINE;
    std::vector<std::string> entries;
    DBM_CURSOR* cursor = nullptr;
    if (DBM_CursorOpen(DOM_GetRecordRunDBHandle(), key, static_cast<uint32_t>(strlen(key) + 1),
                       &cursor) != 0)
        return entries;
    std::vector<char> buffer(DOM_RECORD_STORED_SIZE);
    for (;;) {
        const int32_t length =
            DBM_CursorNext(cursor, static_cast<uint32_t>(buffer.size()), buffer.data());
        if (length <= 0) break;
        entries.emplace_back(buffer.data(), static_cast<size_t>(length));
    }
    DBM_CursorClose(cursor);
    return entries;
}

inline std::vector<uint64_t> Serials(uint32_t kind) {
    std::vector<uint64_t> serials;
    for (const std::string& entry : Entries(kind)) {
        uint64_t serial = 0;
        memcpy(&serial, entry.data() + DOM_RUN_DB_SERIAL_OFFSET, sizeof serial);
        serials.push_back(serial);
    }
    return serials;
}

inline void Store(uint32_t kind, uint64_t serial) {
    UserRecord record{};
    record.serial = serial;
    ASSERT_EQ(DOM_SetSingeRecordInfoToRunDB(kind, &record), DOM_OK);
}

}  // namespace run_db
