#include "domain/scheme_index.h"

#include <iterator>
#include <string>

#include "unit/domain/scheme_fixture.h"

namespace aaadom {
namespace {

/// One domain that is not in a table: its indexes, and nodes made for a record.
class SchemeIndexes : public testing::Test {
  protected:
    SchemeIndexes() { fake::Reset(); }
    ~SchemeIndexes() override {
        dom_FreeSchemeIndexes(node_);
        DOM_DestroyDomainSchemeResource(&resources_);
        DOM_DestroyDomain(record_);
    }
    void Insert(uint32_t index, uint32_t type = 0, uint32_t position = 0) {
        InsertSchemeIndex(node_, CreateSchemeIndex(), index, type, position);
    }
    std::string Indexes() const {
        std::string shown;
        const SchemeIndexNode* before = nullptr;
        for (const SchemeIndexNode* n = node_.scheme_index_head; n != nullptr; n = n->next) {
            EXPECT_EQ(n->prev, before);
            before = n;
            shown += std::to_string(n->scheme_index) + ":" + std::to_string(n->aaa_type) + "/" +
                     std::to_string(n->position) + " ";
        }
        if (!shown.empty()) shown.pop_back();
        return shown;
    }
    void SetList(uint32_t type, std::initializer_list<std::pair<uint32_t, uint32_t>> methods) {
        MethodList& list = *record_->method_lists[type][5];
        for (MethodEntry& entry : list.methods) entry = {};
        size_t i = 0;
        for (auto [kind, index] : methods) {
            list.methods[i].method_kind = kind;
            list.methods[i++].scheme_index = index;
        }
    }
    std::string List(uint32_t type) const { return Show(*record_->method_lists[type][5]); }
    int NodesLeft() const {
        int count = 0;
        for (auto& group : resources_.nodes) {
            for (const SchemeIndexNode* n : group) count += n != nullptr;
        }
        return count;
    }
    void Fill() {
        ASSERT_EQ(DOM_CreateDomainSchemeResource(record_, &resources_), DOM_OK);
        dom_FillSchemeIndexes(node_, *record_, resources_);
    }

