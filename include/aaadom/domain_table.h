/* The tables of one thread role: initialisation, teardown, the table lock. */
#ifndef AAADOM_DOMAIN_TABLE_H
#define AAADOM_DOMAIN_TABLE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t DOM_DomainInfoTableInit(void);
uint32_t DOM_DomainInfoTableFini(void);
uint32_t DOM_DomainInfoTableLock(void);
uint32_t DOM_DomainInfoTableUnlock(void);
uint32_t DOM_DomainInfoTbl_ForceInitLock(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
