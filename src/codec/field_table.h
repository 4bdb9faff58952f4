// A record's fields on the wire, listed once: one routine interprets the list in both directions.
#pragma once

#include <platform/aaa_tlv.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// The plain kinds are handled by the platform, a run of them with one call.
enum class FieldKind : uint8_t {
    kWord,           // UINT32
    kWordWriteOnly,  // UINT32 that is sent and never read back
    kHalf,           // 16-bit member carried as UINT32, narrowed on decode
    kText,           // text of `size` bytes; the member may lack its terminator
    kTextLowerCase,  // text that the decoder lower-cases
    kBlock,          // `size` raw bytes
    kPosition,       // no member: the record's position in its array
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

constexpr bool IsSentPlain(FieldKind kind) noexcept {
    return kind != FieldKind::kRateScaled && kind != FieldKind::kTextSelected &&
           kind != FieldKind::kTextOther;
}
constexpr bool IsReadPlain(FieldKind kind) noexcept {
    return kind == FieldKind::kWord || kind == FieldKind::kHalf || kind == FieldKind::kText ||
           kind == FieldKind::kBlock || kind == FieldKind::kPosition;
}

/// The field as the platform handles it; of kinds that are not plain only the type has a meaning.
constexpr AAA_FIELD PlainField(const Field& field) noexcept {
    // Not constant, so a table of such a record does not compile.
    if (field.offset > UINT16_MAX) __builtin_trap();
    const auto offset = static_cast<uint16_t>(field.offset);
    switch (field.kind) {
        case FieldKind::kHalf:
            return {field.type, AAA_FIELD_HALF, offset, 0};
        case FieldKind::kText:
        case FieldKind::kTextLowerCase:
            return {field.type, AAA_FIELD_TEXT, offset, field.size};
        case FieldKind::kBlock:
            return {field.type, AAA_FIELD_BLOCK, offset, field.size};
        case FieldKind::kPosition:
            return {field.type, AAA_FIELD_POSITION, 0, 0};
        default:
            return {field.type, AAA_FIELD_WORD, offset, 0};
    }
}

template <size_t N>
class FieldTable {
  public:
    constexpr explicit FieldTable(const Field (&fields)[N])
        : fields_{}, index_{}, sent_{}, run_{}, read_{} {
        for (size_t i = 0; i < N; ++i) {
            fields_[i] = fields[i];
            index_[fields[i].type] = static_cast<uint8_t>(i + 1);
            sent_[i] = PlainField(fields[i]);
            if (IsReadPlain(fields[i].kind)) read_[read_count_++] = sent_[i];
        }
        for (size_t i = N; i-- != 0;) {
            if (!IsSentPlain(fields[i].kind)) continue;
            run_[i] = static_cast<uint8_t>(i + 1 == N ? 1 : run_[i + 1] + 1);
        }
    }
    /// The field of a TLV type, null when the record has none.
    constexpr const Field* Find(uint16_t type) const noexcept {
        if (type >= kFieldTypeLimit || index_[type] == 0) return nullptr;
        return &fields_[index_[type] - 1u];
    }
    static constexpr size_t Size() noexcept { return N; }
    constexpr const Field& At(size_t i) const noexcept { return fields_[i]; }

    /// Every field in the order of the list, and how many from one on are plain to send.
    constexpr const AAA_FIELD* Sent() const noexcept { return sent_.data(); }
    constexpr uint8_t RunFrom(size_t i) const noexcept { return run_[i]; }
    /// The fields that are plain to read.
    constexpr const AAA_FIELD* Read() const noexcept { return read_.data(); }
    constexpr uint8_t ReadCount() const noexcept { return read_count_; }

  private:
    static_assert(N < 255);
    std::array<Field, N> fields_;
    std::array<uint8_t, kFieldTypeLimit> index_;  // position + 1 by type
    std::array<AAA_FIELD, N> sent_;
    std::array<uint8_t, N> run_;
    std::array<AAA_FIELD, N> read_;
    uint8_t read_count_ = 0;
};

/// Decodes the fields of one record that the platform does not; keeps what decides between the two
/// forms of a rate.
class FieldReader {
  public:
    explicit FieldReader(void* record) noexcept : record_(static_cast<char*>(record)) {}
    /// Stores one TLV in its member. The text read's result; 0 for numbers.
    [[nodiscard]] uint32_t Read(const Field& field, const TlvItem& item) noexcept;

  private:
    char* record_;
    size_t unscaled_rates_[4] = {};  // offsets + 1 of members whose unscaled rate was seen
};

/// Appends one field that is not plain to send.
void AppendOther(Appender& append, const void* record, const Field& field) noexcept;

/// Appends every field in the order of the list.
template <size_t N>
void AppendFields(Appender& append, const void* record, const FieldTable<N>& table) noexcept {
    for (size_t i = 0; i < N;) {
        if (const uint8_t run = table.RunFrom(i)) {
            append.Fields(table.Sent() + i, run, record);
            i += run;
        } else {
            AppendOther(append, record, table.At(i++));
        }
    }
}

/// The rest of a table's fields, as the platform hands out their TLVs.
template <size_t N>
struct OtherFields {
    const FieldTable<N>& table;
    FieldReader reader;

    static uint32_t Take(void* context, uint16_t type, TLV_MSG* msg, TLV_ITER* it) noexcept {
        auto& self = *static_cast<OtherFields*>(context);
        const Field* field = self.table.Find(type);
        return field == nullptr ? DOM_OK : self.reader.Read(*field, TlvItem(msg, it));
    }
};

/// Walks the message once and stores every field it has; other types are skipped and absent fields
/// keep their value. Failed reads are combined. A null message has no fields.
template <size_t N>
[[nodiscard]] uint32_t ReadFields(TLV_MSG* msg, void* record, const FieldTable<N>& table) noexcept {
    if (msg == nullptr) return DOM_OK;
    OtherFields<N> others{table, FieldReader(record)};
    return AAA_GetFields(msg, table.Read(), table.ReadCount(), record, OtherFields<N>::Take,
                         &others);
}

/// The same for a nested message, which is read in place. A malformed one fails, with `record`
/// undefined.
template <size_t N>
[[nodiscard]] uint32_t ReadNestedFields(const TlvItem& nested, void* record,
                                        const FieldTable<N>& table) noexcept {
    OtherFields<N> others{table, FieldReader(record)};
    return nested.SubFields(table.Read(), table.ReadCount(), record, nullptr, OtherFields<N>::Take,
                            &others);
}

}  // namespace aaadom
