// Changes of NAS-ID profiles and their bindings. They are the working role's alone, so they are
// applied on its thread, which borrows the daemon's transaction to save them.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

struct Request;

/// Before a change, on the configuration thread: no text may be cut, none may stand twice, and a
/// binding names its VLAN. 0 or the result of the refusal.
uint32_t CheckNasIdProfile(TLV_MSG* body, uint32_t operation);
uint32_t CheckNasIdBinding(TLV_MSG* body, uint32_t operation);

/// Applies and saves a change on the working thread, in the transaction that it uses. Sets the
/// request's results; the answer to a profile carries its name in the stored spelling.
void ApplyNasIdProfile(Request& request);
void ApplyNasIdBinding(Request& request);

}  // namespace aaad
