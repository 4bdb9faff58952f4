/* Device-wide settings and the per-domain options. */
#ifndef AAADOM_SETTINGS_H
#define AAADOM_SETTINGS_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** The debug flag word and its lock, one for the process. Its fields are visible where the C
 * library offers reader-writer locks, which strict ISO C mode hides. */
typedef struct AAAGlobalBaseInfo AAAGlobalBaseInfo;
#ifdef PTHREAD_RWLOCK_INITIALIZER
struct AAAGlobalBaseInfo {
    pthread_rwlock_t lock;
    uint32_t debug_flag; /* bit 0: error messages, bit 1: event messages */
};
#endif
extern AAAGlobalBaseInfo g_stAAAGlobalBaseInfo;

/**
 * Copies the calling role's default domain name, empty when none was set.
 * @param text_out  256 bytes; null is ignored.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_GetDefaultDomainName(char* text_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's default domain name. Whether such a domain exists is not checked.
 * @param name  at most 255 characters and the terminator; longer input is cut. Null changes
 * nothing.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetDefaultDomainName(const char* name) AAADOM_NOEXCEPT;

/**
 * Copies the calling role's unknown domain name, empty when none was set.
 * @param text_out  256 bytes; null is ignored.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_GetUnknownDomainName(char* text_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's unknown domain name. Whether such a domain exists is not checked.
 * @param name  at most 255 characters and the terminator; longer input is cut. Null changes
 * nothing.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetUnknownDomainName(const char* name) AAADOM_NOEXCEPT;

/**
 * Copies the working role's default name, unknown name and device identifier, whatever role calls.
 * @param record_out  null is ignored.
 * @thread any; takes and releases the calling role's table mutex only, the caller holds none.
 */
void DOM_GetGlobalDomainName(GlobalDomain* record_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's device identifier.
 * @thread any; takes no lock.
 */
void DOM_SetDeviceID(uint32_t device_id) AAADOM_NOEXCEPT;

/**
 * Reads the calling role's device identifier, 0 at first.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDeviceID(void) AAADOM_NOEXCEPT;

/**
 * Opens the system log (identity "AAA", delayed open, facility local use 7) and sets bits of the
 * debug flag word.
 * @param mask  AAA_DBG_ERROR_BIT, AAA_DBG_EVENT_BIT; other bits are kept too.
 * @thread any; takes the debug word's write lock, the caller holds none.
 */
void DOM_AAASetDebugFlag(uint32_t mask) AAADOM_NOEXCEPT;

/**
 * Clears bits of the debug flag word and closes the system log when none is left.
 * @param mask  bits to clear.
 * @thread any; takes the debug word's write lock, the caller holds none.
 */
void DOM_AAAResetDebugFlag(uint32_t mask) AAADOM_NOEXCEPT;

/**
 * Reads the debug flag word.
 * @thread any; takes the debug word's read lock, the caller does not hold its write lock.
 */
uint32_t DOM_AAAGetDebugFlag(void) AAADOM_NOEXCEPT;

/**
 * Reads a domain's state.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the value; 0 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetState(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's state; an unknown domain changes nothing.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetState(const char* domain, uint16_t state) AAADOM_NOEXCEPT;

/**
 * Reads a domain's user address type.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the value; 7 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetUserAddrType(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's user address type; an unknown domain changes nothing.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetUserAddrType(const char* domain, uint32_t user_addr_type) AAADOM_NOEXCEPT;

/**
 * Reads a domain's accounting dual-stack mode.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the value; 1 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetAcctDualStackMode(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's accounting dual-stack mode; an unknown domain changes nothing.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetAcctDualStackMode(const char* domain, uint32_t mode) AAADOM_NOEXCEPT;

/**
 * Sets or clears a domain's escape-recover action. The domain it names is not checked.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param operation  1 stores the block, every other value clears all 260 bytes.
 * @param block      borrowed; read for operation 1 only.
 * @return 0; DOM_ERR_FAILED for an unknown domain or a null block with operation 1.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_SetEscapeRecoverAction(const char* domain, uint16_t operation,
                                    const EscapeRecoverAction* block) AAADOM_NOEXCEPT;

/**
 * Copies a domain's escape-recover action.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param block_out  untouched on failure; may be null.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetEscapeRecoverAction(const char* domain,
                                    EscapeRecoverAction* block_out) AAADOM_NOEXCEPT;

/**
 * Sets or clears the domain that users get when the authentication redirect fails; not checked.
 * @param operation  1 stores the name, every other value empties it. It comes first, unlike in
 *                   DOM_SetEscapeRecoverAction.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param permit_domain  at most 255 characters and the terminator; longer input is cut. Read for
 *                       operation 1 only.
 * @return 0; DOM_ERR_FAILED for an unknown domain or a null name with operation 1.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_SetAuthRdFailPermitDomain(uint16_t operation, const char* domain,
                                       const char* permit_domain) AAADOM_NOEXCEPT;

/**
 * Copies the permit domain's name.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param size      capacity of the text, terminator included; a longer name is cut, 0 writes
 * nothing.
 * @param text_out  untouched on failure; may be null.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetAuthRdFailPermitDomain(const char* domain, uint32_t size,
                                       char* text_out) AAADOM_NOEXCEPT;

/**
 * Sets the domain that users get when authentication fails, and its kind; not checked. An empty
 * name is stored as such.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param auth_fail_domain  at most 255 characters and the terminator; longer input is cut.
 * @return 0; DOM_ERR_FAILED for an unknown domain or a null name.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_SetAuthFailDomain(const char* domain, const char* auth_fail_domain,
                               uint16_t kind) AAADOM_NOEXCEPT;

/**
 * Copies the authentication-fail domain's name and kind.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param size      capacity of the text, terminator included; a longer name is cut, 0 writes
 * nothing.
 * @param text_out  untouched on failure; may be null.
 * @param kind_out  untouched on failure; may be null.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetAuthFailDomain(const char* domain, uint32_t size, char* text_out,
                               uint16_t* kind_out) AAADOM_NOEXCEPT;

/**
 * Fills a decoded-message record with zeros.
 * @param record  null is ignored.
 * @thread any; takes no lock.
 */
void DOM_InitCriticalProfile(CriticalProfileMsg* record) AAADOM_NOEXCEPT;

/**
 * Fills a decoded-message record with zeros.
 * @param record  null is ignored.
 * @thread any; takes no lock.
 */
void DOM_InitAuthorProfile(AuthorProfileMsg* record) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
