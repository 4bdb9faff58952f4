#include "unit/mgmt/rows_fixture.h"

namespace aaadom {
namespace {

class DomainRow : public RowsTest {
  protected:
    uint32_t Apply(TLV_MSG* body) {
        const TlvPtr msg(body);
        return DOM_ProcDomainTable(msg.get(), &change_);
    }
    uint32_t Create(const char* name, uint32_t state = 2) {
        return Apply(DOM_EncodeDomainInfo(name, state, DOM_ROW_CREATE_AND_GO));
    }
    uint32_t Modify(const char* name, uint32_t state, uint64_t flags = 1) {
        return Apply(DOM_EncodeDomainInfoFlag(flags, name, state, DOM_ROW_ACTIVE));
    }
};

TEST_F(DomainRow, StatusFourCreates) {
    EXPECT_EQ(Create("alpha", 2), DOM_ROW_OK);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 1u);
    EXPECT_EQ(DOM_GetState("alpha"), 2u);
    ExpectChange("alpha");
}

TEST_F(DomainRow, CreatedDomainHasTheDefaultLists) {
    ASSERT_EQ(Create("alpha"), DOM_ROW_OK);
    for (uint32_t type : {0u, 4u, 5u}) {
        MethodList list{};
        EXPECT_EQ(DOM_GetMethodList("alpha", type, DOM_DEFAULT_SERVICE, &list, nullptr), DOM_OK);
        EXPECT_EQ(list.methods[0].method_kind, uint32_t{METHOD_DEFAULT_4}) << type;
    }
}

TEST_F(DomainRow, CreateTakesTheWholeDomainFromTheMessage) {
    TLV_MSG* body = DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO);
    AAA_AppendUINTTlvData(body, DOM_TLV_SESSION_TIME, 77);
    ASSERT_EQ(Apply(body), DOM_ROW_OK);
    EXPECT_EQ(DOM_GetSessionTime("alpha"), 77u);
}

TEST_F(DomainRow, CreateChangesTheCallingRoleOnly) {
    ASSERT_EQ(Create("alpha"), DOM_ROW_OK);
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return DOM_IsDomainExist("alpha"); }), 0u);
}

