// Messages of the recording policy and what the processors make of them.
#include "unit/policy/rec_fixture.h"

namespace aaadom {
namespace {

class RecMessage : public RecTest {
  protected:
    using Processor = uint32_t (*)(TLV_MSG* msg, uint16_t operation, DomDbUpdateReq* change);

    /// `msg` is consumed.
    uint32_t Process(Processor process, TLV_MSG* msg, uint16_t operation) {
        const TlvPtr owned(msg);
        change_ = Filled();
        return process(owned.get(), operation, &change_);
    }
    static std::string TypesOf(TLV_MSG* msg) {
        std::string text;
        for (const TlvItem item : TlvWalk(msg)) text += std::to_string(item.Type()) + " ";
        return text;
    }
    static TLV_MSG* Scheme(uint32_t type = 0) {
        const RecSample sample;
        return DOM_Rec_tlv_EncodeAcctScheme(type, sample.methods);
    }
    static TLV_MSG* Whole(uint32_t type = 0) {
        const RecSample sample;
        RecPolicy policy{};
        policy.policy_type = type;
        memcpy(policy.acct_scheme, sample.methods, sizeof policy.acct_scheme);
        return DOM_Rec_tlv_EncodePolicy(&policy);
    }

    DomDbUpdateReq change_{};
};

TEST_F(RecMessage, MessagesCarryCodeTypeAndItems) {
    struct {
        TLV_MSG* msg;
        uint32_t code;
        const char* types;
    } const kMessages[] = {{Whole(9), 31, "0 82 10 10 "},
                           {DOM_Rec_tlv_EncodePolicyType(9), 32, "0 82 "},
                           {Scheme(9), 33, "0 82 10 10 "}};
    for (const auto& [raw, code, types] : kMessages) {
        const TlvPtr msg(raw);
        ASSERT_NE(msg, nullptr);
        EXPECT_EQ(TypesOf(msg.get()), types);
        EXPECT_EQ(FindTlv(msg.get(), 0).U32(), code);
        EXPECT_EQ(FindTlv(msg.get(), 82).U32(), 9u);
        EXPECT_EQ(DOM_Rec_tlv_DecodePolicyType(msg.get()), 9u);
    }
}

TEST_F(RecMessage, EncodersOfNullGiveNothing) {
    EXPECT_EQ(DOM_Rec_tlv_EncodePolicy(nullptr), nullptr);
    EXPECT_EQ(DOM_Rec_tlv_EncodeAcctScheme(0, nullptr), nullptr);
}

TEST_F(RecMessage, EncodersFailWholeWithoutMemory) {
    for (TLV_MSG* (*encode)() : {+[] { return Whole(); }, +[] { return Scheme(); },
                                 +[] { return DOM_Rec_tlv_EncodePolicyType(0); }}) {
        for (int n = 1;; ++n) {
            fake::FailAny(n);
            const TlvPtr msg(encode());
            if (!fake::Tripped()) break;
            EXPECT_EQ(msg, nullptr) << n;
        }
        fake::DisarmFailures();
    }
}

TEST_F(RecMessage, DecodedSchemeIsTheEncodedOne) {
    for (TLV_MSG* raw : {Whole(), Scheme()}) {
        const TlvPtr msg(raw);
        MethodEntry methods[DOM_METHODS];
        memset(methods, 0x5A, sizeof methods);
        EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), sizeof methods, methods), 0u);
        EXPECT_EQ(ShowMethods(methods), kSampleMethods);
    }
}

// A scheme that was short because memory was went into the tables and the database of a policy
// whose sender was answered that all of it was stored.
TEST_F(RecMessage, SchemeThatCannotBeReadForWantOfMemoryIsNoneAndChangesNothing) {
    ASSERT_EQ(DOM_Rec_CreatePolicy(0), DOM_OK);
    const TlvPtr msg(Scheme());
    for (int n = 1; n <= 2; ++n) {
        MethodEntry methods[DOM_METHODS];
        fake::FailMessage(n);
        EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), sizeof methods, methods), DOM_ERR_FAILED);
        EXPECT_TRUE(fake::Tripped()) << n;
        EXPECT_EQ(ShowMethods(methods), kNoMethods);
        for (const Processor process : {DOM_Rec_AcctSchemeProc, DOM_Rec_PolicyDataProc}) {
            TLV_MSG* sent = Scheme();
            fake::FailMessage(n);
            EXPECT_EQ(Process(process, sent, 1), DOM_ERR_FAILED);
        }
        fake::DisarmFailures();
        EXPECT_EQ(ShowMethods(DOM_Rec_GetPolicyByType(0)->acct_scheme), kNoMethods);
    }
}

