// The fields of a user record: where they lie and the type under which they travel.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/user_record.h>

#include <cstddef>

namespace aaadom {

enum class RecordFieldKind : uint8_t { kNumber16, kNumber32, kNumber64, kRaw, kMac, kText };

struct RecordField {
    uint16_t type;
    RecordFieldKind kind;
    uint16_t offset;
    uint16_t size;

    const void* Of(const UserRecord& record) const noexcept {
        return reinterpret_cast<const char*>(&record) + offset;
    }
    void* Of(UserRecord& record) const noexcept {
        return reinterpret_cast<char*>(&record) + offset;
    }
};

/// The serial number begins the stored form and ends the message.
inline constexpr RecordField kSerialField{DOM_TLV_RECORD_SERIAL, RecordFieldKind::kNumber64,
                                          offsetof(UserRecord, serial), sizeof(UserRecord::serial)};

/// The others but the detail text, in the order of the stored form and of the message.
inline constexpr RecordField kRecordFields[] = {
    {DOM_TLV_RECORD_FIRST_NUMBER, RecordFieldKind::kNumber32, offsetof(UserRecord, first_number),
     4},
    {DOM_TLV_RECORD_SECOND_NUMBER, RecordFieldKind::kNumber32, offsetof(UserRecord, second_number),
     4},
    {DOM_TLV_RECORD_IPV4, RecordFieldKind::kRaw, offsetof(UserRecord, ipv4), 4},
    {DOM_TLV_RECORD_IPV6, RecordFieldKind::kRaw, offsetof(UserRecord, ipv6), 16},
    {DOM_TLV_RECORD_THIRD_NUMBER, RecordFieldKind::kNumber32, offsetof(UserRecord, third_number),
     4},
    {DOM_TLV_RECORD_FOURTH_NUMBER, RecordFieldKind::kNumber32, offsetof(UserRecord, fourth_number),
     4},
    {DOM_TLV_RECORD_NUMBER16_1, RecordFieldKind::kNumber16, offsetof(UserRecord, number16), 2},
    {DOM_TLV_RECORD_NUMBER16_2, RecordFieldKind::kNumber16, offsetof(UserRecord, number16) + 2, 2},
    {DOM_TLV_RECORD_NUMBER16_3, RecordFieldKind::kNumber16, offsetof(UserRecord, number16) + 4, 2},
    {DOM_TLV_RECORD_MAC, RecordFieldKind::kMac, offsetof(UserRecord, mac), 6},
    {DOM_TLV_RECORD_FIRST_NAME, RecordFieldKind::kText, offsetof(UserRecord, first_name), 256},
    {DOM_TLV_RECORD_SECOND_NAME, RecordFieldKind::kText, offsetof(UserRecord, second_name), 256},
    {DOM_TLV_RECORD_INTERFACE, RecordFieldKind::kText, offsetof(UserRecord, interface_name), 48},
};

/// Null for a type that is no field.
inline const RecordField* FieldOfType(uint16_t type) noexcept {
    for (const RecordField& field : kRecordFields) {
        if (field.type == type) return &field;
    }
    return type == kSerialField.type ? &kSerialField : nullptr;
}

/// A text without a length, or a length without a text, is no detail text.
inline bool HasDetail(const char* detail, uint32_t length) noexcept {
    return detail != nullptr && length != 0;
}

}  // namespace aaadom
