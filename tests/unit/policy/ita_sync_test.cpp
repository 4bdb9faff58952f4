#include <algorithm>

#include "unit/batch_sync.h"
#include "unit/policy/ita_data_fixture.h"
#include "unit/policy/store_probe.h"

namespace aaadom {
namespace {

constexpr int32_t kDescriptor = 9;
using Names = std::vector<std::string>;

class ItaSync : public ItaDataTest {
  protected:
    void SetUp() override {
        ItaDataTest::SetUp();
        CountSlotCalls();
    }
    void TearDown() override {
        EXPECT_EQ(to_config_thread + to_pam, 0);
        ItaDataTest::TearDown();
    }
    /// The message inside a batch record.
    static TlvPtr Body(const std::string& image) { return BodyInHeads(image, 5, 4, DOM_OP_SET); }
    /// The names of the policies that were flushed to the descriptor, in order, without the first
    /// `skipped`.
    static Names Sent(size_t skipped = 0) {
        Names names;
        const auto flushes = fake::FlushCalls();
        for (size_t i = skipped; i < flushes.size(); ++i) {
            const fake::FlushCall& flush = flushes[i];
            EXPECT_EQ(flush.fd, kDescriptor);
            EXPECT_EQ(flush.held_locks, 0);
            const TlvPtr body = Body(flush.image);
            EXPECT_EQ(FindTlv(body.get(), 0).U32(), 22u);
            ItaPolicy policy;
            EXPECT_EQ(DOM_ita_tlv_DecodePolicy(body.get(), &policy), DOM_OK);
            names.emplace_back(policy.name);
        }
        return names;
    }
    static void AddMany() {
        for (uint32_t i = 0; i < 300; ++i) {
            const std::string name = "policy-" + std::to_string(i);
            ItaPolicy* policy = NewSample(name.c_str());
            policy->level_count = i;
            policy->levels[0].level_value = i * 7;
            DOM_ita_policy_AddPolicy(policy);
        }
    }
};

TEST_F(ItaSync, PoliciesGoBucketByBucketEachFromItsHead) {
    AddMany();  // more than buckets, so chains have several nodes
    const Names order = AllNames();
    ASSERT_EQ(order.size(), 300u);
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    EXPECT_EQ(Sent(), order);
}

TEST_F(ItaSync, AReplacedPolicyGoesFirstOfItsChain) {
    AddMany();
    const Names before = AllNames();
    AddSample(before[1].c_str());
    const Names order = AllNames();
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    EXPECT_EQ(Sent(), order);
}

TEST_F(ItaSync, APeerEndsWithTheSamePolicies) {
    AddMany();
    const std::vector<std::string> dump = DumpAll();
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    const auto sent = fake::FlushCalls();
    ASSERT_EQ(sent.size(), 300u);

    DOM_ita_policy_Fini();
    ASSERT_EQ(DOM_ita_policy_Init(), DOM_OK);
    for (const fake::FlushCall& flush : sent) {
        const TlvPtr body = Body(flush.image);
        EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(body.get(), 0, nullptr), DOM_OK);
    }
    std::vector<std::string> received = DumpAll();
    EXPECT_NE(received, dump) << "each chain is the other way round";
    std::vector<std::string> sorted = dump;
    std::sort(sorted.begin(), sorted.end());
    std::sort(received.begin(), received.end());
    EXPECT_EQ(received, sorted);
}

TEST_F(ItaSync, ANewPolicySurvivesTheWay) {
    DOM_ita_policy_Create("new");
    const std::string before = Stored("new");
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    DOM_ita_policy_Delete("new");
    const TlvPtr body = Body(fake::FlushCalls()[0].image);
    EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(body.get(), 0, nullptr), DOM_OK);
    EXPECT_EQ(Stored("new"), before);
}

