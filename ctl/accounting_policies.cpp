#include "accounting_policies.h"

#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <platform/aaa_tlv.h>

#include <algorithm>

#include "document.h"
#include "names.h"
#include "texts.h"

namespace aaactl {
namespace {

// Of the codes 23 to 27 the daemon takes operation 1 for "set" and 0 for "delete", the reverse of
// all others: the library's management setters send what they are given, and for their callers a
// number other than 0 means to set.
constexpr uint32_t kPolicySet = 1;
constexpr uint32_t kPolicyDelete = 0;

std::string Quoted(const std::string& name) {
    return "accounting policy \"" + name + "\"";
}

Failure NoSuchPolicy(const std::string& name, uint32_t code) {
    return Failure(kExitRefused, Quoted(name), "there is no such policy",
                   "Names are found exactly, letter case included; see aaactl policy acct list",
                   code);
}

Failure Unreadable() {
    return Failure(kExitRefused, "accounting policies", "the daemon's answer cannot be read",
                   "Use the aaactl of the daemon's release");
}

TLV_MSG* EncodeKey(uint32_t code, uint16_t type, const std::string& name) {
    Message request(TLV_Create());
    if (!request || TLV_Append_UINT(request.get(), DOM_TLV_MSG_CODE, code) != 0 ||
        AAA_AppendStrTlvData(request.get(), type, name.c_str()) != 0) {
        return nullptr;
    }
    return request.release();
}

/// Readers refuse a list of methods without any, which a policy with an empty scheme is sent with,
/// and take a message without the list for an empty scheme.
void DropEmptyScheme(TLV_MSG* message) {
    TLV_ITER* list = TLV_GetIteratorByType(message, DOM_TLV_METHOD_LIST);
    if (list == nullptr) return;
    const Message methods(AAA_GetSubTlv(message, list));
    if (methods && TLV_GetFirst(methods.get()) == nullptr) (void)TLV_Delete_Data(message, list);
}

std::optional<ItaPolicy> ReadPolicy(Client& client, const std::string& name, uint32_t operation) {
    const Reply reply =
        client.Read(EncodeKey(DOM_MSG_ITA_POLICY, DOM_TLV_ITA_POLICY_NAME, name), operation);
    if (!reply.data) {
        if (reply.refusal != DOM_ERR_NOT_FOUND) throw Refused("accounting policies", reply.refusal);
        return std::nullopt;
    }
    DropEmptyScheme(reply.data.get());
    ItaPolicy policy{};
    if (DOM_ita_tlv_DecodePolicy(reply.data.get(), &policy) != DOM_OK) throw Unreadable();
    return policy;
}

Json PairToJson(const uint32_t (&pair)[2]) {
    if (pair[0] == DOM_ITA_PAIR_UNSET && pair[1] == DOM_ITA_PAIR_UNSET) return nullptr;
    Json numbers = Json::array();
    for (const uint32_t number : pair) {
        numbers.push_back(number == DOM_ITA_PAIR_UNSET ? Json() : Json(number));
    }
    return numbers;
}

void PairFromJson(const Json& level, const char* name, uint32_t (&pair)[2]) {
    pair[0] = pair[1] = DOM_ITA_PAIR_UNSET;
    if (!level.contains(name) || level.at(name).is_null()) return;
    const Json& numbers = level.at(name);
    const std::string object = "setting \"" + std::string(name) + "\"";
    if (!numbers.is_array() || numbers.size() != 2) {
        RefuseUsage(object, "it is no list of two numbers", "Mend the file");
    }
    for (size_t i = 0; i < 2; ++i) {
        if (numbers[i].is_null()) continue;
        if (!numbers[i].is_number_unsigned() || numbers[i].get<uint64_t>() >= DOM_ITA_PAIR_UNSET) {
            RefuseUsage(object, "it holds something that is no number from 0 to 4294967294",
                        "Write null for a number that is not set");
        }
        pair[i] = numbers[i].get<uint32_t>();
    }
}

uint16_t StateFromJson(const Json& document, const char* name, uint16_t missing) {
    return static_cast<uint16_t>(DocumentNumber(document, name, missing, UINT16_MAX));
}

void LevelsFromJson(const std::string& name, const Json& levels, ItaPolicy& policy) {
    if (levels.size() > DOM_ITA_LEVELS) {
        RefuseUsage(Quoted(name), "the file gives it " + std::to_string(levels.size()) + " levels",
                    "A policy has at most " + std::to_string(DOM_ITA_LEVELS));
    }
    for (const auto& [id, document] : levels.items()) {
        const std::string object = Quoted(name) + " level " + id;
        DemandObject(document, object);
        RefuseUnknown(document, object, {"value", "first_pair", "second_pair"});
        ItaAcctLevel& level = policy.levels[policy.level_count++];
        level.level_id = ParseLevelId(id);
        if (std::to_string(level.level_id) != id) {
            RefuseUsage(object, "its identifier is no plain decimal number", "Mend the file");
        }
        level.level_value = DocumentNumber(document, "value", 0, UINT32_MAX);
        PairFromJson(document, "first_pair", level.first_pair);
        PairFromJson(document, "second_pair", level.second_pair);
    }
    // The daemon keeps the levels of a whole policy as they arrive, and readers expect them so.
    std::sort(policy.levels, policy.levels + policy.level_count,
              [](const ItaAcctLevel& a, const ItaAcctLevel& b) { return a.level_id < b.level_id; });
}

ItaPolicy PolicyFromJson(const std::string& name, const Json& document) {
    CheckPolicyName(name);
    DemandObject(document, Quoted(name));
    RefuseUnknown(document, Quoted(name),
                  {"scheme", "levels", "together", "separation", "quota_out"});
    ItaPolicy policy{};
    name.copy(policy.name, sizeof policy.name - 1);
    policy.acct_scheme[0].method_kind = METHOD_LAST_5;
    if (document.contains("scheme")) {
        const std::vector<std::string> words = DocumentTexts(document, "scheme");
        const MethodList scheme = words.empty() ? MethodList{} : ParseScheme(words);
        std::copy(std::begin(scheme.methods), std::end(scheme.methods), policy.acct_scheme);
    }
    LevelsFromJson(name, DocumentObject(document, "levels"), policy);
    policy.together_state = StateFromJson(document, "together", 0);
    policy.separation_state = StateFromJson(document, "separation", 0);
    policy.quota_out_state = StateFromJson(document, "quota_out", 1);
    return policy;
}

}  // namespace

std::optional<ItaPolicy> FindAccountingPolicy(Client& client, const std::string& name) {
    return ReadPolicy(client, name, DOM_OP_GET);
}

ItaPolicy NeedAccountingPolicy(Client& client, const std::string& name) {
    const auto policy = FindAccountingPolicy(client, name);
    if (!policy) throw NoSuchPolicy(name, DOM_ERR_NOT_FOUND);
    return *policy;
}

std::optional<ItaPolicy> NextAccountingPolicy(Client& client, const std::string& name) {
    const auto next = ReadPolicy(client, name, DOM_OP_GET_NEXT);
    // Names ascend, so a walk ends whatever other clients change meanwhile.
    if (next && FieldText(next->name) <= name) throw Unreadable();
    return next;
}

Json AccountingPolicyToJson(const ItaPolicy& policy) {
    Json levels = Json::object();
    for (const ItaAcctLevel& level : policy.levels) {
        if (level.level_id == 0) continue;
        levels[std::to_string(level.level_id)] = {{"value", level.level_value},
                                                  {"first_pair", PairToJson(level.first_pair)},
                                                  {"second_pair", PairToJson(level.second_pair)}};
    }
    return {{"scheme", MethodNames(policy.acct_scheme)},
            {"levels", levels},
            {"together", policy.together_state},
            {"separation", policy.separation_state},
            {"quota_out", policy.quota_out_state}};
}

Json ReadAccountingPolicies(Client& client) {
    Json policies = Json::object();
    std::string name;
    while (const auto policy = NextAccountingPolicy(client, name)) {
        name = FieldText(policy->name);
        policies[name] = AccountingPolicyToJson(*policy);
    }
    return policies;
}

void CheckAccountingPolicies(const Json& document) {
    for (const auto& [name, policy] : document.items()) (void)PolicyFromJson(name, policy);
}

Json CompletedAccountingPolicies(const Json& document) {
    Json policies = Json::object();
    for (const auto& [name, policy] : document.items()) {
        policies[name] = AccountingPolicyToJson(PolicyFromJson(name, policy));
    }
    return policies;
}

void ApplyAccountingPolicies(Client& client, const Json& wanted, bool replace) {
    const Json running = ReadAccountingPolicies(client);
    for (const auto& [name, document] : wanted.items()) {
        const ItaPolicy policy = PolicyFromJson(name, document);
        if (running.contains(name) && running.at(name) == AccountingPolicyToJson(policy)) continue;
        TLV_MSG* message = DOM_ita_tlv_EncodePolicy(&policy);
        DropEmptyScheme(message);
        const uint32_t result = client.Change(message, DOM_OP_SET);
        if (result != DOM_OK) throw Refused(Quoted(name), result);
    }
    if (!replace) return;
    for (const auto& [name, unused] : running.items()) {
        if (!wanted.contains(name)) DeleteAccountingPolicy(client, name);
    }
}

void CheckPolicyName(const std::string& name) {
    if (name.empty()) {
        RefuseUsage("accounting policy", "it is empty", "Give a name of 1 to 31 characters");
    }
    CheckFits("accounting policy", name, DOM_ITA_NAME_SIZE);
}

uint32_t ParseLevelId(const std::string& word) {
    const uint32_t id = ParseNumber("level", word, UINT32_MAX);
    if (id == 0) RefuseUsage("level 0", "0 stands for no level", "Give a number from 1 on");
    return id;
}

uint32_t ChangeAccountingPolicy(Client& client, TLV_MSG* message, bool set) {
    return client.Change(message, set ? kPolicySet : kPolicyDelete);
}

void RefuseAccountingPolicy(Client& client, const std::string& name, uint32_t code) {
    const bool may_be_missing = code == DOM_ERR_NOT_FOUND || code == DOM_ERR_FAILED;
    if (may_be_missing && !FindAccountingPolicy(client, name)) throw NoSuchPolicy(name, code);
    throw Refused(Quoted(name), code);
}

void CreateAccountingPolicy(Client& client, const std::string& name) {
    const uint32_t result =
        ChangeAccountingPolicy(client, DOM_ita_tlv_EncodePolicyName(name.c_str()), true);
    if (result != DOM_OK) throw Refused(Quoted(name), result);
}

void DeleteAccountingPolicy(Client& client, const std::string& name) {
    const uint32_t result =
        ChangeAccountingPolicy(client, DOM_ita_tlv_EncodePolicyName(name.c_str()), false);
    if (result != DOM_OK) RefuseAccountingPolicy(client, name, result);
}

MethodList ParseScheme(const std::vector<std::string>& words) {
    return ParseMethodList(AAA_TYPE_5, DOM_DEFAULT_SERVICE, words);
}

std::optional<std::vector<std::string>> EffectiveMethods(Client& client,
                                                         const std::string& domain) {
    const Reply reply =
        client.Read(EncodeKey(DOM_MSG_ITA_ACCT_SCHEME, DOM_TLV_DOMAIN_NAME, domain), DOM_OP_GET);
    if (!reply.data) {
        if (reply.refusal != DOM_ERR_NOT_FOUND) throw Refused("accounting policies", reply.refusal);
        return std::nullopt;
    }
    char name[DOM_ITA_NAME_SIZE] = {};
    MethodEntry methods[DOM_METHODS] = {};
    // The reader takes a message without methods, which an empty scheme gives, for a broken one.
    const bool empty = TLV_GetIteratorByType(reply.data.get(), DOM_TLV_METHOD_ITEM) == nullptr;
    if (!empty &&
        DOM_ita_tlv_DecodeAcctScheme(reply.data.get(), sizeof name, name, methods) != DOM_OK) {
        throw Unreadable();
    }
    return MethodNames(methods);
}

}  // namespace aaactl
