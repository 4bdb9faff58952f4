// The user record of the golden files and of the unit tests: every field set, no two alike.
#pragma once

#include <aaadom/user_record.h>

#include <cstring>

#include "base/text.h"

namespace golden {

/// The detail text is static.
inline UserRecord SampleRecord(bool with_detail = true) {
    static char detail[] = "rejected";
    UserRecord record{};
    record.first_number = 1700000001;
    record.second_number = 15;
    const uint8_t ipv4[4] = {192, 0, 2, 7};
    memcpy(record.ipv4, ipv4, sizeof ipv4);
    const uint8_t ipv6[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};
    memcpy(record.ipv6, ipv6, sizeof ipv6);
    record.third_number = 3;
    record.fourth_number = 4;
    record.number16[0] = 100;
    record.number16[1] = 200;
    record.number16[2] = 1812;
    const uint8_t mac[6] = {0x02, 0x00, 0x5E, 0x00, 0x53, 0x01};
    memcpy(record.mac, mac, sizeof mac);
    aaadom::CopyText(record.first_name, "isp-a.example");
    aaadom::CopyText(record.second_name, "user@isp-a.example");
    aaadom::CopyText(record.interface_name, "eth1/0/7");
    record.serial = 0x0102030405060708u;
    if (with_detail) {
        record.detail = detail;
        record.detail_len = sizeof detail;
    }
    return record;
}

/// The same record as an access module reports it, without an interface.
inline UserRecordSource SampleSource(bool with_detail = true) {
    const UserRecord record = SampleRecord(with_detail);
    UserRecordSource source{};
    source.first_number = record.first_number;
    source.second_number = record.second_number;
    memcpy(source.ipv4, record.ipv4, sizeof source.ipv4);
    memcpy(source.ipv6, record.ipv6, sizeof source.ipv6);
    source.third_number = record.third_number;
    source.fourth_number = record.fourth_number;
    memcpy(source.number16, record.number16, sizeof source.number16);
    memcpy(source.mac, record.mac, sizeof source.mac);
    memcpy(source.first_name, record.first_name, sizeof source.first_name);
    memcpy(source.second_name, record.second_name, sizeof source.second_name);
    source.detail = record.detail;
    source.detail_len = record.detail_len;
    return source;
}

}  // namespace golden