    ZorvDomain node_{};
    SchemeResources resources_{};
    DomainInfo* record_ = DOM_CreateDomain();
};

TEST_F(SchemeIndexes, AreKeptInAscendingOrder) {
    for (uint32_t index : {5u, 1u, 0xFFFFFFFFu, 3u, 0u}) Insert(index, index % 7, 2);
    EXPECT_EQ(Indexes(), "0:0/2 1:1/2 3:3/2 5:5/2 4294967295:3/2");
    EXPECT_EQ(FindSchemeIndex(node_, 3)->scheme_index, 3u);
    EXPECT_EQ(FindSchemeIndex(node_, 2), nullptr);
    EXPECT_EQ(FindSchemeIndex(node_, 6), nullptr);
}

TEST_F(SchemeIndexes, LowestFreeStartsAtOneAndFillsGaps) {
    EXPECT_EQ(LowestFreeSchemeIndex(node_), 1u);
    Insert(2);
    EXPECT_EQ(LowestFreeSchemeIndex(node_), 1u);
    Insert(1);
    EXPECT_EQ(LowestFreeSchemeIndex(node_), 3u);
    Insert(4);
    EXPECT_EQ(LowestFreeSchemeIndex(node_), 3u);
    Insert(0);
    EXPECT_EQ(LowestFreeSchemeIndex(node_), 3u);
}

TEST_F(SchemeIndexes, RemovalTakesEveryNodeOfTheTypeAndNoOther) {
    Insert(1, 0);
    Insert(2, 4);
    Insert(3, 0);
    Insert(4, 0);
    RemoveSchemeIndexes(node_, 0);
    EXPECT_EQ(Indexes(), "2:4/0");
    RemoveSchemeIndexes(node_, 5);
    EXPECT_EQ(Indexes(), "2:4/0");
    RemoveSchemeIndexes(node_, 4);
    EXPECT_EQ(Indexes(), "");
}

TEST_F(SchemeIndexes, NewDomainIsNumberedOneTwoThree) {
    Fill();
    EXPECT_EQ(Indexes(), "1:0/0 2:4/0 3:5/0");
    EXPECT_EQ(List(0) + " " + List(4) + " " + List(5), "4@1 4@2 4@3");
    EXPECT_EQ(NodesLeft(), 0);
}

TEST_F(SchemeIndexes, CarriedIndexesAreKept) {
    SetList(0, {{1, 9}, {2, 3}});
    SetList(4, {{4, 1}});
    SetList(5, {{2, 7}, {5, 100}});
    Fill();
    EXPECT_EQ(List(0), "1@9 2@3");
    EXPECT_EQ(List(5), "2@7 5@100");
    EXPECT_EQ(Indexes(), "1:4/0 3:0/1 7:5/0 9:0/0 100:5/1");
}

TEST_F(SchemeIndexes, MethodsWithoutAnIndexGetTheLowestFreeAfterTheCarriedOnes) {
    SetList(0, {{1, 0}, {2, 0}});
    SetList(4, {{4, 1}});
    SetList(5, {{2, 3}, {5, 0}});
    Fill();
    EXPECT_EQ(List(0), "1@2 2@4");
    EXPECT_EQ(List(5), "2@3 5@5");
    EXPECT_EQ(Indexes(), "1:4/0 2:0/0 3:5/0 4:0/1 5:5/1");
}

TEST_F(SchemeIndexes, SecondBearerOfACarriedIndexGetsAnotherOne) {
    SetList(0, {{1, 2}, {2, 2}});
    SetList(4, {{4, 2}});
    SetList(5, {{4, 1}});
    Fill();
    EXPECT_EQ(List(0), "1@2 2@3");
    EXPECT_EQ(List(4), "4@4");
    EXPECT_EQ(Indexes(), "1:5/0 2:0/0 3:0/1 4:4/0");
}

TEST_F(SchemeIndexes, EmptyEntriesAndMissingListsGetNone) {
    SetList(0, {{0, 5}, {2, 0}});
    DOM_DestroyMethodList(record_->method_lists[4][5]);
    record_->method_lists[4][5] = nullptr;
    Fill();
    EXPECT_EQ(List(0), "- 2@1");
    EXPECT_EQ(Indexes(), "1:0/1 2:5/0");
}

TEST_F(SchemeIndexes, MethodWithoutAPreparedNodeHasNoIndex) {
    SetList(0, {{1, 8}, {2, 9}});
    ASSERT_EQ(DOM_CreateDomainSchemeResource(record_, &resources_), DOM_OK);
    free(resources_.nodes[0][1]);
    resources_.nodes[0][1] = nullptr;
    dom_FillSchemeIndexes(node_, *record_, resources_);
    EXPECT_EQ(List(0), "1@8 2@0");
    EXPECT_EQ(Indexes(), "1:4/0 2:5/0 8:0/0");
}

TEST_F(SchemeIndexes, ResourcesHoldOneNodeForEachMethod) {
    SetList(0, {{1, 0}, {0, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}});
    ASSERT_EQ(DOM_CreateDomainSchemeResource(record_, &resources_), DOM_OK);
    EXPECT_EQ(NodesLeft(), 7);
    EXPECT_EQ(resources_.nodes[0][1], nullptr);
    EXPECT_NE(resources_.nodes[0][5], nullptr);
    EXPECT_EQ(resources_.nodes[1][1], nullptr);
    DOM_DestroyDomainSchemeResource(&resources_);
    EXPECT_EQ(NodesLeft(), 0);
}

TEST_F(SchemeIndexes, ResourcesAreForDefaultListsOnly) {
    MethodList* other_type = DOM_CreateMethodList();
    MethodList* other_service = DOM_CreateMethodList();
    *other_type = ListOf(1, 5, {1});
    *other_service = ListOf(0, 4, {1, 2});
    record_->method_lists[1][5] = other_type;
    record_->method_lists[0][4] = other_service;
    ASSERT_EQ(DOM_CreateDomainSchemeResource(record_, &resources_), DOM_OK);
    EXPECT_EQ(NodesLeft(), 3);
    for (auto& group : resources_.nodes) EXPECT_NE(group[0], nullptr);
}

TEST_F(SchemeIndexes, FullDomainHasEighteen) {
    for (uint32_t type : {0u, 4u, 5u}) {
        SetList(type, {{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {1, 0}});
    }
    Fill();
    EXPECT_EQ(NodesLeft(), 0);
    EXPECT_EQ(LowestFreeSchemeIndex(node_), 19u);
}

TEST_F(SchemeIndexes, ResourcesAreCreatedWholeOrNotAtAll) {
    SetList(0, {{1, 0}, {2, 0}});
    int failures = 0;
    for (int n = 1;; ++n) {
        fake::FailAllocation(n);
        uint32_t result = DOM_CreateDomainSchemeResource(record_, &resources_);
        if (!fake::Tripped()) {
            EXPECT_EQ(result, DOM_OK);
            break;
        }
        ++failures;
        EXPECT_EQ(result, DOM_ERR_FAILED);
        EXPECT_EQ(NodesLeft(), 0);
    }
    EXPECT_EQ(failures, 4);
}

TEST_F(SchemeIndexes, NullResourcesOrRecordAreRefused) {
    EXPECT_EQ(DOM_CreateDomainSchemeResource(record_, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_CreateDomainSchemeResource(nullptr, &resources_), DOM_ERR_FAILED);
    EXPECT_EQ(NodesLeft(), 0);
    DOM_DestroyDomainSchemeResource(nullptr);
}

}  // namespace
}  // namespace aaadom
