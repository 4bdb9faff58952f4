#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/method_list.h>

#include <cstring>
#include <string>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

class DomainTest : public TablesTest {
  protected:
    static AAADOM_NO_TSA void ForgetSlotZero() { Domains(Role::kWorking).ClearSlot(0); }
};

TEST(DomainName, EachForbiddenCharacterIsRefused) {
    for (char c : std::string("\\/:*?\"<>|@")) {
        EXPECT_EQ(DOM_CheckDomainName((std::string("a") + c + "b").c_str()), DOM_ERR_FAILED) << c;
    }
}

TEST(DomainName, EveryOtherCharacterPasses) {
    for (int c = 1; c < 256; ++c) {
        if (strchr("\\/:*?\"<>|@", c) != nullptr) continue;
        EXPECT_EQ(DOM_CheckDomainName(std::string(1, static_cast<char>(c)).c_str()), DOM_OK) << c;
    }
}

TEST(DomainName, LengthIsNotJudged) {
    EXPECT_EQ(DOM_CheckDomainName(""), DOM_OK);
    EXPECT_EQ(DOM_CheckDomainName(std::string(300, 'a').c_str()), DOM_OK);
}

TEST(DomainName, NullIsRefused) {
    EXPECT_EQ(DOM_CheckDomainName(nullptr), DOM_ERR_FAILED);
}

TEST(DomainName, LowerCasingChangesCapitalsOnly) {
    char text[] = "AbZ[@`{\xC0 9";
    DOM_ToLowerCaseStr(text);
    EXPECT_STREQ(text, "abz[@`{\xC0 9");
    DOM_ToLowerCaseStr(nullptr);
}

TEST(DomainRecord, HasEveryDefault) {
    DomainInfo* d = DOM_CreateDomain();
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->state, 1);
    EXPECT_EQ(d->limit_value, 0x7FFFFFFFu);
    EXPECT_EQ(d->second_value, 0u);
    EXPECT_EQ(d->session_time, 0);
    EXPECT_EQ(d->redirect_code, 0u);
    EXPECT_EQ(d->user_addr_type, 7u);
    EXPECT_EQ(d->acct_dual_stack_mode, 1u);
    EXPECT_STREQ(d->name, "");
    EXPECT_STREQ(d->auth_rd_fail_permit_domain, "");
    EXPECT_STREQ(d->escape_recover.domain_name, "");
    EXPECT_STREQ(d->auth_fail_domain, "");
    EXPECT_EQ(d->auth_fail_domain_kind, 0);
    MethodEntry none[DOM_SERVICES]{};
    EXPECT_EQ(memcmp(d->service_extras, none, sizeof none), 0);
    AuthorAttr initial;
    DOM_InitAuthorAttr(&initial);
    EXPECT_EQ(memcmp(&d->author_attr, &initial, sizeof initial), 0);
    DOM_DestroyDomain(d);
}

TEST(DomainRecord, HasThreeDefaultListsOfOneMethodOfKindFour) {
    DomainInfo* d = DOM_CreateDomain();
    ASSERT_NE(d, nullptr);
    for (uint32_t row = 0; row < DOM_AAA_TYPES; ++row) {
        for (uint32_t column = 0; column < DOM_SERVICES; ++column) {
            const MethodList* list = d->method_lists[row][column];
            bool expected = column == 5 && (row == 0 || row == 4 || row == 5);
            ASSERT_EQ(list != nullptr, expected) << row << ' ' << column;
            if (!expected) continue;
            EXPECT_EQ(list->aaa_type, row);
            EXPECT_EQ(list->service, 5u);
            EXPECT_EQ(list->methods[0].method_kind, 4u);
            EXPECT_STREQ(list->methods[0].scheme_name, "");
            EXPECT_EQ(list->methods[1].method_kind, 0u);
        }
    }
    DOM_DestroyDomain(d);
}

TEST(DomainRecord, EveryAllocationThatFailsGivesNullAndLeaksNothing) {
    fake::Reset();
    for (int n = 1; n <= 4; ++n) {
        fake::FailAllocation(n);
        EXPECT_EQ(DOM_CreateDomain(), nullptr) << n;
        EXPECT_TRUE(fake::Tripped());
    }
    fake::FailAllocation(5);
    DomainInfo* d = DOM_CreateDomain();
    EXPECT_NE(d, nullptr);
    EXPECT_FALSE(fake::Tripped());
    fake::DisarmFailures();
    DOM_DestroyDomain(d);
}

