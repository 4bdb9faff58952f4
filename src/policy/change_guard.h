// Locking of the stores that exist once a role: the working role's has a mutex, the configuration
// thread alone uses its own.
#pragma once

#include <pthread.h>

#include <optional>

#include "base/lock.h"
#include "base/role.h"

namespace aaadom {

/// Holds the mutex for the working role, nothing for the configuration role.
class ChangeGuard {
  public:
    ChangeGuard(Role role, pthread_mutex_t& mutex) noexcept {
        if (role == Role::kWorking) lock_.emplace(mutex);
    }

  private:
    std::optional<ExportedMutexGuard> lock_;
};

}  // namespace aaadom
