// Message codes of recording policies, which both roles apply.
#include <aaadom/recording_policy.h>

#include "codec/restore.h"

namespace aaadom {

uint32_t RestoreRecPolicy(Restore& restore) {
    return DOM_Rec_PolicyDataProc(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreRecPolicyType(Restore& restore) {
    return DOM_Rec_PolicyProc(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreRecAcctScheme(Restore& restore) {
    return DOM_Rec_AcctSchemeProc(restore.msg, restore.present, &restore.change);
}

}  // namespace aaadom
