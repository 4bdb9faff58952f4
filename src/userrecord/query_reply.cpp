#include "userrecord/query_reply.h"

#include <aaadom/results.h>

#include "userrecord/query_fields.h"
#include "userrecord/record_fields.h"

namespace aaadom {
namespace {

/// A message without a code, null when an append failed.
template <typename Fields>
TLV_MSG* Build(Fields&& fields) noexcept {
    TlvPtr msg(TLV_Create());
    if (!msg) return nullptr;
    Appender append(msg.get());
    fields(append);
    return append.Failed() ? nullptr : msg.release();
}

}  // namespace

TLV_MSG* EncodeListHeader(uint16_t selector) noexcept {
    return Build([=](Appender& append) { append.U16(DOM_TLV_RECORD_LIST, selector); });
}

TLV_MSG* EncodeNoRecord() noexcept {
    return Build([](Appender& append) { append.U32(DOM_TLV_RESULT, DOM_RESULT_NO_RECORD); });
}

uint32_t AppendBriefRecord(TLV_MSG* reply, const UserRecord& record) noexcept {
    const TlvPtr brief(Build([&](Appender& append) {
        FieldWriter fields(append);
        ListBriefRecord(fields, record);
        AppendDetail(append, record.detail, record.detail_len);
    }));
    return brief ? AAA_AppendSubTlv(reply, DOM_TLV_USER_RECORD_BRIEF, brief.get()) : DOM_ERR_FAILED;
}

uint32_t DecodeBriefRecord(TLV_MSG* msg, UserRecordBrief& brief) noexcept {
    brief.detail = nullptr;
    brief.detail_len = 0;
    uint32_t detail_len = 0;
    uint32_t result = DOM_OK;
    for (const TlvItem item : TlvWalk(msg)) {
        FieldTaker fields(item);
        ListBriefRecord(fields, brief);
        fields.Word(DOM_TLV_RECORD_DETAIL_LEN, detail_len);
        result |= fields.Result();
    }
    if (result != DOM_OK) return result;
    // A record without its detail text is better than none: no failure.
    brief.detail = CopyDetailOf(msg, detail_len);
    brief.detail_len = brief.detail == nullptr ? 0 : detail_len;
    return DOM_OK;
}

uint32_t DecodeRecordCount(TLV_MSG* reply, uint32_t& count) noexcept {
    count = 0;
    // A number reply without a number is an answer to something else, a refusal above all.
    uint32_t result = DOM_ERR_FAILED;
    for (const TlvItem item : TlvWalk(reply)) {
        if (item.Type() != DOM_TLV_RECORD_COUNT) continue;
        count = item.U32();
        result = DOM_OK;
    }
    return result;
}

}  // namespace aaadom
