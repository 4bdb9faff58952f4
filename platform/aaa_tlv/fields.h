// Structures by their field tables: the loops that write and read all members of a structure with
// one check of the room and without a call for each TLV.
#pragma once

#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstddef>

#include "tlv/message.h"

namespace platform {

/// What a field may take beside its `size`: a TLV header, then a number or a text's terminator,
/// then the rest of the last 8 bytes that are written at once.
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

/// Type and length; writes two bytes more, which the value then covers.
inline void PutTlvHeader(uint8_t* at, uint16_t type, uint32_t length) noexcept {
    StoreLittleEndian<uint64_t>(at, type | uint64_t{length} << 16);
}

/// Copies a text that may fill its `size` bytes; its length without the terminator, which is
/// written.
inline uint32_t PutText(uint8_t* to, const uint8_t* text, uint32_t size) noexcept {
    uint32_t done = 0;
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

/// Writes the TLVs of a structure; their end, or null when the room up to `limit` may not do.
inline uint8_t* PutFields(uint8_t* at, const uint8_t* limit, const FieldTable& table,
                          const uint8_t* record, uint32_t position) noexcept {
    for (const AAA_FIELD* field = table.begin; field != table.end; ++field) {
        if (limit - at < static_cast<ptrdiff_t>(kFieldRoom + field->size)) [[unlikely]] {
            return nullptr;
        }
        const uint8_t* member = record + field->offset;
        uint8_t* value = at + kTlvHeader;
        uint32_t number = position;
        switch (field->kind) {
            case AAA_FIELD_TEXT: {
                const uint32_t length = PutText(value, member, field->size) + 1;
                // The value's first bytes are there already, so the header is exact here.
                StoreLittleEndian<uint16_t>(at, field->type);
                StoreLittleEndian<uint32_t>(at + kTlvLengthAt, length);
                at = value + length;
                continue;
            }
            case AAA_FIELD_BLOCK:
                PutTlvHeader(at, field->type, field->size);
                std::memcpy(value, member, field->size);
                at = value + field->size;
                continue;
            case AAA_FIELD_WORD:
                std::memcpy(&number, member, sizeof number);
                break;
            case AAA_FIELD_HALF: {
                uint16_t half;
                std::memcpy(&half, member, sizeof half);
                number = half;
                break;
            }
            default:
                break;
        }
        PutTlvHeader(at, field->type, sizeof number);
        StoreLittleEndian(value, number);
        at = value + sizeof number;
    }
    return at;
}

/// Copies the text of a value: up to its NUL, its end or the capacity, and a terminator. Bytes up
/// to `end` are readable.
inline void TakeText(char* to, uint32_t capacity, const uint8_t* value, uint32_t length,
                     const uint8_t* end) noexcept {
    uint32_t left = std::min(length, capacity - 1);
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

/// Where the TLVs to be read are.
struct Body {
    TLV_MSG* msg;
    const uint8_t* begin;
    const uint8_t* end;
};

struct OtherTlvs {
    AAA_OTHER_FN take;
    void* context;
};

/// Reads the TLVs of a body; fails when they do not walk exactly to its end.
inline uint32_t TakeFields(const Body& body, const FieldTable& table, uint8_t* record,
                           uint32_t* position, const OtherTlvs& other) noexcept {
    uint32_t result = kOk;
    const AAA_FIELD* next = table.begin;
    uint32_t last_other = UINT32_MAX;  // no type yet
    const uint8_t* end = body.end;
    for (const uint8_t* at = body.begin; at != end;) {
        if (end - at < static_cast<ptrdiff_t>(kTlvHeader)) return PLATFORM_FAILED;
        const auto type = LoadLittleEndian<uint16_t>(at);
        const auto length = LoadLittleEndian<uint32_t>(at + kTlvLengthAt);
        const uint8_t* value = at + kTlvHeader;
        if (length > static_cast<uint64_t>(end - value)) return PLATFORM_FAILED;
        if (next == table.end || next->type != type) {
            const AAA_FIELD* found = table.end;
            if (type != last_other) {
                found = std::find_if(table.begin, table.end,
                                     [type](const AAA_FIELD& field) { return field.type == type; });
            }
            if (found == table.end) {
                last_other = type;
                if (other.take != nullptr) {
                    result |= other.take(other.context, type, body.msg, IterAt(at));
                }
                at = value + length;
                continue;
            }
            next = found;
        }
        const AAA_FIELD& field = *next++;
        uint8_t* member = record + field.offset;
        if (field.kind == AAA_FIELD_TEXT) {
            TakeText(reinterpret_cast<char*>(member), field.size, value, length, end);
        } else if (field.kind == AAA_FIELD_BLOCK) {
            std::memcpy(member, value, std::min<uint32_t>(length, field.size));
        } else {
            const uint32_t number =
                length < sizeof(uint32_t) ? 0 : LoadLittleEndian<uint32_t>(value);
            if (field.kind == AAA_FIELD_WORD) {
                std::memcpy(member, &number, sizeof number);
            } else if (field.kind == AAA_FIELD_HALF) {
                const auto half = static_cast<uint16_t>(number);
                std::memcpy(member, &half, sizeof half);
            } else if (position != nullptr) {
                *position = number;
            }
        }
        at = value + length;
    }
    return result;
}

}  // namespace platform
