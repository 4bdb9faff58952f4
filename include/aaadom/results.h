/* Result codes of the library. */
#ifndef AAADOM_RESULTS_H
#define AAADOM_RESULTS_H

/* no exported function lets an exception out */
#ifdef __cplusplus
#define AAADOM_NOEXCEPT noexcept
#else
#define AAADOM_NOEXCEPT
#endif

#define DOM_OK 0u
#define DOM_ERR_FAILED 0x40010001u    /* generic failure */
#define DOM_ERR_NOT_FOUND 0x40010005u /* no such row, policy or stored object */
#define DOM_ERR_EXISTS 0x40010006u
#define DOM_ERR_NO_MEMORY 0x4001000Bu

/* DOM_AddDomainByName, DOM_MibAddDomain, DOM_MibUpdateDomain */
#define DOM_ADD_OK 0u
#define DOM_ADD_FAILED 1u /* out of memory; DOM_MibAddDomain also: the name exists */
#define DOM_MIBUPD_NO_DOMAIN 2u
#define DOM_ADD_TABLE_FULL 4u

/* DOM_DelDomainCheck: why a domain may not be deleted */
enum {
    DOM_DELCHK_OK = 0,
    DOM_DELCHK_NO_DOMAIN = 1,
    DOM_DELCHK_SYSTEM = 2,
    DOM_DELCHK_DEFAULT = 3,
    DOM_DELCHK_PERMIT = 4,
    DOM_DELCHK_ESCAPE = 5,
    DOM_DELCHK_AUTHFAIL = 6
};

/* walk encoders report through their status output */
enum { DOM_WALK_OK = 0, DOM_WALK_NONE = 8, DOM_WALK_NO_MESSAGE = 9 };

/* a request that could not be encoded: MOR_SetDomainName and MOR_SetUnknownDomain only */
#define MOR_ERR_ENCODE 0x61010041u
/* what a reply without a result reads as: silence is never success */
#define DOM_RESULT_MISSING 1u
/* the answer to a query that no user record meets */
#define DOM_RESULT_NO_RECORD 25u

#endif
