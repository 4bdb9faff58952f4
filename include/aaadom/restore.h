/* Applying configuration messages to the tables. */
#ifndef AAADOM_RESTORE_H
#define AAADOM_RESTORE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Applies one configuration message to the calling role's tables.
 *
 * Every operation other than 0 deletes, reads included: never give it a request with operation 2.
 * A case that records no change (codes 9, 81 and 145) has no saved form, so with save 1 it is
 * applied and the result is DOM_ERR_FAILED; code 9 is applied with save 1 only. Codes 16 and 17 are
 * refused on the configuration thread: NAS-ID profiles live in the working role alone. Code 17 is
 * saved under the stored spelling of its profile.
 * @param msg  borrowed; begins with the operation head (AAA_AddOpHead).
 * @param save  1 = after a successful change store the changed object (DOM_SetDataToDB), and remove
 *              the array element that a moved domain leaves behind; any other value = do not.
 * @param cap1  capacity of name1_out in bytes, terminator included; a longer name is cut.
 * @param cap2  capacity of name2_out.
 * @param name1_out  receives the changed object's name: the domain of a per-domain message, the
 * name that became the default or unknown domain, the critical or authorization profile to add in
 * its stored spelling (codes 147 and 156). Filled also when the change failed after the message was
 * decoded. Untouched when the name is empty; may be null.
 * @param name2_out  receives the accounting-policy name of the change; the same rules.
 * @return 0; what DOM_ProcDomainTable and DOM_ProcSchemeTable return (codes 14 and 15); what the
 * processors of profile.h return (codes 147 to 149 and 156 to 158);
 * DOM_ERR_FAILED: code 14 with another operation than 0, any result of DOM_ProcNasIdProfileCfg and
 * DOM_ProcNasIdBindVlanIdCfg but 0 (codes 16 and 17), no operation head, no or an unknown message
 * code, undecodable message, unknown domain (codes 4, 11, 19, 130, 132, 143, 144), full table
 * (codes 0 and 3), no memory, or the change could not be saved. Codes 7, 21 and 30 pass over an
 * unknown domain: 0 with save 0, DOM_ERR_FAILED with save 1, because there is no domain to store.
 * @thread any; works on the caller's role. Takes that role's table mutex, the caller holds none,
 * and releases it as DOM_MibAddDomain does (code 14); the database is called without it.
 */
uint32_t DOM_RestoreData(TLV_MSG* msg, uint16_t save, uint32_t cap1, uint32_t cap2, char* name1_out,
                         char* name2_out) AAADOM_NOEXCEPT;

/**
 * Applies a message that one role sent to the other, without saving it: how the other role's copy
 * follows.
 * @param msg  borrowed; begins with the daemon's head (AAA_AddAaadHead), behind it the operation
 * head.
 * @param cap1,cap2,name1_out,name2_out  as for DOM_RestoreData.
 * @return DOM_ERR_FAILED without the daemon's head, else as DOM_RestoreData with save 0.
 * @thread as DOM_RestoreData.
 */
uint32_t DOM_UpdateCfgData(TLV_MSG* msg, uint32_t cap1, uint32_t cap2, char* name1_out,
                           char* name2_out) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
