// Batch synchronisation of a profile store.
#pragma once

#include <platform/hash.h>

#include <cstdint>

#include "base/batch_record.h"
#include "base/role.h"
#include "profile/profile_store.h"

namespace aaadom {

template <typename Kind>
struct ProfileSync {
    using Profile = typename Kind::Profile;

    /// Each profile with its segments, in the order of the list. A peer that is told nothing of a
    /// profile would refuse its segments, so these are left out with it. What became of a message
    /// is ignored: the batch goes on.
    static void SendAll(Role role, int32_t target) noexcept {
        // The configuration thread's copy follows the working one and is never sent.
        if (target < 0 || role == Role::kConfig) return;
        const Profile* profile = Kind::stores.Of(role).first_profile;
        for (; profile != nullptr; profile = profile->next) {
            TlvPtr msg(Kind::kEncodeProfile(profile->name));
            if (!msg) continue;
            (void)SendBatchRecord(std::move(msg), target);
            SendDefault(target, profile);
            SendVpns(target, profile);
        }
    }
    static void SendDefault(int32_t target, const Profile* profile) noexcept {
        if (profile == nullptr || profile->default_segment.segment_id == 0) return;
        (void)SendBatchRecord(TlvPtr(Kind::kEncodeDefault(profile)), target);
    }
    /// Bucket by bucket, each from its head, not in name order: peers that compare batches rely on
    /// the sequence.
    static void SendVpns(int32_t target, const Profile* profile) noexcept {
        if (profile == nullptr || profile->vpn_table == nullptr) return;
        const HASH_TABLE& table = *profile->vpn_table;
        for (uint32_t bucket = 0; bucket < table.bucket_count; ++bucket) {
            for (HASH_NODE* node = table.buckets[bucket]; node != nullptr; node = node->next) {
                (void)SendBatchRecord(
                    TlvPtr(Kind::kEncodeVpn(Kind::OfHashNode(node), profile->name)), target);
            }
        }
    }
};

}  // namespace aaadom
