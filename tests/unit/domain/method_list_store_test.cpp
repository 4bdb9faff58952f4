#include <cstring>
#include <string>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

using MethodListStore = SchemeTest;

MethodEntry Extra(uint32_t kind, const char* name) {
    MethodEntry extra{};
    extra.method_kind = kind;
    strcpy(extra.scheme_name, name);
    return extra;
}

TEST_F(MethodListStore, NewDomainHasThreeDefaultListsWithIndexesOneTwoThree) {
    Add("a");
    EXPECT_EQ(Stored("a", 0), "4@1");
    EXPECT_EQ(Stored("a", 4), "4@2");
    EXPECT_EQ(Stored("a", 5), "4@3");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
    for (uint32_t type = 0; type < DOM_AAA_TYPES; ++type) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            bool is_default = service == 5 && (type == 0 || type >= 4);
            EXPECT_EQ(Stored("a", type, service) != "none", is_default) << type << " " << service;
        }
    }
}

TEST_F(MethodListStore, GetCopiesListAndExtras) {
    Add("a");
    MethodList list = ListOf(5, 3, {2, 4});
    strcpy(list.methods[0].scheme_name, "s");
    MethodEntry extra = Extra(1, "x");
    ASSERT_EQ(DOM_AddMethodList("A", &list, &extra), DOM_OK);
    MethodList list_out{};
    MethodEntry extra_out{};
    ASSERT_EQ(DOM_GetMethodList("a", 5, 3, &list_out, &extra_out), DOM_OK);
    EXPECT_EQ(memcmp(&list_out, &list, sizeof list), 0);
    EXPECT_EQ(memcmp(&extra_out, &extra, sizeof extra), 0);
    EXPECT_EQ(DOM_GetMethodList("a", 5, 3, nullptr, nullptr), DOM_OK);
}

TEST_F(MethodListStore, GetFailsWithoutDomainOrListAndWritesNothing) {
    Add("a");
    MethodList list = ListOf(9, 9, {9});
    MethodEntry extra = Extra(9, "x");
    const MethodList list_before = list;
    const MethodEntry extra_before = extra;
    EXPECT_EQ(DOM_GetMethodList("b", 0, 5, &list, &extra), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetMethodList(nullptr, 0, 5, &list, &extra), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetMethodList("a", 0, 0, &list, &extra), DOM_ERR_FAILED);
    EXPECT_EQ(memcmp(&list, &list_before, sizeof list), 0);
    EXPECT_EQ(memcmp(&extra, &extra_before, sizeof extra), 0);
}

TEST_F(MethodListStore, PlacesOutsideTheGridDoNotExist) {
    Add("a");
    for (uint32_t big : {12u, 13u, 72u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        for (auto [type, service] : {std::pair{big, 5u}, {0u, big}, {big, big}, {6u, 5u}}) {
            EXPECT_EQ(DOM_GetMethodList("a", type, service, nullptr, nullptr), DOM_ERR_FAILED);
            MethodList list = ListOf(type, service, {2});
            MethodEntry extra = Extra(1, "x");
            EXPECT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_ERR_FAILED);
            EXPECT_EQ(DOM_DelMethodList("a", &list), DOM_ERR_FAILED);
        }
    }
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(MethodListStore, AddCreatesAMissingListAndReplacesAPresentOne) {
    Add("a");
    EXPECT_EQ(Store("a", ListOf(0, 0, {2, 1})), DOM_OK);
    EXPECT_EQ(Stored("a", 0, 0), "2@0 1@0");
    EXPECT_EQ(Store("a", ListOf(0, 0, {3})), DOM_OK);
    EXPECT_EQ(Stored("a", 0, 0), "3@0");
}

TEST_F(MethodListStore, OutsideTheDefaultServiceIndexesAreStoredAsGiven) {
    Add("a");
    MethodList list = ListOf(0, 4, {2});
    list.methods[0].scheme_index = 77;
    EXPECT_EQ(DOM_AddMethodList("a", &list, nullptr), DOM_OK);
    EXPECT_EQ(Stored("a", 0, 4), "2@77");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(MethodListStore, DefaultServiceGetsTheLowestFreeIndexesAndWritesThemBack) {
    Add("a");
    MethodList list = ListOf(0, 5, {1, 2, 5});
    list.methods[0].scheme_index = 55;
    ASSERT_EQ(DOM_AddMethodList("a", &list, nullptr), DOM_OK);
    EXPECT_EQ(Show(list), "1@1 2@4 5@5");
    EXPECT_EQ(Stored("a", 0), "1@1 2@4 5@5");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1 5:0/2");
}

TEST_F(MethodListStore, OldIndexesOfTheTypeAreFreeAgain) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(0, 5, {1, 2, 4, 5})), DOM_OK);
    ASSERT_EQ(Store("a", ListOf(4, 5, {1, 2})), DOM_OK);
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1 5:0/2 6:0/3 7:4/1");
    ASSERT_EQ(Store("a", ListOf(0, 5, {2})), DOM_OK);
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 7:4/1");
    ASSERT_EQ(Store("a", ListOf(5, 5, {2, 4})), DOM_OK);
    EXPECT_EQ(Stored("a", 5), "2@3 4@4");
}

