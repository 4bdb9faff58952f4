#include "domain/domain_order.h"

#include <aaadom/domain.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "domain/tables.h"

namespace aaadom {
namespace {

/// A table that was never initialised: the sentinel's links are null.
class DomainOrder : public testing::Test {
  protected:
    AAADOM_NO_TSA ~DomainOrder() override {
        while (ZorvDomain* node = table_->mib_head) {
            table_->mib_head = node->next;
            DOM_DestroyZorvDomain(node);
        }
        while (const NetConfDomain* node = NextNetConfNode(&table_->netconf, nullptr)) {
            char name[DOM_NAME_SIZE];
            strcpy(name, node->domain_name);
            RemoveNetConfNode(*table_, name);
        }
    }

    AAADOM_NO_TSA ZorvDomain* AddMib(const char* name) {
        ZorvDomain* node = DOM_CreateZorvDomain();
        strcpy(node->domain_name, name);
        InsertMibNode(*table_, node);
        return node;
    }
    AAADOM_NO_TSA NetConfDomain* AddNetConf(const char* name) {
        NetConfDomain* node = CreateNetConfNode(name);
        InsertNetConfNode(*table_, node);
        return node;
    }
    AAADOM_NO_TSA const ZorvDomain* MibHead() { return table_->mib_head; }
    AAADOM_NO_TSA ZorvDomain* FindMib(const char* name) { return FindMibNode(*table_, name); }
    AAADOM_NO_TSA ZorvDomain* TakeMib(const char* name) { return TakeMibNode(*table_, name); }
    AAADOM_NO_TSA void RemoveNetConf(const char* name) { RemoveNetConfNode(*table_, name); }
    const NetConfDomain* FirstNetConf() { return NextNetConfNode(&table_->netconf, nullptr); }

    AAADOM_NO_TSA ZorvDomain* PutRowListAway(ZorvDomain* other) {
        return std::exchange(table_->mib_head, other);
    }
    AAADOM_NO_TSA void ExpectOrders(std::vector<std::string> names) {
        std::sort(names.begin(), names.end());
        const NetConfDomain* netconf = table_->netconf.next;
        for (const std::string& name : names) {
            ASSERT_NE(netconf, &table_->netconf);
            ASSERT_EQ(netconf->domain_name, name);
            ASSERT_EQ(netconf->next->prev, netconf);
            netconf = netconf->next;
        }
        EXPECT_EQ(netconf, &table_->netconf);
        std::stable_sort(names.begin(), names.end(), [](const auto& left, const auto& right) {
            return left.size() < right.size();
        });
        const ZorvDomain* before = nullptr;
        const ZorvDomain* row = table_->mib_head;
        for (const std::string& name : names) {
            ASSERT_NE(row, nullptr);
            ASSERT_EQ(row->domain_name, name);
            ASSERT_EQ(row->prev, before);
            before = row;
            row = row->next;
        }
        EXPECT_EQ(row, nullptr);
    }

