/* Applying configuration messages to the tables. */
#ifndef AAADOM_RESTORE_H
#define AAADOM_RESTORE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t DOM_RestoreData(TLV_MSG* msg, uint16_t save, uint32_t cap1, uint32_t cap2, char* name1_out,
                         char* name2_out);
uint32_t DOM_UpdateCfgData(TLV_MSG* msg, uint32_t cap1, uint32_t cap2, char* name1_out,
                           char* name2_out);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
