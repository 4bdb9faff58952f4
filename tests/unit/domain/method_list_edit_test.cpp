#include "domain/method_list_edit.h"

#include <cstring>
#include <string>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

const char kNoName[DOM_SCHEME_NAME_SIZE] = "";

MethodList Indexed(std::initializer_list<uint32_t> kinds, uint32_t first_index = 1) {
    MethodList list = ListOf(0, 5, kinds);
    for (size_t i = 0; i < kinds.size(); ++i) {
        list.methods[i].scheme_index = first_index + static_cast<uint32_t>(i);
    }
    return list;
}

TEST(MethodList, IsCreatedZeroFilled) {
    MethodList* list = DOM_CreateMethodList();
    ASSERT_NE(list, nullptr);
    MethodList zero;
    memset(&zero, 0, sizeof zero);
    EXPECT_EQ(memcmp(list, &zero, sizeof zero), 0);
    DOM_DestroyMethodList(list);
    DOM_DestroyMethodList(nullptr);
}

TEST(MethodList, CreationWithoutMemoryReturnsNull) {
    fake::Reset();
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_CreateMethodList(), nullptr);
}

TEST(MethodListInsert, KindFiveGoesBehindTheUsedEntriesWhateverItsIndex) {
    MethodList list = Indexed({2, 1}, 7);
    ASSERT_TRUE(InsertMethod(list, 5, 1, kNoName));
    EXPECT_EQ(Show(list), "2@7 1@8 5@1");
}

TEST(MethodListInsert, OthersGoBeforeAnIndexThatIsNotSmaller) {
    MethodList list = Indexed({2, 4}, 10);
    ASSERT_TRUE(InsertMethod(list, 1, 10, kNoName));
    EXPECT_EQ(Show(list), "1@10 2@10 4@11");
    ASSERT_TRUE(InsertMethod(list, 3, 12, kNoName));
    EXPECT_EQ(Show(list), "1@10 2@10 4@11 3@12");
}

TEST(MethodListInsert, OthersGoBeforeKindFiveWhateverItsIndex) {
    MethodList list = Indexed({2, 5});
    ASSERT_TRUE(InsertMethod(list, 1, 9, kNoName));
    EXPECT_EQ(Show(list), "2@1 1@9 5@2");
}

TEST(MethodListInsert, OnlySchemeKindsKeepTheName) {
    const char name[DOM_SCHEME_NAME_SIZE] = "tac";
    for (uint32_t kind = 1; kind <= 5; ++kind) {
        MethodList list{};
        ASSERT_TRUE(InsertMethod(list, kind, 1, name));
        EXPECT_STREQ(list.methods[0].scheme_name, kind <= 3 ? "tac" : "") << kind;
    }
}

TEST(MethodListInsert, NameWithoutTerminatorIsCutTo32Characters) {
    char name[DOM_SCHEME_NAME_SIZE];
    memset(name, 'x', sizeof name);
    MethodList list{};
    ASSERT_TRUE(InsertMethod(list, 1, 1, name));
    EXPECT_EQ(std::string(list.methods[0].scheme_name), std::string(32, 'x'));
    EXPECT_EQ(list.methods[0].reserved[0], 0);
}

TEST(MethodListInsert, FullListStaysAsItWas) {
    MethodList list = Indexed({2, 1, 3, 4, 2, 1});
    MethodList before = list;
    EXPECT_FALSE(InsertMethod(list, 5, 9, kNoName));
    EXPECT_FALSE(InsertMethod(list, 1, 0, kNoName));
    EXPECT_EQ(memcmp(&list, &before, sizeof list), 0);
}

TEST(MethodListInsert, SixthEntryCanBeFilled) {
    MethodList list = Indexed({2, 1, 3, 4, 2});
    EXPECT_TRUE(InsertMethod(list, 5, 9, kNoName));
    EXPECT_EQ(Show(list), "2@1 1@2 3@3 4@4 2@5 5@9");
}

TEST(MethodListRemove, LaterEntriesMoveUpAndTheLastIsCleared) {
    MethodList list = Indexed({2, 1, 3, 4, 2, 5});
    strcpy(list.methods[5].scheme_name, "left");
    RemoveMethod(list, 2);
    EXPECT_EQ(Show(list), "2@1 3@3 4@4 2@5 5@6");
    MethodEntry zero{};
    EXPECT_EQ(memcmp(&list.methods[5], &zero, sizeof zero), 0);
}

