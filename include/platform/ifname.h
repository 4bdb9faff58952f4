/* Interface data by interface index. */
#ifndef PLATFORM_IFNAME_H
#define PLATFORM_IFNAME_H

#include <platform/api.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define IF_ATTRIBUTE_NAME 10u

/**
 * Reads one attribute of a network interface.
 * @param if_index   index of the interface in the system, from 1 on.
 * @param attribute  IF_ATTRIBUTE_NAME; there are no others.
 * @param size       size of `buffer` in bytes with the terminator; a longer name is cut.
 * @param buffer     receives the name, terminated; empty on failure.
 * @return 0; 0x40010001 when there is no such interface or attribute, `buffer` is null or `size` 0.
 * @thread any; takes no lock.
 */
uint32_t IF_GetDataByIfIndex(uint32_t if_index, uint32_t attribute, uint32_t size,
                             void* buffer) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
