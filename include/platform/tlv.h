/* TLV messages: the platform's message format and its calls.
 *
 * Image of a message, the same in a buffer, in a database value and on a descriptor:
 *   header  8 bytes: 'T', 'V', version 1, 0, then the length of the body as 32 bits
 *   body    TLVs one behind the other: type 16 bits, length 32 bits, value; no padding
 * All numbers are little-endian. Order and repeated types are kept. An image is at most 4 GiB - 1.
 *
 * A message may be used by one thread at a time; different messages are independent. No call takes
 * a lock. Result codes: 0 done, 0x40010001 failure. */
#ifndef PLATFORM_TLV_H
#define PLATFORM_TLV_H

#include <platform/api.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** A message: a flat sequence of (16-bit type, 32-bit length, value). Opaque. */
typedef struct TLV_MSG TLV_MSG;
/** A position inside one message; null is the end. Owned by the message, valid until its next
 *  append or delete. A position outside the message it is given with is foreign, which every call
 *  treats as null. So is, for TLV_Delete_Data, one inside a value (a position of a nested message
 *  given with its parent); what other calls read there is meaningless, but inside the message. */
typedef struct TLV_ITER TLV_ITER;

/** Where TLV_GetMsgLen, TLV_Flush and TLV_CreateReceiveMsg work; any other form fails. */
enum { TLV_FORM_DESCRIPTOR = 1, TLV_FORM_BUFFER = 2 };

/**
 * Creates an empty message.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any.
 */
TLV_MSG* TLV_Create(void) PLATFORM_NOEXCEPT;

/**
 * Destroys a message and ends its iterators. Messages taken out of it with AAA_GetSubTlv live on.
 * @param msg  consumed always; null is ignored.
 * @thread any, also another one than that which created it.
 */
void TLV_Destroy(TLV_MSG* msg) PLATFORM_NOEXCEPT;

/**
 * The first TLV of a message.
 * @param msg  borrowed.
 * @return owned by `msg`, valid until its next append or delete; null for an empty or null message.
 * @thread any.
 */
TLV_ITER* TLV_GetFirst(TLV_MSG* msg) PLATFORM_NOEXCEPT;

/**
 * The TLV behind another one.
 * @param msg  borrowed.
 * @param it   owned by `msg`.
 * @return owned by `msg`, valid until its next append or delete; null behind the last TLV, for a
 *         null or foreign `it` and for a null message.
 * @thread any.
 */
