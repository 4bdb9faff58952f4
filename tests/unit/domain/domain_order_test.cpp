#include "domain/domain_order.h"

#include <aaadom/domain.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

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

}  // namespace
}  // namespace aaadom
