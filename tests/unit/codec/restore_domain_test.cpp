#include <aaadom/method_list.h>

#include <cstdio>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

class RestoreDomainTest : public RestoreTest {
  protected:
    /// A whole record of `name` with this session time, as another role's table would send it.
    static TLV_MSG* WholeDomain(const char* name, uint32_t session_time) {
        return MessageBuilder(DOM_MSG_DOMAIN).Build([=](Appender& append) {
            append.Text(DOM_TLV_DOMAIN_NAME, name)
                .U32(DOM_TLV_SLOT, 700)
                .U32(DOM_TLV_STATE, 1)
                .U32(DOM_TLV_SESSION_TIME, session_time);
        });
    }
    static void Fill(uint32_t count) {
        char name[32];
        for (uint32_t i = 0; i < count; ++i) {
            snprintf(name, sizeof name, "d%u", i);
            AddDomain(name);
        }
    }
    static uint32_t SessionTime(const char* name) {
        DOM_DomainInfoTableLock();
        const DomainInfo* domain = DOM_FindDomainByName(name);
        const uint32_t time = domain == nullptr ? UINT32_MAX : domain->session_time;
        DOM_DomainInfoTableUnlock();
        return time;
    }
};

TEST_F(RestoreDomainTest, WholeDomainIsAddedToTheFirstEmptySlot) {
    AddDomain("alpha");
    EXPECT_EQ(Set(WholeDomain("beta", 5)), DOM_OK);
    EXPECT_EQ(SlotOf("beta"), 1u);
    EXPECT_EQ(SessionTime("beta"), 5u);
    EXPECT_STREQ(name1_, "beta");
}

TEST_F(RestoreDomainTest, WholeDomainBringsItsSchemeIndexes) {
    AddDomain("alpha");
    TLV_MSG* body = DOM_EncodeDomain("alpha");
    ASSERT_EQ(Delete(DOM_EncodeDomainName("alpha")), DOM_OK);
    ASSERT_EQ(Set(body), DOM_OK);
    const uint32_t type_of_index[] = {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5};
    for (uint32_t index = 1; index <= 3; ++index) {
        uint32_t aaa_type = 99;
        EXPECT_EQ(DOM_GetAAAType("alpha", index, &aaa_type), DOM_OK) << index;
        EXPECT_EQ(aaa_type, type_of_index[index - 1]);
    }
}

// Both walks go over the working role's domains.
TEST_F(RestoreDomainTest, WholeDomainIsInBothManagementOrders) {
    fake::role_of_this_thread = fake::kWorkingRole;
    AddDomain("alpha");
    ASSERT_EQ(Set(WholeDomain("alpha", 5)), DOM_OK);
    ASSERT_EQ(Set(WholeDomain("betas", 5)), DOM_OK);
    DOM_DomainInfoTableLock();
    const DomainInfo* by_row = DOM_MibGetFirstDomain();
    const DomainInfo* next_by_row = DOM_MibGetNextDomain("alpha", 5);
    const DomainInfo* by_name = DOM_NetConfGetFirstDomain();
    const DomainInfo* next_by_name = DOM_NetConfGetNextDomain("alpha");
    const DomainInfo* stored = DOM_FindDomainByName("alpha");
    const DomainInfo* next_stored = DOM_FindDomainByName("betas");
    DOM_DomainInfoTableUnlock();
    EXPECT_NE(stored, nullptr);
    EXPECT_NE(next_stored, nullptr);
    EXPECT_EQ(by_row, stored);
    EXPECT_EQ(next_by_row, next_stored);
    EXPECT_EQ(by_name, stored);
    EXPECT_EQ(next_by_name, next_stored);
}

TEST_F(RestoreDomainTest, WholeDomainReplacesTheOneOfItsName) {
    AddDomain("alpha");
    EXPECT_EQ(Set(WholeDomain("ALPHA", 9)), DOM_OK);
    EXPECT_EQ(CountOf(), 1u);
    EXPECT_EQ(SessionTime("alpha"), 9u);
}

