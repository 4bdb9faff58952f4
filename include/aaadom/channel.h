/* The request channel to the daemon's configuration thread. */
#ifndef AAADOM_CHANNEL_H
#define AAADOM_CHANNEL_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

TLV_MSG* DOM_lipc_SendCfgMsg(TLV_MSG* msg, uint32_t opcode, uint16_t* kind_out);
uint32_t DOM_lipc_ReplyMsgProc(TLV_MSG* reply, uint32_t* result_out);
uint32_t DOM_lipc_CfgMsgProc(TLV_MSG* msg, uint32_t opcode, uint32_t* result_out);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
