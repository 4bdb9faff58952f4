// Locking of the stores that exist once a role: the working role's has a mutex, the configuration
// thread alone uses its own.
#pragma once

#include <optional>

#include "base/lock.h"
#include "base/role.h"

namespace aaadom {

/// Holds the mutex for the working role, nothing for the configuration role. To the analysis both
/// are the right to use the role's store.
class AAADOM_SCOPED_CAPABILITY ChangeGuard {
  public:
    ChangeGuard(Role role, const ExportedMutex& mutex) noexcept
        AAADOM_ACQUIRE(mutex) AAADOM_NO_TSA {
        if (role == Role::kWorking) lock_.emplace(mutex);
    }
    ~ChangeGuard() AAADOM_RELEASE() AAADOM_NO_TSA {}
    ChangeGuard(const ChangeGuard&) = delete;
    ChangeGuard& operator=(const ChangeGuard&) = delete;

  private:
    std::optional<ExportedMutexGuard> lock_;
};

}  // namespace aaadom
