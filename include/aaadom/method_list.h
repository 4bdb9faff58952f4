/* Method lists and the scheme table. */
#ifndef AAADOM_METHOD_LIST_H
#define AAADOM_METHOD_LIST_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Domain names are found ignoring case in the calling role's table; a null name is unknown. */

/**
 * Makes a method list, zero-filled: AAA type 0, service 0, no methods.
 * @return returned, destroy with DOM_DestroyMethodList; null without memory.
 * @thread any; takes no lock.
 */
MethodList* DOM_CreateMethodList(void) AAADOM_NOEXCEPT;

/**
 * Frees a method list.
 * @param list  consumed always; null is ignored. Not one that is in a domain.
 * @thread any; takes no lock.
 */
void DOM_DestroyMethodList(MethodList* list) AAADOM_NOEXCEPT;

/**
 * Copies a list of a domain and the extra item of its service.
 * @param domain      name.
 * @param aaa_type    0 to 5.
 * @param service     0 to 11.
 * @param list_out    untouched on failure, may be null. Its scheme names are terminated, cut to 32
 *                    characters where more were stored.
 * @param extras_out  one item, its name likewise; untouched on failure, may be null.
 * @return 0; DOM_ERR_FAILED when the domain, the list or the place does not exist.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetMethodList(const char* domain, uint32_t aaa_type, uint32_t service,
                           MethodList* list_out, MethodEntry* extras_out) AAADOM_NOEXCEPT;

/**
 * Stores a list in the place that its own AAA type and service name; a former list is
 * replaced whole. Kinds and their order are not judged. In the default service every method
 * gets a new scheme index, the lowest free ones in list order, instead of those that the AAA type
 * had. Carried by DOM_MSG_METHOD_LIST and, with its indexes, by the domain record (DOM_MSG_DOMAIN),
 * in DOM_TLV_METHOD_LIST.
 * @param domain  name.
 * @param list    borrowed; in the default service the new indexes are written into its methods,
 *                untouched on failure.
 * @param extras  borrowed, may be null; with AAA type 5 stored as the extra item of the service,
 *                also when it is empty, else not read.
 * @return 0; DOM_ERR_FAILED, and nothing changed, when the domain does not exist, the AAA type is
 *         above 5, the service above 11, memory runs out, the domain is not in the row order
 *         (default service only) or the list is null.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_AddMethodList(const char* domain, MethodList* list,
                           const MethodEntry* extras) AAADOM_NOEXCEPT;

/**
 * Removes a list. One of the default service is not removed but reset: one method of kind 4, with
 * the lowest scheme index that is free when the list's own are gone. Extra items stay. Carried by
 * DOM_MSG_METHOD_LIST.
 * @param domain       name.
 * @param list_header  borrowed; only its AAA type and service are read.
 * @return 0; DOM_ERR_FAILED, and nothing changed, when the domain, the list or the place does not
 *         exist, memory runs out, the domain is not in the row order (default service only) or the
 *         header is null.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_DelMethodList(const char* domain, const MethodList* list_header) AAADOM_NOEXCEPT;

/**
 * Tells whether a service may use a method kind.
 * @param service      0 to 11; a higher one may use none.
 * @param aaa_type     0, 4 or 5; another one allows none.
 * @param method_kind  taken modulo 32.
 * @return 1 or 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_IsServiceSupportTheMethod(uint32_t service, uint32_t aaa_type,
                                       uint32_t method_kind) AAADOM_NOEXCEPT;

/**
 * Writes a kind into the first empty entry of a list; nothing when all six are used.
 * @param entries      borrowed, the six entries of a list; null is ignored.
 * @param method_kind  not judged; name and index of the entry stay.
 * @thread any; takes no lock: the entries are the caller's.
 */
void DOM_UpdateMethodModule(MethodEntry entries[DOM_METHODS], uint32_t method_kind) AAADOM_NOEXCEPT;

/**
 * Names the first entry of a kind; nothing when there is none.
 * @param entries      borrowed, the six entries of a list; null is ignored.
 * @param method_kind  any; 4 and 5 are named too, 0 names the first empty entry.
 * @param scheme_name  borrowed; made small in place, found an entry or not, so never a literal. At
 *                     most 32 characters are stored, longer input is cut. Null is ignored.
 * @thread any; takes no lock: the entries are the caller's.
 */
