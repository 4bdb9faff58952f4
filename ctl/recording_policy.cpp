#include "recording_policy.h"

#include <aaadom/recording_policy.h>

#include "accounting_policies.h"
#include "document.h"
#include "names.h"

namespace aaactl {
namespace {

constexpr char kObject[] = "recording policy of connections";

Failure NoPolicy(uint32_t code) {
    return Failure(kExitRefused, kObject, "there is none",
                   "Create it with: aaactl policy record create", code);
}

std::vector<std::string> Scheme(const Json& document) {
    return DocumentTexts(document, "scheme");
}

/// An empty scheme is allowed here.
MethodList ParseRecordingScheme(const std::vector<std::string>& words) {
    return words.empty() ? MethodList{} : ParseScheme(words);
}

}  // namespace

std::optional<std::vector<std::string>> FindRecordingPolicy(Client& client) {
    RecPolicy policy{};
    const Reply reply = client.Read(DOM_Rec_tlv_EncodePolicy(&policy), DOM_OP_GET);
    if (!reply.data) {
        if (reply.refusal != DOM_ERR_NOT_FOUND) throw Refused(kObject, reply.refusal);
        return std::nullopt;
    }
    policy.policy_type = DOM_Rec_tlv_DecodeAcctScheme(reply.data.get(), sizeof policy.acct_scheme,
                                                      policy.acct_scheme);
    if (policy.policy_type != DOM_REC_POLICY_CONNECTION) {
        throw Failure(kExitRefused, kObject, "the daemon's answer cannot be read",
                      "Use the aaactl of the daemon's release");
    }
    return MethodNames(policy.acct_scheme);
}

Json ReadRecordingPolicy(Client& client) {
    const auto methods = FindRecordingPolicy(client);
    return methods ? Json{{"scheme", *methods}} : Json();
}

void CheckRecordingPolicy(const Json& document) {
    if (document.is_null()) return;
    DemandObject(document, kObject);
    RefuseUnknown(document, kObject, {"scheme"});
    (void)ParseRecordingScheme(Scheme(document));
}

void ApplyRecordingPolicy(Client& client, const Json& wanted) {
    const auto running = FindRecordingPolicy(client);
    if (wanted.is_null()) {
        if (running) DeleteRecordingPolicy(client);
        return;
    }
    if (!running) CreateRecordingPolicy(client);
    if (running.value_or(std::vector<std::string>()) != Scheme(wanted)) {
        SetRecordingScheme(client, Scheme(wanted));
    }
}

void CreateRecordingPolicy(Client& client) {
    const uint32_t result =
        client.Change(DOM_Rec_tlv_EncodePolicyType(DOM_REC_POLICY_CONNECTION), DOM_OP_SET);
    if (result == DOM_ERR_EXISTS) {
        throw Failure(kExitRefused, kObject, "it exists already", "See aaactl policy record show",
                      result);
    }
    if (result != DOM_OK) throw Refused(kObject, result);
}

void DeleteRecordingPolicy(Client& client) {
    const uint32_t result =
        client.Change(DOM_Rec_tlv_EncodePolicyType(DOM_REC_POLICY_CONNECTION), DOM_OP_DELETE);
    if (result == DOM_ERR_NOT_FOUND) throw NoPolicy(result);
    if (result != DOM_OK) throw Refused(kObject, result);
}

void SetRecordingScheme(Client& client, const std::vector<std::string>& words) {
    const MethodList scheme = ParseRecordingScheme(words);
    const uint32_t result =
        client.Change(DOM_Rec_tlv_EncodeAcctScheme(DOM_REC_POLICY_CONNECTION, scheme.methods),
                      words.empty() ? DOM_OP_DELETE : DOM_OP_SET);
    if (result == DOM_ERR_NOT_FOUND) throw NoPolicy(result);
    if (result != DOM_OK) throw Refused(kObject, result);
}

}  // namespace aaactl
