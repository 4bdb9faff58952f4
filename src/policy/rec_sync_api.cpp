#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include "base/batch_record.h"

using namespace aaadom;

extern "C" {

// Both roles send, and to any target: routing is the batch channel's.
uint32_t DOM_Rec_tlv_SendBthPolicy(uint32_t type, int32_t target) noexcept {
    RecPolicy policy;
    if (DOM_Rec_GetPolicy(type, &policy) != DOM_OK) return DOM_OK;
    return SendBatchRecord(TlvPtr(DOM_Rec_tlv_EncodePolicy(&policy)), target);
}

uint32_t DOM_Rec_bthsyn_SendPolicys(int32_t target) noexcept {
    return DOM_Rec_tlv_SendBthPolicy(DOM_REC_POLICY_CONNECTION, target);
}

}  // extern "C"
