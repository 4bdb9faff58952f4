// Short forms for the message tests.
#pragma once

#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>
#include <platform/tlv.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace test {

inline constexpr uint32_t kFailed = 0x40010001;

struct Destroy {
    void operator()(TLV_MSG* msg) const { TLV_Destroy(msg); }
};
using Message = std::unique_ptr<TLV_MSG, Destroy>;
using Bytes = std::vector<uint8_t>;

inline Message New() {
    return Message(TLV_Create());
}

inline Bytes ImageOf(const Message& msg) {
    Bytes bytes(TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER));
    const uint32_t written =
        TLV_Flush(msg.get(), TLV_FORM_BUFFER, static_cast<uint32_t>(bytes.size()),
                  reinterpret_cast<uintptr_t>(bytes.data()));
    EXPECT_EQ(written, bytes.size());
    return bytes;
}

inline Message FromImage(const Bytes& bytes) {
    return Message(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(bytes.data()),
                                        static_cast<uint32_t>(bytes.size())));
}

inline std::string ValueOf(TLV_MSG* msg, TLV_ITER* it) {
    std::string value(TLV_GetLenByIterator(msg, it), '?');
    EXPECT_EQ(TLV_GetValueByIterator(msg, it, static_cast<uint32_t>(value.size()), value.data()),
              0u);
    return value;
}

/// "type=value type=value": the whole message in order.
inline std::string Listing(TLV_MSG* msg) {
    std::string text;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        if (!text.empty()) text += ' ';
        text += std::to_string(TLV_GetTypeByIterator(msg, it)) + '=' + ValueOf(msg, it);
    }
    return text;
}
inline std::string Listing(const Message& msg) {
    return Listing(msg.get());
}

inline uint32_t Append(const Message& msg, uint16_t type, const std::string& value) {
    return TLV_Append_Data(msg.get(), type, static_cast<uint32_t>(value.size()), value.data());
}

/// Touches everything that can be read, for hostile images.
inline void ReadEverything(TLV_MSG* msg, int depth = 0) {
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        char text[64];
        uint16_t number;
        uint8_t mac[6];
        (void)ValueOf(msg, it);
        (void)AAA_GetStrTlvValue(msg, it, sizeof text, text);
        (void)AAA_GetUINTTlvValue(msg, it);
        (void)AAA_GetUINT64TlvValue(msg, it);
        (void)AAA_GetUSHORTTlvValue(msg, it, &number);
        (void)AAA_GetMACTlvValue(msg, it, mac);
        Message sub(AAA_GetSubTlv(msg, it));
        if (sub && depth < 8) ReadEverything(sub.get(), depth + 1);
    }
    (void)Message(AAA_DelOpHead(msg, nullptr));
    (void)Message(AAA_DelAaadHead(msg));
}

}  // namespace test
