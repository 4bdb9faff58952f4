#include "request_checks.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <platform/aaa_tlv.h>

#include <cstring>

namespace aaad {
namespace {

/// One character more than a name may have, so that a longer one shows.
using NameBuffer = char[DOM_NAME_SIZE + 1];

/// Reads the domain name. False for a message that carries two: the applier could take the one that
/// was not checked.
bool ReadName(TLV_MSG* body, NameBuffer& name, bool& found) {
    found = false;
    name[0] = '\0';
    for (TLV_ITER* it = TLV_GetFirst(body); it != nullptr; it = TLV_GetNext(body, it)) {
        if (TLV_GetTypeByIterator(body, it) != DOM_TLV_DOMAIN_NAME) continue;
        if (found || AAA_GetStrTlvValue(body, it, sizeof name, name) != 0) return false;
        found = true;
    }
    return true;
}

bool IsTooLong(const NameBuffer& name) {
    return strlen(name) >= DOM_NAME_SIZE;
}

}  // namespace

uint32_t CheckNewDomain(TLV_MSG* body, uint32_t) {
    NameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    if (name[0] == '\0' || IsTooLong(name) || DOM_CheckDomainName(name) != DOM_OK) {
        return AAAD_ERR_DOMAIN_NAME;
    }
    return DOM_OK;
}

uint32_t CheckNewOrDeletedDomain(TLV_MSG* body, uint32_t operation) {
    if (operation == DOM_OP_SET) return CheckNewDomain(body, operation);
    NameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    if (IsTooLong(name)) return DOM_DELCHK_NO_DOMAIN;
    return DOM_DelDomainCheck(name);
}

uint32_t CheckExistingDomain(TLV_MSG* body, uint32_t operation) {
    const uint32_t result = CheckNameLength(body, operation);
    if (result != DOM_OK) return result;
    NameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    return DOM_IsDomainExist(name) ? DOM_OK : DOM_ERR_FAILED;
}

uint32_t CheckNameLength(TLV_MSG* body, uint32_t) {
    NameBuffer name;
    bool found;
    if (!ReadName(body, name, found)) return AAAD_ERR_MALFORMED;
    return found && IsTooLong(name) ? AAAD_ERR_DOMAIN_NAME : DOM_OK;
}

}  // namespace aaad