TEST_F(RestoreDomainTest, WholeDomainIsAddedByADeleteToo) {
    EXPECT_EQ(Delete(WholeDomain("alpha", 5)), DOM_OK);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 1u);
}

TEST_F(RestoreDomainTest, NameOfAWholeDomainIsNotValidated) {
    EXPECT_EQ(Set(WholeDomain("a@b", 5)), DOM_OK);
    EXPECT_EQ(DOM_IsDomainExist("a@b"), 1u);
}

TEST_F(RestoreDomainTest, UndecodableWholeDomainChangesNothing) {
    AddDomain("alpha");
    TLV_MSG* body = WholeDomain("alpha", 9);
    AAA_AppendUINTTlvData(body, DOM_TLV_METHOD_LIST, 1);  // no nested message
    EXPECT_EQ(Set(body, 1), DOM_ERR_FAILED);
    EXPECT_EQ(SessionTime("alpha"), 0u);
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreDomainTest, FullTableRefusesANewName) {
    Fill(DOM_MAX_DOMAINS);
    EXPECT_EQ(Set(WholeDomain("one-more", 5), 1), DOM_ERR_FAILED);
    EXPECT_EQ(CountOf(), uint64_t{DOM_MAX_DOMAINS});
    EXPECT_EQ(DOM_IsDomainExist("one-more"), 0u);
    EXPECT_EQ(Writes(), 0u);
    EXPECT_STREQ(name1_, "one-more");
}

TEST_F(RestoreDomainTest, FullTableStillReplaces) {
    Fill(DOM_MAX_DOMAINS);
    EXPECT_EQ(Set(WholeDomain("d1023", 5)), DOM_OK);
    EXPECT_EQ(SessionTime("d1023"), 5u);
    EXPECT_EQ(SlotOf("d1023"), 1023u);
}

TEST_F(RestoreDomainTest, LastEmptySlotIsTaken) {
    Fill(DOM_MAX_DOMAINS);
    ASSERT_EQ(Delete(DOM_EncodeDomainName("d1023")), DOM_OK);
    EXPECT_EQ(Set(WholeDomain("one-more", 5)), DOM_OK);
    EXPECT_EQ(SlotOf("one-more"), 1023u);
}

TEST_F(RestoreDomainTest, SavedDomainThatMovesLeavesNoStaleElement) {
    ASSERT_EQ(Set(DOM_EncodeDomainName("alpha"), 1), DOM_OK);
    ASSERT_EQ(Set(DOM_EncodeDomainName("beta"), 1), DOM_OK);
    ASSERT_EQ(Delete(DOM_EncodeDomainName("alpha"), 1), DOM_OK);
    fake::ClearDbmCalls();

    EXPECT_EQ(Set(WholeDomain("beta", 5), 1), DOM_OK);
    EXPECT_EQ(SlotOf("beta"), 0u);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].index, 0);
    EXPECT_GT(calls[0].value_length, 0u);
    EXPECT_EQ(calls[1].index, 1) << "the new element is written before the old one goes";
    EXPECT_EQ(calls[1].value_length, 0u);
}

TEST_F(RestoreDomainTest, UnsavedMoveLeavesTheDatabaseAlone) {
    AddDomain("alpha");
    AddDomain("beta");
    ASSERT_EQ(Delete(DOM_EncodeDomainName("alpha")), DOM_OK);
    EXPECT_EQ(Set(WholeDomain("beta", 5), 0), DOM_OK);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreDomainTest, DomainThatStaysInItsSlotIsWrittenOnce) {
    AddDomain("alpha");
    EXPECT_EQ(Set(WholeDomain("alpha", 5), 1), DOM_OK);
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreDomainTest, StaleElementThatCannotBeDeletedFails) {
    AddDomain("alpha");
    AddDomain("beta");
    ASSERT_EQ(Delete(DOM_EncodeDomainName("alpha")), DOM_OK);
    fake::FailDbmCall(2);
    EXPECT_EQ(Set(WholeDomain("beta", 5), 1), DOM_ERR_FAILED);
    EXPECT_EQ(SlotOf("beta"), 0u);
}

