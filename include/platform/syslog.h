/* The system log. */
#ifndef PLATFORM_SYSLOG_H
#define PLATFORM_SYSLOG_H

#include <stdarg.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* openlog and closelog are the C library's; declared here so that the library reaches the log only
 * through this header. */
void openlog(const char* identity, int option, int facility);
void closelog(void);

void vsyslog2(uint32_t priority, const char* module, const char* label, const char* format,
              va_list args);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
