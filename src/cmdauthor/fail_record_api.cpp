#include <aaadom/cmd_author_fail.h>
#include <aaadom/results.h>
#include <stdlib.h>

#include "cmdauthor/fail_list.h"
#include "cmdauthor/fail_message.h"

using namespace aaadom;

namespace {

CmdAuthorFailRec process_record;

}  // namespace

extern "C" {

CmdAuthorFailRec* DOM_GetGlbCmdAuthorFailRec() noexcept {
    (void)FailList(process_record);  // readers before the init find an empty list, not null links
    return &process_record;
}

CmdAuthorFailRec* DOM_CmdAuthorFailRecInit() noexcept {
    process_record.count = 0;
    FailList(process_record).Clear();
    return &process_record;
}

void DOM_CmdAuthorFailRecFini() noexcept {
    FailList list(process_record);
    while (!list.Empty()) DOM_FreeCmdAuthorFailNode(list.TakeNewest());
    // The count stays: who shows it after the end still sees how many failures there were.
}

void DOM_FreeCmdAuthorFailNode(CmdAuthorFailNode* node) noexcept {
    free(node);
}

void DOM_AddCmdAuthorFailNodeToList(CmdAuthorFailNode* node) noexcept {
    if (node == nullptr) return;
    FailList list(process_record);
    if (process_record.count < CMD_AUTHOR_FAIL_CAPACITY) {
        ++process_record.count;
    } else if (!list.Empty()) {  // empty though full: after a fini, which keeps the count
        DOM_FreeCmdAuthorFailNode(list.TakeOldest());
    }
    list.PushNewest(node);
}

void DOM_ProcCmdAuthorFail(TLV_MSG* msg) noexcept {
    CmdAuthorFailItem item{};
    if (DOM_Rec_DecodeCmdAuthorFailItem(msg, &item) != DOM_OK) return;
    if (CmdAuthorFailNode* node = NewFailNode(item)) DOM_AddCmdAuthorFailNodeToList(node);
}

}  // extern "C"
