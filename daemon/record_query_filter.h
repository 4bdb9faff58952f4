// Which records a query wants.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>

#include "record_query_fields.h"

namespace aaad {

struct RecordFilter {
    uint32_t since = 0;
    uint32_t until = std::numeric_limits<uint32_t>::max();  // inclusive
    bool has_reason = false;
    uint32_t reason = 0;

    uint32_t conditions = 0;  // DOM_RECORD_COND_...
    uint16_t outer_vlan = 0;
    uint16_t inner_vlan = 0;
    uint16_t service = 0;
    uint32_t condition_reason = 0;
    std::array<uint8_t, 6> mac{};
    std::array<uint8_t, 4> ipv4{};
    std::array<uint8_t, 16> ipv6{};
    std::string domain;
    std::string user;
    std::string interface;

    /// Marks the conditions that are neither 0 nor empty. The library's requests carry every
    /// condition, so in them 0 means any.
    void CountSetConditions();
    /// No record can pass.
    bool IsEmpty() const { return since > until; }
    bool Passes(const RecordFields& record) const;
};

}  // namespace aaad
