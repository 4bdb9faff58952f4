#include "domain/deletion_check.h"

#include <aaadom/results.h>

#include <cstring>

#include "domain/domain_name.h"

namespace aaadom {
namespace {

using TextOf = const char* (*)(const DomainInfo&);

const char* PermitDomain(const DomainInfo& domain) noexcept {
    return domain.auth_rd_fail_permit_domain;
}
const char* EscapeDomain(const DomainInfo& domain) noexcept {
    return domain.escape_recover.domain_name;
}
const char* AuthFailDomain(const DomainInfo& domain) noexcept {
    return domain.auth_fail_domain;
}

struct Reference {
    TextOf text_of;
    uint32_t reason;
};
// One whole pass a field: an earlier field in a high slot wins over a later field in a low one.
constexpr Reference kReferences[] = {{PermitDomain, DOM_DELCHK_PERMIT},
                                     {EscapeDomain, DOM_DELCHK_ESCAPE},
                                     {AuthFailDomain, DOM_DELCHK_AUTHFAIL}};

// Reads the working role's table from any role without its lock: that role changes it from its own
// thread only.
AAADOM_NO_TSA uint32_t FindReference(const DomainTable& working, const char* name) noexcept {
    if (FieldEquals(working.default_domain, DOM_NAME_SIZE, name)) return DOM_DELCHK_DEFAULT;
    for (const Reference& reference : kReferences) {
        for (const DomainInfo* domain : working.slots) {
            if (domain == nullptr) continue;
            if (FieldEquals(reference.text_of(*domain), DOM_NAME_SIZE, name)) {
                return reference.reason;
            }
        }
    }
    return DOM_DELCHK_OK;
}

}  // namespace

uint32_t CheckDeletion(const DomainTable& table, const char* name) noexcept {
    if (table.Find(name) == nullptr) return DOM_DELCHK_NO_DOMAIN;
    if (strcmp(name, DOM_SYSTEM_DOMAIN) == 0) return DOM_DELCHK_SYSTEM;
    return FindReference(Domains(Role::kWorking), name);
}

}  // namespace aaadom
