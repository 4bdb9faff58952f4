#include <aaadom/db_layout.h>

#include <cstring>

#include "record_list_keys.h"
#include "record_store.h"

namespace aaad {

static_assert(RecordCursor::kSerialEnd == DOM_RUN_DB_SERIAL_OFFSET + DOM_RUN_DB_SERIAL_SIZE);

RecordCursor::RecordCursor(const RecordStore& store, uint32_t list, uint64_t below)
    : below_(below) {
    const RecordListKey* key = FindRecordListKey(list);
    if (key == nullptr) return;
    if (DBM_CursorOpen(store.Handle(), key->text, key->length, &cursor_) != 0) {
        cursor_ = nullptr;
        failed_ = true;
    }
}

RecordCursor::~RecordCursor() {
    DBM_CursorClose(cursor_);
}

uint32_t RecordCursor::Next(void* buffer, uint32_t size) {
    if (cursor_ == nullptr || failed_) return 0;
    if (!started_) {
        started_ = true;
        if (below_ == 0) return Taken(DBM_CursorLast(cursor_, size, buffer));
        // Stands on the first record at or behind the number, or behind the last one.
        uint8_t head[kSerialEnd];
        if (DBM_CursorSeek(cursor_, &below_, sizeof head, head) < 0) return Taken(-1);
    }
    return Taken(DBM_CursorPrev(cursor_, size, buffer));
}

/// What a step of the cursor says.
uint32_t RecordCursor::Taken(int32_t length) {
    failed_ = length < 0;
    return failed_ ? 0 : static_cast<uint32_t>(length);
}

uint64_t RecordCursor::SerialOf(const void* stored) {
    uint64_t serial;
    memcpy(&serial, static_cast<const uint8_t*>(stored) + DOM_RUN_DB_SERIAL_OFFSET, sizeof serial);
    return serial;
}

}  // namespace aaad
