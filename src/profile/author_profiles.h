// What is particular to authorization profiles.
#pragma once

#include <aaadom/db_layout.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>
#include <aaadom/settings.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/role.h"
#include "base/text.h"

// Inside the library only.
extern "C" {
void dom_author_DelProfile(AuthorProfile* profile) noexcept;
AuthorVpn* dom_author_FindVpnInfo(const char* vpn_name, AuthorProfile* profile) noexcept;
void dom_author_DelVpn(const char* vpn_name, AuthorProfile* profile) noexcept;
uint32_t dom_author_GetHashKey(const void* padded_name) noexcept;
void dom_author_FreeAllVpnNode(AuthorVpn* vpn) noexcept;
void dom_author_FreeAllProfileNode(AuthorProfile* profile) noexcept;
}

namespace aaadom {

struct AuthorProfiles {
    using Head = AuthorProfileInfo;
    using Profile = AuthorProfile;
    using Vpn = AuthorVpn;
    using VpnList = AuthorVpnLink;  // the sentinel
    using Segment = AuthorSegment;
    using Message = AuthorProfileMsg;

    // No lock: each role changes its own profiles from its own thread.
    static inline constinit PerRole<Head> stores;

    static constexpr uint32_t kStoreFull = DOM_AUTHOR_STORE_FULL;
    static constexpr uint32_t kVpnsFull = DOM_AUTHOR_VPN_FULL;
    static constexpr uint32_t kExists = DOM_AUTHOR_PROFILE_EXISTS;
    static constexpr uint32_t kMissing = DOM_AUTHOR_PROFILE_NOT_EXIST;

    static constexpr uint32_t kProfileChange = DOM_DB_AUTHOR_PROFILE;
    static constexpr uint32_t kVpnChange = DOM_DB_AUTHOR_ENTRY;
    static constexpr uint32_t kSegmentChange = DOM_DB_AUTHOR_SEGMENT;

    // Byte order, although look-ups ignore case: management clients walk the profiles in it.
    static bool ProfileGoesBefore(const char* a, const char* b) noexcept {
        return strcmp(a, b) < 0;
    }
    static bool VpnGoesBefore(const char* a, const char* b) noexcept { return strcmp(a, b) < 0; }

    static void CountDown(uint32_t& count) noexcept {
        if (count != 0) --count;
    }

    static constexpr auto kHashKey = dom_author_GetHashKey;
    static Vpn* OfHashNode(HASH_NODE* node) noexcept {
        return reinterpret_cast<Vpn*>(reinterpret_cast<char*>(node) - offsetof(Vpn, hash));
    }
    static void FreeHashNode(HASH_NODE* node) { DOM_author_DestroyHashNode(node); }

    static VpnList& ListOf(Profile& profile) noexcept { return profile.vpn_list; }
    static void InitList(VpnList& list) noexcept { list.next = list.prev = &list; }
    static Vpn* First(const VpnList& list) noexcept { return AfterLink(list, list); }
    static Vpn* Next(const VpnList& list, const Vpn& vpn) noexcept {
        return AfterLink(list, vpn.list);
    }
    /// Puts `vpn` before `next`, null = at the end.
    static void Link(VpnList& list, Vpn& vpn, Vpn* next) noexcept {
        if (list.next == nullptr) InitList(list);
        AuthorVpnLink& after = next == nullptr ? list : next->list;
        vpn.list = {&after, after.prev};
        after.prev->next = &vpn.list;
        after.prev = &vpn.list;
    }
    /// Ignored for a VPN that is in no list.
    static void Unlink(Vpn& vpn) noexcept {
        if (vpn.list.next == nullptr) return;
        vpn.list.next->prev = vpn.list.prev;
        vpn.list.prev->next = vpn.list.next;
        vpn.list = {};
    }
    /// The table's destructor takes each VPN out of the list; the walk frees what no table held.
    static void FreeVpns(Profile& profile) noexcept {
        HASH_Destroy(profile.vpn_table, FreeHashNode);
        profile.vpn_table = nullptr;
        while (Vpn* vpn = First(profile.vpn_list)) dom_author_FreeAllVpnNode(vpn);
    }

    static Segment SegmentOf(const Message& msg) noexcept {
        Segment segment{};
        segment.segment_id = msg.segment_id;
        CopyField(segment.segment_name, msg.segment_name);
        return segment;
    }
    static void RecordName(DomDbUpdateReq& change, const char* profile_name) noexcept {
        CopyText(change.author_profile_name, profile_name);
    }
    static void RecordSegment(DomDbUpdateReq& change, const Segment& segment) noexcept {
        change.author_number = segment.segment_id;
        CopyField(change.author_text, segment.segment_name);
    }

    /// Into 32 bytes.
    static uint32_t DecodeName(TLV_MSG* msg, char* name) noexcept {
        return DOM_author_tlv_DecodeProfileName(msg, DOM_PROFILE_NAME_SIZE, name);
    }
    static constexpr auto kInitMessage = DOM_InitAuthorProfile;
    static constexpr auto kDecodeVpn = DOM_author_tlv_DecodeAuthorVpn;
    static constexpr auto kDecodeDefault = DOM_author_tlv_DecodeDefaultAuthor;
    static constexpr auto kEncodeProfile = DOM_author_tlv_EncodeAuthorProfile;
    static constexpr auto kEncodeVpn = DOM_author_tlv_EncodeAuthorVpnByProfile;
    static constexpr auto kEncodeDefault = DOM_author_tlv_EncodeDefaultAuthorByProfile;
    static constexpr auto kEncodeEnd = DOM_author_tlv_EncodeEndMsg;

  private:
    static Vpn* AfterLink(const VpnList& list, const AuthorVpnLink& link) noexcept {
        static_assert(offsetof(Vpn, list) == 0);
        // The links of a sentinel that nobody has initialised are null and give null.
        return link.next == &list ? nullptr : reinterpret_cast<Vpn*>(link.next);
    }
};

}  // namespace aaadom
