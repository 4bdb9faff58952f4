// Accounting-policy messages applied to the store of the working role, the only one that has
// accounting policies.
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>

#include "base/role.h"

using namespace aaadom;

namespace {

constexpr uint16_t kStateOn = 1;
constexpr uint16_t kStateOff = 0;

bool IsRefusedHere() noexcept {
    return CurrentRole() == Role::kConfig;
}

/// Whatever becomes of a change, the policy is there to be saved: only code 23 removes one.
void RecordModified(const char* name, DomDbUpdateReq* change) noexcept {
    DOM_ita_db_SetDbChangeInfo(name, DOM_PRESENT, change);
}

/// A message that carries the name alone and says by its operation what the state becomes.
uint32_t SwitchState(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change,
                     uint32_t (*decode)(TLV_MSG* msg, uint32_t capacity, char* name),
                     uint32_t (*set)(const char* name, uint16_t state)) noexcept {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char name[DOM_ITA_NAME_SIZE] = {};
    if (decode(msg, sizeof name, name) != DOM_OK) return DOM_ERR_FAILED;
    RecordModified(name, change);
    return set(name, operation == DOM_PRESENT ? kStateOn : kStateOff);
}

}  // namespace

extern "C" {

uint32_t DOM_ita_cfg_ProcPolicy(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change) noexcept {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char name[DOM_ITA_NAME_SIZE] = {};
    if (DOM_ita_tlv_DecodePolicyName(msg, sizeof name, name) != DOM_OK) return DOM_ERR_FAILED;
    DOM_ita_db_SetDbChangeInfo(name, operation, change);
    return operation == DOM_PRESENT ? DOM_ita_policy_Create(name) : DOM_ita_policy_Delete(name);
}

uint32_t DOM_ita_cfg_ProcAcctScheme(TLV_MSG* msg, uint16_t operation,
                                    DomDbUpdateReq* change) noexcept {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char name[DOM_ITA_NAME_SIZE] = {};
    MethodEntry methods[DOM_METHODS];
    const uint32_t decoded = DOM_ita_tlv_DecodeAcctScheme(msg, sizeof name, name, methods);
    // Recorded also when the methods cannot be read: appliers report the policy that a refused
    // message was about.
    RecordModified(name, change);
    if (decoded != DOM_OK) return DOM_ERR_FAILED;
    return operation == DOM_PRESENT ? DOM_ita_policy_SetAcctScheme(name, methods)
                                    : DOM_ita_policy_UnSetAcctScheme(name);
}

uint32_t DOM_ita_cfg_ProcAcctTogether(TLV_MSG* msg, uint16_t operation,
                                      DomDbUpdateReq* change) noexcept {
    return SwitchState(msg, operation, change, DOM_ita_tlv_DecodeAcctTogether,
                       DOM_ita_policy_SetTogetherState);
}

uint32_t DOM_ita_cfg_ProcAcctLevel(TLV_MSG* msg, uint16_t operation,
                                   DomDbUpdateReq* change) noexcept {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char name[DOM_ITA_NAME_SIZE] = {};
    ItaAcctLevel level;
    uint32_t flags;
    if (DOM_ita_tlv_DecodeAcctLevel(msg, sizeof name, name, &level, &flags) != DOM_OK)
        return DOM_ERR_FAILED;
    RecordModified(name, change);
    if (operation == DOM_PRESENT) {
        return DOM_ita_policy_SetAcctLevel(name, level.level_id, level.level_value,
                                           level.first_pair[0], level.first_pair[1],
                                           level.second_pair[0], level.second_pair[1], flags);
    }
    return level.level_id != 0 ? DOM_ita_policy_UnSetOneAcctLevel(name, level.level_id)
                               : DOM_ita_policy_UnSetAllAcctLevel(name);
}

uint32_t DOM_ita_cfg_ProcTrafSeprate(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) noexcept {
    return SwitchState(msg, operation, change, DOM_ita_ita_DecodeTrafSeprate,
                       DOM_ita_policy_SetSeprateState);
}

uint32_t DOM_ita_cfg_ProcTrafQuotaOut(TLV_MSG* msg, DomDbUpdateReq* change) noexcept {
    if (IsRefusedHere()) return DOM_ERR_FAILED;
    char name[DOM_ITA_NAME_SIZE] = {};
    uint16_t state;
    if (DOM_ita_tlv_DecodeTrafQuotaOut(msg, sizeof name, name, &state) != DOM_OK)
        return DOM_ERR_FAILED;
    RecordModified(name, change);
    return DOM_ita_policy_SetQuotaState(name, state);
}

}  // extern "C"
