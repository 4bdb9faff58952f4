/* User-record defaults and backup methods of one thread role. */
#ifndef AAADOM_RECORD_SWITCHES_H
#define AAADOM_RECORD_SWITCHES_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

void DOM_SetUserRecordEnableDefault(uint32_t value);
uint32_t DOM_GetUserRecordEnableDefault(void);
void DOM_SetUserRecordBackupMethodDefault(uint32_t value);
uint32_t DOM_GetUserRecordBackupMethodDefault(void);
uint32_t DOM_InitRecordBackupInfo(void);
uint32_t DOM_FiniRecordBackupInfo(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
