#include <random>

#include "unit/platform/tlv/support.h"

using namespace test;

namespace {

/// Two levels of nesting, every kind of value, an empty value and an empty nested message.
Bytes RealImage() {
    Message inner = New(), middle = New(), msg = New(), empty = New();
    const uint8_t mac[6] = {1, 2, 3, 4, 5, 6};
    AAA_AppendUINTTlvData(inner.get(), 11, 3);
    AAA_AppendStrTlvData(inner.get(), 13, "scheme");
    AAA_AppendSubTlv(middle.get(), 10, inner.get());
    AAA_AppendSubTlv(middle.get(), 10, inner.get());
    AAA_AppendUINTTlvData(msg.get(), 0, 4);
    AAA_AppendUSHORTTlvData(msg.get(), 1, 5);
    AAA_AppendUINT64TlvData(msg.get(), 2, 6);
    AAA_AppendMACTlvData(msg.get(), 3, mac);
    AAA_AppendSubTlv(msg.get(), 7, middle.get());
    AAA_AppendSubTlv(msg.get(), 8, empty.get());
    Append(msg, 9, "");
    return ImageOf(msg);
}

TEST(TlvImage, RealOneIsAccepted) {
    const Bytes image = RealImage();
    Message msg = FromImage(image);
    ASSERT_TRUE(msg);
    EXPECT_EQ(ImageOf(msg), image);
}

TEST(TlvImage, IsCopiedFromTheBuffer) {
    Bytes image = RealImage();
    const Bytes before = image;
    Message msg = FromImage(image);
    image.assign(image.size(), 0xEE);
    EXPECT_EQ(ImageOf(msg), before);
}

TEST(TlvImage, EveryTruncationIsRefused) {
    const Bytes image = RealImage();
    for (size_t length = 0; length < image.size(); ++length) {
        // An allocation of exactly this size lets the address sanitizer see any read beyond it.
        const Bytes cut(image.begin(), image.begin() + static_cast<ptrdiff_t>(length));
        EXPECT_FALSE(FromImage(cut)) << length;
    }
}

TEST(TlvImage, TruncationWithARepairedBodyLengthIsRefusedInsideATlv) {
    const Bytes image = RealImage();
    size_t accepted = 0;
    for (size_t length = 8; length < image.size(); ++length) {
        Bytes cut(image.begin(), image.begin() + static_cast<ptrdiff_t>(length));
        const auto body = static_cast<uint32_t>(length - 8);
        std::memcpy(cut.data() + 4, &body, 4);
        if (FromImage(cut)) ++accepted;
    }
    // Only the cuts between two of the seven TLVs, and the one before the first.
    EXPECT_EQ(accepted, 7u);
}

TEST(TlvImage, MoreBytesThanTheHeaderSaysAreRefused) {
    Bytes image = RealImage();
    image.push_back(0);
    EXPECT_FALSE(FromImage(image));
}

TEST(TlvImage, WrongMagicVersionOrReservedByteIsRefused) {
    for (size_t at = 0; at < 4; ++at) {
        Bytes image = RealImage();
        ++image[at];
        EXPECT_FALSE(FromImage(image)) << at;
    }
}

TEST(TlvImage, HugeTlvLengthIsRefused) {
    for (uint32_t length : {5u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFF2u, 0xFFFFFFFAu, 0xFFFFFFFFu}) {
        Bytes image{'T', 'V', 1, 0, 10, 0, 0, 0, 1, 0, 0, 0, 0, 0, 'a', 'b', 'c', 'd'};
        std::memcpy(image.data() + 10, &length, 4);
        EXPECT_FALSE(FromImage(image)) << length;
    }
}

TEST(TlvImage, HugeBodyLengthIsRefused) {
    for (uint32_t length : {0x7FFFFFFFu, 0xFFFFFFF8u, 0xFFFFFFFFu}) {
        Bytes image{'T', 'V', 1, 0, 0, 0, 0, 0};
        std::memcpy(image.data() + 4, &length, 4);
        EXPECT_FALSE(FromImage(image)) << length;
    }
}

TEST(TlvImage, NoBufferNoLengthOrAnUnknownFormGivesNoMessage) {
    const Bytes image = RealImage();
    const auto address = reinterpret_cast<uintptr_t>(image.data());
    const auto length = static_cast<uint32_t>(image.size());
    EXPECT_EQ(TLV_CreateReceiveMsg(2, 0, length), nullptr);
    EXPECT_EQ(TLV_CreateReceiveMsg(2, address, 0), nullptr);
    EXPECT_EQ(TLV_CreateReceiveMsg(0, address, length), nullptr);
    EXPECT_EQ(TLV_CreateReceiveMsg(3, address, length), nullptr);
}

TEST(TlvImage, FlippedBytesNeverReachOutsideTheMessage) {
    std::mt19937 random(2);
    const Bytes image = RealImage();
    size_t accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        Bytes hostile = image;
        for (uint32_t flips = 1 + random() % 3; flips != 0; --flips) {
            hostile[random() % hostile.size()] ^= static_cast<uint8_t>(1u << (random() % 8));
        }
        Message msg = FromImage(hostile);
        if (!msg) continue;
        ++accepted;
        ReadEverything(msg.get());
        ASSERT_EQ(ImageOf(msg), hostile);
    }
    EXPECT_GT(accepted, 0u);
}

}  // namespace
