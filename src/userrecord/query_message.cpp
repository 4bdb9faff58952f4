#include "userrecord/query_message.h"

#include "userrecord/query_fields.h"

namespace aaadom {

TLV_MSG* EncodeTimeQuery(uint32_t code, const UserRecordTimeQuery& query) noexcept {
    return MessageBuilder(code).Build([&](Appender& append) {
        FieldWriter fields(append);
        ListTimeQuery(fields, query);
    });
}

TLV_MSG* EncodeReasonQuery(const UserRecordReasonQuery& query) noexcept {
    return MessageBuilder(DOM_MSG_RECORD_BY_REASON).Build([&](Appender& append) {
        FieldWriter fields(append);
        ListReasonQuery(fields, query);
    });
}

TLV_MSG* EncodeConditionQuery(uint32_t code, const UserRecordQuery& query) noexcept {
    return MessageBuilder(code).Build([&](Appender& append) {
        FieldWriter fields(append);
        ListConditionQuery(fields, query);
    });
}

uint32_t DecodeListSelector(TLV_MSG* msg, uint16_t& selector) noexcept {
    uint32_t result = DOM_OK;
    for (const TlvItem item : TlvWalk(msg)) {
        if (item.Type() == DOM_TLV_RECORD_LIST) result = item.U16(&selector);
    }
    return result;
}

uint32_t DecodeTimeQuery(TLV_MSG* msg, UserRecordTimeQuery& query) noexcept {
    uint32_t result = DOM_OK;
    for (const TlvItem item : TlvWalk(msg)) {
        FieldTaker fields(item);
        ListTimeQuery(fields, query);
        result |= fields.Result();
    }
    return result;
}

uint32_t DecodeReasonQuery(TLV_MSG* msg, UserRecordReasonQuery& query) noexcept {
    uint32_t result = DOM_OK;
    for (const TlvItem item : TlvWalk(msg)) {
        FieldTaker fields(item);
        ListReasonQuery(fields, query);
        // The last selector decides, also behind one that was too short: whoever repeats a selector
        // is answered as said last, and the daemon refuses by this result alone.
        const uint16_t type = item.Type();
        if (type == DOM_TLV_RECORD_LIST || type == DOM_TLV_QUERY_SECOND_SELECTOR)
            result = fields.Result();
    }
    return result;
}

uint32_t DecodeConditionQuery(TLV_MSG* msg, UserRecordQuery& query) noexcept {
    uint32_t result = DOM_OK;
    for (const TlvItem item : TlvWalk(msg)) {
        FieldTaker fields(item);
        ListConditionQuery(fields, query);
        result |= fields.Result();
    }
    return result;
}

}  // namespace aaadom
