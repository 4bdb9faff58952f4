#include "nas_id_readers.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/nas_id_codec.h>
#include <platform/aaa_tlv.h>
#include <strings.h>

#include <algorithm>

#include "saved_nas_id.h"

namespace aaad {
namespace {

/// One character more than a name may have: a name that is too long is another name than the one
/// that it begins with.
std::string AskedName(TLV_MSG* body) {
    char name[DOM_NASID_NAME_SIZE + 1] = {};
    TLV_ITER* it = TLV_GetIteratorByType(body, DOM_TLV_NASID_PROFILE);
    if (it == nullptr || AAA_GetStrTlvValue(body, it, sizeof name, name) != 0) return {};
    return name;
}

std::optional<uint16_t> AskedVlan(TLV_MSG* body) {
    uint16_t vlan_id = 0;
    if (TLV_GetIteratorByType(body, DOM_TLV_VLAN_ID) == nullptr) return std::nullopt;
    (void)DOM_DecodeNasIdBindVlanId(body, nullptr, nullptr, &vlan_id);
    return vlan_id;
}

/// The saved spelling of a profile, empty when there is none.
std::string SavedSpelling(const std::vector<std::string>& names, const std::string& asked) {
    for (const std::string& name : names) {
        if (strcasecmp(name.c_str(), asked.c_str()) == 0) return name;
    }
    return {};
}

Message ProfileWithBindings(DBM_HANDLE handle, const std::string& name) {
    Message reply(DOM_EncodeNasIdProfile(name.c_str()));
    SavedNasIdBindings bindings(handle, name);
    auto binding = bindings.From(0);
    for (int i = 0; reply && binding && i < kBindingsInReply; ++i, binding = bindings.Next()) {
        const Message nested(
            DOM_EncodeNasidBindVlanId(name.c_str(), binding->nas_id, binding->vlan_id));
        if (!nested || AAA_AppendSubTlv(reply.get(), DOM_TLV_NASID_BINDING, nested.get()) != 0) {
            reply.reset();
        }
    }
    if (bindings.Failed()) reply.reset();
    return reply;
}

Message AnswerProfile(const Question& question, uint32_t& refusal) {
    std::vector<std::string> names;
    if (!SavedNasIdProfiles(question.handle, names)) {
        refusal = DOM_ERR_FAILED;
        return nullptr;
    }
    const std::string asked = AskedName(question.body);
    std::string found;
    if (question.operation == DOM_OP_GET) {
        refusal = AAAD_ERR_NO_OBJECT;
        found = SavedSpelling(names, asked);
    } else {
        refusal = DOM_WALK_NONE;
        const auto next = std::upper_bound(names.begin(), names.end(), asked);
        if (next != names.end()) found = *next;
    }
    if (found.empty()) return nullptr;
    Message reply = ProfileWithBindings(question.handle, found);
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

Message AnswerBinding(const Question& question, uint32_t& refusal) {
    refusal = AAAD_ERR_NO_OBJECT;
    std::vector<std::string> names;
    if (!SavedNasIdProfiles(question.handle, names)) {
        refusal = DOM_ERR_FAILED;
        return nullptr;
    }
    const std::string profile = SavedSpelling(names, AskedName(question.body));
    if (profile.empty()) return nullptr;
    const std::optional<uint16_t> asked_vlan = AskedVlan(question.body);

    NasIdBinding binding{};
    if (question.operation == DOM_OP_GET) {
        if (!asked_vlan) {
            refusal = AAAD_ERR_MALFORMED;
            return nullptr;
        }
        binding.vlan_id = *asked_vlan;
        if (DOM_GetNasIdByProfileAndVlanId(profile.c_str(), binding.vlan_id, binding.nas_id) !=
            DOM_OK) {
            return nullptr;
        }
    } else {
        refusal = DOM_WALK_NONE;
        if (asked_vlan == UINT16_MAX) return nullptr;
        SavedNasIdBindings bindings(question.handle, profile);
        const auto next =
            bindings.From(asked_vlan ? static_cast<uint16_t>(*asked_vlan + 1) : uint16_t{0});
        if (bindings.Failed()) refusal = DOM_ERR_FAILED;
        if (!next) return nullptr;
        binding = *next;
    }
    Message reply(DOM_EncodeNasidBindVlanId(profile.c_str(), binding.nas_id, binding.vlan_id));
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

}  // namespace

Message ReadNasIdProfile(const Question& question, uint32_t& refusal) {
    return WithoutException(refusal, [&] { return AnswerProfile(question, refusal); });
}

Message ReadNasIdBinding(const Question& question, uint32_t& refusal) {
    return WithoutException(refusal, [&] { return AnswerBinding(question, refusal); });
}

}  // namespace aaad
