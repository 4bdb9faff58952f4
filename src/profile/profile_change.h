// Configuration messages applied to a profile store.
#pragma once

#include <aaadom/types.h>

#include "profile/profile_store.h"

namespace aaadom {

template <typename Kind>
struct ProfileChange {
    using Store = ProfileStore<Kind>;
    using Head = typename Kind::Head;
    using Profile = typename Kind::Profile;
    using Vpn = typename Kind::Vpn;
    using Segment = typename Kind::Segment;
    using Message = typename Kind::Message;

    static constexpr uint16_t kAdd = 1;  // the operation that adds or sets; every other one deletes

    /// Adds or deletes a profile; `name_out` takes part in additions only.
    static uint32_t ApplyProfile(Head& head, TLV_MSG* msg, uint16_t operation, char* name_out,
                                 size_t name_size, DomDbUpdateReq* change) noexcept {
        char name[DOM_PROFILE_NAME_SIZE] = {};
        if (Kind::DecodeName(msg, name) != DOM_OK) return kProfileFailed;
        Profile* profile = Store::Find(head, name);
        if (operation == kAdd) {
            if (profile != nullptr) {
                CopyText(name_out, name_size, profile->name);
                return Kind::kExists;
            }
            const uint32_t result = Store::Add(head, name);
            // Whatever became of it: the requester gets the name back with the reason.
            CopyText(name_out, name_size, name);
            if (result != kProfileOk) return result;
        } else {
            if (profile == nullptr) return Kind::kMissing;
            CopyField(name, profile->name);
            Store::Delete(head, profile);
        }
        Record(change, Kind::kProfileChange, operation, name);
        return kProfileOk;
    }

    /// Sets or deletes the segment of one VPN.
    static uint32_t ApplyVpn(Head& head, TLV_MSG* msg, uint16_t operation,
                             DomDbUpdateReq* change) noexcept {
        Message decoded;
        Profile* profile = Decode(head, msg, operation, Kind::kDecodeVpn, decoded);
        if (profile == nullptr) return kProfileFailed;
        const Segment segment = Kind::SegmentOf(decoded);
        if (operation == kAdd) {
            const uint32_t result = Store::AddVpn(profile, decoded.vpn_name, &segment);
            if (result != kProfileOk) return result;
        } else {
            Store::DeleteVpn(profile, decoded.vpn_name);
        }
        const Vpn* vpn = Store::FindVpn(profile, decoded.vpn_name);
        RecordSegment(change, Kind::kVpnChange, operation, *profile,
                      vpn == nullptr ? decoded.vpn_name : vpn->vpn_name, segment);
        return kProfileOk;
    }

    /// Sets the default segment to what the message carries, whatever the operation: a deletion
    /// carries ID 0. The database goes by the operation instead, so that senders of deletions
    /// must not carry another ID.
    static uint32_t ApplyDefault(Head& head, TLV_MSG* msg, uint16_t operation,
                                 DomDbUpdateReq* change) noexcept {
        Message decoded;
        Profile* profile = Decode(head, msg, operation, Kind::kDecodeDefault, decoded);
        if (profile == nullptr) return kProfileFailed;
        profile->default_segment = Kind::SegmentOf(decoded);
        RecordSegment(change, Kind::kSegmentChange, operation, *profile, decoded.vpn_name,
                      profile->default_segment);
        return kProfileOk;
    }

  private:
    /// The profile that the message names, or null when the message cannot be applied.
    static Profile* Decode(const Head& head, TLV_MSG* msg, uint16_t operation,
                           uint32_t (*decode)(TLV_MSG*, Message*), Message& decoded) noexcept {
        Kind::kInitMessage(&decoded);
        if (decode(msg, &decoded) != DOM_OK) return nullptr;
        if (operation == kAdd && decoded.segment_id == 0) return nullptr;
        return Store::Find(head, decoded.profile_name);
    }

    /// The name is the stored spelling: the database's keys are made of it.
    static void Record(DomDbUpdateReq* change, uint32_t kind, uint16_t operation,
                       const char* profile_name) noexcept {
        if (change == nullptr) return;
        change->object_type = kind;
        change->operation = operation;
        Kind::RecordName(*change, profile_name);
    }
    static void RecordSegment(DomDbUpdateReq* change, uint32_t kind, uint16_t operation,
                              const Profile& profile, const char* vpn_name,
                              const Segment& segment) noexcept {
        if (change == nullptr) return;
        Record(change, kind, operation, profile.name);
        CopyText(change->entry_name, vpn_name);
        Kind::RecordSegment(*change, segment);
    }
};

}  // namespace aaadom
