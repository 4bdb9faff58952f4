#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <aaadom/user_record.h>

#include "base/message.h"
#include "userrecord/record_fields.h"
#include "userrecord/record_report.h"
#include "userrecord/record_switch_message.h"
#include "userrecord/stored_record.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_userrecord_tlv_EncodeUserRecordStruct(TLV_MSG* msg,
                                                   const UserRecord* record) noexcept {
    if (msg == nullptr || record == nullptr) return DOM_ERR_FAILED;
    Appender append(msg);
    AppendRecordFields(append, *record);
    return append.Failed() ? DOM_ERR_FAILED : DOM_OK;
}

TLV_MSG* DOM_userrecord_tlv_EncodeUserRecordStructTlv(const UserRecord* record) noexcept {
    TlvPtr msg(TLV_Create());
    const uint32_t result = DOM_userrecord_tlv_EncodeUserRecordStruct(msg.get(), record);
    return result == DOM_OK ? msg.release() : nullptr;
}

uint32_t DOM_userrecord_tlv_DecodeUserRecordStruct(TLV_MSG* msg, UserRecord* record) noexcept {
    if (record == nullptr) return DOM_ERR_FAILED;
    record->detail = nullptr;
    record->detail_len = 0;
    return ReadRecordFields(msg, *record);
}

char* DOM_userrecord_tlv_GetReplyMessage(TLV_MSG* msg, uint32_t* length) noexcept {
    if (length == nullptr) return nullptr;
    char* const text = CopyDetailOf(msg, *length);
    if (text == nullptr) *length = 0;
    return text;
}

uint32_t DOM_userrecord_tlv_EncodeUserRecordStlv(const UserRecord* record, uint32_t buffer_size,
                                                 void* buffer) noexcept {
    if (record == nullptr || buffer == nullptr) return 0;
    return StoreRecord(*record, buffer, buffer_size);
}

void DOM_userrecord_tlv_DecodeUserRecordStlv(const void* buffer, uint32_t length,
                                             UserRecord* record) noexcept {
    if (record != nullptr) LoadRecord(buffer, length, *record);
}

uint32_t DOM_userrecord_tlv_EncodeUserRecordSerialNumberStlv(uint64_t serial, uint32_t buffer_size,
                                                             void* buffer) noexcept {
    return StoreSerial(serial, buffer, buffer_size);
}

uint32_t DOM_userrecord_tlv_EncodeRecordContent(TLV_MSG* msg,
                                                const UserRecordSource* source) noexcept {
    if (msg == nullptr || source == nullptr) return DOM_ERR_FAILED;
    return AppendRecordContent(msg, *source);
}

TLV_MSG* PAM_EncUserRecordMsg(uint32_t record_type, uint16_t flags,
                              const UserRecordSource* record) noexcept {
    return record == nullptr ? nullptr : EncodeRecordReport(record_type, flags, *record);
}

uint32_t PAM_DecUserRecordMsg(TLV_MSG* msg, uint32_t* record_type_out, uint16_t* flags_out,
                              UserRecord* record) noexcept {
    if (record_type_out == nullptr || flags_out == nullptr || record == nullptr) {
        return DOM_ERR_FAILED;
    }
    return DecodeRecordReport(msg, *record_type_out, *flags_out, *record);
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