TEST_F(RecMessage, SchemeDecoderReturnsTheType) {
    const TlvPtr msg(Scheme(0xFFFFFFFF));
    MethodEntry methods[DOM_METHODS];
    EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), sizeof methods, methods), 0xFFFFFFFFu);
    EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), sizeof methods, nullptr), 0xFFFFFFFFu);
}

TEST_F(RecMessage, SchemeDecoderClearsAndFillsExactlyTheGivenSize) {
    const TlvPtr msg(Scheme());
    const RecSample sample;
    for (const uint32_t size : {0u, 1u, 4u, 43u, 44u, 100u, 263u, 264u, 300u}) {
        std::string want(320, 'x');
        std::string room = want;
        want.replace(0, size, size, '\0');
        memcpy(want.data(), sample.methods, size < sizeof sample.methods ? size : 264u);
        EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), size, room.data()), 0u);
        EXPECT_EQ(room, want) << size;
    }
}

TEST_F(RecMessage, MessageWithoutItemsIsAnEmptyScheme) {
    const TlvPtr msg(DOM_Rec_tlv_EncodePolicyType(0));
    MethodEntry methods[DOM_METHODS];
    memset(methods, 0x5A, sizeof methods);
    EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), sizeof methods, methods), 0u);
    EXPECT_EQ(ShowMethods(methods), kNoMethods);
}

TEST_F(RecMessage, MessageWithoutATypeIsOfTypeZero) {
    const TlvPtr msg(MessageBuilder(32).Build());
    EXPECT_EQ(DOM_Rec_tlv_DecodePolicyType(msg.get()), 0u);
}

TEST_F(RecMessage, NoMessageIsOfNoType) {
    MethodEntry methods[DOM_METHODS];
    EXPECT_NE(DOM_Rec_tlv_DecodePolicyType(nullptr), 0u);
    EXPECT_NE(DOM_Rec_tlv_DecodeAcctScheme(nullptr, sizeof methods, methods), 0u);
    EXPECT_EQ(ShowMethods(methods), kNoMethods);
}

TEST_F(RecMessage, HostileItemsStayInsideTheList) {
    for (const uint32_t position : {6u, 0x10000u, 0xFFFFFFFFu}) {
        const TlvPtr msg(MessageBuilder(33).Build([position](Appender& append) {
            append.U32(82, 0).Nested(10, [position](Appender& item) {
                item.U32(11, position).U32(12, 3).Text(13, "x").U32(30, 1);
            });
            append.Raw(10, "no message", 10);
        }));
        MethodEntry methods[DOM_METHODS];
        EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), sizeof methods, methods), 0u);
        EXPECT_EQ(ShowMethods(methods), kNoMethods);
        EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(msg.get(), 44, methods), 0u);
    }
}

TEST_F(RecMessage, OtherTypesAreRefusedWithoutARecord) {
    InBothRoles([this] {
        for (const uint32_t type : {1u, 0xFFFFFFFFu}) {
            EXPECT_EQ(Process(DOM_Rec_PolicyProc, DOM_Rec_tlv_EncodePolicyType(type), 1),
                      DOM_ERR_FAILED);
            ExpectUntouched(change_);
            EXPECT_EQ(Process(DOM_Rec_AcctSchemeProc, Scheme(type), 1), DOM_ERR_FAILED);
            ExpectUntouched(change_);
            EXPECT_EQ(Process(DOM_Rec_PolicyDataProc, Whole(type), 1), DOM_ERR_FAILED);
            ExpectUntouched(change_);
        }
        EXPECT_EQ(Process(DOM_Rec_PolicyProc, nullptr, 1), DOM_ERR_FAILED);
        EXPECT_EQ(Process(DOM_Rec_AcctSchemeProc, nullptr, 1), DOM_ERR_FAILED);
        EXPECT_EQ(Process(DOM_Rec_PolicyDataProc, nullptr, 1), DOM_ERR_FAILED);
        ExpectUntouched(change_);
        EXPECT_EQ(Stored(), "-");
    });
}

TEST_F(RecMessage, CreatesOnceAndRecordsBothTimes) {
    InBothRoles([this] {
        EXPECT_EQ(Process(DOM_Rec_PolicyProc, DOM_Rec_tlv_EncodePolicyType(0), 1), DOM_OK);
        ExpectChange(change_, 1);
        EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
        EXPECT_EQ(Process(DOM_Rec_PolicyProc, DOM_Rec_tlv_EncodePolicyType(0), 1), DOM_ERR_EXISTS);
        ExpectChange(change_, 1);
    });
}

