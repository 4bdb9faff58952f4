#include "record_query_filter.h"

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
    const auto mark = [&](bool is_set, RecordCondition condition) {
        if (is_set) conditions |= condition;
    };
    mark(outer_vlan != 0, kConditionOuterVlan);
    mark(inner_vlan != 0, kConditionInnerVlan);
    mark(service != 0, kConditionService);
    mark(condition_reason != 0, kConditionReason);
    mark(IsSet(mac), kConditionMac);
    mark(IsSet(ipv4), kConditionIpv4);
    mark(IsSet(ipv6), kConditionIpv6);
    mark(!domain.empty(), kConditionDomain);
    mark(!user.empty(), kConditionUser);
    mark(!interface.empty(), kConditionInterface);
}

bool RecordFilter::Passes(const RecordFields& record) const {
    if (record.time < since || record.time > until) return false;
    if (has_reason && record.reason != reason) return false;
    const auto holds = [&](RecordCondition condition, auto equal) {
        return (conditions & condition) == 0 || equal();
    };
    return holds(kConditionReason, [&] { return record.reason == condition_reason; }) &&
           holds(kConditionOuterVlan, [&] { return record.outer_vlan == outer_vlan; }) &&
           holds(kConditionInnerVlan, [&] { return record.inner_vlan == inner_vlan; }) &&
           holds(kConditionService, [&] { return record.service == service; }) &&
           holds(kConditionMac, [&] { return record.mac == mac; }) &&
           holds(kConditionIpv4, [&] { return record.ipv4 == ipv4; }) &&
           holds(kConditionIpv6, [&] { return record.ipv6 == ipv6; }) &&
           holds(kConditionUser, [&] { return record.user == user; }) &&
           holds(kConditionDomain, [&] { return EqualIgnoringCase(record.domain, domain); }) &&
           holds(kConditionInterface,
                 [&] { return EqualIgnoringCase(record.interface, interface); });
}

}  // namespace aaad
