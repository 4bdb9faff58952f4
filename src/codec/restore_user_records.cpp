// Message codes that change the user records of the run database. None of them is saved: the run
// database is where they are.
#include <aaadom/record_codec.h>
#include <aaadom/record_run_db.h>
#include <aaadom/results.h>

#include "base/message.h"
#include "codec/restore.h"

namespace aaadom {
namespace {

struct ResetCode {
    uint32_t code;
    uint32_t lists;
};
constexpr ResetCode kResetCodes[] = {
    {DOM_MSG_RESET_ONLINE_FAIL, DOM_RECORD_MASK_ONLINE_FAIL},
    {DOM_MSG_RESET_OFFLINE_ALL, DOM_RECORD_MASK_ABNORMAL_OFFLINE | DOM_RECORD_MASK_NORMAL_OFFLINE},
    {DOM_MSG_RESET_OFFLINE_NORMAL, DOM_RECORD_MASK_NORMAL_OFFLINE},
    {DOM_MSG_RESET_OFFLINE_ABNORMAL, DOM_RECORD_MASK_ABNORMAL_OFFLINE},
};

struct RecordList {
    uint32_t kind;
    uint32_t (*remove)(uint64_t serial);
};
constexpr RecordList kRecordLists[] = {
    {DOM_RECORD_ONLINE_FAIL, DOM_DelOnlineFailedRecordInfoToRunDB},
    {DOM_RECORD_ABNORMAL_OFFLINE, DOM_DelAbnormalOfflineRecordInfoToRunDB},
    {DOM_RECORD_NORMAL_OFFLINE, DOM_DelNormalOfflineRecordInfoToRunDB},
};

const RecordList* FindList(uint32_t kind) noexcept {
    for (const RecordList& list : kRecordLists) {
        if (list.kind == kind) return &list;
    }
    return nullptr;
}

/// The list is looked up by type: in a batch it comes behind the records.
uint32_t StoreRecords(TLV_MSG* msg) noexcept {
    const TlvItem kind = FindTlv(msg, DOM_TLV_RECORD_KIND);
    if (!kind || FindList(kind.U32()) == nullptr) return DOM_ERR_FAILED;
    const uint32_t stored = DOM_DecodeUserRecordAllAndSetToRunDB(msg, kind.U32());
    return stored == DOM_OK ? DOM_OK : DOM_ERR_FAILED;
}

/// A list that this board does not have has lost the record already.
uint32_t RemoveRecord(TLV_MSG* msg) noexcept {
    uint32_t kind;
    uint64_t serial;
    if (DOM_DecodeDelUserRecord(msg, &kind, &serial) != DOM_OK) return DOM_ERR_FAILED;
    const RecordList* list = FindList(kind);
    return list == nullptr || list->remove(serial) == DOM_OK ? DOM_OK : DOM_ERR_FAILED;
}

}  // namespace

/// Clears by every operation; senders use one of its own. A closed database fails: its clear
/// answers with the lists it was asked to clear.
uint32_t RestoreRecordReset(Restore& restore) {
    const uint32_t code = FindTlv(restore.msg, DOM_TLV_MSG_CODE).U32();
    for (const ResetCode& reset : kResetCodes) {
        if (reset.code != code) continue;
        return DOM_ClearAllRecordInfoFromRunDB(reset.lists) == DOM_OK ? DOM_OK : DOM_ERR_FAILED;
    }
    return DOM_ERR_FAILED;
}

uint32_t RestoreUserRecords(Restore& restore) {
    return restore.Setting() ? StoreRecords(restore.msg) : RemoveRecord(restore.msg);
}

}  // namespace aaadom