TEST_F(RestoreDomainTest, FailedAllocationLeavesTheOldDomain) {
    AddDomain("alpha");
    const TlvPtr body(WholeDomain("alpha", 5));
    const TlvPtr msg(AAA_AddOpHead(DOM_OP_SET, body.get()));
    int failures = 0;
    for (int n = 1;; ++n) {
        fake::FailAllocation(n);
        const uint32_t result = DOM_RestoreData(msg.get(), 0, 0, 0, nullptr, nullptr);
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(CountOf(), 1u);
        if (!tripped) {
            EXPECT_EQ(result, DOM_OK);
            break;
        }
        ++failures;
        if (result != DOM_OK) {
            EXPECT_EQ(SessionTime("alpha"), 0u) << n;
        }
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(SessionTime("alpha"), 5u);
}

TEST_F(RestoreDomainTest, CreatingADomainSavesIt) {
    EXPECT_EQ(Set(DOM_EncodeDomainName("alpha"), 1), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].index, 0);
}

TEST_F(RestoreDomainTest, CreatingAnExistingDomainSucceeds) {
    AddDomain("alpha");
    EXPECT_EQ(Set(DOM_EncodeDomainName("Alpha")), DOM_OK);
    EXPECT_EQ(CountOf(), 1u);
}

TEST_F(RestoreDomainTest, CreatingInAFullTableFails) {
    Fill(DOM_MAX_DOMAINS);
    EXPECT_EQ(Set(DOM_EncodeDomainName("one-more"), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreDomainTest, DeletingADomainWithSaveDeletesItsElement) {
    ASSERT_EQ(Set(DOM_EncodeDomainName("alpha"), 1), DOM_OK);
    ASSERT_EQ(Set(DOM_EncodeDomainName("beta"), 1), DOM_OK);
    fake::ClearDbmCalls();
    EXPECT_EQ(Delete(DOM_EncodeDomainName("beta"), 1), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].index, 1);
    EXPECT_EQ(calls[0].value_length, 0u);
    EXPECT_STREQ(name1_, "beta");
}

TEST_F(RestoreDomainTest, DeletingADomainWithoutSaveKeepsItsElement) {
    ASSERT_EQ(Set(DOM_EncodeDomainName("alpha"), 1), DOM_OK);
    fake::ClearDbmCalls();
    EXPECT_EQ(Delete(DOM_EncodeDomainName("alpha"), 0), DOM_OK);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreDomainTest, DeletingAnUnknownDomainSucceeds) {
    EXPECT_EQ(Delete(DOM_EncodeDomainName("nobody"), 1), DOM_OK);
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreDomainTest, DatabaseFailureOfADeleteIsTheGenericFailure) {
    AddDomain("alpha");
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Delete(DOM_EncodeDomainName("alpha"), 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 0u);
}

class RestoreMethodListTest : public RestoreTest {
  protected:
    static MethodList List(uint32_t service) {
        MethodList list{};
        list.aaa_type = AAA_TYPE_5;
        list.service = service;
        list.methods[0].method_kind = METHOD_SCHEME_1;
        snprintf(list.methods[0].scheme_name, DOM_SCHEME_NAME_SIZE, "radius");
        return list;
    }
    static MethodEntry Extra() {
        MethodEntry extra{};
        extra.method_kind = METHOD_SCHEME_2;
        snprintf(extra.scheme_name, DOM_SCHEME_NAME_SIZE, "backup");
        return extra;
    }
};

TEST_F(RestoreMethodListTest, SetStoresTheListAndTheExtra) {
    AddDomain("alpha");
    const MethodList list = List(3);
    const MethodEntry extra = Extra();
    EXPECT_EQ(Set(DOM_EncodeMethList("alpha", &list, &extra), 1), DOM_OK);
    MethodList stored{};
    MethodEntry stored_extra{};
    ASSERT_EQ(DOM_GetMethodList("alpha", AAA_TYPE_5, 3, &stored, &stored_extra), DOM_OK);
    EXPECT_STREQ(stored.methods[0].scheme_name, "radius");
    EXPECT_STREQ(stored_extra.scheme_name, "backup");
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreMethodListTest, DeleteRemovesTheListAndSavesTheDomain) {
    AddDomain("alpha");
    const MethodList list = List(3);
    const MethodEntry extra = Extra();
    ASSERT_EQ(Set(DOM_EncodeMethList("alpha", &list, &extra)), DOM_OK);
    EXPECT_EQ(Delete(DOM_EncodeMethList("alpha", &list, &extra), 1), DOM_OK);
    MethodList stored{};
    EXPECT_EQ(DOM_GetMethodList("alpha", AAA_TYPE_5, 3, &stored, nullptr), DOM_ERR_FAILED);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 1u) << "an undo leaves the domain, so the domain is saved";
    EXPECT_GT(calls[0].value_length, 0u);
}

