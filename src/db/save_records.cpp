// Which user records are kept and backed up. The operation of the request is not looked at: the
// settings always exist.
#include <aaadom/db_layout.h>
#include <aaadom/record_switches.h>
#include <aaadom/user_record.h>

#include "db/save.h"
#include "db/stored_message.h"

namespace aaadom {

uint32_t SaveRecordSwitches(const DomDbUpdateReq&) {
    return StoreMessage(TlvPtr(DOM_GetAllRecordEnableInfo()), DOM_DB_KEY_RECORD_ENABLE,
                        DOM_DB_KEY_RECORD_ENABLE_LEN, DOM_DB_RECORD_ENABLE);
}

uint32_t SaveBackupMethods(const DomDbUpdateReq&) {
    return StoreMessage(
        TlvPtr(DOM_userrecord_tlv_EncodeBackupMethod(DOM_GetAllRecordBackupMethodToUint())),
        DOM_DB_KEY_RECORD_BACKUP, DOM_DB_KEY_RECORD_BACKUP_LEN, DOM_DB_RECORD_BACKUP);
}

}  // namespace aaadom
