#include <platform/syslog.h>
#include <syslog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t kTextSize = 2048;
constexpr char kCutMark[] = "...";

/// Ends a text that did not fit with the mark, before any character that was cut in two.
void MarkCut(char (&text)[kTextSize]) {
    size_t end = kTextSize - sizeof kCutMark;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80u) --end;
    std::memcpy(text + end, kCutMark, sizeof kCutMark);
}

void MakeOneLine(char* text) {
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
