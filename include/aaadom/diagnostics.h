/* Debug and trace output to the system log. */
#ifndef AAADOM_DIAGNOSTICS_H
#define AAADOM_DIAGNOSTICS_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#if defined(__GNUC__)
#define AAA_PRINTF(format_index, first_argument) \
    __attribute__((format(printf, format_index, first_argument)))
#else
#define AAA_PRINTF(format_index, first_argument)
#endif

/* facility local use 7, level debug, and the platform's flag of vsyslog2 */
#define AAA_LOG_PRIORITY 0x010000BFu
#define AAA_DBG_ERROR_BIT 0x1u
#define AAA_DBG_EVENT_BIT 0x2u

/** For the daemon's own use; the library never reads it. */
extern uint16_t g_bAaaDebugSwitch;

void AAA_DebugEvent(const char* format, ...) AAA_PRINTF(1, 2);
void AAA_DebugError(const char* format, ...) AAA_PRINTF(1, 2);
void AAA_TracePrint(const char* format, ...) AAA_PRINTF(1, 2);
void AAA_PrintLogInfo(uint32_t priority, const char* label, const char* format, ...)
    AAA_PRINTF(3, 4);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
