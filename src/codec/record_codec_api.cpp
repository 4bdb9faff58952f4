#include <aaadom/codes.h>
#include <aaadom/method_codec.h>
#include <aaadom/record_codec.h>
#include <aaadom/results.h>

#include "base/message.h"
#include "codec/record_batch.h"

using namespace aaadom;

namespace {

/// The flag value that marks an offline record of list 4.
constexpr uint16_t kOfFourthList = 1;

TLV_MSG* EncodeRecord(uint32_t kind, const UserRecord* record) noexcept {
    return MessageBuilder(DOM_MSG_USER_RECORD).Build([&](Appender& append) {
        append.U32(DOM_TLV_RECORD_KIND, kind)
            .Fold(DOM_userrecord_tlv_EncodeRecordVerbose(append.Message(), record));
    });
}

}  // namespace

extern "C" {

TLV_MSG* DOM_EncodeOnlineFailRecord(const UserRecord* record) noexcept {
    return EncodeRecord(DOM_RECORD_ONLINE_FAIL, record);
}

TLV_MSG* DOM_EncodOfflineRecord(uint16_t flag, const UserRecord* record) noexcept {
    return EncodeRecord(
        flag == kOfFourthList ? DOM_RECORD_NORMAL_OFFLINE : DOM_RECORD_ABNORMAL_OFFLINE, record);
}

TLV_MSG* DOM_EncodeDelUserRecord(uint32_t record_kind, uint64_t serial) noexcept {
    return MessageBuilder(DOM_MSG_USER_RECORD).Build([&](Appender& append) {
        append.U32(DOM_TLV_RECORD_KIND, record_kind).U64(DOM_TLV_RECORD_SERIAL, serial);
    });
}

uint32_t DOM_DecodeDelUserRecord(TLV_MSG* msg, uint32_t* record_kind, uint64_t* serial) noexcept {
    if (record_kind != nullptr) *record_kind = 0;
    if (serial != nullptr) *serial = 0;
    if (msg == nullptr || record_kind == nullptr || serial == nullptr) return DOM_ERR_FAILED;
    if (const TlvItem kind = FindTlv(msg, DOM_TLV_RECORD_KIND)) *record_kind = kind.U32();
    if (const TlvItem item = FindTlv(msg, DOM_TLV_RECORD_SERIAL)) *serial = item.U64();
    return DOM_OK;
}

uint32_t DOM_EncodeUserRecordAll(uint32_t kind, const UserRecord* record, TLV_MSG* batch,
                                 TLV_MSG* scratch) noexcept {
    if (batch == nullptr || scratch == nullptr) return DOM_ERR_FAILED;
    const uint32_t encoded = DOM_userrecord_tlv_EncodeUserRecordStruct(scratch, record);
    if (encoded == DOM_OK) return AddToBatch(kind, batch, scratch);
    (void)DOM_ClearTlv(scratch);
    return encoded;
}

uint32_t DOM_EncodeRecordTypeAndSend(TLV_MSG* batch, uint32_t kind) noexcept {
    return batch == nullptr ? DOM_ERR_FAILED : SendBatch(batch, kind);
}

uint32_t DOM_DecodeUserRecordAllAndSetToRunDB(TLV_MSG* msg, uint32_t kind) noexcept {
    return msg == nullptr ? DOM_ERR_FAILED : StoreBatch(msg, kind);
}

uint32_t DOM_DecodeUserRecordsState(TLV_MSG* msg, uint16_t type, uint32_t* first,
                                    uint32_t* second) noexcept {
    uint32_t first_value = 0;
    uint32_t second_value = 0;
    bool only_these = true;
    for (TlvItem item : TlvWalk(msg)) {
        if (item.Type() == type) {
            first_value = item.U32();
        } else if (item.Type() == DOM_TLV_RECORDS_STATE) {
            second_value = item.U32();
        } else {
            only_these = false;  // the walk goes on: the numbers count with strangers around, too
        }
    }
    if (first != nullptr) *first = first_value;
    if (second != nullptr) *second = second_value;
    const bool complete = msg != nullptr && first != nullptr && second != nullptr;
    return complete && only_these ? DOM_OK : DOM_ERR_FAILED;
}

}  // extern "C"
