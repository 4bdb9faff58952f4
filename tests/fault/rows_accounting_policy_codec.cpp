// Rows of accounting_policy_codec.h.
#include <aaadom/accounting_policy.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>

#include <cstddef>

#include "fault/outputs.h"
#include "fault/sweep.h"
#include "golden/sample_policy.h"

namespace fault {
namespace {

constexpr char kNewPolicy[] = "silver";
constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to
constexpr uint32_t kUnset = DOM_ITA_PAIR_UNSET;
constexpr uint64_t kWrong = 2;  ///< a policy, but not the saved one

const Rows messages{
    Encodes("DOM_ita_tlv_EncodePolicy",
            [](Scene&) {
                const ItaPolicy policy = golden::SamplePolicy();
                return DOM_ita_tlv_EncodePolicy(&policy);
            }),
    Decodes("DOM_ita_tlv_DecodePolicy", "msg_022_ita_policy", Into(DOM_ita_tlv_DecodePolicy)),
    Encodes("DOM_ita_tlv_EncodePolicyName",
            [](Scene&) { return DOM_ita_tlv_EncodePolicyName(kPolicy); }),
    Decodes("DOM_ita_tlv_DecodePolicyName", "msg_023_ita_policy_name",
            Into(DOM_ita_tlv_DecodePolicyName)),
    Encodes("DOM_ita_tlv_EncodeAcctScheme",
            [](Scene&) {
                return DOM_ita_tlv_EncodeAcctScheme(kPolicy, golden::SamplePolicy().acct_scheme);
            }),
    Decodes("DOM_ita_tlv_DecodeAcctScheme", "msg_024_ita_acct_scheme",
            Into(DOM_ita_tlv_DecodeAcctScheme)),
    Encodes("DOM_ita_tlv_EncodeAcctTogether",
            [](Scene&) { return DOM_ita_tlv_EncodeAcctTogether(kPolicy); }),
    Decodes("DOM_ita_tlv_DecodeAcctTogether", "msg_025_ita_acct_together",
            Into(DOM_ita_tlv_DecodeAcctTogether)),
    Encodes("DOM_ita_tlv_EncodeAcctLevel",
            [](Scene&) { return DOM_ita_tlv_EncodeAcctLevel(kPolicy, 3, 30, 3, 31, 32, 33, 34); }),
    Decodes("DOM_ita_tlv_DecodeAcctLevel", "msg_026_ita_acct_level",
            Into(DOM_ita_tlv_DecodeAcctLevel)),
    Encodes("DOM_ita_tlv_EncodeTrafSeprate",
            [](Scene&) { return DOM_ita_tlv_EncodeTrafSeprate(kPolicy); }),
    Decodes("DOM_ita_ita_DecodeTrafSeprate", "msg_027_ita_traf_seprate",
            Into(DOM_ita_ita_DecodeTrafSeprate)),
    Encodes("DOM_ita_tlv_EncodeTrafQuotaOut",
            [](Scene&) { return DOM_ita_tlv_EncodeTrafQuotaOut(kPolicy, 1); }),
    Decodes("DOM_ita_tlv_DecodeTrafQuotaOut", "msg_028_ita_traf_quota_out",
            Into(DOM_ita_tlv_DecodeTrafQuotaOut)),
};

std::string BytesBehindLinks(const ItaPolicy& policy) {
    return BytesOf(policy).substr(offsetof(ItaPolicy, name));
}

/// The policy of that name as it is saved.
Outcome Load(Scene& scene, const char* name) {
    ItaPolicy* policy = DOM_ita_db_GetMemPolicyFromDBByName(scene.config, name);
    if (policy == nullptr) return kNothing;
    const Outcome outcome(kSomething, BytesBehindLinks(*policy));
    DOM_ita_policy_DestroyPolicy(policy);
    return outcome;
}

/// What a former release saved: another policy than the one that is saved now.
void SaveOld(Scene& scene, const char* name) {
    EXPECT_TRUE(
        golden::PutOldBlock(scene.config, name, golden::OldBlock(golden::SamplePolicy(name))));
}

const Rows database{
    Changes("DOM_ita_db_SetGlobalHandle",
            [](Scene&) { return DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE), 0; })
        .On(Saved)
        .NeverFails(),
    Saves("DOM_ita_db_SetPolicy/save", [](Scene&) { return DOM_ita_db_SetPolicy(kPolicy, 1); })
        .After([](Scene&) { (void)DOM_ita_policy_SetTogetherState(kPolicy, 1); }),
    Saves("DOM_ita_db_SetPolicy/delete", [](Scene&) { return DOM_ita_db_SetPolicy(kPolicy, 0); })
        .Good(DOM_ERR_FAILED),
    Loads("DOM_ita_db_GetMemPolicyFromDBByName", [](Scene& scene) { return Load(scene, kPolicy); })
        .Good(kSomething)
        .Fails({kNothing}),
    // A policy that cannot be written in the current form is read all the same, and migrated later.
    Saves("DOM_ita_db_GetMemPolicyFromDBByName/of a former release",
          [](Scene& scene) {
              const Outcome loaded = Load(scene, kNewPolicy);
              const bool whole =
                  loaded.outputs == BytesBehindLinks(golden::SamplePolicy(kNewPolicy));
              return loaded.result == kSomething && !whole ? kWrong : loaded.result;
          })
        .After([](Scene& scene) { SaveOld(scene, kNewPolicy); })
        .Good(kSomething)
        .Fails({kNothing, kSomething})
        .Except("database", "between writing and deleting, the policy is saved in both forms"),
    // What a crash between writing and deleting leaves, changed since.
    Loads("DOM_ita_db_GetMemPolicyFromDBByName/in both forms",
          [](Scene& scene) { return Load(scene, kPolicy); })
        .After([](Scene& scene) { SaveOld(scene, kPolicy); })
        .Good(kSomething)
        .Fails({kNothing}),
    Loads("DOM_ita_db_IsPolicyExist",
          [](Scene& scene) { return DOM_ita_db_IsPolicyExist(scene.config, kPolicy); })
        .Good(1)
        .Fails({0}),
    Reads("DOM_ita_db_SetDbChangeInfo",
          [](Scene&) -> Outcome {
              DomDbUpdateReq change{};
              DOM_ita_db_SetDbChangeInfo(kPolicy, 1, &change);
              return {0, BytesOf(change)};
          }),
};

/// Applies a golden message, which is about the policy "gold"; the change record is the output and
/// stays untouched when the call fails.
template <typename Process>
Row Applies(std::string name, std::string file, Process process) {
    return Changes(std::move(name),
                   [process](Scene& scene) -> Outcome {
                       DomDbUpdateReq change{};
                       const uint32_t result = process(scene.message, &change);
                       return {result, BytesOf(change)};
                   })
        .In(fake::kWorkingRole)
        .After([file](Scene& scene) { scene.message = scene.Golden(file); });
}

const Rows processors{
    Applies(
        "DOM_ita_cfg_ProcPolicy/create", "msg_023_ita_policy_name",
        [](TLV_MSG* msg, DomDbUpdateReq* change) { return DOM_ita_cfg_ProcPolicy(msg, 1, change); })
        .On(EmptyTables),
    Applies("DOM_ita_cfg_ProcPolicy/delete", "msg_023_ita_policy_name",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_cfg_ProcPolicy(msg, 0, change);
            }),
    Applies("DOM_ita_cfg_ProcAcctScheme", "msg_024_ita_acct_scheme",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_cfg_ProcAcctScheme(msg, 1, change);
            }),
    Applies("DOM_ita_cfg_ProcAcctTogether", "msg_025_ita_acct_together",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_cfg_ProcAcctTogether(msg, 1, change);
            }),
    Applies("DOM_ita_cfg_ProcAcctLevel", "msg_026_ita_acct_level",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_cfg_ProcAcctLevel(msg, 1, change);
            }),
    Applies("DOM_ita_cfg_ProcTrafSeprate", "msg_027_ita_traf_seprate",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_cfg_ProcTrafSeprate(msg, 1, change);
            }),
    Applies("DOM_ita_cfg_ProcTrafQuotaOut", "msg_028_ita_traf_quota_out",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_cfg_ProcTrafQuotaOut(msg, change);
            }),
    Applies("DOM_ita_bthsyn_RecvOnePolicy/new policy", "msg_022_ita_policy",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_bthsyn_RecvOnePolicy(msg, 0, change);
            })
        .On(EmptyTables),
    Applies("DOM_ita_bthsyn_RecvOnePolicy/policy that exists", "msg_022_ita_policy",
            [](TLV_MSG* msg, DomDbUpdateReq* change) {
                return DOM_ita_bthsyn_RecvOnePolicy(msg, 0, change);
            }),
    Reads("DOM_ita_bthsyn_SendPolicys", [](Scene&) { return DOM_ita_bthsyn_SendPolicys(kPeer), 0; })
        .In(fake::kWorkingRole),
};

const Rows requests{
    Requests("DOM_ita_mor_SetPolicy", [](Scene&) { return DOM_ita_mor_SetPolicy(1, kPolicy); }),
    Requests("DOM_ita_mor_SetAcctScheme",
             [](Scene&) {
                 return DOM_ita_mor_SetAcctScheme(1, kPolicy, golden::SamplePolicy().acct_scheme);
             }),
    Requests("DOM_ita_mor_SetAcctTogether",
             [](Scene&) { return DOM_ita_mor_SetAcctTogether(1, kPolicy); }),
    Requests("DOM_ita_mor_SetTrafLevel",
             [](Scene&) {
                 return DOM_ita_mor_SetTrafLevel(1, kPolicy, 3, 30, 1, 31, 32, kUnset, kUnset);
             }),
    Requests("DOM_ita_mor_SetTrafSeprate",
             [](Scene&) { return DOM_ita_mor_SetTrafSeprate(1, kPolicy); }),
    Requests("DOM_ita_mor_SetAcctTrafQuotaOut",
             [](Scene&) { return DOM_ita_mor_SetAcctTrafQuotaOut(1, kPolicy, 1); }),
};

}  // namespace
}  // namespace fault
