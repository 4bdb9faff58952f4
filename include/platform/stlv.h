/* Compact TLV items: 16-bit type, 16-bit length, value. */
#ifndef PLATFORM_STLV_H
#define PLATFORM_STLV_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t STLV_Set(void* buffer, uint32_t room, uint16_t type, uint32_t length, const void* value);
uint32_t STLV_Get(const void* buffer, uint32_t room, uint16_t* type, uint32_t* length,
                  const void** value);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