    std::unique_ptr<DomainTable> table_ = std::make_unique<DomainTable>();
};

TEST_F(DomainOrder, UninitialisedTableIsEmpty) {
    EXPECT_EQ(MibHead(), nullptr);
    EXPECT_EQ(FirstNetConf(), nullptr);
    RemoveNetConf("a");
    EXPECT_EQ(TakeMib("a"), nullptr);
}

TEST_F(DomainOrder, EqualNameGoesBeforeTheExistingOneInRowOrder) {
    AddMib("a");
    ZorvDomain* first = AddMib("b");
    ZorvDomain* second = AddMib("b");
    EXPECT_EQ(second->next, first);
    EXPECT_EQ(first->prev, second);
    EXPECT_EQ(MibHead()->next, second);
}

TEST_F(DomainOrder, EqualNameGoesBehindTheExistingOneInStrcmpOrder) {
    AddNetConf("c");
    NetConfDomain* first = AddNetConf("b");
    NetConfDomain* second = AddNetConf("b");
    EXPECT_EQ(FirstNetConf(), first);
    EXPECT_EQ(first->next, second);
    EXPECT_STREQ(second->next->domain_name, "c");
}

TEST_F(DomainOrder, FirstOfEqualNamesIsTaken) {
    ZorvDomain* first = AddMib("b");
    ZorvDomain* second = AddMib("b");
    EXPECT_EQ(FindMib("b"), second);
    EXPECT_EQ(TakeMib("b"), second);
    EXPECT_EQ(MibHead(), first);
    EXPECT_EQ(first->prev, nullptr);
    DOM_DestroyZorvDomain(second);
}

TEST_F(DomainOrder, FirstOfEqualNamesIsRemoved) {
    AddNetConf("b");
    NetConfDomain* second = AddNetConf("b");
    RemoveNetConf("b");
    EXPECT_EQ(FirstNetConf(), second);
    EXPECT_EQ(second->prev, &table_->netconf);
}

TEST_F(DomainOrder, NamesAreTakenInTheirOwnSpellingOnly) {
    ZorvDomain* row = AddMib("abc");
    NetConfDomain* node = AddNetConf("abc");
    EXPECT_EQ(TakeMib("ABC"), nullptr);
    RemoveNetConf("ABC");
    EXPECT_EQ(MibHead(), row);
    EXPECT_EQ(FirstNetConf(), node);
}

TEST_F(DomainOrder, LengthCountsBeforeTheCharactersWhateverTheyAre) {
    AddMib("zz");
    AddMib("\xFF");
    EXPECT_STREQ(MibHead()->domain_name, "\xFF");
    EXPECT_EQ(NextMibNode(MibHead(), "a", 2), MibHead()->next);
}

/// Both orders against the names sorted as each promises, while names come and go in no order.
TEST_F(DomainOrder, OrdersHoldWhileNamesComeAndGoInAnyOrder) {
    std::mt19937 random(7);
    std::vector<std::string> names;
    for (int step = 0; step < 3000; ++step) {
        if (names.empty() || random() % 3 != 0) {
            names.push_back(std::to_string(random() % 2000));
            AddMib(names.back().c_str());
            AddNetConf(names.back().c_str());
        } else {
            const size_t gone = random() % names.size();
            DOM_DestroyZorvDomain(TakeMib(names[gone].c_str()));
            RemoveNetConf(names[gone].c_str());
            names.erase(names.begin() + static_cast<std::ptrdiff_t>(gone));
        }
        if (step % 100 == 0) ExpectOrders(names);
    }
    ExpectOrders(names);
}

/// A full table still takes nodes (row management relies on it), more than the index has room for.
TEST_F(DomainOrder, OrdersHoldBeyondTheNumberOfSlotsAndBack) {
    std::vector<std::string> names;
    for (int n = 0; n < DOM_MAX_DOMAINS + 3; ++n) {
        names.push_back("n" + std::to_string((n * 7) % 5000));
        AddMib(names.back().c_str());
        AddNetConf(names.back().c_str());
    }
    ExpectOrders(names);
    while (names.size() > DOM_MAX_DOMAINS - 2) {
        DOM_DestroyZorvDomain(TakeMib(names.back().c_str()));
        RemoveNetConf(names.back().c_str());
        names.pop_back();
    }
    ExpectOrders(names);
    names.push_back("last");
    AddMib("last");
    AddNetConf("last");
    ExpectOrders(names);
}

TEST_F(DomainOrder, ListPutAwayWholeIsNotFoundAndFoundAgainWhenItIsBack) {
    AddMib("a");
    ZorvDomain* b = AddMib("b");
    ZorvDomain* list = PutRowListAway(nullptr);
    EXPECT_EQ(FindMib("b"), nullptr);
    EXPECT_EQ(TakeMib("b"), nullptr);
    PutRowListAway(list);
    EXPECT_EQ(FindMib("b"), b);
}

}  // namespace
}  // namespace aaadom
