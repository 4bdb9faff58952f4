// Replies with several failures, read into a list of the reader.
#include "fakes/text_reads.h"
#include "unit/cmdauthor/fail_fixture.h"

namespace {

using namespace fail_test;
using aaadom::TlvPtr;
using Numbers = std::vector<uint32_t>;

class CmdAuthorFailReply : public FailTest {
  public:
    CmdAuthorFailReply() : msg_(TLV_Create()) {}
    ~CmdAuthorFailReply() override { msg_.reset(); }

    CmdAuthorFailReply& Items(std::initializer_list<uint32_t> numbers) {
        for (const uint32_t number : numbers) {
            const CmdAuthorFailItem item = Item(number);
            EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailItem(msg_.get(), 219, &item), DOM_OK);
        }
        return *this;
    }
    CmdAuthorFailReply& End() {
        EXPECT_EQ(AAA_AppendUINTTlvData(msg_.get(), 225, 3), 0u);
        return *this;
    }
    CmdAuthorFailReply& BadItem() {
        EXPECT_EQ(TLV_Append_Data(msg_.get(), 219, 3, "bad"), 0u);
        return *this;
    }
    uint32_t Decode() { return DOM_Rec_tlv_DecodeCmdAuthorFailMsg(msg_.get(), &list_.rec); }

    TlvPtr msg_;
    ReplyList list_;
};

TEST_F(CmdAuthorFailReply, ThreeItemsAndTheEndAreReversedAndNotFound) {
    EXPECT_EQ(Items({1, 2, 3}).End().Decode(), 0x40010005u);
    EXPECT_EQ(list_.rec.count, 3u);
    EXPECT_EQ(NumbersOf(list_.rec), (Numbers{3, 2, 1}));
    ExpectSame(list_.rec.head.next->item, Item(3));
}

TEST_F(CmdAuthorFailReply, ItemsWithoutTheEndAreDone) {
    EXPECT_EQ(Items({1, 2}).Decode(), DOM_OK);
    EXPECT_EQ(list_.rec.count, 2u);
    EXPECT_EQ(NumbersOf(list_.rec), (Numbers{2, 1}));
}

TEST_F(CmdAuthorFailReply, EmptyMessageIsDone) {
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_EQ(list_.rec.count, 0u);
}

TEST_F(CmdAuthorFailReply, EndMessageAloneIsNotFound) {
    msg_.reset(DOM_Rec_EncodeCmdAuthorFailEndMsg(9));
    EXPECT_EQ(Decode(), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(list_.rec.count, 0u);
    EXPECT_EQ(NumbersOf(list_.rec), Numbers{});
}

TEST_F(CmdAuthorFailReply, OtherTlvsAreSkipped) {
    ASSERT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(msg_.get()), DOM_OK);
    ASSERT_EQ(AAA_AppendStrTlvData(msg_.get(), 220, "top level"), 0u);
    EXPECT_EQ(Items({5}).Decode(), DOM_OK);
    EXPECT_EQ(list_.rec.count, 1u);
    EXPECT_EQ(NumbersOf(list_.rec), Numbers{5});
}