void DOM_UpdateMethodSchemeName(MethodEntry entries[DOM_METHODS], uint32_t method_kind,
                                char* scheme_name) AAADOM_NOEXCEPT;

/**
 * Finds the position of the method that a scheme index addresses.
 * @param domain        name.
 * @param scheme_index  any; 0 is found where a row has taken it.
 * @param position_out  0 to 5; untouched on failure, may be null.
 * @return 0; DOM_ERR_FAILED when the domain or the index does not exist.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetMethodIndex(const char* domain, uint32_t scheme_index,
                            uint32_t* position_out) AAADOM_NOEXCEPT;

/**
 * Finds the AAA type of the method that a scheme index addresses.
 * @param domain        name.
 * @param scheme_index  any; 0 is found where a row has taken it.
 * @param aaa_type_out  0 to 5; untouched on failure, may be null.
 * @return 0; DOM_ERR_FAILED when the domain or the index does not exist.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetAAAType(const char* domain, uint32_t scheme_index,
                        uint32_t* aaa_type_out) AAADOM_NOEXCEPT;

/**
 * Tells whether a walk of the scheme table begins with nothing: the working role has no domain, or
 * its first domain in row order has no scheme index. Later domains do not count.
 * @return 1 or 0.
 * @thread any; reads the working role's row order whatever role calls; takes no lock.
 */
uint32_t DOM_IsSchemeTableNull(void) AAADOM_NOEXCEPT;

/**
 * Reads the first row of the scheme table: the first scheme index of the first domain. Its order is
 * the working role's, its contents are the calling role's. Carried by DOM_MSG_SCHEME_ROW.
 * @param row_out  gets domain name, scheme index, method kind, AAA type and scheme name; row status
 *                 and service stay. Untouched on failure.
 * @return 0; DOM_ERR_FAILED when DOM_IsSchemeTableNull, when the calling role lacks the domain or
 *         its list, or row_out is null.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 *         (DOM_DomainInfoTableLock).
 */
uint32_t DOM_MibGetFirstScheme(MibSchemeRow* row_out) AAADOM_NOEXCEPT;

/**
 * Reads the row that follows a key: domains by name length, then by strcmp, within a domain by
 * scheme index. The key need not exist. Domains without a scheme index are passed over. The key is
 * carried by DOM_MSG_SCHEME_INDEX, the row by DOM_MSG_SCHEME_ROW.
 * @param domain        key; compared with case. Null is followed by nothing.
 * @param name_length   the key's length as the order counts it; it is never used to index the name.
 * @param scheme_index  key.
 * @param row_out       as DOM_MibGetFirstScheme.
 * @return 0; DOM_ERR_NOT_FOUND when no row follows; DOM_ERR_FAILED when the calling role lacks the
 *         domain of the row or its list, or row_out is null.
 * @thread any; takes no lock: the caller holds the calling role's table mutex
 *         (DOM_DomainInfoTableLock).
 */
uint32_t DOM_MibGetNextScheme(const char* domain, uint32_t name_length, uint32_t scheme_index,
                              MibSchemeRow* row_out) AAADOM_NOEXCEPT;

