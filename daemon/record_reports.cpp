#include "record_reports.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <platform/aaa_tlv.h>

#include <cstdlib>
#include <new>

#include "command_failures.h"
#include "memory_watch.h"

namespace aaad {

struct ReportedRecord {
    ReportedRecord() = default;
    ~ReportedRecord() { free(record.detail); }
    ReportedRecord(ReportedRecord&&) = delete;

    Request* report = nullptr;
    uint32_t list = 0;
    UserRecord record{};
};

namespace {

/// Null: the report has no TLV 0. More than one is as good as none.
bool ReadCode(TLV_MSG* message, bool& has_code, uint32_t& code) {
    has_code = false;
    for (TLV_ITER* it = TLV_GetFirst(message); it != nullptr; it = TLV_GetNext(message, it)) {
        if (TLV_GetTypeByIterator(message, it) != DOM_TLV_MSG_CODE) continue;
        if (has_code || TLV_GetLenByIterator(message, it) != sizeof code) return false;
        has_code = true;
        code = AAA_GetUINTTlvValue(message, it);
    }
    return true;
}

/// One list, and at least one record of which the last, the one that counts, is a message: the
/// decoder takes a good TLV 185 behind a broken record for a success.
bool IsComplete(TLV_MSG* message) {
    uint32_t lists = 0;
    TLV_ITER* last_record = nullptr;
    for (TLV_ITER* it = TLV_GetFirst(message); it != nullptr; it = TLV_GetNext(message, it)) {
        switch (TLV_GetTypeByIterator(message, it)) {
            case DOM_TLV_RECORD_KIND:
                if (TLV_GetLenByIterator(message, it) != sizeof(uint32_t)) return false;
                ++lists;
                break;
            case DOM_TLV_USER_RECORD:
                last_record = it;
                break;
            default:
                break;
        }
    }
    return lists == 1 && last_record != nullptr && Message(AAA_GetSubTlv(message, last_record));
}

/// The answer, or 0 and the record, whole: the library leaves a detail text out for which memory
/// does not suffice.
uint32_t ReadRecord(TLV_MSG* message, ReportedRecord& reported) {
    const MemoryWatch memory;
    uint32_t result = AAAD_ERR_MALFORMED;
    if (IsComplete(message)) {
        uint16_t flags = 0;  // the access modules' own
        result = PAM_DecUserRecordMsg(message, &reported.list, &flags, &reported.record);
    }
    return memory.RanShort() ? DOM_ERR_FAILED : result;
}

}  // namespace

void RecordReports::Serve(std::vector<Request>& reports) {
    ReportedRecords reported;
    for (Request& report : reports) {
        try {
            Read(report, reported);
        } catch (const std::bad_alloc&) {
            report.result = DOM_ERR_FAILED;
        }
    }
    if (reported.empty()) return;
    std::vector<ArrivedRecord> arrived;
    try {
        arrived.reserve(reported.size());
    } catch (const std::bad_alloc&) {
        for (const auto& one : reported) one->report->result = DOM_ERR_FAILED;
        return;
    }
    for (const auto& one : reported) {
        arrived.push_back({one->list, &one->record, false, AAAD_ERR_NOT_SAVED});
    }
    records_.Store(arrived);
    for (size_t i = 0; i < arrived.size(); ++i) {
        reported[i]->report->result = arrived[i].result;
        if (arrived[i].kept) reported[i]->report->serial = arrived[i].record->serial;
    }
}

/// Answers a report, or adds its record to those that are to be stored.
void RecordReports::Read(Request& report, ReportedRecords& reported) {
    report.result = AAAD_ERR_MALFORMED;
    bool has_code;
    TLV_MSG* message = report.message.get();
    if (message == nullptr || !ReadCode(message, has_code, report.code)) return;
    if (!MayReport(report.peer)) {
        report.result = AAAD_ERR_DENIED;
        return;
    }
    if (has_code) {
        if (report.code == DOM_MSG_CMD_AUTHOR_FAIL) report.result = TakeCommandFailure(message);
        return;
    }
    auto record = std::make_unique<ReportedRecord>();
    report.result = ReadRecord(message, *record);
    if (report.result != DOM_OK) return;
    record->report = &report;
    reported.push_back(std::move(record));
}

bool RecordReports::MayReport(const LIPC_PEER& peer) {
    if (administrators_.MayChange(peer)) return true;
    uint32_t suppressed = 0;
    if (denied_limit_.Allows(suppressed)) {
        Log(Severity::kWarning,
            "report refused: process %d of user %u may not report user records; %u earlier "
            "refusals not shown",
            peer.pid, peer.uid, suppressed);
    }
    return false;
}

}  // namespace aaad
