// Command-authorization failures in messages.
#pragma once

#include <aaadom/cmd_author_fail.h>

#include "base/message.h"

namespace aaadom {

/// A node with a copy of `item`, in no list; null when memory is short. Free it with
/// DOM_FreeCmdAuthorFailNode.
CmdAuthorFailNode* NewFailNode(const CmdAuthorFailItem& item) noexcept;

void AppendFailItem(Appender& append, const CmdAuthorFailItem& item) noexcept;
/// Keeps the fields whose TLV is missing. Combines the results of the texts; numbers never fail.
[[nodiscard]] uint32_t ReadFailItem(TLV_MSG* msg, CmdAuthorFailItem& item) noexcept;
/// Puts every failure of a reply directly behind the head of `list`.
[[nodiscard]] uint32_t ReadFailReply(TLV_MSG* msg, CmdAuthorFailRec& list) noexcept;

}  // namespace aaadom
