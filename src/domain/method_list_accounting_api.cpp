// What a domain says about accounting beside its method lists: the name of its accounting policy
// and the accounting words among its authorization attributes.
#include <aaadom/accounting_policy.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>

#include "base/text.h"
#include "domain/with_domain.h"

using namespace aaadom;

namespace {

uint32_t AccountingWord(const AuthorAttr& attributes, uint32_t attribute_code) noexcept {
    switch (attribute_code) {
        case ACCT_ATTR_187:
            return attributes.kind13_word;
        case ACCT_ATTR_188:
            return attributes.kind14_word1;
        case ACCT_ATTR_189:
            return attributes.kind14_word2;
        case ACCT_ATTR_190:
            return attributes.kind15_word;
        default:
            return DOM_ACCT_POLICY_NONE;
    }
}

}  // namespace

extern "C" {

uint32_t DOM_GetItaPolicyName(const char* domain, uint32_t size, char* text_out) noexcept {
    CopyText(text_out, size, nullptr);
    return WithDomain(domain, [&](const DomainInfo& record) {
        const auto& name = record.author_attr.ita_policy_name;
        CopyBounded(text_out, size, name, sizeof name);
        return DOM_OK;
    });
}

uint32_t DOM_IsItaEnabled(const char* domain) noexcept {
    return ReadDomain(domain, 0u, [](const DomainInfo& record) {
        return IsEmpty(record.author_attr.ita_policy_name) ? 0u : 1u;
    });
}

uint32_t DOM_GetItaMethodList(const char* domain, MethodList* list_out) noexcept {
    // The policy store has a mutex of its own, so the name is copied out before it is asked.
    char policy_name[sizeof AuthorAttr::ita_policy_name];
    uint32_t result = DOM_GetItaPolicyName(domain, sizeof policy_name, policy_name);
    return result == DOM_OK ? DOM_ita_policy_GetMethodList(policy_name, list_out) : result;
}

uint32_t DOM_GetAcctPolicy(const char* domain, uint32_t attribute_code,
                           uint32_t* value_out) noexcept {
    if (value_out != nullptr) *value_out = DOM_ACCT_POLICY_NONE;
    return WithDomain(domain, [&](const DomainInfo& record) {
        // Another code is no failure: it has no value, which the constant says.
        if (value_out != nullptr) *value_out = AccountingWord(record.author_attr, attribute_code);
        return DOM_OK;
    });
}

}  // extern "C"
