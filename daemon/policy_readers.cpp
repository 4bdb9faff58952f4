#include "policy_readers.h"

#include <aaadom/aaad_results.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>
#include <aaadom/recording_policy.h>

#include <cstring>

#include "short_text.h"
#include "stored_spelling.h"

namespace aaad {
namespace {

Message Data(TLV_MSG* encoded, uint32_t& refusal) {
    if (encoded == nullptr) refusal = DOM_ERR_FAILED;
    return Message(encoded);
}

class PolicyTableLock {
  public:
    PolicyTableLock() { (void)pthread_mutex_lock(&g_stDomainItaPolicyTableMutexLock); }
    ~PolicyTableLock() { (void)pthread_mutex_unlock(&g_stDomainItaPolicyTableMutexLock); }
    PolicyTableLock(const PolicyTableLock&) = delete;
    PolicyTableLock& operator=(const PolicyTableLock&) = delete;
};

/// The policy with the least name behind the given one, in the order of strcmp; the table itself
/// has no order that a walk could use.
const ItaPolicy* NextPolicy(const char* name) {
    const HASH_TABLE* table = DOM_GetItaPolicyGlobalVarByThr();
    const ItaPolicy* next = nullptr;
    for (uint32_t bucket = 0; table != nullptr && bucket < table->bucket_count; ++bucket) {
        for (const HASH_NODE* node = table->buckets[bucket]; node != nullptr; node = node->next) {
            const auto* policy = reinterpret_cast<const ItaPolicy*>(node);  // its first member
            if (strcmp(policy->name, name) <= 0) continue;
            if (next == nullptr || strcmp(policy->name, next->name) < 0) next = policy;
        }
    }
    return next;
}

}  // namespace

Message ReadAccountingPolicy(const Question& question, uint32_t& refusal) {
    ShortText name;
    const ShortTextState state = ReadShortText(question.body, DOM_TLV_ITA_POLICY_NAME, name);
    const bool exact = question.operation == DOM_OP_GET;
    if (state == ShortTextState::kUnusable || (exact && state == ShortTextState::kMissing)) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    ItaPolicy copy{};
    {
        const PolicyTableLock lock;
        const ItaPolicy* policy =
            exact ? DOM_ita_policy_GetDomPolicyByName(name) : NextPolicy(name);
        if (policy == nullptr) {
            refusal = DOM_ERR_NOT_FOUND;
            return nullptr;
        }
        copy = *policy;
    }
    return Data(DOM_ita_tlv_EncodePolicy(&copy), refusal);
}

Message ReadDomainAccountingScheme(const Question& question, uint32_t& refusal) {
    DomainNameBuffer asked = {};
    if (DOM_DecodeDomainName(question.body, sizeof asked, asked) != DOM_OK) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    DomainNameBuffer domain = {};
    if (!FindStoredSpelling(asked, domain)) {
        refusal = AAAD_ERR_NO_OBJECT;
        return nullptr;
    }
    ShortText policy = {};
    MethodList scheme{};
    if (DOM_GetItaPolicyName(domain, sizeof policy, policy) != DOM_OK ||
        DOM_GetItaMethodList(domain, &scheme) != DOM_OK) {
        refusal = DOM_ERR_NOT_FOUND;
        return nullptr;
    }
    return Data(DOM_ita_tlv_EncodeAcctScheme(policy, scheme.methods), refusal);
}

Message ReadRecordingPolicy(const Question& question, uint32_t& refusal) {
    RecPolicy policy{};
    if (DOM_Rec_GetPolicy(DOM_Rec_tlv_DecodePolicyType(question.body), &policy) != DOM_OK) {
        refusal = DOM_ERR_NOT_FOUND;
        return nullptr;
    }
    return Data(DOM_Rec_tlv_EncodePolicy(&policy), refusal);
}

}  // namespace aaad
