#include "db/load.h"

#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>
#include <aaadom/user_record.h>

#include <cstring>

#include "db/binary_value.h"
#include "db/stored_message.h"

namespace aaadom {
namespace {

DomainInfo* LoadDomain(DBM_HANDLE handle, uint32_t index, const ValueBuffer& buffer) noexcept {
    const int32_t length = DBM_GetArray(handle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                                        buffer.Size(), buffer.Data());
    const TlvPtr msg = buffer.Message(length);
    return msg ? DOM_DecodeDomain(msg.get()) : nullptr;
}

}  // namespace

DomainInfo* LoadDomain(DBM_HANDLE handle, uint32_t index) noexcept {
    const ValueBuffer buffer;
    return buffer ? LoadDomain(handle, index, buffer) : nullptr;
}

DomainInfo* LoadDomain(DBM_HANDLE handle, const char* name) noexcept {
    const ValueBuffer buffer;
    if (!buffer || name == nullptr) return nullptr;
    for (uint32_t index = 0; index < DOM_MAX_DOMAINS; ++index) {
        DomainInfo* record = LoadDomain(handle, index, buffer);
        if (record != nullptr && strcmp(record->name, name) == 0) return record;
        DOM_DestroyDomain(record);
    }
    return nullptr;
}

uint32_t LoadDefaultDomain(DBM_HANDLE handle, char* name) noexcept {
    const TlvPtr msg =
        LoadMessage(handle, DOM_DB_KEY_DEFAULT_DOMAIN, DOM_DB_KEY_DEFAULT_DOMAIN_LEN);
    uint32_t value_18 = 0;
    if (!msg) return DOM_ERR_FAILED;
    return DOM_DecodeDefaultDomain(msg.get(), DOM_NAME_SIZE, name, &value_18);
}

uint32_t LoadUnknownDomain(DBM_HANDLE handle, char* name) noexcept {
    const TlvPtr msg =
        LoadMessage(handle, DOM_DB_KEY_UNKNOWN_DOMAIN, DOM_DB_KEY_UNKNOWN_DOMAIN_LEN);
    if (!msg) return DOM_ERR_FAILED;
    return DOM_DecodeUnknownDomain(msg.get(), DOM_NAME_SIZE, name);
}

uint32_t LoadSessionLimits(DBM_HANDLE handle, SessionLimits& limits) noexcept {
    limits = {kPresetSessionLimit, kPresetSessionLimit, kPresetSessionLimit, kPresetSessionLimit,
              kPresetSessionLimit};
    return LoadBinary(handle, DOM_DB_KEY_SESSION_LIMIT, DOM_DB_KEY_SESSION_LIMIT_LEN, sizeof limits,
                      &limits) > 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

uint32_t LoadDeviceId(DBM_HANDLE handle, uint32_t& device_id) noexcept {
    device_id = 0;
    return LoadBinary(handle, DOM_DB_KEY_DEVICE_ID, DOM_DB_KEY_DEVICE_ID_LEN, sizeof device_id,
                      &device_id) > 0
               ? DOM_OK
               : DOM_ERR_FAILED;
}

uint32_t LoadRecordSwitches(DBM_HANDLE handle, RecordSwitches& switches) noexcept {
    const TlvPtr msg = LoadMessage(handle, DOM_DB_KEY_RECORD_ENABLE, DOM_DB_KEY_RECORD_ENABLE_LEN);
    if (!msg) return DOM_ERR_FAILED;
    return DOM_userrecord_tlv_DecodeRecordEnableInfo(msg.get(), &switches);
}

uint32_t LoadBackupMethods(DBM_HANDLE handle, BackupMethods& methods) noexcept {
    if (!IsKeySaved(handle, DOM_DB_KEY_RECORD_BACKUP, DOM_DB_KEY_RECORD_BACKUP_LEN))
        return DOM_ERR_FAILED;
    const TlvPtr msg = LoadMessage(handle, DOM_DB_KEY_RECORD_BACKUP, DOM_DB_KEY_RECORD_BACKUP_LEN);
    if (!msg) return DOM_ERR_FAILED;
    return DOM_userrecord_tlv_DecodeBackupMethodByStruct(msg.get(), &methods);
}

}  // namespace aaadom
