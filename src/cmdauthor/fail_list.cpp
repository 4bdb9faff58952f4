#include "cmdauthor/fail_list.h"

namespace aaadom {

FailList::FailList(CmdAuthorFailRec& rec) noexcept : head_(rec.head) {
    if (head_.next == nullptr || head_.prev == nullptr) Clear();
}

void FailList::Clear() noexcept {
    head_.next = End();
    head_.prev = End();
}

void FailList::Link(CmdAuthorFailNode* before, CmdAuthorFailNode* node,
                    CmdAuthorFailNode* after) noexcept {
    node->prev = before;
    node->next = after;
    SetNext(before, node);
    SetPrev(after, node);
}

CmdAuthorFailNode* FailList::Take(CmdAuthorFailNode* node) noexcept {
    SetNext(node->prev, node->next);
    SetPrev(node->next, node->prev);
    return node;
}

}  // namespace aaadom
