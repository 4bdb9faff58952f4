// A record's fields on the wire, listed once: one routine interprets the list in both directions.
#pragma once

#include <platform/tlv.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/message.h"

namespace aaadom {

enum class FieldKind : uint8_t {
    kWord,           // UINT32
    kWordWriteOnly,  // UINT32 that is sent and never read back
    kHalf,           // 16-bit member carried as UINT32, narrowed on decode
    kText,           // text of `size` bytes; the member may lack its terminator
    kTextLowerCase,  // text that the decoder lower-cases
    kBlock,          // `size` raw bytes
    kRateScaled,     // UINT32 member times 1024; the unscaled TLV of the same member always wins
    kRate,           // UINT32 member unscaled
    kTextSelected,   // text sent only when non-empty and its 16-bit selector is 1
    kTextOther       // text sent only when non-empty and its selector is not 1
};

struct Field {
    uint16_t type;
    FieldKind kind;
    size_t offset;
    uint16_t size = 0;    // of texts and blocks
    size_t selector = 0;  // offset of the selector of kTextSelected and kTextOther
};

/// Types from here on are in no record.
inline constexpr uint16_t kFieldTypeLimit = 512;

template <size_t N>
class FieldTable {
  public:
    constexpr explicit FieldTable(const Field (&fields)[N]) : fields_{}, index_{} {
        for (size_t i = 0; i < N; ++i) {
            fields_[i] = fields[i];
            index_[fields[i].type] = static_cast<uint8_t>(i + 1);
        }
    }
    /// The field of a TLV type, null when the record has none.
    constexpr const Field* Find(uint16_t type) const noexcept {
        if (type >= kFieldTypeLimit || index_[type] == 0) return nullptr;
        return &fields_[index_[type] - 1u];
    }
    constexpr const Field* begin() const noexcept { return fields_.data(); }
    constexpr const Field* end() const noexcept { return fields_.data() + N; }

  private:
    static_assert(N < 255);
    std::array<Field, N> fields_;
    std::array<uint8_t, kFieldTypeLimit> index_;  // position + 1 by type
};

/// Decodes the fields of one record; keeps what decides between the two forms of a rate.
class FieldReader {
  public:
    explicit FieldReader(void* record) noexcept : record_(static_cast<char*>(record)) {}
    /// Stores one TLV in its member. The text or block read's result; 0 for numbers.
    [[nodiscard]] uint32_t Read(const Field& field, const TlvItem& item) noexcept;

  private:
    char* record_;
    size_t unscaled_rates_[4] = {};  // offsets + 1 of members whose unscaled rate was seen
};

/// Appends one field of a record.
void AppendField(Appender& append, const void* record, const Field& field) noexcept;

/// Appends every field in the order of the list.
template <size_t N>
void AppendFields(Appender& append, const void* record, const FieldTable<N>& table) noexcept {
    for (const Field& field : table) AppendField(append, record, field);
}

/// Walks the message once and stores every field it has; other types are skipped and absent fields
/// keep their value. Failed reads are combined.
template <size_t N>
[[nodiscard]] uint32_t ReadFields(TLV_MSG* msg, void* record, const FieldTable<N>& table) noexcept {
    FieldReader reader(record);
    uint32_t result = DOM_OK;
    for (TlvItem item : TlvWalk(msg)) {
        if (const Field* field = table.Find(item.Type())) result |= reader.Read(*field, item);
    }
    return result;
}

}  // namespace aaadom
