// Accounting policies on the way to a peer and from one.
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>

#include <cstdlib>
#include <utility>

#include "base/batch_record.h"
#include "base/lock.h"
#include "base/message_queue.h"
#include "base/role.h"
#include "base/text.h"
#include "policy/ita_policy.h"
#include "policy/ita_policy_message.h"
#include "policy/ita_store.h"

using namespace aaadom;

namespace {

/// Encodes the caller's policies in the order in which peers get them; ends at the first that
/// cannot be encoded.
void EncodeAll(MessageQueue& messages) noexcept {
    ExportedMutexGuard lock(ita_policies_mutex);
    const HASH_TABLE* table = DOM_GetItaPolicyGlobalVarByThr();
    if (table == nullptr) return;
    for (uint32_t bucket = 0; bucket < table->bucket_count; ++bucket) {
        for (const HASH_NODE* node = table->buckets[bucket]; node != nullptr; node = node->next) {
            const auto* policy = reinterpret_cast<const ItaPolicy*>(node);
            if (!messages.Push(TlvPtr(EncodeItaPolicy(*policy)))) return;
        }
    }
}

}  // namespace

extern "C" {

void DOM_ita_bthsyn_SendPolicys(int32_t target) noexcept {
    if (target < 0 || CurrentRole() == Role::kConfig) return;
    MessageQueue messages;
    EncodeAll(messages);
    // A peer that reads slowly must not keep others from the policies: the mutex is free by now.
    // A batch with a gap is no use to the peer, so the first failure ends it.
    while (TlvPtr msg = messages.Pop()) {
        if (SendBatchRecord(std::move(msg), target) != DOM_OK) return;
    }
}

uint32_t DOM_ita_bthsyn_RecvOnePolicy(TLV_MSG* msg, uint16_t, DomDbUpdateReq* change) noexcept {
    if (CurrentRole() == Role::kConfig) return DOM_ERR_FAILED;
    ItaPolicyPtr policy(static_cast<ItaPolicy*>(calloc(1, sizeof(ItaPolicy))));
    if (!policy) return DOM_ERR_FAILED;
    const uint32_t decoded = DOM_ita_tlv_DecodePolicy(msg, policy.get());
    if (decoded != DOM_OK) return decoded;
    char name[DOM_ITA_NAME_SIZE];
    CopyField(name, policy->name);
    DOM_ita_policy_AddPolicy(policy.release());
    DOM_ita_db_SetDbChangeInfo(name, DOM_PRESENT, change);
    return DOM_OK;
}

}  // extern "C"
