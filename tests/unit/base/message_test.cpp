#include "base/message.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/fake_platform.h"

namespace aaadom {
namespace {

class Message : public testing::Test {
  protected:
    Message() { fake::Reset(); }
    ~Message() override { EXPECT_EQ(fake::LiveMessages(), 0); }
};

TEST_F(Message, BuilderBeginsWithTheCodeInTlvZero) {
    TlvPtr msg(MessageBuilder(7).Build());
    ASSERT_TRUE(msg);
    TlvItem first = *TlvWalk(msg.get()).begin();
    EXPECT_EQ(first.Type(), 0u);
    EXPECT_EQ(first.U32(), 7u);
}

TEST_F(Message, BuilderDestroysTheMessageWhenAnyAppendFails) {
    for (int n = 1; n <= 3; ++n) {
        fake::FailAppend(n);
        EXPECT_EQ(MessageBuilder(7).Build([](Appender& a) { a.U32(1, 1).U32(2, 2); }), nullptr);
    }
}

TEST_F(Message, BuilderWithoutMemoryGivesNull) {
    fake::FailMessage(1);
    bool called = false;
    EXPECT_EQ(MessageBuilder(7).Build([&](Appender&) { called = true; }), nullptr);
    EXPECT_FALSE(called);
}

TEST_F(Message, WalkVisitsEveryTlvInOrder) {
    TlvPtr msg(MessageBuilder(7).Build([](Appender& a) { a.U32(5, 1).U16(3, 2).U64(9, 3); }));
    std::vector<uint16_t> types;
    for (TlvItem item : TlvWalk(msg.get())) types.push_back(item.Type());
    EXPECT_EQ(types, (std::vector<uint16_t>{0, 5, 3, 9}));
}

TEST_F(Message, WalkOfNoMessageIsEmpty) {
    for ([[maybe_unused]] TlvItem item : TlvWalk(nullptr)) FAIL();
}

TEST_F(Message, FindOfAnAbsentTypeIsFalse) {
    TlvPtr msg(MessageBuilder(7).Build());
    EXPECT_FALSE(FindTlv(msg.get(), 99));
    EXPECT_FALSE(FindTlv(nullptr, 0));
}

TEST_F(Message, FullFieldIsAppendedWithoutReadingPastIt) {
    struct {
        char field[3] = {'a', 'b', 'c'};
        char behind[2] = {'X', '\0'};
    } source;
    TlvPtr msg(MessageBuilder(7).Build([&](Appender& a) { a.Field(1, source.field); }));
    char text[8];
    ASSERT_EQ(FindTlv(msg.get(), 1).Text(text, sizeof text), 0u);
    EXPECT_STREQ(text, "abc");
}

TEST_F(Message, TextIsCutToTheCapacity) {
    TlvPtr msg(MessageBuilder(7).Build([](Appender& a) { a.Text(1, "abcdef"); }));
    char text[4];
    ASSERT_EQ(FindTlv(msg.get(), 1).Text(text, sizeof text), 0u);
    EXPECT_STREQ(text, "abc");
}

TEST_F(Message, NullSubMessageCountsAsFailedAppend) {
    TlvPtr none;
    EXPECT_EQ(MessageBuilder(7).Build([&](Appender& a) { a.Sub(1, none); }), nullptr);
}

TEST_F(Message, SubMessageComesBackOut) {
    TlvPtr inner(MessageBuilder(9).Build());
    TlvPtr outer(MessageBuilder(7).Build([&](Appender& a) { a.Sub(1, inner); }));
    TlvPtr out = FindTlv(outer.get(), 1).Sub();
    ASSERT_TRUE(out);
    EXPECT_EQ(FindTlv(out.get(), 0).U32(), 9u);
}

}  // namespace
}  // namespace aaadom
