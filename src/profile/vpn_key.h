// What the VPN tables of both kinds of profiles hash and compare.
#pragma once

#include <aaadom/profile.h>

#include <cstdint>

#include "base/lookup2.h"
#include "base/text.h"

namespace aaadom {

/// A VPN name as the tables want it: cut to 31 characters and padded with zeros, because all 32
/// bytes are hashed. So a longer name matches the VPN that was made from its first 31 characters.
struct VpnKey {
    char name[DOM_PROFILE_NAME_SIZE] = {};

    explicit VpnKey(const char* text) noexcept { CopyText(name, text); }
};

/// Bucket of a padded name.
inline uint32_t VpnBucket(const void* padded_name) noexcept {
    static_assert((DOM_PROFILE_VPN_BUCKETS & (DOM_PROFILE_VPN_BUCKETS - 1)) == 0);
    return Lookup2(padded_name, DOM_PROFILE_NAME_SIZE, 0) & (DOM_PROFILE_VPN_BUCKETS - 1);
}

}  // namespace aaadom
