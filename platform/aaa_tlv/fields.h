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

/// A number's length, where the bits of the TLV's type have been shifted out of its header.
inline constexpr uint64_t kNumberLength = uint64_t{sizeof(uint32_t)} << 32;

struct FieldTable {
    const AAA_FIELD* begin;
    const AAA_FIELD* end;

    FieldTable(const AAA_FIELD* fields, uint32_t count) noexcept
        : begin(fields), end(fields + count) {}
    /// The first field of a type, `end` when there is none.
    const AAA_FIELD* Find(uint16_t type) const noexcept {
        return std::find_if(begin, end,
                            [type](const AAA_FIELD& field) { return field.type == type; });
    }
    /// Position, number, text, number: an item of a list. Most of what is ever sent and received
    /// are such items, so they have ways of their own.
    bool IsOfItem() const noexcept {
        return end - begin == 4 && begin[0].kind == AAA_FIELD_POSITION &&
               begin[1].kind == AAA_FIELD_WORD && begin[2].kind == AAA_FIELD_TEXT &&
               begin[3].kind == AAA_FIELD_WORD;
    }
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

inline uint8_t* PutWordOf(uint8_t* at, const AAA_FIELD& field, const uint8_t* record) noexcept {
    uint32_t word;
    std::memcpy(&word, record + field.offset, sizeof word);
    return PutWord(at, field.type, word);
}

inline uint8_t* PutTextOf(uint8_t* at, const AAA_FIELD& field, const uint8_t* record) noexcept {
    uint8_t* value = at + kTlvHeader;
    const uint32_t length = PutText(value, record + field.offset, field.size) + 1;
    // The value is there already, so the header is written exactly.
    StoreLittleEndian<uint16_t>(at, field.type);
    StoreLittleEndian<uint32_t>(at + kTlvLengthAt, length);
    return value + length;
}

/// The same as PutFields for the table of an item.
inline uint8_t* PutItem(uint8_t* at, const AAA_FIELD* fields, const uint8_t* record,
                        uint32_t position) noexcept {
    at = PutWord(at, fields[0].type, position);
    at = PutWordOf(at, fields[1], record);
    at = PutTextOf(at, fields[2], record);
    return PutWordOf(at, fields[3], record);
}

/// Writes the TLVs of a structure, for which there is room; their end.
inline uint8_t* PutFields(uint8_t* at, const FieldTable& table, const uint8_t* record,
                          uint32_t position) noexcept {
    for (const AAA_FIELD* each = table.begin; each != table.end; ++each) {
        const AAA_FIELD field = *each;
        const uint8_t* member = record + field.offset;
        if (field.kind == AAA_FIELD_WORD) {
            at = PutWordOf(at, field, record);
        } else if (field.kind == AAA_FIELD_TEXT) {
            at = PutTextOf(at, field, record);
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
/// to `readable` are readable.
void TakeAnyText(char* to, uint32_t capacity, const uint8_t* value, uint32_t length,
                 const uint8_t* readable) noexcept;

inline void TakeText(char* to, uint32_t capacity, const uint8_t* value, uint32_t length,
                     const uint8_t* readable) noexcept {
#if defined(__SSE2__)
    // A value within 16 bytes: the rest of them is cleared, which is also the terminator of a text
    // that fills its value.
    if (length < sizeof(__m128i) && capacity >= sizeof(__m128i) &&
        readable - value >= static_cast<ptrdiff_t>(sizeof(__m128i))) [[likely]] {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(value));
        const __m128i kept =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(kKeptBytes + sizeof chunk - length));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_and_si128(chunk, kept));
        return;
    }
#endif
    TakeAnyText(to, capacity, value, length, readable);
}

/// The TLV at `at`; false when it does not end at or before `end`.
inline TlvAt TlvWithin(const uint8_t* at, const uint8_t* end) noexcept {
    if (end - at < static_cast<ptrdiff_t>(kTlvHeader)) return {};
    const auto length = LoadLittleEndian<uint32_t>(at + kTlvLengthAt);
    if (length > static_cast<uint64_t>(end - at) - kTlvHeader) return {};
    return {at, length};
}

/// Whether a value begins as a nested message of exactly its length. Its TLVs are checked by
/// whoever walks them.
inline bool BeginsImage(const TlvAt& tlv) noexcept {
    return tlv.length >= kImageHeader &&
           LoadLittleEndian<uint64_t>(tlv.Value()) ==
               (kImageStart | uint64_t{tlv.length - kImageHeader} << 32);
}

/// Stores one TLV in its member, whatever its length. Bytes up to `end` are readable.
void TakeField(const AAA_FIELD& field, const TlvAt& tlv, const uint8_t* end, uint8_t* record,
               uint32_t& position) noexcept;

inline void CopyNumber(uint8_t* to, const uint8_t* value) noexcept {
    const auto number = LoadLittleEndian<uint32_t>(value);
    std::memcpy(to, &number, sizeof number);
}

/// TLVs one behind the other.
struct Body {
    const uint8_t* begin;
    const uint8_t* end;

