// What the user-record tests share: a filled record and the contents of messages.
#pragma once

#include <aaadom/results.h>
#include <aaadom/user_record.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "base/message.h"
#include "base/text.h"
#include "fakes/fake_platform.h"

namespace record_test {

using aaadom::FindTlv;
using aaadom::TlvPtr;

/// Every field set; the detail text is static.
inline UserRecord Sample() {
    static char detail[] = "why?";
    UserRecord record{};
    record.first_number = 1;
    record.second_number = 2;
    const uint8_t ipv4[4] = {192, 0, 2, 7};
    memcpy(record.ipv4, ipv4, sizeof ipv4);
    const uint8_t ipv6[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};
    memcpy(record.ipv6, ipv6, sizeof ipv6);
    record.third_number = 3;
    record.fourth_number = 4;
    record.number16[0] = 11;
    record.number16[1] = 12;
    record.number16[2] = 13;
    const uint8_t mac[6] = {0x02, 0x00, 0x5E, 0x00, 0x53, 0x01};
    memcpy(record.mac, mac, sizeof mac);
    aaadom::CopyText(record.first_name, "first");
    aaadom::CopyText(record.second_name, "second");
    aaadom::CopyText(record.interface_name, "eth0");
    record.detail = detail;
    record.detail_len = sizeof detail;
    record.serial = 0x1122334455667788u;
    return record;
}

inline std::vector<uint32_t> TypesOf(TLV_MSG* msg) {
    std::vector<uint32_t> types;
    for (aaadom::TlvItem item : aaadom::TlvWalk(msg)) types.push_back(item.Type());
    return types;
}

/// The bytes of the first TLV of a type.
inline std::string BytesOf(TLV_MSG* msg, uint16_t type) {
    const aaadom::TlvItem item = FindTlv(msg, type);
    EXPECT_TRUE(static_cast<bool>(item)) << "no TLV " << type;
    if (!item) return "";
    std::string bytes(item.Length(), '\0');
    EXPECT_EQ(item.Raw(bytes.data(), item.Length()), 0u);
    return bytes;
}

class RecordTest : public testing::Test {
  protected:
    RecordTest() { fake::Reset(); }
    ~RecordTest() override {
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
    }
};

}  // namespace record_test
