/* Domains: create, find, add, delete, walk; authorization attributes. */
#ifndef AAADOM_DOMAIN_H
#define AAADOM_DOMAIN_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Judges a new domain's name. Its length is not judged (a longer name is cut when it is stored),
 * and the empty name passes.
 * @param name  text of any length.
 * @return 0; DOM_ERR_FAILED when it contains one of \ / : * ? " < > | @, or is null.
 * @thread any; takes no lock.
 */
uint32_t DOM_CheckDomainName(const char* name) AAADOM_NOEXCEPT;

/**
 * Makes every capital of a text small, as the C library classifies characters.
 * @param text  changed in place, so never a literal; null is ignored.
 * @thread any; takes no lock.
 */
void DOM_ToLowerCaseStr(char* text) AAADOM_NOEXCEPT;

/**
 * Makes a domain without a name that has every default: state 1, limit value 0x7FFFFFFF, address
 * type 7, dual-stack mode 1, attributes as DOM_InitAuthorAttr, and for the AAA types 0, 4 and 5 a
 * list of the default service with one method of kind 4.
 * @return returned, destroy with DOM_DestroyDomain; null without memory.
 * @thread any; takes no lock.
 */
DomainInfo* DOM_CreateDomain(void) AAADOM_NOEXCEPT;

/**
 * Frees a domain and all its method lists.
 * @param record  consumed always; null is ignored. Not one that is still in a table.
 * @thread any; takes no lock.
 */
void DOM_DestroyDomain(DomainInfo* record) AAADOM_NOEXCEPT;

/**
 * Makes a node of the row order, zero-filled.
 * @return returned, destroy with DOM_DestroyZorvDomain; null without memory.
 * @thread any; takes no lock.
 */
ZorvDomain* DOM_CreateZorvDomain(void) AAADOM_NOEXCEPT;

/**
 * Frees a node, not its scheme indexes.
 * @param node  consumed always; null is ignored.
 * @thread any; takes no lock.
 */
void DOM_DestroyZorvDomain(ZorvDomain* node) AAADOM_NOEXCEPT;

/**
 * Finds a domain of the calling role ignoring the case of ASCII letters: of several equal names the
 * one in the lowest slot.
 * @param name  compared whole: more than 255 characters are never found. Null finds nothing.
 * @return owned by the library, valid until the mutex is released; null when there is none.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_FindDomainByName(const char* name) AAADOM_NOEXCEPT;

/**
 * Tells whether the calling role has a domain of that name.
 * @param name  compared ignoring case; null does not exist.
 * @return 1 when it has, else 0.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_IsDomainExist(const char* name) AAADOM_NOEXCEPT;

/**
 * Adds a domain to the calling role's table: both orders, the scheme indexes of its default lists,
 * the count, and the first empty slot, whose number is written into the record. The caller has
 * tested before that no domain has the name and that a slot is empty: with no slot empty the lists
 * and the count change and the record is not stored. A domain whose node of the strcmp order cannot
 * be allocated is added all the same and left out of that order.
 * @param record     consumed on success: owned by the library, valid until it is deleted. With no
 * slot empty it stays the caller's. Null changes nothing, and the node stays the caller's too.
 * @param mib_node   consumed always, with a record; gets the record's name. Null leaves the domain
 * out of the row order.
 * @param resources  borrowed; made for this record by DOM_CreateDomainSchemeResource. The nodes
 * that are handed over are removed from it; the caller destroys the rest.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
void DOM_AddDomain(DomainInfo* record, ZorvDomain* mib_node,
                   SchemeResources* resources) AAADOM_NOEXCEPT;

/**
 * Adds a domain with every default. The name is not validated; see DOM_CheckDomainName. Requested
 * with DOM_MSG_DOMAIN_NAME.
 * @param name  at most 255 characters and the terminator; longer input is cut before it is looked
 * up.
 * @return DOM_ADD_OK, also when the name exists already, ignoring case (nothing changes then);
 *         DOM_ADD_TABLE_FULL when the role has 1024 domains; DOM_ADD_FAILED when an allocation
 * failed (everything is undone) or the name is null.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_AddDomainByName(const char* name) AAADOM_NOEXCEPT;

/**
 * Adds a domain that a row request (DOM_MSG_DOMAIN_ROW) filled. Its lists of the default service
 * are replaced by the default lists first. Room is judged by the working role's count, whatever
 * role calls; a configuration role that is full itself while the working role is not counts and
 * lists the domain and returns DOM_ADD_OK without storing the record, which is destroyed then.
 * @param record  consumed on success: owned by the library then, and not to be read again. On
 * failure it stays the caller's, with the default lists that were attached by then.
 * @return DOM_ADD_OK; DOM_ADD_FAILED when the name exists or an allocation failed;
 * DOM_ADD_TABLE_FULL when the working role has 1024 domains.
 * @thread any; takes the calling role's table mutex, the caller holds none. Releases it, except
 * when a default list cannot be allocated: then it returns DOM_ADD_FAILED with the mutex held.
 */
