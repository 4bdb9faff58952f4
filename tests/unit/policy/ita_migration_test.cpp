// Policies that only a former release saved.
#include "unit/policy/ita_data_fixture.h"

namespace aaadom {
namespace {

class ItaMigration : public ItaDataTest {
  protected:
    static std::string SampleBlock() { return golden::OldBlock(golden::SamplePolicy()); }
    /// Whether a block is refused with one line that names its key, and left where it is.
    bool IsRefused(const std::string& block) {
        const size_t lines = fake::LogLines().size();
        PutOld("gold", block);
        const bool refused = Read("gold") == "-";
        EXPECT_TRUE(HasOld("gold"));
        EXPECT_EQ(HasCurrent("gold"), false);
        if (!refused) return false;
        const auto log = fake::LogLines();
        EXPECT_EQ(log.size(), lines + 1);
        EXPECT_NE(log.back().text.find("\"dom-ita-policy-gold\""), std::string::npos);
        return refused;
    }
    /// The sample block with other bytes somewhere.
    static std::string Patched(size_t offset, const std::string& bytes) {
        return SampleBlock().replace(offset, bytes.size(), bytes);
    }
    /// Reads a block of policy "gold" in words, and takes what it left out of the database.
    std::string ReadBlock(const std::string& block) {
        PutOld("gold", block);
        std::string text = Read("gold");
        (void)DOM_ita_db_SetPolicy("gold", 0);
        return text;
    }
};

TEST_F(ItaMigration, AnOldPolicyIsReturnedRewrittenAndItsOldKeyGone) {
    PutOld("gold", SampleBlock());
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
    EXPECT_TRUE(HasCurrent("gold"));
    EXPECT_FALSE(HasOld("gold"));
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
    EXPECT_TRUE(fake::LogLines().empty());
}

// There is no such policy in memory when the daemon starts.
TEST_F(ItaMigration, WhatIsRewrittenIsTheOldRecordAndNotThePolicyInMemory) {
    DOM_ita_policy_Create("gold");
    PutOld("gold", SampleBlock());
    (void)Read("gold");
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
}

TEST_F(ItaMigration, WritesFirstAndDeletesThen) {
    PutOld("gold", SampleBlock());
    fake::ClearDbmCalls();
    (void)Read("gold");
    std::vector<std::string> changes;
    for (const fake::DbmCall& call : fake::DbmCalls())
        if (call.call == "DBM_SetBinary" || call.call == "DBM_DeleteKey")
            changes.push_back(call.call + " " + call.key.c_str());
    EXPECT_EQ(changes, (std::vector<std::string>{"DBM_SetBinary dom-tlv-ita-policy-gold",
                                                 "DBM_DeleteKey dom-ita-policy-gold"}));
    for (const char* name : {"DBM_SetBinary", "DBM_DeleteKey"})
        EXPECT_EQ(fake::DbmCalls(name)[0].key.back(), '\0');
}

TEST_F(ItaMigration, AtMost500BytesAreRead) {
    PutOld("gold", SampleBlock());
    fake::ClearDbmCalls();
    (void)Read("gold");
    EXPECT_EQ(fake::DbmCalls("DBM_GetBinary").back().value_length, 500u);
    EXPECT_EQ(fake::DbmCalls("DBM_GetBinary").back().index, 0);
}

TEST_F(ItaMigration, ReadsThroughTheGivenHandleAndWritesThroughTheInstalledOne) {
    PutOld("gold", SampleBlock());
    DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
    EXPECT_TRUE(HasOld("gold"));
    EXPECT_FALSE(HasCurrent("gold"));
}

TEST_F(ItaMigration, APolicyThatCannotBeRewrittenIsReturnedAndKeepsItsOldKey) {
    PutOld("gold", SampleBlock());
    const uint64_t before = fake::Count(fake::Event::kDbm);
    (void)Read("gold");
    const int calls = static_cast<int>(fake::Count(fake::Event::kDbm) - before);
    (void)DOM_ita_db_SetPolicy("gold", 0);
    PutOld("gold", SampleBlock());
    fake::FailDbmCall(calls - 1);  // the write; the last is the deletion
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
    ASSERT_TRUE(fake::Tripped());
    EXPECT_TRUE(HasOld("gold"));
    EXPECT_FALSE(HasCurrent("gold"));
}

TEST_F(ItaMigration, NoFailureLosesThePolicy) {
    for (int n = 1;; ++n) {
        (void)DOM_ita_db_SetPolicy("gold", 0);
        PutOld("gold", SampleBlock());
        fake::FailAny(n);
        (void)Read("gold");
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_TRUE(HasOld("gold") || HasCurrent("gold")) << "event " << n;
        EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy())) << "event " << n;
        if (!tripped) break;
    }
}

