// What is particular to critical profiles.
#pragma once

#include <aaadom/db_layout.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>
#include <aaadom/settings.h>
#include <strings.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/role.h"
#include "base/text.h"

// Inside the library only.
extern "C" {
void dom_critical_DelProfile(CriticalProfile* profile) noexcept;
CriticalVpn* dom_critical_FindVpnInfo(const char* vpn_name, CriticalProfile* profile) noexcept;
void dom_critical_DelVpn(const char* vpn_name, CriticalProfile* profile) noexcept;
uint32_t dom_critical_GetHashKey(const void* padded_name) noexcept;
}

namespace aaadom {

struct CriticalProfiles {
    using Head = CriticalProfileInfo;
    using Profile = CriticalProfile;
    using Vpn = CriticalVpn;
    using VpnList = CriticalVpn*;  // the first VPN
    using Segment = CriticalSegment;
    using Message = CriticalProfileMsg;

    // No lock: each role changes its own profiles from its own thread.
    static inline constinit PerRole<Head> stores;

    static constexpr uint32_t kStoreFull = DOM_CRITICAL_STORE_FULL;
    static constexpr uint32_t kVpnsFull = DOM_CRITICAL_VPN_FULL;
    static constexpr uint32_t kExists = DOM_CRITICAL_PROFILE_EXISTS;
    static constexpr uint32_t kMissing = DOM_CRITICAL_PROFILE_NOT_EXIST;

    static constexpr uint32_t kProfileChange = DOM_DB_CRITICAL_PROFILE;
    static constexpr uint32_t kVpnChange = DOM_DB_CRITICAL_ENTRY;
    static constexpr uint32_t kSegmentChange = DOM_DB_CRITICAL_SEGMENT;

    // Shorter names first: the order of rows whose index is a text with its length.
    static bool ProfileGoesBefore(const char* a, const char* b) noexcept {
        const size_t length_a = strlen(a), length_b = strlen(b);
        return length_a != length_b ? length_a < length_b : strcasecmp(a, b) < 0;
    }
    static bool VpnGoesBefore(const char* a, const char* b) noexcept {
        const size_t length_a = strlen(a), length_b = strlen(b);
        return length_a != length_b ? length_a < length_b : strcmp(a, b) < 0;
    }

    // Down from 0 as well: a count that does not belong to its list closes the store to additions
    // until it is initialised again, instead of hiding the fault.
    static void CountDown(uint32_t& count) noexcept { --count; }

    static constexpr auto kHashKey = dom_critical_GetHashKey;
    static Vpn* OfHashNode(HASH_NODE* node) noexcept {
        static_assert(offsetof(Vpn, hash) == 0);
        return reinterpret_cast<Vpn*>(node);
    }

    static VpnList& ListOf(Profile& profile) noexcept { return profile.first_vpn; }
    static void InitList(VpnList& list) noexcept { list = nullptr; }
    static Vpn* First(const VpnList& list) noexcept { return list; }
    static Vpn* Next(const VpnList&, const Vpn& vpn) noexcept { return vpn.next; }
    /// Puts `vpn` before `next`, null = at the end.
    static void Link(VpnList& list, Vpn& vpn, Vpn* next) noexcept {
        Vpn** link = &list;
        while (*link != next) link = &(*link)->next;
        vpn.next = next;
        vpn.prev_link = link;
        if (next != nullptr) next->prev_link = &vpn.next;
        *link = &vpn;
    }
    /// Ignored for a VPN that is in no list.
    static void Unlink(Vpn& vpn) noexcept {
        if (vpn.prev_link == nullptr) return;
        *vpn.prev_link = vpn.next;
        if (vpn.next != nullptr) vpn.next->prev_link = vpn.prev_link;
        vpn.next = nullptr;
        vpn.prev_link = nullptr;
    }
    /// The table frees its nodes as they are, so that the list is not followed any more.
    static void FreeVpns(Profile& profile) noexcept {
        HASH_Destroy(profile.vpn_table, [](HASH_NODE* node) { free(node); });
        profile.vpn_table = nullptr;
        profile.first_vpn = nullptr;
    }

    static Segment SegmentOf(const Message& msg) noexcept {
        Segment segment{};
        segment.segment_id = msg.segment_id;
        segment.value16 = msg.value16;
        CopyField(segment.segment_name, msg.segment_name);
        return segment;
    }
    static void RecordName(DomDbUpdateReq& change, const char* profile_name) noexcept {
        CopyText(change.critical_profile_name, profile_name);
    }
    static void RecordSegment(DomDbUpdateReq& change, const Segment& segment) noexcept {
        change.critical_number = segment.segment_id;
        change.critical_number16 = segment.value16;
        CopyField(change.critical_text, segment.segment_name);
    }

    /// Into 32 bytes.
    static uint32_t DecodeName(TLV_MSG* msg, char* name) noexcept {
        return DOM_critical_tlv_DecodeProfileName(msg, name);
    }
    static constexpr auto kInitMessage = DOM_InitCriticalProfile;
    static constexpr auto kDecodeVpn = DOM_critical_tlv_DecodeCriticalVpn;
    static constexpr auto kDecodeDefault = DOM_critical_tlv_DecodeDefaultCritical;
    static constexpr auto kEncodeProfile = DOM_clitical_tlv_EncodeCriticalProfile;
    static constexpr auto kEncodeVpn = DOM_critical_tlv_EncodeCriticalVpnByProfile;
    static constexpr auto kEncodeDefault = DOM_critical_tlv_EncodeDefaultCriticalByProfile;
    static constexpr auto kEncodeEnd = DOM_critical_tlv_EncodeEndMsg;
};

}  // namespace aaadom
