#include "record_query_filter.h"

#include <aaadom/codes.h>
#include <strings.h>

#include <algorithm>

namespace aaad {
namespace {

template <class Bytes>
bool IsSet(const Bytes& bytes) {
    return std::any_of(bytes.begin(), bytes.end(), [](uint8_t byte) { return byte != 0; });
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

}  // namespace

void RecordFilter::CountSetConditions() {
    const auto mark = [&](bool is_set, uint32_t condition) {
        if (is_set) conditions |= condition;
    };
    mark(outer_vlan != 0, DOM_RECORD_COND_OUTER_VLAN);
    mark(inner_vlan != 0, DOM_RECORD_COND_INNER_VLAN);
    mark(service != 0, DOM_RECORD_COND_SERVICE);
    mark(condition_reason != 0, DOM_RECORD_COND_REASON);
    mark(IsSet(mac), DOM_RECORD_COND_MAC);
    mark(IsSet(ipv4), DOM_RECORD_COND_IPV4);
    mark(IsSet(ipv6), DOM_RECORD_COND_IPV6);
    mark(!domain.empty(), DOM_RECORD_COND_DOMAIN);
    mark(!user.empty(), DOM_RECORD_COND_USER);
    mark(!interface.empty(), DOM_RECORD_COND_INTERFACE);
}

bool RecordFilter::Passes(const RecordFields& record) const {
    if (record.time < since || record.time > until) return false;
    if (has_reason && record.reason != reason) return false;
    const auto holds = [&](uint32_t condition, auto equal) {
        return (conditions & condition) == 0 || equal();
    };
    return holds(DOM_RECORD_COND_REASON, [&] { return record.reason == condition_reason; }) &&
           holds(DOM_RECORD_COND_OUTER_VLAN, [&] { return record.outer_vlan == outer_vlan; }) &&
           holds(DOM_RECORD_COND_INNER_VLAN, [&] { return record.inner_vlan == inner_vlan; }) &&
           holds(DOM_RECORD_COND_SERVICE, [&] { return record.service == service; }) &&
           holds(DOM_RECORD_COND_MAC, [&] { return record.mac == mac; }) &&
           holds(DOM_RECORD_COND_IPV4, [&] { return record.ipv4 == ipv4; }) &&
           holds(DOM_RECORD_COND_IPV6, [&] { return record.ipv6 == ipv6; }) &&
           holds(DOM_RECORD_COND_USER, [&] { return record.user == user; }) &&
           holds(DOM_RECORD_COND_DOMAIN,
                 [&] { return EqualIgnoringCase(record.domain, domain); }) &&
           holds(DOM_RECORD_COND_INTERFACE,
                 [&] { return EqualIgnoringCase(record.interface, interface); });
}

}  // namespace aaad
