// Message codes that set something of the device rather than of one domain.
#include <aaadom/db_layout.h>
#include <aaadom/domain_codec.h>
#include <aaadom/results.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <aaadom/settings_codec.h>

#include "codec/restore.h"

namespace aaadom {
namespace {

constexpr char kNoName[] = "";
/// The number 32 in each limit, not the byte fill with which a role's limits start.
constexpr uint32_t kLimitOfMissingClass = 32;

}  // namespace

/// Deleting the default domain makes it "system" in the table, while its stored name is emptied.
uint32_t RestoreDefaultDomain(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    uint32_t value_18 = 0;
    if (DOM_DecodeDefaultDomain(restore.msg, sizeof name, name, &value_18) != DOM_OK)
        return DOM_ERR_FAILED;
    const char* chosen = restore.Setting() ? name : DOM_SYSTEM_DOMAIN;
    restore.Changed(DOM_DB_DEFAULT_DOMAIN, chosen, restore.present);
    DOM_SetDefaultDomainName(chosen);
    return DOM_OK;
}

uint32_t RestoreUnknownDomain(Restore& restore) {
    char name[DOM_NAME_SIZE] = {};
    if (DOM_DecodeUnknownDomain(restore.msg, sizeof name, name) != DOM_OK) return DOM_ERR_FAILED;
    const char* chosen = restore.Setting() ? name : kNoName;
    restore.Changed(DOM_DB_UNKNOWN_DOMAIN, chosen, restore.present);
    DOM_SetUnknownDomainName(chosen);
    return DOM_OK;
}

uint32_t RestoreDeviceId(Restore& restore) {
    uint32_t device_id = 0;
    if (DOM_DecodeDeviceID(restore.msg, &device_id) != DOM_OK) return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_DEVICE_ID, kNoName, DOM_PRESENT);
    DOM_SetDeviceID(restore.Setting() ? device_id : 0);
    return DOM_OK;
}

/// Sets on delete too: there is nothing a limit could be reset to.
uint32_t RestoreSessionLimit(Restore& restore) {
    uint32_t session_class = 0;
    uint32_t limit = 0;
    if (DOM_DecodeSessionLimit(restore.msg, &session_class, &limit) != DOM_OK)
        return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_SESSION_LIMIT, kNoName, DOM_PRESENT);
    DOM_SetSessionLimit(session_class, limit);
    return DOM_OK;
}

uint32_t RestoreAllSessionLimits(Restore& restore) {
    SessionLimits limits{kLimitOfMissingClass, kLimitOfMissingClass, kLimitOfMissingClass,
                         kLimitOfMissingClass, kLimitOfMissingClass};
    if (DOM_DecodeAllSessionLimit(restore.msg, &limits) != DOM_OK) return DOM_ERR_FAILED;
    restore.Changed(DOM_DB_SESSION_LIMIT, kNoName, DOM_PRESENT);
    DOM_SetAllSessionLimit(&limits);
    return DOM_OK;
}

/// Counters are one for the process. Only the message that comes first, with save 1, may set them;
/// its copy for the other role must not set them a second time.
uint32_t RestoreSessionCount(Restore& restore) {
    uint32_t session_class = 0;
    uint32_t count = 0;
    if (!restore.save) return DOM_ERR_FAILED;
    if (DOM_DecodeSessionCount(restore.msg, &session_class, &count) != DOM_OK)
        return DOM_ERR_FAILED;
    DOM_SetSessionCount(session_class, count);
    return DOM_OK;
}

/// Not saved: debugging ends with the process.
uint32_t RestoreDebugFlag(Restore& restore) {
    uint32_t mask = 0;
    if (DOM_DecodeDebugFlag(restore.msg, &mask) != DOM_OK) return DOM_ERR_FAILED;
    if (restore.Setting())
        DOM_AAASetDebugFlag(mask);
    else
        DOM_AAAResetDebugFlag(mask);
    return DOM_OK;
}

}  // namespace aaadom
