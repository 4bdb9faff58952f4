#include "unit/policy/ita_data_fixture.h"

namespace aaadom {
namespace {

using Processor = uint32_t (*)(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change);

uint32_t ProcessQuotaOut(TLV_MSG* msg, uint16_t, DomDbUpdateReq* change) {
    return DOM_ita_cfg_ProcTrafQuotaOut(msg, change);
}

constexpr Processor kProcessors[] = {
    DOM_ita_cfg_ProcPolicy,    DOM_ita_cfg_ProcAcctScheme,  DOM_ita_cfg_ProcAcctTogether,
    DOM_ita_cfg_ProcAcctLevel, DOM_ita_cfg_ProcTrafSeprate, ProcessQuotaOut,
};

class ItaProcess : public ItaDataTest {
  protected:
    /// `msg` is consumed.
    uint32_t Process(Processor process, TLV_MSG* msg, uint16_t operation) {
        const TlvPtr owned(msg);
        change_ = Filled();
        return process(owned.get(), operation, &change_);
    }
    static TLV_MSG* Scheme(const char* name) {
        const ItaPolicy sample = golden::SamplePolicy();
        return DOM_ita_tlv_EncodeAcctScheme(name, sample.acct_scheme);
    }
    static TLV_MSG* Level(const char* name, uint32_t id, uint32_t value = 0, uint32_t flags = 0,
                          uint32_t a = ~0u, uint32_t b = ~0u, uint32_t c = ~0u, uint32_t d = ~0u) {
        return DOM_ita_tlv_EncodeAcctLevel(name, id, value, flags, a, b, c, d);
    }
    static const ItaPolicy& Policy(const char* name) {
        static const ItaPolicy none{};
        const ItaPolicy* policy = DOM_ita_policy_GetDomPolicyByName(name);
        EXPECT_NE(policy, nullptr);
        return policy == nullptr ? none : *policy;
    }

    DomDbUpdateReq change_{};
};

TEST_F(ItaProcess, CreatesWithOperationOneOnly) {
    EXPECT_EQ(Process(DOM_ita_cfg_ProcPolicy, DOM_ita_tlv_EncodePolicyName("p"), 1), DOM_OK);
    EXPECT_EQ(DOM_ita_IsPolicyExist("p"), 1u);
    ExpectChange(change_, "p", 1);
}

TEST_F(ItaProcess, EveryOtherOperationDeletesAndIsRecordedAsItIs) {
    for (const uint16_t operation : {0, 2, 6, 0xFFFF}) {
        ASSERT_EQ(DOM_ita_policy_Create("p"), DOM_OK);
        EXPECT_EQ(Process(DOM_ita_cfg_ProcPolicy, DOM_ita_tlv_EncodePolicyName("p"), operation),
                  DOM_OK);
        EXPECT_EQ(DOM_ita_IsPolicyExist("p"), 0u);
        ExpectChange(change_, "p", operation);
    }
}

TEST_F(ItaProcess, DeletingAnAbsentPolicyIsRecordedAllTheSame) {
    EXPECT_EQ(Process(DOM_ita_cfg_ProcPolicy, DOM_ita_tlv_EncodePolicyName("p"), 0),
              DOM_ERR_NOT_FOUND);
    ExpectChange(change_, "p", 0);
}

TEST_F(ItaProcess, CreatingAgainKeepsTheSettings) {
    AddSample("p");
    const std::string before = Stored("p");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcPolicy, DOM_ita_tlv_EncodePolicyName("p"), 1), DOM_OK);
    EXPECT_EQ(Stored("p"), before);
}

TEST_F(ItaProcess, NamesAreFoundInTheirExactSpelling) {
    AddSample("acct");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctTogether, DOM_ita_tlv_EncodeAcctTogether("Acct"), 1),
              DOM_ERR_NOT_FOUND);
    ExpectChange(change_, "Acct", 1);
}

TEST_F(ItaProcess, SetsTheScheme) {
    DOM_ita_policy_Create("p");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, Scheme("p"), 1), DOM_OK);
    EXPECT_STREQ(Policy("p").acct_scheme[0].scheme_name, "radius-a");
    ExpectChange(change_, "p", 1);
}

// The policy that lost its scheme is still there to be saved.
TEST_F(ItaProcess, UnsettingTheSchemeIsRecordedAsAChange) {
    AddSample("p");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, Scheme("p"), 0), DOM_OK);
    EXPECT_EQ(Policy("p").acct_scheme[0].method_kind, 5u);
    EXPECT_EQ(Policy("p").acct_scheme[1].method_kind, 0u);
    ExpectChange(change_, "p", 1);
}

