#include "record_queries.h"

#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "texts.h"

namespace aaactl {
namespace {

Failure Unreadable() {
    return Failure(kExitRefused, "user records", "the daemon's answer cannot be read",
                   "Use the aaactl of the daemon's release");
}

void Demand(uint32_t append_result) {
    if (append_result != 0) throw std::bad_alloc();
}

void CopyText(char* field, const std::string& text) {
    memcpy(field, text.c_str(), text.size() + 1);  // checked against the field before
}

void CheckFilter(const RecordFilter& filter) {
    const UserRecordQuery fields{};
    if (filter.user) CheckFits("user", *filter.user, sizeof fields.second_name);
    if (filter.domain) CheckFits("domain", *filter.domain, sizeof fields.first_name);
    if (filter.interface_name) {
        CheckFits("interface", *filter.interface_name, sizeof fields.interface_name);
    }
}

/// One condition: its bit, and its value in the question.
struct Marked {
    UserRecordQuery query{};
    uint32_t mask = 0;
};

Marked Mark(const RecordFilter& filter) {
    Marked marked;
    UserRecordQuery& query = marked.query;
    const auto mark = [&](bool given, uint32_t bit) { marked.mask |= given ? bit : 0; };
    mark(filter.outer_vlan.has_value(), DOM_RECORD_COND_OUTER_VLAN);
    query.conditions[0] = filter.outer_vlan.value_or(0);
    mark(filter.inner_vlan.has_value(), DOM_RECORD_COND_INNER_VLAN);
    query.conditions[1] = filter.inner_vlan.value_or(0);
    mark(filter.mac.has_value(), DOM_RECORD_COND_MAC);
    if (filter.mac) std::copy(filter.mac->begin(), filter.mac->end(), query.mac);
    mark(filter.reason.has_value(), DOM_RECORD_COND_REASON);
    query.condition = filter.reason.value_or(0);
    mark(filter.domain.has_value(), DOM_RECORD_COND_DOMAIN);
    CopyText(query.first_name, filter.domain.value_or(""));
    mark(filter.user.has_value(), DOM_RECORD_COND_USER);
    CopyText(query.second_name, filter.user.value_or(""));
    mark(filter.interface_name.has_value(), DOM_RECORD_COND_INTERFACE);
    CopyText(query.interface_name, filter.interface_name.value_or(""));
    mark(filter.ipv4.has_value(), DOM_RECORD_COND_IPV4);
    if (filter.ipv4) std::copy(filter.ipv4->begin(), filter.ipv4->end(), query.ipv4);
    mark(filter.ipv6.has_value(), DOM_RECORD_COND_IPV6);
    if (filter.ipv6) std::copy(filter.ipv6->begin(), filter.ipv6->end(), query.ipv6);
    return marked;
}

void AppendTimes(TLV_MSG* request, const RecordFilter& filter) {
    if (filter.since) Demand(TLV_Append_UINT(request, DOM_TLV_QUERY_START, *filter.since));
    if (filter.until) Demand(TLV_Append_UINT(request, DOM_TLV_QUERY_END, *filter.until));
}

/// What 71 to 75 take in the same form; no TLV may stand twice in a request.
void AppendPositions(TLV_MSG* request, const RecordPositions& from) {
    for (const RecordPosition& position : from) {
        const Message sub(TLV_Create());
        Demand(AAA_AppendUINTTlvData(sub.get(), DOM_TLV_RECORD_KIND, position.list));
        Demand(AAA_AppendUINT64TlvData(sub.get(), DOM_TLV_RECORD_SERIAL, position.serial));
        Demand(AAA_AppendSubTlv(request, DOM_TLV_RECORD_POSITION, sub.get()));
    }
}

Message NeedMessage(TLV_MSG* message) {
    if (message == nullptr) throw std::bad_alloc();
    return Message(message);
}

/// The library's question that asks for just this.
Message Question(const RecordFilter& filter, bool brief, uint32_t limit) {
    const uint16_t form = brief ? DOM_RECORD_FORM_BRIEF : DOM_RECORD_FORM_VERBOSE;
    if (filter.HasConditions()) {
        Marked marked = Mark(filter);
        if (marked.mask == DOM_RECORD_COND_REASON) {
            Message request = NeedMessage(
                DOM_userrecord_tlv_EncodeDisplayRecordReason(form, *filter.reason, filter.list));
            AppendTimes(request.get(), filter);
            Demand(TLV_Append_UINT(request.get(), DOM_TLV_RECORD_COUNT, limit));
            return request;
        }
        marked.query.list_selector = filter.list;
        marked.query.second_selector = form;
        marked.query.record_count = limit;
        Message request = NeedMessage(DOM_userrecord_tlv_EncodeDisRecordMultParas(
            DOM_MSG_RECORD_BY_CONDITIONS, &marked.query));
        Demand(TLV_Append_UINT(request.get(), DOM_TLV_RECORD_CONDITIONS, marked.mask));
        AppendTimes(request.get(), filter);
        return request;
    }
    if (filter.since || filter.until) {
        const UserRecordTimeQuery times{filter.list, form, filter.since.value_or(0),
                                        filter.until.value_or(UINT32_MAX)};
        Message request =
            NeedMessage(DOM_userrecord_tlv_EncodeDisplayRecordTime(DOM_MSG_RECORD_BY_TIME, &times));
        Demand(TLV_Append_UINT(request.get(), DOM_TLV_RECORD_COUNT, limit));
        return request;
    }
    Message request =
        NeedMessage(DOM_userrecord_tlv_EncodeDisplayRecordAll(DOM_MSG_RECORD_ALL, filter.list));
    Demand(AAA_AppendUSHORTTlvData(request.get(), DOM_TLV_QUERY_SECOND_SELECTOR, form));
    Demand(TLV_Append_UINT(request.get(), DOM_TLV_RECORD_COUNT, limit));
    return request;
}

Failure RefusedRecords(const std::string& object, uint32_t code) {
    if (code != DOM_ERR_FAILED) return Refused(object, code);
    return Failure(kExitRefused, object, "the daemon cannot read them in its run database",
                   "See the daemon's log; a restarted daemon moves a damaged run database away and "
                   "begins anew",
                   code);
}

/// Null when no record meets the question.
Message Ask(Client& client, Message request) {
    Reply reply = client.Read(request.release());
    if (!reply.data) {
        if (reply.refusal == DOM_RESULT_NO_RECORD) return nullptr;
        throw RefusedRecords("user records", reply.refusal);
    }
    uint32_t result = 0;
    if (TLV_ITER* it = TLV_GetIteratorByType(reply.data.get(), DOM_TLV_RESULT)) {
        result = AAA_GetUINTTlvValue(reply.data.get(), it);
    }
    if (result == DOM_RESULT_NO_RECORD) return nullptr;
    if (result != 0) throw RefusedRecords("user records", result);
    return std::move(reply.data);
}

RecordPosition ReadPosition(TLV_MSG* reply, TLV_ITER* it) {
    const Message sub(AAA_GetSubTlv(reply, it));
    TLV_ITER* list = sub ? TLV_GetIteratorByType(sub.get(), DOM_TLV_RECORD_KIND) : nullptr;
    TLV_ITER* serial = sub ? TLV_GetIteratorByType(sub.get(), DOM_TLV_RECORD_SERIAL) : nullptr;
    if (list == nullptr || serial == nullptr) throw Unreadable();
    return {AAA_GetUINTTlvValue(sub.get(), list), AAA_GetUINT64TlvValue(sub.get(), serial)};
}

/// A detail text moves out of its record, which owns it by malloc.
std::string TakeDetail(char*& detail, uint32_t& length) {
    std::string text;
    try {
        text = DetailText(detail, length);
    } catch (...) {
        free(detail);
        throw;
    }
    free(detail);
    detail = nullptr;
    length = 0;
    return text;
}

void ReadVerbose(TLV_MSG* sub, FoundRecord& record) {
    const uint32_t result = DOM_userrecord_tlv_DecodeUserRecordStruct(sub, &record.fields);
    record.detail = TakeDetail(record.fields.detail, record.fields.detail_len);
    if (result != DOM_OK) throw Unreadable();
}

void ReadBrief(TLV_MSG* sub, FoundRecord& record) {
    UserRecordBrief brief{};
    const uint32_t result = DOM_userrecord_tlv_DecodeRecordBrief(sub, &brief);
    record.detail = TakeDetail(brief.detail, brief.detail_len);
    if (result != DOM_OK) throw Unreadable();
    record.brief = true;
    UserRecord& fields = record.fields;
    fields.second_number = brief.second_number;
    memcpy(fields.ipv4, brief.ipv4, sizeof fields.ipv4);
    memcpy(fields.ipv6, brief.ipv6, sizeof fields.ipv6);
    memcpy(fields.mac, brief.mac, sizeof fields.mac);
    memcpy(fields.second_name, brief.second_name, sizeof fields.second_name);
}

/// Whether a walk goes on towards older records, so that it ends whatever the daemon answers.
void CheckDescends(const RecordPositions& from, const RecordPositions& next) {
    for (const RecordPosition& to : next) {
        for (const RecordPosition& at : from) {
            if (at.list == to.list && to.serial > at.serial) throw Unreadable();
        }
    }
    const auto same = [](const RecordPosition& a, const RecordPosition& b) {
        return a.list == b.list && a.serial == b.serial;
    };
    if (!next.empty() && std::equal(from.begin(), from.end(), next.begin(), next.end(), same)) {
        throw Unreadable();
    }
}

}  // namespace

bool RecordFilter::HasConditions() const {
    return reason || user || domain || interface_name || mac || ipv4 || ipv6 || outer_vlan ||
           inner_vlan;
}

RecordPage ReadRecordPage(Client& client, const RecordFilter& filter, bool brief, uint32_t limit,
                          const RecordPositions& from) {
    CheckFilter(filter);
    Message request = Question(filter, brief, std::clamp<uint32_t>(limit, 1, DOM_RECORD_PAGE_MAX));
    AppendPositions(request.get(), from);
    RecordPage page;
    const Message reply = Ask(client, std::move(request));
    if (!reply) return page;
    TLV_MSG* msg = reply.get();
    // The list, serial number and time of a brief record stand in front of it.
    FoundRecord record;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        const uint16_t type = TLV_GetTypeByIterator(msg, it);
        if (type == DOM_TLV_RECORD_KIND) {
            record.list = AAA_GetUINTTlvValue(msg, it);
        } else if (type == DOM_TLV_RECORD_SERIAL) {
            record.fields.serial = AAA_GetUINT64TlvValue(msg, it);
        } else if (type == DOM_TLV_RECORD_FIRST_NUMBER) {
            record.fields.first_number = AAA_GetUINTTlvValue(msg, it);
        } else if (type == DOM_TLV_USER_RECORD || type == DOM_TLV_USER_RECORD_BRIEF) {
            const Message sub(AAA_GetSubTlv(msg, it));
            if (!sub) throw Unreadable();
            type == DOM_TLV_USER_RECORD ? ReadVerbose(sub.get(), record)
                                        : ReadBrief(sub.get(), record);
            page.records.push_back(std::move(record));
            record = FoundRecord{};
        } else if (type == DOM_TLV_RECORD_LOOKED_AT) {
            page.looked_at = AAA_GetUINTTlvValue(msg, it);
        } else if (type == DOM_TLV_RECORD_POSITION) {
            page.next.push_back(ReadPosition(msg, it));
        }
    }
    CheckDescends(from, page.next);
    return page;
}

