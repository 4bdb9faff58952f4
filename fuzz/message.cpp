#include "message.h"

#include <platform/aaa_tlv.h>

#include <vector>

#include "promise.h"

namespace fuzz {
namespace {

constexpr int kDeepest = 8;
constexpr int kMostSteps = 32;
constexpr uint32_t kLargest = 65536;

Message FromSketch(Bytes bytes, int depth) {
    Message msg(TLV_Create());
    for (Input input(bytes); !input.Empty();) {
        const uint16_t type = input.Number16();
        const uint16_t length = input.Number16();
        const Bytes value = input.Take(length & ~kMark);
        if ((length & kMark) != 0 && depth < kDeepest) {
            const Message sub = FromSketch(value, depth + 1);
            (void)AAA_AppendSubTlv(msg.get(), type, sub.get());
        } else {
            (void)TLV_Append_Data(msg.get(), type, static_cast<uint32_t>(value.size()),
                                  value.data());
        }
    }
    return msg;
}

/// Every reader of one TLV, into buffers of exactly the size that they are told.
void ReadValue(TLV_MSG* msg, TLV_ITER* it, uint32_t length) {
    std::vector<char> whole(length);
    FUZZ_PROMISE(TLV_GetValueByIterator(msg, it, length, whole.data()) == 0 || length == 0);
    std::vector<char> part(length / 2 + 1);
    (void)TLV_GetValueByIterator(msg, it, static_cast<uint32_t>(part.size()), part.data());
    for (const uint32_t capacity : {1u, 4u, length + 1}) {
        std::vector<char> text(capacity, 'x');
        if (AAA_GetStrTlvValue(msg, it, capacity, text.data()) == 0)
            FUZZ_PROMISE(memchr(text.data(), 0, capacity) != nullptr);
    }
    (void)TLV_GetUINTByIterator(msg, it);
    (void)AAA_GetUINTTlvValue(msg, it);
    (void)AAA_GetUINT64TlvValue(msg, it);
    uint16_t half = 0;
    (void)AAA_GetUSHORTTlvValue(msg, it, &half);
    uint8_t mac[6];
    (void)AAA_GetMACTlvValue(msg, it, mac);
}

}  // namespace

Message MakeMessage(Bytes bytes, bool is_image) {
    if (!is_image) return FromSketch(bytes, 0);
    // A copy of exactly that size, so that a read behind it is seen.
    const std::vector<uint8_t> image(bytes.begin(), bytes.end());
    return Message(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(image.data()),
                                        static_cast<uint32_t>(image.size())));
}

Message TakeMessage(Input& input) {
    const uint16_t length = input.Number16();
    return MakeMessage(input.Take(length & ~kMark), (length & kMark) != 0);
}

void WalkMessage(TLV_MSG* msg, int depth) {
    uint32_t body = 0;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        const uint32_t length = TLV_GetLenByIterator(msg, it);
        body += length + 6;
        ReadValue(msg, it, length);
        TLV_ITER* first = TLV_GetIteratorByType(msg, TLV_GetTypeByIterator(msg, it));
        FUZZ_PROMISE(first != nullptr);
        if (depth == kDeepest) continue;
        const Message sub(AAA_GetSubTlv(msg, it));
        if (!sub) continue;
        FUZZ_PROMISE(TLV_GetMsgLen(sub.get(), TLV_FORM_BUFFER) == length);
        WalkMessage(sub.get(), depth + 1);
    }
    FUZZ_PROMISE(TLV_GetMsgLen(msg, TLV_FORM_BUFFER) == body + 8);
}

void ChangeMessage(TLV_MSG* msg, TLV_MSG* other, Input& input) {
    std::vector<Message> parts;  // share the bytes of what they were taken out of
    for (int steps = 0; !input.Empty() && steps < kMostSteps; ++steps) {
        const uint8_t step = input.Byte();
        TLV_ITER* it = TLV_GetIteratorByType(msg, input.Number16());
        if (step % 4 == 0) {
            (void)TLV_Delete_Data(msg, it);
        } else if (step % 4 == 1) {
            (void)AAA_AppendSubTlv(msg, step, parts.empty() ? other : parts[0].get());
            if (TLV_GetMsgLen(msg, TLV_FORM_BUFFER) > kLargest) break;
        } else if (step % 4 == 2) {
            parts.emplace_back(AAA_GetSubTlv(msg, it));
            (void)TLV_Append_UINT(parts.back().get(), step, step);
        } else {
            (void)TLV_Delete_Data(other, it);  // of another message: refused
        }
    }
    WalkMessage(msg);
    WalkMessage(other);
    for (const Message& part : parts)
        if (part) WalkMessage(part.get());
}

}  // namespace fuzz
