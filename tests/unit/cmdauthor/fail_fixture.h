// Failures by number, and the nodes of a list in both directions.
#pragma once

#include <aaadom/cmd_author_fail.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/message.h"
#include "base/text.h"
#include "fakes/fake_platform.h"

namespace fail_test {

/// Every field depends on the number.
inline CmdAuthorFailItem Item(uint32_t number) {
    CmdAuthorFailItem item{};
    const std::string digits = std::to_string(number);
    aaadom::CopyText(item.first_text, ("command " + digits).c_str());
    aaadom::CopyText(item.second_text, ("user " + digits).c_str());
    aaadom::CopyText(item.third_text, ("terminal " + digits).c_str());
    item.number64 = 0x1122334400000000u + number;
    item.number32 = number;
    return item;
}

inline CmdAuthorFailNode* Node(uint32_t number) {
    auto* node = static_cast<CmdAuthorFailNode*>(calloc(1, sizeof(CmdAuthorFailNode)));
    node->item = Item(number);
    return node;
}

inline void ExpectSame(const CmdAuthorFailItem& got, const CmdAuthorFailItem& want) {
    EXPECT_STREQ(got.first_text, want.first_text);
    EXPECT_STREQ(got.second_text, want.second_text);
    EXPECT_STREQ(got.third_text, want.third_text);
    EXPECT_EQ(got.number64, want.number64);
    EXPECT_EQ(got.number32, want.number32);
}

inline const CmdAuthorFailNode* EndOf(const CmdAuthorFailRec& list) {
    return reinterpret_cast<const CmdAuthorFailNode*>(&list.head);
}

/// The numbers of a list from the oldest to the newest; the links back must agree.
inline std::vector<uint32_t> NumbersOf(const CmdAuthorFailRec& list) {
    std::vector<uint32_t> forward;
    std::vector<uint32_t> backward;
    for (const auto* node = list.head.next; node != EndOf(list); node = node->next)
        forward.push_back(node->item.number32);
    for (const auto* node = list.head.prev; node != EndOf(list); node = node->prev)
        backward.push_back(node->item.number32);
    std::reverse(backward.begin(), backward.end());
    EXPECT_EQ(forward, backward);
    return forward;
}

/// A list of a reader; frees its nodes.
struct ReplyList {
    CmdAuthorFailRec rec{};
    ~ReplyList() {
        if (rec.head.next == nullptr) return;
        while (rec.head.next != EndOf(rec)) {
            CmdAuthorFailNode* node = rec.head.next;
            rec.head.next = node->next;
            DOM_FreeCmdAuthorFailNode(node);
        }
    }
};

/// Starts and ends with an empty list of the process.
class FailTest : public testing::Test {
  protected:
    FailTest() {
        fake::Reset();
        DOM_CmdAuthorFailRecInit();
    }
    ~FailTest() override {
        fake::DisarmFailures();
        DOM_CmdAuthorFailRecFini();
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
    }
    static CmdAuthorFailRec& Rec() { return *DOM_GetGlbCmdAuthorFailRec(); }
    static void Add(uint32_t first, uint32_t last) {
        for (uint32_t number = first; number <= last; ++number)
            DOM_AddCmdAuthorFailNodeToList(Node(number));
    }
};

}  // namespace fail_test
