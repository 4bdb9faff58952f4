// The fields of queries and of the brief reply, each list once: the same list writes a message and
// reads one.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/user_record_query.h>

#include <cstddef>
#include <cstdint>

#include "base/message.h"

namespace aaadom {

/// Appends the fields of a list.
class FieldWriter {
  public:
    explicit FieldWriter(Appender& append) noexcept : append_(append) {}

    void Word(uint16_t type, uint32_t value) noexcept { append_.U32(type, value); }
    void Short(uint16_t type, uint16_t value) noexcept { append_.U16(type, value); }
    template <size_t N>
    void Text(uint16_t type, const char (&field)[N]) noexcept {
        append_.Field(type, field);
    }
    template <size_t N>
    void TextUnlessEmpty(uint16_t type, const char (&field)[N]) noexcept {
        if (field[0] != '\0') append_.Field(type, field);
    }
    void Mac(uint16_t type, const uint8_t (&mac)[6]) noexcept { append_.Mac(type, mac); }
    template <size_t N>
    void Block(uint16_t type, const uint8_t (&block)[N]) noexcept {
        append_.Raw(type, block, N);
    }

  private:
    Appender& append_;
};

/// Reads one TLV into the field of its type, if the list has one. UINT reads cannot fail: a TLV
/// that is too short gives 0.
class FieldTaker {
  public:
    explicit FieldTaker(const TlvItem& item) noexcept : item_(item), type_(item.Type()) {}

    void Word(uint16_t type, uint32_t& value) noexcept {
        if (type == type_) value = item_.U32();
    }
    void Short(uint16_t type, uint16_t& value) noexcept {
        if (type == type_) result_ = item_.U16(&value);
    }
    template <size_t N>
    void Text(uint16_t type, char (&field)[N]) noexcept {
        if (type == type_) result_ = item_.Text(field, N);
    }
    template <size_t N>
    void TextUnlessEmpty(uint16_t type, char (&field)[N]) noexcept {
        Text(type, field);
    }
    void Mac(uint16_t type, uint8_t (&mac)[6]) noexcept {
        if (type == type_) result_ = item_.Mac(mac);
    }
    template <size_t N>
    void Block(uint16_t type, uint8_t (&block)[N]) noexcept {
        if (type == type_) result_ = item_.Raw(block, N);
    }
    uint32_t Result() const noexcept { return result_; }

  private:
    const TlvItem& item_;
    const uint16_t type_;
    uint32_t result_ = DOM_OK;
};

// The lists, in the order of sending. `Fields` is one of the two above; the record is const for the
// writer.

template <typename Fields, typename Query>
void ListTimeQuery(Fields& fields, Query& query) noexcept {
    fields.Short(DOM_TLV_RECORD_LIST, query.list_selector);
    fields.Word(DOM_TLV_QUERY_START, query.start);
    fields.Word(DOM_TLV_QUERY_END, query.end);
    fields.Short(DOM_TLV_QUERY_TIME_SELECTOR, query.second_selector);
}

template <typename Fields, typename Query>
void ListReasonQuery(Fields& fields, Query& query) noexcept {
    fields.Word(DOM_TLV_QUERY_REASON, query.reason);
    fields.Short(DOM_TLV_RECORD_LIST, query.list_selector);
    fields.Short(DOM_TLV_QUERY_SECOND_SELECTOR, query.second_selector);
}

template <typename Fields, typename Query>
void ListConditionQuery(Fields& fields, Query& query) noexcept {
    fields.Word(DOM_TLV_RECORD_COUNT, query.record_count);
    fields.Short(DOM_TLV_RECORD_LIST, query.list_selector);
    fields.Short(DOM_TLV_QUERY_SECOND_SELECTOR, query.second_selector);
    fields.TextUnlessEmpty(DOM_TLV_QUERY_SECOND_NAME, query.second_name);
    fields.TextUnlessEmpty(DOM_TLV_QUERY_FIRST_NAME, query.first_name);
    fields.TextUnlessEmpty(DOM_TLV_QUERY_INTERFACE, query.interface_name);
    fields.Mac(DOM_TLV_QUERY_MAC, query.mac);
    fields.Word(DOM_TLV_QUERY_CONDITION, query.condition);
    fields.Short(DOM_TLV_QUERY_CONDITION_1, query.conditions[0]);
    fields.Short(DOM_TLV_QUERY_CONDITION_2, query.conditions[1]);
    fields.Short(DOM_TLV_QUERY_CONDITION_3, query.conditions[2]);
    fields.Short(DOM_TLV_QUERY_CONDITION_4, query.conditions[3]);
    fields.Block(DOM_TLV_RECORD_IPV4, query.ipv4);
    fields.Block(DOM_TLV_RECORD_IPV6, query.ipv6);
}

/// Written from a UserRecord, read into a UserRecordBrief; the detail text is not in the list.
template <typename Fields, typename Record>
void ListBriefRecord(Fields& fields, Record& record) noexcept {
    fields.Text(DOM_TLV_RECORD_SECOND_NAME, record.second_name);
    fields.Block(DOM_TLV_RECORD_IPV4, record.ipv4);
    fields.Block(DOM_TLV_RECORD_IPV6, record.ipv6);
    fields.Mac(DOM_TLV_RECORD_MAC, record.mac);
    fields.Word(DOM_TLV_RECORD_SECOND_NUMBER, record.second_number);
}

}  // namespace aaadom
