// Changes of authorization and critical profiles. Both roles hold them, so they take the common
// way; here stands what is tested before and the name that their answers carry.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

struct Request;

/// 0 or the result of the refusal: no text may be cut or stand twice, profile and VPN have names,
/// and the deletion of a default segment carries no segment.
uint32_t CheckCriticalProfile(TLV_MSG* body, uint32_t operation);
uint32_t CheckCriticalVpn(TLV_MSG* body, uint32_t operation);
uint32_t CheckCriticalSegment(TLV_MSG* body, uint32_t operation);
uint32_t CheckAuthorProfile(TLV_MSG* body, uint32_t operation);
uint32_t CheckAuthorVpn(TLV_MSG* body, uint32_t operation);
uint32_t CheckAuthorSegment(TLV_MSG* body, uint32_t operation);

/// Puts the profile's name into the answer, in the stored spelling where there is such a profile.
/// Before the change, because a deletion takes the spelling away.
void NameCriticalProfile(Request& request);
void NameAuthorProfile(Request& request);

}  // namespace aaad