TEST_F(MethodListStore, NeitherKindsNorOrderNorDuplicatesAreJudged) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(4, 5, {3, 3, 99, 5, 1, 5})), DOM_OK);
    EXPECT_EQ(Stored("a", 4), "3@2 3@4 99@5 5@6 1@7 5@8");
    ASSERT_EQ(Store("a", ListOf(0, 9, {3})), DOM_OK);
    EXPECT_EQ(Stored("a", 0, 9), "3@0");
}

TEST_F(MethodListStore, TypesOneToThreeAreAcceptedAndNumbered) {
    Add("a");
    for (uint32_t type : {1u, 2u, 3u}) {
        EXPECT_EQ(Store("a", ListOf(type, 7, {2})), DOM_OK);
        EXPECT_EQ(Store("a", ListOf(type, 5, {2})), DOM_OK);
    }
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:1/0 5:2/0 6:3/0");
}

TEST_F(MethodListStore, EmptyListLeavesTheTypeWithoutIndexes) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(0, 5, {})), DOM_OK);
    EXPECT_EQ(Indexes("a"), "2:4/0 3:5/0");
    EXPECT_EQ(Stored("a", 0), "");
}

TEST_F(MethodListStore, MethodsBehindAnEmptyEntryGetIndexesTooAtTheirPositions) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(0, 5, {0, 2, 0, 4})), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "- 2@1 - 4@4");
    EXPECT_EQ(Indexes("a"), "1:0/1 2:4/0 3:5/0 4:0/3");
}