TEST(DomainRecord, DestroyOfNullIsIgnored) {
    DOM_DestroyDomain(nullptr);
    DOM_DestroyZorvDomain(nullptr);
}

TEST(DomainRecord, RowNodeIsZeroFilled) {
    ZorvDomain* node = DOM_CreateZorvDomain();
    ASSERT_NE(node, nullptr);
    ZorvDomain zero{};
    EXPECT_EQ(memcmp(node, &zero, sizeof zero), 0);
    DOM_DestroyZorvDomain(node);
}

TEST_F(DomainTest, AddedDomainIsFoundIgnoringCase) {
    EXPECT_EQ(Add("Isp-One"), DOM_ADD_OK);
    EXPECT_EQ(DOM_IsDomainExist("iSP-oNE"), 1u);
    EXPECT_EQ(DOM_IsDomainExist("isp-two"), 0u);
    ASSERT_NE(Find("isp-one"), nullptr);
    EXPECT_STREQ(Find("isp-one")->name, "Isp-One");
    EXPECT_EQ(Find("isp-one")->slot, 0u);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
}

TEST_F(DomainTest, AddGoesToTheCallingRoleOnly) {
    InConfig([] { return Add("cfg"); });
    EXPECT_EQ(DOM_IsDomainExist("cfg"), 0u);
    EXPECT_EQ(InConfig([] { return DOM_IsDomainExist("cfg"); }), 1u);
    EXPECT_EQ(CountOf(Role::kWorking), 0u);
    EXPECT_EQ(CountOf(Role::kConfig), 1u);
}

TEST_F(DomainTest, ExistingNameInOtherCaseIsNoErrorAndChangesNothing) {
    Add("abc");
    EXPECT_EQ(Add("ABC"), DOM_ADD_OK);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"abc"}));
}

TEST_F(DomainTest, LongNameIsCutTo255Characters) {
    std::string long_name(300, 'a');
    EXPECT_EQ(Add(long_name), DOM_ADD_OK);
    ASSERT_NE(Find(long_name.substr(0, 255)), nullptr);
    EXPECT_EQ(strlen(Find(long_name.substr(0, 255))->name), 255u);
    EXPECT_EQ(Find(long_name), nullptr);
    EXPECT_EQ(Add(long_name), DOM_ADD_OK);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
}

TEST_F(DomainTest, NullNamesAreUnknown) {
    EXPECT_EQ(DOM_AddDomainByName(nullptr), DOM_ADD_FAILED);
    EXPECT_EQ(DOM_IsDomainExist(nullptr), 0u);
    EXPECT_EQ(DOM_FindDomainByName(nullptr), nullptr);
    EXPECT_EQ(DOM_DelDomainCheck(nullptr), DOM_DELCHK_NO_DOMAIN);
    EXPECT_EQ(DOM_DeleteDomainAndDBByName(nullptr, 0), 0u);
    EXPECT_EQ(DOM_GetRedirectCode(nullptr), 0u);
    EXPECT_EQ(DOM_GetNextDomain(nullptr), nullptr);
    EXPECT_EQ(DOM_MibGetNextDomain(nullptr, 0), nullptr);
    EXPECT_EQ(DOM_NetConfGetNextDomain(nullptr), nullptr);
}

TEST_F(DomainTest, TheDomain1025IsRefused) {
    for (int i = 0; i < 1024; ++i) ASSERT_EQ(Add("d" + std::to_string(i)), DOM_ADD_OK);
    EXPECT_EQ(Add("one-more"), DOM_ADD_TABLE_FULL);
    EXPECT_EQ(Add("D7"), DOM_ADD_OK);  // existing comes before full
    EXPECT_EQ(CountOf(Role::kWorking), 1024u);
    for (int i = 0; i < 1024; ++i) ASSERT_NE(Find("D" + std::to_string(i)), nullptr);
}

TEST_F(DomainTest, LowestEmptySlotIsUsed) {
    for (const char* name : {"a", "b", "c"}) Add(name);
    EXPECT_EQ(DOM_DeleteDomainAndDBByName("b", 0), 0u);
    Add("d");
    EXPECT_EQ(Find("d")->slot, 1u);
}

