#include "request_checks.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/settings.h>
#include <platform/aaa_tlv.h>
#include <strings.h>

#include <cstring>

#include "stored_spelling.h"
#include "table_lock.h"

namespace aaad {
namespace {

/// Reads the domain name. False for a message that carries two: the applier could take the one that
/// was not checked.
bool ReadName(TLV_MSG* body, DomainNameBuffer& name, bool& found) {
    found = false;
    name[0] = '\0';
    for (TLV_ITER* it = TLV_GetFirst(body); it != nullptr; it = TLV_GetNext(body, it)) {
        if (TLV_GetTypeByIterator(body, it) != DOM_TLV_DOMAIN_NAME) continue;
        if (found || AAA_GetStrTlvValue(body, it, sizeof name, name) != 0) return false;
        found = true;
    }
    return true;
}

bool IsTooLong(const DomainNameBuffer& name) {
    return strlen(name) >= DOM_NAME_SIZE;
}

/// A reference may spell its domain in other letters than the domain itself: looking it up ignores
/// case, the library's own deletion check does not.
uint32_t CheckReferencesInOtherSpelling(const char* name) {
    GlobalDomain global{};
    DOM_GetGlobalDomainName(&global);
    if (strcasecmp(global.default_domain, name) == 0) return DOM_DELCHK_DEFAULT;
    const TableLock lock;
    for (const DomainInfo* domain = DOM_NetConfGetFirstDomain(); domain != nullptr;
         domain = DOM_NetConfGetNextDomain(domain->name)) {
        if (strcasecmp(domain->auth_rd_fail_permit_domain, name) == 0) return DOM_DELCHK_PERMIT;
        if (strcasecmp(domain->escape_recover.domain_name, name) == 0) return DOM_DELCHK_ESCAPE;
        if (strcasecmp(domain->auth_fail_domain, name) == 0) return DOM_DELCHK_AUTHFAIL;
    }
    return DOM_DELCHK_OK;
}

}  // namespace

uint32_t CheckNewDomain(TLV_MSG* body, uint32_t) {
    DomainNameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    if (name[0] == '\0' || IsTooLong(name) || DOM_CheckDomainName(name) != DOM_OK) {
        return AAAD_ERR_DOMAIN_NAME;
    }
    return DOM_OK;
}

uint32_t CheckNewOrDeletedDomain(TLV_MSG* body, uint32_t operation) {
    if (operation == DOM_OP_SET) return CheckNewDomain(body, operation);
    DomainNameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    DomainNameBuffer stored;
    if (IsTooLong(name) || !FindStoredSpelling(name, stored)) return DOM_DELCHK_NO_DOMAIN;
    // The deletion finds the domain in any spelling, so the stored one is judged: "SYSTEM" is as
    // protected as "system".
    const uint32_t reason = DOM_DelDomainCheck(stored);
    return reason != DOM_DELCHK_OK ? reason : CheckReferencesInOtherSpelling(stored);
}

uint32_t CheckExistingDomain(TLV_MSG* body, uint32_t operation) {
    const uint32_t result = CheckNameLength(body, operation);
    if (result != DOM_OK) return result;
    DomainNameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    return DOM_IsDomainExist(name) ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t CheckDomainRow(TLV_MSG* body, uint32_t) {
    DomainNameBuffer name;
    bool found;
    if (!ReadName(body, name, found) || !found) return AAAD_ERR_MALFORMED;
    return name[0] == '\0' || IsTooLong(name) ? AAAD_ERR_DOMAIN_NAME : DOM_OK;
}

uint32_t CheckNameLength(TLV_MSG* body, uint32_t) {
    DomainNameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    return found && IsTooLong(name) ? AAAD_ERR_DOMAIN_NAME : DOM_OK;
}

}  // namespace aaad
