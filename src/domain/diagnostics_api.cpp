#include <aaadom/diagnostics.h>
#include <aaadom/settings.h>
#include <platform/syslog.h>

#include <cstdarg>

#include "base/lock.h"

namespace {

constexpr const char* kModule = "AAA";  // openlog keeps the pointer
constexpr int kDelayedOpen = 4;
constexpr int kFacilityLocalUse7 = 184;
const aaadom::ExportedRwLock base_info_lock(g_stAAAGlobalBaseInfo.lock);

bool Enabled(uint32_t bit) noexcept {
    return (DOM_AAAGetDebugFlag() & bit) != 0;
}

}  // namespace

AAAGlobalBaseInfo g_stAAAGlobalBaseInfo = {PTHREAD_RWLOCK_INITIALIZER, 0};
uint16_t g_bAaaDebugSwitch = 0;

namespace {

uint32_t& DebugFlag() noexcept AAADOM_REQUIRES(base_info_lock) {
    return g_stAAAGlobalBaseInfo.debug_flag;
}
uint32_t ReadDebugFlag() noexcept AAADOM_REQUIRES_SHARED(base_info_lock) {
    return g_stAAAGlobalBaseInfo.debug_flag;
}

}  // namespace

extern "C" {

void DOM_AAASetDebugFlag(uint32_t mask) noexcept {
    aaadom::WriteGuard lock(base_info_lock);
    openlog(kModule, kDelayedOpen, kFacilityLocalUse7);
    DebugFlag() |= mask;
}

void DOM_AAAResetDebugFlag(uint32_t mask) noexcept {
    aaadom::WriteGuard lock(base_info_lock);
    DebugFlag() &= ~mask;
    if (DebugFlag() == 0) closelog();
}

uint32_t DOM_AAAGetDebugFlag(void) noexcept {
    aaadom::ReadGuard lock(base_info_lock);
    return ReadDebugFlag();
}

void AAA_DebugEvent(const char* format, ...) noexcept {
    if (format == nullptr || !Enabled(AAA_DBG_EVENT_BIT)) return;
    va_list arguments;
    va_start(arguments, format);
    vsyslog2(AAA_LOG_PRIORITY, kModule, "EVENT", format, arguments);
    va_end(arguments);
}

void AAA_DebugError(const char* format, ...) noexcept {
    if (format == nullptr || !Enabled(AAA_DBG_ERROR_BIT)) return;
    va_list arguments;
    va_start(arguments, format);
    vsyslog2(AAA_LOG_PRIORITY, kModule, "ERROR", format, arguments);
    va_end(arguments);
}

void AAA_TracePrint(const char* format, ...) noexcept {
    if (format == nullptr) return;
    va_list arguments;
    va_start(arguments, format);
    vsyslog2(AAA_LOG_PRIORITY, kModule, "TRACE", format, arguments);
    va_end(arguments);
}

void AAA_PrintLogInfo(uint32_t priority, const char* label, const char* format, ...) noexcept {
    if (format == nullptr) return;
    va_list arguments;
    va_start(arguments, format);
    vsyslog2(priority, kModule, label == nullptr ? "" : label, format, arguments);
    va_end(arguments);
}

}  // extern "C"
