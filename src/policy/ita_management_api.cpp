// The front ends' side of accounting-policy messages.
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/channel.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>

#include "base/message.h"

using namespace aaadom;

namespace {

/// What goes out for the operation of a caller. Callers mean add or set by a non-zero operation,
/// which goes out as 1, elsewhere the number of a deletion: daemons know these codes and turn their
/// operation, so turning it here as well would invert every request.
constexpr uint32_t OperationToSend(uint32_t operation) noexcept {
    return operation != 0 ? 1 : 0;
}

/// Tells whether a reply came, not what it says.
uint32_t SendRequest(uint32_t operation, TLV_MSG* request) noexcept {
    const TlvPtr owned(request);
    if (!owned) return DOM_ERR_FAILED;
    return DOM_lipc_CfgMsgProc(owned.get(), OperationToSend(operation), nullptr);
}

}  // namespace

extern "C" {

uint32_t DOM_ita_mor_SetPolicy(uint32_t operation, const char* name) noexcept {
    return SendRequest(operation, DOM_ita_tlv_EncodePolicyName(name));
}

uint32_t DOM_ita_mor_SetAcctScheme(uint32_t operation, const char* name,
                                   const MethodEntry methods[DOM_METHODS]) noexcept {
    return SendRequest(operation, DOM_ita_tlv_EncodeAcctScheme(name, methods));
}

uint32_t DOM_ita_mor_SetAcctTogether(uint32_t operation, const char* name) noexcept {
    return SendRequest(operation, DOM_ita_tlv_EncodeAcctTogether(name));
}

uint32_t DOM_ita_mor_SetTrafLevel(uint32_t operation, const char* name, uint32_t level_id,
                                  uint32_t level_value, uint32_t flags, uint32_t first_pair_a,
                                  uint32_t first_pair_b, uint32_t second_pair_a,
                                  uint32_t second_pair_b) noexcept {
    return SendRequest(operation,
                       DOM_ita_tlv_EncodeAcctLevel(name, level_id, level_value, flags, first_pair_a,
                                                   first_pair_b, second_pair_a, second_pair_b));
}

uint32_t DOM_ita_mor_SetTrafSeprate(uint32_t operation, const char* name) noexcept {
    return SendRequest(operation, DOM_ita_tlv_EncodeTrafSeprate(name));
}

uint32_t DOM_ita_mor_SetAcctTrafQuotaOut(uint32_t operation, const char* name,
                                         uint16_t state) noexcept {
    return SendRequest(operation, DOM_ita_tlv_EncodeTrafQuotaOut(name, state));
}

}  // extern "C"
