#include "unit/policy/ita_data_fixture.h"

namespace aaadom {
namespace {

const MethodEntry* SampleMethods() {
    static const ItaPolicy sample = golden::SamplePolicy();
    return sample.acct_scheme;
}

class ItaCodec : public ItaDataTest {
  protected:
    /// Decodes a message of code 22 in words; "-" when it is refused.
    static std::string Decode(const TlvPtr& msg) {
        ItaPolicy policy = golden::SamplePolicy("left from before");
        return DOM_ita_tlv_DecodePolicy(msg.get(), &policy) == DOM_OK ? Dump(policy) : "-";
    }
    /// A policy with this name and zeros.
    static ItaPolicy Bare(const char* name) {
        ItaPolicy policy{};
        CopyText(policy.name, name);
        return policy;
    }
};

TEST_F(ItaCodec, APolicyGoesInOneOrder) {
    const ItaPolicy policy = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
    EXPECT_EQ(TypesOf(msg.get()), (Types{0, 52, 7, 57, 58, 59, 60, 56}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 22u);
}

// Other lists of TLV 7 begin with an AAA type and a service and end with an extra item.
TEST_F(ItaCodec, TheSchemeOfAPolicyIsItemsAlone) {
    const ItaPolicy policy = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
    const TlvPtr list = FindTlv(msg.get(), 7).Sub();
    EXPECT_EQ(TypesOf(list.get()), (Types{10, 10}));
}

TEST_F(ItaCodec, AllEightLevelEntriesGoWithAllTheirValues) {
    const ItaPolicy policy = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
    const TlvPtr levels = FindTlv(msg.get(), 56).Sub();
    EXPECT_EQ(TypesOf(levels.get()), Types(8, 55));
    for (const TlvItem level : TlvWalk(levels.get()))
        EXPECT_EQ(TypesOf(level.Sub().get()), (Types{53, 54, 78, 79, 80, 81}));
}

TEST_F(ItaCodec, APolicySurvivesTheWay) {
    const ItaPolicy policy = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
    EXPECT_EQ(Decode(msg), Dump(policy));
}

// A policy without levels whose level 0 was unset.
TEST_F(ItaCodec, TheLevelCountIsCarriedWhateverItIs) {
    ItaPolicy policy = golden::SamplePolicy();
    policy.level_count = 0xFFFFFFFF;
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
    EXPECT_EQ(Decode(msg), Dump(policy));
}

TEST_F(ItaCodec, ANameThatFillsItsFieldIsSentWithATerminator) {
    ItaPolicy policy = golden::SamplePolicy();
    memset(policy.name, 'n', sizeof policy.name);
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
    EXPECT_EQ(FindTlv(msg.get(), 52).Length(), 33u);
    CopyText(policy.name, std::string(31, 'n').c_str());
    EXPECT_EQ(Decode(msg), Dump(policy));
}

// Quota-out is 1 in a new policy and 0 in one whose message does not have it.
TEST_F(ItaCodec, WhatAPolicyMessageLacksIsZero) {
    const TlvPtr msg = Message([](Appender& append) { append.Text(52, "p"); });
    EXPECT_EQ(Decode(msg), Dump(Bare("p")));
}

TEST_F(ItaCodec, PairsThatALevelLacksAreUnset) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p").Nested(56, [](Appender& levels) {
            levels.Nested(55, [](Appender& level) { level.U32(53, 3).U32(79, 4); });
        });
    });
    ItaPolicy want = Bare("p");
    want.levels[0] = {3, 0, {0xFFFFFFFF, 4}, {0xFFFFFFFF, 0xFFFFFFFF}};
    EXPECT_EQ(Decode(msg), Dump(want));
}

TEST_F(ItaCodec, LevelsBeyondTheEighthAreIgnored) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p").Nested(56, [](Appender& levels) {
            for (uint32_t id = 1; id <= 20; ++id)
                levels.Nested(55, [=](Appender& level) { level.U32(53, id); });
        });
    });
    ItaPolicy policy;
    ASSERT_EQ(DOM_ita_tlv_DecodePolicy(msg.get(), &policy), DOM_OK);
    for (uint32_t i = 0; i < 8; ++i) EXPECT_EQ(policy.levels[i].level_id, i + 1);
    EXPECT_EQ(policy.together_state, 0);
    EXPECT_EQ(policy.level_count, 0u);
}

