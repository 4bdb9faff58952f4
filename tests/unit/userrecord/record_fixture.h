// What the user-record tests share: the contents of messages, and that none is left.
#pragma once

#include <aaadom/results.h>
#include <aaadom/user_record.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/message.h"
#include "fakes/fake_platform.h"
#include "golden/sample_record.h"

namespace record_test {

using aaadom::FindTlv;
using aaadom::TlvPtr;

inline UserRecord Sample() {
    return golden::SampleRecord();
}

inline std::vector<uint32_t> TypesOf(TLV_MSG* msg) {
    std::vector<uint32_t> types;
    for (aaadom::TlvItem item : aaadom::TlvWalk(msg)) types.push_back(item.Type());
    return types;
}

/// The bytes of the first TLV of a type.
inline std::string BytesOf(TLV_MSG* msg, uint16_t type) {
    const aaadom::TlvItem item = FindTlv(msg, type);
    EXPECT_TRUE(static_cast<bool>(item)) << "no TLV " << type;
    if (!item) return "";
    std::string bytes(item.Length(), '\0');
    EXPECT_EQ(item.Raw(bytes.data(), item.Length()), 0u);
    return bytes;
}

class RecordTest : public testing::Test {
  protected:
    RecordTest() { fake::Reset(); }
    ~RecordTest() override {
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    /// The encoder gives null, and leaves no message, whenever a new message or an append fails.
    template <typename Encode>
    static void ExpectEveryFailureGivesNull(Encode&& encode) {
        const int64_t before = fake::LiveMessages();
        for (const fake::Event event : {fake::Event::kMessage, fake::Event::kAppend}) {
            for (int n = 1;; ++n) {
                ASSERT_LT(n, 50);
                fake::Fail(event, n);
                const TlvPtr msg(encode());
                const bool tripped = fake::Tripped();
                fake::DisarmFailures();
                EXPECT_EQ(msg == nullptr, tripped);
                if (!tripped) break;
                EXPECT_EQ(fake::LiveMessages(), before);
            }
        }
    }
};

}  // namespace record_test
