/* TLV messages: the platform's message format and its calls. */
#ifndef PLATFORM_TLV_H
#define PLATFORM_TLV_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** A message: a flat sequence of (16-bit type, 32-bit length, value). Opaque. */
typedef struct TLV_MSG TLV_MSG;
/** A position inside one message; null is the end. Owned by the message, valid until its next
 *  append or delete. */
typedef struct TLV_ITER TLV_ITER;

enum { TLV_FORM_DESCRIPTOR = 1, TLV_FORM_BUFFER = 2 };

TLV_MSG* TLV_Create(void);
void TLV_Destroy(TLV_MSG* msg);

TLV_ITER* TLV_GetFirst(TLV_MSG* msg);
TLV_ITER* TLV_GetNext(TLV_MSG* msg, TLV_ITER* it);
TLV_ITER* TLV_GetIteratorByType(TLV_MSG* msg, uint16_t type);
uint16_t TLV_GetTypeByIterator(TLV_MSG* msg, TLV_ITER* it);
uint32_t TLV_GetLenByIterator(TLV_MSG* msg, TLV_ITER* it);
uint32_t TLV_GetValueByIterator(TLV_MSG* msg, TLV_ITER* it, uint32_t length, void* buffer);
uint32_t TLV_GetUINTByIterator(TLV_MSG* msg, TLV_ITER* it);

uint32_t TLV_Append_Data(TLV_MSG* msg, uint16_t type, uint32_t length, const void* data);
uint32_t TLV_Append_UINT(TLV_MSG* msg, uint16_t type, uint32_t value);
uint32_t TLV_Delete_Data(TLV_MSG* msg, TLV_ITER* it);

uint32_t TLV_GetMsgLen(TLV_MSG* msg, uint32_t form);
uint32_t TLV_Flush(TLV_MSG* msg, uint32_t form, uint32_t wait_or_max, uintptr_t fd_or_buffer);
TLV_MSG* TLV_CreateReceiveMsg(uint32_t form, uintptr_t fd_or_buffer, uint32_t wait_or_length);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
