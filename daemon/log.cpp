#include "log.h"

#include <platform/syslog.h>
#include <time.h>

#include <atomic>
#include <cctype>
#include <cstdarg>
#include <cstdio>

namespace aaad {
namespace {

constexpr uint32_t kLinesPerSecond = 10;
constexpr uint32_t kDaemonFacility = 3u << 3;
constexpr char kModule[] = "AAAD";
std::atomic<bool> to_terminal{false};

struct Level {
    uint32_t priority;
    const char* label;
};

Level LevelOf(Severity severity) {
    switch (severity) {
        case Severity::kError:
            return {3, "ERROR"};
        case Severity::kWarning:
            return {4, "WARNING"};
        case Severity::kNotice:
            return {5, "NOTICE"};
        case Severity::kInfo:
            break;
    }
    return {6, "INFO"};
}

void ToSystemLog(const Level& level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    vsyslog2(kDaemonFacility | level.priority, kModule, level.label, format, args);
    va_end(args);
}

}  // namespace

void LogToTerminal() {
    to_terminal.store(true);
}

void Log(Severity severity, const char* format, ...) {
    char line[1024];
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(line, sizeof line, format, args);
    va_end(args);
    if (length < 0) return;
    // Names and keys hold any bytes; a line break in one would begin a line of its own.
    for (char* byte = line; *byte != '\0'; ++byte) {
        if (iscntrl(static_cast<unsigned char>(*byte)) != 0) *byte = ' ';
    }
    ToSystemLog(LevelOf(severity), "%s", line);
    if (to_terminal.load()) fprintf(stderr, "aaad: %s\n", line);
}

bool LogLimit::Allows(uint32_t& suppressed_out) {
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    if (now.tv_sec != second_) {
        second_ = now.tv_sec;
        lines_ = 0;
    }
    if (lines_ >= kLinesPerSecond) {
        ++suppressed_;
        return false;
    }
    ++lines_;
    suppressed_out = suppressed_;
    suppressed_ = 0;
    return true;
}

}  // namespace aaad
