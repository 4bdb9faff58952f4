// Answers to record queries. Each returns the reply's data, or null and the refusal.
#pragma once

#include <cstdint>

#include "message.h"
#include "record_query_scan.h"
#include "record_store.h"

namespace aaad {

/// So many records one answer looks at: the thread that answers belongs to all clients, and a
/// client that searches more goes on with its next request.
constexpr uint32_t kRecordsLookedAt = 4096;

/// Code 70.
Message AnswerRecordNumber(const RecordStore& store, TLV_MSG* body, uint32_t& refusal);
/// Codes 71 to 73: one page of records.
Message AnswerRecordPage(const RecordStore& store, TLV_MSG* body, uint32_t& refusal);
/// Code 74: the same, and the reason must be there.
Message AnswerRecordsByReason(const RecordStore& store, TLV_MSG* body, uint32_t& refusal);
/// Code 75: the counts of one page.
Message AnswerRecordTop(const RecordStore& store, TLV_MSG* body, uint32_t& refusal);

/// Nothing (more) fits the query.
Message NoRecord();
/// What closes every page: how much was looked at, and where the next one goes on. Null for want of
/// memory.
Message EndOfPage(Message reply, uint32_t looked_at, const RecordScan& scan);

}  // namespace aaad
