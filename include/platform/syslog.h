/* The system log. */
#ifndef PLATFORM_SYSLOG_H
#define PLATFORM_SYSLOG_H

#include <platform/api.h>
#include <stdarg.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* openlog and closelog are the C library's; declared here so that the library reaches the log only
 * through this header, without noexcept as <syslog.h> has them. openlog keeps the identity's
 * address, so that text must live until closelog. */
void openlog(const char* identity, int option, int facility);
void closelog(void);

/** Bit of a priority word that selects delivery on some platforms; not part of syslog's priority.
 */
#define VSYSLOG2_PLATFORM_FLAG 0x01000000u

/**
 * Writes one line "MODULE/LABEL: text" to the system log.
 * @param priority  facility and level as of syslog(3); VSYSLOG2_PLATFORM_FLAG and bits that syslog
 *                  does not know are taken off.
 * @param module    borrowed; null leaves the module out, at most 63 characters are written.
 * @param label     borrowed; null leaves the label out, at most 63 characters are written. A '%' in
 *                  module or label is an ordinary character.
 * @param format    borrowed; printf format of the text. Null writes nothing at all.
 * @param args      the format's arguments; the caller's va_end follows.
 *
 * The text is cut to 2047 bytes, ends in "..." when it was cut, and control characters in it become
 * spaces, so that one call is one line. errno stays as it was; memory is not allocated here.
 * @thread any; takes no lock but syslog's own.
 */
void vsyslog2(uint32_t priority, const char* module, const char* label, const char* format,
              va_list args) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
