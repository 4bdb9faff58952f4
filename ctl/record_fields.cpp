#include "record_fields.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

#include "names.h"
#include "texts.h"

namespace aaactl {
namespace {

/// Behind it every code is unknown to the library.
constexpr uint32_t kLastReason = 2120;
/// As many as an error names.
constexpr size_t kCandidates = 12;

std::string Lower(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

/// Texts of the table end in full stops that nobody types.
std::string WithoutStop(std::string text) {
    while (!text.empty() && (text.back() == '.' || text.back() == ' ')) text.pop_back();
    return text;
}

std::string Comparable(const std::string& text) {
    return WithoutStop(Lower(text));
}

std::string UnknownText(uint32_t code) {
    return "Unknown reason code " + std::to_string(code) + ".";
}

std::string Named(const std::vector<uint32_t>& codes) {
    std::string text;
    for (size_t i = 0; i < codes.size() && i < kCandidates; ++i) {
        text += (text.empty() ? "" : ", ") + std::to_string(codes[i]) + " (" +
                WithoutStop(ReasonText(codes[i])) + ")";
    }
    const size_t more = codes.size() - std::min(codes.size(), kCandidates);
    return more == 0 ? text : text + " and " + std::to_string(more) + " more";
}

template <size_t N>
std::array<uint8_t, N> ParseAddress(const char* what, int family, const std::string& word) {
    std::array<uint8_t, N> address{};
    if (inet_pton(family, word.c_str(), address.data()) != 1) {
        RefuseUsage(std::string(what) + " address \"" + Printable(word) + "\"",
                    "it is no address of this kind",
                    family == AF_INET ? "Give one as 192.0.2.1" : "Give one as 2001:db8::1");
    }
    return address;
}

bool IsZero(const uint8_t* bytes, size_t count) {
    return std::all_of(bytes, bytes + count, [](uint8_t byte) { return byte == 0; });
}

}  // namespace

uint16_t ParseRecordList(const std::string& word) {
    if (word.empty() || word == "all") return 0;
    for (const RecordList& list : kRecordLists) {
        if (word == list.word) return static_cast<uint16_t>(list.kind);
    }
    RefuseUsage("list \"" + Printable(word) + "\"", "there is no such list of records",
                "Give online-fail, abnormal, normal or all");
}

std::string RecordListWord(uint32_t kind) {
    if (kind == 0) return "all";
    for (const RecordList& list : kRecordLists) {
        if (kind == list.kind) return list.word;
    }
    return std::to_string(kind);
}

std::vector<std::string> RecordListWords(bool with_all) {
    std::vector<std::string> words;
    for (const RecordList& list : kRecordLists) words.push_back(list.word);
    if (with_all) words.push_back("all");
    return words;
}

std::string ReasonText(uint32_t code) {
    char text[256];
    (void)AAA_GetRecordReasonString(code, sizeof text, text);
    return text;
}

uint32_t ParseReason(const std::string& word) {
    if (!word.empty() && word.find_first_not_of("0123456789") == std::string::npos) {
        return ParseNumber("reason code", word, UINT32_MAX);
    }
    const std::string wanted = Comparable(word);
    const std::string object = "reason \"" + Printable(word) + "\"";
    if (wanted.empty()) RefuseUsage(object, "it is empty", "Give a code or a text");
    std::vector<uint32_t> whole;
    std::vector<uint32_t> parts;
    for (uint32_t code = 0; code <= kLastReason; ++code) {
        const std::string text = ReasonText(code);
        if (text == UnknownText(code)) continue;
        const std::string known = Comparable(text);
        if (known == wanted) whole.push_back(code);
        if (known.find(wanted) != std::string::npos) parts.push_back(code);
    }
    // A whole text counts before the texts that merely hold it.
    const std::vector<uint32_t>& found = whole.empty() ? parts : whole;
    if (found.size() == 1) return found.front();
    if (found.empty()) {
        RefuseUsage(object, "no reason has such a text",
                    "Give a code, or words of a reason as aaactl record list shows them");
    }
    RefuseUsage(object, "it may be " + Named(found), "Give the code or more of the text");
}

Mac ParseMac(const std::string& word) {
    std::string digits;
    for (char c : Lower(word)) {
        if (c == ':' || c == '-' || c == '.') continue;
        digits += c;
    }
    if (digits.size() != 12 || digits.find_first_not_of("0123456789abcdef") != std::string::npos) {
        RefuseUsage("MAC address \"" + Printable(word) + "\"", "it is no MAC address",
                    "Give one as 00:11:22:33:44:55 or 0011-2233-4455");
    }
    Mac mac{};
    for (size_t i = 0; i < mac.size(); ++i) {
        mac[i] = static_cast<uint8_t>(std::stoul(digits.substr(2 * i, 2), nullptr, 16));
    }
    return mac;
}

Ipv4 ParseIpv4(const std::string& word) {
    return ParseAddress<4>("IPv4", AF_INET, word);
}

Ipv6 ParseIpv6(const std::string& word) {
    return ParseAddress<16>("IPv6", AF_INET6, word);
}

std::string MacText(const uint8_t* mac) {
    if (IsZero(mac, 6)) return "-";
    char text[18];
    snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3],
             mac[4], mac[5]);
    return text;
}

std::string Ipv4Text(const uint8_t* address) {
    if (IsZero(address, 4)) return "-";
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, address, text, sizeof text) != nullptr ? text : "-";
}

std::string Ipv6Text(const uint8_t* address) {
    if (IsZero(address, 16)) return "-";
    char text[INET6_ADDRSTRLEN];
    return inet_ntop(AF_INET6, address, text, sizeof text) != nullptr ? text : "-";
}

Json OrNull(const std::string& text) {
    return text == "-" ? Json(nullptr) : Json(text);
}

std::string DetailText(const char* detail, uint32_t length) {
    return detail == nullptr ? "" : std::string(detail, strnlen(detail, length));
}

}  // namespace aaactl