TLV_ITER* TLV_GetNext(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;

/**
 * The first TLV of a type.
 * @param msg   borrowed.
 * @param type  any 16-bit number.
 * @return owned by `msg`, valid until its next append or delete; null when there is none and for a
 *         null message.
 * @thread any.
 */
TLV_ITER* TLV_GetIteratorByType(TLV_MSG* msg, uint16_t type) PLATFORM_NOEXCEPT;

/**
 * Type and length of a TLV.
 * @param msg  borrowed.
 * @param it   owned by `msg`.
 * @return the type; the length of the value in bytes (a text's with its terminator). 0 for a null
 *         message and a null or foreign `it`.
 * @thread any.
 */
uint16_t TLV_GetTypeByIterator(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;
uint32_t TLV_GetLenByIterator(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;

/**
 * Copies the value of a TLV.
 * @param msg     borrowed.
 * @param it      owned by `msg`.
 * @param length  size of `buffer` in bytes; a longer value is cut, behind a shorter one the buffer
 *                keeps what it held.
 * @param buffer  receives the bytes.
 * @return 0; 0x40010001 for a null argument and a foreign `it`.
 * @thread any.
 */
uint32_t TLV_GetValueByIterator(TLV_MSG* msg, TLV_ITER* it, uint32_t length,
                                void* buffer) PLATFORM_NOEXCEPT;

/**
 * The number in the first 4 bytes of a TLV, the counterpart of TLV_Append_UINT.
 * @param msg  borrowed.
 * @param it   owned by `msg`.
 * @return the number; 0 when the TLV is shorter, for a null message and a null or foreign `it`.
 * @thread any.
 */
uint32_t TLV_GetUINTByIterator(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;

/**
 * Append one TLV at the end of a message.
 * @param msg     borrowed; its iterators end.
 * @param type    any 16-bit number, also one that the message has.
 * @param length  length of the value in bytes.
 * @param data    borrowed, copied; may be null when `length` is 0, may lie inside `msg`.
 * @param value   4 bytes, carried as given; who wants network byte order converts before.
 * @return 0; 0x40010001, and `msg` unchanged, for a null message or a needed null `data`, when the
 *         image would pass 4 GiB, or when memory is short.
 * @thread any.
 */
uint32_t TLV_Append_Data(TLV_MSG* msg, uint16_t type, uint32_t length,
                         const void* data) PLATFORM_NOEXCEPT;
uint32_t TLV_Append_UINT(TLV_MSG* msg, uint16_t type, uint32_t value) PLATFORM_NOEXCEPT;

/**
 * Deletes one TLV of a message; the others keep their order.
 * @param msg  borrowed; its iterators end.
 * @param it   owned by `msg`.
 * @return 0; 0x40010001, and `msg` unchanged, for a null message, a null or foreign `it`, and when
 *         a message that shares its bytes finds no memory for its own.
 * @thread any.
 */
uint32_t TLV_Delete_Data(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;

/**
 * Length of a message's image.
 * @param msg   borrowed.
 * @param form  TLV_FORM_DESCRIPTOR or TLV_FORM_BUFFER; both give the same.
 * @return bytes, 8 for an empty message; 0 for a null message or another form.
 * @thread any.
 */
uint32_t TLV_GetMsgLen(TLV_MSG* msg, uint32_t form) PLATFORM_NOEXCEPT;

/**
 * Writes a message's image to a buffer or sends it.
 * @param msg           borrowed.
 * @param form          TLV_FORM_BUFFER or TLV_FORM_DESCRIPTOR.
 * @param wait_or_max   buffer: its size in bytes. Descriptor: the low 16 bits are the longest wait
 *                      in milliseconds, cut to the limit of the process (LIPC_SetWaitLimit).
 * @param fd_or_buffer  the buffer's address; the descriptor of a connected socket, message or
 *                      stream, blocking or not; never closed here. A peer that went away raises no
 *                      SIGPIPE.
 * @return buffer: the image's length, 0 and nothing written when it does not fit. Descriptor: 1
 *         when the whole image was handed to the socket, 0 when not (wait over, peer gone, no
 *         socket, image too large for the socket or above 16 MiB on a stream); a stream that got a
 *         part of the image is of no further use. 0 for a null message, a null buffer and another
 *         form. Callers test the low 16 bits of a descriptor's result.
 * @thread any; holds no lock while it waits.
 */
uint32_t TLV_Flush(TLV_MSG* msg, uint32_t form, uint32_t wait_or_max,
                   uintptr_t fd_or_buffer) PLATFORM_NOEXCEPT;

/**
 * Makes a message from an image in a buffer, or receives one.
 * @param form            TLV_FORM_BUFFER or TLV_FORM_DESCRIPTOR.
 * @param fd_or_buffer    the buffer's address, borrowed and copied; the descriptor of a connected
 *                        socket: one packet of a message socket, one image from a stream.
 * @param wait_or_length  buffer: the image's length in bytes. Descriptor: as in TLV_Flush; on a
 *                        stream the whole image must arrive in that time.
 * @return returned, destroy with TLV_Destroy; null for a null buffer, length 0 or bytes that are
 *         not exactly one well-formed image, when nothing comes in time or the peer has closed,
 *         for more than 16 MiB, when memory is short, and for another form.
 * @thread any; holds no lock while it waits.
 */
TLV_MSG* TLV_CreateReceiveMsg(uint32_t form, uintptr_t fd_or_buffer,
                              uint32_t wait_or_length) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
