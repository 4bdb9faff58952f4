#include <platform/syslog.h>
#include <syslog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t kTextSize = 2048;
constexpr char kCutMark[] = "...";

constexpr size_t kLongestCharacter = 4;  // bytes of UTF-8

/// Ends a text that did not fit with the mark, before any character that was cut in two. Of bytes
/// that are no characters as many stay as of a plain text.
void MarkCut(char (&text)[kTextSize]) noexcept {
    constexpr size_t kEnd = kTextSize - sizeof kCutMark;
    size_t end = kEnd;
    const auto continues = [&] { return (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80u; };
    while (kEnd - end < kLongestCharacter && continues()) --end;
    if (continues()) end = kEnd;
    std::memcpy(text + end, kCutMark, sizeof kCutMark);
}

void MakeOneLine(char* text) noexcept {
    for (; *text != '\0'; ++text) {
        const auto c = static_cast<unsigned char>(*text);
        if (c < 0x20 || c == 0x7F) *text = ' ';
    }
}

}  // namespace

extern "C" void vsyslog2(uint32_t priority, const char* module, const char* label,
                         const char* format, va_list args) noexcept {
    if (format == nullptr) return;
    const int saved_errno = errno;
    char text[kTextSize];
    const int length = vsnprintf(text, sizeof text, format, args);
    if (length < 0) {
        std::snprintf(text, sizeof text, "a line that cannot be formatted");
    } else if (static_cast<size_t>(length) >= sizeof text) {
        MarkCut(text);
    }
    MakeOneLine(text);
    char origin[2 * 64 + 1];
    std::snprintf(origin, sizeof origin, "%.63s%s%.63s", module == nullptr ? "" : module,
                  module == nullptr || label == nullptr ? "" : "/", label == nullptr ? "" : label);
    MakeOneLine(origin);
    const int known = static_cast<int>(priority & (LOG_PRIMASK | LOG_FACMASK));
    syslog(known, "%s%s%s", origin, origin[0] == '\0' ? "" : ": ", text);
    errno = saved_errno;
}
