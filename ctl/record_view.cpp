#include "record_view.h"

#include <algorithm>

#include "texts.h"
#include "times.h"

namespace aaactl {
namespace {

std::string OrDash(const std::string& text) {
    return text.empty() ? "-" : Printable(text);
}

/// Both addresses where a user has both.
std::string Addresses(const UserRecord& record) {
    std::string ipv4 = Ipv4Text(record.ipv4);
    std::string ipv6 = Ipv6Text(record.ipv6);
    if (ipv6 == "-") return ipv4;
    return ipv4 == "-" ? ipv6 : ipv4 + " " + ipv6;
}

std::string ListAndSerial(const FoundRecord& record) {
    return RecordListWord(record.list) + " " + std::to_string(record.fields.serial);
}

/// Characters, not bytes.
size_t Width(const std::string& text) {
    return static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

Json ReasonToJson(uint32_t code) {
    return {{"code", code}, {"text", ReasonText(code)}};
}

Json RecordToJson(const FoundRecord& record) {
    const UserRecord& fields = record.fields;
    Json json{{"list", RecordListWord(record.list)},
              {"serial", fields.serial},
              {"time", TimeToJson(fields.first_number)},
              {"user", FieldText(fields.second_name)},
              {"mac", OrNull(MacText(fields.mac))},
              {"ipv4", OrNull(Ipv4Text(fields.ipv4))},
              {"ipv6", OrNull(Ipv6Text(fields.ipv6))},
              {"reason", ReasonToJson(fields.second_number)},
              {"detail", record.detail}};
    if (record.brief) return json;
    json["domain"] = FieldText(fields.first_name);
    json["interface"] = FieldText(fields.interface_name);
    json["outer_vlan"] = fields.number16[0];
    json["inner_vlan"] = fields.number16[1];
    json["service"] = fields.number16[2];
    json["access_type"] = fields.fourth_number;
    json["session_seconds"] = fields.third_number;
    return json;
}

std::vector<std::string> RecordTable(const std::vector<FoundRecord>& records, bool brief) {
    std::vector<std::vector<std::string>> rows = {
        {"TIME", "RECORD", "USER", "MAC", "ADDRESS", "REASON"}};
    if (!brief) rows.front().push_back("INTERFACE");
    for (const FoundRecord& record : records) {
        const UserRecord& fields = record.fields;
        rows.push_back({LocalTime(fields.first_number), ListAndSerial(record),
                        OrDash(FieldText(fields.second_name)), MacText(fields.mac),
                        Addresses(fields), ReasonText(fields.second_number)});
        if (!brief) rows.back().push_back(OrDash(FieldText(fields.interface_name)));
    }
    return Columns(rows);
}

std::vector<std::string> RecordBlock(const FoundRecord& record) {
    const UserRecord& fields = record.fields;
    std::vector<std::vector<std::string>> rows = {
        {"  time", LocalTime(fields.first_number)},
        {"  user", OrDash(FieldText(fields.second_name))},
        {"  domain", OrDash(FieldText(fields.first_name))},
        {"  mac", MacText(fields.mac)},
        {"  ipv4", Ipv4Text(fields.ipv4)},
        {"  ipv6", Ipv6Text(fields.ipv6)},
        {"  interface", OrDash(FieldText(fields.interface_name))},
        {"  vlan", std::to_string(fields.number16[0])},
        {"  inner vlan", std::to_string(fields.number16[1])},
        {"  service", std::to_string(fields.number16[2])},
        {"  access type", std::to_string(fields.fourth_number)},
        {"  session", DurationText(fields.third_number)},
        {"  reason",
         std::to_string(fields.second_number) + "  " + ReasonText(fields.second_number)},
        {"  detail", OrDash(record.detail)}};
    std::vector<std::string> lines = Columns(rows);
    lines.insert(lines.begin(), ListAndSerial(record));
    return lines;
}

std::vector<std::string> Columns(const std::vector<std::vector<std::string>>& rows) {
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
    }
    std::vector<std::string> lines;
    for (const auto& row : rows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line += std::string(widths[i] - Width(row[i]) + 2, ' ');
        }
        lines.push_back(line);
    }
    return lines;
}

}  // namespace aaactl
