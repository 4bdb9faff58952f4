/* The stored bytes of the database; docs/formats/dbm.md is their description. */
#ifndef PLATFORM_DBM_STORED_FORM_H
#define PLATFORM_DBM_STORED_FORM_H

#include <lmdb.h>
#include <stddef.h>
#include <stdint.h>

namespace aaadom::dbm {

constexpr size_t kMaxKeyLength = 400;       /* of a caller's key */
constexpr size_t kMaxStoredKeyLength = 511; /* LMDB's limit */
constexpr size_t kStoredKeyHeader = 3;      /* tag and key length */
constexpr uint8_t kMetaTag = 0;             /* the other tags are the DBM_KIND_ numbers */

inline void PutBigEndian16(uint8_t* to, uint16_t value) {
    to[0] = static_cast<uint8_t>(value >> 8);
    to[1] = static_cast<uint8_t>(value);
}
inline void PutBigEndian32(uint8_t* to, uint32_t value) {
    for (int i = 0; i < 4; ++i) to[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}
inline uint32_t GetBigEndian32(const uint8_t* from) {
    return uint32_t{from[0]} << 24 | uint32_t{from[1]} << 16 | uint32_t{from[2]} << 8 | from[3];
}

/* Tag, key length, key bytes, element key: built in place, no allocation. */
class StoredKey {
  public:
    StoredKey() noexcept : prefix_(0), length_(0) {} /* of no key; only to be assigned to */
    StoredKey(uint8_t tag, const void* key, uint32_t key_len) noexcept;
    StoredKey(const StoredKey& other) noexcept { *this = other; }
    StoredKey& operator=(const StoredKey& other) noexcept;

    /* Replaces the element part. Precondition: prefix and element fit in kMaxStoredKeyLength. */
    void SetElement(const void* element, size_t length) noexcept;
    void SetIndex(uint32_t index) noexcept;
    void SetTag(uint8_t tag) noexcept { bytes_[0] = tag; }

    MDB_val Value() noexcept { return {length_, bytes_}; }
    MDB_val Prefix() noexcept { return {prefix_, bytes_}; }
    size_t PrefixLength() const noexcept { return prefix_; }
    /* True when this is the caller's key. */
    bool IsOf(const void* key, uint32_t key_len) const noexcept;
    /* True when the stored key lies under this key's tag and key bytes. */
    bool Owns(const MDB_val& stored) const noexcept;

  private:
    uint8_t bytes_[kMaxStoredKeyLength];
    size_t prefix_;
    size_t length_;
};

/* One key's meta record. */
struct Meta {
    uint8_t kind = 0;
    uint32_t value_type = 0;
    uint32_t attributes[4] = {0, 0, 0, 0};
    uint32_t entry_size = 0;  /* sorted lists: size of every entry, 0 before the first one */
    uint32_t entry_count = 0; /* sorted lists; an AVL list's stands in its count row */
};

constexpr size_t kMetaSize = 32;
void EncodeMeta(const Meta& meta, uint8_t out[kMetaSize]) noexcept;
/* False when the bytes are no meta record of this format, or none for a key of this length. */
bool DecodeMeta(const MDB_val& stored, uint32_t key_len, Meta* meta) noexcept;

/* A sort key in an order that sorts bytewise. */
struct SortKey {
    uint8_t bytes[kMaxStoredKeyLength];
    size_t length;
};

/* True when a list of this kind with these attributes can be kept under a key of this length. */
bool AttributesAreUsable(uint8_t kind, const uint32_t attributes[4], uint32_t key_len) noexcept;
/* The bytes of an entry that hold its sort key end here. */
inline uint64_t SortKeyEnd(const Meta& meta) {
    return uint64_t{meta.attributes[0]} + meta.attributes[1];
}
/* Converts the sort key's bytes as an entry holds them. */
SortKey MakeSortKey(const Meta& meta, const void* raw) noexcept;

/* A row of the value-type index. */
class TypeRow {
  public:
    TypeRow(uint32_t value_type, const void* key, uint32_t key_len) noexcept;
    MDB_val Value() noexcept { return {length_, bytes_}; }

  private:
    uint8_t bytes_[4 + kMaxKeyLength];
    size_t length_;
};

}  // namespace aaadom::dbm

#endif
