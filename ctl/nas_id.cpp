#include "nas_id.h"

#include <aaadom/aaad_results.h>
#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>
#include <platform/aaa_tlv.h>
#include <strings.h>

#include "names.h"

namespace aaactl {
namespace {

using Name = char[DOM_NASID_NAME_SIZE];

std::string Quoted(const std::string& name) {
    return "NAS-ID profile \"" + name + "\"";
}

Failure NoSuchProfile(const std::string& name, uint32_t code) {
    return Failure(kExitRefused, Quoted(name), "there is no such profile",
                   "See aaactl nas-id profile list", code);
}

void AddBinding(TLV_MSG* message, Json& bindings, uint16_t& vlan) {
    Name profile = {};
    Name nas_id = {};
    if (DOM_DecodeNasIdBindVlanId(message, profile, nas_id, &vlan) != DOM_OK) {
        throw Failure(kExitRefused, "NAS-ID bindings", "the daemon's answer cannot be read",
                      "Use the aaactl of the daemon's release");
    }
    bindings[std::to_string(vlan)] = nas_id;
}

/// The reply about a profile holds its first bindings; the walk over its bindings has the others.
NasIdProfile Complete(Client& client, TLV_MSG* reply) {
    Name name = {};
    if (DOM_DecodeNasIdProfile(reply, name) != DOM_OK) {
        throw Failure(kExitRefused, "NAS-ID profiles", "the daemon's answer cannot be read",
                      "Use the aaactl of the daemon's release");
    }
    NasIdProfile profile{name, Json::object()};
    uint16_t vlan = 0;
    for (TLV_ITER* it = TLV_GetFirst(reply); it != nullptr; it = TLV_GetNext(reply, it)) {
        if (TLV_GetTypeByIterator(reply, it) != DOM_TLV_NASID_BINDING) continue;
        const Message nested(AAA_GetSubTlv(reply, it));
        AddBinding(nested.get(), profile.bindings, vlan);
    }
    while (!profile.bindings.empty()) {
        const uint16_t previous = vlan;
        const Reply next =
            client.Read(DOM_EncodeNasidBindVlanId(name, "", previous), DOM_OP_GET_NEXT);
        if (!next.data) {
            // A profile that is deleted meanwhile has no further bindings.
            if (next.refusal == DOM_WALK_NONE || next.refusal == AAAD_ERR_NO_OBJECT) break;
            throw Refused(Quoted(name), next.refusal);
        }
        AddBinding(next.data.get(), profile.bindings, vlan);
        if (vlan <= previous) {
            throw Failure(kExitRefused, Quoted(name), "the daemon's answer cannot be read",
                          "Use the aaactl of the daemon's release");
        }
    }
    return profile;
}

void ApplyBindings(Client& client, const std::string& name, const Json& wanted,
                   const Json& running) {
    for (const auto& [vlan, nas_id] : running.items()) {
        if (wanted.contains(vlan)) continue;
        UnbindNasId(client, name, ParseVlan(vlan), nas_id.get<std::string>());
    }
    for (const auto& [vlan, nas_id] : wanted.items()) {
        if (running.contains(vlan) && running.at(vlan) == nas_id) continue;
        BindNasId(client, name, ParseVlan(vlan), nas_id.get<std::string>());
    }
}

}  // namespace

NasIdProfile NeedNasIdProfile(Client& client, const std::string& name) {
    const Reply reply = client.Read(DOM_EncodeNasIdProfile(name.c_str()), DOM_OP_GET);
    if (reply.data) return Complete(client, reply.data.get());
    if (reply.refusal == AAAD_ERR_NO_OBJECT) throw NoSuchProfile(name, reply.refusal);
    throw Refused(Quoted(name), reply.refusal);
}

Json ReadNasIdProfiles(Client& client) {
    Json profiles = Json::object();
    std::string name;
    for (;;) {
        const Reply reply = client.Read(DOM_EncodeNasIdProfile(name.c_str()), DOM_OP_GET_NEXT);
        if (!reply.data) {
            if (reply.refusal != DOM_WALK_NONE) throw Refused("NAS-ID profiles", reply.refusal);
            return profiles;
        }
        NasIdProfile profile = Complete(client, reply.data.get());
        // Names ascend, so a walk ends whatever other clients change meanwhile.
        if (profile.name <= name) {
            throw Failure(kExitRefused, "NAS-ID profiles", "the daemon's answer cannot be read",
                          "Use the aaactl of the daemon's release");
        }
        name = profile.name;
        profiles[name] = std::move(profile.bindings);
    }
}

void CheckNasIdName(const std::string& what, const std::string& name) {
    if (name.empty()) RefuseUsage(what, "it is empty", "Give a name of 1 to 31 characters");
    CheckFits(what, name, DOM_NASID_NAME_SIZE);
}

uint16_t ParseVlan(const std::string& word) {
    return static_cast<uint16_t>(ParseNumber("VLAN", word, UINT16_MAX));
}

void CheckNasIdProfiles(const Json& document) {
    if (!document.is_object()) {
        RefuseUsage("setting \"nas_id_profiles\"", "it is no object", "Mend the file");
    }
    for (const auto& [name, bindings] : document.items()) {
        CheckNasIdName("NAS-ID profile", name);
        for (const auto& [other, unused] : document.items()) {
            if (name != other && strcasecmp(name.c_str(), other.c_str()) == 0) {
                RefuseUsage(Quoted(name), "the file holds it twice (case does not count)",
                            "Remove one of its entries");
            }
        }
        if (!bindings.is_object()) RefuseUsage(Quoted(name), "it is no object", "Mend the file");
        for (const auto& [vlan, nas_id] : bindings.items()) {
            if (std::to_string(ParseVlan(vlan)) != vlan) {
                RefuseUsage(Quoted(name), "VLAN \"" + vlan + "\" is no plain decimal number",
                            "Mend the file");
            }
            if (!nas_id.is_string()) RefuseUsage(Quoted(name), "a NAS-ID is no text", "Mend it");
            CheckNasIdName("NAS-ID", nas_id.get<std::string>());
        }
    }
}

void BindNasId(Client& client, const std::string& profile, uint16_t vlan,
               const std::string& nas_id) {
    const uint32_t result =
        client.Change(DOM_EncodeNasidBindVlanId(profile.c_str(), nas_id.c_str(), vlan), DOM_OP_SET);
    if (result == DOM_NASID_OK || result == DOM_NASID_UNCHANGED) return;
    if (result == DOM_NASID_FAILED) throw NoSuchProfile(profile, result);
    throw Refused(Quoted(profile), result);
}

void UnbindNasId(Client& client, const std::string& profile, uint16_t vlan,
                 const std::string& nas_id) {
    const uint32_t result = client.Change(
        DOM_EncodeNasidBindVlanId(profile.c_str(), nas_id.c_str(), vlan), DOM_OP_DELETE);
    if (result == DOM_NASID_OK) return;
    if (result == DOM_NASID_FAILED) throw NoSuchProfile(profile, result);
    if (result == DOM_NASID_NOT_FOUND) {
        throw Failure(kExitRefused, Quoted(profile),
                      "VLAN " + std::to_string(vlan) + " is not bound to \"" + nas_id + "\"",
                      "See aaactl nas-id profile show " + profile, result);
    }
    throw Refused(Quoted(profile), result);
}

void CreateNasIdProfile(Client& client, const std::string& name) {
    const uint32_t result = client.Change(DOM_EncodeNasIdProfile(name.c_str()), DOM_OP_SET);
    if (result != DOM_NASID_OK && result != DOM_NASID_UNCHANGED)
        throw Refused(Quoted(name), result);
}

void DeleteNasIdProfile(Client& client, const std::string& name) {
    const uint32_t result = client.Change(DOM_EncodeNasIdProfile(name.c_str()), DOM_OP_DELETE);
    if (result == DOM_NASID_NOT_FOUND) throw NoSuchProfile(name, result);
    if (result != DOM_NASID_OK) throw Refused(Quoted(name), result);
}

void ApplyNasIdProfiles(Client& client, const Json& wanted, bool replace) {
    const Json running = ReadNasIdProfiles(client);
    const auto find = [](const Json& profiles, const std::string& name) {
        for (const auto& [other, bindings] : profiles.items()) {
            if (strcasecmp(other.c_str(), name.c_str()) == 0) return bindings;
        }
        return Json();
    };
    for (const auto& [name, bindings] : wanted.items()) {
        Json current = find(running, name);
        if (current.is_null()) {
            CreateNasIdProfile(client, name);
            current = Json::object();
        }
        ApplyBindings(client, name, bindings, current);
    }
    if (!replace) return;
    for (const auto& [name, bindings] : running.items()) {
        if (find(wanted, name).is_null()) DeleteNasIdProfile(client, name);
    }
}

}  // namespace aaactl
