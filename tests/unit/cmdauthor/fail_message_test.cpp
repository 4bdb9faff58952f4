// One failure in a message: encoding, decoding and what a report adds to the list.
#include <cstring>

#include "fakes/text_reads.h"
#include "unit/cmdauthor/fail_fixture.h"

namespace {

using namespace fail_test;
using aaadom::FindTlv;
using aaadom::TlvItem;
using aaadom::TlvPtr;
using aaadom::TlvWalk;
using Numbers = std::vector<uint32_t>;

Numbers TypesOf(TLV_MSG* msg) {
    Numbers types;
    for (TlvItem item : TlvWalk(msg)) types.push_back(item.Type());
    return types;
}

class CmdAuthorFailMessage : public FailTest {
  protected:
    CmdAuthorFailMessage() : msg_(TLV_Create()) {}
    ~CmdAuthorFailMessage() override { msg_.reset(); }

    void AppendText(uint16_t type, const std::string& text) {
        ASSERT_EQ(AAA_AppendStrTlvData(msg_.get(), type, text.c_str()), 0u);
    }
    /// The TLVs of a report, top level.
    void AppendReport(uint32_t number) {
        const CmdAuthorFailItem item = Item(number);
        AppendText(220, item.first_text);
        AppendText(221, item.second_text);
        AppendText(222, item.third_text);
        ASSERT_EQ(AAA_AppendUINT64TlvData(msg_.get(), 223, item.number64), 0u);
        ASSERT_EQ(AAA_AppendUINTTlvData(msg_.get(), 224, item.number32), 0u);
    }

    TlvPtr msg_;
};

TEST_F(CmdAuthorFailMessage, ItemIsNestedUnderTheGivenType) {
    const CmdAuthorFailItem item = Item(7);
    for (const uint16_t type : {219, 1000}) {
        EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailItem(msg_.get(), type, &item), DOM_OK);
        const TlvPtr nested = FindTlv(msg_.get(), type).Sub();
        ASSERT_NE(nested, nullptr);
        EXPECT_EQ(TypesOf(nested.get()), (Numbers{220, 221, 222, 223, 224}));
        EXPECT_EQ(FindTlv(nested.get(), 223).Length(), 8u);
        EXPECT_EQ(FindTlv(nested.get(), 224).Length(), 4u);
        CmdAuthorFailItem got{};
        EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(nested.get(), &got), DOM_OK);
        ExpectSame(got, item);
    }
    EXPECT_EQ(TypesOf(msg_.get()), (Numbers{219, 1000}));
}

TEST_F(CmdAuthorFailMessage, TextsWithoutTerminatorAreSentWholeAndNoFurther) {
    CmdAuthorFailItem item{};
    memset(item.first_text, 'a', sizeof item.first_text);
    memset(item.second_text, 'b', sizeof item.second_text);
    memset(item.third_text, 'c', sizeof item.third_text);
    memset(&item.number64, 'd', sizeof item.number64);
    ASSERT_EQ(DOM_Rec_EncodeCmdAuthorFailItem(msg_.get(), 219, &item), DOM_OK);
    const TlvPtr nested = FindTlv(msg_.get(), 219).Sub();
    EXPECT_EQ(FindTlv(nested.get(), 220).Length(), 514u);
    EXPECT_EQ(FindTlv(nested.get(), 221).Length(), 257u);
    EXPECT_EQ(FindTlv(nested.get(), 222).Length(), 257u);
}

TEST_F(CmdAuthorFailMessage, FailedItemLeavesTheParentAndNoMessageBehind) {
    const CmdAuthorFailItem item = Item(7);
    for (const fake::Event event :
         {fake::Event::kAppend, fake::Event::kMessage, fake::Event::kAllocation}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 100);
            fake::Fail(event, n);
            const uint32_t result = DOM_Rec_EncodeCmdAuthorFailItem(msg_.get(), 219, &item);
            const bool tripped = fake::Tripped();
            fake::DisarmFailures();
            EXPECT_EQ(fake::LiveMessages(), 1);
            if (!tripped) {
                EXPECT_EQ(result, DOM_OK);
                msg_.reset(TLV_Create());
                break;
            }
            EXPECT_EQ(result, DOM_ERR_FAILED) << n;
            EXPECT_EQ(TypesOf(msg_.get()), Numbers{}) << n;
        }
    }
}

TEST_F(CmdAuthorFailMessage, EncodersRefuseNull) {
    const CmdAuthorFailItem item = Item(7);
    EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailItem(nullptr, 219, &item), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailItem(msg_.get(), 219, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(TypesOf(msg_.get()), Numbers{});
}

TEST_F(CmdAuthorFailMessage, EndOfTheListIsItsValueAlone) {
    for (const uint32_t value : {0u, 1u, 0xFFFFFFFFu}) {
        const TlvPtr end(DOM_Rec_EncodeCmdAuthorFailEndMsg(value));
        EXPECT_EQ(TypesOf(end.get()), Numbers{225});
        EXPECT_EQ(FindTlv(end.get(), 225).U32(), value);
    }
}

TEST_F(CmdAuthorFailMessage, EndOfTheListIsNullWhenMemoryIsShort) {
    fake::FailMessage(1);
    EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailEndMsg(1), nullptr);
    fake::FailAppend(1);
    EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailEndMsg(1), nullptr);
    EXPECT_EQ(fake::LiveMessages(), 1);
}

