#include <aaadom/user_record_query.h>

#include "mgmt/request.h"

using namespace aaadom;

namespace {

constexpr uint32_t SetOrUndo(uint32_t undo) noexcept {
    return undo != 0 ? DOM_OP_DELETE : DOM_OP_SET;
}

/// The daemon's reply as it came, records, no-record answer or refusal; the caller reads it.
TLV_MSG* GetReply(TlvPtr request, uint16_t* status) noexcept {
    return DOM_lipc_SendCfgMsg(request.get(), DOM_OP_GET, status);
}

}  // namespace

extern "C" {

uint32_t DOM_userrecord_mor_BackupMethod(uint32_t undo, uint32_t bits) noexcept {
    return SetReturningResult(TlvPtr(DOM_userrecord_tlv_EncodeBackupMethod(bits)), SetOrUndo(undo),
                              DOM_ERR_FAILED);
}

uint32_t DOM_userrecord_mor_RecordEnable(uint32_t undo, uint32_t code) noexcept {
    return SetReturningResult(TlvPtr(DOM_userrecord_tlv_EncodeRecordEnable(code)), SetOrUndo(undo),
                              DOM_ERR_FAILED);
}

uint32_t DOM_userrecord_mor_ResetRecord(uint32_t code) noexcept {
    // An operation of its own: the standby side, which gets the same message, clears with it, too.
    return SetReturningResult(TlvPtr(DOM_userrecord_tlv_EncodeResetRecord(code)),
                              DOM_OP_CLEAR_RECORDS, DOM_ERR_FAILED);
}

uint32_t DOM_userrecord_mor_GetRecordNumber(uint32_t code, uint32_t* count) noexcept {
    return Get(TlvPtr(DOM_userrecord_tlv_EncodeGetRecordNum(code)), [=](TLV_MSG* reply) {
        return DOM_userrecord_tlv_DecodeDisplayRecordNumber(reply, count);
    });
}

TLV_MSG* DOM_userrecord_mor_GetRecordAll(uint32_t code, uint16_t selector,
                                         uint16_t* status) noexcept {
    return GetReply(TlvPtr(DOM_userrecord_tlv_EncodeDisplayRecordAll(code, selector)), status);
}

TLV_MSG* DOM_userrecord_mor_GetRecordByTime(uint32_t code, const UserRecordTimeQuery* query,
                                            uint16_t* status) noexcept {
    return GetReply(TlvPtr(DOM_userrecord_tlv_EncodeDisplayRecordTime(code, query)), status);
}

TLV_MSG* DOM_userrecord_mor_GetRecordByReason(uint16_t second_selector, uint32_t reason,
                                              uint16_t selector, uint16_t* status) noexcept {
    return GetReply(
        TlvPtr(DOM_userrecord_tlv_EncodeDisplayRecordReason(second_selector, reason, selector)),
        status);
}

TLV_MSG* DOM_userrecord_mor_GetRecordContentByCond(uint32_t code, const UserRecordQuery* query,
                                                   uint16_t* status) noexcept {
    return GetReply(TlvPtr(DOM_userrecord_tlv_EncodeDisRecordMultParas(code, query)), status);
}

}  // extern "C"