TEST_F(ItaProcess, ASchemeWithoutMethodsIsRefusedForEveryOperationButRecorded) {
    AddSample("p");
    const std::string before = Stored("p");
    for (const uint16_t operation : {0, 1, 2}) {
        EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, DOM_ita_tlv_EncodePolicyName("p"), operation),
                  DOM_ERR_FAILED);
        ExpectChange(change_, "p", 1);
        EXPECT_EQ(Stored("p"), before);
    }
}

TEST_F(ItaProcess, ASchemeMessageThatIsNoneIsRecordedWithoutAName) {
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, TLV_Create(), 1), DOM_ERR_FAILED);
    ExpectChange(change_, "", 1);
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, nullptr, 1), DOM_ERR_FAILED);
    ExpectChange(change_, "", 1);
}

TEST_F(ItaProcess, TheOperationIsTheStateOfTheSwitches) {
    DOM_ita_policy_Create("p");
    for (const uint16_t operation : {1, 0, 1, 2}) {
        const uint16_t state = operation == 1 ? 1 : 0;
        EXPECT_EQ(
            Process(DOM_ita_cfg_ProcAcctTogether, DOM_ita_tlv_EncodeAcctTogether("p"), operation),
            DOM_OK);
        ExpectChange(change_, "p", 1);
        EXPECT_EQ(Policy("p").together_state, state);
        EXPECT_EQ(
            Process(DOM_ita_cfg_ProcTrafSeprate, DOM_ita_tlv_EncodeTrafSeprate("p"), operation),
            DOM_OK);
        ExpectChange(change_, "p", 1);
        EXPECT_EQ(Policy("p").separation_state, state);
    }
}

TEST_F(ItaProcess, SetsALevel) {
    DOM_ita_policy_Create("p");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 4, 5, 3, 6, 7, 8, 9), 1), DOM_OK);
    const ItaAcctLevel want{4, 5, {6, 7}, {8, 9}};
    EXPECT_EQ(memcmp(&Policy("p").levels[0], &want, sizeof want), 0);
    ExpectChange(change_, "p", 1);
}

TEST_F(ItaProcess, PairsAreStoredByTheirFlagsAlone) {
    DOM_ita_policy_Create("p");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 4, 5, 2, 6, 7, 8, 9), 1), DOM_OK);
    const ItaAcctLevel want{4, 5, {0xFFFFFFFF, 0xFFFFFFFF}, {8, 9}};
    EXPECT_EQ(memcmp(&Policy("p").levels[0], &want, sizeof want), 0);
}

TEST_F(ItaProcess, ALevelWithoutFlagsAndPairsLeavesThePairs) {
    AddSample("p");
    const ItaAcctLevel before = Policy("p").levels[0];
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", before.level_id), 1), DOM_OK);
    EXPECT_EQ(memcmp(&Policy("p").levels[0], &before, sizeof before), 0);
}

TEST_F(ItaProcess, UnsetsOneLevelByItsIdAndAllByIdZero) {
    AddSample("p");
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 10), 0), DOM_OK);
    ExpectChange(change_, "p", 1);
    EXPECT_EQ(Policy("p").level_count, 1u);
    EXPECT_EQ(Policy("p").levels[0].level_id, 20u);
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 10), 0), DOM_ERR_NOT_FOUND);
    ExpectChange(change_, "p", 1);
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 0), 2), DOM_OK);
    EXPECT_EQ(Policy("p").level_count, 0u);
    EXPECT_EQ(Policy("p").levels[0].level_id, 0u);
}

TEST_F(ItaProcess, ALevelOfAnAbsentPolicyFailsInItsOwnWay) {
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 4), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 4), 0), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, Level("p", 0), 0), DOM_ERR_NOT_FOUND);
    ExpectChange(change_, "p", 1);
}

TEST_F(ItaProcess, ASettingOfAnAbsentPolicyIsRecordedAllTheSame) {
    for (const uint16_t operation : {1, 0}) {
        EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, Scheme("p"), operation), DOM_ERR_NOT_FOUND);
        ExpectChange(change_, "p", 1);
        EXPECT_EQ(Process(ProcessQuotaOut, DOM_ita_tlv_EncodeTrafQuotaOut("p", 1), operation),
                  DOM_ERR_NOT_FOUND);
        ExpectChange(change_, "p", 1);
    }
}

// They are decoded; it is the store that has no such policy.
TEST_F(ItaProcess, SettingsWithoutANameAreOfNoPolicy) {
    AddSample("p");
    const std::string before = Stored("p");
    const auto nameless = [] {
        return Message([](Appender& append) {
                   append.Nested(10, [](Appender& item) { item.U32(12, 1); }).U32(53, 4);
               })
            .release();
    };
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctScheme, nameless(), 1), DOM_ERR_NOT_FOUND);
    ExpectChange(change_, "", 1);
    EXPECT_EQ(Process(DOM_ita_cfg_ProcAcctLevel, nameless(), 1), DOM_ERR_FAILED);
    ExpectChange(change_, "", 1);
    EXPECT_EQ(Process(ProcessQuotaOut, nameless(), 1), DOM_ERR_NOT_FOUND);
    ExpectChange(change_, "", 1);
    EXPECT_EQ(DumpAll(), (std::vector<std::string>{before}));
}

