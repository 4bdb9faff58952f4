// User records as people and programs see them.
#pragma once

#include "record_queries.h"

namespace aaactl {

Json RecordToJson(const FoundRecord& record);
Json ReasonToJson(uint32_t code);

/// One line a record below a line of titles, in columns as wide as these records need.
std::vector<std::string> RecordTable(const std::vector<FoundRecord>& records, bool brief);
/// Every field on a line of its own.
std::vector<std::string> RecordBlock(const FoundRecord& record);

/// Rows of cells as lines.
std::vector<std::string> Columns(const std::vector<std::vector<std::string>>& rows);

}  // namespace aaactl