TEST_F(RecMessage, EveryOtherOperationDeletesTheCallersPolicy) {
    InBothRoles([this] {
        for (const uint16_t operation : {0, 2, 6, 0xFFFF}) {
            fake::InRole(fake::kWorkingRole, [] { return DOM_Rec_CreatePolicy(0); });
            fake::InRole(fake::kConfigRole, [] { return DOM_Rec_CreatePolicy(0); });
            EXPECT_EQ(Process(DOM_Rec_PolicyProc, DOM_Rec_tlv_EncodePolicyType(0), operation),
                      DOM_OK);
            ExpectChange(change_, operation);
            EXPECT_EQ(Stored(), "-");
            const uint32_t other = fake::role_of_this_thread == 0 ? 1 : 0;
            EXPECT_EQ(fake::InRole(other, [] { return DOM_Rec_IsPolicyExist(0); }), 1u);
            EXPECT_EQ(Process(DOM_Rec_PolicyProc, DOM_Rec_tlv_EncodePolicyType(0), operation),
                      DOM_ERR_NOT_FOUND);
            ExpectChange(change_, operation);
            DOM_Rec_DestroyPolicy(0);
            DOM_Rec_DestroyThrPolicy(0);
        }
    });
}

TEST_F(RecMessage, CreationWithoutMemoryIsRecordedAndFails) {
    const TlvPtr msg(DOM_Rec_tlv_EncodePolicyType(0));
    change_ = Filled();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_Rec_PolicyProc(msg.get(), 1, &change_), DOM_ERR_NO_MEMORY);
    ExpectChange(change_, 1);
}

TEST_F(RecMessage, SchemeIsSetAndUnsetAndThePolicyStays) {
    InBothRoles([this] {
        EXPECT_EQ(DOM_Rec_CreatePolicy(0), DOM_OK);
        EXPECT_EQ(Process(DOM_Rec_AcctSchemeProc, Scheme(), 1), DOM_OK);
        ExpectChange(change_, 1);
        EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
        for (const uint16_t operation : {0, 2}) {
            const RecSample sample;
            DOM_Rec_policy_SetAcctScheme(0, sample.methods);
            EXPECT_EQ(Process(DOM_Rec_AcctSchemeProc, Scheme(), operation), DOM_OK);
            ExpectChange(change_, 1);
            EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
        }
    });
}

TEST_F(RecMessage, SchemeMessageWithoutItemsEmptiesTheScheme) {
    CreateSample();
    EXPECT_EQ(Process(DOM_Rec_AcctSchemeProc, DOM_Rec_tlv_EncodePolicyType(0), 1), DOM_OK);
    EXPECT_EQ(Stored(), std::string("0: ") + kNoMethods);
}

TEST_F(RecMessage, SchemeOfAnAbsentPolicyIsRecordedAndNotFound) {
    for (const uint16_t operation : {0, 1}) {
        EXPECT_EQ(Process(DOM_Rec_AcctSchemeProc, Scheme(), operation), DOM_ERR_NOT_FOUND);
        ExpectChange(change_, 1);
    }
    EXPECT_EQ(Stored(), "-");
}

TEST_F(RecMessage, WholePolicyIsTakenOverWhateverTheOperation) {
    InBothRoles([this] {
        for (const uint16_t operation : {1, 0, 7}) {
            EXPECT_EQ(Process(DOM_Rec_PolicyDataProc, Whole(), operation), DOM_OK);
            ExpectChange(change_, operation);
            EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
            DOM_Rec_policy_UnSetAcctScheme(0);
            RecPolicy* there = DOM_Rec_GetPolicyByType(0);
            EXPECT_EQ(Process(DOM_Rec_PolicyDataProc, Whole(), operation), DOM_OK);
            EXPECT_EQ(DOM_Rec_GetPolicyByType(0), there);
            EXPECT_EQ(Stored(), std::string("0: ") + kSampleMethods);
            Process(DOM_Rec_PolicyProc, DOM_Rec_tlv_EncodePolicyType(0), 0);
        }
    });
}

TEST_F(RecMessage, WholePolicyWithoutMemoryIsRecordedAndFails) {
    const TlvPtr msg(Whole());
    for (int n = 1;; ++n) {
        change_ = Filled();
        fake::FailAllocation(n);
        const uint32_t result = DOM_Rec_PolicyDataProc(msg.get(), 1, &change_);
        if (!fake::Tripped()) break;
        ExpectChange(change_, 1);
        if (result != DOM_OK) {
            EXPECT_EQ(result, DOM_ERR_NO_MEMORY);
            EXPECT_EQ(Stored(), "-");
        }
        DOM_Rec_DestroyPolicy(0);
    }
}

TEST_F(RecMessage, ChangeRecordMayBeNull) {
    const TlvPtr msg(Whole());
    EXPECT_EQ(DOM_Rec_PolicyDataProc(msg.get(), 1, nullptr), DOM_OK);
    EXPECT_EQ(DOM_Rec_AcctSchemeProc(msg.get(), 1, nullptr), DOM_OK);
    EXPECT_EQ(DOM_Rec_PolicyProc(msg.get(), 0, nullptr), DOM_OK);
}

}  // namespace
}  // namespace aaadom
