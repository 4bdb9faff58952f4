// What a record query asks for: codes 71 to 75.
#pragma once

#include <aaadom/codes.h>
#include <platform/tlv.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "record_query_filter.h"

namespace aaad {

enum class TopBy : uint32_t {
    kReason = DOM_RECORD_TOP_BY_REASON,
    kDomain = DOM_RECORD_TOP_BY_DOMAIN,
    kInterface = DOM_RECORD_TOP_BY_INTERFACE
};

/// Where the walk through a list goes on.
struct RecordPosition {
    uint32_t list;
    uint64_t below;  // serial number; 0 = the newest record
};

struct RecordQuery {
    static constexpr uint32_t kDefaultPage = 50;

    uint16_t list = 0;  // 0 = all
    bool brief = false;
    uint32_t page = kDefaultPage;
    std::optional<TopBy> top_by;
    RecordFilter filter;
    /// The lists to walk through, ascending; those that are done are missing.
    std::vector<RecordPosition> positions;
};

/// Reads a query of any of the codes. False when the request cannot be answered to the letter: what
/// it repeats, cuts or does not know would be another question.
bool ReadRecordQuery(TLV_MSG* body, RecordQuery& query);

/// Reads the lists that a number request selects; they ascend.
bool ReadRecordLists(TLV_MSG* body, std::vector<uint32_t>& lists);

}  // namespace aaad
