// Batch synchronisation of the recording policy, and a peer that takes it over.
#include <aaadom/restore.h>
#include <aaadom/service.h>

#include <vector>

#include "unit/policy/rec_fixture.h"

namespace aaadom {
namespace {

constexpr int32_t kDescriptor = 9;

/// What a slot of the service table got.
struct SlotCall {
    int slot;
    uint32_t first;
    uint32_t second;
    std::string image;
};
std::vector<SlotCall> slot_calls;
uint32_t slot_result = 0;

class RecSync : public RecTest {
  protected:
    void SetUp() override {
        RecTest::SetUp();
        slot_calls.clear();
        slot_result = 0;
        AAADService service = fake::RoleService();
        service.sync_msg_to_cfg_thr = [](uint32_t kind, uint32_t four, TLV_MSG* msg) {
            slot_calls.push_back({12, kind, four, fake::ImageOf(msg)});
            TLV_Destroy(msg);
            return slot_result;
        };
        service.cfg_thr_msg_to_pam = [](uint32_t channel, TLV_MSG* msg) {
            slot_calls.push_back({14, channel, 0, fake::ImageOf(msg)});
            return slot_result;
        };
        DOM_SetAAADService(&service);
    }
    /// Both heads and the policy inside, in words.
    static std::string Show(const std::string& image) {
        const TlvPtr record(fake::Parse(image));
        TLV_ITER* it = TLV_GetFirst(record.get());
        std::string text = std::to_string(AAA_GetUINTTlvValue(record.get(), it));
        it = TLV_GetNext(record.get(), it);
        text += "," + std::to_string(AAA_GetUINTTlvValue(record.get(), it));
        const TlvPtr request(AAA_DelAaadHead(record.get()));
        uint32_t operation = 99;
        const TlvPtr body(AAA_DelOpHead(request.get(), &operation));
        text += " op " + std::to_string(operation);
        text += " code " + std::to_string(FindTlv(body.get(), 0).U32());
        MethodEntry methods[DOM_METHODS];
        text += " type " + std::to_string(DOM_Rec_tlv_DecodeAcctScheme(body.get(), 264, methods));
        return text + ": " + ShowMethods(methods);
    }
    static std::string Expected() {
        return std::string("5,4 op 0 code 31 type 0: ") + kSampleMethods;
    }
};

TEST_F(RecSync, WithoutAPolicyNothingIsSentAndThatIsSuccess) {
    InBothRoles([] {
        EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(kDescriptor), DOM_OK);
        EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(-1), DOM_OK);
    });
    EXPECT_TRUE(slot_calls.empty());
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(RecSync, WorkingRoleSendsToTheDescriptorWithoutALock) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(kDescriptor), DOM_OK);
    ASSERT_EQ(fake::FlushCalls().size(), 1u);
    EXPECT_EQ(fake::FlushCalls()[0].fd, kDescriptor);
    EXPECT_EQ(fake::FlushCalls()[0].held_locks, 0);
    EXPECT_EQ(Show(fake::FlushCalls()[0].image), Expected());
    EXPECT_TRUE(slot_calls.empty());
}

// Unlike the batches of the other stores this one goes to any target and from both roles.
TEST_F(RecSync, NegativeTargetGoesToTheConfigurationThread) {
    InBothRoles([] {
        slot_calls.clear();
        CreateSample();
        EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(-1), DOM_OK);
        ASSERT_EQ(slot_calls.size(), 1u);
        EXPECT_EQ(slot_calls[0].slot, 12);
        EXPECT_EQ(slot_calls[0].first, 5u);
        EXPECT_EQ(slot_calls[0].second, 4u);
        EXPECT_EQ(Show(slot_calls[0].image), Expected());
    });
    EXPECT_TRUE(fake::FlushCalls().empty());
}

TEST_F(RecSync, ConfigurationThreadSendsItsPolicyToTheChannel) {
    fake::InRole(fake::kConfigRole, [] {
        CreateSample();
        EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(kDescriptor), DOM_OK);
        return 0;
    });
    ASSERT_EQ(slot_calls.size(), 1u);
    EXPECT_EQ(slot_calls[0].slot, 14);
    EXPECT_EQ(slot_calls[0].first, 9u);
    EXPECT_EQ(Show(slot_calls[0].image), Expected());
}

TEST_F(RecSync, ResultOfTheSendIsReturned) {
    CreateSample();
    slot_result = 77;
    EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(-1), 77u);
    EXPECT_EQ(DOM_Rec_tlv_SendBthPolicy(0, -1), 77u);
    fake::FailFlush();
    EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(kDescriptor), DOM_ERR_FAILED);
}

TEST_F(RecSync, OtherTypesHaveNothingToSend) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_tlv_SendBthPolicy(1, kDescriptor), DOM_OK);
    EXPECT_TRUE(fake::FlushCalls().empty());
    EXPECT_EQ(DOM_Rec_tlv_SendBthPolicy(0, kDescriptor), DOM_OK);
    EXPECT_EQ(fake::FlushCalls().size(), 1u);
}

TEST_F(RecSync, MessageThatCannotBeBuiltFailsAndSendsNothing) {
    CreateSample();
    int failures = 0;
    for (int n = 1;; ++n, ++failures) {
        slot_calls.clear();
        fake::FailAny(n);
        const uint32_t result = DOM_Rec_bthsyn_SendPolicys(-1);
        if (!fake::Tripped()) break;
        fake::DisarmFailures();
        EXPECT_EQ(result, DOM_ERR_FAILED) << n;
        EXPECT_TRUE(slot_calls.empty()) << n;
    }
    EXPECT_GT(failures, 4);
}

TEST_F(RecSync, PeerEndsWithAnEqualPolicy) {
    CreateSample();
    const std::string sent = Stored();
    EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(kDescriptor), DOM_OK);
    DOM_Rec_DestroyPolicy(0);
    const TlvPtr record(fake::Parse(fake::FlushCalls().at(0).image));
    InBothRoles([&] {
        EXPECT_EQ(DOM_UpdateCfgData(record.get(), 0, 0, nullptr, nullptr), DOM_OK);
        EXPECT_EQ(Stored(), sent);
    });
}

TEST_F(RecSync, PeersSchemeIsReplacedByAnUnsetOne) {
    DOM_Rec_CreatePolicy(0);
    EXPECT_EQ(DOM_Rec_bthsyn_SendPolicys(kDescriptor), DOM_OK);
    DOM_Rec_DestroyPolicy(0);
    CreateSample();
    const TlvPtr record(fake::Parse(fake::FlushCalls().at(0).image));
    EXPECT_EQ(DOM_UpdateCfgData(record.get(), 0, 0, nullptr, nullptr), DOM_OK);
    EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
}

// A batch only adds, so a whole policy is taken over from a deletion too; the record of the change
// has the operation as it came, and a change that is saved follows it.
TEST_F(RecSync, WholePolicyOfADeletionIsTakenOverAndItsRecordDeleted) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    RecPolicy policy;
    ASSERT_EQ(DOM_Rec_GetPolicy(0, &policy), DOM_OK);
    DOM_Rec_DestroyPolicy(0);
    const TlvPtr body(DOM_Rec_tlv_EncodePolicy(&policy));
    const TlvPtr request(AAA_AddOpHead(DOM_OP_DELETE, body.get()));
    EXPECT_EQ(DOM_RestoreData(request.get(), 1, 0, 0, nullptr, nullptr), DOM_OK);
    EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
    EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 0), 0u);
}

}  // namespace
}  // namespace aaadom
