#include "profiles.h"

#include <strings.h>

#include "document.h"
#include "names.h"

namespace aaactl {
namespace {

Segment SegmentFromJson(const Json& document) {
    return {DocumentNumber(document, "id", 0, UINT32_MAX),
            static_cast<uint16_t>(DocumentNumber(document, "value", 0, UINT16_MAX)),
            DocumentText(document, "name")};
}

void CheckSegment(const ProfileStore& store, const std::string& object, const Json& document) {
    DemandObject(document, object);
    if (store.has_value) {
        RefuseUnknown(document, object, {"id", "value", "name"});
    } else {
        RefuseUnknown(document, object, {"id", "name"});
    }
    const Segment segment = SegmentFromJson(document);
    if (segment.id == 0) {
        RefuseUsage(object, "its id is missing or 0", "Give an id of 1 to 4294967295");
    }
    CheckFits("segment name", segment.name, DOM_PROFILE_NAME_SIZE);
}

Json FindAnyCase(const Json& profiles, const std::string& name) {
    for (const auto& [other, profile] : profiles.items()) {
        if (strcasecmp(other.c_str(), name.c_str()) == 0) return profile;
    }
    return Json();
}

/// `running` is the profile of that name, completed like `wanted`.
void ApplyProfile(Client& client, const ProfileStore& store, const std::string& name,
                  const Json& wanted, const Json& running) {
    const Json& segment = wanted.at("segment");
    if (segment.is_null() && !running.at("segment").is_null()) {
        UnsetSegment(client, store, {name, "", {}});
    } else if (segment != running.at("segment")) {
        SetSegment(client, store, {name, "", SegmentFromJson(segment)});
    }
    const Json& vpns = wanted.at("vpns");
    const Json& running_vpns = running.at("vpns");
    // Deletions make room for what comes.
    for (const auto& [vpn, unused] : running_vpns.items()) {
        if (!vpns.contains(vpn)) UnsetSegment(client, store, {name, vpn, {}});
    }
    for (const auto& [vpn, entry] : vpns.items()) {
        if (running_vpns.contains(vpn) && running_vpns.at(vpn) == entry) continue;
        SetSegment(client, store, {name, vpn, SegmentFromJson(entry)});
    }
}

}  // namespace

Json SegmentToJson(const ProfileStore& store, const Segment& segment) {
    if (segment.id == 0) return nullptr;
    Json document{{"id", segment.id}};
    if (store.has_value) document["value"] = segment.value;
    document["name"] = segment.name;
    return document;
}

Json ReadProfile(Client& client, const ProfileStore& store, const ProfileEntry& profile) {
    Json document{{"segment", SegmentToJson(store, profile.segment)}, {"vpns", Json::object()}};
    ProfileEntry key{profile.profile, "", {}};
    while (const auto next = NextVpn(client, store, key)) {
        if (next->profile != profile.profile) break;
        document["vpns"][next->vpn] = SegmentToJson(store, next->segment);
        key = *next;
    }
    return document;
}

Json ReadProfiles(Client& client, const ProfileStore& store) {
    Json profiles = Json::object();
    std::string name;
    while (const auto profile = NextProfile(client, store, name)) {
        name = profile->profile;
        profiles[name] = {{"segment", SegmentToJson(store, profile->segment)},
                          {"vpns", Json::object()}};
    }
    // One walk passes through the VPNs of all profiles.
    ProfileEntry key;
    while (const auto next = NextVpn(client, store, key)) {
        if (profiles.contains(next->profile)) {
            profiles[next->profile]["vpns"][next->vpn] = SegmentToJson(store, next->segment);
        }
        key = *next;
    }
    return profiles;
}

void CheckProfileName(const std::string& what, const std::string& name) {
    if (name.empty()) RefuseUsage(what, "it is empty", "Give a name of 1 to 31 characters");
    CheckFits(what, name, DOM_PROFILE_NAME_SIZE);
}

uint32_t ParseSegmentId(const std::string& word) {
    const uint32_t id = ParseNumber("segment id", word, UINT32_MAX);
    if (id == 0) RefuseUsage("segment id 0", "0 stands for no segment", "Give a number from 1 on");
    return id;
}

void CheckProfiles(const ProfileStore& store, const Json& document) {
    DemandObject(document, "setting \"" + std::string(store.member) + "\"");
    for (const auto& [name, profile] : document.items()) {
        const std::string object = ProfileObject(store, name);
        CheckProfileName(std::string(store.word) + " profile", name);
        for (const auto& [other, unused] : document.items()) {
            if (name != other && strcasecmp(name.c_str(), other.c_str()) == 0) {
                RefuseUsage(object, "the file holds it twice (case does not count)",
                            "Remove one of its entries");
            }
        }
        DemandObject(profile, object);
        RefuseUnknown(profile, object, {"segment", "vpns"});
        if (profile.contains("segment") && !profile.at("segment").is_null()) {
            CheckSegment(store, object + " segment", profile.at("segment"));
        }
        const Json vpns = DocumentObject(profile, "vpns");
        if (vpns.size() > DOM_PROFILE_VPN_MAX) {
            RefuseUsage(object, "the file gives it " + std::to_string(vpns.size()) + " VPNs",
                        "A profile has at most " + std::to_string(DOM_PROFILE_VPN_MAX));
        }
        for (const auto& [vpn, segment] : vpns.items()) {
            CheckProfileName("VPN", vpn);
            CheckSegment(store, object + " VPN \"" + vpn + "\"", segment);
        }
    }
}

Json CompletedProfiles(const ProfileStore& store, const Json& document) {
    Json profiles = Json::object();
    for (const auto& [name, profile] : document.items()) {
        const Json segment = profile.value("segment", Json());
        Json complete{
            {"segment",
             segment.is_null() ? segment : SegmentToJson(store, SegmentFromJson(segment))},
            {"vpns", Json::object()}};
        const Json vpns = DocumentObject(profile, "vpns");
        for (const auto& [vpn, entry] : vpns.items()) {
            complete["vpns"][vpn] = SegmentToJson(store, SegmentFromJson(entry));
        }
        profiles[name] = complete;
    }
    return profiles;
}

void CheckProfileRoom(Client& client, const ProfileStore& store, const Json& wanted, bool replace) {
    size_t count = wanted.size();
    std::string name;
    while (!replace) {
        const auto profile = NextProfile(client, store, name);
        if (!profile) break;
        name = profile->profile;
        if (FindAnyCase(wanted, name).is_null()) ++count;
    }
    if (count <= DOM_PROFILE_MAX) return;
    throw Failure(kExitRefused, std::string(store.word) + " profiles",
                  "with those of the file there would be " + std::to_string(count) +
                      ", and the daemon takes " + std::to_string(DOM_PROFILE_MAX),
                  "Delete profiles that are no longer used, or give --replace");
}

void ApplyProfiles(Client& client, const ProfileStore& store, const Json& wanted, bool replace) {
    const Json running = ReadProfiles(client, store);
    // Deletions make room for what comes.
    for (const auto& [name, unused] : running.items()) {
        if (replace && FindAnyCase(wanted, name).is_null()) DeleteProfile(client, store, name);
    }
    const Json complete = CompletedProfiles(store, wanted);
    for (const auto& [name, profile] : complete.items()) {
        Json current = FindAnyCase(running, name);
        if (current.is_null()) {
            CreateProfile(client, store, name);
            current = {{"segment", nullptr}, {"vpns", Json::object()}};
        }
        ApplyProfile(client, store, name, profile, current);
    }
}

}  // namespace aaactl
