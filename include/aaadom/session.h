/* Session time, session limits and session counters. */
#ifndef AAADOM_SESSION_H
#define AAADOM_SESSION_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Reads a domain's session time. Carried by DOM_MSG_SESSION_TIME (DOM_TLV_SESSION_TIME), stored
 * with the domain record.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the 16-bit time; 0 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetSessionTime(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's session time. Carried and stored as DOM_GetSessionTime says.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param session_time  stored as given; a new domain has 0.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_SetSessionTime(const char* domain, uint16_t session_time) AAADOM_NOEXCEPT;

/**
 * Copies the calling role's five limits. Carried by DOM_MSG_ALL_SESSION_LIMIT, stored under
 * DOM_DB_KEY_SESSION_LIMIT.
 * @param limits_out  written whole; null is ignored.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
void DOM_GetAllSessionLimit(SessionLimits* limits_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's five limits, in the order of the record: 19, 21, 20, 22, 23.
 * @param limits  borrowed; null changes nothing.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
void DOM_SetAllSessionLimit(const SessionLimits* limits) AAADOM_NOEXCEPT;

/**
 * Sets one limit of the calling role. DOM_SessionIncrease tests the working role's. Carried by
 * DOM_MSG_SESSION_LIMIT.
 * @param session_class  19, 21, 22, 23; every other value acts as class 20.
 * @param limit          sessions; 538976288 after the tables' initialisation, 0 before. 0 admits
 * nobody.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
void DOM_SetSessionLimit(uint32_t session_class, uint32_t limit) AAADOM_NOEXCEPT;

/**
 * Reads a counter; the five counters are one set for the process. Carried by
 * DOM_MSG_SESSION_COUNT, not stored.
 * @param session_class  19, 21, 22, 23; every other value acts as class 20.
 * @return the number of sessions.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
uint32_t DOM_GetSessionCount(uint32_t session_class) AAADOM_NOEXCEPT;

/**
 * Sets a counter, above the limit too. Carried by DOM_MSG_SESSION_COUNT, not stored.
 * @param session_class  19, 21, 22, 23; every other value acts as class 20.
 * @param value          sessions, stored as given.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
void DOM_SetSessionCount(uint32_t session_class, uint32_t value) AAADOM_NOEXCEPT;

/**
 * Counts a session that comes up, unless its class is at the working role's limit, whatever role
 * calls.
 * @param session_class  19, 21, 22, 23; every other value acts as class 20.
 * @return 0; DOM_ERR_FAILED when the counter is not below the limit, and it stays.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
uint32_t DOM_SessionIncrease(uint32_t session_class) AAADOM_NOEXCEPT;

/**
 * Counts a session that goes down.
 * @param session_class  19, 21, 22, 23; every other value acts as class 20.
 * @return 0; DOM_ERR_FAILED when the counter is 0, and it stays.
 * @thread any; takes no lock: callers serialise the calls on limits and counters.
 */
uint32_t DOM_SessionDecrease(uint32_t session_class) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
