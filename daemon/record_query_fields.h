// What queries compare, straight from a record's stored form: no record is decoded to be refused.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace aaad {

/// The texts lie in the stored form and live as long as it.
struct RecordFields {
    uint64_t serial = 0;
    uint32_t time = 0;
    uint32_t reason = 0;
    uint16_t outer_vlan = 0;
    uint16_t inner_vlan = 0;
    uint16_t service = 0;
    std::array<uint8_t, 6> mac{};
    std::array<uint8_t, 4> ipv4{};
    std::array<uint8_t, 16> ipv6{};
    std::string_view domain;
    std::string_view user;
    std::string_view interface;
    uint32_t detail_length = 0;
};

/// So many bytes of a stored form hold every field above; the text of the detail follows them.
constexpr uint32_t kComparedSize = 684;

/// Reads the items as the library's decoder does: an item that is missing or too short leaves its
/// field 0 or empty, names are cut to what the decoder keeps, of two items the later counts.
RecordFields ReadRecordFields(const void* stored, uint32_t length);

}  // namespace aaad
