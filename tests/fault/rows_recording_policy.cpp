// Rows of recording_policy.h.
#include <aaadom/recording_policy.h>

#include <cstdlib>
#include <cstring>

#include "fault/outputs.h"
#include "fault/sweep.h"
#include "golden/sample_policy.h"

namespace fault {
namespace {

constexpr uint32_t kType = DOM_REC_POLICY_CONNECTION;
constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to
constexpr uint16_t kPresent = 1;

/// Another scheme than the one that stands on the stage.
const MethodEntry* Scheme() {
    static const ItaPolicy policy = golden::SamplePolicy();
    return policy.acct_scheme;
}
/// The text that `write(buffer)` leaves.
template <typename Write>
Outcome TextOf(Write&& write) {
    char text[DOM_REC_MODE_SIZE] = "";
    write(text);
    return {0, text};
}
Outcome Contents(const RecPolicy* policy) {
    if (policy == nullptr) return kNothing;
    return {kSomething, BytesOf(*policy)};
}
RecPolicy* NewPolicy() {
    const fake::Quiet quiet;
    auto* policy = static_cast<RecPolicy*>(calloc(1, sizeof(RecPolicy)));
    memcpy(policy->acct_scheme, Scheme(), sizeof policy->acct_scheme);
    return policy;
}

const Rows texts{
    Reads("DOM_Rec_GetPolicyStrByPolicyType",
          [](Scene&) {
              return TextOf([](char* text) {
                  DOM_Rec_GetPolicyStrByPolicyType(kType, DOM_REC_MODE_SIZE, text);
              });
          }),
    Reads("DOM_Rec_GetPolicyMode",
          [](Scene&) { return TextOf([](char* text) { DOM_Rec_GetPolicyMode(kType, text); }); }),
};

const Rows store{
    Changes("DOM_Rec_policy_Init", [](Scene&) { return DOM_Rec_policy_Init(); })
        .On(ServiceAlone)
        .NeverFails(),
    Changes("DOM_Rec_policy_Init/working role", [](Scene&) { return DOM_Rec_policy_Init(); })
        .On(ServiceAlone)
        .In(fake::kWorkingRole),
    Changes("DOM_Rec_policy_Fini", [](Scene&) { return DOM_Rec_policy_Fini(), 0; }).NeverFails(),
    Changes("DOM_Rec_policy_Fini/working role", [](Scene&) { return DOM_Rec_policy_Fini(), 0; })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Changes("DOM_Rec_CreatePolicy", [](Scene&) { return DOM_Rec_CreatePolicy(kType); })
        .On(EmptyTables)
        .Fails({DOM_ERR_NO_MEMORY}),
    Changes("DOM_Rec_CreatePolicy/working role", [](Scene&) { return DOM_Rec_CreatePolicy(kType); })
        .On(EmptyTables)
        .In(fake::kWorkingRole)
        .Fails({DOM_ERR_NO_MEMORY}),
    Changes("DOM_Rec_DestroyPolicy", [](Scene&) { return DOM_Rec_DestroyPolicy(kType), 0; })
        .NeverFails(),
    Changes("DOM_Rec_DestroyThrPolicy", [](Scene&) { return DOM_Rec_DestroyThrPolicy(kType), 0; })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Reads("DOM_Rec_GetPolicyByType",
          [](Scene&) { return Contents(DOM_Rec_GetPolicyByType(kType)); })
        .Good(kSomething),
    Reads("DOM_Rec_GetPolicy",
          [](Scene&) -> Outcome {
              RecPolicy policy{};
              const uint32_t result = DOM_Rec_GetPolicy(kType, &policy);
              return {result, BytesOf(policy)};
          }),
    Reads("DOM_Rec_IsPolicyExist", [](Scene&) { return DOM_Rec_IsPolicyExist(kType); }).Good(1),
    Changes("DOM_Rec_policy_SetAcctScheme",
            [](Scene&) { return DOM_Rec_policy_SetAcctScheme(kType, Scheme()); })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Changes("DOM_Rec_policy_UnSetAcctScheme",
            [](Scene&) { return DOM_Rec_policy_UnSetAcctScheme(kType); })
        .In(fake::kWorkingRole)
        .NeverFails(),
    Reads("DOM_Rec_policy_GetMethodList",
          [](Scene&) -> Outcome {
              MethodList list{};
              const uint32_t result = DOM_Rec_policy_GetMethodList(kType, &list);
              return {result, BytesOf(list)};
          }),
    Changes("DOM_Rec_SetPolicy", [](Scene&) { return DOM_Rec_SetPolicy(NewPolicy()), 0; })
        .NeverFails(),
};

const Rows messages{
    Encodes("DOM_Rec_tlv_EncodePolicy",
            [](Scene&) { return DOM_Rec_tlv_EncodePolicy(DOM_Rec_GetPolicyByType(kType)); }),
    Encodes("DOM_Rec_tlv_EncodePolicyType",
            [](Scene&) { return DOM_Rec_tlv_EncodePolicyType(kType); }),
    Decodes("DOM_Rec_tlv_DecodePolicyType", "msg_032_rec_policy_type",
            [](Scene&, TLV_MSG* msg) { return DOM_Rec_tlv_DecodePolicyType(msg); }),
    Encodes("DOM_Rec_tlv_EncodeAcctScheme",
            [](Scene&) { return DOM_Rec_tlv_EncodeAcctScheme(kType, Scheme()); }),
    Decodes("DOM_Rec_tlv_DecodeAcctScheme", "msg_033_rec_acct_scheme",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                MethodEntry methods[DOM_METHODS];
                const uint32_t type = DOM_Rec_tlv_DecodeAcctScheme(msg, sizeof methods, methods);
                return {type, BytesOf(methods)};
            })
        .Fails({DOM_ERR_FAILED}),
};

/// Applies a golden message; the change record is the output.
template <typename Process>
Row Applies(std::string name, std::string file, uint16_t operation, Process process) {
    return Changes(std::move(name),
                   [=](Scene& scene) -> Outcome {
                       DomDbUpdateReq change{};
                       const uint32_t result = process(scene.message, operation, &change);
                       return {result, BytesOf(change)};
                   })
        .After([file](Scene& scene) { scene.message = scene.Golden(file); })
        .NeverFails();
}

const Rows processors{
    Applies("DOM_Rec_PolicyProc/create", "msg_032_rec_policy_type", kPresent, DOM_Rec_PolicyProc)
        .On(EmptyTables)
        .Fails({DOM_ERR_NO_MEMORY}),
    Applies("DOM_Rec_PolicyProc/delete", "msg_032_rec_policy_type", 0, DOM_Rec_PolicyProc),
    Applies("DOM_Rec_AcctSchemeProc/set", "msg_033_rec_acct_scheme", kPresent,
            DOM_Rec_AcctSchemeProc)
        .Fails({DOM_ERR_FAILED}),
    Applies("DOM_Rec_AcctSchemeProc/unset", "msg_033_rec_acct_scheme", 0, DOM_Rec_AcctSchemeProc)
        .Fails({DOM_ERR_FAILED}),
    Applies("DOM_Rec_PolicyDataProc/new policy", "msg_031_rec_policy", kPresent,
            DOM_Rec_PolicyDataProc)
        .On(EmptyTables)
        .Fails({DOM_ERR_NO_MEMORY})
        .On(Event::kMessage, {DOM_ERR_FAILED}),
    Applies("DOM_Rec_PolicyDataProc/policy that exists", "msg_031_rec_policy", kPresent,
            DOM_Rec_PolicyDataProc)
        .Fails({DOM_ERR_FAILED}),
};

/// The saved policy that `load(handle)` gives.
template <typename Load>
Row LoadsPolicy(std::string name, Load load) {
    return Loads(std::move(name),
                 [load](Scene& scene) -> Outcome {
                     RecPolicy* policy = load(scene.config);
                     const Outcome outcome = Contents(policy);
                     free(policy);
                     return outcome;
                 })
        .Good(kSomething)
        .Fails({kNothing});
}

const Rows database{
    Changes("DOM_Rec_db_SetGlobalHandle",
            [](Scene&) { return DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE), 0; })
        .On(Saved)
        .NeverFails(),
    Saves("DOM_Rec_db_SetPolicy/save", [](Scene&) { return DOM_Rec_db_SetPolicy(kType, kPresent); })
        .After([](Scene&) { (void)DOM_Rec_policy_SetAcctScheme(kType, Scheme()); }),
    Saves("DOM_Rec_db_SetPolicy/delete", [](Scene&) { return DOM_Rec_db_SetPolicy(kType, 0); }),
    LoadsPolicy("DOM_Rec_db_GetPolicyByDBKey",
                [](DBM_HANDLE handle) {
                    char key[DOM_REC_MODE_SIZE];
                    DOM_Rec_GetPolicyMode(kType, key);
                    return DOM_Rec_db_GetPolicyByDBKey(handle, key,
                                                       static_cast<uint32_t>(strlen(key)) + 1);
                }),
    LoadsPolicy("DOM_Rec_db_GetPolicyFromDBByType",
                [](DBM_HANDLE handle) { return DOM_Rec_db_GetPolicyFromDBByType(handle, kType); }),
    Loads("DOM_Rec_PolicyIsExist",
          [](Scene& scene) { return DOM_Rec_PolicyIsExist(scene.config, kType); })
        .Good(1)
        .Fails({0}),
    Reads("DOM_Rec_db_SetDbChangeInfo",
          [](Scene&) -> Outcome {
              DomDbUpdateReq change{};
              DOM_Rec_db_SetDbChangeInfo(kType, kPresent, &change);
              return {0, BytesOf(change)};
          }),
};

const Rows batch{
    Reads("DOM_Rec_tlv_SendBthPolicy",
          [](Scene&) { return DOM_Rec_tlv_SendBthPolicy(kType, kPeer); })
        .In(fake::kWorkingRole)
        .Fails({DOM_ERR_FAILED}),
    Reads("DOM_Rec_bthsyn_SendPolicys", [](Scene&) { return DOM_Rec_bthsyn_SendPolicys(kPeer); })
        .In(fake::kWorkingRole)
        .Fails({DOM_ERR_FAILED}),
};

}  // namespace
}  // namespace fault
