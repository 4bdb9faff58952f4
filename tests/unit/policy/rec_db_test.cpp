// The saved recording policy.
#include "unit/policy/rec_fixture.h"
#include "unit/policy/store_probe.h"

namespace aaadom {
namespace {

const std::string kKey("connection-recording-policy\0", 28);

/// Before any test has set it.
const DBM_HANDLE handle_at_start = g_hDomRecDBHandle;

class RecDb : public RecTest {
  protected:
    std::string Read() const { return Show(DOM_Rec_db_GetPolicyFromDBByType(handle_, 0)); }
    /// `policy` is consumed.
    static std::string Show(RecPolicy* policy) {
        if (policy == nullptr) return "-";
        const std::string text =
            std::to_string(policy->policy_type) + ": " + ShowMethods(policy->acct_scheme);
        free(policy);
        return text;
    }
    void Put(const std::string& value) const {
        ASSERT_EQ(DBM_SetBinary(handle_, kKey.data(), 28, -1, static_cast<uint32_t>(value.size()),
                                value.data(), 9),
                  0u);
    }
    template <typename Fields>
    void PutMessage(Fields&& fields) const {
        const TlvPtr msg(TLV_Create());
        Appender append(msg.get());
        fields(append);
        Put(fake::ImageOf(msg.get()));
    }
    /// A stored method, numbers big-endian.
    static void Item(Appender& append, uint32_t position, uint32_t kind, const char* name) {
        append.Nested(2, [=](Appender& item) {
            item.U32(1, __builtin_bswap32(position))
                .U32(2, __builtin_bswap32(kind))
                .U32(3, 0)
                .Raw(4, name, static_cast<uint32_t>(strlen(name)));
        });
    }
};

TEST_F(RecDb, NoHandleIsInstalledAtFirst) {
    EXPECT_EQ(handle_at_start, -1);
    DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
    CreateSample();
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_ERR_FAILED);
    EXPECT_NE(DOM_Rec_db_SetPolicy(0, 0), DOM_OK);
    DOM_Rec_db_SetGlobalHandle(handle_);
    EXPECT_EQ(g_hDomRecDBHandle, handle_);
}

TEST_F(RecDb, IsReadAtIndexZero) {
    CreateSample();
    ASSERT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    EXPECT_NE(Read(), "-");
    const auto calls = fake::DbmCalls("DBM_GetBinary");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].index, 0);
}

TEST_F(RecDb, SavedPolicyIsReadBack) {
    InBothRoles([this] {
        CreateSample();
        EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
        EXPECT_EQ(Read(), std::string("0: ") + kSampleMethods);
    });
    EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 0), 1u);
}

TEST_F(RecDb, WriteIsOneBinaryOfTypeNineUnderTheTerminatedModeString) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    const auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].call, "DBM_SetBinary");
    EXPECT_EQ(calls[0].key, kKey);
    EXPECT_EQ(calls[0].key_length, 28u);
    EXPECT_EQ(calls[0].index, -1);
    EXPECT_EQ(calls[0].value_type, 9u);
}

TEST_F(RecDb, ValueIsTheTypeAndSixMethodsInNetworkOrder) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    const TlvPtr msg(fake::Parse(fake::DbmCalls().at(0).value));
    std::string text;
    for (const TlvItem item : TlvWalk(msg.get())) {
        text += std::to_string(item.Type()) + "(";
        if (const TlvPtr sub = item.Sub())
            for (const TlvItem inner : TlvWalk(sub.get()))
                text +=
                    std::to_string(inner.Type()) + "=" +
                    (inner.Type() == 4 ? "name" : std::to_string(__builtin_bswap32(inner.U32()))) +
                    " ";
        text += ")";
    }
    EXPECT_EQ(text,
              "1()2(1=0 2=2 3=16909060 4=name )2(1=1 2=5 3=7 )2(1=2 2=0 3=0 )2(1=3 2=0 3=0 )"
              "2(1=4 2=0 3=0 )2(1=5 2=0 3=0 )");
}

TEST_F(RecDb, PolicyWithoutMethodsIsSavedToo) {
    DOM_Rec_CreatePolicy(0);
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    EXPECT_EQ(Read(), std::string("0: ") + kNoMethods);
}