TEST_F(DomainTest, AddGivesTheDefaultMethodsTheIndexesOneTwoThree) {
    Add("a");
    const DomainInfo* d = Find("a");
    EXPECT_EQ(d->method_lists[0][5]->methods[0].scheme_index, 1u);
    EXPECT_EQ(d->method_lists[4][5]->methods[0].scheme_index, 2u);
    EXPECT_EQ(d->method_lists[5][5]->methods[0].scheme_index, 3u);
}

TEST_F(DomainTest, EveryAllocationThatFailsUndoesTheAddition) {
    int n = 1;
    for (;; ++n) {
        fake::FailAllocation(n);
        uint32_t result = Add("a");
        if (!fake::Tripped()) break;
        EXPECT_EQ(result, DOM_ADD_FAILED) << n;
        EXPECT_EQ(CountOf(Role::kWorking), 0u);
        EXPECT_EQ(DOM_FindDomainByName("a"), nullptr);
        EXPECT_TRUE(MibOrder(Role::kWorking).empty());
        EXPECT_TRUE(NetConfOrder(Role::kWorking).empty());
        EXPECT_EQ(fake::HeldLocks(), 0);
    }
    fake::DisarmFailures();
    EXPECT_EQ(n, 10);  // record, 3 lists, row node, 3 scheme nodes, strcmp node
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
}

TEST_F(DomainTest, OrdersAreByLengthAndByCharacters) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"b", "c", "aa", "ab"}));
    EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"aa", "ab", "b", "c"}));
}

TEST_F(DomainTest, OrdersAreCaseSensitive) {
    for (const char* name : {"b", "A", "a2", "B1"}) Add(name);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"A", "b", "B1", "a2"}));
    EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"A", "B1", "a2", "b"}));
}

TEST_F(DomainTest, DeletionTakesTheNamesOutOfBothOrders) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    for (const char* name : {"AA", "c", "b"}) EXPECT_EQ(DOM_DeleteDomainAndDBByName(name, 0), 0u);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"ab"}));
    EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"ab"}));
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    EXPECT_EQ(DOM_IsDomainExist("aa"), 0u);
}

TEST_F(DomainTest, DeletionOfAnUnknownDomainIsNoError) {
    EXPECT_EQ(DOM_DeleteDomainAndDBByName("nobody", 1), 0u);
}

TEST_F(DomainTest, DeletionWithTheDatabaseFailsWithoutADatabase) {
    Add("a");
    EXPECT_EQ(DOM_DeleteDomainAndDBByName("a", 1), 1u);
    EXPECT_EQ(DOM_IsDomainExist("a"), 0u);  // gone from the table all the same
}

TEST_F(DomainTest, DeletionWithTheDatabaseDeletesTheSlotsElement) {
    for (const char* name : {"a", "b", "c"}) Add(name);
    DBM_HANDLE handle = DOM_CreateDomainDBM();
    DOM_SetDomainDBMHandle(handle);
    fake::ClearDbmCalls();
    EXPECT_EQ(DOM_DeleteDomainAndDBByName("B", 1), 0u);
    auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, DOM_DB_KEY_DOMAINS);
    EXPECT_EQ(calls[0].index, 1);
    EXPECT_EQ(calls[0].value_length, 0u);
    DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    DBM_Close(handle);
}

