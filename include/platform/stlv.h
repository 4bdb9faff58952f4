/* Compact TLV items: 16-bit type, 16-bit length (both little-endian), then the value; 4 bytes of
 * header, no padding. Items stand one behind the other in a buffer of the caller. */
#ifndef PLATFORM_STLV_H
#define PLATFORM_STLV_H

#include <platform/api.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Writes one item.
 * @param buffer  borrowed; where the item begins, any alignment.
 * @param room    bytes that may be written from `buffer` on.
 * @param type    any 16-bit number.
 * @param length  length of the value, at most 65535.
 * @param value   borrowed; may be null when `length` is 0.
 * @return the bytes written (4 + length); 0, and nothing written, when the item does not fit into
 *         `room`, `length` is above 65535, or `buffer` or a needed `value` is null.
 * @thread any; takes no lock.
 */
uint32_t STLV_Set(void* buffer, uint32_t room, uint16_t type, uint32_t length,
                  const void* value) PLATFORM_NOEXCEPT;

/**
 * Reads the item at the start of a buffer, without copying its value.
 * @param buffer  borrowed; where the item begins, any alignment.
 * @param room    bytes that may be read from `buffer` on.
 * @param type    receives the type; may be null.
 * @param length  receives the value's length; may be null.
 * @param value   receives the value, inside `buffer` and valid as long as it; not aligned. May be
 *                null.
 * @return the bytes that the item takes (4 + length), which is where the next one begins; 0, and
 *         no output stored, at the end (`room` 0), when `room` does not hold the whole item, or
 *         when `buffer` is null.
 * @thread any; takes no lock.
 */
uint32_t STLV_Get(const void* buffer, uint32_t room, uint16_t* type, uint32_t* length,
                  const void** value) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
