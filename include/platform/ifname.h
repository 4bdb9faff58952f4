/* Interface data by interface index. */
#ifndef PLATFORM_IFNAME_H
#define PLATFORM_IFNAME_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define IF_ATTRIBUTE_NAME 10u

uint32_t IF_GetDataByIfIndex(uint32_t if_index, uint32_t attribute, uint32_t size, void* buffer);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
