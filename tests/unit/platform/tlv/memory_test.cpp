// Counts and fails the allocations of this program.
#include <cerrno>
#include <cstdlib>

#include "unit/platform/tlv/support.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

TEST(TlvMemory, IsCountedInProgramsWithoutSanitizers) {
    GTEST_SKIP() << "the sanitizer owns malloc";
}

#else

namespace {

thread_local size_t allocations;
thread_local long fail_after = -1;  // allocations that still work; -1 = all

}  // namespace

extern "C" void* __libc_malloc(size_t size);

extern "C" void* malloc(size_t size) {
    ++allocations;
    if (fail_after == 0) {
        errno = ENOMEM;
        return nullptr;
    }
    if (fail_after > 0) --fail_after;
    return __libc_malloc(size);
}

using namespace test;

namespace {

class AllocationsFailAfter {
  public:
    explicit AllocationsFailAfter(long count) { fail_after = count; }
    ~AllocationsFailAfter() { fail_after = -1; }
};

/// As much as a whole domain: some hundred TLVs, lists of items in three levels.
uint32_t Encode(TLV_MSG* msg) {
    uint32_t result = 0;
    for (uint16_t i = 0; i < 90; ++i) result |= AAA_AppendUINTTlvData(msg, i, i);
    for (uint16_t i = 0; i < 10; ++i)
        result |= AAA_AppendStrTlvData(msg, 200, "a name of a domain");
    for (int l = 0; l < 8; ++l) {
        TLV_MSG* list = TLV_Create();
        if (list == nullptr) return 1;
        for (int i = 0; i < 6; ++i) {
            TLV_MSG* item = TLV_Create();
            result |= AAA_AppendStrTlvData(item, 13, "scheme");
            result |= AAA_AppendSubTlv(list, 10, item);
            TLV_Destroy(item);
        }
        result |= AAA_AppendSubTlv(msg, 7, list);
        TLV_Destroy(list);
    }
    return result;
}

uint32_t Decode(const Bytes& image) {
    Message msg = FromImage(image);
    uint32_t items = 0;
    for (TLV_ITER* it = TLV_GetFirst(msg.get()); it != nullptr; it = TLV_GetNext(msg.get(), it)) {
        if (TLV_GetTypeByIterator(msg.get(), it) != 7) continue;
        Message list(AAA_GetSubTlv(msg.get(), it));
        for (TLV_ITER* at = TLV_GetFirst(list.get()); at != nullptr;
             at = TLV_GetNext(list.get(), at)) {
            if (Message(AAA_GetSubTlv(list.get(), at))) ++items;
        }
    }
    return items;
}

Bytes Sample() {
    Message msg = New();
    EXPECT_EQ(Encode(msg.get()), 0u);
    return ImageOf(msg);
}

TEST(TlvMemory, WarmThreadEncodesWithoutMalloc) {
    (void)Sample();
    const size_t before = allocations;
    for (int round = 0; round < 10; ++round) {
        Message msg = New();
        ASSERT_EQ(Encode(msg.get()), 0u);
    }
    EXPECT_EQ(allocations, before);
}

TEST(TlvMemory, WarmThreadDecodesWithoutMalloc) {
    const Bytes image = Sample();
    EXPECT_GT(image.size(), 2048u);
    ASSERT_EQ(Decode(image), 48u);
    const size_t before = allocations;
    for (int round = 0; round < 10; ++round) ASSERT_EQ(Decode(image), 48u);
    EXPECT_EQ(allocations, before);
}

TEST(TlvMemory, LongMessageIsTakenOutWithoutCopying) {
    {
        Message warm[] = {New(), New(), New()};  // the pool has an object for the view
    }
    Message list = New(), msg = New();
    ASSERT_EQ(Append(list, 1, std::string(100000, 'x')), 0u);
    ASSERT_EQ(AAA_AppendSubTlv(msg.get(), 2, list.get()), 0u);
    const size_t before = allocations;
    Message taken(AAA_GetSubTlv(msg.get(), TLV_GetFirst(msg.get())));
    EXPECT_EQ(allocations, before);  // 100000 bytes are above every pooled block
    EXPECT_TRUE(taken);
}

TEST(TlvMemory, PoolKeepsABoundedNumberOfMessages) {
    {
        std::vector<Message> many(200);
        for (auto& msg : many) msg = New();
    }
    std::vector<Message> again(200);
    const size_t before = allocations;
    for (auto& msg : again) msg = New();
    EXPECT_EQ(allocations - before, 200u - 16u);
}

/// Empties the pool, so that every message of the test needs malloc.
std::vector<Message> DrainPool() {
    std::vector<Message> taken(32);
    for (auto& msg : taken) {
        msg = New();
        EXPECT_EQ(Append(msg, 1, std::string(3000, 'x')), 0u);
    }
    return taken;
}

TEST(TlvMemory, CreateWithoutMemoryGivesNull) {
    auto taken = DrainPool();
    AllocationsFailAfter failing(0);
    EXPECT_EQ(TLV_Create(), nullptr);
}

TEST(TlvMemory, FailedAppendLeavesTheMessage) {
    auto taken = DrainPool();
    Message msg = New();
    ASSERT_EQ(Append(msg, 1, "kept"), 0u);
    const std::string value(5000, 'x');
    {
        AllocationsFailAfter failing(0);
        EXPECT_EQ(TLV_Append_Data(msg.get(), 2, 5000, value.data()), kFailed);
    }
    EXPECT_EQ(Listing(msg), "1=kept");
    EXPECT_EQ(Append(msg, 2, value), 0u);
}

TEST(TlvMemory, DeleteInASharedMessageWithoutMemoryLeavesIt) {
    auto taken = DrainPool();
    Message list = New(), msg = New();
    Append(list, 1, std::string(3000, 'x'));
    AAA_AppendSubTlv(msg.get(), 2, list.get());
    Message shared(AAA_GetSubTlv(msg.get(), TLV_GetFirst(msg.get())));
    const Bytes before = ImageOf(shared);
    {
        AllocationsFailAfter failing(0);
        EXPECT_EQ(TLV_Delete_Data(shared.get(), TLV_GetFirst(shared.get())), kFailed);
        EXPECT_EQ(TLV_Delete_Data(msg.get(), TLV_GetFirst(msg.get())), kFailed);
    }
    EXPECT_EQ(ImageOf(shared), before);
    EXPECT_EQ(TLV_Delete_Data(shared.get(), TLV_GetFirst(shared.get())), 0u);
}

TEST(TlvMemory, EveryFailingAllocationOfAReadGivesNull) {
    auto taken = DrainPool();
    Message big = New();
    Append(big, 1, std::string(3000, 'x'));
    Message msg = New();
    AAA_AppendSubTlv(msg.get(), 2, big.get());
    const Bytes image = ImageOf(msg);
    const auto address = reinterpret_cast<uintptr_t>(image.data());
    {
        AllocationsFailAfter failing(0);
        EXPECT_EQ(TLV_CreateReceiveMsg(2, address, static_cast<uint32_t>(image.size())), nullptr);
        EXPECT_EQ(AAA_GetSubTlv(msg.get(), TLV_GetFirst(msg.get())), nullptr);
        EXPECT_EQ(AAA_AddOpHead(1, msg.get()), nullptr);
        EXPECT_EQ(AAA_AddAaadHead(1, 4, msg.get()), nullptr);
    }
    // Now the message can be had, but not the block for its bytes.
    {
        AllocationsFailAfter failing(1);
        EXPECT_EQ(TLV_CreateReceiveMsg(2, address, static_cast<uint32_t>(image.size())), nullptr);
        EXPECT_EQ(AAA_AddOpHead(1, msg.get()), nullptr);
        EXPECT_EQ(AAA_AddAaadHead(1, 4, msg.get()), nullptr);
    }
}

uint32_t AppendLong(uint32_t, const void*, TLV_MSG* sub) {
    static const char value[3000] = {};
    return TLV_Append_Data(sub, 1, sizeof value, value);
}

TEST(TlvMemory, EveryFailingAllocationOfAStructureGivesNull) {
    const uint32_t item = 1;
    const AAA_ENCAP_STEP step{1, 1, &item, 4, AppendLong};
    for (long count = 0;; ++count) {
        auto taken = DrainPool();
        uint32_t length = 7;
        void* buffer;
        {
            AllocationsFailAfter failing(count);
            buffer = AAA_EncapStructToTLVBuf(&step, 1, &length);
        }
        if (buffer != nullptr) {
            std::free(buffer);
            // Two messages, their two blocks, the result.
            EXPECT_EQ(count, 5);
            break;
        }
        EXPECT_EQ(length, 0u);
        ASSERT_LT(count, 20);
    }
}

}  // namespace

#endif