uint32_t DOM_MibAddDomain(DomainInfo* record) AAADOM_NOEXCEPT;

/**
 * Applies a row (DOM_MSG_DOMAIN_ROW) to an existing domain.
 * @param row          borrowed; its name is found ignoring case, its state is narrowed to 16 bits.
 * @param change_mask  bit 0: set the state. Other bits are ignored.
 * @return 0; DOM_MIBUPD_NO_DOMAIN when there is no such domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_MibUpdateDomain(const DomainMibRow* row, uint64_t change_mask) AAADOM_NOEXCEPT;

/**
 * Replaces the record in one slot of the working role's table. The nodes of its name leave the
 * orders of the calling role and new ones enter those of the working role: meant for that role,
 * where they are the same. A former record of another name leaves its nodes behind.
 * @param record  consumed always; its slot number says where it goes. Destroyed on failure, unless
 * it is the one that the slot holds already.
 * @return 0; DOM_ERR_FAILED when an allocation failed, the slot is above 1023 or the record is
 * null; nothing changed then.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
uint32_t DOM_UpdateDomain(DomainInfo* record) AAADOM_NOEXCEPT;

/**
 * Tells whether a domain may be deleted. It must exist in the calling role (ignoring case);
 * everything else compares the given spelling exactly, with what the working role's table refers
 * to. The reasons are tested in their order, each over all domains.
 * @param name  the domain; null does not exist.
 * @return DOM_DELCHK_OK, or why not: DOM_DELCHK_NO_DOMAIN; DOM_DELCHK_SYSTEM (the name is
 * "system"); DOM_DELCHK_DEFAULT (the default domain); DOM_DELCHK_PERMIT, DOM_DELCHK_ESCAPE,
 *         DOM_DELCHK_AUTHFAIL (some domain names it as such, itself included).
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_DelDomainCheck(const char* name) AAADOM_NOEXCEPT;

/**
 * Takes a domain out of the calling role's table: its slot (exact name) and the count, and, found
 * or not, the nodes of its name with their scheme indexes.
 * @param record  borrowed: destroyed by the caller afterwards. Null is ignored.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
void DOM_DeleteDomain(DomainInfo* record) AAADOM_NOEXCEPT;

/**
 * Deletes a domain of the calling role and destroys it. Requested with DOM_MSG_DOMAIN_NAME; stored
 * in the element of its slot under DOM_DB_KEY_DOMAINS.
 * @param name           found ignoring case; null is unknown.
 * @param also_database  1: delete it from the database too, by its slot number.
 * @return with also_database 1 the result of DOM_DeleteDomainToDBByIndex (1 = failed); else 0, also
 * when there is no such domain.
 * @thread any; takes the calling role's table mutex and releases it before the database is called.
 */
uint32_t DOM_DeleteDomainAndDBByName(const char* name, uint16_t also_database) AAADOM_NOEXCEPT;

/**
 * Fills a block with the initial attributes: zeros and empty texts, except word 2 of kind 0
 * (10240), kinds 9 and 10 (4), word 2 of kind 14 and kind 15 (1), kind 19 (-1), kind 23 (65535).
 * @param block  written whole; null is ignored.
 * @thread any; takes no lock.
 */
void DOM_InitAuthorAttr(AuthorAttr* block) AAADOM_NOEXCEPT;

