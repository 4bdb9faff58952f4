#include <aaadom/codes.h>
#include <aaadom/record_codec.h>
#include <aaadom/results.h>

#include "base/message.h"

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

}  // extern "C"
