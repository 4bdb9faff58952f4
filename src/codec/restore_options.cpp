// Message codes that set one option of a domain. The domain exists after every one of them, the
// resetting ones included, so each records a change that is saved.
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <aaadom/settings_codec.h>

#include "codec/restore.h"

namespace aaadom {
namespace {

constexpr uint16_t kStateAfterReset = 1;
constexpr uint16_t kSessionTimeAfterReset = 0;
constexpr uint32_t kRedirectOn = 1;
constexpr uint32_t kRedirectOff = 0;

}  // namespace

uint32_t RestoreState(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    uint16_t state = 0;
    if (DOM_DecodeState(restore.msg, sizeof name, name, &state) != DOM_OK) return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    DOM_SetState(name, restore.Setting() ? state : kStateAfterReset);
    return DOM_OK;
}

uint32_t RestoreSessionTime(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    uint16_t time = 0;
    if (DOM_DecodeSessionTime(restore.msg, sizeof name, name, &time) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return DOM_SetSessionTime(name, restore.Setting() ? time : kSessionTimeAfterReset);
}

uint32_t RestoreUserAddrType(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    uint32_t type = DOM_DEF_ADDR_TYPE;
    if (DOM_DecodeUserAddrType(restore.msg, sizeof name, name, &type) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    DOM_SetUserAddrType(name, type);
    return DOM_OK;
}

uint32_t RestoreDualStackMode(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    uint32_t mode = DOM_DEF_DUAL_STACK;
    if (DOM_DecodeAcctDualStackMode(restore.msg, sizeof name, name, &mode) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    DOM_SetAcctDualStackMode(name, mode);
    return DOM_OK;
}

/// The message carries the name alone; the operation switches.
uint32_t RestoreRedirect(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    if (DOM_DecodeRedirectMoveTemporarily(restore.msg, sizeof name, name) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return DOM_SetRedirectMoveTemporarily(name, restore.Setting() ? kRedirectOn : kRedirectOff);
}

/// Stores what the message carries whatever the operation: an empty name clears.
uint32_t RestoreAuthFailDomain(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    char fail_domain[DOM_NAME_SIZE] = {};
    uint32_t value_18 = 0;
    uint16_t kind = 0;
    if (DOM_DecodeAuthFailDomain(restore.msg, sizeof name, name, sizeof fail_domain, fail_domain,
                                 &value_18, &kind) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return DOM_SetAuthFailDomain(name, fail_domain, kind);
}

uint32_t RestorePermitDomain(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    char permit_domain[DOM_NAME_SIZE] = {};
    uint32_t value_18 = 0;
    if (DOM_DecodeAuthRdFailPermitDomain(restore.msg, sizeof name, name, sizeof permit_domain,
                                         permit_domain, &value_18) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return DOM_SetAuthRdFailPermitDomain(restore.present, name, permit_domain);
}

uint32_t RestoreEscapeRecover(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    EscapeRecoverAction action{};
    uint32_t value_18 = 0;
    if (DOM_DecodeAuthenEscapeRecover(restore.msg, sizeof name, name, &action.setting,
                                      sizeof action.domain_name, action.domain_name,
                                      &action.second_setting, &value_18) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DOMAIN, name, DOM_PRESENT);
    return DOM_SetEscapeRecoverAction(name, restore.present, &action);
}

}  // namespace aaadom
