// Golden messages of command-authorization failures.
#include <aaadom/cmd_author_fail.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include "base/message.h"
#include "base/text.h"
#include "tests/golden/hex_file.h"
#include "tests/golden/record_goldens.h"

namespace golden {
namespace {

using aaadom::TlvPtr;

CmdAuthorFailItem Failure() {
    CmdAuthorFailItem item{};
    aaadom::CopyText(item.first_text, "display aaa");
    aaadom::CopyText(item.second_text, "operator");
    aaadom::CopyText(item.third_text, "vty0");
    item.number64 = 1700000001;
    item.number32 = 1700000001;
    return item;
}

CmdAuthorFailItem FailureWithoutTexts() {
    CmdAuthorFailItem item{};
    item.number64 = 7;
    item.number32 = 7;
    return item;
}

void ExpectFailure(const CmdAuthorFailItem& got, const CmdAuthorFailItem& want) {
    EXPECT_STREQ(got.first_text, want.first_text);
    EXPECT_STREQ(got.second_text, want.second_text);
    EXPECT_STREQ(got.third_text, want.third_text);
    EXPECT_EQ(got.number64, want.number64);
    EXPECT_EQ(got.number32, want.number32);
}

/// A report has the fields at top level; who reports appends them.
TLV_MSG* EncodeReport() {
    const CmdAuthorFailItem item = Failure();
    TlvPtr msg(TLV_Create());
    EXPECT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(msg.get()), DOM_OK);
    EXPECT_EQ(AAA_AppendStrTlvData(msg.get(), DOM_TLV_CMD_FAIL_FIRST_TEXT, item.first_text), 0u);
    EXPECT_EQ(AAA_AppendStrTlvData(msg.get(), DOM_TLV_CMD_FAIL_SECOND_TEXT, item.second_text), 0u);
    EXPECT_EQ(AAA_AppendStrTlvData(msg.get(), DOM_TLV_CMD_FAIL_THIRD_TEXT, item.third_text), 0u);
    EXPECT_EQ(AAA_AppendUINT64TlvData(msg.get(), DOM_TLV_CMD_FAIL_NUMBER64, item.number64), 0u);
    EXPECT_EQ(AAA_AppendUINTTlvData(msg.get(), DOM_TLV_CMD_FAIL_NUMBER32, item.number32), 0u);
    return msg.release();
}

TLV_MSG* EncodeReply() {
    TlvPtr msg(TLV_Create());
    EXPECT_EQ(DOM_Rec_tlv_EncodeCmdAuthorFailMsg(msg.get()), DOM_OK);
    for (const CmdAuthorFailItem& item : {Failure(), FailureWithoutTexts()}) {
        EXPECT_EQ(DOM_Rec_EncodeCmdAuthorFailItem(msg.get(), DOM_TLV_CMD_FAIL_ITEM, &item), 0u);
    }
    EXPECT_EQ(AAA_AppendUINTTlvData(msg.get(), DOM_TLV_CMD_FAIL_END, 2), 0u);
    return msg.release();
}

void CheckReply(TLV_MSG* msg) {
    CmdAuthorFailRec list{};
    EXPECT_EQ(DOM_Rec_tlv_DecodeCmdAuthorFailMsg(msg, &list), DOM_ERR_NOT_FOUND);
    ASSERT_EQ(list.count, 2u);
    CmdAuthorFailNode* second = list.head.next;
    CmdAuthorFailNode* first = second->next;
    ExpectFailure(second->item, FailureWithoutTexts());
    ExpectFailure(first->item, Failure());
    DOM_FreeCmdAuthorFailNode(first);
    DOM_FreeCmdAuthorFailNode(second);
}

// It has no message code, so it stands apart from the files of the codes.
TEST(EndMessageGolden, CommandFailuresEndWithAValueAlone) {
    const TlvPtr end(DOM_Rec_EncodeCmdAuthorFailEndMsg(2));
    std::string image(TLV_GetMsgLen(end.get(), TLV_FORM_BUFFER), '\0');
    image.resize(TLV_Flush(end.get(), TLV_FORM_BUFFER, static_cast<uint32_t>(image.size()),
                           reinterpret_cast<uintptr_t>(image.data())));
    EXPECT_EQ(ToHex(image), ToHex(ReadHexFile("end_cmd_author_fail")));
}

}  // namespace

std::vector<GoldenMessage> CmdAuthorFailGoldens() {
    return {
        {"msg_092_cmd_author_fail_report", DOM_MSG_CMD_AUTHOR_FAIL, EncodeReport,
         [](TLV_MSG* msg) {
             CmdAuthorFailItem item{};
             EXPECT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(msg, &item), DOM_OK);
             ExpectFailure(item, Failure());
         }},
        {"msg_092_cmd_author_fail", DOM_MSG_CMD_AUTHOR_FAIL, EncodeReply, CheckReply},
    };
}

}  // namespace golden
