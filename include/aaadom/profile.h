/* Authorization and critical profiles: the stores' life cycle. */
#ifndef AAADOM_PROFILE_H
#define AAADOM_PROFILE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef struct AuthorProfile AuthorProfile;
typedef struct CriticalProfile CriticalProfile;
/** Head of one thread role's authorization profiles. */
typedef struct AuthorProfileInfo {
    uint32_t profile_count;
    AuthorProfile* first_profile;
} AuthorProfileInfo;
/** Head of one thread role's critical profiles. */
typedef struct CriticalProfileInfo {
    uint32_t profile_count;
    CriticalProfile* first_profile;
} CriticalProfileInfo;

/**
 * Empties the calling role's head of the authorization profiles without freeing any. Part of
 * DOM_DomainInfoTableInit.
 * @return the head, owned by the library, valid for ever.
 * @thread once on each role; takes no lock: each role changes its own profiles from its own thread.
 */
AuthorProfileInfo* DOM_author_InitData(void) AAADOM_NOEXCEPT;

/**
 * Frees every authorization profile of the calling role with its VPNs. Part of
 * DOM_DomainInfoTableFini.
 * @thread the role's own; takes no lock.
 */
void DOM_author_Fini(void) AAADOM_NOEXCEPT;

/**
 * Empties the calling role's head of the critical profiles without freeing any. Part of
 * DOM_DomainInfoTableInit.
 * @return the head, owned by the library, valid for ever.
 * @thread once on each role; takes no lock: each role changes its own profiles from its own thread.
 */
CriticalProfileInfo* DOM_critical_InitData(void) AAADOM_NOEXCEPT;

/**
 * Frees every critical profile of the calling role with its VPNs. Part of DOM_DomainInfoTableFini.
 * @thread the role's own; takes no lock.
 */
void DOM_critical_Fini(void) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
