// Stores of named profiles, one a thread role: life cycle.
#pragma once

#include <aaadom/profile.h>
#include <platform/hash.h>

#include <cstddef>
#include <cstdlib>

#include "base/role.h"

namespace aaadom {

inline void FreeVpnNode(AuthorProfile*, HASH_NODE* node) {
    free(reinterpret_cast<char*>(node) - offsetof(AuthorVpn, hash));
}

template <typename Head>
Head* InitProfiles(Head& head) noexcept {
    head = Head{};
    return &head;
}

template <typename Head>
void FiniProfiles(Head& head) noexcept {
    while (auto* profile = head.first_profile) {
        head.first_profile = profile->next;
        free(profile);
    }
    head = Head{};
}

}  // namespace aaadom
