// The store of named profiles, written once. `Kind` is AuthorProfiles or CriticalProfiles; every
// difference between the two stands there.
#pragma once

#include <aaadom/profile.h>
#include <platform/hash.h>
#include <strings.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/text.h"
#include "profile/vpn_key.h"

namespace aaadom {

inline constexpr uint32_t kProfileOk = 0;
inline constexpr uint32_t kProfileFailed = 1;

template <typename Kind>
struct ProfileStore {
    using Head = typename Kind::Head;
    using Profile = typename Kind::Profile;
    using Vpn = typename Kind::Vpn;
    using VpnList = typename Kind::VpnList;
    using Segment = typename Kind::Segment;

    /// The calling role's.
    static Head& Mine() noexcept { return Kind::stores.Mine(); }

    /// Frees nothing.
    static Head* Init(Head& head) noexcept {
        head = Head{};
        return &head;
    }
    static void Fini(Head& head) noexcept {
        while (Profile* profile = head.first_profile) {
            head.first_profile = profile->next;
            Kind::FreeVpns(*profile);
            free(profile);
        }
        head = Head{};
    }

    /// In any letter case, not cut: a name that was too long to be kept finds nothing.
    static Profile* Find(const Head& head, const char* name) noexcept {
        if (name == nullptr) return nullptr;
        Profile* profile = head.first_profile;
        while (profile != nullptr && strcasecmp(profile->name, name) != 0) profile = profile->next;
        return profile;
    }
    /// The first profile before which `name` would go, or null.
    static Profile* FindBigger(Profile* first, const char* name) noexcept {
        if (name == nullptr) return nullptr;
        while (first != nullptr && !Kind::ProfileGoesBefore(name, first->name)) first = first->next;
        return first;
    }
    /// Does not look for one of the same name.
    static uint32_t Add(Head& head, const char* name) noexcept {
        if (head.profile_count >= DOM_PROFILE_MAX) return Kind::kStoreFull;
        if (name == nullptr) return kProfileFailed;
        auto* profile = static_cast<Profile*>(calloc(1, sizeof(Profile)));
        if (profile == nullptr) return kProfileFailed;
        Kind::InitList(Kind::ListOf(*profile));
        CopyText(profile->name, name);
        Profile** link = &head.first_profile;
        while (*link != nullptr && !Kind::ProfileGoesBefore(profile->name, (*link)->name)) {
            link = &(*link)->next;
        }
        profile->next = *link;
        profile->prev_link = link;
        if (profile->next != nullptr) profile->next->prev_link = &profile->next;
        *link = profile;
        ++head.profile_count;
        return kProfileOk;
    }
    /// Takes the profile out of its list and frees it with its VPNs.
    static void Free(Profile* profile) noexcept {
        // A profile from before the last Init is in no list, although its link points at the head.
        if (profile->prev_link != nullptr && *profile->prev_link == profile) {
            *profile->prev_link = profile->next;
        }
        if (profile->next != nullptr) profile->next->prev_link = profile->prev_link;
        Kind::FreeVpns(*profile);
        free(profile);
    }
    static void Delete(Head& head, Profile* profile) noexcept {
        if (profile == nullptr) return;
        Free(profile);
        Kind::CountDown(head.profile_count);
    }

    static Vpn* FindVpn(Profile* profile, const char* vpn_name) noexcept {
        if (profile == nullptr || profile->vpn_table == nullptr || vpn_name == nullptr) {
            return nullptr;
        }
        const VpnKey key(vpn_name);
        HASH_NODE* node = HASH_Find(profile->vpn_table, key.name, CompareVpn);
        return node == nullptr ? nullptr : Kind::OfHashNode(node);
    }
    /// The first VPN before which `vpn_name` would go, or null.
    static Vpn* FindBiggerVpn(const VpnList& list, const char* vpn_name) noexcept {
        if (vpn_name == nullptr) return nullptr;
        Vpn* vpn = Kind::First(list);
        while (vpn != nullptr && !Kind::VpnGoesBefore(vpn_name, vpn->vpn_name)) {
            vpn = Kind::Next(list, *vpn);
        }
        return vpn;
    }
    /// Adds the VPN or gives the one that exists another segment.
    static uint32_t AddVpn(Profile* profile, const char* vpn_name,
                           const Segment* segment) noexcept {
        if (profile == nullptr || vpn_name == nullptr || segment == nullptr) return kProfileFailed;
        if (Vpn* vpn = FindVpn(profile, vpn_name)) {
            vpn->segment = *segment;
            return kProfileOk;
        }
        if (profile->vpn_count >= DOM_PROFILE_VPN_MAX) return Kind::kVpnsFull;
        auto* vpn = static_cast<Vpn*>(calloc(1, sizeof(Vpn)));
        if (vpn == nullptr) return kProfileFailed;
        if (profile->vpn_table == nullptr) {
            profile->vpn_table = HASH_Create(DOM_PROFILE_VPN_BUCKETS, Kind::kHashKey);
        }
        if (profile->vpn_table == nullptr) {
            free(vpn);
            return kProfileFailed;
        }
        CopyText(vpn->vpn_name, vpn_name);
        vpn->segment = *segment;
        const uint32_t bucket = Kind::kHashKey(vpn->vpn_name);
        HASH_LinkAtHead(&profile->vpn_table->buckets[bucket], &vpn->hash);
        ++profile->vpn_count;
        VpnList& list = Kind::ListOf(*profile);
        Kind::Link(list, *vpn, FindBiggerVpn(list, vpn->vpn_name));
        return kProfileOk;
    }
    /// A VPN that does not exist is no error.
    static void DeleteVpn(Profile* profile, const char* vpn_name) noexcept {
        Vpn* vpn = FindVpn(profile, vpn_name);
        if (vpn == nullptr) return;
        FreeVpn(vpn);
        Kind::CountDown(profile->vpn_count);
    }
    /// Takes the VPN out of list and bucket and frees it.
    static void FreeVpn(Vpn* vpn) noexcept {
        Kind::Unlink(*vpn);
        HASH_Unlink(&vpn->hash);
        free(vpn);
    }

    /// The segment of the profile's VPN if it has that VPN, else its default if it has one.
    static uint32_t Query(const Head& head, const char* profile_name, const char* vpn_name,
                          Segment* segment_out) noexcept {
        if (segment_out == nullptr) return DOM_ERR_FAILED;
        Profile* profile = Find(head, profile_name);
        if (profile == nullptr) return DOM_ERR_FAILED;
        if (const Vpn* vpn = FindVpn(profile, vpn_name)) {
            // Also one without an ID: the VPN's own entry shuts the default out.
            *segment_out = vpn->segment;
            return DOM_OK;
        }
        if (profile->default_segment.segment_id == 0) return DOM_ERR_FAILED;
        *segment_out = profile->default_segment;
        return DOM_OK;
    }

  private:
    static int CompareVpn(const void* key, const HASH_NODE* node) {
        const Vpn* vpn = Kind::OfHashNode(const_cast<HASH_NODE*>(node));
        return strcmp(static_cast<const char*>(key), vpn->vpn_name) == 0 ? 0 : -1;
    }
};

}  // namespace aaadom
