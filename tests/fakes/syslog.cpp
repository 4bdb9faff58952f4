#include <platform/syslog.h>

#include <cstdio>

#include "fakes/state.h"

namespace fake {
namespace {
std::vector<LogLine>& Lines() {
    static auto* lines = new std::vector<LogLine>;
    return *lines;
}
std::vector<LogControl>& Controls() {
    static auto* controls = new std::vector<LogControl>;
    return *controls;
}
std::string Text(const char* text) {
    return text == nullptr ? "(null)" : text;
}
}  // namespace

std::vector<LogLine> LogLines() {
    Inside inside;
    return Lines();
}
std::vector<LogControl> LogControls() {
    Inside inside;
    return Controls();
}
void ResetLog() {
    Lines().clear();
    Controls().clear();
}
}  // namespace fake

// The program's own openlog and closelog: the linker takes these before the C library's.
extern "C" void openlog(const char* identity, int option, int facility) {
    fake::Inside inside;
    fake::Controls().push_back({true, fake::Text(identity), option, facility});
}

extern "C" void closelog(void) {
    fake::Inside inside;
    fake::Controls().push_back({false, "", 0, 0});
}

extern "C" void vsyslog2(uint32_t priority, const char* module, const char* label,
                         const char* format, va_list args) noexcept {
    fake::Inside inside;
    std::string text;
    if (format != nullptr) {
        va_list again;
        va_copy(again, args);
        const int length = std::vsnprintf(nullptr, 0, format, again);
        va_end(again);
        if (length > 0) {
            text.resize(static_cast<size_t>(length) + 1);
            std::vsnprintf(text.data(), text.size(), format, args);
            text.pop_back();
        }
    }
    fake::Lines().push_back({priority, fake::Text(module), fake::Text(label), text});
}
