/* Device-wide settings and the per-domain options. */
#ifndef AAADOM_SETTINGS_H
#define AAADOM_SETTINGS_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** The debug flag word and its lock, one for the process; usable from load on. Its fields are
 * visible where the C library offers reader-writer locks, which strict ISO C mode hides. */
typedef struct AAAGlobalBaseInfo AAAGlobalBaseInfo;
#ifdef PTHREAD_RWLOCK_INITIALIZER
struct AAAGlobalBaseInfo {
    pthread_rwlock_t lock;
    uint32_t debug_flag; /* bit 0: error messages, bit 1: event messages */
};
#endif
/** Owned by the library, valid for ever; the word is read and written under its lock. */
extern AAAGlobalBaseInfo g_stAAAGlobalBaseInfo;

/**
 * Copies the calling role's default domain name, empty when none was set. Carried by
 * DOM_MSG_DEFAULT_DOMAIN, stored under DOM_DB_KEY_DEFAULT_DOMAIN.
 * @param text_out  256 bytes; null is ignored.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_GetDefaultDomainName(char* text_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's default domain name, carried and stored as DOM_GetDefaultDomainName
 * says. Whether such a domain exists is not checked.
 * @param name  at most 255 characters and the terminator; longer input is cut. Null changes
 * nothing.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetDefaultDomainName(const char* name) AAADOM_NOEXCEPT;

/**
 * Copies the calling role's unknown domain name, empty when none was set. Carried by
 * DOM_MSG_UNKNOWN_DOMAIN, stored under DOM_DB_KEY_UNKNOWN_DOMAIN.
 * @param text_out  256 bytes; null is ignored.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_GetUnknownDomainName(char* text_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's unknown domain name, carried and stored as DOM_GetUnknownDomainName
 * says. Whether such a domain exists is not checked.
 * @param name  at most 255 characters and the terminator; longer input is cut. Null changes
 * nothing.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetUnknownDomainName(const char* name) AAADOM_NOEXCEPT;

/**
 * Copies the working role's default name, unknown name and device identifier, whatever role calls.
 * Carried by DOM_MSG_GLOBAL_DOMAIN.
 * @param record_out  the names are at most 255 characters and the terminator; null is ignored.
 * @thread any; takes and releases the calling role's table mutex only, the caller holds none.
 */
void DOM_GetGlobalDomainName(GlobalDomain* record_out) AAADOM_NOEXCEPT;

/**
 * Sets the calling role's device identifier. Carried by DOM_MSG_DEVICE_ID, stored under
 * DOM_DB_KEY_DEVICE_ID.
 * @param device_id  stored as given; initialisation and teardown of the tables leave it.
 * @thread any; takes no lock.
 */
void DOM_SetDeviceID(uint32_t device_id) AAADOM_NOEXCEPT;

/**
 * Reads the calling role's device identifier.
 * @return the identifier; 0 until it is set.
 * @thread any; takes no lock.
 */
uint32_t DOM_GetDeviceID(void) AAADOM_NOEXCEPT;

/**
 * Opens the system log (identity "AAA", delayed open, facility local use 7) and sets bits of the
 * debug flag word. Carried by DOM_MSG_DEBUG_FLAG, not stored.
 * @param mask  AAA_DBG_ERROR_BIT, AAA_DBG_EVENT_BIT; other bits are set too. 0 opens the log only.
 * @thread any; takes the debug word's write lock, the caller holds none.
 */
void DOM_AAASetDebugFlag(uint32_t mask) AAADOM_NOEXCEPT;

/**
 * Clears bits of the debug flag word and closes the system log when none is left. Carried by
 * DOM_MSG_DEBUG_FLAG, not stored.
 * @param mask  bits to clear.
 * @thread any; takes the debug word's write lock, the caller holds none.
 */
void DOM_AAAResetDebugFlag(uint32_t mask) AAADOM_NOEXCEPT;

/**
 * Reads the debug flag word.
 * @return the word; 0 at load.
 * @thread any; takes the debug word's read lock, the caller does not hold its write lock.
 */
uint32_t DOM_AAAGetDebugFlag(void) AAADOM_NOEXCEPT;

/**
 * Reads a domain's state. Carried by DOM_MSG_STATE (DOM_TLV_STATE), stored with the domain record.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the value; 0 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetState(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's state, carried and stored as DOM_GetState says; an unknown domain changes
 * nothing.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param state  stored as given; a new domain has 1.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetState(const char* domain, uint16_t state) AAADOM_NOEXCEPT;

/**
 * Reads a domain's user address type. Carried by DOM_MSG_USER_ADDR_TYPE (DOM_TLV_USER_ADDR_TYPE),
 * stored with the domain record.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the value; 7 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetUserAddrType(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's user address type, carried and stored as DOM_GetUserAddrType says; an unknown
 * domain changes nothing.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param user_addr_type  stored as given; a new domain has 7.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetUserAddrType(const char* domain, uint32_t user_addr_type) AAADOM_NOEXCEPT;

/**
 * Reads a domain's accounting dual-stack mode. Carried by DOM_MSG_ACCT_DUAL_STACK
 * (DOM_TLV_DUAL_STACK_MODE), stored with the domain record.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @return the value; 1 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetAcctDualStackMode(const char* domain) AAADOM_NOEXCEPT;

/**
 * Sets a domain's accounting dual-stack mode, carried and stored as DOM_GetAcctDualStackMode says;
 * an unknown domain changes nothing.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param mode  stored as given; a new domain has 1.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
void DOM_SetAcctDualStackMode(const char* domain, uint32_t mode) AAADOM_NOEXCEPT;

/**
 * Sets or clears a domain's escape-recover action. The domain it names is not checked. Carried by
 * DOM_MSG_ESCAPE_RECOVER, stored with the domain record.
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
 * Carried by DOM_MSG_PERMIT_DOMAIN (DOM_TLV_PERMIT_DOMAIN), stored with the domain record.
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
 * name is stored as such. Carried by DOM_MSG_AUTH_FAIL_DOMAIN (DOM_TLV_AUTH_FAIL_DOMAIN,
 * DOM_TLV_AUTH_FAIL_KIND), stored with the domain record.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param auth_fail_domain  at most 255 characters and the terminator; longer input is cut.
 * @param kind  stored as given; a new domain has 0.
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
