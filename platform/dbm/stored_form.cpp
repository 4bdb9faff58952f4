#include "dbm/stored_form.h"

#include <platform/dbm.h>
#include <string.h>

namespace aaadom::dbm {

namespace {

constexpr uint8_t kMetaVersion = 1;
enum : size_t {
    kVersionAt = 0,
    kKindAt = 1,
    kReservedAt = 2,
    kValueTypeAt = 4,
    kAttributesAt = 8,
    kEntrySizeAt = 24,
    kEntryCountAt = 28,
};

}  // namespace

StoredKey::StoredKey(uint8_t tag, const void* key, uint32_t key_len) noexcept
    : prefix_(kStoredKeyHeader + key_len), length_(prefix_) {
    bytes_[0] = tag;
    PutBigEndian16(bytes_ + 1, static_cast<uint16_t>(key_len));
    memcpy(bytes_ + kStoredKeyHeader, key, key_len);
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
StoredKey& StoredKey::operator=(const StoredKey& other) noexcept {
    /* Behind the length nothing was ever written. Assigned to itself it stays what it is. */
    memmove(bytes_, other.bytes_, other.length_);
    prefix_ = other.prefix_;
    length_ = other.length_;
    return *this;
}

bool StoredKey::IsOf(const void* key, uint32_t key_len) const noexcept {
    return prefix_ == kStoredKeyHeader + size_t{key_len} &&
           memcmp(bytes_ + kStoredKeyHeader, key, key_len) == 0;
}

void StoredKey::SetElement(const void* element, size_t length) noexcept {
    if (length != 0) memcpy(bytes_ + prefix_, element, length);
    length_ = prefix_ + length;
}

void StoredKey::SetIndex(uint32_t index) noexcept {
    PutBigEndian32(bytes_ + prefix_, index);
    length_ = prefix_ + 4;
}

bool StoredKey::Owns(const MDB_val& stored) const noexcept {
    return stored.mv_size >= prefix_ && memcmp(stored.mv_data, bytes_, prefix_) == 0;
}

void EncodeMeta(const Meta& meta, uint8_t out[kMetaSize]) noexcept {
    out[kVersionAt] = kMetaVersion;
    out[kKindAt] = meta.kind;
    PutBigEndian16(out + kReservedAt, 0);
    PutBigEndian32(out + kValueTypeAt, meta.value_type);
    for (size_t i = 0; i < 4; ++i) PutBigEndian32(out + kAttributesAt + 4 * i, meta.attributes[i]);
    PutBigEndian32(out + kEntrySizeAt, meta.entry_size);
    PutBigEndian32(out + kEntryCountAt, meta.entry_count);
}

bool DecodeMeta(const MDB_val& stored, uint32_t key_len, Meta* meta) noexcept {
    const auto* from = static_cast<const uint8_t*>(stored.mv_data);
    if (stored.mv_size != kMetaSize || from[kVersionAt] != kMetaVersion) return false;
    meta->kind = from[kKindAt];
    meta->value_type = GetBigEndian32(from + kValueTypeAt);
    for (size_t i = 0; i < 4; ++i)
        meta->attributes[i] = GetBigEndian32(from + kAttributesAt + 4 * i);
    meta->entry_size = GetBigEndian32(from + kEntrySizeAt);
    meta->entry_count = GetBigEndian32(from + kEntryCountAt);
    switch (meta->kind) {
        case DBM_KIND_ARRAY:
        case DBM_KIND_BINARY:
            return true;
        case DBM_KIND_SORTED:
        case DBM_KIND_AVL:
            return AttributesAreUsable(meta->kind, meta->attributes, key_len);
        default:
            return false;
    }
}

bool AttributesAreUsable(uint8_t kind, const uint32_t attributes[4], uint32_t key_len) noexcept {
    const uint32_t length = attributes[DBM_ATTR_KEY_LENGTH];
    /* The name of an AVL list's count row is one byte longer than that of an entry. */
    const uint64_t element = uint64_t{length} + (kind == DBM_KIND_AVL ? 1 : 0);
    if (length == 0 || kStoredKeyHeader + key_len + element > kMaxStoredKeyLength) return false;
    switch (attributes[DBM_ATTR_KEY_KIND]) {
        case DBM_KEY_KIND_U16:
            return length == 2;
        case DBM_KEY_KIND_U64:
            return length == 8;
        case DBM_KEY_KIND_TEXT:
            return true;
        default:
            return false;
    }
}

SortKey MakeSortKey(const Meta& meta, const void* raw) noexcept {
    SortKey key;
    const uint32_t length = meta.attributes[DBM_ATTR_KEY_LENGTH];
    switch (meta.attributes[DBM_ATTR_KEY_KIND]) {
        case DBM_KEY_KIND_U16: {
            uint16_t number;
            memcpy(&number, raw, sizeof number);
            PutBigEndian16(key.bytes, number);
            key.length = sizeof number;
            break;
        }
        case DBM_KEY_KIND_U64: {
            uint64_t number;
            memcpy(&number, raw, sizeof number);
            PutBigEndian32(key.bytes, static_cast<uint32_t>(number >> 32));
            PutBigEndian32(key.bytes + 4, static_cast<uint32_t>(number));
            key.length = sizeof number;
            break;
        }
        default:
            key.length = strnlen(static_cast<const char*>(raw), length);
            memcpy(key.bytes, raw, key.length);
            break;
    }
    return key;
}

TypeRow::TypeRow(uint32_t value_type, const void* key, uint32_t key_len) noexcept
    : length_(4 + size_t{key_len}) {
    PutBigEndian32(bytes_, value_type);
    if (key_len != 0) memcpy(bytes_ + 4, key, key_len);
}

}  // namespace aaadom::dbm
