// Changes of authorization and critical profiles. Both roles hold them, so they take the common
// way; here stands what is done before.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

struct Request;

/// 0 or the result of the refusal: no text may be cut or stand twice, profile and VPN have names.
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

/// Takes the segment out of a message that deletes a default segment. The store takes over what is
/// sent whatever the operation while the database drops the segment: the two would differ until the
/// next start.
void ClearDeletedCriticalSegment(Request& request);
void ClearDeletedAuthorSegment(Request& request);

}  // namespace aaad
