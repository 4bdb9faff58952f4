/* Rows of the domain table and of the scheme table as row management changes them. */
#ifndef AAADOM_ROWS_H
#define AAADOM_ROWS_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Row statuses that are served, TLV 33. Any other one is refused. */
enum DomRowStatus {
    DOM_ROW_ACTIVE = 1,       /* modify an existing row */
    DOM_ROW_CREATE_AND_GO = 4 /* create a row that works at once */
};

/** What became of a row request; front ends map these to the answers of their protocol. */
enum DomRowResult {
    DOM_ROW_OK = 0,
    DOM_ROW_FAILED = 1,    /* malformed request or general failure */
    DOM_ROW_NO_OBJECT = 2, /* the row to modify or delete does not exist */
    DOM_ROW_BAD_NAME = 3,  /* forbidden character in the domain name */
    DOM_ROW_FULL = 4,      /* the domain table has no room */
    DOM_ROW_EXISTS = 15    /* the row to create exists */
};

/**
 * Applies a row of the domain table (code 14) to the calling role's table.
 *
 * Row status 4 creates the domain from the whole message, so the row may carry more than name and
 * state; whether the name exists is asked before whether it is valid. Row status 1 changes what the
 * flags of TLV 32 name; without that TLV nothing changes and the result is 0.
 * @param msg  borrowed; without its operation head.
 * @param change  borrowed; filled with object type 1, the domain's name and presence 1, other
 * fields stay. A create fills it on success only; a modify whose row could be decoded fills it
 * whatever its result, DOM_ROW_NO_OBJECT and DOM_ROW_BAD_NAME included. May be null.
 * @return DOM_ROW_OK; DOM_ROW_FAILED: no row status or another one, undecodable row, no memory (see
 *         DOM_MibAddDomain for what a failure to allocate a default list does); DOM_ROW_EXISTS,
 *         DOM_ROW_BAD_NAME, DOM_ROW_FULL (create); DOM_ROW_NO_OBJECT, DOM_ROW_BAD_NAME (modify).
 * @thread any; works on the caller's role. Takes that role's table mutex, the caller holds none;
 *         releases it as DOM_MibAddDomain does.
 */
uint32_t DOM_ProcDomainTable(TLV_MSG* msg, DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Applies a row of the scheme table (code 15) to the calling role's table. What the row leaves out
 * reads as scheme index 0, method kind 4, AAA type 0 and an empty scheme name.
 * @param msg  borrowed; without its operation head.
 * @param op  DOM_PRESENT: row status 4 adds (DOM_AddSchemeTable), 1 modifies
 *            (DOM_ModifySchemeTable). Anything else deletes by domain name and scheme index
 *            (DOM_DeleteSchemeByIndex) whatever the row status.
 * @param change  borrowed; once the row is decoded filled with object type 1, the domain's name and
 *                presence 1, also on failure and on delete: the domain stays. Other fields stay.
 *                May be null.
 * @return DOM_ROW_OK; DOM_ROW_NO_OBJECT when the operation did not find what it changes
 *         (DOM_ERR_NOT_FOUND); DOM_ROW_FAILED: no domain name, another or no row status on set, any
 *         other failure.
 * @thread any; works on the caller's role. Takes and releases that role's table mutex, the caller
 *         holds none.
 */
uint32_t DOM_ProcSchemeTable(TLV_MSG* msg, uint16_t op, DomDbUpdateReq* change) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
