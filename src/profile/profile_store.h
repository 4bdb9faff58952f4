// Stores of named profiles, one a thread role: their heads, nodes and life cycle. Authorization and
// critical profiles are the same design with different segments.
#pragma once

#include <aaadom/profile.h>
#include <platform/hash.h>

#include <cstdint>
#include <cstdlib>

#include "base/role.h"

namespace aaadom {

constexpr uint32_t kProfileNameSize = 32;

struct AuthorSegment {
    uint32_t segment_id;  // 0 = none
    char segment_name[kProfileNameSize];
};

struct CriticalSegment {
    uint32_t segment_id;  // 0 = none
    uint16_t value16;
    char segment_name[kProfileNameSize];
};

/// Segment of one VPN. The bucket links stand first, so that the hash table's node is the node.
template <typename Segment>
struct ProfileVpn {
    HASH_NODE hash_links;
    ProfileVpn* next;
    ProfileVpn* prev;
    char name[kProfileNameSize];  // zero-padded: the hash covers all 32 bytes
    Segment segment;
};

template <typename Profile, typename Segment>
struct ProfileNode {
    Profile* next;
    Profile** prev_link;    // the pointer that points at this node
    HASH_TABLE* vpn_table;  // null until the first VPN; owns the VPN nodes
    ProfileVpn<Segment>* first_vpn;
    char name[kProfileNameSize];
    uint32_t vpn_count;
    Segment default_segment;
};

inline void FreeVpnNode(HASH_NODE* node) {
    free(node);
}

template <typename Head>
Head* InitProfiles(Head& head) noexcept {
    head = Head{};
    return &head;
}

template <typename Head>
void FiniProfiles(Head& head) noexcept {
    while (auto* profile = head.first_profile) {
        head.first_profile = profile->next;
        if (profile->vpn_table != nullptr) HASH_Destroy(profile->vpn_table, FreeVpnNode);
        free(profile);
    }
    head = Head{};
}

}  // namespace aaadom

struct AuthorProfile final : aaadom::ProfileNode<AuthorProfile, aaadom::AuthorSegment> {};
struct CriticalProfile final : aaadom::ProfileNode<CriticalProfile, aaadom::CriticalSegment> {};