TEST_F(ItaCodec, AMalformedSurplusLevelIsIgnoredToo) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p").Nested(56, [](Appender& levels) {
            for (uint32_t id = 1; id <= 8; ++id)
                levels.Nested(55, [=](Appender& level) { level.U32(53, id); });
            levels.U32(55, 9);
        });
    });
    EXPECT_NE(Decode(msg), "-");
}

TEST_F(ItaCodec, WhatIsNoLevelTakesNoEntry) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p").Nested(56, [](Appender& levels) {
            levels.U32(53, 1).Nested(54, [](Appender& other) { other.U32(53, 2); });
            levels.Nested(55, [](Appender& level) { level.U32(53, 3); });
        });
    });
    ItaPolicy want = Bare("p");
    want.levels[0] = {3, 0, {0xFFFFFFFF, 0xFFFFFFFF}, {0xFFFFFFFF, 0xFFFFFFFF}};
    EXPECT_EQ(Decode(msg), Dump(want));
}

TEST_F(ItaCodec, SeveralLevelSetsFillOneRowOfEntries) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p");
        for (uint32_t set = 0; set < 3; ++set) {
            append.Nested(56, [=](Appender& levels) {
                for (uint32_t i = 1; i <= 3; ++i)
                    levels.Nested(55, [=](Appender& level) { level.U32(53, set * 3 + i); });
            });
        }
    });
    ItaPolicy policy;
    ASSERT_EQ(DOM_ita_tlv_DecodePolicy(msg.get(), &policy), DOM_OK);
    for (uint32_t i = 0; i < 8; ++i) EXPECT_EQ(policy.levels[i].level_id, i + 1);
}

TEST_F(ItaCodec, AMethodOutsideTheSchemeIsStoredNowhere) {
    for (const uint32_t position : {6u, 0x80000000u, 0xFFFFFFFFu}) {
        const TlvPtr msg = Message([=](Appender& append) {
            append.Text(52, "p").Nested(7, [=](Appender& list) {
                list.Nested(10, [=](Appender& item) { item.U32(11, position).U32(12, 1); });
            });
        });
        ItaPolicy around[3] = {};
        (void)DOM_ita_tlv_DecodePolicy(msg.get(), &around[1]);
        const ItaPolicy zero{};
        for (const MethodEntry& method : around[1].acct_scheme) EXPECT_EQ(method.method_kind, 0u);
        EXPECT_EQ(memcmp(&around[0], &zero, sizeof zero), 0);
        EXPECT_EQ(memcmp(&around[2], &zero, sizeof zero), 0);
    }
}

TEST_F(ItaCodec, MalformedNestedMessagesAreRefused) {
    const auto refused = [](auto fields) {
        const TlvPtr msg = Message([&](Appender& append) {
            append.Text(52, "p");
            fields(append);
        });
        return Decode(msg) == "-";
    };
    EXPECT_TRUE(refused([](Appender& a) { a.Raw(7, "garbage", 7); }));
    EXPECT_TRUE(refused([](Appender& a) { a.Raw(7, "", 0); }));
    EXPECT_TRUE(refused(
        [](Appender& a) { a.Nested(7, [](Appender& list) { list.Raw(10, "garbage", 7); }); }));
    EXPECT_TRUE(refused([](Appender& a) { a.Raw(56, "garbage", 7); }));
    EXPECT_TRUE(refused(
        [](Appender& a) { a.Nested(56, [](Appender& levels) { levels.Raw(55, "garbage", 7); }); }));
}

TEST_F(ItaCodec, ASchemeWithoutMethodsIsRefused) {
    const TlvPtr msg =
        Message([](Appender& append) { append.Text(52, "p").Nested(7, [](Appender&) {}); });
    EXPECT_EQ(Decode(msg), "-");
}

TEST_F(ItaCodec, APolicyWithoutANameIsRefused) {
    EXPECT_EQ(Decode(Message([](Appender& append) { append.U32(57, 1); })), "-");
    EXPECT_EQ(Decode(Message([](Appender& append) { append.Text(52, ""); })), "-");
}