    explicit Body(const TLV_MSG* msg) noexcept
        : begin(msg->image + kImageHeader), end(msg->image + msg->length) {}
    /// Of the nested message that is the value of a TLV.
    explicit Body(const TlvAt& tlv) noexcept
        : begin(tlv.Value() + kImageHeader), end(tlv.Value() + tlv.length) {}
};

/// A walk through TLVs and the fields that they are expected to carry.
struct FieldWalk {
    const uint8_t* at;
    const uint8_t* end;
    const AAA_FIELD* next;
    const AAA_FIELD* last;

    FieldWalk(Body body, const FieldTable& table) noexcept
        : at(body.begin), end(body.end), next(table.begin), last(table.end) {}
};

/// Takes TLVs as long as each is the next field: a number of exactly its length, or a text. Bytes
/// up to `readable`, at or behind the walk's end, are readable.
inline void TakeExpected(FieldWalk& walk, const uint8_t* readable, uint8_t* record,
                         uint32_t& position) noexcept {
    const uint8_t* at = walk.at;
    const uint8_t* const end = walk.end;
    const AAA_FIELD* next = walk.next;
    for (; next != walk.last && end - at >= static_cast<ptrdiff_t>(kNumberTlv); ++next) {
        const AAA_FIELD field = *next;
        // Its low bits are clear when the type is the field's; what is above them is the length.
        const uint64_t header = (LoadLittleEndian<uint64_t>(at) ^ field.type) << 16;
        const uint8_t* value = at + kTlvHeader;
        if (header == kNumberLength) {
            const auto number = LoadLittleEndian<uint32_t>(value);
            if (field.kind == AAA_FIELD_WORD) {
                std::memcpy(record + field.offset, &number, sizeof number);
            } else if (field.kind == AAA_FIELD_POSITION) {
                position = number;
            } else if (field.kind == AAA_FIELD_HALF) {
                const auto half = static_cast<uint16_t>(number);
                std::memcpy(record + field.offset, &half, sizeof half);
            } else if (field.kind != AAA_FIELD_BLOCK || field.size != 0) {
                break;  // a block of no bytes is one that is passed over
            }
            at += kNumberTlv;
        } else {
            const auto length = static_cast<uint32_t>(header >> 32);
            if (static_cast<uint32_t>(header) != 0 || length > end - value) break;
            if (field.kind == AAA_FIELD_TEXT) {
                TakeText(reinterpret_cast<char*>(record + field.offset), field.size, value, length,
                         readable);
            } else if (field.kind == AAA_FIELD_BLOCK && length == field.size) {
                std::memcpy(record + field.offset, value, length);
            } else {
                break;
            }
            at = value + length;
        }
    }
    walk.at = at;
    walk.next = next;
}

struct NoOtherTlvs {
    static constexpr uint32_t Take(const FieldWalk&, TLV_MSG*, const TlvAt&) noexcept {
        return kOk;
    }
};

struct OtherTlvs {
    AAA_OTHER_FN take;
    void* context;

    uint32_t Take(const FieldWalk&, TLV_MSG* msg, const TlvAt& tlv) const noexcept {
        return take(context, tlv.Type(), msg, IterAt(tlv.at));
    }
};

/// Takes all TLVs of a body, whatever comes in whatever order; fails when they do not walk exactly
/// to its end. Without other TLVs to be told it makes no call on its usual way.
template <typename Others>
inline uint32_t TakeFields(Body body, TLV_MSG* msg, const FieldTable& table, uint8_t* record,
                           uint32_t& position, Others&& others) noexcept {
    FieldWalk walk(body, table);
    const uint8_t* const readable = msg->image + msg->length;
    uint32_t last_other = UINT32_MAX;  // a type that no field has; no type yet
    uint32_t result = kOk;
    while (true) {
        TakeExpected(walk, readable, record, position);
        if (walk.at == walk.end) return result;
        const TlvAt tlv = TlvWithin(walk.at, walk.end);
        if (!tlv) return PLATFORM_FAILED;
        walk.at = tlv.Value() + tlv.length;
        const uint16_t type = tlv.Type();
        const AAA_FIELD* found = walk.next;
        if (found == table.end || found->type != type) {
            found = type == last_other ? table.end : table.Find(type);
        }
        if (found == table.end) {
            last_other = type;
            result |= others.Take(walk, msg, tlv);
            continue;
        }
        walk.next = found + 1;
        if (found->kind == AAA_FIELD_OTHER) {
            result |= others.Take(walk, msg, tlv);
        } else {
            TakeField(*found, tlv, readable, record, position);
        }
    }
}

}  // namespace platform
