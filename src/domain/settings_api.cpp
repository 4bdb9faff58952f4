#include <aaadom/settings.h>

#include "base/text.h"
#include "domain/with_domain.h"

using namespace aaadom;

namespace {

constexpr uint16_t kStore = 1;  // the operation that stores; every other one clears

void CopyName(char (&destination)[DOM_NAME_SIZE], const char* name) noexcept {
    CopyText(destination, name);
}

// Reads the working role's names and identifier from any role; that role changes them from its own
// thread only.
AAADOM_NO_TSA void CopyWorkingGlobals(GlobalDomain& record) noexcept {
    const DomainTable& working = Domains(Role::kWorking);
    CopyField(record.default_domain, working.default_domain);
    CopyField(record.unknown_domain, working.unknown_domain);
    record.device_id = DeviceIdOf(Role::kWorking);
}

}  // namespace

extern "C" {

void DOM_GetDefaultDomainName(char* text_out) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    CopyText(text_out, DOM_NAME_SIZE, table.default_domain);
}

void DOM_SetDefaultDomainName(const char* name) noexcept {
    if (name == nullptr) return;
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    CopyName(table.default_domain, name);
}

void DOM_GetUnknownDomainName(char* text_out) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    CopyText(text_out, DOM_NAME_SIZE, table.unknown_domain);
}

void DOM_SetUnknownDomainName(const char* name) noexcept {
    if (name == nullptr) return;
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    CopyName(table.unknown_domain, name);
}

void DOM_GetGlobalDomainName(GlobalDomain* record_out) noexcept {
    if (record_out == nullptr) return;
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    CopyWorkingGlobals(*record_out);
}

void DOM_SetDeviceID(uint32_t device_id) noexcept {
    DeviceIdOf(CurrentRole()) = device_id;
}

uint32_t DOM_GetDeviceID(void) noexcept {
    return DeviceIdOf(CurrentRole());
}

uint32_t DOM_GetState(const char* domain) noexcept {
    return ReadDomain(domain, 0u, [](const DomainInfo& d) { return d.state; });
}

void DOM_SetState(const char* domain, uint16_t state) noexcept {
    (void)WithDomain(domain, [&](DomainInfo& d) {  // an unknown domain is no error here
        d.state = state;
        return DOM_OK;
    });
}

uint32_t DOM_GetUserAddrType(const char* domain) noexcept {
    return ReadDomain(domain, DOM_DEF_ADDR_TYPE,
                      [](const DomainInfo& d) { return d.user_addr_type; });
}

void DOM_SetUserAddrType(const char* domain, uint32_t user_addr_type) noexcept {
    (void)WithDomain(domain, [&](DomainInfo& d) {
        d.user_addr_type = user_addr_type;
        return DOM_OK;
    });
}

uint32_t DOM_GetAcctDualStackMode(const char* domain) noexcept {
    return ReadDomain(domain, DOM_DEF_DUAL_STACK,
                      [](const DomainInfo& d) { return d.acct_dual_stack_mode; });
}

void DOM_SetAcctDualStackMode(const char* domain, uint32_t mode) noexcept {
    (void)WithDomain(domain, [&](DomainInfo& d) {
        d.acct_dual_stack_mode = mode;
        return DOM_OK;
    });
}

uint32_t DOM_SetEscapeRecoverAction(const char* domain, uint16_t operation,
                                    const EscapeRecoverAction* block) noexcept {
    if (operation == kStore && block == nullptr) return DOM_ERR_FAILED;
    return WithDomain(domain, [&](DomainInfo& d) {
        d.escape_recover = operation == kStore ? *block : EscapeRecoverAction{};
        return DOM_OK;
    });
}

uint32_t DOM_GetEscapeRecoverAction(const char* domain, EscapeRecoverAction* block_out) noexcept {
    return WithDomain(domain, [&](const DomainInfo& d) {
        if (block_out != nullptr) *block_out = d.escape_recover;
        return DOM_OK;
    });
}

uint32_t DOM_SetAuthRdFailPermitDomain(uint16_t operation, const char* domain,
                                       const char* permit_domain) noexcept {
    if (operation == kStore && permit_domain == nullptr) return DOM_ERR_FAILED;
    return WithDomain(domain, [&](DomainInfo& d) {
        CopyName(d.auth_rd_fail_permit_domain, operation == kStore ? permit_domain : "");
        return DOM_OK;
    });
}

uint32_t DOM_GetAuthRdFailPermitDomain(const char* domain, uint32_t size, char* text_out) noexcept {
    return WithDomain(domain, [&](const DomainInfo& d) {
        CopyBounded(text_out, size, d.auth_rd_fail_permit_domain, DOM_NAME_SIZE);
        return DOM_OK;
    });
}

uint32_t DOM_SetAuthFailDomain(const char* domain, const char* auth_fail_domain,
                               uint16_t kind) noexcept {
    if (auth_fail_domain == nullptr) return DOM_ERR_FAILED;
    return WithDomain(domain, [&](DomainInfo& d) {
        CopyName(d.auth_fail_domain, auth_fail_domain);
        d.auth_fail_domain_kind = kind;
        return DOM_OK;
    });
}

uint32_t DOM_GetAuthFailDomain(const char* domain, uint32_t size, char* text_out,
                               uint16_t* kind_out) noexcept {
    return WithDomain(domain, [&](const DomainInfo& d) {
        CopyBounded(text_out, size, d.auth_fail_domain, DOM_NAME_SIZE);
        if (kind_out != nullptr) *kind_out = d.auth_fail_domain_kind;
        return DOM_OK;
    });
}

void DOM_InitCriticalProfile(CriticalProfileMsg* record) noexcept {
    if (record != nullptr) *record = CriticalProfileMsg{};
}

void DOM_InitAuthorProfile(AuthorProfileMsg* record) noexcept {
    if (record != nullptr) *record = AuthorProfileMsg{};
}

}  // extern "C"
