#include "domain/method_list_rules.h"

#include <aaadom/method_list.h>

#include <set>
#include <string>
#include <vector>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

using Kinds = std::vector<uint32_t>;

const Kinds kOrders[] = {
    {5},          {4},          {3},          {2},       {1},       {4, 5},       {3, 5},
    {3, 4},       {2, 5},       {2, 4},       {2, 1},    {1, 5},    {1, 4},       {1, 2},
    {3, 4, 5},    {2, 4, 5},    {2, 1, 5},    {2, 1, 4}, {1, 4, 5}, {1, 2, 5},    {1, 2, 4},
    {2, 1, 4, 5}, {1, 2, 4, 5}, {4, 2},       {4, 2, 1}, {4, 2, 5}, {4, 2, 1, 5}, {4, 1},
    {4, 1, 5},    {4, 1, 2},    {4, 1, 2, 5}, {4, 3},    {4, 3, 5},
};

MethodList ListOfKinds(const Kinds& kinds) {
    MethodList list{};
    for (size_t i = 0; i < kinds.size(); ++i) list.methods[i].method_kind = kinds[i];
    return list;
}

class AllowedOrder : public testing::TestWithParam<Kinds> {};

TEST_P(AllowedOrder, IsAccepted) {
    EXPECT_TRUE(IsOrderAllowed(ListOfKinds(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(EachOfThe33, AllowedOrder, testing::ValuesIn(kOrders));

TEST(MethodOrder, EveryOtherSequenceOfUpToFourKindsIsRefused) {
    std::set<Kinds> allowed(std::begin(kOrders), std::end(kOrders));
    ASSERT_EQ(allowed.size(), 33u);
    std::vector<Kinds> level{{}};
    size_t accepted = 0;
    for (int length = 1; length <= 4; ++length) {
        std::vector<Kinds> longer;
        for (const Kinds& prefix : level) {
            for (uint32_t kind = 1; kind <= 6; ++kind) {
                Kinds kinds = prefix;
                kinds.push_back(kind);
                longer.push_back(kinds);
                bool ok = IsOrderAllowed(ListOfKinds(kinds));
                EXPECT_EQ(ok, allowed.count(kinds) == 1) << testing::PrintToString(kinds);
                accepted += ok;
            }
        }
        level = longer;
    }
    EXPECT_EQ(accepted, 33u);
}

TEST(MethodOrder, EmptyListIsAllowed) {
    EXPECT_TRUE(IsOrderAllowed(ListOfKinds({})));
}

TEST(MethodOrder, FifthEntryIsNotLookedAt) {
    EXPECT_TRUE(IsOrderAllowed(ListOfKinds({1, 2, 4, 5, 3, 99})));
}

TEST(MethodOrder, EntriesBehindAnEmptyOneAreNotLookedAt) {
    EXPECT_TRUE(IsOrderAllowed(ListOfKinds({2, 0, 2})));
}

TEST(MethodOrder, KindsAreComparedWhole) {
    EXPECT_FALSE(IsOrderAllowed(ListOfKinds({0x104})));
}

// One row a service: the kinds that AAA types 0, 4 and 5 allow, as digits.
const char* const kSupport[DOM_SERVICES][3] = {
    {"12345", "1245", "1245"}, {"12", "", ""},
    {"", "145", "1"},          {"2345", "245", "245"},
    {"1245", "1245", "1245"},  {"12345", "1245", "1245"},
    {"2345", "245", "245"},    {"245", "245", ""},
    {"245", "245", "245"},     {"", "", ""},
    {"245", "245", "245"},     {"245", "", ""},
};

TEST(ServiceSupport, EveryCellAllowsExactlyItsKinds) {
    const uint32_t types[] = {0, 4, 5};
    for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
        for (int column = 0; column < 3; ++column) {
            for (uint32_t kind = 0; kind < 32; ++kind) {
                bool allowed =
                    kind < 10 &&
                    std::string(kSupport[service][column]).find('0' + kind) != std::string::npos;
                EXPECT_EQ(DOM_IsServiceSupportTheMethod(service, types[column], kind), allowed)
                    << service << " " << types[column] << " " << kind;
            }
        }
    }
}

TEST(ServiceSupport, OtherAaaTypesAllowNothing) {
    for (uint32_t type : {1u, 2u, 3u, 6u, 7u, 256u, 0xFFFFFFFFu}) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            for (uint32_t kind = 0; kind < 6; ++kind) {
                EXPECT_EQ(DOM_IsServiceSupportTheMethod(service, type, kind), 0u);
            }
        }
    }
}

TEST(ServiceSupport, KindIsTakenModulo32) {
    EXPECT_EQ(DOM_IsServiceSupportTheMethod(0, 0, 35), 1u);
    EXPECT_EQ(DOM_IsServiceSupportTheMethod(0, 4, 35), 0u);
    EXPECT_EQ(DOM_IsServiceSupportTheMethod(0, 0, 32), 0u);
    EXPECT_EQ(DOM_IsServiceSupportTheMethod(0, 0, 0xFFFFFFE3u), 1u);
}

TEST(ServiceSupport, ServiceAboveElevenMayUseNothing) {
    for (uint32_t service : {12u, 13u, 0x80000000u, 0xFFFFFFFFu}) {
        for (uint32_t type : {0u, 4u, 5u}) {
            for (uint32_t kind = 0; kind < 32; ++kind) {
                EXPECT_EQ(DOM_IsServiceSupportTheMethod(service, type, kind), 0u);
            }
        }
    }
}

}  // namespace
}  // namespace aaadom
