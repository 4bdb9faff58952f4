/* Method items in messages and in stored policies. */
#ifndef AAADOM_METHOD_CODEC_H
#define AAADOM_METHOD_CODEC_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Deletes every TLV of a message one by one, so that it can be filled again.
 * @param msg  borrowed; stays valid and empty.
 * @return result of the last deletion, 0 for an empty message; DOM_ERR_FAILED for null. A failed
 *         deletion ends the work.
 * @thread any; takes no lock.
 */
uint32_t DOM_ClearTlv(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Appends method items as nested messages (TLV 10: 11 position, 12 method type, 13 scheme name,
 * 30 scheme index), up to the first empty item.
 * @param msg  borrowed; keeps what was appended when a later item fails.
 * @param items  Six items, borrowed. A scheme name may fill its 33 bytes without a terminator.
 * @return 0; the failing append's result; DOM_ERR_FAILED when an item cannot be built and for
 *         null.
 * @thread any; takes no lock.
 */
uint32_t DOM_EncodeMultiMethods(TLV_MSG* msg, const MethodEntry items[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Stores every nested item (TLV 10) at the position it carries. Items that the message lacks stay
 * as they are, of two with one position the later wins, and a position above 5 stores nothing.
 * @param msg  borrowed.
 * @param items  Six items; scheme names are cut to 32 characters.
 * @return 0 when there was an item and none failed; DOM_ERR_FAILED without a TLV 10, for one that
 *         is no message, for null, and when memory is short: earlier items are stored then.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeMultiMethods(TLV_MSG* msg, MethodEntry items[DOM_METHODS]) AAADOM_NOEXCEPT;

/**
 * Appends one item in network byte order, the form in which policies are stored: 1 position, 2
 * method type, 3 scheme index as big-endian UINT32, 4 scheme name without terminator, omitted
 * when empty. Empty items are written too. Fits AAA_EncapStructToTLVBuf.
 * @param position  0 to 5, written unchanged.
 * @param item  borrowed.
 * @param msg  borrowed.
 * @return 0; otherwise the sum of the append results; DOM_ERR_FAILED for null.
 * @thread any; takes no lock.
 */
uint32_t DOM_EncapMethodToTLVItem(uint32_t position, const MethodEntry* item,
                                  TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Stores one item of that form at the position it carries. Fits AAA_DecapSubTLVToStruct.
 * @param msg  borrowed.
 * @param items  Six items; untouched on failure. A name of 33 bytes is cut to 32 characters.
 * @return 0; DOM_ERR_FAILED without a position, for one above 5, for a name of 34 bytes or more,
 *         and for null; a failed name read's result.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecapTLVItemToMethod(TLV_MSG* msg, MethodEntry items[DOM_METHODS]) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
