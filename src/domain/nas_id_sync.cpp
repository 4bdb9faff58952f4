#include "domain/nas_id_sync.h"

#include <aaadom/nas_id_codec.h>

#include <utility>

#include "base/batch_record.h"
#include "base/message.h"
#include "base/message_queue.h"
#include "domain/nas_id_binding.h"
#include "domain/nas_id_profile.h"

namespace aaadom {
namespace {

/// Calls `visit(const HASH_NODE&)` bucket by bucket, each bucket from its head: the order in which
/// peers get a batch.
template <typename Visit>
void ForEachNode(const HASH_TABLE* table, Visit&& visit) noexcept {
    if (table == nullptr) return;
    for (uint32_t bucket = 0; bucket < table->bucket_count; ++bucket) {
        for (const HASH_NODE* node = table->buckets[bucket]; node != nullptr; node = node->next) {
            visit(*node);
        }
    }
}

}  // namespace

void SendNasIdProfiles(Role role, int32_t fd) noexcept {
    ForEachNode(NasIdProfiles(role), [fd](const HASH_NODE& node) {
        (void)SendBatchRecord(TlvPtr(DOM_EncodeNasIdProfile(AsNasIdProfile(&node)->name)), fd);
    });
}

void SendNasIdBindings(Role role, int32_t fd) noexcept {
    MessageQueue messages;
    {
        NasIdBindTable& table = NasIdBindings(role);
        MutexGuard lock(table.mutex);
        ForEachNode(table.hash, [&messages](const HASH_NODE& node) {
            const NasIdBinding* binding = AsNasIdBinding(&node);
            // A message for which there is no memory is left out.
            (void)messages.Push(TlvPtr(DOM_EncodeNasidBindVlanId(
                binding->profile_name, binding->nas_id, binding->vlan_id)));
        });
    }
    // A peer that reads slowly must not keep others from the table: the mutex is free by now.
    while (TlvPtr msg = messages.Pop()) (void)SendBatchRecord(std::move(msg), fd);
}

}  // namespace aaadom