TEST_F(RecDb, AbsentPolicyIsNotSaved) {
    fake::InRole(fake::kConfigRole, [] { return DOM_Rec_CreatePolicy(0); });
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RecDb, FailedWriteFails) {
    CreateSample();
    for (int n = 1;; ++n) {
        fake::FailAny(n);
        const uint32_t result = DOM_Rec_db_SetPolicy(0, 1);
        if (!fake::Tripped()) break;
        EXPECT_EQ(result, DOM_ERR_FAILED) << n;
    }
}

// Unlike a saved accounting policy's, this deletion tells whether it worked.
TEST_F(RecDb, DeletionReturnsTheDatabasesResult) {
    CreateSample();
    for (const uint16_t operation : {0, 2, 0xFFFF}) {
        DOM_Rec_db_SetPolicy(0, 1);
        EXPECT_EQ(DOM_Rec_db_SetPolicy(0, operation), 0u);
        EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 0), 0u);
        fake::ClearDbmCalls();
        const uint32_t again = DOM_Rec_db_SetPolicy(0, operation);
        EXPECT_NE(again, 0u);
        ASSERT_EQ(fake::DbmCalls("DBM_DeleteKey").size(), 1u);
        EXPECT_EQ(fake::DbmCalls("DBM_DeleteKey")[0].key, kKey);
        EXPECT_EQ(fake::DbmCalls("DBM_DeleteKey")[0].result, again);
    }
}

TEST_F(RecDb, OtherTypesHaveNoSavedForm) {
    CreateSample();
    EXPECT_EQ(DOM_Rec_db_SetPolicy(1, 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_db_SetPolicy(0xFFFFFFFF, 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_db_GetPolicyFromDBByType(handle_, 1), nullptr);
    EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 1), 0u);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(RecDb, ReadingUsesTheGivenHandleAndKey) {
    CreateSample();
    DOM_Rec_db_SetPolicy(0, 1);
    DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
    EXPECT_EQ(Show(DOM_Rec_db_GetPolicyByDBKey(handle_, kKey.data(), 28)),
              std::string("0: ") + kSampleMethods);
    EXPECT_EQ(DOM_Rec_db_GetPolicyByDBKey(handle_, kKey.data(), 27), nullptr);
    EXPECT_EQ(DOM_Rec_db_GetPolicyByDBKey(handle_, nullptr, 28), nullptr);
    EXPECT_EQ(DOM_Rec_db_GetPolicyByDBKey(DBM_INVALID_HANDLE, kKey.data(), 28), nullptr);
    EXPECT_EQ(DOM_Rec_PolicyIsExist(DBM_INVALID_HANDLE, 0), 0u);
}

TEST_F(RecDb, ReadingDoesNotFillTheStore) {
    CreateSample();
    DOM_Rec_db_SetPolicy(0, 1);
    DOM_Rec_DestroyPolicy(0);
    EXPECT_NE(Read(), "-");
    EXPECT_EQ(Stored(), "-");
}

TEST_F(RecDb, NothingSavedIsNothingRead) {
    EXPECT_EQ(Read(), "-");
    Put("");
    EXPECT_EQ(Read(), "-");
    EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 0), 1u);
}

TEST_F(RecDb, DamagedValuesAreRefused) {
    for (const std::string& value : {std::string("x"), std::string("no message at all"),
                                     std::string("TV\1\0\xFF\0\0\0", 8), std::string(70000, 'x')}) {
        Put(value);
        EXPECT_EQ(Read(), "-") << value.size();
    }
}

TEST_F(RecDb, MessageOfMoreThanTheLongestValueIsRefused) {
    PutMessage([](Appender& append) {
        const std::string filler(66000, 'f');
        append.Raw(99, filler.data(), static_cast<uint32_t>(filler.size()));
    });
    EXPECT_EQ(Read(), "-");
}

TEST_F(RecDb, EveryCutValueIsReadSafely) {
    CreateSample();
    DOM_Rec_db_SetPolicy(0, 1);
    const std::string whole = fake::DbmCalls("DBM_SetBinary").at(0).value;
    for (size_t length = 0; length < whole.size(); ++length) {
        Put(whole.substr(0, length));
        EXPECT_EQ(Read(), "-") << length;
    }
}

