// The shape of every operation on one named domain: take the calling role's table mutex, look the
// domain up ignoring case, use it, release.
#pragma once

#include <utility>

#include "domain/tables.h"

namespace aaadom {

/// Calls `use(DomainInfo&)` under the calling role's table mutex; DOM_ERR_FAILED when there is no
/// domain of that name, else what `use` returns.
template <typename Use>
uint32_t WithDomain(const char* name, Use&& use) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    DomainInfo* domain = table.Find(name);
    return domain == nullptr ? DOM_ERR_FAILED : std::forward<Use>(use)(*domain);
}

/// One value of a domain, copied under the calling role's table mutex, or `if_unknown`.
template <typename Value, typename Read>
Value ReadDomain(const char* name, Value if_unknown, Read&& read) noexcept {
    DomainTable& table = Domains(CurrentRole());
    MutexGuard lock(table.mutex);
    const DomainInfo* domain = table.Find(name);
    return domain == nullptr ? if_unknown : static_cast<Value>(std::forward<Read>(read)(*domain));
}

}  // namespace aaadom
