#include "command_failures.h"

#include <aaadom/aaad_results.h>
#include <aaadom/cmd_author_fail.h>
#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <platform/aaa_tlv.h>

#include <memory>

#include "lock.h"

namespace aaad {
namespace {

/// The library's list has no lock of its own: access modules add while front ends read.
Mutex list_mutex;

CmdAuthorFailHead& FailureList() AAAD_REQUIRES(list_mutex) {
    return DOM_GetGlbCmdAuthorFailRec()->head;
}

Message EncodeFailures() {
    Message reply(TLV_Create());
    if (!reply || DOM_Rec_tlv_EncodeCmdAuthorFailMsg(reply.get()) != DOM_OK) return nullptr;
    const MutexLock lock(list_mutex);
    const CmdAuthorFailHead& head = FailureList();
    uint32_t count = 0;
    const auto* end = reinterpret_cast<const CmdAuthorFailNode*>(&head);
    for (const CmdAuthorFailNode* node = head.next; node != nullptr && node != end;
         node = node->next) {
        if (DOM_Rec_EncodeCmdAuthorFailItem(reply.get(), DOM_TLV_CMD_FAIL_ITEM, &node->item) !=
            DOM_OK) {
            return nullptr;
        }
        ++count;
    }
    if (AAA_AppendUINTTlvData(reply.get(), DOM_TLV_CMD_FAIL_END, count) != 0) return nullptr;
    return reply;
}

}  // namespace

CommandFailures::CommandFailures() {
    (void)DOM_CmdAuthorFailRecInit();
}

CommandFailures::~CommandFailures() {
    DOM_CmdAuthorFailRecFini();
}

uint32_t TakeCommandFailure(TLV_MSG* report) {
    // The library would take a report without any field for an empty failure.
    if (TLV_GetIteratorByType(report, DOM_TLV_CMD_FAIL_FIRST_TEXT) == nullptr) {
        return AAAD_ERR_MALFORMED;
    }
    // It tells nobody what it drops, so this is asked first.
    const auto item = std::make_unique<CmdAuthorFailItem>();
    if (DOM_Rec_DecodeCmdAuthorFailItem(report, item.get()) != DOM_OK) return DOM_ERR_FAILED;
    const MutexLock lock(list_mutex);
    const CmdAuthorFailHead& head = FailureList();
    const void* newest = head.prev;
    DOM_ProcCmdAuthorFail(report);
    return head.prev != newest ? DOM_OK : DOM_ERR_FAILED;
}

Message ReadCommandFailures(const Question&, uint32_t& refusal) {
    Message reply = EncodeFailures();
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

}  // namespace aaad