TEST_F(MethodListStore, ExtrasAreStoredWithTypeFiveOnly) {
    Add("a");
    MethodEntry extra = Extra(1, "x"), out{};
    for (uint32_t type : {0u, 4u, 1u}) {
        MethodList list = ListOf(type, 2, {4});
        ASSERT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_OK);
        ASSERT_EQ(DOM_GetMethodList("a", type, 2, nullptr, &out), DOM_OK);
        EXPECT_EQ(out.method_kind, 0u);
    }
    MethodList list = ListOf(5, 2, {4});
    ASSERT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_OK);
    // returned with every list of the service, whatever its type
    ASSERT_EQ(DOM_GetMethodList("a", 0, 2, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 1u);
    EXPECT_STREQ(out.scheme_name, "x");
    ASSERT_EQ(DOM_GetMethodList("a", 5, 5, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 0u);
}

TEST_F(MethodListStore, ExtrasOfTheDefaultServiceAndEmptyExtrasAreStored) {
    Add("a");
    MethodEntry extra = Extra(2, "x"), empty{}, out{};
    MethodList list = ListOf(5, 5, {4});
    ASSERT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_OK);
    ASSERT_EQ(DOM_GetMethodList("a", 5, 5, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 2u);
    ASSERT_EQ(DOM_AddMethodList("a", &list, nullptr), DOM_OK);
    ASSERT_EQ(DOM_GetMethodList("a", 5, 5, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 2u);
    ASSERT_EQ(DOM_AddMethodList("a", &list, &empty), DOM_OK);
    ASSERT_EQ(DOM_GetMethodList("a", 5, 5, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 0u);
}

TEST_F(MethodListStore, AddFailsWithoutDomainOrList) {
    MethodList list = ListOf(0, 5, {2});
    EXPECT_EQ(DOM_AddMethodList("a", &list, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_AddMethodList(nullptr, &list, nullptr), DOM_ERR_FAILED);
    Add("a");
    EXPECT_EQ(DOM_AddMethodList("a", nullptr, nullptr), DOM_ERR_FAILED);
}

TEST_F(MethodListStore, DefaultServiceNeedsTheDomainsRowNode) {
    Add("a");
    MethodList list = ListOf(5, 5, {2, 1});
    MethodList fresh = ListOf(1, 5, {2});
    MethodEntry extra = Extra(1, "x"), out{};
    {
        WithoutRowNode without;
        EXPECT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_AddMethodList("a", &fresh, &extra), DOM_ERR_FAILED);
        EXPECT_EQ(DOM_DelMethodList("a", &list), DOM_ERR_FAILED);
        EXPECT_EQ(Store("a", ListOf(0, 4, {2})), DOM_OK);
    }
    EXPECT_EQ(Show(list), "2@0 1@0");
    EXPECT_EQ(Stored("a", 5), "4@3");
    EXPECT_EQ(Stored("a", 1), "none");
    ASSERT_EQ(DOM_GetMethodList("a", 5, 5, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 0u);
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
}

TEST_F(MethodListStore, AddWithoutMemoryLeavesEverythingAsItWas) {
    Add("a");
    MethodEntry extra = Extra(1, "x"), out{};
    int failures = 0;
    for (int n = 1;; ++n) {
        MethodList list = ListOf(5, 5, {2, 1, 4});
        fake::FailAllocation(n);
        uint32_t result = DOM_AddMethodList("a", &list, &extra);
        if (!fake::Tripped()) {
            EXPECT_EQ(result, DOM_OK);
            break;
        }
        ++failures;
        EXPECT_EQ(result, DOM_ERR_FAILED);
        EXPECT_EQ(Show(list), "2@0 1@0 4@0");
        EXPECT_EQ(Stored("a", 5), "4@3");
        EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
        ASSERT_EQ(DOM_GetMethodList("a", 5, 5, nullptr, &out), DOM_OK);
        EXPECT_EQ(out.method_kind, 0u);
    }
    EXPECT_EQ(failures, 3);  // one node a method
}

TEST_F(MethodListStore, AddWithoutMemoryCreatesNoList) {
    Add("a");
    int failures = 0;
    for (int n = 1;; ++n) {
        MethodList list = ListOf(1, 5, {2});
        fake::FailAllocation(n);
        uint32_t result = DOM_AddMethodList("a", &list, nullptr);
        if (!fake::Tripped()) {
            EXPECT_EQ(result, DOM_OK);
            break;
        }
        ++failures;
        EXPECT_EQ(result, DOM_ERR_FAILED);
        EXPECT_EQ(Stored("a", 1), "none");
        EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
    }
    EXPECT_EQ(failures, 2);  // the list, its node
}

TEST_F(MethodListStore, DeleteFreesListsOutsideTheDefaultServiceAndKeepsExtras) {
    Add("a");
    MethodList list = ListOf(5, 4, {2});
    MethodEntry extra = Extra(1, "x"), out{};
    ASSERT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_OK);
    ASSERT_EQ(DOM_DelMethodList("A", &list), DOM_OK);
    EXPECT_EQ(Stored("a", 5, 4), "none");
    EXPECT_EQ(DOM_DelMethodList("a", &list), DOM_ERR_FAILED);
    ASSERT_EQ(Store("a", ListOf(0, 4, {2})), DOM_OK);
    ASSERT_EQ(DOM_GetMethodList("a", 0, 4, nullptr, &out), DOM_OK);
    EXPECT_EQ(out.method_kind, 1u);
}

TEST_F(MethodListStore, DeleteResetsTheDefaultServicesList) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(0, 5, {1, 2, 5})), DOM_OK);
    MethodList header = ListOf(0, 5, {});
    ASSERT_EQ(DOM_DelMethodList("a", &header), DOM_OK);
    EXPECT_EQ(Stored("a", 0), "4@1");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
    MethodList stored{};
    DOM_GetMethodList("a", 0, 5, &stored, nullptr);
    EXPECT_EQ(stored.aaa_type, 0u);
    EXPECT_EQ(stored.service, 5u);
}

