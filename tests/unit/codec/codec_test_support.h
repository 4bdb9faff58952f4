// What the codec tests share: messages from parts, the TLV order of a message, failure sweeps.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/results.h>
#include <aaadom/types.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "base/message.h"
#include "base/text.h"
#include "fakes/fake_platform.h"

namespace codec_test {

using aaadom::TlvPtr;

/// A message under construction by a test; appends must succeed.
class Message {
  public:
    Message() : msg_(TLV_Create()) {}
    explicit Message(uint32_t code) : Message() { U32(DOM_TLV_MSG_CODE, code); }
    Message& U32(uint16_t type, uint32_t value) {
        EXPECT_EQ(AAA_AppendUINTTlvData(msg_.get(), type, value), 0u);
        return *this;
    }
    Message& U64(uint16_t type, uint64_t value) {
        EXPECT_EQ(AAA_AppendUINT64TlvData(msg_.get(), type, value), 0u);
        return *this;
    }
    Message& Text(uint16_t type, const std::string& text) {
        EXPECT_EQ(AAA_AppendStrTlvData(msg_.get(), type, text.c_str()), 0u);
        return *this;
    }
    Message& Raw(uint16_t type, const std::string& bytes) {
        EXPECT_EQ(
            TLV_Append_Data(msg_.get(), type, static_cast<uint32_t>(bytes.size()), bytes.data()),
            0u);
        return *this;
    }
    Message& Sub(uint16_t type, const Message& sub) {
        EXPECT_EQ(AAA_AppendSubTlv(msg_.get(), type, sub.get()), 0u);
        return *this;
    }
    TLV_MSG* get() const { return msg_.get(); }

  private:
    TlvPtr msg_;
};

/// The types of a message's TLVs in order.
inline std::vector<uint32_t> TypesOf(TLV_MSG* msg) {
    std::vector<uint32_t> types;
    for (aaadom::TlvItem item : aaadom::TlvWalk(msg)) types.push_back(item.Type());
    return types;
}

/// The number in the first TLV of a type; fails the test when there is none.
inline uint32_t NumberOf(TLV_MSG* msg, uint16_t type) {
    const aaadom::TlvItem item = aaadom::FindTlv(msg, type);
    EXPECT_TRUE(static_cast<bool>(item)) << "no TLV " << type;
    return item ? item.U32() : 0;
}

/// The text in the first TLV of a type; fails the test when there is none.
inline std::string TextOf(TLV_MSG* msg, uint16_t type) {
    char text[1024] = "";
    const aaadom::TlvItem item = aaadom::FindTlv(msg, type);
    EXPECT_TRUE(static_cast<bool>(item)) << "no TLV " << type;
    if (!item) return text;
    EXPECT_EQ(item.Text(text, sizeof text), 0u);
    return text;
}

inline MethodEntry Entry(uint32_t kind, const char* name = "", uint32_t index = 0) {
    MethodEntry entry{};
    entry.method_kind = kind;
    aaadom::CopyText(entry.scheme_name, name);
    entry.scheme_index = index;
    return entry;
}

inline Message Item(uint32_t position, uint32_t kind, const std::string& name = "",
                    uint32_t index = 0) {
    Message item;
    item.U32(DOM_TLV_ITEM_POSITION, position)
        .U32(DOM_TLV_METHOD_TYPE, kind)
        .Text(DOM_TLV_SCHEME_NAME, name)
        .U32(DOM_TLV_SCHEME_INDEX, index);
    return item;
}

/// Runs `encode` once for each append and each message creation it makes, with that one failing:
/// every run gives null and leaves no message behind, and without a failure it gives a message.
template <typename Encode>
void ExpectEveryFailureGivesNull(Encode&& encode) {
    const auto sweep = [&](fake::Event event) {
        for (int n = 1; n < 2000; ++n) {
            const int64_t live = fake::LiveMessages();
            fake::Fail(event, n);
            TLV_MSG* msg = encode();
            const bool tripped = fake::Tripped();
            fake::DisarmFailures();
            if (!tripped) {
                EXPECT_NE(msg, nullptr);
                EXPECT_GT(n, 1) << "no such event happened";
                TLV_Destroy(msg);
                EXPECT_EQ(fake::LiveMessages(), live);
                return;
            }
            EXPECT_EQ(msg, nullptr) << "failure " << n;
            TLV_Destroy(msg);
            EXPECT_EQ(fake::LiveMessages(), live) << "failure " << n;
        }
        FAIL() << "the sweep does not end";
    };
    sweep(fake::Event::kAppend);
    sweep(fake::Event::kMessage);
}

/// Calls `decode(TLV_MSG*)` with every message that differs from `msg` in one damaged byte or that
/// is cut short; images that are no message any more give null.
template <typename Decode>
void ForEveryDamage(TLV_MSG* msg, Decode&& decode) {
    const std::string image = fake::ImageOf(msg);
    for (size_t at = 0; at < image.size(); ++at) {
        for (const uint8_t flip : {0x01, 0x80, 0xFF}) {
            std::string damaged = image;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            const TlvPtr received(fake::Parse(damaged));
            decode(received.get());
        }
        const TlvPtr cut(fake::Parse(image.substr(0, at)));
        decode(cut.get());
    }
}

/// Resets the fake; at the end no message lives and nothing was misused.
class CodecTest : public testing::Test {
  protected:
    CodecTest() { fake::Reset(); }
    ~CodecTest() override {
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
        EXPECT_EQ(fake::HeldLocks(), 0);
    }
};

}  // namespace codec_test
