#include "domain/nas_id_sync.h"

#include <aaadom/nas_id_codec.h>

#include <new>
#include <utility>

#include "base/batch_record.h"
#include "base/message.h"
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

/// Messages in the order in which they came, owned until they are sent.
class MessageQueue {
  public:
    MessageQueue() = default;
    MessageQueue(const MessageQueue&) = delete;
    MessageQueue& operator=(const MessageQueue&) = delete;
    ~MessageQueue() {
        while (Pop()) {
        }
    }

    /// A message for which there is no memory is left out, like one that could not be built.
    void Push(TlvPtr msg) noexcept {
        if (!msg) return;
        auto* entry = new (std::nothrow) Entry{std::move(msg), nullptr};
        if (entry == nullptr) return;
        *end_ = entry;
        end_ = &entry->next;
    }
    /// The oldest message, or null.
    TlvPtr Pop() noexcept {
        Entry* entry = head_;
        if (entry == nullptr) return nullptr;
        head_ = entry->next;
        if (head_ == nullptr) end_ = &head_;
        TlvPtr msg = std::move(entry->msg);
        delete entry;
        return msg;
    }

  private:
    struct Entry {
        TlvPtr msg;
        Entry* next;
    };
    Entry* head_ = nullptr;
    Entry** end_ = &head_;
};

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
            messages.Push(TlvPtr(DOM_EncodeNasidBindVlanId(binding->profile_name, binding->nas_id,
                                                           binding->vlan_id)));
        });
    }
    // A peer that reads slowly must not keep others from the table: the mutex is free by now.
    while (TlvPtr msg = messages.Pop()) (void)SendBatchRecord(std::move(msg), fd);
}

}  // namespace aaadom
