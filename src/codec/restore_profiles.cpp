// Message codes of critical and authorization profiles. Their results go to the requester
// unchanged: front ends tell an existing profile from a full store by them.
#include <aaadom/profile.h>

#include "base/text.h"
#include "codec/restore.h"

namespace aaadom {

// The processors fill a name of 32 bytes whatever the requester has room for, so it is handed out
// like every other object name: from the change record, cut to the requester's capacity.
uint32_t RestoreCriticalProfile(Restore& restore) {
    char name[DOM_PROFILE_NAME_SIZE] = {};
    const uint32_t result =
        DOM_critical_ProcProfile(restore.msg, restore.present, name, &restore.change);
    CopyText(restore.change.object_name, name);
    return result;
}

uint32_t RestoreAuthorProfile(Restore& restore) {
    char name[DOM_PROFILE_NAME_SIZE] = {};
    const uint32_t result =
        DOM_author_ProcProfile(restore.msg, restore.present, name, sizeof name, &restore.change);
    CopyText(restore.change.object_name, name);
    return result;
}

uint32_t RestoreCriticalVpn(Restore& restore) {
    return DOM_critical_ProCriticalVpn(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreCriticalSegment(Restore& restore) {
    return DOM_critical_ProcMicroSegMent(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreAuthorVpn(Restore& restore) {
    return DOM_author_ProAuthorVpn(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreAuthorSegment(Restore& restore) {
    return DOM_author_ProcMicroSegMent(restore.msg, restore.present, &restore.change);
}

}  // namespace aaadom
