#include <aaadom/profile.h>

#include "profile/profile_store.h"

using namespace aaadom;

namespace {

// No lock: each role changes its own profiles from its own thread.
constinit PerRole<AuthorProfileInfo> author_profiles;
constinit PerRole<CriticalProfileInfo> critical_profiles;

}  // namespace

extern "C" {

AuthorProfileInfo* DOM_author_InitData(void) noexcept {
    return InitProfiles(author_profiles.Mine());
}

void DOM_author_Fini(void) noexcept {
    FiniProfiles(author_profiles.Mine());
}

CriticalProfileInfo* DOM_critical_InitData(void) noexcept {
    return InitProfiles(critical_profiles.Mine());
}

void DOM_critical_Fini(void) noexcept {
    FiniProfiles(critical_profiles.Mine());
}

}  // extern "C"
