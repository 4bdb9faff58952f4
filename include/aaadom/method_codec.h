/* Method items in messages and in stored policies. */
#ifndef AAADOM_METHOD_CODEC_H
#define AAADOM_METHOD_CODEC_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t DOM_ClearTlv(TLV_MSG* msg);
uint32_t DOM_EncodeMultiMethods(TLV_MSG* msg, const MethodEntry items[DOM_METHODS]);
uint32_t DOM_DecodeMultiMethods(TLV_MSG* msg, MethodEntry items[DOM_METHODS]);
uint32_t DOM_EncapMethodToTLVItem(uint32_t position, const MethodEntry* item, TLV_MSG* msg);
uint32_t DOM_DecapTLVItemToMethod(TLV_MSG* msg, MethodEntry items[DOM_METHODS]);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
