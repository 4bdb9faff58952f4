#include <cstring>
#include <string>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

class SchemeWalk : public SchemeTest {
  protected:
    static std::string ShowRow(uint32_t result, const MibSchemeRow& row) {
        if (result == DOM_ERR_NOT_FOUND) return "end";
        if (result != DOM_OK) return "failed";
        return std::string(row.domain_name) + " " + std::to_string(row.scheme_index) + " type " +
               std::to_string(row.aaa_type) + " kind " + std::to_string(row.method_kind) + " " +
               row.scheme_name;
    }
    /// Under the calling role's mutex, as the encoders call the readers.
    static std::string First() {
        MibSchemeRow row{};
        DOM_DomainInfoTableLock();
        uint32_t result = DOM_MibGetFirstScheme(&row);
        DOM_DomainInfoTableUnlock();
        return ShowRow(result, row);
    }
    static std::string Next(const std::string& domain, uint32_t index) {
        return Next(domain, static_cast<uint32_t>(domain.size()), index);
    }
    static std::string Next(const std::string& domain, uint32_t length, uint32_t index) {
        MibSchemeRow row{};
        DOM_DomainInfoTableLock();
        uint32_t result = DOM_MibGetNextScheme(domain.c_str(), length, index, &row);
        DOM_DomainInfoTableUnlock();
        return ShowRow(result, row);
    }
    static void StoreNamed(const std::string& domain) {
        MethodList list = ListOf(0, 5, {2, 4});
        strcpy(list.methods[0].scheme_name, "rad");
        ASSERT_EQ(DOM_AddMethodList(domain.c_str(), &list, nullptr), DOM_OK);
    }
};

TEST_F(SchemeWalk, EmptyTableHasNoRows) {
    EXPECT_EQ(DOM_IsSchemeTableNull(), 1u);
    EXPECT_EQ(First(), "failed");
    EXPECT_EQ(Next("", 0), "end");
}

TEST_F(SchemeWalk, FirstRowIsTheFirstIndexOfTheFirstDomain) {
    Add("bb");
    Add("c");
    StoreNamed("c");
    EXPECT_EQ(DOM_IsSchemeTableNull(), 0u);
    EXPECT_EQ(First(), "c 1 type 0 kind 2 rad");
}

TEST_F(SchemeWalk, VisitsDomainsByLengthThenNameAndIndexesAscending) {
    Add("aa");
    Add("c");
    Add("b");
    StoreNamed("b");
    std::string walked, domain = "", row = First();
    uint32_t index = 0;
    for (int steps = 0; row != "end" && steps < 20; ++steps) {
        size_t space = row.find(' ');
        domain = row.substr(0, space);
        index = static_cast<uint32_t>(std::stoul(row.substr(space + 1)));
        walked += domain + std::to_string(index) + " ";
        row = Next(domain, index);
    }
    EXPECT_EQ(walked, "b1 b2 b3 b4 c1 c2 c3 aa1 aa2 aa3 ");
}

TEST_F(SchemeWalk, RowShowsTheMethodAtTheIndexesPosition) {
    Add("b");
    StoreNamed("b");
    EXPECT_EQ(Next("b", 3), "b 4 type 0 kind 4 ");
    EXPECT_EQ(Next("b", 1), "b 2 type 4 kind 4 ");
}

TEST_F(SchemeWalk, StatusAndServiceStayTheCallers) {
    Add("b");
    MibSchemeRow row{};
    row.row_status = 77;
    row.service = 88;
    ASSERT_EQ(DOM_MibGetFirstScheme(&row), DOM_OK);
    ASSERT_EQ(DOM_MibGetNextScheme("b", 1, 1, &row), DOM_OK);
    EXPECT_EQ(row.row_status, 77u);
    EXPECT_EQ(row.service, 88u);
}

TEST_F(SchemeWalk, GoesOnWhereItStoodAfterTheOrderChanged) {
    for (const char* name : {"b", "d", "f"}) Add(name);
    EXPECT_EQ(Next("b", 3).substr(0, 3), "d 1");
    // The domain that the walk stood on goes, one before and one behind it come.
    ASSERT_EQ(DOM_DeleteDomainAndDBByName("d", 0), DOM_OK);
    Add("c");
    Add("e");
    EXPECT_EQ(Next("d", 1).substr(0, 3), "e 1");
    EXPECT_EQ(Next("b", 3).substr(0, 3), "c 1");
    EXPECT_EQ(Next("b", 1).substr(0, 3), "b 2");
    Add("bb");
    EXPECT_EQ(Next("f", 3).substr(0, 4), "bb 1");
    EXPECT_EQ(Next("", 0).substr(0, 3), "b 1");
}

TEST_F(SchemeWalk, IndexNeedNotExist) {
    Add("b");
    Add("c");
    DOM_DeleteSchemeByIndex("b", 2);
    EXPECT_EQ(Next("b", 0), "b 1 type 0 kind 4 ");
    ASSERT_EQ(Store("b", ListOf(4, 5, {})), DOM_OK);
    EXPECT_EQ(Next("b", 2), "b 3 type 5 kind 4 ");
    EXPECT_EQ(Next("b", 0xFFFFFFFFu), "c 1 type 0 kind 4 ");
}