TEST_F(ItaSync, NothingGoesToANegativeDescriptor) {
    AddSample();
    for (const int32_t fd : {-1, INT32_MIN}) DOM_ita_bthsyn_SendPolicys(fd);
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(ItaSync, DescriptorZeroIsOne) {
    AddSample();
    DOM_ita_bthsyn_SendPolicys(0);
    ASSERT_EQ(fake::FlushCalls().size(), 1u);
    EXPECT_EQ(fake::FlushCalls()[0].fd, 0);
}

// Once for all of them, so that a batch is the table of one moment; Sent sees that none is held
// while sending.
TEST_F(ItaSync, PoliciesAreEncodedUnderTheMutex) {
    for (const char* name : {"a", "b", "c"}) AddSample(name);
    EXPECT_EQ(LocksOf([] { DOM_ita_bthsyn_SendPolicys(kDescriptor); }), 1u);
    EXPECT_EQ(Sent().size(), 3u);
}

TEST_F(ItaSync, NothingGoesFromTheConfigurationThread) {
    for (const uint32_t role : {1u, 0x10001u}) {
        fake::InRole(role, [] {
            AddSample();
            DOM_ita_bthsyn_SendPolicys(kDescriptor);
            return 0;
        });
    }
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(ItaSync, NothingGoesWithoutATable) {
    DOM_ita_policy_Fini();
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    EXPECT_TRUE(fake::FlushCalls().empty());
    ASSERT_EQ(DOM_ita_policy_Init(), DOM_OK);
}

TEST_F(ItaSync, TheFirstSendThatFailsEndsTheBatch) {
    AddMany();
    const Names order = AllNames();
    fake::SetFlushResult(0x10000);  // only the low 16 bits tell of a success
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    EXPECT_EQ(Sent(), (Names{order[0]}));
}

// With one event failing, what was sent is a beginning of the batch, never one with a gap.
TEST_F(ItaSync, NoFailureLeavesAGap) {
    for (const char* name : {"a", "b", "c", "d"}) AddSample(name);
    const Names order = AllNames();
    for (int n = 1;; ++n) {
        const size_t before = fake::FlushCalls().size();
        fake::FailAny(n);
        DOM_ita_bthsyn_SendPolicys(kDescriptor);
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        const Names sent = Sent(before);
        ASSERT_LE(sent.size(), order.size());
        EXPECT_TRUE(std::equal(sent.begin(), sent.end(), order.begin())) << "event " << n;
        if (!tripped) {
            EXPECT_EQ(sent, order);
            break;
        }
    }
}

// What comes before a policy that cannot be encoded is sent.
TEST_F(ItaSync, PoliciesBeforeAFailedEncodingAreSent) {
    for (const char* name : {"a", "b"}) AddSample(name);
    const ItaPolicy sample = golden::SamplePolicy();
    const uint64_t before = fake::Count(fake::Event::kMessage);
    TLV_Destroy(DOM_ita_tlv_EncodePolicy(&sample));
    const uint64_t messages = fake::Count(fake::Event::kMessage) - before;
    fake::FailMessage(static_cast<int>(messages) + 1);  // the first of the second policy
    DOM_ita_bthsyn_SendPolicys(kDescriptor);
    ASSERT_TRUE(fake::Tripped());
    EXPECT_EQ(Sent(), (Names{AllNames()[0]}));
}

// ---- receiving

TEST_F(ItaSync, AReceivedPolicyReplacesTheOneOfItsName) {
    DOM_ita_policy_Create("gold");
    const ItaPolicy sample = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&sample));
    for (const uint16_t ignored : {0, 1, 2}) {
        DomDbUpdateReq change = Filled();
        EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(msg.get(), ignored, &change), DOM_OK);
        ExpectChange(change, "gold", 1);
        EXPECT_EQ(DumpAll(), (std::vector<std::string>{Dump(sample)}));
    }
}

// A new policy has quota-out 1 and a method of kind 5.
TEST_F(ItaSync, AReceivedPolicyHasNoDefaults) {
    const TlvPtr msg = Message([](Appender& append) { append.Text(52, "p"); });
    EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(msg.get(), 0, nullptr), DOM_OK);
    ItaPolicy want{};
    CopyText(want.name, "p");
    EXPECT_EQ(Stored("p"), Dump(want));
}

TEST_F(ItaSync, AReceivedPolicyIsFoundByItsCutName) {
    const TlvPtr msg =
        Message([](Appender& append) { append.Text(52, std::string(60, 'n').c_str()); });
    DomDbUpdateReq change = Filled();
    EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(msg.get(), 0, &change), DOM_OK);
    const std::string longest(31, 'n');
    EXPECT_EQ(DOM_ita_IsPolicyExist(longest.c_str()), 1u);
    ExpectChange(change, longest.c_str(), 1);
}

TEST_F(ItaSync, WhatCannotBeDecodedChangesNothing) {
    AddSample();
    const auto before = DumpAll();
    const TlvPtr broken =
        Message([](Appender& append) { append.Text(52, "gold").Raw(56, "garbage", 7); });
    for (TLV_MSG* msg : {broken.get(), static_cast<TLV_MSG*>(nullptr)}) {
        DomDbUpdateReq change = Filled();
        EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(msg, 0, &change), DOM_ERR_FAILED);
        ExpectUntouched(change);
    }
    EXPECT_EQ(DumpAll(), before);
}

TEST_F(ItaSync, ReceivingIsRefusedOnTheConfigurationThread) {
    const ItaPolicy sample = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&sample));
    for (const uint32_t role : {1u, 0x10001u}) {
        fake::InRole(role, [&] {
            DomDbUpdateReq change = Filled();
            EXPECT_EQ(DOM_ita_bthsyn_RecvOnePolicy(msg.get(), 0, &change), DOM_ERR_FAILED);
            ExpectUntouched(change);
            EXPECT_TRUE(DumpAll().empty());
            return 0;
        });
    }
}

TEST_F(ItaSync, ReceivingWithoutMemoryChangesNothing) {
    const ItaPolicy sample = golden::SamplePolicy();
    const TlvPtr msg(DOM_ita_tlv_EncodePolicy(&sample));
    for (int n = 1;; ++n) {
        fake::FailAny(n);
        const uint32_t result = DOM_ita_bthsyn_RecvOnePolicy(msg.get(), 0, nullptr);
        if (!fake::Tripped()) {
            EXPECT_EQ(result, DOM_OK);
            break;
        }
        EXPECT_EQ(result, DOM_ERR_FAILED) << "event " << n;
        EXPECT_TRUE(DumpAll().empty()) << "event " << n;
    }
}

}  // namespace
}  // namespace aaadom
