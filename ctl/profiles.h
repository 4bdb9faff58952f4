// Profiles as documents: read, checked, brought to what a document holds.
#pragma once

#include "output.h"
#include "profile_store.h"

namespace aaactl {

/// {"id": 5, "name": "blue"}, for critical profiles {"id": 5, "value": 1, "name": "blue"}; null
/// for no segment.
Json SegmentToJson(const ProfileStore& store, const Segment& segment);

/// {"segment": null or a segment, "vpns": {"VPN": segment}}, the VPNs in the daemon's order.
Json ReadProfile(Client& client, const ProfileStore& store, const ProfileEntry& profile);
/// All profiles in the daemon's order: {"NAME": as ReadProfile}.
Json ReadProfiles(Client& client, const ProfileStore& store);

/// Refuses an empty name and one that the daemon would not take.
void CheckProfileName(const std::string& what, const std::string& name);
uint32_t ParseSegmentId(const std::string& word);

/// Refuses a document that ReadProfiles could not have made.
void CheckProfiles(const ProfileStore& store, const Json& document);

/// Brings profiles that leave members out to what an import would make of them.
Json CompletedProfiles(const ProfileStore& store, const Json& document);

/// Refuses when there would be more profiles than the daemon takes.
void CheckProfileRoom(Client& client, const ProfileStore& store, const Json& wanted, bool replace);
/// Gives every profile of `wanted` exactly its segments. Profiles that `wanted` lacks stay, or go
/// when `replace` is set.
void ApplyProfiles(Client& client, const ProfileStore& store, const Json& wanted, bool replace);

}  // namespace aaactl
