// NAS-ID profiles with their bindings: read, checked, brought to what a document holds.
#pragma once

#include <string>

#include "client.h"
#include "output.h"

namespace aaactl {

struct NasIdProfile {
    std::string name;  // in the daemon's spelling
    Json bindings;     // {"VLAN": "NAS-ID"}, ascending by VLAN
};

/// The profile in any letter case; throws when there is none.
NasIdProfile NeedNasIdProfile(Client& client, const std::string& name);
/// All profiles, ascending by name: {"NAME": {"VLAN": "NAS-ID"}}.
Json ReadNasIdProfiles(Client& client);

/// Refuses a name or a NAS-ID that the daemon would not take.
void CheckNasIdName(const std::string& what, const std::string& name);
uint16_t ParseVlan(const std::string& word);
/// Refuses a document that ReadNasIdProfiles could not have made.
void CheckNasIdProfiles(const Json& document);

void BindNasId(Client& client, const std::string& profile, uint16_t vlan,
               const std::string& nas_id);
void UnbindNasId(Client& client, const std::string& profile, uint16_t vlan,
                 const std::string& nas_id);
void CreateNasIdProfile(Client& client, const std::string& name);
void DeleteNasIdProfile(Client& client, const std::string& name);

/// Gives every profile of `wanted` exactly its bindings. Profiles that `wanted` lacks stay, or go
/// when `replace` is set.
void ApplyNasIdProfiles(Client& client, const Json& wanted, bool replace);

}  // namespace aaactl
