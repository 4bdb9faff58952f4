// The applier of configuration messages: the one place where a message changes the tables.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/types.h>

#include <cstdint>

namespace aaadom {

constexpr uint32_t kNoStaleElement = UINT32_MAX;

/// One message on its way into the calling role's tables.
struct Restore {
    TLV_MSG* msg;      // without its operation head; borrowed
    uint16_t present;  // DOM_PRESENT = set or add, DOM_ABSENT = delete
    bool save;
    /// What the message changed: names the object to save. Cleared when a case gets it; a case that
    /// fills it does so once the message is decoded, because the names are handed out even when the
    /// change itself then fails.
    DomDbUpdateReq change;
    /// Array element that is out of date once the change is saved.
    uint32_t stale_element;

    bool Setting() const noexcept { return present == DOM_PRESENT; }
    /// Fills the change record. `operation` tells whether the object exists afterwards, which is
    /// not whether the message sets: a domain whose state is reset is still there and must be
    /// saved.
    void Changed(uint32_t object_type, const char* object_name, uint16_t operation) noexcept;
};

/// Applies one message code; 0 or an error.
using RestoreCase = uint32_t (*)(Restore& restore);

struct RestoreNames {
    uint32_t object_capacity;
    uint32_t policy_capacity;
    char* object;
    char* policy;
};

/// Applies `msg`, which still has its operation head; saves the change when `save`.
[[nodiscard]] uint32_t RestoreMessage(TLV_MSG* msg, bool save, const RestoreNames& names) noexcept;

// Domains as a whole and what hangs off one domain.
uint32_t RestoreDomain(Restore& restore);
uint32_t RestoreDomainName(Restore& restore);
uint32_t RestoreMethodList(Restore& restore);
uint32_t RestoreAuthorAttr(Restore& restore);
uint32_t RestoreState(Restore& restore);
uint32_t RestoreSessionTime(Restore& restore);
uint32_t RestoreUserAddrType(Restore& restore);
uint32_t RestoreDualStackMode(Restore& restore);
uint32_t RestoreRedirect(Restore& restore);
uint32_t RestoreAuthFailDomain(Restore& restore);
uint32_t RestorePermitDomain(Restore& restore);
uint32_t RestoreEscapeRecover(Restore& restore);

// Rows of the domain and scheme tables.
uint32_t RestoreDomainRow(Restore& restore);
uint32_t RestoreSchemeRow(Restore& restore);

// NAS-ID profiles, which only the working role has.
uint32_t RestoreNasIdProfile(Restore& restore);
uint32_t RestoreNasIdBinding(Restore& restore);

// Critical and authorization profiles, which both roles have.
uint32_t RestoreCriticalProfile(Restore& restore);
uint32_t RestoreCriticalVpn(Restore& restore);
uint32_t RestoreCriticalSegment(Restore& restore);
uint32_t RestoreAuthorProfile(Restore& restore);
uint32_t RestoreAuthorVpn(Restore& restore);
uint32_t RestoreAuthorSegment(Restore& restore);

// Recording policies.
uint32_t RestoreRecPolicy(Restore& restore);
uint32_t RestoreRecPolicyType(Restore& restore);
uint32_t RestoreRecAcctScheme(Restore& restore);

// Accounting policies, which only the working role has.
uint32_t RestoreItaPolicy(Restore& restore);
uint32_t RestoreItaPolicyName(Restore& restore);
uint32_t RestoreItaAcctScheme(Restore& restore);
uint32_t RestoreItaAcctTogether(Restore& restore);
uint32_t RestoreItaAcctLevel(Restore& restore);
uint32_t RestoreItaTrafficSeparation(Restore& restore);
uint32_t RestoreItaQuotaOut(Restore& restore);

// Which user records are kept and backed up.
uint32_t RestoreRecordSwitch(Restore& restore);
uint32_t RestoreAllRecordSwitches(Restore& restore);
uint32_t RestoreBackupMethods(Restore& restore);

// The records themselves, in the run database, which both roles share.
uint32_t RestoreRecordReset(Restore& restore);
uint32_t RestoreUserRecords(Restore& restore);

// Settings of the device.
uint32_t RestoreDefaultDomain(Restore& restore);
uint32_t RestoreUnknownDomain(Restore& restore);
uint32_t RestoreDeviceId(Restore& restore);
uint32_t RestoreSessionLimit(Restore& restore);
uint32_t RestoreAllSessionLimits(Restore& restore);
uint32_t RestoreSessionCount(Restore& restore);
uint32_t RestoreDebugFlag(Restore& restore);

}  // namespace aaadom
