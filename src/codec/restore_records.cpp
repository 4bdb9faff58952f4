// Message codes that say which user records are kept and backed up.
#include <aaadom/db_layout.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>
#include <aaadom/user_record.h>

#include "base/message.h"
#include "codec/restore.h"

namespace aaadom {
namespace {

constexpr char kNoName[] = "";
constexpr uint16_t kMarked = 1;

}  // namespace

/// The code names the switch, the operation is its value. All four are saved as one object.
uint32_t RestoreRecordSwitch(Restore& restore) {
    restore.Changed(DOM_DB_RECORD_ENABLE, kNoName, DOM_PRESENT);
    return DOM_SetRecordEnableInfo(FindTlv(restore.msg, DOM_TLV_MSG_CODE).U32(), restore.present);
}

/// Sets on delete too; a switch that the message lacks is off. Not saved: the message carries the
/// switches to a role or board that takes over what another one has saved.
uint32_t RestoreAllRecordSwitches(Restore& restore) {
    RecordSwitches switches{};
    if (DOM_userrecord_tlv_DecodeRecordEnableInfo(restore.msg, &switches) != DOM_OK)
        return DOM_ERR_FAILED;
    DOM_SetRecordEnableInfoAll(&switches);
    return DOM_OK;
}

/// The message marks the flags that the operation switches; the others stay.
uint32_t RestoreBackupMethods(Restore& restore) {
    BackupMethods marks{};
    if (DOM_userrecord_tlv_DecodeBackupMethodByStruct(restore.msg, &marks) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_RECORD_BACKUP, kNoName, DOM_PRESENT);
    BackupMethods methods{};
    DOM_GetAAAUserRecordBackupMethod(&methods);
    if (marks.online_fail == kMarked) methods.online_fail = restore.present;
    if (marks.abnormal_offline == kMarked) methods.abnormal_offline = restore.present;
    if (marks.normal_offline == kMarked) methods.normal_offline = restore.present;
    DOM_SetAAAUserRecordBackupMethod(&methods);
    return DOM_OK;
}

}  // namespace aaadom