TEST_F(RestoreMethodListTest, UnknownDomainFails) {
    const MethodList list = List(3);
    const MethodEntry extra{};
    EXPECT_EQ(Set(DOM_EncodeMethList("nobody", &list, &extra), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Delete(DOM_EncodeMethList("nobody", &list, &extra), 1), DOM_ERR_FAILED);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreMethodListTest, ColumnOutsideTheGridFails) {
    AddDomain("alpha");
    MethodList list = List(3);
    list.service = DOM_SERVICES;
    const MethodEntry extra{};
    EXPECT_EQ(Set(DOM_EncodeMethList("alpha", &list, &extra)), DOM_ERR_FAILED);
}

TEST_F(RestoreMethodListTest, MessageWithoutNameFails) {
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_METHOD_LIST)), DOM_ERR_FAILED);
}

class RestoreAuthorAttrTest : public RestoreTest {
  protected:
    static AuthorAttr Attributes() {
        AuthorAttr attributes;
        DOM_InitAuthorAttr(&attributes);
        attributes.kind23_word = 77;
        return attributes;
    }
    static uint32_t Word23(const char* domain) {
        AuthorAttr attributes{};
        EXPECT_EQ(DOM_GetDomainAuthorAttrByName(domain, &attributes), DOM_OK);
        return attributes.kind23_word;
    }
};

TEST_F(RestoreAuthorAttrTest, SetStoresTheKind) {
    AddDomain("alpha");
    const AuthorAttr attributes = Attributes();
    EXPECT_EQ(Set(DOM_EncodeAuthorAttr(23, "alpha", &attributes), 1), DOM_OK);
    EXPECT_EQ(Word23("alpha"), 77u);
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreAuthorAttrTest, DeleteResetsTheKindAndSavesTheDomain) {
    AddDomain("alpha");
    const AuthorAttr attributes = Attributes();
    ASSERT_EQ(Set(DOM_EncodeAuthorAttr(23, "alpha", &attributes)), DOM_OK);
    EXPECT_EQ(Delete(DOM_EncodeAuthorAttr(23, "alpha", &attributes), 1), DOM_OK);
    EXPECT_EQ(Word23("alpha"), 65535u);
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreAuthorAttrTest, KindAbove26Fails) {
    AddDomain("alpha");
    const AuthorAttr attributes = Attributes();
    EXPECT_EQ(Set(DOM_EncodeAuthorAttr(27, "alpha", &attributes)), DOM_ERR_FAILED);
    EXPECT_EQ(Delete(DOM_EncodeAuthorAttr(27, "alpha", &attributes)), DOM_ERR_FAILED);
}

TEST_F(RestoreAuthorAttrTest, UnknownDomainFails) {
    const AuthorAttr attributes = Attributes();
    EXPECT_EQ(Set(DOM_EncodeAuthorAttr(23, "nobody", &attributes), 1), DOM_ERR_FAILED);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreAuthorAttrTest, MessageWithoutNameFails) {
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_AUTHOR_ATTR)), DOM_ERR_FAILED);
}

}  // namespace
}  // namespace aaadom
