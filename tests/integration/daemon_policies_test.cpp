// Accounting and recording policies through the daemon. Accounting policies live in the working
// role alone, and of the codes 23 to 27 operation 1 sets and 0 deletes.
#include <platform/aaa_tlv.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstring>

#include "daemon_process.h"
#include "golden/sample_policy.h"
#include "stopped_database.h"

using namespace daemon_test;

namespace {

using DaemonPolicies = DaemonTest;

constexpr uint32_t kAdd = 1;
constexpr uint32_t kTakeAway = 0;

TLV_MSG* PolicyQuestion(const char* name) {
    TLV_MSG* request = CodeAlone(DOM_MSG_ITA_POLICY);
    EXPECT_EQ(AAA_AppendStrTlvData(request, DOM_TLV_ITA_POLICY_NAME, name), 0u);
    return request;
}

/// Null when the daemon refused.
std::unique_ptr<ItaPolicy> Policy(const char* name) {
    const Answer answer = Ask(PolicyQuestion(name), DOM_OP_GET);
    if (answer.kind != DOM_REPLY_KIND_DATA) return nullptr;
    auto policy = std::make_unique<ItaPolicy>();
    EXPECT_EQ(DOM_ita_tlv_DecodePolicy(answer.body.get(), policy.get()), DOM_OK);
    return policy;
}

std::vector<std::string> PolicyNames() {
    std::vector<std::string> names;
    for (const Message& reply : WalkAccountingPolicies()) {
        ItaPolicy policy{};
        EXPECT_EQ(DOM_ita_tlv_DecodePolicy(reply.get(), &policy), DOM_OK);
        names.emplace_back(policy.name);
    }
    return names;
}

using Strings = std::vector<std::string>;

uint32_t Create(const std::string& name) {
    return Change(DOM_ita_tlv_EncodePolicyName(name.c_str()), kAdd);
}

uint32_t Delete(const std::string& name) {
    return Change(DOM_ita_tlv_EncodePolicyName(name.c_str()), kTakeAway);
}

uint32_t SetLevel(const char* name, uint32_t level, uint32_t value = 1, uint32_t operation = kAdd) {
    return Change(
        DOM_ita_tlv_EncodeAcctLevel(name, level, value, 0, DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET,
                                    DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET),
        operation);
}

std::vector<uint32_t> Levels(const char* name) {
    const auto policy = Policy(name);
    std::vector<uint32_t> ids;
    if (policy == nullptr) return {kNoReply};
    for (const ItaAcctLevel& level : policy->levels) {
        if (level.level_id != 0) ids.push_back(level.level_id);
    }
    return ids;
}

std::vector<MethodEntry> Scheme(uint32_t kind, const char* name) {
    std::vector<MethodEntry> scheme(DOM_METHODS);
    scheme[0] = golden::Method(kind, name, 3);
    return scheme;
}

uint32_t ReferTo(const char* domain, const char* policy) {
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    snprintf(attributes.ita_policy_name, sizeof attributes.ita_policy_name, "%s", policy);
    return Change(DOM_EncodeAuthorAttr(12, domain, &attributes));
}

/// "POLICY KIND SCHEME", or the number of the refusal.
std::string SchemeOfDomain(const char* domain) {
    TLV_MSG* request = CodeAlone(DOM_MSG_ITA_ACCT_SCHEME);
    EXPECT_EQ(AAA_AppendStrTlvData(request, DOM_TLV_DOMAIN_NAME, domain), 0u);
    const Answer answer = Ask(request, DOM_OP_GET);
    if (answer.kind != DOM_REPLY_KIND_DATA) return std::to_string(ResultOf(answer));
    char policy[DOM_ITA_NAME_SIZE] = {};
    MethodEntry methods[DOM_METHODS] = {};
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(answer.body.get(), sizeof policy, policy, methods),
              DOM_OK);
    return std::string(policy) + " " + std::to_string(methods[0].method_kind) + " " +
           methods[0].scheme_name;
}

