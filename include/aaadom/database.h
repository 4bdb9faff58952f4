/* The saved configuration. */
#ifndef AAADOM_DATABASE_H
#define AAADOM_DATABASE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Handle of the configuration table that every writer of the library uses; -1 means none. */
extern DBM_HANDLE g_hDomDbmHandle;

DBM_HANDLE DOM_CreateDomainDBM(void);
DBM_HANDLE DOM_OpenDomainDBM(void);
void DOM_SetDomainDBMHandle(DBM_HANDLE handle);
uint32_t DOM_SetDataToDB(const DomDbUpdateReq* request);
uint32_t DOM_DeleteDomainToDBByIndex(uint32_t index);
DomainInfo* DOM_GetDomainFromDBByIndex(DBM_HANDLE handle, uint32_t index);
DomainInfo* DOM_GetDomainFromDBByName(DBM_HANDLE handle, const char* name);
uint32_t DOM_GetDefDomainFromDB(DBM_HANDLE handle, char out[DOM_NAME_SIZE]);
uint32_t DOM_GetUnknownDomainFromDB(DBM_HANDLE handle, char out[DOM_NAME_SIZE]);
uint32_t DOM_GetSessionLimitFromDB(DBM_HANDLE handle, uint32_t limits[5]);
uint32_t DOM_GetDeviceIDFromDB(DBM_HANDLE handle, uint32_t* out);
uint32_t AAA_GetSessionLimit(uint32_t access_type);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
