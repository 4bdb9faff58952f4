// Structures by their field tables: the loops that write and read all members of a structure with
// one check of the room and without a call for each TLV.
#pragma once

#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstddef>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "tlv/message.h"

namespace platform {

/// What a field may take beside its `size`: a TLV header, then a number or a text's terminator; and
/// what is overwritten behind it, because 8 bytes are written at once.
inline constexpr uint32_t kFieldRoom = 24;
/// Header of a TLV whose value is a nested message, and that message's header.
inline constexpr uint32_t kNestedHeader = kTlvHeader + kImageHeader;

struct FieldTable {
    const AAA_FIELD* begin;
    const AAA_FIELD* end;

    FieldTable(const AAA_FIELD* fields, uint32_t count) noexcept
        : begin(fields), end(fields + count) {}
    /// Bytes that no structure passes.
    uint64_t Room() const noexcept {
        uint64_t room = 0;
        for (const AAA_FIELD* field = begin; field != end; ++field) {
            room += kFieldRoom + uint64_t{field->size};
        }
        return room;
    }
};

/// The highest bit of each zero byte, in little-endian order exact up to the first one.
inline uint64_t ZeroBytes(uint64_t chunk) noexcept {
    return (chunk - 0x0101010101010101u) & ~chunk & 0x8080808080808080u;
}

#if defined(__SSE2__)
/// From byte 16 - n on: n bytes to keep, then bytes to clear.
inline constexpr uint8_t kKeptBytes[32] = {255, 255, 255, 255, 255, 255, 255, 255,
                                           255, 255, 255, 255, 255, 255, 255, 255};
#endif

/// Type and length; writes two bytes more, which the value then covers.
inline void PutTlvHeader(uint8_t* at, uint16_t type, uint32_t length) noexcept {
    StoreLittleEndian<uint64_t>(at, type | uint64_t{length} << 16);
}

/// Copies a text that may fill its `size` bytes; its length without the terminator, which is
/// written.
inline uint32_t PutText(uint8_t* to, const uint8_t* text, uint32_t size) noexcept {
    uint32_t done = 0;
#if defined(__SSE2__)
    for (; done + sizeof(__m128i) <= size; done += sizeof(__m128i)) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + done));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + done), chunk);
        const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi8(chunk, _mm_setzero_si128()));
        if (zeros != 0) return done + static_cast<uint32_t>(__builtin_ctz(zeros));
    }
#endif
    for (; done + sizeof(uint64_t) <= size; done += sizeof(uint64_t)) {
        const auto chunk = LoadLittleEndian<uint64_t>(text + done);
        StoreLittleEndian(to + done, chunk);
        const uint64_t zeros = ZeroBytes(chunk);
        if (zeros != 0) return done + static_cast<uint32_t>(__builtin_ctzll(zeros)) / 8;
    }
    for (; done < size && text[done] != 0; ++done) to[done] = text[done];
    to[done] = 0;
    return done;
}

inline uint8_t* PutWord(uint8_t* at, uint16_t type, uint32_t word) noexcept {
    PutTlvHeader(at, type, sizeof word);
    StoreLittleEndian(at + kTlvHeader, word);
    return at + kTlvHeader + sizeof word;
}

/// Writes the TLVs of a structure, for which there is room; their end.
inline uint8_t* PutFields(uint8_t* at, const FieldTable& table, const uint8_t* record,
                          uint32_t position) noexcept {
    for (const AAA_FIELD* each = table.begin; each != table.end; ++each) {
        const AAA_FIELD field = *each;
        const uint8_t* member = record + field.offset;
        if (field.kind == AAA_FIELD_WORD) {
            uint32_t word;
            std::memcpy(&word, member, sizeof word);
            at = PutWord(at, field.type, word);
        } else if (field.kind == AAA_FIELD_TEXT) {
            uint8_t* value = at + kTlvHeader;
            const uint32_t length = PutText(value, member, field.size) + 1;
            // The value is there already, so the header is written exactly.
            StoreLittleEndian<uint16_t>(at, field.type);
            StoreLittleEndian<uint32_t>(at + kTlvLengthAt, length);
            at = value + length;
        } else if (field.kind == AAA_FIELD_POSITION) {
            at = PutWord(at, field.type, position);
        } else if (field.kind == AAA_FIELD_HALF) {
            uint16_t half;
            std::memcpy(&half, member, sizeof half);
            at = PutWord(at, field.type, half);
        } else {
            PutTlvHeader(at, field.type, field.size);
            std::memcpy(at + kTlvHeader, member, field.size);
            at += kTlvHeader + field.size;
        }
    }
    return at;
}

/// Copies the text of a value: up to its NUL, its end or the capacity, and a terminator. Bytes up
/// to `end` are readable.
inline void TakeText(char* to, uint32_t capacity, const uint8_t* value, uint32_t length,
                     const uint8_t* end) noexcept {
    uint32_t left = std::min(length, capacity - 1);
#if defined(__SSE2__)
    // A text that ends within 16 bytes: everything behind its end is cleared.
    if (left < sizeof(__m128i) && capacity >= sizeof(__m128i) &&
        end - value >= static_cast<ptrdiff_t>(sizeof(__m128i))) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(value));
        const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi8(chunk, _mm_setzero_si128()));
        const int text = __builtin_ctz(static_cast<unsigned>(zeros) | 1u << left);
        const __m128i mask =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(kKeptBytes + sizeof chunk - text));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_and_si128(chunk, mask));
        return;
    }
