#include <cstring>
#include <string>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

class SchemeTable : public SchemeTest {
  protected:
    static uint32_t AddRow(const MibSchemeRow& row) { return DOM_AddSchemeTable(&row); }
    static uint32_t Modify(const MibSchemeRow& row) { return DOM_ModifySchemeTable(&row); }
    static void Prepare(std::initializer_list<uint32_t> kinds, uint32_t type = 0) {
        Add("a");
        ASSERT_EQ(Store("a", ListOf(type, 5, kinds)), DOM_OK);
    }
};

TEST_F(SchemeTable, IndexIsFoundWithTypeAndPosition) {
    Prepare({1, 2, 5}, 4);
    uint32_t position = 99, type = 99;
    EXPECT_EQ(DOM_GetMethodIndex("A", 5, &position), DOM_OK);
    EXPECT_EQ(position, 2u);
    EXPECT_EQ(DOM_GetAAAType("A", 5, &type), DOM_OK);
    EXPECT_EQ(type, 4u);
    EXPECT_EQ(DOM_GetMethodIndex("a", 5, nullptr), DOM_OK);
    EXPECT_EQ(DOM_GetAAAType("a", 5, nullptr), DOM_OK);
}

TEST_F(SchemeTable, UnknownDomainOrIndexIsNotFound) {
    Add("a");
    uint32_t value = 99;
    for (uint32_t index : {0u, 4u, 0xFFFFFFFFu}) {
        EXPECT_EQ(DOM_GetMethodIndex("a", index, &value), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_GetAAAType("a", index, &value), DOM_ERR_FAILED);
    }
    EXPECT_EQ(DOM_GetMethodIndex("b", 1, &value), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetAAAType("b", 1, &value), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetMethodIndex(nullptr, 1, &value), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetAAAType(nullptr, 1, &value), DOM_ERR_FAILED);
    EXPECT_EQ(value, 99u);
    WithoutRowNode without;
    EXPECT_EQ(DOM_GetMethodIndex("a", 1, &value), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetAAAType("a", 1, &value), DOM_ERR_FAILED);
}

TEST_F(SchemeTable, IndexIsLookedUpInTheCallingRolesDomain) {
    Add("a");
    EXPECT_EQ(DOM_GetMethodIndex("a", 1, nullptr), DOM_OK);
    EXPECT_EQ(InConfig([] { return DOM_GetMethodIndex("a", 1, nullptr); }), DOM_ERR_FAILED);
    EXPECT_EQ(InConfig([] { return DOM_GetAAAType("a", 1, nullptr); }), DOM_ERR_FAILED);
}