/**
 * Sets the attributes of one kind from a block. Carried by DOM_MSG_AUTHOR_ATTR and by
 * DOM_TLV_AUTHOR_ATTR of the stored domain record. Addresses copy 4 bytes for family 2, else 16.
 * Texts of kinds 2 and 4 that differ only in case keep the stored spelling. Kinds 1, 2 and 18 copy
 * every byte of their text, the others up to the terminator; longer texts are cut to the field.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param block   borrowed; only the fields of the kind are read.
 * @param kind    0 to 26.
 * @return 0; DOM_ERR_FAILED for an unknown domain, another kind or a null block.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_AddAuthorAttr(const char* domain, const AuthorAttr* block,
                           uint32_t kind) AAADOM_NOEXCEPT;

/**
 * Gives the attributes of one kind their initial values. Of a text only the first byte is cleared;
 * the small numbers beside the texts of kinds 18 and 26 stay, because they count only with their
 * text.
 * @param domain  name, found ignoring case in the calling role's table; null is unknown.
 * @param kind    0 to 26.
 * @return 0; DOM_ERR_FAILED for an unknown domain or another kind.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_DelAuthorAttr(const char* domain, uint32_t kind) AAADOM_NOEXCEPT;

/**
 * Copies all attributes of a domain.
 * @param name       found ignoring case; null is unknown.
 * @param block_out  1040 bytes; untouched on failure, may be null.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetDomainAuthorAttrByName(const char* name, AuthorAttr* block_out) AAADOM_NOEXCEPT;

/**
 * Sets a domain's redirect code. DOM_MSG_REDIRECT switches it; DOM_TLV_REDIRECT_CODE of the stored
 * domain record carries it.
 * @param name  found ignoring case; null is unknown.
 * @param code  stored as given; a new domain has 0.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_SetRedirectMoveTemporarily(const char* name, uint32_t code) AAADOM_NOEXCEPT;

/**
 * Reads a domain's redirect code.
 * @param name  found ignoring case; null is unknown.
 * @return the code; 0 for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetRedirectCode(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the number of domains of the working role, whatever role calls. Carried by
 * DOM_MSG_DOMAIN_COUNT.
 * @param count_out  may be null.
 * @return 0.
 * @thread any; takes and releases the calling role's table mutex only, the caller holds none.
 */
uint32_t DOM_GetDomainCount(uint32_t* count_out) AAADOM_NOEXCEPT;

/**
 * Finds the record in the lowest occupied slot of the calling role.
 * @return owned by the library, valid until the mutex is released; null when there is none.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_GetFirstDomain(void) AAADOM_NOEXCEPT;

/**
 * Finds the record in the next occupied slot after a domain's.
 * @param name  the domain before, found ignoring case; null is unknown.
 * @return owned by the library, valid until the mutex is released; null when the name is unknown or
 * the last.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_GetNextDomain(const char* name) AAADOM_NOEXCEPT;

/**
 * Finds the first domain of the working role's row order (shorter names first, then strcmp).
 * @return the calling role's record of that name, owned by the library, valid until the mutex is
 * released; null when the order is empty or the calling role has no such domain.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_MibGetFirstDomain(void) AAADOM_NOEXCEPT;

/**
 * Finds the domain that follows a key in the working role's row order. The key need not exist.
 * @param name         key; null finds nothing.
 * @param name_length  the key's length as the order counts it; it is never used to index the name.
 * @return as DOM_MibGetFirstDomain; null when nothing follows.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_MibGetNextDomain(const char* name, uint32_t name_length) AAADOM_NOEXCEPT;

/**
 * Finds the first domain of the working role's strcmp order.
 * @return as DOM_MibGetFirstDomain.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_NetConfGetFirstDomain(void) AAADOM_NOEXCEPT;

/**
 * Finds the domain whose name is the next greater one (strcmp) in the working role.
 * @param name  key, need not exist; null finds nothing.
 * @return as DOM_MibGetFirstDomain; null when nothing follows.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 * (DOM_DomainInfoTableLock).
 */
DomainInfo* DOM_NetConfGetNextDomain(const char* name) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