/**
 * Adds one method to a default list. Methods stand in the order of their indexes, kind 5 behind all
 * others. Carried by DOM_MSG_SCHEME_ROW with row status 4.
 * @param row  borrowed; domain name (at most 255 characters), scheme index (0 included), method
 *             kind, AAA type, and for other kinds than 4 and 5 the scheme name (at most 32
 *             characters) are read.
 * @return 0; DOM_ERR_FAILED, and nothing changed, when the domain or the list does not exist, the
 *         domain is not in the row order, the index is used anywhere in the domain, the kind is 0
 *         or occurs in the list, the list has no room or would be in no allowed order, memory runs
 *         out or the row is null.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_AddSchemeTable(const MibSchemeRow* row) AAADOM_NOEXCEPT;

/**
 * Changes the kind and scheme name of the method that a scheme index addresses; the method moves to
 * the place of its new kind. Carried by DOM_MSG_SCHEME_ROW with row status 1.
 * @param row  borrowed; as DOM_AddSchemeTable.
 * @return 0; DOM_ERR_NOT_FOUND when the domain or the list does not exist or the domain is not in
 *         the row order; DOM_ERR_FAILED when the index is unknown or of another AAA type, the kind
 *         is 0, another method of the list has the kind, a new kind would leave the list in no
 *         allowed order, no method of the list bears the index and there is no room, or the row is
 *         null. Nothing changed on failure.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_ModifySchemeTable(const MibSchemeRow* row) AAADOM_NOEXCEPT;

/**
 * Resets the whole default list that a scheme index belongs to, as DOM_DelMethodList does. Carried
 * by DOM_MSG_SCHEME_ROW.
 * @param domain        name.
 * @param scheme_index  of any method of the list.
 * @return 0; DOM_ERR_FAILED, and nothing changed, when the domain, the index or the list does not
 *         exist, the domain is not in the row order, or memory runs out.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_DeleteSchemeByIndex(const char* domain, uint32_t scheme_index) AAADOM_NOEXCEPT;

/**
 * Makes a scheme index node for each method of a record's default lists, so that adding the domain
 * cannot fail half-way.
 * @param record         borrowed.
 * @param resources_out  overwritten: its nodes are returned, destroy with
 *                       DOM_DestroyDomainSchemeResource; empty on failure.
 * @return 0; DOM_ERR_FAILED without memory or when an argument is null.
 * @thread any; takes no lock.
 */
uint32_t DOM_CreateDomainSchemeResource(const DomainInfo* record,
                                        SchemeResources* resources_out) AAADOM_NOEXCEPT;

/**
 * Frees the nodes that no domain has taken over, and leaves the group empty.
 * @param resources  the nodes are consumed always, the group itself is borrowed; null is ignored.
 * @thread any; takes no lock.
 */
void DOM_DestroyDomainSchemeResource(SchemeResources* resources) AAADOM_NOEXCEPT;

/**
 * Reads the name of a domain's accounting policy: authorization attribute kind 12, carried by
 * DOM_MSG_AUTHOR_ATTR.
 * @param domain    name.
 * @param size      capacity of text_out in bytes; 32 hold every name, into less it is cut. With 0
 *                  nothing is written.
 * @param text_out  terminated; empty when the domain is unknown. May be null.
 * @return 0; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetItaPolicyName(const char* domain, uint32_t size, char* text_out) AAADOM_NOEXCEPT;

/**
 * Tells whether a domain names an accounting policy, existing or not.
 * @param domain  name.
 * @return 1; 0 when it names none or is unknown.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_IsItaEnabled(const char* domain) AAADOM_NOEXCEPT;

/**
 * Copies the accounting scheme of a domain's accounting policy, as DOM_ita_policy_GetMethodList.
 * @param domain    name.
 * @param list_out  gets the six methods; its type and service stay. Untouched on failure.
 * @return 0; DOM_ERR_FAILED for an unknown domain, when the policy that the domain names does not
 *         exist, or list_out is null. A domain that names none asks for the policy of the empty
 *         name.
 * @thread any; takes and releases the calling role's table mutex, then the accounting-policy mutex;
 *         the caller holds neither.
 */
uint32_t DOM_GetItaMethodList(const char* domain, MethodList* list_out) AAADOM_NOEXCEPT;

/**
 * Reads one of a domain's accounting words.
 * @param domain          name.
 * @param attribute_code  187, 188, 189, 190: the words of the attribute kinds 13, 14 (first), 14
 *                        (second), 15.
 * @param value_out       DOM_ACCT_POLICY_NONE for any other code and for an unknown domain. May be
 *                        null.
 * @return 0, also for any other code; DOM_ERR_FAILED for an unknown domain.
 * @thread any; takes and releases the calling role's table mutex, the caller holds none.
 */
uint32_t DOM_GetAcctPolicy(const char* domain, uint32_t attribute_code,
                           uint32_t* value_out) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