// What a crash between the two steps leaves.
TEST_F(ItaMigration, OfBothRecordsTheCurrentOneIsReadAndTheOldOneLeft) {
    ItaPolicy newer = golden::SamplePolicy();
    newer.together_state = 77;
    AddSample("gold");
    DOM_ita_policy_SetTogetherState("gold", 77);
    ASSERT_EQ(DOM_ita_db_SetPolicy("gold", 1), DOM_OK);
    PutOld("gold", SampleBlock());
    const std::string before = GetCurrent("gold");
    EXPECT_EQ(Read("gold"), Dump(newer));
    EXPECT_TRUE(HasOld("gold"));
    EXPECT_EQ(GetCurrent("gold"), before);
}

// Where a crash had left both records, a current one that could not be read for the moment, because
// memory was short or the database did not answer, was once taken for unreadable: the old record
// came back in its place and was written over it, and every change since the migration was lost.
TEST_F(ItaMigration, ACurrentRecordThatCannotBeReadNowIsNotReplacedByTheOldOne) {
    AddSample("gold");
    DOM_ita_policy_SetTogetherState("gold", 77);
    ASSERT_EQ(DOM_ita_db_SetPolicy("gold", 1), DOM_OK);
    PutOld("gold", SampleBlock());
    const std::string before = GetCurrent("gold");
    const std::string newer = Read("gold");
    for (int n = 1;; ++n) {
        fake::FailAny(n);
        const std::string text = Read("gold");
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        if (!tripped) break;
        EXPECT_EQ(text, "-") << "event " << n;
        EXPECT_EQ(GetCurrent("gold"), before) << "event " << n;
        EXPECT_TRUE(HasOld("gold")) << "event " << n;
    }
    EXPECT_EQ(Read("gold"), newer);
}

TEST_F(ItaMigration, AnUnreadableCurrentRecordIsReplacedByTheOldOne) {
    PutCurrent("gold", "garbage");
    PutOld("gold", SampleBlock());
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
    EXPECT_FALSE(HasOld("gold"));
    EXPECT_EQ(Read("gold"), Dump(golden::SamplePolicy()));
    EXPECT_EQ(fake::LogLines().size(), 1u);
}

TEST_F(ItaMigration, APolicyGetsTheNameByWhichItIsRead) {
    PutOld("silver", SampleBlock());  // the block says "gold"
    EXPECT_EQ(Read("silver"), Dump(golden::SamplePolicy("silver")));
    EXPECT_TRUE(HasCurrent("silver"));
    EXPECT_FALSE(HasCurrent("gold"));
    EXPECT_EQ(Read("silver"), Dump(golden::SamplePolicy("silver")));
}

TEST_F(ItaMigration, ALongNameIsItsFirst31Characters) {
    const std::string longest(31, 'n');
    PutOld(longest.c_str(), golden::OldBlock(golden::SamplePolicy(longest.c_str())));
    EXPECT_EQ(Read((longest + "XYZ").c_str()), Dump(golden::SamplePolicy(longest.c_str())));
    EXPECT_TRUE(HasCurrent(longest.c_str()));
    EXPECT_FALSE(HasOld(longest.c_str()));
}

// ---- the block

// In memory the index stands 4 bytes further on.
TEST_F(ItaMigration, TheLastFourBytesOfAMethodAreNotRead) {
    EXPECT_EQ(ReadBlock(Patched(32 + 40, "\xff\xff\xff\xff")), Dump(golden::SamplePolicy()));
}

TEST_F(ItaMigration, ASchemeNameOf32BytesEndsWhereTheIndexBegins) {
    ItaPolicy want = golden::SamplePolicy();
    want.acct_scheme[0] = golden::Method(2, std::string(32, 's').c_str(), 0x41424344);
    EXPECT_EQ(ReadBlock(Patched(32 + 4, std::string(32, 's') + "ABCD")), Dump(want));
}

TEST_F(ItaMigration, ANameThatFillsItsFieldIsCut) {
    const std::string longest(31, 'n');
    const std::string block = SampleBlock().replace(0, 32, std::string(32, 'n'));
    PutOld(longest.c_str(), block);
    EXPECT_EQ(Read(longest.c_str()), Dump(golden::SamplePolicy(longest.c_str())));
}

TEST_F(ItaMigration, TheLevelCountIsCarriedWhateverItIs) {
    ItaPolicy want = golden::SamplePolicy();
    want.level_count = 0xFFFFFFFF;
    EXPECT_EQ(ReadBlock(Patched(296, "\xff\xff\xff\xff")), Dump(want));
}

