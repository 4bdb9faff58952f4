// The spelling under which a domain is held. Look-ups by name ignore letter case, most other
// operations of the library do not.
#pragma once

#include <aaadom/types.h>

namespace aaad {

/// One character more than a name may have: one that is too long is another name than the one that
/// it begins with.
using DomainNameBuffer = char[DOM_NAME_SIZE + 1];

/// Finds the calling role's spelling of a domain; false when it holds none. Takes the table lock.
bool FindStoredSpelling(const char* asked, DomainNameBuffer& stored);

}  // namespace aaad
