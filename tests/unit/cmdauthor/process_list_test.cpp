// The list of the process: the latest ten failures, oldest first.
#include "unit/cmdauthor/fail_fixture.h"

namespace {

using namespace fail_test;
using Numbers = std::vector<uint32_t>;

class CmdAuthorFailList : public FailTest {};

TEST_F(CmdAuthorFailList, InitGivesTheEmptyListOfTheProcess) {
    CmdAuthorFailRec* rec = DOM_CmdAuthorFailRecInit();
    EXPECT_EQ(rec, DOM_GetGlbCmdAuthorFailRec());
    EXPECT_EQ(rec->count, 0u);
    EXPECT_EQ(rec->head.next, EndOf(*rec));
    EXPECT_EQ(rec->head.prev, EndOf(*rec));
}

TEST_F(CmdAuthorFailList, NodesAreInTheOrderOfTheirArrival) {
    Add(1, 3);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{1, 2, 3}));
    EXPECT_EQ(Rec().count, 3u);
    EXPECT_EQ(Rec().head.next->item.number32, 1u) << "the head's next is the oldest";
    EXPECT_EQ(Rec().head.prev->item.number32, 3u) << "the head's previous is the newest";
}

TEST_F(CmdAuthorFailList, AddedNodeIsTheOneHandedOver) {
    CmdAuthorFailNode* node = Node(1);
    DOM_AddCmdAuthorFailNodeToList(node);
    EXPECT_EQ(Rec().head.next, node);
    EXPECT_EQ(node->next, EndOf(Rec()));
    EXPECT_EQ(node->prev, EndOf(Rec()));
}

TEST_F(CmdAuthorFailList, TenNodesFit) {
    Add(1, 10);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(Rec().count, 10u);
}

TEST_F(CmdAuthorFailList, EleventhNodeEvictsTheOldest) {
    Add(1, 11);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(Rec().count, 10u);
}

TEST_F(CmdAuthorFailList, LatestTenStayHoweverManyCome) {
    Add(1, 137);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{128, 129, 130, 131, 132, 133, 134, 135, 136, 137}));
    EXPECT_EQ(Rec().count, 10u);
}

TEST_F(CmdAuthorFailList, FiniEmptiesTheListAndKeepsTheCount) {
    Add(1, 7);
    DOM_CmdAuthorFailRecFini();
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
    EXPECT_EQ(Rec().count, 7u) << "only the init resets the count";
    DOM_CmdAuthorFailRecInit();
    EXPECT_EQ(Rec().count, 0u);
}

TEST_F(CmdAuthorFailList, FiniOfAnEmptyListIsHarmless) {
    DOM_CmdAuthorFailRecFini();
    DOM_CmdAuthorFailRecFini();
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
}

TEST_F(CmdAuthorFailList, AddingAfterFiniCountsOnFromTheOldCount) {
    Add(1, 8);
    DOM_CmdAuthorFailRecFini();
    Add(20, 21);
    EXPECT_EQ(Rec().count, 10u);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{20, 21}));
    Add(22, 22);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{21, 22})) << "evicts as if it were full";
}

TEST_F(CmdAuthorFailList, FullCountWithAnEmptyListEvictsNothing) {
    Add(1, 10);
    DOM_CmdAuthorFailRecFini();
    Add(20, 20);
    EXPECT_EQ(NumbersOf(Rec()), Numbers{20});
    Add(21, 21);
    EXPECT_EQ(NumbersOf(Rec()), Numbers{21});
    EXPECT_EQ(Rec().count, 10u);
}

TEST_F(CmdAuthorFailList, HeadOfZerosIsAnEmptyList) {
    Rec() = CmdAuthorFailRec{};  // as the process starts
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
    Rec() = CmdAuthorFailRec{};
    DOM_CmdAuthorFailRecFini();
    Rec() = CmdAuthorFailRec{};
    Add(1, 2);
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{1, 2}));
}

TEST_F(CmdAuthorFailList, InitForgetsNodesWithoutFreeingThem) {
    CmdAuthorFailNode* node = Node(5);
    DOM_AddCmdAuthorFailNodeToList(node);
    DOM_CmdAuthorFailRecInit();
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
    EXPECT_EQ(node->item.number32, 5u);
    DOM_FreeCmdAuthorFailNode(node);
}

TEST_F(CmdAuthorFailList, NullNodesAreIgnored) {
    DOM_AddCmdAuthorFailNodeToList(nullptr);
    DOM_FreeCmdAuthorFailNode(nullptr);
    EXPECT_EQ(Rec().count, 0u);
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
}

}  // namespace
