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

AuthorProfileInfo* DOM_author_InitData(void);
void DOM_author_Fini(void);
CriticalProfileInfo* DOM_critical_InitData(void);
void DOM_critical_Fini(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