TEST_F(CmdAuthorFailReply, ItemThatIsNoMessageFailsAndCounts) {
    EXPECT_EQ(Items({1}).BadItem().Items({2}).Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(list_.rec.count, 3u);
    EXPECT_EQ(NumbersOf(list_.rec), (Numbers{2, 1}));
}

// The result of the item has a bit that neither the end nor the other failure has.
constexpr uint32_t kOtherFailure = 0x40010008;

TEST_F(CmdAuthorFailReply, ItemThatCannotBeReadIsNotKeptAndItsResultIsCombined) {
    Items({1}).BadItem();
    const fake::FailTextReads fail(221, kOtherFailure);
    EXPECT_EQ(Decode(), kOtherFailure | DOM_ERR_FAILED);
    EXPECT_EQ(list_.rec.count, 2u);
    EXPECT_EQ(NumbersOf(list_.rec), Numbers{});
}

TEST_F(CmdAuthorFailReply, EndReplacesWhatWasGathered) {
    const fake::FailTextReads fail(221, kOtherFailure);
    EXPECT_EQ(Items({1}).End().Decode(), DOM_ERR_NOT_FOUND);
}

TEST_F(CmdAuthorFailReply, ItemBehindTheEndIsCombinedWithIt) {
    const fake::FailTextReads fail(221, kOtherFailure);
    EXPECT_EQ(End().Items({1}).Decode(), DOM_ERR_NOT_FOUND | kOtherFailure);
}

TEST_F(CmdAuthorFailReply, EndReplacesAFailureBeforeIt) {
    EXPECT_EQ(BadItem().End().Decode(), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(list_.rec.count, 1u);
}

TEST_F(CmdAuthorFailReply, FailureBehindTheEndIsCombinedWithIt) {
    EXPECT_EQ(End().BadItem().Decode(), DOM_ERR_NOT_FOUND | DOM_ERR_FAILED);
}

TEST_F(CmdAuthorFailReply, ItemsBehindTheEndAreReadToo) {
    EXPECT_EQ(Items({1}).End().Items({2}).Decode(), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(list_.rec.count, 2u);
    EXPECT_EQ(NumbersOf(list_.rec), (Numbers{2, 1}));
}

TEST_F(CmdAuthorFailReply, ItemWithoutMemoryForItsNodeCountsAndIsNoFailure) {
    Items({1, 2});
    fake::FailAllocation(1);
    EXPECT_EQ(Decode(), DOM_OK);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(list_.rec.count, 2u);
    EXPECT_EQ(NumbersOf(list_.rec), Numbers{2});
}

TEST_F(CmdAuthorFailReply, ItemWithoutMemoryForItsMessageFailsAndCounts) {
    Items({1, 2});
    fake::FailMessage(1);
    EXPECT_EQ(Decode(), DOM_ERR_FAILED);
    EXPECT_EQ(list_.rec.count, 2u);
    EXPECT_EQ(NumbersOf(list_.rec), Numbers{2});
}

TEST_F(CmdAuthorFailReply, ListWithNodesIsAddedTo) {
    EXPECT_EQ(Items({1, 2}).Decode(), DOM_OK);
    msg_.reset(TLV_Create());
    EXPECT_EQ(Items({3, 4}).End().Decode(), DOM_ERR_NOT_FOUND);
    EXPECT_EQ(list_.rec.count, 4u);
    EXPECT_EQ(NumbersOf(list_.rec), (Numbers{4, 3, 2, 1}));
}

TEST_F(CmdAuthorFailReply, ReplyOfMoreThanTenIsNotCut) {
    EXPECT_EQ(Items({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}).Decode(), DOM_OK);
    EXPECT_EQ(list_.rec.count, 12u);
    EXPECT_EQ(NumbersOf(list_.rec).size(), 12u);
}

TEST_F(CmdAuthorFailReply, ListOfTheProcessIsNotTouched) {
    EXPECT_EQ(Items({1, 2}).Decode(), DOM_OK);
    EXPECT_EQ(Rec().count, 0u);
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
}

TEST_F(CmdAuthorFailReply, NullIsRefused) {
    EXPECT_EQ(DOM_Rec_tlv_DecodeCmdAuthorFailMsg(nullptr, &list_.rec), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_tlv_DecodeCmdAuthorFailMsg(msg_.get(), nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(list_.rec.count, 0u);
}

TEST_F(CmdAuthorFailReply, DamagedRepliesAreReadSafely) {
    const std::string image = fake::ImageOf(Items({1, 2}).End().msg_.get());
    for (size_t at = 0; at < image.size(); ++at) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::string damaged = image;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            const TlvPtr received(fake::Parse(damaged));
            ReplyList list;
            (void)DOM_Rec_tlv_DecodeCmdAuthorFailMsg(received.get(), &list.rec);
            (void)NumbersOf(received ? list.rec : *DOM_GetGlbCmdAuthorFailRec());
            DOM_ProcCmdAuthorFail(received.get());
        }
    }
    EXPECT_LE(NumbersOf(Rec()).size(), 10u);
}

}  // namespace
