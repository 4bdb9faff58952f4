#include "record_query.h"

#include <aaadom/codes.h>
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>

#include "message.h"
#include "record_store.h"

namespace aaad {
namespace {

constexpr uint16_t kAllLists = 0;

bool IsList(uint32_t number) {
    return std::find(kRecordLists.begin(), kRecordLists.end(), number) != kRecordLists.end();
}

/// One TLV of a request. Values have exactly their length: whoever sends another one means
/// something else.
struct Value {
    TLV_MSG* message;
    TLV_ITER* it;

    template <class Field>
    bool Copy(Field& field) const {
        return TLV_GetLenByIterator(message, it) == sizeof field &&
               TLV_GetValueByIterator(message, it, sizeof field, &field) == 0;
    }
    bool Number16(uint16_t& number) const {
        return TLV_GetLenByIterator(message, it) == sizeof number &&
               AAA_GetUSHORTTlvValue(message, it, &number) == 0;
    }
    bool Number32(uint32_t& number) const {
        number = AAA_GetUINTTlvValue(message, it);
        return TLV_GetLenByIterator(message, it) == sizeof number;
    }
    bool Number64(uint64_t& number) const {
        number = AAA_GetUINT64TlvValue(message, it);
        return TLV_GetLenByIterator(message, it) == sizeof number;
    }
    /// `capacity` counts the terminator, as the field that the text is compared with.
    bool Text(uint32_t capacity, std::string& text) const {
        char buffer[sizeof(UserRecord::first_name) + 1];
        if (capacity + 1 > sizeof buffer ||
            AAA_GetStrTlvValue(message, it, capacity + 1, buffer) != 0 ||
            strlen(buffer) >= capacity) {
            return false;
        }
        text = buffer;
        return true;
    }
};

/// Calls `take(type, value)` for each TLV until it says false. Types that `repeats` does not name
/// stand once: of two the applier of a rule could take the one that another rule did not see.
template <class Take>
bool EachTlv(TLV_MSG* message, uint16_t repeats, Take take) {
    std::set<uint16_t> seen;
    for (TLV_ITER* it = TLV_GetFirst(message); it != nullptr; it = TLV_GetNext(message, it)) {
        const uint16_t type = TLV_GetTypeByIterator(message, it);
        const std::optional<bool> taken = take(type, Value{message, it});
        if (!taken.has_value()) continue;
        if (!*taken || (type != repeats && !seen.insert(type).second)) return false;
    }
    return true;
}

bool ReadSelector(const Value& value, uint16_t& list) {
    return value.Number16(list) && (list == kAllLists || IsList(list));
}

bool ReadBrief(const Value& value, bool& brief) {
    uint16_t selector = 0;
    if (!value.Number16(selector) || selector > DOM_RECORD_FORM_BRIEF) return false;
    brief |= selector == DOM_RECORD_FORM_BRIEF;
    return true;
}

bool ReadPosition(const Value& value, std::vector<RecordPosition>& positions) {
    const Message nested(AAA_GetSubTlv(value.message, value.it));
    RecordPosition position{0, 0};
    bool has_serial = false;
    const bool readable =
        nested &&
        EachTlv(nested.get(), 0, [&](uint16_t type, const Value& item) -> std::optional<bool> {
            if (type == DOM_TLV_RECORD_KIND) return item.Number32(position.list);
            if (type == DOM_TLV_RECORD_SERIAL) return has_serial = item.Number64(position.below);
            return std::nullopt;
        });
    const bool twice =
        std::any_of(positions.begin(), positions.end(),
                    [&](const RecordPosition& other) { return other.list == position.list; });
    if (!readable || !has_serial || !IsList(position.list) || twice) return false;
    positions.push_back(position);
    return true;
}

std::optional<bool> TakeCondition(uint16_t type, const Value& value, RecordFilter& filter) {
    uint16_t reserved = 0;
    switch (type) {
        case DOM_TLV_QUERY_CONDITION_1:
            return value.Number16(filter.outer_vlan);
        case DOM_TLV_QUERY_CONDITION_2:
            return value.Number16(filter.inner_vlan);
        case DOM_TLV_QUERY_CONDITION_3:
            return value.Number16(filter.service);
        case DOM_TLV_QUERY_CONDITION_4:
            return value.Number16(reserved) && reserved == 0;
        case DOM_TLV_QUERY_MAC:
            return value.Copy(filter.mac);
        case DOM_TLV_QUERY_CONDITION:
            return value.Number32(filter.condition_reason);
        case DOM_TLV_QUERY_FIRST_NAME:
            return value.Text(sizeof(UserRecord::first_name), filter.domain);
        case DOM_TLV_QUERY_SECOND_NAME:
            return value.Text(sizeof(UserRecord::second_name), filter.user);
        case DOM_TLV_QUERY_INTERFACE:
            return value.Text(sizeof(UserRecord::interface_name), filter.interface);
        case DOM_TLV_RECORD_IPV4:
            return value.Copy(filter.ipv4);
        case DOM_TLV_RECORD_IPV6:
            return value.Copy(filter.ipv6);
        case DOM_TLV_QUERY_START:
            return value.Number32(filter.since);
        case DOM_TLV_QUERY_END:
            return value.Number32(filter.until);
        case DOM_TLV_QUERY_REASON:
            return filter.has_reason = value.Number32(filter.reason);
        case DOM_TLV_RECORD_CONDITIONS:
            return value.Number32(filter.conditions) &&
                   (filter.conditions & ~DOM_RECORD_COND_ALL) == 0;
        default:
            return std::nullopt;
    }
}

std::optional<bool> TakeTopBy(const Value& value, std::optional<TopBy>& top_by) {
    uint32_t number = 0;
    if (!value.Number32(number) || number > static_cast<uint32_t>(TopBy::kInterface)) return false;
    top_by = static_cast<TopBy>(number);
    return true;
}

/// Keeps the positions of the lists that the selector names; without any it begins with the newest.
void ChooseLists(RecordQuery& query, bool goes_on) {
    std::vector<RecordPosition> chosen;
    for (const uint32_t list : kRecordLists) {
        if (query.list != kAllLists && query.list != list) continue;
        if (!goes_on) {
            chosen.push_back({list, 0});
            continue;
        }
        for (const RecordPosition& position : query.positions) {
            // Nothing lies below serial 0, which to the cursor means the newest record.
            if (position.list == list && position.below != 0) chosen.push_back(position);
        }
    }
    query.positions = std::move(chosen);
}

}  // namespace

bool ReadRecordQuery(TLV_MSG* body, RecordQuery& query) {
    bool goes_on = false;
    bool marks_conditions = false;
    const bool readable = EachTlv(body, DOM_TLV_RECORD_POSITION,
                                  [&](uint16_t type, const Value& value) -> std::optional<bool> {
                                      switch (type) {
                                          case DOM_TLV_RECORD_LIST:
                                              return ReadSelector(value, query.list);
                                          case DOM_TLV_QUERY_TIME_SELECTOR:
                                          case DOM_TLV_QUERY_SECOND_SELECTOR:
                                              return ReadBrief(value, query.brief);
                                          case DOM_TLV_RECORD_COUNT:
                                              return value.Number32(query.page);
                                          case DOM_TLV_RECORD_POSITION:
                                              goes_on = true;
                                              return ReadPosition(value, query.positions);
                                          case DOM_TLV_RECORD_TOP_BY:
                                              return TakeTopBy(value, query.top_by);
                                          default:
                                              marks_conditions |= type == DOM_TLV_RECORD_CONDITIONS;
                                              return TakeCondition(type, value, query.filter);
                                      }
                                  });
    if (!readable) return false;
    if (!marks_conditions) query.filter.CountSetConditions();
    query.page =
        query.page == 0 ? RecordQuery::kDefaultPage : std::min(query.page, DOM_RECORD_PAGE_MAX);
    ChooseLists(query, goes_on);
    return true;
}

bool ReadRecordLists(TLV_MSG* body, std::vector<uint32_t>& lists) {
    uint16_t selector = kAllLists;
    const bool readable =
        EachTlv(body, 0, [&](uint16_t type, const Value& value) -> std::optional<bool> {
            if (type != DOM_TLV_RECORD_LIST) return std::nullopt;
            return ReadSelector(value, selector);
        });
    if (!readable) return false;
    for (const uint32_t list : kRecordLists) {
        if (selector == kAllLists || selector == list) lists.push_back(list);
    }
    return true;
}

}  // namespace aaad
