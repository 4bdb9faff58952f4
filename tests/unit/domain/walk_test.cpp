#include <string>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

class Walk : public TablesTest {
  protected:
    static std::string NameOf(const DomainInfo* record) {
        return record == nullptr ? "(none)" : record->name;
    }
    template <typename Step>
    static std::string Locked(Step&& step) {
        DOM_DomainInfoTableLock();
        std::string name = NameOf(step());
        DOM_DomainInfoTableUnlock();
        return name;
    }
    static std::string First() { return Locked(DOM_GetFirstDomain); }
    static std::string Next(const char* name) {
        return Locked([&] { return DOM_GetNextDomain(name); });
    }
    static std::string MibFirst() { return Locked(DOM_MibGetFirstDomain); }
    static std::string MibNext(const std::string& name) {
        return Locked(
            [&] { return DOM_MibGetNextDomain(name.c_str(), static_cast<uint32_t>(name.size())); });
    }
    static std::string NetConfFirst() { return Locked(DOM_NetConfGetFirstDomain); }
    static std::string NetConfNext(const char* name) {
        return Locked([&] { return DOM_NetConfGetNextDomain(name); });
    }
};

TEST_F(Walk, EmptyTablesHaveNoFirst) {
    EXPECT_EQ(First(), "(none)");
    EXPECT_EQ(MibFirst(), "(none)");
    EXPECT_EQ(NetConfFirst(), "(none)");
    EXPECT_EQ(MibNext("a"), "(none)");
    EXPECT_EQ(NetConfNext("a"), "(none)");
}

TEST_F(Walk, SlotsAreWalkedInSlotOrder) {
    for (const char* name : {"z", "m", "a"}) Add(name);
    DOM_DeleteDomainAndDBByName("m", 0);
    EXPECT_EQ(First(), "z");
    EXPECT_EQ(Next("Z"), "a");
    EXPECT_EQ(Next("a"), "(none)");
    EXPECT_EQ(Next("m"), "(none)");
}

TEST_F(Walk, FirstIsTheLowestOccupiedSlot) {
    for (const char* name : {"z", "m"}) Add(name);
    DOM_DeleteDomainAndDBByName("z", 0);
    EXPECT_EQ(First(), "m");
}

TEST_F(Walk, SlotsAreTheCallingRoles) {
    Add("w");
    InConfig([] { return Add("c"); });
    EXPECT_EQ(InConfig(First), "c");
}

TEST_F(Walk, RowOrderIsLengthFirst) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    EXPECT_EQ(MibFirst(), "b");
    EXPECT_EQ(MibNext("b"), "c");
    EXPECT_EQ(MibNext("c"), "aa");
    EXPECT_EQ(MibNext("aa"), "ab");
    EXPECT_EQ(MibNext("ab"), "(none)");
}

TEST_F(Walk, RowKeyNeedNotExist) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    EXPECT_EQ(MibNext(""), "b");
    EXPECT_EQ(MibNext("a"), "b");
    EXPECT_EQ(MibNext("z"), "aa");
    EXPECT_EQ(MibNext("aaa"), "(none)");
}

TEST_F(Walk, RowKeysLengthIsTheGivenNumber) {
    for (const char* name : {"b", "aa"}) Add(name);
    EXPECT_EQ(Locked([] { return DOM_MibGetNextDomain("z", 0); }), "b");
    EXPECT_EQ(Locked([] { return DOM_MibGetNextDomain("", 1); }), "b");
    EXPECT_EQ(Locked([] { return DOM_MibGetNextDomain("", 2); }), "aa");
    EXPECT_EQ(Locked([] { return DOM_MibGetNextDomain("", 0xFFFFFFFF); }), "(none)");
}

TEST_F(Walk, NetConfOrderIsByCharacters) {
    for (const char* name : {"b", "aa", "ab", "c"}) Add(name);
    EXPECT_EQ(NetConfFirst(), "aa");
    EXPECT_EQ(NetConfNext("aa"), "ab");
    EXPECT_EQ(NetConfNext("abc"), "b");
    EXPECT_EQ(NetConfNext("B"), "aa");
    EXPECT_EQ(NetConfNext("c"), "(none)");
}

TEST_F(Walk, ManagementOrdersAreTheWorkingRolesFromEveryRole) {
    for (const char* name : {"b", "aa"}) AddToBoth(name);
    InConfig([] { return Add("a"); });  // in the configuration role only: not walked
    EXPECT_EQ(InConfig(MibFirst), "b");
    EXPECT_EQ(InConfig([] { return MibNext("b"); }), "aa");
    EXPECT_EQ(InConfig(NetConfFirst), "aa");
    EXPECT_EQ(InConfig([] { return NetConfNext("aa"); }), "b");
}

TEST_F(Walk, RecordsAreTheCallingRoles) {
    AddToBoth("b");
    DomainInfo* mine = InConfig([] { return Find("b"); });
    EXPECT_EQ(InConfig(DOM_MibGetFirstDomain), mine);
    EXPECT_NE(DOM_MibGetFirstDomain(), mine);
}

TEST_F(Walk, NameThatTheCallingRoleLacksEndsTheWalk) {
    Add("a");
    AddToBoth("b");
    EXPECT_EQ(InConfig(MibFirst), "(none)");
    EXPECT_EQ(InConfig(NetConfFirst), "(none)");
}

}  // namespace
}  // namespace aaadom
