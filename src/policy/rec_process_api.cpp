// Recording-policy messages applied to the store. Unlike those of accounting policies they are
// applied by both roles.
#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/recording_policy.h>
#include <aaadom/results.h>

#include "policy/rec_policy.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_Rec_PolicyProc(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change) noexcept {
    const uint32_t type = DOM_Rec_tlv_DecodePolicyType(msg);
    if (!IsRecPolicyType(type)) return DOM_ERR_FAILED;
    DOM_Rec_db_SetDbChangeInfo(type, operation, change);
    const bool exists = DOM_Rec_IsPolicyExist(type) == 1;
    if (operation == DOM_PRESENT) return exists ? DOM_ERR_EXISTS : DOM_Rec_CreatePolicy(type);
    if (!exists) return DOM_ERR_NOT_FOUND;
    DestroyRecPolicy(CurrentRole(), type);
    return DOM_OK;
}

uint32_t DOM_Rec_AcctSchemeProc(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change) noexcept {
    MethodEntry methods[DOM_METHODS];
    const uint32_t type = DOM_Rec_tlv_DecodeAcctScheme(msg, sizeof methods, methods);
    if (!IsRecPolicyType(type)) return DOM_ERR_FAILED;
    // A policy whose scheme is unset is still there and must be saved.
    DOM_Rec_db_SetDbChangeInfo(type, DOM_PRESENT, change);
    return operation == DOM_PRESENT ? DOM_Rec_policy_SetAcctScheme(type, methods)
                                    : DOM_Rec_policy_UnSetAcctScheme(type);
}

uint32_t DOM_Rec_PolicyDataProc(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change) noexcept {
    MethodEntry methods[DOM_METHODS];
    const uint32_t type = DOM_Rec_tlv_DecodeAcctScheme(msg, sizeof methods, methods);
    if (!IsRecPolicyType(type)) return DOM_ERR_FAILED;
    DOM_Rec_db_SetDbChangeInfo(type, operation, change);
    if (DOM_Rec_IsPolicyExist(type) == 0) {
        const uint32_t created = DOM_Rec_CreatePolicy(type);
        if (created != DOM_OK) return created;
    }
    return DOM_Rec_policy_SetAcctScheme(type, methods);
}

}  // extern "C"