TEST_F(DomainRow, MessageWithoutRowStatusIsRefused) {
    TLV_MSG* body = MessageBuilder(DOM_MSG_DOMAIN_ROW).Build([](Appender& append) {
        append.Text(DOM_TLV_DOMAIN_NAME, "alpha");
    });
    EXPECT_EQ(Apply(body), 1u);
    EXPECT_TRUE(IsUntouched());
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

TEST_F(DomainRow, EveryOtherRowStatusIsRefused) {
    Add("old");
    for (uint32_t status : {0u, 2u, 3u, 5u, 6u, 0x10001u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Apply(DOM_EncodeDomainInfo("alpha", 2, status)), 1u) << status;
        EXPECT_EQ(Apply(DOM_EncodeDomainInfoFlag(1, "old", 2, status)), 1u) << status;
        EXPECT_TRUE(IsUntouched()) << status;
    }
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

TEST_F(DomainRow, NullMessageIsRefused) {
    EXPECT_EQ(DOM_ProcDomainTable(nullptr, &change_), 1u);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(DomainRow, CreateThatIsNoDomainIsRefused) {
    TLV_MSG* body = MessageBuilder(DOM_MSG_DOMAIN_NAME).Build([](Appender& append) {
        append.Text(DOM_TLV_DOMAIN_NAME, "alpha").U32(DOM_TLV_ROW_STATUS, 4);
    });
    EXPECT_EQ(Apply(body), 1u);
    EXPECT_TRUE(IsUntouched());
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

TEST_F(DomainRow, CreatingAnExistingDomainIs15) {
    Add("alpha");
    DOM_SetState("alpha", 1);
    EXPECT_EQ(Create("ALPHA", 2), 15u);
    EXPECT_EQ(DOM_GetState("alpha"), 1u);
    EXPECT_TRUE(IsUntouched()) << "a refused create fills nothing";
}

// Front ends rely on 15: asking for validity first would tell them 3.
TEST_F(DomainRow, ExistenceIsTestedBeforeTheName) {
    Add("al*pha");
    EXPECT_EQ(Create("al*pha"), 15u);
}

TEST_F(DomainRow, CreatingABadNameIs3) {
    EXPECT_EQ(Create("al*pha"), 3u);
    EXPECT_TRUE(IsUntouched());
    EXPECT_EQ(DOM_IsDomainExist("al*pha"), 0u);
}

TEST_F(DomainRow, CreatingInAFullTableIs4) {
    fake::InRole(fake::kWorkingRole, [] {
        for (int i = 0; i < 1024; ++i) Add("d" + std::to_string(i));
        return 0;
    });
    EXPECT_EQ(Create("alpha"), 4u);
    EXPECT_TRUE(IsUntouched());
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

// Only the configuration role is full: the row finds no slot, its record is gone when the table
// returns, and the change is recorded all the same.
TEST_F(DomainRow, RowThatFindsNoSlotIsRecordedUnderItsName) {
    for (int i = 0; i < 1024; ++i) Add("d" + std::to_string(i));
    EXPECT_EQ(Create("alpha"), 0u);
    ExpectChange("alpha");
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

TEST_F(DomainRow, EveryCreateThatRunsOutOfMemoryIs1) {
    const TlvPtr msg(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO));
    int mutexes_left = 0;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 1000);
        fake::FailAllocation(n);
        const uint32_t result = DOM_ProcDomainTable(msg.get(), &change_);
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        if (!tripped) {
            EXPECT_EQ(result, 0u);
            break;
        }
        EXPECT_EQ(result, 1u) << n;
        EXPECT_TRUE(IsUntouched()) << n;
        if (fake::HeldLocks() != 0) {
            ++mutexes_left;
            (void)DOM_DomainInfoTableUnlock();
        }
        EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u) << n;
    }
    EXPECT_EQ(mutexes_left, 3) << "one for each default list that cannot be allocated";
}

TEST_F(DomainRow, StatusOneModifies) {
    Add("alpha");
    EXPECT_EQ(Modify("ALPHA", 2), 0u);
    EXPECT_EQ(DOM_GetState("alpha"), 2u);
    ExpectChange("ALPHA");
}

TEST_F(DomainRow, FlagsSayWhatIsModified) {
    Add("alpha");
    DOM_SetState("alpha", 1);
    EXPECT_EQ(Modify("alpha", 2, 2), 0u);
    EXPECT_EQ(DOM_GetState("alpha"), 1u);
    EXPECT_EQ(Modify("alpha", 2, 3), 0u);
    EXPECT_EQ(DOM_GetState("alpha"), 2u);
}

TEST_F(DomainRow, ModifyWithoutFlagsChangesNothing) {
    Add("alpha");
    DOM_SetState("alpha", 1);
    EXPECT_EQ(Apply(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_ACTIVE)), 0u);
    EXPECT_EQ(DOM_GetState("alpha"), 1u);
    ExpectChange("alpha");
}

TEST_F(DomainRow, ModifyingAMissingDomainIs2AndFillsTheChange) {
    EXPECT_EQ(Modify("nobody", 2), 2u);
    ExpectChange("nobody");
    EXPECT_EQ(DOM_IsDomainExist("nobody"), 0u);
}

TEST_F(DomainRow, ModifyingAMissingDomainWithABadNameIs2) {
    EXPECT_EQ(Modify("no*body", 2), 2u);
    ExpectChange("no*body");
}

TEST_F(DomainRow, ModifyingADomainWithABadNameIs3AndFillsTheChange) {
    Add("al*pha");
    DOM_SetState("al*pha", 1);
    EXPECT_EQ(Modify("al*pha", 2), 3u);
    ExpectChange("al*pha");
    EXPECT_EQ(DOM_GetState("al*pha"), 1u);
}

TEST_F(DomainRow, ModifyThatIsNoRowIs1) {
    TLV_MSG* body = MessageBuilder(DOM_MSG_DOMAIN_ROW).Build([](Appender& append) {
        append.U32(DOM_TLV_STATE, 2).U32(DOM_TLV_ROW_STATUS, 1);
    });
    EXPECT_EQ(Apply(body), 1u);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(DomainRow, NamesOfAnyLengthAreCut) {
    const std::string endless(5000, 'n');
    const std::string cut = endless.substr(0, 255);
    const auto row = [&](uint32_t status) {
        return MessageBuilder(DOM_MSG_DOMAIN_ROW).Build([&](Appender& append) {
            append.Text(DOM_TLV_DOMAIN_NAME, endless.c_str()).U32(DOM_TLV_ROW_STATUS, status);
        });
    };
    EXPECT_EQ(Apply(row(DOM_ROW_ACTIVE)), 2u);
    ExpectChange(cut.c_str());
    Preset();
    EXPECT_EQ(Apply(row(DOM_ROW_CREATE_AND_GO)), 0u);
    ExpectChange(cut.c_str());
    EXPECT_EQ(DOM_IsDomainExist(cut.c_str()), 1u);
    EXPECT_EQ(Apply(row(DOM_ROW_CREATE_AND_GO)), 15u);
    EXPECT_EQ(Apply(row(DOM_ROW_ACTIVE)), 0u);
}

TEST_F(DomainRow, ModifyChangesTheCallingRoleOnly) {
    Add("alpha");
    DOM_SetState("alpha", 1);
    fake::InRole(fake::kWorkingRole, [] {
        Add("alpha");
        DOM_SetState("alpha", 1);
        return 0;
    });
    EXPECT_EQ(Modify("alpha", 2), 0u);
    EXPECT_EQ(DOM_GetState("alpha"), 2u);
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return DOM_GetState("alpha"); }), 1u);
}

TEST_F(DomainRow, NullChangeRecordIsSkipped) {
    const TlvPtr create(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO));
    EXPECT_EQ(DOM_ProcDomainTable(create.get(), nullptr), 0u);
    const TlvPtr modify(DOM_EncodeDomainInfoFlag(1, "alpha", 1, DOM_ROW_ACTIVE));
    EXPECT_EQ(DOM_ProcDomainTable(modify.get(), nullptr), 0u);
    EXPECT_EQ(DOM_GetState("alpha"), 1u);
}

}  // namespace
}  // namespace aaadom
