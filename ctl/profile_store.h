// The two profile stores of the daemon, authorization and critical: their messages and words.
#pragma once

#include <aaadom/profile.h>

#include <optional>
#include <string>

#include "client.h"

namespace aaactl {

struct Segment {
    uint32_t id = 0;     // 0 = none
    uint16_t value = 0;  // critical profiles only
    std::string name;
};

/// The segment of one VPN, or the default segment of a profile when `vpn` is empty.
struct ProfileEntry {
    std::string profile;
    std::string vpn;
    Segment segment;
};

/// What differs between the stores.
struct ProfileStore {
    const char* word;    // on the command line
    const char* member;  // of a configuration document
    bool has_value;
    uint32_t exists;
    uint32_t full;
    uint32_t missing;
    uint32_t vpns_full;
    TLV_MSG* (*encode_profile)(const char* profile);
    TLV_MSG* (*encode_vpn_key)(const char* profile, const char* vpn);
    TLV_MSG* (*encode_entry)(const ProfileEntry& entry);
    bool (*decode_entry)(TLV_MSG* message, ProfileEntry& entry);
    /// The daemon's orders of walks.
    bool (*profile_before)(const std::string& a, const std::string& b);
    bool (*vpn_before)(const std::string& a, const std::string& b);
};
extern const ProfileStore kAuthorProfiles;
extern const ProfileStore kCriticalProfiles;

/// `author profile "NAME"`.
std::string ProfileObject(const ProfileStore& store, const std::string& name);
Failure NoSuchProfile(const ProfileStore& store, const std::string& name, uint32_t code);

/// The default segment under the profile's stored name, found in any letter case.
std::optional<ProfileEntry> FindProfile(Client& client, const ProfileStore& store,
                                        const std::string& name);
/// The same; throws when there is no such profile.
ProfileEntry NeedProfile(Client& client, const ProfileStore& store, const std::string& name);
std::optional<ProfileEntry> FindVpn(Client& client, const ProfileStore& store,
                                    const std::string& profile, const std::string& vpn);
/// The profile behind a name, the first one behind an empty name; none at the end.
std::optional<ProfileEntry> NextProfile(Client& client, const ProfileStore& store,
                                        const std::string& name);
/// The VPN behind a key in the profile or in those behind it; none at the end.
std::optional<ProfileEntry> NextVpn(Client& client, const ProfileStore& store,
                                    const ProfileEntry& key);

void CreateProfile(Client& client, const ProfileStore& store, const std::string& name);
void DeleteProfile(Client& client, const ProfileStore& store, const std::string& name);
void SetSegment(Client& client, const ProfileStore& store, const ProfileEntry& entry);
/// Only the names of `entry` count.
void UnsetSegment(Client& client, const ProfileStore& store, ProfileEntry entry);

}  // namespace aaactl