#endif
    while (capacity >= sizeof(uint64_t) &&
           end - value >= static_cast<ptrdiff_t>(sizeof(uint64_t))) {
        auto chunk = LoadLittleEndian<uint64_t>(value);
        // A value that ends within the chunk ends the text like a NUL.
        const uint64_t stop =
            left < sizeof chunk ? ZeroBytes(chunk) | uint64_t{0x80} << 8 * left : ZeroBytes(chunk);
        if (stop != 0) {
            chunk &= ((stop & -stop) >> 7) - 1;
            StoreLittleEndian(to, chunk);
            return;
        }
        StoreLittleEndian(to, chunk);
        to += sizeof chunk;
        value += sizeof chunk;
        left -= sizeof chunk;
        capacity -= sizeof chunk;
    }
    for (; left != 0 && *value != 0; --left) *to++ = static_cast<char>(*value++);
    *to = '\0';
}

/// The TLV at `at`; false when it does not end at or before `end`.
inline TlvAt TlvWithin(const uint8_t* at, const uint8_t* end) noexcept {
    if (end - at < static_cast<ptrdiff_t>(kTlvHeader)) return {};
    const auto length = LoadLittleEndian<uint32_t>(at + kTlvLengthAt);
    if (length > static_cast<uint64_t>(end - at) - kTlvHeader) return {};
    return {at, length};
}

/// Stores one TLV in its member, whatever its length. Bytes up to `end` are readable.
void TakeField(const AAA_FIELD& field, const TlvAt& tlv, const uint8_t* end, uint8_t* record,
               uint32_t* position) noexcept;

/// The TLVs to be read: all between `begin` and `end`, in bytes of `msg`.
struct Body {
    TLV_MSG* msg;
    const uint8_t* begin;
    const uint8_t* end;
};

struct NoOtherTlvs {
    static constexpr uint32_t Take(uint16_t, TLV_MSG*, TLV_ITER*) noexcept { return kOk; }
};

struct OtherTlvs {
    AAA_OTHER_FN take;
    void* context;

    uint32_t Take(uint16_t type, TLV_MSG* msg, TLV_ITER* it) const noexcept {
        return take(context, type, msg, it);
    }
};

/// Reads the TLVs of a body; fails when they do not walk exactly to its end. Without other TLVs to
/// be told it makes no call on its usual way.
template <typename Others>
inline uint32_t TakeFields(const Body& body, const FieldTable& table, uint8_t* record,
                           uint32_t* position, const Others& others) noexcept {
    constexpr ptrdiff_t kHeader = kTlvHeader;
    constexpr ptrdiff_t kWord = sizeof(uint32_t);
    const uint8_t* at = body.begin;
    const uint8_t* const end = body.end;
    const AAA_FIELD* next = table.begin;
    uint32_t last_other = UINT32_MAX;  // a type that no field has; no type yet
    uint32_t result = kOk;
    while (at != end) {
        // The usual TLV is the next field, a number of exactly its length or a text.
        const ptrdiff_t rest = end - at;
        if (rest >= kHeader + kWord && next != table.end) [[likely]] {
            const auto header = LoadLittleEndian<uint64_t>(at);
            const auto length = static_cast<uint32_t>(header >> 16);
            const AAA_FIELD field = *next;
            const uint8_t* value = at + kHeader;
            if (static_cast<uint16_t>(header) == field.type) [[likely]] {
                if (field.kind == AAA_FIELD_TEXT && length <= rest - kHeader) {
                    TakeText(reinterpret_cast<char*>(record + field.offset), field.size, value,
                             length, end);
                    at = value + length;
                    ++next;
                    continue;
                }
                if (length == kWord &&
                    (field.kind == AAA_FIELD_WORD ||
                     (field.kind == AAA_FIELD_POSITION && position != nullptr))) {
                    const auto number = LoadLittleEndian<uint32_t>(value);
                    void* to = field.kind == AAA_FIELD_WORD ? record + field.offset
                                                            : static_cast<void*>(position);
                    std::memcpy(to, &number, sizeof number);
                    at = value + kWord;
                    ++next;
                    continue;
                }
            }
        }
        const TlvAt tlv = TlvWithin(at, end);
        if (!tlv) return PLATFORM_FAILED;
        const uint16_t type = tlv.Type();
        if (next == table.end || next->type != type) {
            const AAA_FIELD* found = table.end;
            if (type != last_other) {
                found = std::find_if(table.begin, table.end,
                                     [type](const AAA_FIELD& field) { return field.type == type; });
            }
            if (found == table.end) {
                last_other = type;
                result |= others.Take(type, body.msg, IterAt(at));
                at = tlv.Value() + tlv.length;
                continue;
            }
            next = found;
        }
        TakeField(*next++, tlv, end, record, position);
        at = tlv.Value() + tlv.length;
    }
    return result;
}

}  // namespace platform