TEST_F(RecDb, EmptyMessageIsAPolicyWithoutMethods) {
    PutMessage([](Appender&) {});
    EXPECT_EQ(Read(), std::string("0: ") + kNoMethods);
}

// The library's callers test the type before they use it.
TEST_F(RecDb, StoredTypeIsReturnedAsItIs) {
    PutMessage([](Appender& append) { append.U32(1, __builtin_bswap32(5)); });
    EXPECT_EQ(Read(), std::string("5: ") + kNoMethods);
    DOM_Rec_SetPolicy(DOM_Rec_db_GetPolicyFromDBByType(handle_, 0));
    EXPECT_EQ(Stored(), "-");
}

TEST_F(RecDb, OnlyTheLastMethodDecides) {
    PutMessage([](Appender& append) {
        append.Raw(2, "damaged", 7);
        Item(append, 9, 3, "outside");
        Item(append, 1, 3, "good");
    });
    EXPECT_EQ(Read(), "0: 0//0 3/good/0 0//0 0//0 0//0 0//0");
    PutMessage([](Appender& append) {
        Item(append, 1, 3, "good");
        append.Raw(2, "damaged", 7);
    });
    EXPECT_EQ(Read(), "-");
    PutMessage([](Appender& append) { Item(append, 6, 3, "outside"); });
    EXPECT_EQ(Read(), "-");
}

TEST_F(RecDb, RefusedRecordIsNotLeftBehind) {
    PutMessage([](Appender& append) { append.Raw(2, "damaged", 7); });
    EXPECT_FALSE(LeavesMemory([this] {
        EXPECT_EQ(Read(), "-");
        fake::ClearDbmCalls();
    }));
}

TEST_F(RecDb, FailedReadsGiveNothing) {
    CreateSample();
    DOM_Rec_db_SetPolicy(0, 1);
    for (const fake::Event event :
         {fake::Event::kDbm, fake::Event::kAllocation, fake::Event::kMessage}) {
        bool refused = false;
        for (int n = 1;; ++n) {
            fake::Fail(event, n);
            const std::string text = Read();
            if (!fake::Tripped()) break;
            refused |= text == "-";
        }
        EXPECT_TRUE(refused) << static_cast<int>(event);
        fake::DisarmFailures();
    }
}

// A method that could not be opened for lack of memory was once passed over like a damaged one, and
// the policy came back without it.
TEST_F(RecDb, APolicyIsReadWholeOrNotAtAllWhenMemoryIsShort) {
    CreateSample();
    ASSERT_EQ(DOM_Rec_db_SetPolicy(0, 1), DOM_OK);
    for (int n = 1;; ++n) {
        fake::FailMessage(n);
        const std::string text = Read();
        if (!fake::Tripped()) break;
        EXPECT_EQ(text, "-") << "message " << n;
    }
}

TEST_F(RecDb, ChangeInfoNamesTypeNineOperationAndPolicyType) {
    DomDbUpdateReq change = Filled();
    DOM_Rec_db_SetDbChangeInfo(0xFFFFFFFE, 7, &change);
    DomDbUpdateReq want = Filled();
    want.object_type = 9;
    want.operation = 7;
    want.rec_policy_index = 0xFFFFFFFE;
    EXPECT_EQ(memcmp(&change, &want, sizeof want), 0);
    DOM_Rec_db_SetDbChangeInfo(0, 1, nullptr);
}

TEST_F(RecDb, ObjectTypeNineIsSavedAndDeleted) {
    CreateSample();
    DomDbUpdateReq request{};
    DOM_Rec_db_SetDbChangeInfo(0, 1, &request);
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 0), 1u);
    DOM_Rec_db_SetDbChangeInfo(0, 0, &request);
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    EXPECT_EQ(DOM_Rec_PolicyIsExist(handle_, 0), 0u);
    EXPECT_NE(DOM_SetDataToDB(&request), DOM_OK);
    request.rec_policy_index = 1;
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