TEST_F(MethodListStore, DeleteFailsWithoutDomainListOrHeader) {
    Add("a");
    MethodList header = ListOf(0, 5, {});
    EXPECT_EQ(DOM_DelMethodList("b", &header), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelMethodList(nullptr, &header), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DelMethodList("a", nullptr), DOM_ERR_FAILED);
    header.aaa_type = 1;
    EXPECT_EQ(DOM_DelMethodList("a", &header), DOM_ERR_FAILED);
}

TEST_F(MethodListStore, ResetWithoutMemoryLeavesListAndIndexes) {
    Add("a");
    ASSERT_EQ(Store("a", ListOf(0, 5, {1, 2})), DOM_OK);
    MethodList header = ListOf(0, 5, {});
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_DelMethodList("a", &header), DOM_ERR_FAILED);
    fake::DisarmFailures();
    EXPECT_EQ(Stored("a", 0), "1@1 2@4");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(MethodListStore, RolesAreSeparate) {
    AddToBoth("a");
    InConfig([] { return Store("a", ListOf(0, 5, {1, 2})); });
    EXPECT_EQ(Stored("a", 0), "4@1");
    EXPECT_EQ(Indexes("a"), "1:0/0 2:4/0 3:5/0");
    EXPECT_EQ(InConfig([] { return Stored("a", 0); }), "1@1 2@4");
    EXPECT_EQ(Indexes("a", Role::kConfig), "1:0/0 2:4/0 3:5/0 4:0/1");
}

TEST_F(MethodListStore, NameWithoutTerminatorIsCutTo32CharactersInEveryCopy) {
    Add("a");
    MethodList list = ListOf(5, 5, {1, 2, 1, 2, 1, 2});
    for (MethodEntry& entry : list.methods) {
        memset(entry.scheme_name, 'x', DOM_SCHEME_NAME_SIZE);
        memset(entry.reserved, 'y', 3);
    }
    MethodEntry extra = list.methods[0];
    ASSERT_EQ(DOM_AddMethodList("a", &list, &extra), DOM_OK);
    EXPECT_EQ(list.methods[0].scheme_name[DOM_SCHEME_NAME_SIZE - 1], 'x');
    MethodList out{};
    MethodEntry extra_out{};
    ASSERT_EQ(DOM_GetMethodList("a", 5, 5, &out, &extra_out), DOM_OK);
    const std::string cut(32, 'x');
    for (const MethodEntry& entry : out.methods) EXPECT_EQ(std::string(entry.scheme_name), cut);
    EXPECT_EQ(std::string(extra_out.scheme_name), cut);
    MibSchemeRow row{};
    list.aaa_type = 0;
    ASSERT_EQ(DOM_AddMethodList("a", &list, nullptr), DOM_OK);
    ASSERT_EQ(DOM_MibGetFirstScheme(&row), DOM_OK);
    EXPECT_EQ(std::string(row.scheme_name), std::string(32, 'x'));
}

}  // namespace
}  // namespace aaadom
