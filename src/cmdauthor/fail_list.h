// Lists of command-authorization failures: circular, the head has the links of a node.
#pragma once

#include <aaadom/cmd_author_fail.h>

namespace aaadom {

/// A view of a list that somebody else owns.
class FailList {
  public:
    /// A head of zeros becomes an empty list: the caller of a decoder, and a process that adds
    /// before its init, need not know how the head is linked.
    explicit FailList(CmdAuthorFailRec& rec) noexcept;

    bool Empty() const noexcept { return Oldest() == End(); }
    /// Forgets the nodes.
    void Clear() noexcept;
    CmdAuthorFailNode* Oldest() const noexcept { return head_.next; }
    CmdAuthorFailNode* Newest() const noexcept { return head_.prev; }
    void PushOldest(CmdAuthorFailNode* node) noexcept { Link(End(), node, Oldest()); }
    void PushNewest(CmdAuthorFailNode* node) noexcept { Link(Newest(), node, End()); }
    /// Takes a node out; the list is not empty.
    CmdAuthorFailNode* TakeOldest() noexcept { return Take(Oldest()); }
    CmdAuthorFailNode* TakeNewest() noexcept { return Take(Newest()); }

  private:
    /// The head as its neighbours point at it; never looked into, because it is no node.
    CmdAuthorFailNode* End() const noexcept { return reinterpret_cast<CmdAuthorFailNode*>(&head_); }
    void SetNext(CmdAuthorFailNode* at, CmdAuthorFailNode* next) noexcept {
        (at == End() ? head_.next : at->next) = next;
    }
    void SetPrev(CmdAuthorFailNode* at, CmdAuthorFailNode* prev) noexcept {
        (at == End() ? head_.prev : at->prev) = prev;
    }
    void Link(CmdAuthorFailNode* before, CmdAuthorFailNode* node,
              CmdAuthorFailNode* after) noexcept;
    CmdAuthorFailNode* Take(CmdAuthorFailNode* node) noexcept;

    CmdAuthorFailHead& head_;
};

}  // namespace aaadom
