// Where the lists of records lie in the run database.
#pragma once

#include <aaadom/db_layout.h>
#include <aaadom/user_record.h>

#include <cstdint>

namespace aaad {

struct RecordListKey {
    uint32_t list;
    const char* text;
    uint32_t length;
};

constexpr RecordListKey kRecordListKeys[] = {
    {DOM_RECORD_ONLINE_FAIL, DOM_RUN_DB_KEY_ONLINE_FAIL, DOM_RUN_DB_KEY_ONLINE_FAIL_LEN},
    {DOM_RECORD_ABNORMAL_OFFLINE, DOM_RUN_DB_KEY_ABNORMAL_OFFLINE,
     DOM_RUN_DB_KEY_ABNORMAL_OFFLINE_LEN},
    {DOM_RECORD_NORMAL_OFFLINE, DOM_RUN_DB_KEY_NORMAL_OFFLINE, DOM_RUN_DB_KEY_NORMAL_OFFLINE_LEN},
};

/// Null for a number that is no list.
constexpr const RecordListKey* FindRecordListKey(uint32_t list) {
    for (const RecordListKey& key : kRecordListKeys) {
        if (key.list == list) return &key;
    }
    return nullptr;
}

}  // namespace aaad
