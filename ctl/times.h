// Times on the command line: absolute or so long ago, local for people, UTC for programs.
#pragma once

#include <cstdint>
#include <string>

#include "output.h"

namespace aaactl {

/// Seconds since 1970 UTC.
uint32_t Now();
/// Seconds of "90", "90s", "15m", "2h", "1d" or "3w"; `what` names the option in a refusal.
uint32_t ParseDuration(const std::string& what, const std::string& word);
/// "2h" is two hours before `now`; else ISO, "2026-03-01", "2026-03-01T10:20[:30]", a blank for the
/// T, "Z" or "+01:00" behind it, local without; "@1772360430" and "now" are told as they are.
uint32_t ParseTime(const std::string& what, const std::string& word, uint32_t now);

/// "2026-03-01 10:20:30 +0100", local; "-" for 0.
std::string LocalTime(uint32_t seconds);
/// "2026-03-01T09:20:30Z".
std::string UtcTime(uint64_t seconds);
/// {"seconds": ..., "utc": ...}
Json TimeToJson(uint64_t seconds);
/// "45 s", "3 min 20 s", "2 h 5 min".
std::string DurationText(uint32_t seconds);

}  // namespace aaactl