TEST_F(ItaCodec, NumbersThatAreTooShortReadAsZero) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p").Raw(57, "\1\1\1", 3).Raw(58, "\1", 1).Raw(60, "", 0);
        append.U64(59, 0x0000000200000007);  // only the first four bytes are a number
    });
    ItaPolicy want = Bare("p");
    want.separation_state = 7;
    EXPECT_EQ(Decode(msg), Dump(want));
}

TEST_F(ItaCodec, StatesAreNarrowedTo16Bits) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Text(52, "p").U32(58, 0x10002).U32(59, 0x20003).U32(60, 0x30004);
    });
    ItaPolicy want = Bare("p");
    want.together_state = 2;
    want.separation_state = 3;
    want.quota_out_state = 4;
    EXPECT_EQ(Decode(msg), Dump(want));
}

TEST_F(ItaCodec, NamesWithoutTerminatorAndLongNamesAreCut) {
    const std::string longest(31, 'n');
    EXPECT_EQ(Decode(Message(
                  [](Appender& append) { append.Raw(52, std::string(400, 'n').data(), 400); })),
              Dump(Bare(longest.c_str())));
    EXPECT_EQ(Decode(Message([](Appender& append) { append.Raw(52, "ab", 2); })), Dump(Bare("ab")));
}

TEST_F(ItaCodec, APolicyMessageWithoutMemoryIsNull) {
    const ItaPolicy policy = golden::SamplePolicy();
    for (int n = 1;; ++n) {
        fake::FailAny(n);
        const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&policy));
        if (!fake::Tripped()) {
            EXPECT_TRUE(msg);
            break;
        }
        EXPECT_FALSE(msg) << "event " << n;
    }
}

// ---- the single requests

TEST_F(ItaCodec, RequestsThatAreANameCarryTheNameAlone) {
    const TlvPtr name(DOM_ita_tlv_EncodePolicyName("gold"));
    const TlvPtr together(DOM_ita_tlv_EncodeAcctTogether("gold"));
    const TlvPtr separate(DOM_ita_tlv_EncodeTrafSeprate("gold"));
    EXPECT_EQ(FindTlv(name.get(), 0).U32(), 23u);
    EXPECT_EQ(FindTlv(together.get(), 0).U32(), 25u);
    EXPECT_EQ(FindTlv(separate.get(), 0).U32(), 27u);
    for (TLV_MSG* msg : {name.get(), together.get(), separate.get()}) {
        EXPECT_EQ(TypesOf(msg), (Types{0, 52}));
        for (auto decode : {DOM_ita_tlv_DecodePolicyName, DOM_ita_tlv_DecodeAcctTogether,
                            DOM_ita_ita_DecodeTrafSeprate}) {
            char text[32] = "before";
            EXPECT_EQ(decode(msg, sizeof text, text), DOM_OK);
            EXPECT_STREQ(text, "gold");
        }
    }
}

TEST_F(ItaCodec, ARequestWithoutTheNameIsNone) {
    const TlvPtr msg = Message([](Appender& append) { append.U32(0, 23); });
    for (auto decode : {DOM_ita_tlv_DecodePolicyName, DOM_ita_tlv_DecodeAcctTogether,
                        DOM_ita_ita_DecodeTrafSeprate}) {
        char text[32] = "before";
        EXPECT_EQ(decode(msg.get(), sizeof text, text), DOM_ERR_FAILED);
        EXPECT_STREQ(text, "");
        EXPECT_EQ(decode(nullptr, sizeof text, text), DOM_ERR_FAILED);
    }
}

TEST_F(ItaCodec, NamesAreCutToTheCapacity) {
    const TlvPtr msg(DOM_ita_tlv_EncodePolicyName("goldplus"));
    char text[6] = "xxxxx";
    EXPECT_EQ(DOM_ita_tlv_DecodePolicyName(msg.get(), 5, text), DOM_OK);
    EXPECT_STREQ(text, "gold");
    EXPECT_EQ(DOM_ita_tlv_DecodePolicyName(msg.get(), 0, text), DOM_ERR_FAILED);
    EXPECT_STREQ(text, "gold");
    EXPECT_EQ(DOM_ita_tlv_DecodePolicyName(msg.get(), 5, nullptr), DOM_OK);
}

