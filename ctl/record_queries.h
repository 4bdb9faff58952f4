// Questions about user records, answered page by page.
#pragma once

#include <aaadom/user_record_query.h>

#include <functional>
#include <map>
#include <optional>

#include "client.h"
#include "output.h"
#include "record_fields.h"

namespace aaactl {

/// Where a question goes on in one list: below this serial number.
struct RecordPosition {
    uint32_t list;
    uint64_t serial;
};
using RecordPositions = std::vector<RecordPosition>;

/// What is not given counts for nothing.
struct RecordFilter {
    uint16_t list = 0;  // 0: all three
    std::optional<uint32_t> since;
    std::optional<uint32_t> until;
    std::optional<uint32_t> reason;
    std::optional<std::string> user;
    std::optional<std::string> domain;
    std::optional<std::string> interface_name;
    std::optional<Mac> mac;
    std::optional<Ipv4> ipv4;
    std::optional<Ipv6> ipv6;
    std::optional<uint16_t> outer_vlan;
    std::optional<uint16_t> inner_vlan;

    bool HasConditions() const;
};

/// A record with its list. In the brief form only the fields of that form are there.
struct FoundRecord {
    uint32_t list = 0;
    bool brief = false;
    UserRecord fields{};
    std::string detail;  // fields.detail is null
};

struct RecordPage {
    std::vector<FoundRecord> records;  // newest first
    uint64_t looked_at = 0;
    RecordPositions next;  // empty: there are no more
};

/// At most `limit` records, perhaps none although there are more; from the newest on when `from` is
/// empty.
RecordPage ReadRecordPage(Client& client, const RecordFilter& filter, bool brief, uint32_t limit,
                          const RecordPositions& from);
/// Every record of a list, all three lists for 0.
uint32_t CountRecords(Client& client, uint16_t list);

enum class TopBy : uint32_t {
    kReason = DOM_RECORD_TOP_BY_REASON,
    kDomain = DOM_RECORD_TOP_BY_DOMAIN,
    kInterface = DOM_RECORD_TOP_BY_INTERFACE
};
struct TopEntry {
    std::string value;  // as the newest record has it; a reason as its code
    uint32_t reason = 0;
    uint64_t count = 0;
};
/// The most frequent first, then by value. `progress` gets the records looked at so far.
std::vector<TopEntry> ReadTop(Client& client, const RecordFilter& filter, TopBy by,
                              const std::function<void(uint64_t)>& progress);
/// Empties a list; how many records went.
uint32_t ResetRecords(Client& client, uint16_t list);

}  // namespace aaactl
