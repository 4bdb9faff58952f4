// What the fields of user records mean: words for their lists and reasons, texts for addresses.
#pragma once

#include <aaadom/user_record.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "output.h"

namespace aaactl {

using Mac = std::array<uint8_t, 6>;
using Ipv4 = std::array<uint8_t, 4>;
using Ipv6 = std::array<uint8_t, 16>;

/// The three lists, in the order in which they are shown.
struct RecordList {
    const char* word;
    uint32_t kind;  // DOM_RECORD_*
};
inline constexpr RecordList kRecordLists[] = {
    {"online-fail", DOM_RECORD_ONLINE_FAIL},
    {"abnormal", DOM_RECORD_ABNORMAL_OFFLINE},
    {"normal", DOM_RECORD_NORMAL_OFFLINE},
};
/// "all" and no word are 0.
uint16_t ParseRecordList(const std::string& word);
/// The number for a list that has no word.
std::string RecordListWord(uint32_t kind);
/// For the checks of options: the words of the lists, and "all" if wanted.
std::vector<std::string> RecordListWords(bool with_all);

/// The library's text of a reason code; "Unknown reason code 5000." for one without a text.
std::string ReasonText(uint32_t code);
/// A code, a whole text of the library's table or a part of just one, letter case ignored.
uint32_t ParseReason(const std::string& word);

/// "00:11:22:33:44:55", "00-11-22-33-44-55" or "0011-2233-4455".
Mac ParseMac(const std::string& word);
Ipv4 ParseIpv4(const std::string& word);
Ipv6 ParseIpv6(const std::string& word);

/// "-" when all bytes are zero, which says that there is none.
std::string MacText(const uint8_t* mac);
std::string Ipv4Text(const uint8_t* address);
std::string Ipv6Text(const uint8_t* address);
/// The same for programs, null for none.
Json OrNull(const std::string& text);

/// The text of a record's detail, up to its first zero.
std::string DetailText(const char* detail, uint32_t length);

}  // namespace aaactl