TEST_F(ItaCodec, ASchemeRequestHasItsMethodsBesideTheName) {
    const TlvPtr msg(DOM_ita_tlv_EncodeAcctScheme("gold", SampleMethods()));
    EXPECT_EQ(TypesOf(msg.get()), (Types{0, 52, 10, 10}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 24u);
    char name[32];
    MethodEntry methods[6];
    memset(methods, 0x5A, sizeof methods);
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(msg.get(), sizeof name, name, methods), DOM_OK);
    EXPECT_STREQ(name, "gold");
    EXPECT_EQ(memcmp(methods, SampleMethods(), sizeof methods), 0);
}

TEST_F(ItaCodec, ASchemeRequestWithoutMethodsIsRefusedButNamesItsPolicy) {
    const TlvPtr msg(DOM_ita_tlv_EncodePolicyName("gold"));
    char name[32];
    MethodEntry methods[6];
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(msg.get(), sizeof name, name, methods), DOM_ERR_FAILED);
    EXPECT_STREQ(name, "gold");
}

TEST_F(ItaCodec, ASchemeMethodOutsideTheListIsStoredNowhere) {
    for (const uint32_t position : {6u, 0xFFFFFFFFu}) {
        const TlvPtr msg = Message([=](Appender& append) {
            append.Text(52, "p").Nested(10,
                                        [=](Appender& item) { item.U32(11, position).U32(12, 1); });
        });
        char name[32];
        MethodEntry around[18] = {};
        (void)DOM_ita_tlv_DecodeAcctScheme(msg.get(), sizeof name, name, &around[6]);
        for (const MethodEntry& method : around) EXPECT_EQ(method.method_kind, 0u);
    }
}

TEST_F(ItaCodec, ALevelRequestHasFlagsBeforePairs) {
    const TlvPtr msg(DOM_ita_tlv_EncodeAcctLevel("gold", 7, 8, 3, 11, 12, 13, 14));
    EXPECT_EQ(TypesOf(msg.get()), (Types{0, 52, 53, 54, 77, 78, 79, 80, 81}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 26u);
    const uint32_t want[] = {7, 8, 3, 11, 12, 13, 14};
    const uint16_t types[] = {53, 54, 77, 78, 79, 80, 81};
    for (size_t i = 0; i < 7; ++i) EXPECT_EQ(FindTlv(msg.get(), types[i]).U32(), want[i]);
}

TEST_F(ItaCodec, ALevelRequestLeavesOutZeroFlagsAndUnsetPairs) {
    const TlvPtr none(DOM_ita_tlv_EncodeAcctLevel("gold", 0, 0, 0, 0xFFFFFFFF, 0xFFFFFFFF,
                                                  0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_EQ(TypesOf(none.get()), (Types{0, 52, 53, 54}));
    const TlvPtr some(
        DOM_ita_tlv_EncodeAcctLevel("gold", 1, 2, 0, 0, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFF));
    EXPECT_EQ(TypesOf(some.get()), (Types{0, 52, 53, 54, 78, 80}));
}

TEST_F(ItaCodec, ALevelRequestReadsBack) {
    const TlvPtr msg(DOM_ita_tlv_EncodeAcctLevel("gold", 7, 8, 3, 11, 12, 13, 14));
    char name[32];
    ItaAcctLevel level{};
    uint32_t flags = 99;
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctLevel(msg.get(), sizeof name, name, &level, &flags), DOM_OK);
    EXPECT_STREQ(name, "gold");
    const ItaAcctLevel want{7, 8, {11, 12}, {13, 14}};
    EXPECT_EQ(memcmp(&level, &want, sizeof want), 0);
    EXPECT_EQ(flags, 3u);
}

TEST_F(ItaCodec, ALevelRequestThatLacksEverythingReadsAsUnset) {
    const TlvPtr msg = Message([](Appender& append) { append.U32(0, 26); });
    char name[32] = "before";
    ItaAcctLevel level{1, 2, {3, 4}, {5, 6}};
    uint32_t flags = 99;
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctLevel(msg.get(), sizeof name, name, &level, &flags), DOM_OK);
    EXPECT_STREQ(name, "");
    const ItaAcctLevel want{0, 0, {0xFFFFFFFF, 0xFFFFFFFF}, {0xFFFFFFFF, 0xFFFFFFFF}};
    EXPECT_EQ(memcmp(&level, &want, sizeof want), 0);
    EXPECT_EQ(flags, 0u);
}

TEST_F(ItaCodec, AQuotaRequestCarriesItsStateIn32Bits) {
    const TlvPtr msg(DOM_ita_tlv_EncodeTrafQuotaOut("gold", 0x1234));
    EXPECT_EQ(TypesOf(msg.get()), (Types{0, 52, 60}));
    EXPECT_EQ(FindTlv(msg.get(), 0).U32(), 28u);
    EXPECT_EQ(FindTlv(msg.get(), 60).Length(), 4u);
    char name[32];
    uint16_t state = 0;
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(msg.get(), sizeof name, name, &state), DOM_OK);
    EXPECT_STREQ(name, "gold");
    EXPECT_EQ(state, 0x1234);
}

