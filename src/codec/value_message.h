// Messages that carry a few single values: each is one list of fields that one routine interprets
// in both directions.
#pragma once

#include <platform/tlv.h>

#include <cstddef>
#include <cstdint>

namespace aaadom {

enum class ValueKind : uint8_t {
    kName,      // text that the message is about: a message without it is refused, it may be empty
    kText,      // text that may be missing, which reads as empty
    kWord,      // UINT32; missing reads as 0
    kMainWord,  // UINT32 that the message is about: a message without it is refused
    kHalf       // 16-bit value carried as UINT32, narrowed on decode; missing reads as 0
};

struct ValueField {
    uint16_t type;
    ValueKind kind;
};

template <size_t N>
struct ValueMessage {
    uint32_t code;
    ValueField fields[N];
};

/// A value to send.
struct ValueIn {
    ValueIn(const char* value) noexcept : text(value) {}  // NOLINT: converts on purpose
    ValueIn(uint32_t value) noexcept : number(value) {}   // NOLINT
    const char* text = nullptr;
    uint32_t number = 0;
};

/// Where a received value goes; a null target is skipped.
struct ValueOut {
    ValueOut(uint32_t size, char* buffer) noexcept : target(buffer), capacity(size) {}
    ValueOut(uint32_t* value) noexcept : target(value) {}  // NOLINT
    ValueOut(uint16_t* value) noexcept : target(value) {}  // NOLINT
    void* target;
    uint32_t capacity = 0;
};

TLV_MSG* EncodeValues(uint32_t code, const ValueField* fields, const ValueIn* values,
                      size_t count) noexcept;
[[nodiscard]] uint32_t DecodeValues(TLV_MSG* msg, const ValueField* fields, const ValueOut* outputs,
                                    size_t count) noexcept;

/// The message with its code and `values` in the order of the list; null for a null text and when
/// an append failed.
template <size_t N>
TLV_MSG* Encode(const ValueMessage<N>& message, const ValueIn (&values)[N]) noexcept {
    return EncodeValues(message.code, message.fields, values, N);
}

/// Reads the first TLV of each type of the list. The outputs are cleared first; the result combines
/// the text reads, DOM_ERR_FAILED for a null message and for a missing kName or kMainWord.
template <size_t N>
[[nodiscard]] uint32_t Decode(const ValueMessage<N>& message, TLV_MSG* msg,
                              const ValueOut (&outputs)[N]) noexcept {
    return DecodeValues(msg, message.fields, outputs, N);
}

}  // namespace aaadom