TEST_F(ItaMigration, TheLastTwoBytesMayBeMissing) {
    EXPECT_EQ(ReadBlock(SampleBlock().substr(0, 498)), Dump(golden::SamplePolicy()));
    EXPECT_EQ(ReadBlock(Patched(498, "\xff\xff")), Dump(golden::SamplePolicy()));
    PutOld("silver", SampleBlock().substr(0, 498));  // a whole block all the same
    EXPECT_EQ(Read("silver"), Dump(golden::SamplePolicy("silver")));
}

TEST_F(ItaMigration, MethodTypesAreCarriedUpTo31) {
    ItaPolicy want = golden::SamplePolicy();
    want.acct_scheme[5].method_kind = 31;
    EXPECT_EQ(ReadBlock(Patched(32 + 5 * 44, std::string("\0\0\0\x1f", 4))), Dump(want));
}

TEST_F(ItaMigration, AShortBlockSaysALongNameByItsFirst31Characters) {
    const std::string longest(31, 'n');
    ItaPolicy want{};
    CopyText(want.name, longest.c_str());
    PutOld(longest.c_str(), longest);
    EXPECT_EQ(Read((longest + "XYZ").c_str()), Dump(want));
}

// Quota-out is 1 in a new policy and 0 where a block ends before it.
TEST_F(ItaMigration, WhatAShortBlockOfThePolicyLacksIsZero) {
    ItaPolicy want{};
    CopyText(want.name, "gold");
    EXPECT_EQ(ReadBlock("gold"), Dump(want));
    EXPECT_EQ(ReadBlock(SampleBlock().substr(0, 32)), Dump(want));

    want = golden::SamplePolicy();
    want.quota_out_state = 0x0300;
    EXPECT_EQ(ReadBlock(SampleBlock().substr(0, 497)), Dump(want));
    want.quota_out_state = 0;
    EXPECT_EQ(ReadBlock(SampleBlock().substr(0, 496)), Dump(want));
    want.together_state = 0;
    want.separation_state = 0;
    want.levels[1] = {20, 200, {0x21, 0}, {0, 0}};
    EXPECT_EQ(ReadBlock(SampleBlock().substr(0, 300 + 24 + 12)), Dump(want));
}

TEST_F(ItaMigration, NamesBeyondAsciiAreText) {
    const std::string name =
        "gl\xc3\xbc"
        "ck";
    PutOld(name.c_str(), golden::OldBlock(golden::SamplePolicy(name.c_str())));
    EXPECT_EQ(Read(name.c_str()), Dump(golden::SamplePolicy(name.c_str())));
}

// ---- what is no policy

TEST_F(ItaMigration, AnEmptyValueIsRefused) {
    EXPECT_TRUE(IsRefused(""));
}

TEST_F(ItaMigration, AValueLongerThanAPolicyIsRefused) {
    EXPECT_TRUE(IsRefused(SampleBlock() + '\0'));
    EXPECT_TRUE(IsRefused(SampleBlock() + SampleBlock()));
}

TEST_F(ItaMigration, AShortBlockOfAnotherNameIsRefused) {
    EXPECT_TRUE(IsRefused("garbage"));
    EXPECT_TRUE(IsRefused("go"));
    EXPECT_TRUE(IsRefused(Patched(0, "gols").substr(0, 497)));
    EXPECT_TRUE(IsRefused(std::string(100, '\0')));
}

TEST_F(ItaMigration, AWholeBlockWithoutANameIsRefused) {
    EXPECT_TRUE(IsRefused(std::string(500, '\0')));
}

TEST_F(ItaMigration, ABlockThatNoReleaseWroteIsRefused) {
    EXPECT_TRUE(IsRefused(std::string(500, '\xff')));
    EXPECT_TRUE(IsRefused(std::string(500, 'x')));
    std::string noise(500, '\0');
    for (size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>(i * i * 31 + 7);
    EXPECT_TRUE(IsRefused(noise));
}

TEST_F(ItaMigration, ABlockOfThePolicyWithADamagedMethodIsRefused) {
    EXPECT_TRUE(IsRefused(Patched(32 + 5 * 44, std::string("\0\0\0\x20", 4))));
    EXPECT_TRUE(IsRefused(Patched(32 + 5 * 44 + 4, "a\x01")));
    EXPECT_TRUE(IsRefused(Patched(32 + 4, std::string(31, 'a') + "\x7f")));
    EXPECT_TRUE(IsRefused(Patched(4, "\x1b")));
}

// Bytes behind a text's terminator are no part of it.
TEST_F(ItaMigration, WhatLiesBehindATerminatorIsNotRead) {
    EXPECT_EQ(ReadBlock(Patched(5, "\x01\x02")), Dump(golden::SamplePolicy()));
    EXPECT_EQ(ReadBlock(Patched(32 + 4 + 9, "\x01\x02")), Dump(golden::SamplePolicy()));
}

}  // namespace
}  // namespace aaadom