TEST_F(ItaCodec, AQuotaRequestWithoutStateSwitchesOn) {
    const TlvPtr msg(DOM_ita_tlv_EncodePolicyName("gold"));
    char name[32];
    uint16_t state = 0;
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(msg.get(), sizeof name, name, &state), DOM_OK);
    EXPECT_EQ(state, 1);
}

// Such a setting is of no policy, which the store finds out.
TEST_F(ItaCodec, SettingsWithoutANameReadAnEmptyOne) {
    const TlvPtr msg = Message([](Appender& append) {
        append.Nested(10, [](Appender& item) { item.U32(12, 1); }).U32(60, 7);
    });
    char name[32] = "before";
    MethodEntry methods[6];
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(msg.get(), sizeof name, name, methods), DOM_OK);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(methods[0].method_kind, 1u);
    name[0] = 'x';
    uint16_t state = 0;
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(msg.get(), sizeof name, name, &state), DOM_OK);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(state, 7);
}

TEST_F(ItaCodec, ANameThatHasNoRoomFailsEverySetting) {
    const TlvPtr msg(DOM_ita_tlv_EncodeAcctScheme("gold", SampleMethods()));
    char name[32] = "before";
    MethodEntry methods[6];
    ItaAcctLevel level;
    uint32_t flags;
    uint16_t state;
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(msg.get(), 0, name, methods), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctLevel(msg.get(), 0, name, &level, &flags), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(msg.get(), 0, name, &state), DOM_ERR_FAILED);
    EXPECT_STREQ(name, "before");
}

TEST_F(ItaCodec, NullIsRefusedEverywhere) {
    const MethodEntry methods[6] = {};
    EXPECT_EQ(DOM_ita_tlv_EncodePolicy(nullptr), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodePolicyName(nullptr), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodeAcctScheme(nullptr, methods), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodeAcctScheme("p", nullptr), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodeAcctTogether(nullptr), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodeAcctLevel(nullptr, 1, 1, 1, 1, 1, 1, 1), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodeTrafSeprate(nullptr), nullptr);
    EXPECT_EQ(DOM_ita_tlv_EncodeTrafQuotaOut(nullptr, 1), nullptr);

    ItaPolicy policy;
    char name[32];
    MethodEntry read[6];
    ItaAcctLevel level;
    uint32_t flags;
    uint16_t state;
    EXPECT_EQ(DOM_ita_tlv_DecodePolicy(nullptr, &policy), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(nullptr, 32, name, read), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctLevel(nullptr, 32, name, &level, &flags), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(nullptr, 32, name, &state), DOM_ERR_FAILED);
    const ItaPolicy sample = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&sample));
    EXPECT_EQ(DOM_ita_tlv_DecodePolicy(msg.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctScheme(msg.get(), 32, name, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_ita_tlv_DecodeAcctLevel(msg.get(), 32, nullptr, nullptr, nullptr), DOM_OK);
    EXPECT_EQ(DOM_ita_tlv_DecodeTrafQuotaOut(msg.get(), 32, nullptr, nullptr), DOM_OK);
}

}  // namespace
}  // namespace aaadom