bool SameContents(const ItaPolicy& one, const ItaPolicy& other) {
    return memcmp(one.name, other.name, sizeof one.name) == 0 &&
           memcmp(one.acct_scheme, other.acct_scheme, sizeof one.acct_scheme) == 0 &&
           one.level_count == other.level_count &&
           memcmp(one.levels, other.levels, sizeof one.levels) == 0 &&
           one.together_state == other.together_state &&
           one.separation_state == other.separation_state &&
           one.quota_out_state == other.quota_out_state;
}

// The setters' callers give 1 to create; who "repairs" the sense of these codes breaks them.
TEST_F(DaemonPolicies, SettersCreateWithOneAndDeleteWithZero) {
    EXPECT_EQ(DOM_ita_mor_SetPolicy(1, "gold"), DOM_OK);
    EXPECT_EQ(PolicyNames(), Strings{"gold"});
    const auto scheme = Scheme(2, "radius");
    EXPECT_EQ(DOM_ita_mor_SetAcctScheme(7, "gold", scheme.data()), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetAcctTogether(1, "gold"), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetTrafSeprate(1, "gold"), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetTrafLevel(1, "gold", 9, 90, 3, 1, 2, 3, 4), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetAcctTrafQuotaOut(1, "gold", 5), DOM_OK);
    auto policy = Policy("gold");
    ASSERT_NE(policy, nullptr);
    EXPECT_EQ(policy->acct_scheme[0].method_kind, 2u);
    EXPECT_STREQ(policy->acct_scheme[0].scheme_name, "radius");
    EXPECT_EQ(policy->together_state, 1);
    EXPECT_EQ(policy->separation_state, 1);
    EXPECT_EQ(policy->quota_out_state, 5);
    EXPECT_EQ(policy->level_count, 1u);
    const ItaAcctLevel level{9, 90, {1, 2}, {3, 4}};
    EXPECT_EQ(memcmp(&policy->levels[0], &level, sizeof level), 0);

    EXPECT_EQ(DOM_ita_mor_SetAcctScheme(0, "gold", scheme.data()), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetAcctTogether(0, "gold"), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetTrafSeprate(0, "gold"), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetTrafLevel(0, "gold", 9, 0, 0, 0, 0, 0, 0), DOM_OK);
    EXPECT_EQ(DOM_ita_mor_SetAcctTrafQuotaOut(0, "gold", 6), DOM_OK);
    policy = Policy("gold");
    ASSERT_NE(policy, nullptr);
    EXPECT_EQ(policy->acct_scheme[0].method_kind, METHOD_LAST_5);
    EXPECT_EQ(policy->together_state, 0);
    EXPECT_EQ(policy->separation_state, 0);
    EXPECT_EQ(policy->quota_out_state, 6);
    EXPECT_EQ(policy->level_count, 0u);
    EXPECT_EQ(DOM_ita_mor_SetPolicy(0, "gold"), DOM_OK);
    EXPECT_TRUE(PolicyNames().empty());
}

