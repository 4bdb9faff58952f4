// Message codes of accounting policies, which their processors refuse on the configuration thread.
#include <aaadom/accounting_policy_codec.h>

#include "codec/restore.h"

namespace aaadom {

/// A whole policy of a batch, which only adds: the operation is not looked at.
uint32_t RestoreItaPolicy(Restore& restore) {
    return DOM_ita_bthsyn_RecvOnePolicy(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreItaPolicyName(Restore& restore) {
    return DOM_ita_cfg_ProcPolicy(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreItaAcctScheme(Restore& restore) {
    return DOM_ita_cfg_ProcAcctScheme(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreItaAcctTogether(Restore& restore) {
    return DOM_ita_cfg_ProcAcctTogether(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreItaAcctLevel(Restore& restore) {
    return DOM_ita_cfg_ProcAcctLevel(restore.msg, restore.present, &restore.change);
}

uint32_t RestoreItaTrafficSeparation(Restore& restore) {
    return DOM_ita_cfg_ProcTrafSeprate(restore.msg, restore.present, &restore.change);
}

/// Carries the state itself, so its operation has no meaning.
uint32_t RestoreItaQuotaOut(Restore& restore) {
    return DOM_ita_cfg_ProcTrafQuotaOut(restore.msg, &restore.change);
}

}  // namespace aaadom