TEST_F(SchemeWalk, UnknownDomainIsFollowedByTheNextGreaterOne) {
    Add("b");
    Add("d");
    EXPECT_EQ(Next("a", 5), "b 1 type 0 kind 4 ");
    EXPECT_EQ(Next("c", 0), "d 1 type 0 kind 4 ");
    EXPECT_EQ(Next("aaa", 0), "end");
    EXPECT_EQ(Next("", 9), "b 1 type 0 kind 4 ");
}

TEST_F(SchemeWalk, NamesAreComparedWithCase) {
    Add("b");
    EXPECT_EQ(Next("B", 2), "b 1 type 0 kind 4 ");
}

TEST_F(SchemeWalk, OnlyTheGivenLengthCounts) {
    Add("b");
    Add("cc");
    EXPECT_EQ(Next("b", 0, 1), "b 1 type 0 kind 4 ");
    EXPECT_EQ(Next("b", 2, 1), "cc 1 type 0 kind 4 ");
    EXPECT_EQ(Next("b", 0xFFFFFFFFu, 1), "end");
    EXPECT_EQ(Next("", 0xFFFFFFFFu, 1), "end");
}

TEST_F(SchemeWalk, OnlyTheFirstDomainDecidesWhetherThereIsAFirstRow) {
    Add("b");
    Add("c");
    for (uint32_t type : {0u, 4u, 5u}) ASSERT_EQ(Store("b", ListOf(type, 5, {})), DOM_OK);
    EXPECT_EQ(DOM_IsSchemeTableNull(), 1u);
    EXPECT_EQ(First(), "failed");
    EXPECT_EQ(Next("b", 0), "c 1 type 0 kind 4 ");
}

TEST_F(SchemeWalk, DomainsWithoutIndexesArePassedOver) {
    for (const char* name : {"b", "c", "d"}) Add(name);
    for (uint32_t type : {0u, 4u, 5u}) ASSERT_EQ(Store("c", ListOf(type, 5, {})), DOM_OK);
    EXPECT_EQ(Next("b", 3), "d 1 type 0 kind 4 ");
    EXPECT_EQ(Next("d", 3), "end");
}

TEST_F(SchemeWalk, ConfigRoleWalksTheWorkingRolesOrderWithItsOwnContents) {
    Add("b");
    InConfig([] { return Add("a"); });
    EXPECT_EQ(InConfig([] { return First(); }), "failed");  // it has no b itself
    EXPECT_EQ(InConfig([] { return Next("a", 1); }), "failed");
    EXPECT_EQ(InConfig([] { return DOM_IsSchemeTableNull(); }), 0u);
    InConfig([] {
        Add("b");
        return Store("b", ListOf(0, 5, {3}));
    });
    EXPECT_EQ(InConfig([] { return First(); }), "b 1 type 0 kind 3 ");
    EXPECT_EQ(First(), "b 1 type 0 kind 4 ");
}

TEST_F(SchemeWalk, ConfigRolesOwnDomainsAloneAreNotWalked) {
    InConfig([] { return Add("a"); });
    EXPECT_EQ(InConfig([] { return DOM_IsSchemeTableNull(); }), 1u);
    EXPECT_EQ(InConfig([] { return First(); }), "failed");
    EXPECT_EQ(InConfig([] { return Next("", 0); }), "end");
}

TEST_F(SchemeWalk, MissingListOfTheCallingRoleFailsAndWritesNothing) {
    Add("b");
    DomainInfo* record = Find("b");
    MethodList* list = std::exchange(record->method_lists[0][5], nullptr);
    MibSchemeRow row = Row("old", 1, 2, 3, "x"), before = row;
    EXPECT_EQ(DOM_MibGetFirstScheme(&row), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_MibGetNextScheme("b", 1, 0, &row), DOM_ERR_FAILED);
    EXPECT_EQ(memcmp(&row, &before, sizeof row), 0);
    record->method_lists[0][5] = list;
}

TEST_F(SchemeWalk, NullArgumentsAreRefused) {
    Add("b");
    MibSchemeRow row{};
    EXPECT_EQ(DOM_MibGetFirstScheme(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_MibGetNextScheme("b", 1, 1, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_MibGetNextScheme(nullptr, 1, 1, &row), DOM_ERR_NOT_FOUND);
}

TEST_F(SchemeWalk, ReadersTakeNoLock) {
    Add("b");
    MibSchemeRow row{};
    uint64_t before = fake::Count(fake::Event::kLock);
    (void)DOM_IsSchemeTableNull();
    (void)DOM_MibGetFirstScheme(&row);
    (void)DOM_MibGetNextScheme("b", 1, 1, &row);
    EXPECT_EQ(fake::Count(fake::Event::kLock), before);
}

}  // namespace
}  // namespace aaadom