TEST_F(DaemonPolicies, ResultsTellWhatIsMissing) {
    EXPECT_EQ(Delete("gold"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(SetLevel("gold", 1), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(SetLevel("gold", 1, 0, kTakeAway), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_ita_tlv_EncodeAcctTogether("gold"), kAdd), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_ita_tlv_EncodeTrafSeprate("gold"), kTakeAway), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_ita_tlv_EncodeTrafQuotaOut("gold", 1), kAdd), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_ita_tlv_EncodeAcctScheme("gold", Scheme(2, "r").data()), kAdd),
              DOM_ERR_NOT_FOUND);
    EXPECT_TRUE(PolicyNames().empty());
    ASSERT_EQ(Create("gold"), DOM_OK);
    EXPECT_EQ(SetLevel("gold", 1, 0, kTakeAway), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(ResultOf(Ask(PolicyQuestion("Gold"), DOM_OP_GET)), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(ResultOf(Ask(PolicyQuestion("gold"), DOM_OP_GET_NEXT)), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(ResultOf(Ask(CodeAlone(DOM_MSG_ITA_POLICY), DOM_OP_GET)), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Change(PolicyQuestion("gold"), DOM_OP_DELETE), AAAD_ERR_MALFORMED);
    EXPECT_EQ(PolicyNames(), Strings{"gold"});
}

TEST_F(DaemonPolicies, CreatingAgainKeepsWhatIsSet) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    ASSERT_EQ(SetLevel("gold", 7), DOM_OK);
    EXPECT_EQ(Create("gold"), DOM_OK);
    EXPECT_EQ(Levels("gold"), std::vector<uint32_t>{7});
}

TEST_F(DaemonPolicies, NinthLevelIsRefusedAndIdentifierZeroDeletesAll) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    for (uint32_t level = 80; level >= 10; level -= 10) ASSERT_EQ(SetLevel("gold", level), DOM_OK);
    EXPECT_EQ(SetLevel("gold", 5), DOM_ERR_FAILED);
    EXPECT_EQ(SetLevel("gold", 30, 333), DOM_OK);
    EXPECT_EQ(SetLevel("gold", 20, 0, kTakeAway), DOM_OK);
    EXPECT_EQ(Levels("gold"), (std::vector<uint32_t>{10, 30, 40, 50, 60, 70, 80}));
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Levels("gold"), (std::vector<uint32_t>{10, 30, 40, 50, 60, 70, 80}));
    EXPECT_EQ(SetLevel("gold", 0, 0, kTakeAway), DOM_OK);
    EXPECT_TRUE(Levels("gold").empty());
}

TEST_F(DaemonPolicies, NamesThatWouldBeCutDoubledOrEmptyAreRefused) {
    const std::string longest(31, 'p');
    EXPECT_EQ(Create(longest), DOM_OK);
    EXPECT_EQ(Delete(longest + "p"), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Create(""), AAAD_ERR_MALFORMED);
    TLV_MSG* doubled = DOM_ita_tlv_EncodePolicyName("a");
    ASSERT_EQ(AAA_AppendStrTlvData(doubled, DOM_TLV_ITA_POLICY_NAME, "b"), 0u);
    EXPECT_EQ(Change(doubled, kAdd), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Change(CodeAlone(DOM_MSG_ITA_TRAF_QUOTA_OUT)), AAAD_ERR_MALFORMED);
    EXPECT_EQ(PolicyNames(), Strings{longest});
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(PolicyNames(), Strings{longest});
}

TEST_F(DaemonPolicies, SchemeWithoutAMethodIsRefusedForSettingAndForUnsetting) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    const std::vector<MethodEntry> none(DOM_METHODS);
    for (const uint32_t operation : {kAdd, kTakeAway}) {
        EXPECT_EQ(Change(DOM_ita_tlv_EncodeAcctScheme("gold", none.data()), operation),
                  DOM_ERR_FAILED);
    }
    EXPECT_EQ(Policy("gold")->acct_scheme[0].method_kind, METHOD_LAST_5);
}

TEST_F(DaemonPolicies, WalkAscendsByBytes) {
    for (const char* name : {"b", "B", "a", "ab"}) ASSERT_EQ(Create(name), DOM_OK);
    EXPECT_EQ(PolicyNames(), (Strings{"B", "a", "ab", "b"}));
    // A name that is gone meanwhile does not stop a walk.
    const Answer behind = Ask(PolicyQuestion("aa"), DOM_OP_GET_NEXT);
    ASSERT_EQ(behind.kind, DOM_REPLY_KIND_DATA);
    ItaPolicy policy{};
    ASSERT_EQ(DOM_ita_tlv_DecodePolicy(behind.body.get(), &policy), DOM_OK);
    EXPECT_STREQ(policy.name, "ab");
    EXPECT_EQ(Ask(CodeAlone(DOM_MSG_ITA_POLICY), DOM_OP_GET_NEXT).kind, DOM_REPLY_KIND_DATA);
}

TEST_F(DaemonPolicies, WholePolicyReplacesAndSurvivesSigkill) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    ASSERT_EQ(SetLevel("gold", 99), DOM_OK);
    const ItaPolicy sample = golden::SamplePolicy();
    EXPECT_EQ(Change(DOM_ita_tlv_EncodePolicy(&sample)), DOM_OK);
    for (int start = 0; start < 2; ++start) {
        const auto policy = Policy("gold");
        ASSERT_NE(policy, nullptr);
        EXPECT_TRUE(SameContents(*policy, sample));
        daemon_.Kill();
        ASSERT_TRUE(daemon_.Start());
    }
}