TEST_F(ItaProcess, StoresTheQuotaOutState) {
    DOM_ita_policy_Create("p");
    EXPECT_EQ(Process(ProcessQuotaOut, DOM_ita_tlv_EncodeTrafQuotaOut("p", 0), 1), DOM_OK);
    EXPECT_EQ(Policy("p").quota_out_state, 0);
    ExpectChange(change_, "p", 1);
}

TEST_F(ItaProcess, AQuotaOutMessageWithoutStateStoresOne) {
    DOM_ita_policy_Create("p");
    DOM_ita_policy_SetQuotaState("p", 0);
    EXPECT_EQ(Process(ProcessQuotaOut, DOM_ita_tlv_EncodePolicyName("p"), 0), DOM_OK);
    EXPECT_EQ(Policy("p").quota_out_state, 1);
}

TEST_F(ItaProcess, MessagesWithoutANameAreRefusedAndNotRecorded) {
    for (const Processor process :
         {DOM_ita_cfg_ProcPolicy, DOM_ita_cfg_ProcAcctTogether, DOM_ita_cfg_ProcTrafSeprate}) {
        EXPECT_EQ(Process(process, TLV_Create(), 1), DOM_ERR_FAILED);
        ExpectUntouched(change_);
        EXPECT_EQ(Process(process, nullptr, 1), DOM_ERR_FAILED);
        ExpectUntouched(change_);
    }
    for (const Processor process :
         {Processor{DOM_ita_cfg_ProcAcctLevel}, Processor{ProcessQuotaOut}}) {
        EXPECT_EQ(Process(process, nullptr, 1), DOM_ERR_FAILED);
        ExpectUntouched(change_);
    }
    EXPECT_EQ(DumpAll().size(), 0u);
}

TEST_F(ItaProcess, AllAreRefusedOnTheConfigurationThread) {
    // Only the low 16 bits of the daemon's answer tell the role.
    for (const uint32_t role : {1u, 0x10001u, 0xABCD0001u}) {
        fake::InRole(role, [&] {
            DOM_ita_policy_Create("p");
            const std::string before = Stored("p");
            for (const Processor process : kProcessors) {
                for (const uint16_t operation : {1, 0}) {
                    EXPECT_EQ(Process(process, Scheme("p"), operation), DOM_ERR_FAILED);
                    ExpectUntouched(change_);
                }
            }
            EXPECT_EQ(Stored("p"), before);
            return 0;
        });
    }
}

TEST_F(ItaProcess, OtherAnswersOfTheDaemonAreTheWorkingRole) {
    for (const uint32_t role : {0u, 2u, 0x20000u}) {
        fake::InRole(role, [&] {
            EXPECT_EQ(Process(DOM_ita_cfg_ProcPolicy, DOM_ita_tlv_EncodePolicyName("p"), 1),
                      DOM_OK);
            return 0;
        });
    }
}

TEST_F(ItaProcess, ANullChangeRecordIsSkipped) {
    const TlvPtr msg(Scheme("p"));
    EXPECT_EQ(DOM_ita_cfg_ProcPolicy(msg.get(), 1, nullptr), DOM_OK);
    EXPECT_EQ(DOM_ita_cfg_ProcAcctScheme(msg.get(), 1, nullptr), DOM_OK);
    EXPECT_EQ(DOM_ita_cfg_ProcAcctTogether(msg.get(), 1, nullptr), DOM_OK);
    EXPECT_EQ(DOM_ita_cfg_ProcTrafSeprate(msg.get(), 1, nullptr), DOM_OK);
    EXPECT_EQ(DOM_ita_cfg_ProcTrafQuotaOut(msg.get(), nullptr), DOM_OK);
    const TlvPtr level(Level("p", 1));
    EXPECT_EQ(DOM_ita_cfg_ProcAcctLevel(level.get(), 1, nullptr), DOM_OK);
}

TEST_F(ItaProcess, TheChangeRecordHasRoomFor31Characters) {
    const std::string longer(40, 'n');
    DomDbUpdateReq change = Filled();
    DOM_ita_db_SetDbChangeInfo(longer.c_str(), 7, &change);
    ExpectChange(change, longer.substr(0, 31).c_str(), 7);
    change = Filled();
    DOM_ita_db_SetDbChangeInfo(nullptr, 1, &change);
    ExpectChange(change, "", 1);
    DOM_ita_db_SetDbChangeInfo("p", 1, nullptr);
}

}  // namespace
}  // namespace aaadom
