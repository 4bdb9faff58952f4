#include "userrecord/record_switch_message.h"

#include <aaadom/codes.h>
#include <aaadom/results.h>

#include "base/message.h"

namespace aaadom {
namespace {

constexpr uint16_t kOn = 1;

struct SwitchField {
    uint16_t type;
    uint16_t RecordSwitches::*value;
};
constexpr SwitchField kSwitchFields[] = {
    {DOM_TLV_SWITCH_ONLINE_FAIL, &RecordSwitches::online_fail},
    {DOM_TLV_SWITCH_OFFLINE_ALL, &RecordSwitches::offline_all},
    {DOM_TLV_SWITCH_OFFLINE_NORMAL, &RecordSwitches::offline_normal},
    {DOM_TLV_SWITCH_OFFLINE_ABNORMAL, &RecordSwitches::offline_abnormal},
};

struct BackupField {
    uint32_t bit;
    uint16_t BackupMethods::*flag;
};
constexpr BackupField kBackupFields[] = {
    {1, &BackupMethods::online_fail},
    {2, &BackupMethods::abnormal_offline},
    {4, &BackupMethods::normal_offline},
};

/// The last of several counts; 0 without any.
uint32_t LastWord(TLV_MSG* msg, uint16_t type) noexcept {
    uint32_t value = 0;
    for (TlvItem item : TlvWalk(msg)) {
        if (item.Type() == type) value = item.U32();
    }
    return value;
}

}  // namespace

TLV_MSG* EncodeRecordSwitches(const RecordSwitches& switches) noexcept {
    return MessageBuilder(DOM_MSG_REC_ENABLE_INFO).Build([&](Appender& append) {
        for (const SwitchField& field : kSwitchFields) {
            append.U16(field.type, switches.*field.value);
        }
    });
}

uint32_t DecodeRecordSwitches(TLV_MSG* msg, RecordSwitches& switches) noexcept {
    uint32_t result = DOM_OK;
    for (TlvItem item : TlvWalk(msg)) {
        for (const SwitchField& field : kSwitchFields) {
            if (item.Type() == field.type) result |= item.U16(&(switches.*field.value));
        }
    }
    return result;
}

TLV_MSG* EncodeBackupBits(uint32_t bits) noexcept {
    return MessageBuilder(DOM_MSG_BACKUP_METHOD).Build([bits](Appender& append) {
        append.U32(DOM_TLV_BACKUP_BITS, bits);
    });
}

TLV_MSG* EncodeBackupBitsAndDefault(uint32_t bits, uint32_t default_bits) noexcept {
    return MessageBuilder(DOM_MSG_BACKUP_METHOD).Build([=](Appender& append) {
        append.U32(DOM_TLV_BACKUP_BITS, bits).U32(DOM_TLV_BACKUP_DEFAULT, default_bits);
    });
}

uint32_t DecodeBackupBits(TLV_MSG* msg) noexcept {
    return LastWord(msg, DOM_TLV_BACKUP_BITS);
}

uint32_t DecodeBackupDefault(TLV_MSG* msg) noexcept {
    return LastWord(msg, DOM_TLV_BACKUP_DEFAULT);
}

void RaiseBackupFlags(uint32_t bits, BackupMethods& methods) noexcept {
    for (const BackupField& field : kBackupFields) {
        if ((bits & field.bit) != 0) methods.*field.flag = kOn;
    }
}

}  // namespace aaadom
