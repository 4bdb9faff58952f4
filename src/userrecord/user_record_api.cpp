#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <aaadom/user_record.h>

#include "base/message.h"
#include "userrecord/record_fields.h"
#include "userrecord/record_switch_message.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_userrecord_tlv_EncodeUserRecordStruct(TLV_MSG* msg,
                                                   const UserRecord* record) noexcept {
    if (msg == nullptr || record == nullptr) return DOM_ERR_FAILED;
    Appender append(msg);
    AppendRecordFields(append, *record);
    return append.Failed() ? DOM_ERR_FAILED : DOM_OK;
}

uint32_t DOM_userrecord_tlv_EncodeRecordVerbose(TLV_MSG* reply, const UserRecord* record) noexcept {
    if (reply == nullptr || record == nullptr) return DOM_ERR_FAILED;
    const TlvPtr fields(TLV_Create());
    const uint32_t result = DOM_userrecord_tlv_EncodeUserRecordStruct(fields.get(), record);
    if (result != DOM_OK) return result;
    return AAA_AppendSubTlv(reply, DOM_TLV_USER_RECORD, fields.get());
}

TLV_MSG* DOM_userrecord_tlv_EncodeRecordEnable(uint32_t code) noexcept {
    return MessageBuilder(code).Build();
}

TLV_MSG* DOM_userrecord_tlv_EncodeResetRecord(uint32_t code) noexcept {
    return MessageBuilder(code).Build();
}

TLV_MSG* DOM_userrecord_tlv_EncodeRecordEnableInfo(const RecordSwitches* switches) noexcept {
    return switches == nullptr ? nullptr : EncodeRecordSwitches(*switches);
}

uint32_t DOM_userrecord_tlv_DecodeRecordEnableInfo(TLV_MSG* msg,
                                                   RecordSwitches* switches) noexcept {
    return switches == nullptr ? DOM_ERR_FAILED : DecodeRecordSwitches(msg, *switches);
}

TLV_MSG* DOM_userrecord_tlv_EncodeBackupMethod(uint32_t bits) noexcept {
    return EncodeBackupBits(bits);
}

uint32_t DOM_userrecord_tlv_DecodeBackupMethod(TLV_MSG* msg, uint32_t* bits) noexcept {
    if (bits == nullptr) return DOM_ERR_FAILED;
    *bits = DecodeBackupBits(msg);
    return DOM_OK;
}

uint32_t DOM_userrecord_tlv_DecodeBackupMethodByStruct(TLV_MSG* msg,
                                                       BackupMethods* methods) noexcept {
    if (methods == nullptr) return DOM_ERR_FAILED;
    RaiseBackupFlags(DecodeBackupBits(msg), *methods);
    return DOM_OK;
}

}  // extern "C"
