#include "record_query_fields.h"

#include <aaadom/codes.h>
#include <aaadom/user_record.h>
#include <platform/stlv.h>

#include <algorithm>
#include <cstring>

namespace aaad {
namespace {

struct Item {
    uint16_t type;
    uint32_t length;
    const void* value;
};

template <class Field>
void Copy(const Item& item, Field& field) {
    if (item.length >= sizeof field) memcpy(&field, item.value, sizeof field);
}

std::string_view Text(const Item& item, size_t capacity) {
    const auto* text = static_cast<const char*>(item.value);
    return {text, strnlen(text, std::min<size_t>(item.length, capacity - 1))};
}

void Take(const Item& item, RecordFields& fields) {
    switch (item.type) {
        case DOM_TLV_RECORD_SERIAL:
            return Copy(item, fields.serial);
        case DOM_TLV_RECORD_FIRST_NUMBER:
            return Copy(item, fields.time);
        case DOM_TLV_RECORD_SECOND_NUMBER:
            return Copy(item, fields.reason);
        case DOM_TLV_RECORD_NUMBER16_1:
            return Copy(item, fields.outer_vlan);
        case DOM_TLV_RECORD_NUMBER16_2:
            return Copy(item, fields.inner_vlan);
        case DOM_TLV_RECORD_NUMBER16_3:
            return Copy(item, fields.service);
        case DOM_TLV_RECORD_MAC:
            return Copy(item, fields.mac);
        case DOM_TLV_RECORD_IPV4:
            return Copy(item, fields.ipv4);
        case DOM_TLV_RECORD_IPV6:
            return Copy(item, fields.ipv6);
        case DOM_TLV_RECORD_FIRST_NAME:
            fields.domain = Text(item, sizeof(UserRecord::first_name));
            return;
        case DOM_TLV_RECORD_SECOND_NAME:
            fields.user = Text(item, sizeof(UserRecord::second_name));
            return;
        case DOM_TLV_RECORD_INTERFACE:
            fields.interface = Text(item, sizeof(UserRecord::interface_name));
            return;
        case DOM_TLV_RECORD_DETAIL_LEN:
            return Copy(item, fields.detail_length);
        default:
            return;
    }
}

}  // namespace

RecordFields ReadRecordFields(const void* stored, uint32_t length) {
    RecordFields fields;
    const auto* bytes = static_cast<const uint8_t*>(stored);
    Item item{};
    for (uint32_t at = 0; at < length;) {
        const uint32_t taken =
            STLV_Get(bytes + at, length - at, &item.type, &item.length, &item.value);
        if (taken == 0) break;
        Take(item, fields);
        at += taken;
    }
    return fields;
}

}  // namespace aaad
