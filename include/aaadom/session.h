/* Session time, session limits and session counters. */
#ifndef AAADOM_SESSION_H
#define AAADOM_SESSION_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t DOM_GetSessionTime(const char* domain);
uint32_t DOM_SetSessionTime(const char* domain, uint16_t session_time);
void DOM_GetAllSessionLimit(SessionLimits* limits_out);
void DOM_SetAllSessionLimit(const SessionLimits* limits);
void DOM_SetSessionLimit(uint32_t session_class, uint32_t limit);
uint32_t DOM_GetSessionCount(uint32_t session_class);
void DOM_SetSessionCount(uint32_t session_class, uint32_t value);
uint32_t DOM_SessionIncrease(uint32_t session_class);
uint32_t DOM_SessionDecrease(uint32_t session_class);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
