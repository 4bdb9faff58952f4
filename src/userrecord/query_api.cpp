#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <aaadom/user_record_query.h>

#include "base/message.h"
#include "userrecord/query_message.h"
#include "userrecord/query_reply.h"
#include "userrecord/record_switch_message.h"

using namespace aaadom;

extern "C" {

TLV_MSG* DOM_userrecord_tlv_EncodeGetRecordNum(uint32_t code) noexcept {
    return MessageBuilder(code).Build();
}

TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordNumber(uint32_t code, uint32_t count) noexcept {
    return MessageBuilder(code).Build(
        [=](Appender& append) { append.U32(DOM_TLV_RECORD_COUNT, count); });
}

TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordAll(uint32_t code, uint16_t selector) noexcept {
    return MessageBuilder(code).Build(
        [=](Appender& append) { append.U16(DOM_TLV_RECORD_LIST, selector); });
}

TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordTime(uint32_t code,
                                                    const UserRecordTimeQuery* query) noexcept {
    return query == nullptr ? nullptr : EncodeTimeQuery(code, *query);
}

TLV_MSG* DOM_userrecord_tlv_EncodeDisplayRecordReason(uint16_t second_selector, uint32_t reason,
                                                      uint16_t selector) noexcept {
    return EncodeReasonQuery({selector, second_selector, reason});
}

TLV_MSG* DOM_userrecord_tlv_EncodeDisRecordMultParas(uint32_t code,
                                                     const UserRecordQuery* query) noexcept {
    return query == nullptr ? nullptr : EncodeConditionQuery(code, *query);
}

TLV_MSG* DOM_userrecord_tlv_EncodeRecordHeader(uint16_t selector) noexcept {
    return EncodeListHeader(selector);
}

TLV_MSG* DOM_userrecord_tlv_EncodeNoRecordMsg(void) noexcept {
    return EncodeNoRecord();
}

uint32_t DOM_userrecord_tlv_EncodeRecordBrief(TLV_MSG* reply, const UserRecord* record) noexcept {
    if (reply == nullptr || record == nullptr) return DOM_ERR_FAILED;
    return AppendBriefRecord(reply, *record);
}

uint32_t DOM_userrecord_tlv_DecodeDisplayRecordNumber(TLV_MSG* reply, uint32_t* count) noexcept {
    return count == nullptr ? DOM_ERR_FAILED : DecodeRecordCount(reply, *count);
}

uint32_t DOM_userrecord_tlv_DecodeDisplayRecordAll(TLV_MSG* msg, uint16_t* selector) noexcept {
    return selector == nullptr ? DOM_ERR_FAILED : DecodeListSelector(msg, *selector);
}

uint32_t DOM_userrecord_tlv_DecodeDisplayRecordTime(TLV_MSG* msg,
                                                    UserRecordTimeQuery* query) noexcept {
    return query == nullptr ? DOM_ERR_FAILED : DecodeTimeQuery(msg, *query);
}

uint32_t DOM_userrecord_tlv_DecodeDisplayRecordReason(TLV_MSG* msg,
                                                      UserRecordReasonQuery* query) noexcept {
    return query == nullptr ? DOM_ERR_FAILED : DecodeReasonQuery(msg, *query);
}

uint32_t DOM_userrecord_tlv_DecodeDisRecordMultParas(TLV_MSG* msg,
                                                     UserRecordQuery* query) noexcept {
    return query == nullptr ? DOM_ERR_FAILED : DecodeConditionQuery(msg, *query);
}

uint32_t DOM_userrecord_tlv_DecodeRecordBrief(TLV_MSG* msg, UserRecordBrief* brief) noexcept {
    return brief == nullptr ? DOM_ERR_FAILED : DecodeBriefRecord(msg, *brief);
}

TLV_MSG* DOM_userrecord_tlv_EncodeBackupMethodWithDefault(uint32_t bits,
                                                          uint32_t default_bits) noexcept {
    return EncodeBackupBitsAndDefault(bits, default_bits);
}

uint32_t DOM_userrecord_tlv_DecodeBackupMethodWithDefault(TLV_MSG* msg, uint32_t* bits,
                                                          uint32_t* default_bits) noexcept {
    if (bits == nullptr || default_bits == nullptr) return DOM_ERR_FAILED;
    *bits = DecodeBackupBits(msg);
    *default_bits = DecodeBackupDefault(msg);
    return DOM_OK;
}

}  // extern "C"