TEST_F(SchemeTable, KindFiveIsAddedAtTheEnd) {
    Prepare({2});
    EXPECT_EQ(AddRow(Row("a", 0, 4, 5)), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "2@1 5@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(SchemeTable, SmallerIndexIsAddedInFrontAndPositionsFollow) {
    Prepare({2});
    ASSERT_EQ(AddRow(Row("a", 0, 9, 1)), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "2@1 1@9");
    DOM_DeleteSchemeByIndex("a", 9);
    ASSERT_EQ(Stored("a", 0), "4@1");
    ASSERT_EQ(Modify(Row("a", 0, 1, 2)), DOM_OK);
    ASSERT_EQ(AddRow(Row("a", 0, 0, 1, "one")), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "1@0 2@1");
    EXPECT_EQ(Indexes("a"), "0:0/0 1:0/1 2:4/0 3:5/0");
}

TEST_F(SchemeTable, SmallerIndexPutsKindOneBeforeKindTwo) {
    Prepare({});  // index 1 is free
    ASSERT_EQ(Modify(Row("a", 5, 3, 2)), DOM_OK);
    ASSERT_EQ(AddRow(Row("a", 5, 1, 1)), DOM_OK);
    EXPECT_EQ(Stored("a", 5), "1@1 2@3");
    EXPECT_EQ(Indexes("a"), "1:5/0 2:4/0 3:5/1");
    EXPECT_EQ(AddRow(Row("a", 5, 9, 3)), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("a", 5), "1@1 2@3");
}

TEST_F(SchemeTable, AddStoresTheName) {
    Prepare({2});
    ASSERT_EQ(AddRow(Row("A", 0, 4, 1, "Tac")), DOM_OK);
    EXPECT_STREQ(StoredEntry("a", 0, 1).scheme_name, "Tac");
    ASSERT_EQ(AddRow(Row("a", 0, 5, 4, "ignored")), DOM_OK);
    EXPECT_STREQ(StoredEntry("a", 0, 2).scheme_name, "");
}

TEST_F(SchemeTable, AddThatMakesNoAllowedOrderLeavesTheList) {
    Prepare({1, 2});
    EXPECT_EQ(AddRow(Row("a", 0, 9, 3)), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("a", 0), "1@1 2@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(SchemeTable, AddRefusesASecondEntryOfAKind) {
    Prepare({2});
    EXPECT_EQ(AddRow(Row("a", 0, 9, 2)), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("a", 0), "2@1");
}

TEST_F(SchemeTable, AddRefusesAnIndexUsedByAnyTypeOfTheDomain) {
    Prepare({2});
    for (uint32_t index : {1u, 2u, 3u}) {
        EXPECT_EQ(AddRow(Row("a", 0, index, 1)), DOM_ERR_FAILED);
    }
    EXPECT_EQ(Stored("a", 0), "2@1");
    Add("b");
    EXPECT_EQ(AddRow(Row("a", 0, 4, 1)), DOM_OK);
}

TEST_F(SchemeTable, AddRefusesKindsThatAreNone) {
    Prepare({2});
    for (uint32_t kind : {0u, 6u, 33u, 0xFFFFFFFFu}) {
        EXPECT_EQ(AddRow(Row("a", 0, 9, kind)), DOM_ERR_FAILED) << kind;
    }
    EXPECT_EQ(Stored("a", 0), "2@1");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(SchemeTable, AddRefusesAFullList) {
    Prepare({1, 1, 1, 1, 1, 1});
    const std::string list = Stored("a", 0), indexes = Indexes("a");
    for (uint32_t kind : {0u, 2u, 5u}) {
        EXPECT_EQ(AddRow(Row("a", 0, 99, kind)), DOM_ERR_FAILED);
        EXPECT_EQ(AddRow(Row("a", 0, 0, kind)), DOM_ERR_FAILED);
    }
    EXPECT_EQ(Stored("a", 0), list);
    EXPECT_EQ(Indexes("a"), indexes);
}

TEST_F(SchemeTable, AddFailsWithoutDomainListOrRowNode) {
    Add("a");
    EXPECT_EQ(AddRow(Row("b", 0, 9, 5)), DOM_ERR_FAILED);
    for (uint32_t type : {1u, 2u, 3u, 6u, 7u, 0xFFFFFFFFu}) {
        EXPECT_EQ(AddRow(Row("a", type, 9, 5)), DOM_ERR_FAILED) << type;
    }
    EXPECT_EQ(DOM_AddSchemeTable(nullptr), DOM_ERR_FAILED);
    {
        WithoutRowNode without;
        EXPECT_EQ(AddRow(Row("a", 0, 9, 5)), DOM_ERR_FAILED);
    }
    EXPECT_EQ(Stored("a", 0), "4@1");
}

TEST_F(SchemeTable, AddWithoutMemoryLeavesListAndIndexes) {
    Prepare({2});
    fake::FailAllocation(1);
    EXPECT_EQ(AddRow(Row("a", 0, 4, 5)), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(Stored("a", 0), "2@1");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(SchemeTable, NamesOfRowsMayLackTheirTerminator) {
    Prepare({2});
    MibSchemeRow row = Row("a", 0, 4, 1);
    memset(row.scheme_name, 'x', sizeof row.scheme_name);
    EXPECT_EQ(AddRow(row), DOM_OK);
    EXPECT_EQ(std::string(StoredEntry("a", 0, 1).scheme_name), std::string(32, 'x'));
    Add(std::string(255, 'd'));
    memset(row.domain_name, 'd', sizeof row.domain_name);
    row.method_kind = 5;
    EXPECT_EQ(AddRow(row), DOM_OK);
    EXPECT_EQ(Stored(std::string(255, 'd'), 0), "4@1 5@4");
}

TEST_F(SchemeTable, MethodsBehindAnEmptyEntryAreMovedNotLost) {
    Prepare({2, 0, 4});
    ASSERT_EQ(AddRow(Row("a", 0, 9, 5)), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "2@1 5@9 - 4@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/3 9:0/1");
}

TEST_F(SchemeTable, ModifyChangesTheKindOfAnIndex) {
    Prepare({2, 4});
    ASSERT_EQ(Modify(Row("A", 0, 1, 1, "one")), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "1@1 4@4");
    EXPECT_STREQ(StoredEntry("a", 0, 0).scheme_name, "one");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(SchemeTable, ModifyMovesTheMethodToThePlaceOfItsNewKind) {
    Prepare({2, 1});
    ASSERT_EQ(Modify(Row("a", 0, 1, 5)), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "1@4 5@1");
    EXPECT_EQ(Indexes("a"), "1:0/1 2:4/0 3:5/0 4:0/0");
    ASSERT_EQ(Modify(Row("a", 0, 1, 2)), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "2@1 1@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(SchemeTable, ModifyOfTheSameKindChangesTheName) {
    Prepare({2, 1});
    ASSERT_EQ(Modify(Row("a", 0, 4, 1, "new")), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "2@1 1@4");
    EXPECT_STREQ(StoredEntry("a", 0, 1).scheme_name, "new");
    ASSERT_EQ(Modify(Row("a", 4, 2, 4, "none")), DOM_OK);
    EXPECT_STREQ(StoredEntry("a", 4, 0).scheme_name, "");
}

TEST_F(SchemeTable, ModifyRefusesAKindThatAnotherIndexHas) {
    Prepare({2, 1});
    EXPECT_EQ(Modify(Row("a", 0, 4, 2)), DOM_ERR_FAILED);
    EXPECT_EQ(Modify(Row("a", 0, 1, 1)), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("a", 0), "2@1 1@4");
}

TEST_F(SchemeTable, ModifyRefusesAnOrderThatIsNotAllowed) {
    Prepare({2, 1});
    for (uint32_t kind : {3u, 6u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Modify(Row("a", 0, 1, kind)), DOM_ERR_FAILED);
    }
    EXPECT_EQ(Stored("a", 0), "2@1 1@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(SchemeTable, ModifyRefusesKindZeroBecauseItIsNoMethod) {
    Prepare({2, 1});
    for (uint32_t index : {1u, 4u}) {
        EXPECT_EQ(Modify(Row("a", 0, index, 0)), DOM_ERR_FAILED);
    }
    EXPECT_EQ(Stored("a", 0), "2@1 1@4");
}

TEST_F(SchemeTable, ModifyRefusesUnknownIndexesAndThoseOfAnotherType) {
    Add("a");
    for (uint32_t index : {0u, 2u, 3u, 4u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Modify(Row("a", 0, index, 5)), DOM_ERR_FAILED) << index;
    }
    EXPECT_EQ(DOM_ModifySchemeTable(nullptr), DOM_ERR_FAILED);
}

TEST_F(SchemeTable, ModifyReportsMissingDomainListOrRowNodeAsNoSuchRow) {
    Add("a");
    EXPECT_EQ(Modify(Row("b", 0, 1, 5)), DOM_ERR_NOT_FOUND);
    for (uint32_t type : {1u, 2u, 3u, 6u, 7u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Modify(Row("a", type, 1, 5)), DOM_ERR_NOT_FOUND) << type;
    }
    WithoutRowNode without;
    EXPECT_EQ(Modify(Row("a", 0, 1, 5)), DOM_ERR_NOT_FOUND);
}

TEST_F(SchemeTable, ModifyWorksInAFullListWithoutWritingBehindIt) {
    Prepare({1, 2, 4, 5, 3, 3});
    ASSERT_EQ(Stored("a", 0), "1@1 2@4 4@5 5@6 3@7 3@8");
    MibSchemeRow row = Row("a", 0, 8, 3, "x");
    EXPECT_EQ(Modify(row), DOM_ERR_FAILED);  // kind 3 is found at index 7 first
    EXPECT_EQ(Modify(Row("a", 0, 7, 3, "x")), DOM_OK);
    // in again before kind 5, as every method
    EXPECT_EQ(Stored("a", 0), "1@1 2@4 4@5 3@7 5@6 3@8");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1 5:0/2 6:0/4 7:0/3 8:0/5");
}

// Records that the table did not build itself can have an index that no method bears.
TEST_F(SchemeTable, ModifyInsertsAMethodForAnIndexThatNoneBears) {
    Prepare({2});
    MethodList* list = Find("a")->method_lists[0][5];
    list->methods[0] = {};
    ASSERT_EQ(Modify(Row("a", 0, 1, 1, "one")), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "1@1");
    EXPECT_STREQ(StoredEntry("a", 0, 0).scheme_name, "one");
}

TEST_F(SchemeTable, ModifyInsertsNothingIntoAFullList) {
    Prepare({1, 1, 1, 1, 1, 1});
    Find("a")->method_lists[0][5]->methods[0].scheme_index = 99;
    const std::string list = Stored("a", 0);
    EXPECT_EQ(Modify(Row("a", 0, 1, 2)), DOM_ERR_FAILED);
    EXPECT_EQ(Modify(Row("a", 0, 1, 5)), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("a", 0), list);
}

TEST_F(SchemeTable, FailedModifyLeavesNameAndKind) {
    Prepare({2, 1});
    ASSERT_EQ(Modify(Row("a", 0, 4, 1, "old")), DOM_OK);
    EXPECT_EQ(Modify(Row("a", 0, 4, 3, "new")), DOM_ERR_FAILED);
    EXPECT_EQ(Stored("a", 0), "2@1 1@4");
    EXPECT_STREQ(StoredEntry("a", 0, 1).scheme_name, "old");
}

TEST_F(SchemeTable, NamesOfRowsAreStoredWithTheirCapitals) {
    Prepare({2});
    ASSERT_EQ(Modify(Row("a", 0, 1, 2, "RAD 1/@")), DOM_OK);
    EXPECT_STREQ(StoredEntry("a", 0, 0).scheme_name, "RAD 1/@");
}

TEST_F(SchemeTable, EachOperationTakesTheTableMutexOnceWhetherItSucceedsOrNot) {
    Add("a");
    MethodList list = ListOf(0, 4, {2});
    uint64_t locks = fake::Count(fake::Event::kLock);
    for (const std::string domain : {"a", "b"}) {
        const char* name = domain.c_str();
        (void)DOM_AddMethodList(name, &list, nullptr);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_GetMethodList(name, 0, 4, &list, nullptr);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_DelMethodList(name, &list);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)AddRow(Row(domain, 0, 4, 5));
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)Modify(Row(domain, 0, 1, 2));
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_GetMethodIndex(name, 1, nullptr);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_GetAAAType(name, 1, nullptr);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
        (void)DOM_DeleteSchemeByIndex(name, 1);
        EXPECT_EQ(fake::Count(fake::Event::kLock), ++locks);
    }
    EXPECT_EQ(fake::HeldLocks(), 0);
}

TEST_F(SchemeTable, ModifyNeedsNoMemory) {
    Prepare({2});
    fake::FailAllocation(1);
    EXPECT_EQ(Modify(Row("a", 0, 1, 1)), DOM_OK);
    EXPECT_FALSE(fake::Tripped());
}

TEST_F(SchemeTable, DeletingAnyIndexResetsTheWholeList) {
    for (uint32_t index : {1u, 4u, 5u}) {
        Prepare({1, 2, 5});
        ASSERT_EQ(Stored("a", 0), "1@1 2@4 5@5");
        ASSERT_EQ(DOM_DeleteSchemeByIndex("A", index), DOM_OK);
        EXPECT_EQ(Stored("a", 0), "4@1");
        EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
    }
}

TEST_F(SchemeTable, ResetTakesTheLowestIndexThatIsFreeAfterTheListsOwnAreGone) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(0, 5, {})), DOM_OK);
    ASSERT_EQ(DOM_DeleteSchemeByIndex("a", 3), DOM_OK);
    EXPECT_EQ(Stored("a", 5), "4@1");
    EXPECT_EQ(Indexes("a"), "1:5/0 2:4/0");
}

TEST_F(SchemeTable, DeleteFailsWithoutDomainIndexListOrRowNode) {
    Add("a");
    EXPECT_EQ(DOM_DeleteSchemeByIndex("b", 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DeleteSchemeByIndex(nullptr, 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DeleteSchemeByIndex("a", 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DeleteSchemeByIndex("a", 4), DOM_ERR_FAILED);
    {
        WithoutRowNode without;
        EXPECT_EQ(DOM_DeleteSchemeByIndex("a", 1), DOM_ERR_FAILED);
    }
    DomainInfo* record = Find("a");
    MethodList* list = std::exchange(record->method_lists[0][5], nullptr);
    EXPECT_EQ(DOM_DeleteSchemeByIndex("a", 1), DOM_ERR_FAILED);
    EXPECT_EQ(Modify(Row("a", 0, 1, 5)), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(AddRow(Row("a", 0, 9, 5)), DOM_ERR_FAILED);
    record->method_lists[0][5] = list;
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(SchemeTable, DeleteWithoutMemoryLeavesListAndIndexes) {
    Prepare({1, 2});
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_DeleteSchemeByIndex("a", 1), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(Stored("a", 0), "1@1 2@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(SchemeTable, RowsChangeTheCallingRoleOnly) {
    AddToBoth("a");
    EXPECT_EQ(InConfig([] { return AddRow(Row("a", 0, 4, 5)); }), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "4@1");
    EXPECT_EQ(InConfig([] { return Stored("a", 0); }), "4@1 5@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(SchemeTable, IndexesGoWithTheirDomain) {
    Add("a");
    Add("b");
    ASSERT_EQ(Store("b", ListOf(0, 5, {1, 2})), DOM_OK);
    EXPECT_EQ(DOM_DeleteDomainAndDBByName("b", 0), 0u);
    EXPECT_EQ(Indexes("b"), "none");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
    Add("b");
    EXPECT_EQ(Indexes("b"), "1:0/0 2:4/0 3:5/0");
}

}  // namespace
}  // namespace aaadom
