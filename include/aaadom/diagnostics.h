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

/**
 * Writes an event to the system log, labelled "EVENT", with AAA_LOG_PRIORITY, when the debug flag
 * word has AAA_DBG_EVENT_BIT.
 * @param format  printf format of what follows; null writes nothing.
 * @thread any; holds the debug word's read lock while it looks at it, none while it writes.
 */
void AAA_DebugEvent(const char* format, ...) AAADOM_NOEXCEPT AAA_PRINTF(1, 2);

/**
 * Writes an error to the system log, labelled "ERROR", with AAA_LOG_PRIORITY, when the debug flag
 * word has AAA_DBG_ERROR_BIT.
 * @param format  printf format of what follows; null writes nothing.
 * @thread any; holds the debug word's read lock while it looks at it, none while it writes.
 */
void AAA_DebugError(const char* format, ...) AAADOM_NOEXCEPT AAA_PRINTF(1, 2);

/**
 * Writes to the system log, labelled "TRACE", with AAA_LOG_PRIORITY, whatever the debug flags are.
 * @param format  printf format of what follows; null writes nothing.
 * @thread any; takes no lock.
 */
void AAA_TracePrint(const char* format, ...) AAADOM_NOEXCEPT AAA_PRINTF(1, 2);

/**
 * Writes to the system log whatever the debug flags are.
 * @param priority  passed through unchanged.
 * @param label     passed through unchanged; null is the empty label.
 * @param format    printf format of what follows; null writes nothing.
 * @thread any; takes no lock.
 */
void AAA_PrintLogInfo(uint32_t priority, const char* label, const char* format, ...) AAADOM_NOEXCEPT
    AAA_PRINTF(3, 4);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
