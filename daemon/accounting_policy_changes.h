// Changes of accounting policies. They are the working role's alone, so they are applied on its
// thread, which borrows the daemon's transaction to save them.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace aaad {

struct Request;

/// Before a change, on the configuration thread: one policy is named, with a name that will not be
/// cut. 0 or the result of the refusal.
uint32_t CheckAccountingPolicy(TLV_MSG* body, uint32_t operation);

/// Applies and saves a change of the codes 22 to 28 on the working thread, in the transaction that
/// it uses. Sets the request's results.
void ApplyAccountingPolicy(Request& request);

}  // namespace aaad
