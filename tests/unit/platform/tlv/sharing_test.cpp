// A nested message shares its parent's bytes until one of the two changes; nobody may notice.
#include <thread>

#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

/// Parent with TLV 1, the nested message in TLV 2, and TLV 3. `size` is the nested value's length.
Message Parent(size_t size) {
    Message nested = New(), parent = New();
    Append(nested, 20, std::string(size, 'n'));
    Append(nested, 21, "last");
    Append(parent, 1, "before");
    EXPECT_EQ(AAA_AppendSubTlv(parent.get(), 2, nested.get()), 0u);
    Append(parent, 3, "behind");
    return parent;
}

std::string NestedListing(size_t size) {
    return "20=" + std::string(size, 'n') + " 21=last";
}

Message Nested(const Message& parent) {
    return Message(AAA_GetSubTlv(parent.get(), TLV_GetIteratorByType(parent.get(), 2)));
}

/// Shared inside the parent's object, in a small and a large block, beyond every pooled block.
class NestedMessage : public testing::TestWithParam<size_t> {
  protected:
    size_t size_ = GetParam();
    Message parent_ = Parent(size_);
    Message nested_ = Nested(parent_);
};
INSTANTIATE_TEST_SUITE_P(Sizes, NestedMessage, testing::Values(3, 300, 1500, 4000, 40000, 200000));

TEST_P(NestedMessage, ReadsAsItWasAppended) {
    ASSERT_TRUE(nested_);
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
}

TEST_P(NestedMessage, OutlivesItsParent) {
    parent_.reset();
    Message other = Parent(size_);  // would take over memory that was given back too early
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
}

TEST_P(NestedMessage, ParentOutlivesIt) {
    const Bytes before = ImageOf(parent_);
    nested_.reset();
    Message other = Parent(size_);
    EXPECT_EQ(ImageOf(parent_), before);
}

TEST_P(NestedMessage, AppendToItLeavesTheParent) {
    const Bytes before = ImageOf(parent_);
    EXPECT_EQ(Append(nested_, 22, "new"), 0u);
    EXPECT_EQ(Listing(nested_), NestedListing(size_) + " 22=new");
    EXPECT_EQ(ImageOf(parent_), before);
}

TEST_P(NestedMessage, DeleteInItLeavesTheParent) {
    const Bytes before = ImageOf(parent_);
    EXPECT_EQ(TLV_Delete_Data(nested_.get(), TLV_GetFirst(nested_.get())), 0u);
    EXPECT_EQ(Listing(nested_), "21=last");
    EXPECT_EQ(ImageOf(parent_), before);
}

TEST_P(NestedMessage, AppendToTheParentLeavesIt) {
    for (int i = 0; i < 100; ++i) EXPECT_EQ(Append(parent_, 4, std::string(100, 'p')), 0u);
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
    EXPECT_EQ(Listing(Nested(parent_)), NestedListing(size_));
}

TEST_P(NestedMessage, DeleteInTheParentLeavesIt) {
    EXPECT_EQ(TLV_Delete_Data(parent_.get(), TLV_GetFirst(parent_.get())), 0u);
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
    EXPECT_EQ(TLV_Delete_Data(parent_.get(), TLV_GetFirst(parent_.get())), 0u);
    EXPECT_EQ(Listing(parent_), "3=behind");
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
}

TEST_P(NestedMessage, EachDeleteInTheParentLeavesAllThatWereTakenBefore) {
    std::vector<Message> taken;
    for (int i = 0; i < 10; ++i) EXPECT_EQ(Append(parent_, 4, std::string(20, 'p')), 0u);
    for (int i = 0; i < 5; ++i) {
        taken.push_back(Nested(parent_));
        TLV_ITER* it = TLV_GetIteratorByType(parent_.get(), 4);
        EXPECT_EQ(TLV_Delete_Data(parent_.get(), it), 0u);
        EXPECT_EQ(TLV_Delete_Data(parent_.get(), TLV_GetFirst(parent_.get())), 0u);
        EXPECT_EQ(AAA_AppendSubTlv(parent_.get(), 2, taken.back().get()), 0u);
    }
    for (const Message& msg : taken) EXPECT_EQ(Listing(msg), NestedListing(size_));
}

TEST_P(NestedMessage, AppendAfterTheParentIsGone) {
    parent_.reset();
    EXPECT_EQ(Append(nested_, 22, "new"), 0u);
    EXPECT_EQ(Listing(nested_), NestedListing(size_) + " 22=new");
}

TEST_P(NestedMessage, TwoOfTheSameTlvAreIndependent) {
    Message second = Nested(parent_);
    EXPECT_EQ(TLV_Delete_Data(second.get(), TLV_GetFirst(second.get())), 0u);
    EXPECT_EQ(Listing(second), "21=last");
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
}

