#include <aaadom/codes.h>
#include <aaadom/record_codec.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>
#include <aaadom/service.h>
#include <aaadom/user_record.h>

#include "domain/standby_sync.h"

using namespace aaadom;

namespace {

/// The flag value that marks an offline record of list 4.
constexpr uint16_t kOfFourthList = 1;

/// A clear kind without a message has the first code that nobody applies.
constexpr uint32_t kNothingToSend = DOM_MSG_LIMIT;

/// Reset codes by clear kind, 1 first. The kinds are a mask of lists whose numbers differ from
/// those of the records, and masks of two lists have no code but for both offline lists.
constexpr uint32_t kResetCodes[] = {
    DOM_MSG_RESET_ONLINE_FAIL,       // 1
    DOM_MSG_RESET_OFFLINE_ABNORMAL,  // 2
    kNothingToSend,                  // 3
    DOM_MSG_RESET_OFFLINE_NORMAL,    // 4
    kNothingToSend,                  // 5
    DOM_MSG_RESET_OFFLINE_ALL,       // 6
};

/// The message of a record's addition (`add()`) or deletion, null for other operations.
template <typename Add>
TlvPtr RecordChange(uint32_t operation, uint32_t kind, const UserRecord* record,
                    Add&& add) noexcept {
    if (record == nullptr) return nullptr;
    if (operation == DOM_OP_SET) return TlvPtr(add());
    if (operation == DOM_OP_DELETE) return TlvPtr(DOM_EncodeDelUserRecord(kind, record->serial));
    return nullptr;
}

}  // namespace

extern "C" {

uint32_t DOM_RealSync2Slave(TLV_MSG* msg) noexcept {
    const TlvPtr wrapped(AAA_AddAaadHead(DOM_AAAD_HEAD_SLAVE, DOM_AAAD_HEAD_SUB_TYPE, msg));
    return wrapped ? DOM_CfgRealSyncToSlave(wrapped.get()) : DOM_ERR_FAILED;
}

void DOM_SyncOnlineFailRecord(uint32_t operation, const UserRecord* record) noexcept {
    SendToStandby(operation, RecordChange(operation, DOM_RECORD_ONLINE_FAIL, record,
                                          [record] { return DOM_EncodeOnlineFailRecord(record); }));
}

void DOM_SyncOfflineRecord(uint32_t operation, uint16_t abnormal_flag,
                           const UserRecord* record) noexcept {
    // The set flag means the list of NORMAL offline records, against its name: the standby board
    // files records by these numbers.
    const uint32_t kind =
        abnormal_flag == kOfFourthList ? DOM_RECORD_NORMAL_OFFLINE : DOM_RECORD_ABNORMAL_OFFLINE;
    SendToStandby(operation, RecordChange(operation, kind, record, [abnormal_flag, record] {
                      return DOM_EncodOfflineRecord(abnormal_flag, record);
                  }));
}

void Dom_SyncClearUserRecord(uint32_t clear_kind) noexcept {
    if (clear_kind == 0 || clear_kind > sizeof kResetCodes / sizeof kResetCodes[0]) return;
    const uint32_t code = kResetCodes[clear_kind - 1];
    if (code == kNothingToSend) return;
    SendToStandby(DOM_OP_CLEAR_RECORDS, TlvPtr(DOM_userrecord_tlv_EncodeResetRecord(code)));
}

}  // extern "C"