uint32_t CountRecords(Client& client, uint16_t list) {
    Message request = NeedMessage(DOM_userrecord_tlv_EncodeGetRecordNum(DOM_MSG_RECORD_NUMBER));
    Demand(AAA_AppendUSHORTTlvData(request.get(), DOM_TLV_RECORD_LIST, list));
    const Message reply = Ask(client, std::move(request));
    uint32_t count = 0;
    if (!reply) return 0;
    if (DOM_userrecord_tlv_DecodeDisplayRecordNumber(reply.get(), &count) != DOM_OK) {
        throw Unreadable();
    }
    return count;
}

namespace {

std::string LowerAscii(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

TopEntry ReadTopEntry(TLV_MSG* reply, TLV_ITER* it, TopBy by) {
    const Message sub(AAA_GetSubTlv(reply, it));
    if (!sub) throw Unreadable();
    TopEntry entry;
    TLV_ITER* count = TLV_GetIteratorByType(sub.get(), DOM_TLV_RECORD_COUNT);
    const uint16_t type = by == TopBy::kReason   ? DOM_TLV_RECORD_SECOND_NUMBER
                          : by == TopBy::kDomain ? DOM_TLV_RECORD_FIRST_NAME
                                                 : DOM_TLV_RECORD_INTERFACE;
    TLV_ITER* value = TLV_GetIteratorByType(sub.get(), type);
    if (count == nullptr || value == nullptr) throw Unreadable();
    entry.count = AAA_GetUINTTlvValue(sub.get(), count);
    if (by == TopBy::kReason) {
        entry.reason = AAA_GetUINTTlvValue(sub.get(), value);
        entry.value = std::to_string(entry.reason);
        return entry;
    }
    char text[sizeof UserRecord::first_name];
    (void)AAA_GetStrTlvValue(sub.get(), value, sizeof text, text);  // cuts
    entry.value = text;
    return entry;
}

/// The conditions of 75 without the TLVs that 75 does not look at.
Message TopQuestion(const RecordFilter& filter, TopBy by) {
    Marked marked = Mark(filter);
    marked.query.list_selector = filter.list;
    Message request =
        NeedMessage(DOM_userrecord_tlv_EncodeDisRecordMultParas(DOM_MSG_RECORD_TOP, &marked.query));
    Demand(TLV_Append_UINT(request.get(), DOM_TLV_RECORD_CONDITIONS, marked.mask));
    AppendTimes(request.get(), filter);
    Demand(TLV_Append_UINT(request.get(), DOM_TLV_RECORD_TOP_BY, static_cast<uint32_t>(by)));
    return request;
}

}  // namespace

std::vector<TopEntry> ReadTop(Client& client, const RecordFilter& filter, TopBy by,
                              const std::function<void(uint64_t)>& progress) {
    CheckFilter(filter);
    std::map<std::string, TopEntry> sums;
    RecordPositions from;
    uint64_t looked_at = 0;
    do {
        Message request = TopQuestion(filter, by);
        AppendPositions(request.get(), from);
        const Message reply = Ask(client, std::move(request));
        if (!reply) break;
        TLV_MSG* msg = reply.get();
        RecordPositions next;
        for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
            const uint16_t type = TLV_GetTypeByIterator(msg, it);
            if (type == DOM_TLV_RECORD_TOP_ENTRY) {
                TopEntry entry = ReadTopEntry(msg, it, by);
                const uint64_t count = entry.count;
                // Earlier pages are newer: their spelling stays.
                auto [known, added] = sums.emplace(LowerAscii(entry.value), std::move(entry));
                if (!added) known->second.count += count;
            } else if (type == DOM_TLV_RECORD_LOOKED_AT) {
                looked_at += AAA_GetUINTTlvValue(msg, it);
            } else if (type == DOM_TLV_RECORD_POSITION) {
                next.push_back(ReadPosition(msg, it));
            }
        }
        CheckDescends(from, next);
        from = std::move(next);
        progress(looked_at);
    } while (!from.empty());
    std::vector<TopEntry> entries;
    entries.reserve(sums.size());
    for (auto& [value, entry] : sums) entries.push_back(std::move(entry));
    std::stable_sort(entries.begin(), entries.end(), [](const TopEntry& a, const TopEntry& b) {
        return a.count != b.count ? a.count > b.count : a.reason < b.reason;
    });
    return entries;
}

uint32_t ResetRecords(Client& client, uint16_t list) {
    const uint32_t code = list == DOM_RECORD_ONLINE_FAIL        ? DOM_MSG_RESET_ONLINE_FAIL
                          : list == DOM_RECORD_ABNORMAL_OFFLINE ? DOM_MSG_RESET_OFFLINE_ABNORMAL
                                                                : DOM_MSG_RESET_OFFLINE_NORMAL;
    Message answer;
    const uint32_t result =
        client.Change(DOM_userrecord_tlv_EncodeResetRecord(code), DOM_OP_CLEAR_RECORDS, &answer);
    if (result != DOM_OK) throw RefusedRecords("records of list " + RecordListWord(list), result);
    TLV_ITER* it = TLV_GetIteratorByType(answer.get(), DOM_TLV_RECORD_COUNT);
    if (it == nullptr) throw Unreadable();
    return AAA_GetUINTTlvValue(answer.get(), it);
}

}  // namespace aaactl
