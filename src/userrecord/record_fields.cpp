#include "userrecord/record_fields.h"

#include <aaadom/results.h>

#include <cstdlib>
#include <cstring>

#include "userrecord/record_layout.h"

namespace aaadom {
namespace {

/// A length up to this is believed; above, only as far as the message has the bytes.
constexpr uint32_t kBelievedLength = UINT16_MAX;

template <typename Number>
Number NumberAt(const void* member) noexcept {
    Number number;
    memcpy(&number, member, sizeof number);
    return number;
}

void AppendField(Appender& append, const RecordField& field, const UserRecord& record) noexcept {
    const void* const member = field.Of(record);
    switch (field.kind) {
        case RecordFieldKind::kNumber16:
            append.U16(field.type, NumberAt<uint16_t>(member));
            return;
        case RecordFieldKind::kNumber32:
            append.U32(field.type, NumberAt<uint32_t>(member));
            return;
        case RecordFieldKind::kNumber64:
            append.U64(field.type, NumberAt<uint64_t>(member));
            return;
        case RecordFieldKind::kRaw:
            append.Raw(field.type, member, field.size);
            return;
        case RecordFieldKind::kMac:
            append.Mac(field.type, *static_cast<const uint8_t(*)[6]>(member));
            return;
        case RecordFieldKind::kText: {
            // A name may fill its field without a terminator.
            char text[sizeof(UserRecord::first_name) + 1];
            CopyBounded(text, sizeof text, static_cast<const char*>(member), field.size);
            append.Text(field.type, text);
            return;
        }
    }
}

uint32_t ReadField(TlvItem item, const RecordField& field, UserRecord& record) noexcept {
    void* const member = field.Of(record);
    switch (field.kind) {
        case RecordFieldKind::kNumber32: {
            const uint32_t number = item.U32();
            memcpy(member, &number, sizeof number);
            return DOM_OK;
        }
        case RecordFieldKind::kNumber64: {
            const uint64_t number = item.U64();
            memcpy(member, &number, sizeof number);
            return DOM_OK;
        }
        case RecordFieldKind::kNumber16:
            return item.U16(static_cast<uint16_t*>(member));
        case RecordFieldKind::kRaw:
            return item.Raw(member, field.size);
        case RecordFieldKind::kMac:
            return item.Mac(*static_cast<uint8_t(*)[6]>(member));
        case RecordFieldKind::kText:
            return item.Text(static_cast<char*>(member), field.size);
    }
    return DOM_OK;
}

}  // namespace

void AppendDetail(Appender& append, const char* detail, uint32_t length) noexcept {
    if (!HasDetail(detail, length)) return;
    append.U32(DOM_TLV_RECORD_DETAIL_LEN, length).Raw(DOM_TLV_RECORD_DETAIL, detail, length);
}

void AppendRecordFields(Appender& append, const UserRecord& record) noexcept {
    for (const RecordField& field : kRecordFields) AppendField(append, field, record);
    AppendField(append, kSerialField, record);
    AppendDetail(append, record.detail, record.detail_len);
}

uint32_t ReadRecordFields(TLV_MSG* msg, UserRecord& record) noexcept {
    uint32_t result = DOM_OK;
    TlvItem detail_length(msg, nullptr);
    for (TlvItem item : TlvWalk(msg)) {
        if (item.Type() == DOM_TLV_RECORD_DETAIL_LEN) {
            detail_length = item;
        } else if (const RecordField* field = FieldOfType(item.Type())) {
            result |= ReadField(item, *field, record);
        }
    }
    // Fetched once, behind the walk: a message may repeat the length as often as it has room.
    if (detail_length) {
        const uint32_t length = detail_length.U32();
        free(record.detail);
        // A record without its detail text is better than none: no failure.
        record.detail = CopyDetailOf(msg, length);
        record.detail_len = record.detail == nullptr ? 0 : length;
    }
    return result;
}

char* CopyDetailOf(TLV_MSG* msg, uint32_t length) noexcept {
    const TlvItem item = FindTlv(msg, DOM_TLV_RECORD_DETAIL);
    if (!item || length == 0) return nullptr;
    if (length > kBelievedLength && length > item.Length()) return nullptr;
    // One more than asked for: a value as long as `length` need not be terminated.
    auto* const text = static_cast<char*>(calloc(size_t{length} + 1, 1));
    if (text != nullptr && item.Raw(text, length) != DOM_OK) {
        free(text);
        return nullptr;
    }
    return text;
}

}  // namespace aaadom
