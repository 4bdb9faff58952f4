// Codes 70 to 74: the number of records and pages of them.
#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>

#include "memory_watch.h"
#include "record_query_answers.h"
#include "record_query_scan.h"

namespace aaad {
namespace {

/// A page of this size ends. One more record with the longest detail text, the last that is added,
/// does not take it beyond the packet that every client can receive (256 KiB).
constexpr uint32_t kReplyIsFull = 160 * 1024;

struct Record : UserRecord {
    Record() : UserRecord{} {}
    ~Record() { free(detail); }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
};

/// Throws std::bad_alloc for want of memory for the detail text, which the library leaves out then.
void DecodeStored(const void* stored, uint32_t length, Record& record) {
    const MemoryWatch memory;
    DOM_userrecord_tlv_DecodeUserRecordStlv(stored, length, &record);
    if (memory.RanShort()) throw std::bad_alloc();
}

enum class Read { kDone, kDropped, kFailed };

/// The record that the scan stands on, with its detail text, unless it was dropped since.
Read Decode(const RecordStore& store, const RecordScan& scan, Record& record) {
    if (scan.StoredLength() < kComparedSize) {
        DecodeStored(scan.Stored(), scan.StoredLength(), record);
        return Read::kDone;
    }
    const uint64_t serial = RecordCursor::SerialOf(scan.Stored());
    const auto stored = std::make_unique<uint8_t[]>(DOM_RECORD_STORED_SIZE);
    RecordCursor whole(store, scan.List(), serial + 1);
    const uint32_t length = whole.Next(stored.get(), DOM_RECORD_STORED_SIZE);
    if (length < RecordCursor::kSerialEnd || RecordCursor::SerialOf(stored.get()) != serial) {
        return whole.Failed() ? Read::kFailed : Read::kDropped;
    }
    DecodeStored(stored.get(), length, record);
    return Read::kDone;
}

/// Appends the record with the TLVs that stand in front of it.
bool Append(TLV_MSG* reply, uint32_t list, const UserRecord& record, bool brief) {
    if (AAA_AppendUINTTlvData(reply, DOM_TLV_RECORD_KIND, list) != 0) return false;
    if (!brief) return DOM_userrecord_tlv_EncodeRecordVerbose(reply, &record) == DOM_OK;
    return AAA_AppendUINT64TlvData(reply, DOM_TLV_RECORD_SERIAL, record.serial) == 0 &&
           AAA_AppendUINTTlvData(reply, DOM_TLV_RECORD_FIRST_NUMBER, record.first_number) == 0 &&
           DOM_userrecord_tlv_EncodeRecordBrief(reply, &record) == DOM_OK;
}

/// Null for want of memory, and when the records cannot be read.
Message MakePage(const RecordStore& store, const RecordQuery& query) {
    Message reply(DOM_userrecord_tlv_EncodeRecordHeader(query.list));
    if (!reply) return nullptr;
    uint32_t records = 0;
    uint32_t looked_at = 0;
    RecordScan scan(store, query.positions);
    while (!scan.AtEnd() && looked_at < kRecordsLookedAt && records < query.page &&
           TLV_GetMsgLen(reply.get(), TLV_FORM_BUFFER) < kReplyIsFull) {
        ++looked_at;
        if (query.filter.Passes(scan.Fields())) {
            Record record;
            const Read read = Decode(store, scan, record);
            if (read == Read::kFailed) return nullptr;
            if (read == Read::kDone) {
                if (!Append(reply.get(), scan.List(), record, query.brief)) return nullptr;
                ++records;
            }
        }
        scan.Advance();
    }
    if (scan.Failed()) return nullptr;
    if (records == 0 && scan.AtEnd()) return NoRecord();
    return EndOfPage(std::move(reply), looked_at, scan);
}

/// False too when the list cannot be read, whose number of records reads 0 as well.
bool IsEmpty(const RecordStore& store, uint32_t list) {
    RecordCursor cursor(store, list, 0);
    uint8_t head[RecordCursor::kSerialEnd];
    return cursor.Next(head, sizeof head) == 0 && !cursor.Failed();
}

Message AnswerPage(const RecordStore& store, const RecordQuery& query, uint32_t& refusal) {
    Message reply = query.filter.IsEmpty() ? NoRecord() : MakePage(store, query);
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

Message Malformed(uint32_t& refusal) {
    refusal = AAAD_ERR_MALFORMED;
    return nullptr;
}

}  // namespace

Message NoRecord() {
    return Message(DOM_userrecord_tlv_EncodeNoRecordMsg());
}

Message EndOfPage(Message reply, uint32_t looked_at, const RecordScan& scan) {
    if (AAA_AppendUINTTlvData(reply.get(), DOM_TLV_RECORD_LOOKED_AT, looked_at) != 0 ||
        !scan.AppendPositions(reply.get())) {
        return nullptr;
    }
    return reply;
}

Message AnswerRecordNumber(const RecordStore& store, TLV_MSG* body, uint32_t& refusal) {
    std::vector<uint32_t> lists;
    if (!ReadRecordLists(body, lists)) return Malformed(refusal);
    uint64_t number = 0;
    for (const uint32_t list : lists) {
        const uint64_t records = store.Count(list);
        if (records == 0 && !IsEmpty(store, list)) {
            refusal = DOM_ERR_FAILED;
            return nullptr;
        }
        number += records;
    }
    const auto shown =
        static_cast<uint32_t>(std::min<uint64_t>(number, std::numeric_limits<uint32_t>::max()));
    Message reply(DOM_userrecord_tlv_EncodeDisplayRecordNumber(DOM_MSG_RECORD_NUMBER, shown));
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

Message AnswerRecordPage(const RecordStore& store, TLV_MSG* body, uint32_t& refusal) {
    RecordQuery query;
    if (!ReadRecordQuery(body, query)) return Malformed(refusal);
    return AnswerPage(store, query, refusal);
}

Message AnswerRecordsByReason(const RecordStore& store, TLV_MSG* body, uint32_t& refusal) {
    RecordQuery query;
    if (!ReadRecordQuery(body, query) || !query.filter.has_reason) return Malformed(refusal);
    return AnswerPage(store, query, refusal);
}

}  // namespace aaad
