#include "codec/restore.h"

#include <aaadom/database.h>
#include <aaadom/results.h>

#include <array>

#include "base/message.h"
#include "base/text.h"

namespace aaadom {
namespace {

struct CodeCase {
    uint32_t code;
    RestoreCase apply;
};

/// Every message code that changes tables. A code that is not here is refused.
constexpr CodeCase kCodeCases[] = {
    {DOM_MSG_DOMAIN, RestoreDomain},
    {DOM_MSG_DEFAULT_DOMAIN, RestoreDefaultDomain},
    {DOM_MSG_DOMAIN_NAME, RestoreDomainName},
    {DOM_MSG_METHOD_LIST, RestoreMethodList},
    {DOM_MSG_STATE, RestoreState},
    {DOM_MSG_SESSION_LIMIT, RestoreSessionLimit},
    {DOM_MSG_SESSION_COUNT, RestoreSessionCount},
    {DOM_MSG_ALL_SESSION_LIMIT, RestoreAllSessionLimits},
    {DOM_MSG_AUTHOR_ATTR, RestoreAuthorAttr},
    {DOM_MSG_DOMAIN_ROW, RestoreDomainRow},
    {DOM_MSG_SCHEME_ROW, RestoreSchemeRow},
    {DOM_MSG_NASID_PROFILE, RestoreNasIdProfile},
    {DOM_MSG_NASID_BIND, RestoreNasIdBinding},
    {DOM_MSG_UNKNOWN_DOMAIN, RestoreUnknownDomain},
    {DOM_MSG_SESSION_TIME, RestoreSessionTime},
    {DOM_MSG_DEVICE_ID, RestoreDeviceId},
    {DOM_MSG_USER_ADDR_TYPE, RestoreUserAddrType},
    {DOM_MSG_ITA_POLICY, RestoreItaPolicy},
    {DOM_MSG_ITA_POLICY_NAME, RestoreItaPolicyName},
    {DOM_MSG_ITA_ACCT_SCHEME, RestoreItaAcctScheme},
    {DOM_MSG_ITA_ACCT_TOGETHER, RestoreItaAcctTogether},
    {DOM_MSG_ITA_ACCT_LEVEL, RestoreItaAcctLevel},
    {DOM_MSG_ITA_TRAF_SEPRATE, RestoreItaTrafficSeparation},
    {DOM_MSG_ITA_TRAF_QUOTA_OUT, RestoreItaQuotaOut},
    {DOM_MSG_ACCT_DUAL_STACK, RestoreDualStackMode},
    {DOM_MSG_REC_POLICY, RestoreRecPolicy},
    {DOM_MSG_REC_POLICY_TYPE, RestoreRecPolicyType},
    {DOM_MSG_REC_ACCT_SCHEME, RestoreRecAcctScheme},
    {DOM_MSG_RESET_ONLINE_FAIL, RestoreRecordReset},
    {DOM_MSG_RESET_OFFLINE_ALL, RestoreRecordReset},
    {DOM_MSG_RESET_OFFLINE_NORMAL, RestoreRecordReset},
    {DOM_MSG_RESET_OFFLINE_ABNORMAL, RestoreRecordReset},
    {DOM_MSG_REC_EN_ONLINE_FAIL, RestoreRecordSwitch},
    {DOM_MSG_REC_EN_OFFLINE_ALL, RestoreRecordSwitch},
    {DOM_MSG_REC_EN_OFFLINE_NORMAL, RestoreRecordSwitch},
    {DOM_MSG_REC_EN_OFFLINE_ABNORMAL, RestoreRecordSwitch},
    {DOM_MSG_REC_ENABLE_INFO, RestoreAllRecordSwitches},
    {DOM_MSG_REDIRECT, RestoreRedirect},
    {DOM_MSG_AUTH_FAIL_DOMAIN, RestoreAuthFailDomain},
    {DOM_MSG_PERMIT_DOMAIN, RestorePermitDomain},
    {DOM_MSG_ESCAPE_RECOVER, RestoreEscapeRecover},
    {DOM_MSG_DEBUG_FLAG, RestoreDebugFlag},
    {DOM_MSG_CRITICAL_PROFILE, RestoreCriticalProfile},
    {DOM_MSG_CRITICAL_VPN, RestoreCriticalVpn},
    {DOM_MSG_CRITICAL_SEGMENT, RestoreCriticalSegment},
    {DOM_MSG_AUTHOR_PROFILE, RestoreAuthorProfile},
    {DOM_MSG_AUTHOR_VPN, RestoreAuthorVpn},
    {DOM_MSG_AUTHOR_SEGMENT, RestoreAuthorSegment},
    {DOM_MSG_BACKUP_METHOD, RestoreBackupMethods},
    {DOM_MSG_USER_RECORD, RestoreUserRecords},
};

constexpr auto kCaseOfCode = [] {
    std::array<RestoreCase, DOM_MSG_LIMIT> cases{};
    for (const CodeCase& row : kCodeCases) cases[row.code] = row.apply;
    return cases;
}();

uint32_t Apply(Restore& restore) noexcept {
    const TlvItem code = FindTlv(restore.msg, DOM_TLV_MSG_CODE);
    if (!code || code.U32() >= DOM_MSG_LIMIT) return DOM_ERR_FAILED;
    const RestoreCase apply = kCaseOfCode[code.U32()];
    return apply == nullptr ? DOM_ERR_FAILED : apply(restore);
}

/// A case that recorded no change has no saved form, and saving it fails.
uint32_t Save(const Restore& restore) noexcept {
    const uint32_t saved = DOM_SetDataToDB(&restore.change);
    if (saved != DOM_OK || restore.stale_element == kNoStaleElement) return saved;
    return DOM_DeleteDomainToDBByIndex(restore.stale_element) == 0 ? DOM_OK : DOM_ERR_FAILED;
}

template <size_t N>
void HandOut(char* out, uint32_t capacity, const char (&name)[N]) noexcept {
    if (name[0] != '\0') CopyBounded(out, capacity, name, N);
}

}  // namespace

void Restore::Changed(uint32_t object_type, const char* object_name, uint16_t operation) noexcept {
    change.object_type = object_type;
    CopyText(change.object_name, object_name);
    change.operation = operation;
}

uint32_t RestoreMessage(TLV_MSG* msg, bool save, const RestoreNames& names) noexcept {
    if (msg == nullptr) return DOM_ERR_FAILED;
    uint32_t op = 0;
    const TlvPtr inner(AAA_DelOpHead(msg, &op));
    if (!inner) return DOM_ERR_FAILED;

    // The one place where the operation of the wire becomes the library's own, of the other
    // polarity.
    const uint16_t present = op == DOM_OP_SET ? DOM_PRESENT : DOM_ABSENT;
    Restore restore{inner.get(), present, save, {}, kNoStaleElement};

    uint32_t result = Apply(restore);
    if (result == DOM_OK && save) result = Save(restore);
    HandOut(names.object, names.object_capacity, restore.change.object_name);
    HandOut(names.policy, names.policy_capacity, restore.change.ita_policy_name);
    return result;
}

}  // namespace aaadom