TEST_P(NestedMessage, NestedInNestedOutlivesBoth) {
    Message outer = New();
    ASSERT_EQ(AAA_AppendSubTlv(outer.get(), 2, parent_.get()), 0u);
    Message middle = Nested(outer);
    Message inner = Nested(middle);
    outer.reset();
    middle.reset();
    EXPECT_EQ(Listing(inner), NestedListing(size_));
}

TEST_P(NestedMessage, CanBeAppendedToItsParent) {
    EXPECT_EQ(AAA_AppendSubTlv(parent_.get(), 5, nested_.get()), 0u);
    Message again(AAA_GetSubTlv(parent_.get(), TLV_GetIteratorByType(parent_.get(), 5)));
    EXPECT_EQ(Listing(again), NestedListing(size_));
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
}

TEST_P(NestedMessage, ParentCanBeAppendedToIt) {
    const Bytes before = ImageOf(parent_);
    EXPECT_EQ(AAA_AppendSubTlv(nested_.get(), 5, parent_.get()), 0u);
    Message again(AAA_GetSubTlv(nested_.get(), TLV_GetIteratorByType(nested_.get(), 5)));
    EXPECT_EQ(ImageOf(again), before);
}

TEST_P(NestedMessage, IsDestroyedOnAnotherThread) {
    std::thread([this] {
        EXPECT_EQ(Listing(nested_), NestedListing(size_));
        nested_.reset();
    }).join();
    EXPECT_EQ(Listing(Nested(parent_)), NestedListing(size_));
}

TEST_P(NestedMessage, ParentIsDestroyedOnAnotherThread) {
    std::thread([this] { parent_.reset(); }).join();
    EXPECT_EQ(Listing(nested_), NestedListing(size_));
}

TEST_P(NestedMessage, BothSidesAreUsedAndEndAtTheSameTime) {
    for (int round = 0; round < 50; ++round) {
        Message parent = Parent(size_);
        Message nested = Nested(parent);
        std::thread reader([&] {
            EXPECT_EQ(Listing(nested), NestedListing(size_));
            if (round % 2 == 0) Append(nested, 22, "new");
            nested.reset();
        });
        for (int i = 0; i < 10; ++i) Append(parent, 4, std::string(200, 'p'));
        if (round % 3 == 0) TLV_Delete_Data(parent.get(), TLV_GetFirst(parent.get()));
        parent.reset();
        reader.join();
    }
}

/// Each thread has messages of its own, all of them views of one parent, and its own views of them.
TEST_P(NestedMessage, ManyThreadsUseAndChangeViewsOfOneParent) {
    for (int round = 0; round < 10; ++round) {
        Message outer = New();
        ASSERT_EQ(AAA_AppendSubTlv(outer.get(), 2, parent_.get()), 0u);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([this, t, middle = Nested(outer)]() mutable {
                for (int step = 0; step < 5; ++step) {
                    Message inner = Nested(middle), same = Nested(middle);
                    EXPECT_EQ(Listing(inner), NestedListing(size_));
                    EXPECT_EQ(Append(inner, 22, "new"), 0u);
                    EXPECT_EQ(TLV_Delete_Data(same.get(), TLV_GetFirst(same.get())), 0u);
                    EXPECT_EQ(Listing(same), "21=last");
                    if (step == t) {
                        EXPECT_EQ(Append(middle, 4, "more"), 0u);
                    }
                    EXPECT_EQ(Listing(inner), NestedListing(size_) + " 22=new");
                }
            });
        }
        EXPECT_EQ(Append(outer, 4, "behind"), 0u);
        EXPECT_EQ(TLV_Delete_Data(outer.get(), TLV_GetFirst(outer.get())), 0u);
        EXPECT_EQ(Listing(outer), "4=behind");
        outer.reset();
        for (auto& thread : threads) thread.join();
    }
}

TEST(MessagePool, SurvivesManyMessagesOfManyThreads) {
    std::vector<Message> left_over(64);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < 4; ++t) {
        threads.emplace_back([&left_over, t] {
            for (int round = 0; round < 20; ++round) {
                std::vector<Message> messages;
                for (size_t size = 1; size < 100000; size *= 3) messages.push_back(Parent(size));
                for (auto& msg : messages) EXPECT_TRUE(Nested(msg));
            }
            for (size_t i = 0; i < 16; ++i) left_over[t * 16 + i] = Nested(Parent(i * 300));
        });
    }
    for (auto& thread : threads) thread.join();
    for (size_t i = 0; i < 64; ++i) EXPECT_EQ(Listing(left_over[i]), NestedListing(i % 16 * 300));
}

/// Destroys a message while the thread ends, after everything that the thread itself owned.
TEST(MessagePool, TakesMessagesBackWhileItsThreadEnds) {
    std::thread([] {
        thread_local Message late;
        late = Parent(4000);
        New();
    }).join();
}

}  // namespace
