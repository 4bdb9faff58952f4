#include "db/record_lists.h"

#include <aaadom/db_layout.h>
#include <aaadom/record_run_db.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace aaadom {

constinit const RecordList kRecordLists[3] = {
    {DOM_RUN_DB_KEY_ABNORMAL_OFFLINE, DOM_RUN_DB_KEY_ABNORMAL_OFFLINE_LEN,
     DOM_RUN_DB_ABNORMAL_OFFLINE, DOM_RECORD_ABNORMAL_OFFLINE, DOM_RECORD_MASK_ABNORMAL_OFFLINE},
    {DOM_RUN_DB_KEY_NORMAL_OFFLINE, DOM_RUN_DB_KEY_NORMAL_OFFLINE_LEN, DOM_RUN_DB_NORMAL_OFFLINE,
     DOM_RECORD_NORMAL_OFFLINE, DOM_RECORD_MASK_NORMAL_OFFLINE},
    {DOM_RUN_DB_KEY_ONLINE_FAIL, DOM_RUN_DB_KEY_ONLINE_FAIL_LEN, DOM_RUN_DB_ONLINE_FAIL,
     DOM_RECORD_ONLINE_FAIL, DOM_RECORD_MASK_ONLINE_FAIL},
};
constinit const RecordList& kAbnormalOfflines = kRecordLists[0];
constinit const RecordList& kNormalOfflines = kRecordLists[1];
constinit const RecordList& kOnlineFailures = kRecordLists[2];

namespace {

// Whoever swaps the block out owns it, so callers on several threads never share one.
std::atomic<uint8_t*> g_idle_block{nullptr};

}  // namespace

const RecordList* ListOfRecordType(uint32_t record_type) noexcept {
    for (const RecordList& list : kRecordLists) {
        if (list.record_type == record_type) return &list;
    }
    return nullptr;
}

EntryBuffer::EntryBuffer() noexcept : bytes_(g_idle_block.exchange(nullptr)) {
    if (bytes_ == nullptr) bytes_ = static_cast<uint8_t*>(calloc(1, kSize));
}

EntryBuffer::~EntryBuffer() {
    if (bytes_ == nullptr) return;
    memset(bytes_, 0, written_ < kSize ? written_ : kSize);
    free(g_idle_block.exchange(bytes_));
}

void EntryBuffer::FreeIdle() noexcept {
    free(g_idle_block.exchange(nullptr));
}

}  // namespace aaadom
