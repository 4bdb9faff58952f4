#include "record_readers.h"

#include <aaadom/record_switches.h>
#include <aaadom/user_record_query.h>

namespace aaad {

Message ReadRecordSwitches(const Question&, uint32_t& refusal) {
    Message reply(DOM_GetAllRecordEnableInfo());
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

Message ReadBackupMethods(const Question&, uint32_t& refusal) {
    Message reply(DOM_userrecord_tlv_EncodeBackupMethodWithDefault(
        DOM_GetAllRecordBackupMethodToUint(), DOM_GetUserRecordBackupMethodDefault()));
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

}  // namespace aaad
