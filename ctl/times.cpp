#include "times.h"

#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>

#include "texts.h"

namespace aaactl {
namespace {

constexpr const char* kWays =
    "Give so long ago (90s, 15m, 2h, 1d, 3w) or a time as 2026-03-01T10:20:30, local, or with "
    "Z or +01:00 behind it";

std::string Quoted(const std::string& what, const std::string& word) {
    return what + " \"" + Printable(word) + "\"";
}

uint32_t UnitSeconds(char unit) {
    switch (unit) {
        case 's':
            return 1;
        case 'm':
            return 60;
        case 'h':
            return 3600;
        case 'd':
            return 86400;
        case 'w':
            return 604800;
        default:
            return 0;
    }
}

/// Nothing when the word is no duration; a duration beyond 32 bits is the longest one.
std::optional<uint32_t> Duration(const std::string& word) {
    const size_t digits = word.find_first_not_of("0123456789");
    if (digits == 0 || word.empty()) return std::nullopt;
    uint64_t unit = 1;
    if (digits != std::string::npos) {
        unit = digits + 1 == word.size() ? UnitSeconds(word[digits]) : 0;
        if (unit == 0) return std::nullopt;
    }
    uint64_t value = 0;
    for (char c : word.substr(0, digits)) {
        value = value * 10 + static_cast<uint64_t>(c - '0');
        if (value > UINT32_MAX) return UINT32_MAX;
    }
    value *= unit;
    return value > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(value);
}

/// Seconds east of UTC behind the time: "Z", "+01:00", "+0100"; nothing for anything else.
std::optional<long> Offset(const char* text) {
    if (strcmp(text, "Z") == 0 || strcmp(text, "z") == 0) return 0;
    char sign = 0;
    unsigned hours = 0;
    unsigned minutes = 0;
    int length = 0;
    const bool colon = sscanf(text, "%c%2u:%2u%n", &sign, &hours, &minutes, &length) == 3 &&
                       length == 6 && text[6] == '\0';
    if (!colon) {
        length = 0;
        const bool plain = sscanf(text, "%c%2u%2u%n", &sign, &hours, &minutes, &length) == 3 &&
                           length == 5 && text[5] == '\0';
        if (!plain) return std::nullopt;
    }
    if ((sign != '+' && sign != '-') || hours > 14 || minutes > 59) return std::nullopt;
    const long seconds = long{hours} * 3600 + long{minutes} * 60;
    return sign == '+' ? seconds : -seconds;
}

std::optional<time_t> Absolute(const std::string& word) {
    tm fields{};
    const char* rest = strptime(word.c_str(), "%Y-%m-%d", &fields);
    if (rest == nullptr) return std::nullopt;
    if (*rest == 'T' || *rest == ' ') {
        rest = strptime(rest + 1, "%H:%M", &fields);
        if (rest == nullptr) return std::nullopt;
        if (*rest == ':') rest = strptime(rest + 1, "%S", &fields);
        if (rest == nullptr) return std::nullopt;
    }
    // timegm and mktime would turn 30 February into a day of March.
    const tm asked = fields;
    tm normal = fields;
    const time_t utc = timegm(&normal);
    if (normal.tm_mday != asked.tm_mday || normal.tm_mon != asked.tm_mon) return std::nullopt;
    if (*rest == '\0') {
        fields.tm_isdst = -1;
        return mktime(&fields);
    }
    const std::optional<long> offset = Offset(rest);
    if (!offset) return std::nullopt;
    return utc - *offset;
}

}  // namespace

uint32_t Now() {
    return static_cast<uint32_t>(time(nullptr));
}

uint32_t ParseDuration(const std::string& what, const std::string& word) {
    const std::optional<uint32_t> seconds = Duration(word);
    if (!seconds) {
        RefuseUsage(Quoted(what, word), "it is no length of time",
                    "Give seconds, or a number with s, m, h, d or w behind it, as 1h");
    }
    return *seconds;
}

uint32_t ParseTime(const std::string& what, const std::string& word, uint32_t now) {
    if (word == "now") return now;
    if (const std::optional<uint32_t> ago = Duration(word)) return now > *ago ? now - *ago : 0;
    if (!word.empty() && word[0] == '@') {
        const std::string number = word.substr(1);
        const std::optional<uint32_t> seconds = Duration(number);
        if (seconds && number.find_first_not_of("0123456789") == std::string::npos) return *seconds;
    }
    const std::optional<time_t> seconds = Absolute(word);
    if (!seconds) RefuseUsage(Quoted(what, word), "it is no time", kWays);
    if (*seconds < 0 || *seconds > UINT32_MAX) {
        RefuseUsage(Quoted(what, word), "records have times from 1970 to 2106", kWays);
    }
    return static_cast<uint32_t>(*seconds);
}

std::string LocalTime(uint32_t seconds) {
    if (seconds == 0) return "-";
    const time_t when = seconds;
    tm fields{};
    localtime_r(&when, &fields);
    char text[48];
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %z", &fields);
    return text;
}

std::string UtcTime(uint64_t seconds) {
    const time_t when = static_cast<time_t>(seconds);
    tm fields{};
    // Failures carry 64-bit times, which may lie beyond the calendar.
    if (gmtime_r(&when, &fields) == nullptr) return "";
    char text[48];
    strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields);
    return text;
}

Json TimeToJson(uint64_t seconds) {
    return {{"seconds", seconds}, {"utc", UtcTime(seconds)}};
}

std::string DurationText(uint32_t seconds) {
    const auto part = [](uint32_t number, const char* unit) {
        return std::to_string(number) + " " + unit;
    };
    if (seconds < 60) return part(seconds, "s");
    if (seconds < 3600) return part(seconds / 60, "min") + " " + part(seconds % 60, "s");
    return part(seconds / 3600, "h") + " " + part(seconds % 3600 / 60, "min");
}

}  // namespace aaactl