TEST_F(CmdAuthorFailMessage, CodeIsAppended) {
    EXPECT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(msg_.get()), DOM_OK);
    EXPECT_EQ(TypesOf(msg_.get()), Numbers{0});
    EXPECT_EQ(FindTlv(msg_.get(), 0).U32(), 92u);
    fake::FailAppend(1);
    EXPECT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(msg_.get()), DOM_ERR_FAILED);
}

TEST_F(CmdAuthorFailMessage, OtherTlvsOfAnItemAreSkipped) {
    ASSERT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(msg_.get()), DOM_OK);
    AppendText(219, "no item here");
    AppendReport(4);
    AppendText(225, "x");
    CmdAuthorFailItem item{};
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), DOM_OK);
    ExpectSame(item, Item(4));
}

TEST_F(CmdAuthorFailMessage, FirstTextOf600CharactersIsCutTo512) {
    AppendText(220, std::string(600, 'a'));
    CmdAuthorFailItem item{};
    memset(&item, '#', sizeof item);
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), DOM_OK);
    EXPECT_EQ(std::string(item.first_text), std::string(512, 'a'));
    EXPECT_EQ(item.second_text[0], '#');
}

TEST_F(CmdAuthorFailMessage, OtherTextsAreCutTo255) {
    AppendText(221, std::string(256, 'b'));
    AppendText(222, std::string(300, 'c'));
    CmdAuthorFailItem item{};
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), DOM_OK);
    EXPECT_EQ(std::string(item.second_text), std::string(255, 'b'));
    EXPECT_EQ(std::string(item.third_text), std::string(255, 'c'));
}

TEST_F(CmdAuthorFailMessage, EmptyMessageDecodesAndKeepsTheItem) {
    CmdAuthorFailItem item = Item(3);
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), DOM_OK);
    ExpectSame(item, Item(3));
}

TEST_F(CmdAuthorFailMessage, LastTlvOfATypeCounts) {
    AppendReport(1);
    AppendReport(2);
    CmdAuthorFailItem item{};
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), DOM_OK);
    ExpectSame(item, Item(2));
}

TEST_F(CmdAuthorFailMessage, NumbersThatAreTooShortAreZeroAndNoFailure) {
    ASSERT_EQ(TLV_Append_Data(msg_.get(), 223, 7, "1234567"), 0u);
    ASSERT_EQ(TLV_Append_Data(msg_.get(), 224, 3, "123"), 0u);
    CmdAuthorFailItem item = Item(3);
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), DOM_OK);
    EXPECT_EQ(item.number64, 0u);
    EXPECT_EQ(item.number32, 0u);
}

TEST_F(CmdAuthorFailMessage, ResultsOfTheTextsAreCombinedAndTheOtherFieldsRead) {
    AppendReport(4);
    for (const uint16_t type : {220, 221, 222}) {
        const fake::FailTextReads fail(type, 0x40010008);
        CmdAuthorFailItem item{};
        EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), &item), 0x40010008u) << type;
        EXPECT_EQ(item.number64, Item(4).number64);
        EXPECT_EQ(item.number32, 4u);
    }
}

TEST_F(CmdAuthorFailMessage, ReportThatCannotBeReadChangesNothing) {
    AppendReport(4);
    const fake::FailTextReads fail(222, DOM_ERR_FAILED);
    DOM_ProcCmdAuthorFail(msg_.get());
    EXPECT_EQ(Rec().count, 0u);
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
}

TEST_F(CmdAuthorFailMessage, DecoderRefusesNull) {
    CmdAuthorFailItem item{};
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(nullptr, &item), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg_.get(), nullptr), DOM_ERR_FAILED);
}

TEST_F(CmdAuthorFailMessage, ReportIsAddedToTheList) {
    AppendReport(42);
    DOM_ProcCmdAuthorFail(msg_.get());
    ASSERT_EQ(NumbersOf(Rec()), Numbers{42});
    EXPECT_EQ(Rec().count, 1u);
    ExpectSame(Rec().head.next->item, Item(42));
}

TEST_F(CmdAuthorFailMessage, ElevenReportsLeaveTheLatestTen) {
    for (uint32_t number = 1; number <= 11; ++number) {
        msg_.reset(TLV_Create());
        AppendReport(number);
        DOM_ProcCmdAuthorFail(msg_.get());
    }
    EXPECT_EQ(NumbersOf(Rec()), (Numbers{2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(Rec().count, 10u);
}

// A dispatcher that hands over another message gets an entry for it: the code is its business.
TEST_F(CmdAuthorFailMessage, MessageOfAnyCodeAddsAnEmptyFailure) {
    DOM_ProcCmdAuthorFail(msg_.get());
    ASSERT_EQ(AAA_AppendUINTTlvData(msg_.get(), 0, 7), 0u);
    DOM_ProcCmdAuthorFail(msg_.get());
    ASSERT_EQ(NumbersOf(Rec()), (Numbers{0, 0}));
    ExpectSame(Rec().head.next->item, CmdAuthorFailItem{});
}

TEST_F(CmdAuthorFailMessage, ReportThatCannotBeKeptIsDroppedSilently) {
    AppendReport(1);
    fake::FailAllocation(1);
    DOM_ProcCmdAuthorFail(msg_.get());
    EXPECT_TRUE(fake::Tripped());
    fake::DisarmFailures();
    DOM_ProcCmdAuthorFail(nullptr);
    EXPECT_EQ(Rec().count, 0u);
    EXPECT_EQ(NumbersOf(Rec()), Numbers{});
}

}  // namespace