TEST_F(DomainTest, DatabaseIsAskedForTheFlagOneOnly) {
    Add("a");
    EXPECT_EQ(DOM_DeleteDomainAndDBByName("a", 2), 0u);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(DomainTest, DeleteDomainLeavesTheRecordToTheCaller) {
    Add("a");
    DOM_DomainInfoTableLock();
    DomainInfo* record = DOM_FindDomainByName("a");
    DOM_DeleteDomain(record);
    EXPECT_EQ(DOM_FindDomainByName("a"), nullptr);
    DOM_DomainInfoTableUnlock();
    EXPECT_STREQ(record->name, "a");
    DOM_DestroyDomain(record);
}

// Nodes without a record would be walked for ever, so they go whether a slot matched or not.
TEST_F(DomainTest, DeleteDomainRemovesTheNodesEvenIfNoSlotHasTheName) {
    DOM_DomainInfoTableLock();
    DomainInfo* record = DOM_CreateDomain();
    strcpy(record->name, "a");
    SchemeResources resources{};
    ASSERT_EQ(DOM_CreateDomainSchemeResource(record, &resources), DOM_OK);
    DOM_AddDomain(record, DOM_CreateZorvDomain(), &resources);
    DOM_DestroyDomainSchemeResource(&resources);
    ForgetSlotZero();
    DOM_DeleteDomain(record);
    DOM_DomainInfoTableUnlock();
    EXPECT_EQ(CountOf(Role::kWorking), 1u);  // no slot matched
    EXPECT_TRUE(MibOrder(Role::kWorking).empty());
    EXPECT_TRUE(NetConfOrder(Role::kWorking).empty());
    DOM_DestroyDomain(record);
}

TEST_F(DomainTest, DeleteDomainComparesSlotsExactly) {
    Add("abc");
    DomainInfo* stranger = DOM_CreateDomain();
    strcpy(stranger->name, "ABC");
    DOM_DomainInfoTableLock();
    DOM_DeleteDomain(stranger);
    DOM_DomainInfoTableUnlock();
    DOM_DestroyDomain(stranger);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    EXPECT_EQ(DOM_IsDomainExist("abc"), 1u);
}

TEST_F(DomainTest, AddDomainGoesOnWithoutMemoryForItsStrcmpNode) {
    DomainInfo* record = DOM_CreateDomain();
    strcpy(record->name, "a");
    SchemeResources resources{};
    ASSERT_EQ(DOM_CreateDomainSchemeResource(record, &resources), DOM_OK);
    ZorvDomain* node = DOM_CreateZorvDomain();
    DOM_DomainInfoTableLock();
    fake::FailAllocation(1);
    DOM_AddDomain(record, node, &resources);
    fake::DisarmFailures();
    DOM_DomainInfoTableUnlock();
    DOM_DestroyDomainSchemeResource(&resources);
    EXPECT_EQ(DOM_IsDomainExist("a"), 1u);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a"}));
    EXPECT_TRUE(NetConfOrder(Role::kWorking).empty());
}

TEST_F(DomainTest, AddDomainIgnoresTheRecordsOwnSlotNumber) {
    DomainInfo* record = DOM_CreateDomain();
    strcpy(record->name, "a");
    record->slot = 77;
    DOM_DomainInfoTableLock();
    DOM_AddDomain(record, nullptr, nullptr);
    DOM_DomainInfoTableUnlock();
    EXPECT_EQ(record->slot, 0u);
}

TEST_F(DomainTest, AddDomainToAFullTableCountsAndListsWithoutStoring) {
    for (int i = 0; i < 1024; ++i) Add("d" + std::to_string(i));
    DomainInfo* record = DOM_CreateDomain();
    strcpy(record->name, "over");
    DOM_DomainInfoTableLock();
    DOM_AddDomain(record, DOM_CreateZorvDomain(), nullptr);
    DOM_DomainInfoTableUnlock();
    EXPECT_EQ(CountOf(Role::kWorking), 1025u);
    EXPECT_EQ(MibOrder(Role::kWorking).size(), 1025u);
    EXPECT_EQ(Find("over"), nullptr);
    DOM_DestroyDomain(record);
}

TEST_F(DomainTest, UnterminatedNameOfARecordIsCut) {
    DomainInfo* record = DOM_CreateDomain();
    memset(record->name, 'x', sizeof record->name);
    DOM_DomainInfoTableLock();
    DOM_AddDomain(record, DOM_CreateZorvDomain(), nullptr);
    DOM_DomainInfoTableUnlock();
    EXPECT_EQ(DOM_IsDomainExist(std::string(255, 'X').c_str()), 1u);
}

TEST_F(DomainTest, CountIsTheWorkingRolesWhateverRoleAsks) {
    Add("a");
    Add("b");
    InConfig([] { return Add("c"); });
    uint32_t count = 0;
    EXPECT_EQ(DOM_GetDomainCount(&count), 0u);
    EXPECT_EQ(count, 2u);
    count = 0;
    InConfig([&] { return DOM_GetDomainCount(&count); });
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(DOM_GetDomainCount(nullptr), 0u);
}

TEST_F(DomainTest, RedirectCodeIsStoredPerDomain) {
    Add("a");
    EXPECT_EQ(DOM_GetRedirectCode("a"), 0u);
    EXPECT_EQ(DOM_SetRedirectMoveTemporarily("A", 302), DOM_OK);
    EXPECT_EQ(DOM_GetRedirectCode("a"), 302u);
    EXPECT_EQ(DOM_SetRedirectMoveTemporarily("b", 302), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetRedirectCode("b"), 0u);
}

}  // namespace
}  // namespace aaadom
