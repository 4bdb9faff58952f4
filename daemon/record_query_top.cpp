// Code 75: how often each reason, domain or interface occurs.
#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "record_query_answers.h"

namespace aaad {
namespace {

/// So many different values one answer counts: with the longest names its reply stays below the
/// packet that every client can receive.
constexpr size_t kLargestTop = 512;

struct Entry {
    std::string text;  // in the letters of its newest record
    uint32_t reason;
    uint32_t count;
};

std::string_view Text(TopBy by, const RecordFields& record) {
    switch (by) {
        case TopBy::kDomain:
            return record.domain;
        case TopBy::kInterface:
            return record.interface;
        case TopBy::kReason:
            break;
    }
    return {};
}

class Counts {
  public:
    explicit Counts(TopBy by) : by_(by) {}

    /// False when there is no room for one more value; nothing is counted then.
    bool Add(const RecordFields& record) {
        const std::string_view text = Text(by_, record);
        std::string key = by_ == TopBy::kReason ? std::to_string(record.reason) : std::string(text);
        for (char& letter : key) {
            if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
        }
        const auto found = places_.find(key);
        if (found != places_.end()) {
            ++entries_[found->second].count;
            return true;
        }
        if (entries_.size() == kLargestTop) return false;
        places_.emplace(std::move(key), entries_.size());
        entries_.push_back({std::string(text), record.reason, 1});
        return true;
    }

    bool IsEmpty() const { return entries_.empty(); }

    /// The most frequent first, among equals the one with the newest record.
    bool AppendTo(TLV_MSG* reply) {
        std::stable_sort(
            entries_.begin(), entries_.end(),
            [](const Entry& left, const Entry& right) { return left.count > right.count; });
        return std::all_of(entries_.begin(), entries_.end(),
                           [&](const Entry& entry) { return Append(reply, entry); });
    }

  private:
    bool Append(TLV_MSG* reply, const Entry& entry) const {
        const Message encoded(TLV_Create());
        return encoded && AppendValue(encoded.get(), entry) == 0 &&
               AAA_AppendUINTTlvData(encoded.get(), DOM_TLV_RECORD_COUNT, entry.count) == 0 &&
               AAA_AppendSubTlv(reply, DOM_TLV_RECORD_TOP_ENTRY, encoded.get()) == 0;
    }

    uint32_t AppendValue(TLV_MSG* encoded, const Entry& entry) const {
        if (by_ == TopBy::kReason) {
            return AAA_AppendUINTTlvData(encoded, DOM_TLV_RECORD_SECOND_NUMBER, entry.reason);
        }
        const uint16_t type =
            by_ == TopBy::kDomain ? DOM_TLV_RECORD_FIRST_NAME : DOM_TLV_RECORD_INTERFACE;
        return AAA_AppendStrTlvData(encoded, type, entry.text.c_str());
    }

    const TopBy by_;
    std::vector<Entry> entries_;
    std::unordered_map<std::string, size_t> places_;  // by value in small letters
};

/// Null for want of memory, and when the records cannot be read.
Message MakeTop(const RecordStore& store, const RecordQuery& query) {
    Message reply(DOM_userrecord_tlv_EncodeRecordHeader(query.list));
    if (!reply) return nullptr;
    Counts counts(*query.top_by);
    uint32_t looked_at = 0;
    RecordScan scan(store, query.positions);
    while (!scan.AtEnd() && looked_at < kRecordsLookedAt) {
        if (query.filter.Passes(scan.Fields()) && !counts.Add(scan.Fields())) break;
        ++looked_at;
        scan.Advance();
    }
    if (scan.Failed()) return nullptr;
    if (counts.IsEmpty() && scan.AtEnd()) return NoRecord();
    if (!counts.AppendTo(reply.get())) return nullptr;
    return EndOfPage(std::move(reply), looked_at, scan);
}

}  // namespace

Message AnswerRecordTop(const RecordStore& store, TLV_MSG* body, uint32_t& refusal) {
    RecordQuery query;
    if (!ReadRecordQuery(body, query) || !query.top_by.has_value()) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    Message reply = query.filter.IsEmpty() ? NoRecord() : MakeTop(store, query);
    if (!reply) refusal = DOM_ERR_FAILED;
    return reply;
}

}  // namespace aaad