TEST_F(DaemonPolicies, EverythingSurvivesSigkill) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    ASSERT_EQ(Create("Gold"), DOM_OK);
    ASSERT_EQ(Create("gone"), DOM_OK);
    ASSERT_EQ(Delete("gone"), DOM_OK);
    ASSERT_EQ(SetLevel("Gold", 4, 40), DOM_OK);
    ASSERT_EQ(Change(DOM_ita_tlv_EncodeAcctTogether("gold"), kAdd), DOM_OK);
    ASSERT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), DOM_OK);
    ASSERT_EQ(Change(DOM_Rec_tlv_EncodeAcctScheme(0, Scheme(2, "rec").data())), DOM_OK);
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(PolicyNames(), (Strings{"Gold", "gold"}));
}

// The library answers every deletion of a saved policy with a failure; the daemon looks.
TEST_F(DaemonPolicies, DeletionAnswersTheTruth) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    EXPECT_EQ(Delete("gold"), DOM_OK);
    EXPECT_TRUE(PolicyNames().empty());
    EXPECT_EQ(Delete("gold"), DOM_ERR_NOT_FOUND);
    ASSERT_EQ(daemon_.Terminate(), 0);
    const StoppedDatabase database(daemon_);
    EXPECT_FALSE(database.Has("dom-tlv-ita-policy-gold"));
}

