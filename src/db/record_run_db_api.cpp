#include <aaadom/db_layout.h>
#include <aaadom/record_run_db.h>
#include <aaadom/results.h>
#include <platform/dbm.h>

#include "db/record_lists.h"

using namespace aaadom;

extern "C" {

DBM_HANDLE g_hRecordDbmRunDb = DBM_INVALID_HANDLE;

}  // extern "C"

namespace {

uint32_t ResultOf(uint32_t answer) noexcept {
    return answer == 0 ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t CreateUnlessThere(const RecordList& list) noexcept {
    constexpr uint32_t kSortedBySerial[4] = {DOM_RUN_DB_SERIAL_OFFSET, DOM_RUN_DB_SERIAL_SIZE,
                                             DBM_KEY_KIND_U64, 0};
    if (SaysKeyExists(DBM_IsKeyExist(g_hRecordDbmRunDb, list.key, list.key_length))) return DOM_OK;
    return ResultOf(DBM_CreateAvlList(g_hRecordDbmRunDb, list.key, list.key_length, kSortedBySerial,
                                      1, list.value_type));
}

uint32_t Insert(const RecordList& list, const UserRecord* record) noexcept {
    if (g_hRecordDbmRunDb == DBM_INVALID_HANDLE || record == nullptr) return DOM_ERR_FAILED;
    EntryBuffer buffer;
    if (buffer.Bytes() == nullptr) return DOM_ERR_FAILED;
    const uint32_t length =
        DOM_userrecord_tlv_EncodeUserRecordStlv(record, EntryBuffer::kSize, buffer.Bytes());
    buffer.Written(length);
    return ResultOf(
        DBM_InsertAvlList(g_hRecordDbmRunDb, list.key, list.key_length, length, buffer.Bytes()));
}

uint32_t Remove(const RecordList& list, uint64_t serial) noexcept {
    EntryBuffer probe;
    if (probe.Bytes() == nullptr) return DOM_ERR_FAILED;
    probe.Written(DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(serial, EntryBuffer::kSize,
                                                                      probe.Bytes()));
    // The probe counts with its whole buffer: databases exist that refuse an entry length which is
    // shorter than an entry, and the length of the stored record is not known here.
    return ResultOf(DBM_RemoveAvlList(g_hRecordDbmRunDb, list.key, list.key_length,
                                      EntryBuffer::kSize, probe.Bytes()));
}

}  // namespace

extern "C" {

DBM_HANDLE DOM_CreateRecordRunDB(void) noexcept {
    const DBM_OPEN_ATTR attributes{0, 0, 0, DOM_RUN_DB_VERSION_TEXT};
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    const uint32_t failed =
        DBM_Open(DOM_RUN_DB_DATABASE, DOM_RUN_DB_TABLE, DBM_MODE_CREATE, &attributes, &handle);
    return failed == 0 ? handle : DBM_INVALID_HANDLE;
}

DBM_HANDLE DOM_DestroyRecordRunDB(void) noexcept {
    if (g_hRecordDbmRunDb == DBM_INVALID_HANDLE) return DBM_INVALID_HANDLE;
    (void)DBM_Close(g_hRecordDbmRunDb);
    g_hRecordDbmRunDb = DBM_INVALID_HANDLE;
    EntryBuffer::FreeIdle();
    return DBM_INVALID_HANDLE;
}

void DOM_SetRecordRunDBHandle(DBM_HANDLE handle) noexcept {
    g_hRecordDbmRunDb = handle;
}

DBM_HANDLE DOM_GetRecordRunDBHandle(void) noexcept {
    return g_hRecordDbmRunDb;
}

uint32_t DOM_CreateAllRecordDBAvlList(void) noexcept {
    uint32_t result = DOM_OK;
    for (const RecordList& list : kRecordLists) result |= CreateUnlessThere(list);
    return result;
}

uint32_t DOM_SetAbnormalOfflineRecordInfoToRunDB(const UserRecord* record) noexcept {
    return Insert(kAbnormalOfflines, record);
}

uint32_t DOM_SetNormalOfflineRecordInfoToRunDB(const UserRecord* record) noexcept {
    return Insert(kNormalOfflines, record);
}

uint32_t DOM_SetOnlineFailedRecordInfoToRunDB(const UserRecord* record) noexcept {
    return Insert(kOnlineFailures, record);
}

uint32_t DOM_SetSingeRecordInfoToRunDB(uint32_t record_type, const UserRecord* record) noexcept {
    const RecordList* list = ListOfRecordType(record_type);
    return list == nullptr ? DOM_ERR_FAILED : Insert(*list, record);
}

uint32_t DOM_DelAbnormalOfflineRecordInfoToRunDB(uint64_t serial) noexcept {
    return Remove(kAbnormalOfflines, serial);
}

uint32_t DOM_DelNormalOfflineRecordInfoToRunDB(uint64_t serial) noexcept {
    return Remove(kNormalOfflines, serial);
}

uint32_t DOM_DelOnlineFailedRecordInfoToRunDB(uint64_t serial) noexcept {
    return Remove(kOnlineFailures, serial);
}

uint32_t DOM_ClearAllRecordInfoFromRunDB(uint32_t mask) noexcept {
    // Not a failure code: with a closed database there is nothing to clear, and callers hand the
    // mask on as their own result.
    uint32_t result = mask;
    if (g_hRecordDbmRunDb == DBM_INVALID_HANDLE) return result;
    for (const RecordList& list : kRecordLists) {
        if ((mask & list.mask_bit) == 0) continue;
        // Replaces the result of an earlier list: callers look at the last clear alone.
        result = DBM_ClearAvlList(g_hRecordDbmRunDb, list.key, list.key_length);
    }
    return result;
}

}  // extern "C"