TEST(MethodListRemove, UnknownIndexAndEmptyEntriesAreIgnored) {
    MethodList list = Indexed({2, 1});
    RemoveMethod(list, 0);
    RemoveMethod(list, 9);
    EXPECT_EQ(Show(list), "2@1 1@2");
}

TEST(MethodListReset, ClearsEveryEntryAndKeepsThePlace) {
    MethodList list = Indexed({2, 1, 3, 4, 2, 5});
    list.aaa_type = 4;
    strcpy(list.methods[0].scheme_name, "old");
    ResetToDefault(list, 7);
    EXPECT_EQ(Show(list), "4@7");
    EXPECT_EQ(list.aaa_type, 4u);
    EXPECT_EQ(list.service, 5u);
    EXPECT_STREQ(list.methods[0].scheme_name, "");
}

TEST(UpdateMethodModule, FillsTheFirstEmptyEntry) {
    MethodList list = ListOf(0, 5, {2, 0, 4});
    DOM_UpdateMethodModule(list.methods, 1);
    EXPECT_EQ(Show(list), "2@0 1@0 4@0");
    DOM_UpdateMethodModule(list.methods, 5);
    EXPECT_EQ(Show(list), "2@0 1@0 4@0 5@0");
}

TEST(UpdateMethodModule, WritesNothingButTheKind) {
    MethodList list{};
    strcpy(list.methods[0].scheme_name, "old");
    list.methods[0].scheme_index = 7;
    DOM_UpdateMethodModule(list.methods, 0xFFFFFFFFu);
    EXPECT_EQ(Show(list), "4294967295@7");
    EXPECT_STREQ(list.methods[0].scheme_name, "old");
}

TEST(UpdateMethodModule, DoesNothingWhenAllSixAreUsed) {
    MethodList list = ListOf(0, 5, {2, 1, 3, 4, 2, 5});
    DOM_UpdateMethodModule(list.methods, 1);
    EXPECT_EQ(Show(list), "2@0 1@0 3@0 4@0 2@0 5@0");
    DOM_UpdateMethodModule(nullptr, 1);
}

TEST(UpdateMethodSchemeName, NamesTheFirstEntryOfTheKindInSmallLetters) {
    MethodList list = ListOf(0, 5, {2, 1, 1});
    char name[] = "Tac-ONE";
    DOM_UpdateMethodSchemeName(list.methods, 1, name);
    EXPECT_STREQ(name, "tac-one");
    EXPECT_STREQ(list.methods[0].scheme_name, "");
    EXPECT_STREQ(list.methods[1].scheme_name, "tac-one");
    EXPECT_STREQ(list.methods[2].scheme_name, "");
}

TEST(UpdateMethodSchemeName, LowersTheCallersNameEvenWithoutAnEntry) {
    MethodList list = ListOf(0, 5, {2});
    char name[] = "ABC";
    DOM_UpdateMethodSchemeName(list.methods, 3, name);
    EXPECT_STREQ(name, "abc");
    EXPECT_STREQ(list.methods[0].scheme_name, "");
    char other[] = "ABC";
    DOM_UpdateMethodSchemeName(nullptr, 3, other);
    EXPECT_STREQ(other, "abc");
}

TEST(UpdateMethodSchemeName, AlsoNamesKindsWithoutASchemeAndEmptyEntries) {
    MethodList list = ListOf(0, 5, {4});
    char name[] = "a";
    DOM_UpdateMethodSchemeName(list.methods, 4, name);
    EXPECT_STREQ(list.methods[0].scheme_name, "a");
    DOM_UpdateMethodSchemeName(list.methods, 0, name);
    EXPECT_STREQ(list.methods[1].scheme_name, "a");
}

TEST(UpdateMethodSchemeName, CutsTo32Characters) {
    MethodList list = ListOf(0, 5, {1});
    std::string name(40, 'A');
    DOM_UpdateMethodSchemeName(list.methods, 1, name.data());
    EXPECT_EQ(std::string(list.methods[0].scheme_name), std::string(32, 'a'));
    EXPECT_EQ(list.methods[0].reserved[0], 0);
}

TEST(UpdateMethodSchemeName, NullNameIsIgnored) {
    MethodList list = ListOf(0, 5, {1});
    DOM_UpdateMethodSchemeName(list.methods, 1, nullptr);
    EXPECT_STREQ(list.methods[0].scheme_name, "");
}

}  // namespace
}  // namespace aaadom
