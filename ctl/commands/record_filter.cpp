#include "record_filter.h"

#include "../names.h"
#include "../times.h"

namespace aaactl {

uint16_t ParseNumber16(const std::string& what, const std::string& word) {
    return static_cast<uint16_t>(ParseNumber(what, word, UINT16_MAX));
}

std::string CountText(uint64_t count, const std::string& one, const std::string& more) {
    return std::to_string(count) + " " + (count == 1 ? one : more);
}

void AccessOptions::Define(CLI::App& app) {
    app.add_option("--mac", mac_, "The MAC address, as 00:11:22:33:44:55");
    app.add_option("--ipv4", ipv4_, "The IPv4 address");
    app.add_option("--ipv6", ipv6_, "The IPv6 address");
    app.add_option("--vlan", outer_vlan_, "The outer VLAN");
    app.add_option("--inner-vlan", inner_vlan_, "The inner VLAN");
}

AccessOptions::Values AccessOptions::Parse() const {
    Values values;
    if (mac_) values.mac = ParseMac(*mac_);
    if (ipv4_) values.ipv4 = ParseIpv4(*ipv4_);
    if (ipv6_) values.ipv6 = ParseIpv6(*ipv6_);
    if (outer_vlan_) values.outer_vlan = ParseNumber16("VLAN", *outer_vlan_);
    if (inner_vlan_) values.inner_vlan = ParseNumber16("inner VLAN", *inner_vlan_);
    return values;
}

void RecordFilterOptions::Define(CLI::App& app) {
    app.add_option("--list", list_, "online-fail, abnormal, normal or all")
        ->check(CLI::IsMember(RecordListWords(true)))
        ->capture_default_str();
    app.add_option("--since", since_,
                   "From this time on: so long ago as 2h or 1d, or 2026-03-01T10:20:30");
    app.add_option("--until", until_, "Up to this time, inclusive, likewise");
    app.add_option("--reason", reason_, "A reason's code or words of its text");
    app.add_option("--user", user_, "The user's name, letter for letter");
    app.add_option("--domain", domain_, "The ISP domain, in any letter case");
    app.add_option("--interface", interface_, "The interface, in any letter case");
    access_.Define(app);
}

RecordFilter RecordFilterOptions::Filter(uint32_t now) const {
    RecordFilter filter;
    filter.list = ParseRecordList(list_);
    if (since_) filter.since = ParseTime("--since", *since_, now);
    if (until_) filter.until = ParseTime("--until", *until_, now);
    if (filter.since && filter.until && *filter.since > *filter.until) {
        RefuseUsage("time range", "it ends before it begins", "Exchange --since and --until");
    }
    if (reason_) filter.reason = ParseReason(*reason_);
    filter.user = user_;
    filter.domain = domain_;
    filter.interface_name = interface_;
    const AccessOptions::Values access = access_.Parse();
    filter.mac = access.mac;
    filter.ipv4 = access.ipv4;
    filter.ipv6 = access.ipv6;
    filter.outer_vlan = access.outer_vlan;
    filter.inner_vlan = access.inner_vlan;
    return filter;
}

}  // namespace aaactl