TEST_F(DaemonPolicies, DeletionThatCannotBeSavedLeavesThePolicy) {
    ASSERT_EQ(Create("gold"), DOM_OK);
    ASSERT_EQ(SetLevel("gold", 4), DOM_OK);
    const auto before = WholeConfiguration();
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);
    EXPECT_EQ(Delete("gold"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(SetLevel("gold", 5), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(Create("new"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(Delete("none"), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(WholeConfiguration(), before);
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(Levels("gold"), std::vector<uint32_t>{4});
}

TEST_F(DaemonPolicies, DomainAccountsByItsPolicyWhileThatExists) {
    ASSERT_EQ(CreateDomain("Corp"), DOM_OK);
    EXPECT_EQ(SchemeOfDomain("none"), std::to_string(AAAD_ERR_NO_OBJECT));
    EXPECT_EQ(SchemeOfDomain("Corp"), std::to_string(DOM_ERR_NOT_FOUND));
    ASSERT_EQ(ReferTo("Corp", "gold"), DOM_OK);
    EXPECT_EQ(SchemeOfDomain("Corp"), std::to_string(DOM_ERR_NOT_FOUND));
    ASSERT_EQ(Create("gold"), DOM_OK);
    EXPECT_EQ(SchemeOfDomain("CORP"), "gold 5 ");
    ASSERT_EQ(Change(DOM_ita_tlv_EncodeAcctScheme("gold", Scheme(2, "radius").data()), kAdd),
              DOM_OK);
    EXPECT_EQ(SchemeOfDomain("corp"), "gold 2 radius");
    // A policy that is referred to may be deleted; the reference stays and comes to life again.
    EXPECT_EQ(Delete("gold"), DOM_OK);
    EXPECT_EQ(SchemeOfDomain("corp"), std::to_string(DOM_ERR_NOT_FOUND));
    EXPECT_STREQ(GetDomain("corp")->author_attr.ita_policy_name, "gold");
    ASSERT_EQ(Create("gold"), DOM_OK);
    EXPECT_EQ(SchemeOfDomain("corp"), "gold 5 ");
}

TEST_F(DaemonPolicies, OneBatchOfPolicyProfileAndDomainIsThereAfterSigkill) {
    std::vector<uint32_t> results(5, kNoReply);
    AtOnce(daemon_,
           {[&] { results[0] = CreateDomain("corp"); }, [&] { results[1] = Create("gold"); },
            [&] { results[2] = Change(DOM_author_tlv_EncodeAuthorProfile("p")); },
            [&] { results[3] = Create("silver"); },
            [&] { results[4] = Change(DOM_Rec_tlv_EncodePolicyType(0)); }});
    EXPECT_EQ(results, std::vector<uint32_t>(5, DOM_OK));
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(PolicyNames(), (Strings{"gold", "silver"}));
    EXPECT_EQ(ListDomains(), (Strings{"corp", "system"}));
}

TEST_F(DaemonPolicies, BatchThatCannotBeSavedLeavesNothingOfIt) {
    ASSERT_EQ(Create("kept"), DOM_OK);
    const auto before = WholeConfiguration();
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);
    std::vector<uint32_t> results(4, kNoReply);
    AtOnce(daemon_, {[&] { results[0] = CreateDomain("corp"); },
                     [&] { results[1] = Create("gold"); }, [&] { results[2] = Delete("kept"); },
                     [&] { results[3] = Change(DOM_author_tlv_EncodeAuthorProfile("p")); }});
    EXPECT_EQ(results, std::vector<uint32_t>(4, AAAD_ERR_NOT_SAVED));
    EXPECT_EQ(WholeConfiguration(), before);
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    EXPECT_EQ(PolicyNames(), Strings{"kept"});
}

using DaemonRecordingPolicy = DaemonTest;

/// "KIND SCHEME" of its first method, or the number of the refusal.
std::string RecordingScheme(uint32_t type = 0) {
    TLV_MSG* request = CodeAlone(DOM_MSG_REC_POLICY);
    EXPECT_EQ(AAA_AppendUINTTlvData(request, DOM_TLV_REC_POLICY_TYPE, type), 0u);
    const Answer answer = Ask(request, DOM_OP_GET);
    if (answer.kind != DOM_REPLY_KIND_DATA) return std::to_string(ResultOf(answer));
    MethodEntry methods[DOM_METHODS] = {};
    EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(answer.body.get(), sizeof methods, methods), 0u);
    return std::to_string(methods[0].method_kind) + " " + methods[0].scheme_name;
}

TEST_F(DaemonRecordingPolicy, LivesFromCreationToDeletion) {
    const std::string absent = std::to_string(DOM_ERR_NOT_FOUND);
    EXPECT_EQ(RecordingScheme(), absent);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0), DOM_OP_DELETE), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodeAcctScheme(0, Scheme(2, "r").data())), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), DOM_OK);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), DOM_ERR_EXISTS);
    EXPECT_EQ(RecordingScheme(), "0 ");
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodeAcctScheme(0, Scheme(2, "r").data())), DOM_OK);
    EXPECT_EQ(RecordingScheme(), "2 r");
    EXPECT_EQ(RecordingScheme(1), absent);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(RecordingScheme(), "2 r");
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodeAcctScheme(0, Scheme(2, "r").data()), DOM_OP_DELETE),
              DOM_OK);
    EXPECT_EQ(RecordingScheme(), "0 ");
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0), DOM_OP_DELETE), DOM_OK);
    EXPECT_EQ(RecordingScheme(), absent);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(RecordingScheme(), absent);
}

TEST_F(DaemonRecordingPolicy, OtherTypesAreRefused) {
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(1)), DOM_ERR_FAILED);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodeAcctScheme(1, Scheme(2, "r").data())), DOM_ERR_FAILED);
}

// Its deletion would stay in memory and be gone from the database.
TEST_F(DaemonRecordingPolicy, WholePolicyIsOnlySet) {
    RecPolicy policy{};
    policy.acct_scheme[0] = golden::Method(2, "whole", 1);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicy(&policy), DOM_OP_DELETE), AAAD_ERR_MALFORMED);
    EXPECT_EQ(RecordingScheme(), std::to_string(DOM_ERR_NOT_FOUND));
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicy(&policy)), DOM_OK);
    for (int start = 0; start < 2; ++start) {
        EXPECT_EQ(RecordingScheme(), "2 whole");
        daemon_.Kill();
        ASSERT_TRUE(daemon_.Start());
    }
}

}  // namespace
