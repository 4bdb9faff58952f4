// Rows of cmd_author_fail.h.
#include <aaadom/cmd_author_fail.h>
#include <aaadom/codes.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "base/text.h"
#include "fault/outputs.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr uint32_t kFailures = 2;  ///< in the golden reply and in a list without an end

CmdAuthorFailItem Failure() {
    CmdAuthorFailItem item{};
    aaadom::CopyText(item.first_text, "system-view");
    aaadom::CopyText(item.second_text, "operator");
    aaadom::CopyText(item.third_text, "vty0");
    item.number64 = 1700000001;
    item.number32 = 4;
    return item;
}
CmdAuthorFailNode* NewNode() {
    const fake::Quiet quiet;
    auto* node = static_cast<CmdAuthorFailNode*>(calloc(1, sizeof(CmdAuthorFailNode)));
    node->item = Failure();
    return node;
}
void FillList(Scene&) {
    for (int i = 0; i < CMD_AUTHOR_FAIL_CAPACITY; ++i) DOM_AddCmdAuthorFailNodeToList(NewNode());
}

const Rows process_list{
    Reads("DOM_GetGlbCmdAuthorFailRec",
          [](Scene&) -> Outcome {
              const CmdAuthorFailRec* list = DOM_GetGlbCmdAuthorFailRec();
              return {Found(list).result, BytesOf(list->count)};
          })
        .Good(kSomething),
    Changes("DOM_CmdAuthorFailRecInit", [](Scene&) { return Found(DOM_CmdAuthorFailRecInit()); })
        .After([](Scene&) { DOM_CmdAuthorFailRecFini(); })
        .Good(kSomething)
        .NeverFails(),
    Changes("DOM_CmdAuthorFailRecFini", [](Scene&) { return DOM_CmdAuthorFailRecFini(), 0; })
        .After(FillList)
        .NeverFails(),
    Reads("DOM_FreeCmdAuthorFailNode",
          [](Scene&) { return DOM_FreeCmdAuthorFailNode(NewNode()), 0; }),
    Changes("DOM_AddCmdAuthorFailNodeToList",
            [](Scene&) { return DOM_AddCmdAuthorFailNodeToList(NewNode()), 0; })
        .NeverFails(),
    Changes("DOM_AddCmdAuthorFailNodeToList/full list",
            [](Scene&) { return DOM_AddCmdAuthorFailNodeToList(NewNode()), 0; })
        .After(FillList)
        .NeverFails(),
    // What cannot be kept is dropped without a word.
    Changes("DOM_ProcCmdAuthorFail",
            [](Scene& scene) { return DOM_ProcCmdAuthorFail(scene.message), 0; })
        .After([](Scene& scene) { scene.message = scene.Golden("msg_092_cmd_author_fail_report"); })
        .Fails({0}),
};

/// How many failures the message holds, as its reader is told.
Outcome ReadReply(TLV_MSG* msg) {
    CmdAuthorFailRec list{};
    const uint32_t result = DOM_Rec_tlv_DecodeCmdAuthorFailMsg(msg, &list);
    const auto* end = reinterpret_cast<const CmdAuthorFailNode*>(&list.head);
    while (list.head.next != nullptr && list.head.next != end) {
        CmdAuthorFailNode* node = list.head.next;
        list.head.next = node->next;
        DOM_FreeCmdAuthorFailNode(node);
    }
    EXPECT_EQ(list.count, kFailures);
    return result;
}

const Rows messages{
    Appends("DOM_Rec_EncodeCmdAuthorFailItem",
            [](TLV_MSG* msg) {
                const CmdAuthorFailItem item = Failure();
                return DOM_Rec_EncodeCmdAuthorFailItem(msg, DOM_TLV_CMD_FAIL_ITEM, &item);
            }),
    Encodes("DOM_Rec_EncodeCmdAuthorFailEndMsg",
            [](Scene&) { return DOM_Rec_EncodeCmdAuthorFailEndMsg(1); }),
    Appends("DOM_Rec_tlv_EncodeCmdAuthorFailMsg", DOM_Rec_tlv_EncodeCmdAuthorFailMsg),
    Decodes("DOM_Rec_DecodeCmdAuthorFailItem", "msg_092_cmd_author_fail_report",
            Into(DOM_Rec_DecodeCmdAuthorFailItem)),
    // The end of the list takes the place of whatever became of the failures before it.
    Decodes("DOM_Rec_tlv_DecodeCmdAuthorFailMsg", "msg_092_cmd_author_fail",
            [](Scene&, TLV_MSG* msg) { return ReadReply(msg); })
        .Good(DOM_ERR_NOT_FOUND)
        .NeverFails(),
    Reads("DOM_Rec_tlv_DecodeCmdAuthorFailMsg/more to come",
          [](Scene& scene) { return ReadReply(scene.message); })
        .After([](Scene& scene) {
            scene.message = scene.Keep(TLV_Create());
            const CmdAuthorFailItem item = Failure();
            for (uint32_t i = 0; i < kFailures; ++i) {
                (void)DOM_Rec_EncodeCmdAuthorFailItem(scene.message, DOM_TLV_CMD_FAIL_ITEM, &item);
            }
        })
        .Fails({DOM_ERR_FAILED})
        .On(Event::kAllocation, {DOM_OK}),
};

}  // namespace
}  // namespace fault
