/* The request channel to the daemon's configuration thread. */
#ifndef AAADOM_CHANNEL_H
#define AAADOM_CHANNEL_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Sends one request to the daemon's configuration thread and waits for its reply, on a socket of
 * its own: LIPC family 37, type 2, protocol 1, endpoint 0x660C / 0x0080. Blocks at most twice the
 * wait of DOM_LIPC_WAIT, whose low 16 bits are 60000 ms. An interrupted connect is repeated.
 * @param msg  borrowed; goes out as a copy behind the operation head.
 * @param opcode  DOM_OP_SET, DOM_OP_DELETE, DOM_OP_GET ...; not interpreted.
 * @param kind_out  receives the type of the reply's first TLV, DOM_REPLY_KIND_RESULT or another, as
 *                  soon as that TLV is there, so also when its value turns out to be no message.
 * May be null.
 * @return the message nested in the reply's first TLV, returned, destroy with TLV_Destroy; null:
 * null request, no socket, nobody at the endpoint, not sent, no reply in time, empty reply, or a
 *         first TLV that holds no message. The socket is closed in every case.
 * @thread any; takes no lock, concurrent callers share nothing.
 */
TLV_MSG* DOM_lipc_SendCfgMsg(TLV_MSG* msg, uint32_t opcode, uint16_t* kind_out) AAADOM_NOEXCEPT;
/**
 * Reads the result out of a reply.
 * @param reply  borrowed; may be null.
 * @param result_out  receives TLV 16, or 1 when the reply has none: silence is never success. May
 * be null.
 * @return 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_lipc_ReplyMsgProc(TLV_MSG* reply, uint32_t* result_out) AAADOM_NOEXCEPT;
/**
 * Sends one request and reads the result of its reply.
 * @param msg  borrowed.
 * @param opcode  as for DOM_lipc_SendCfgMsg.
 * @param result_out  as for DOM_lipc_ReplyMsgProc; untouched when no reply came.
 * @return 0 when a reply came, whatever it says; DOM_ERR_FAILED when none came.
 * @thread as DOM_lipc_SendCfgMsg.
 */
uint32_t DOM_lipc_CfgMsgProc(TLV_MSG* msg, uint32_t opcode, uint32_t* result_out) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
