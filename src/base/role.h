// The two thread roles and storage that exists once per role.
#pragma once

#include <aaadom/service.h>

namespace aaadom {

/// kConfig is the configuration thread; every other thread, and every thread while the daemon has
/// installed no callbacks, is kWorking.
enum class Role { kConfig, kWorking };

/// Role of the calling thread. Only the low 16 bits of the daemon's answer count.
inline Role CurrentRole() noexcept {
    return (DOM_IsCfgThread() & 0xFFFFu) == 1u ? Role::kConfig : Role::kWorking;
}

/// One T for each role. Choose the instance once per operation: a lock taken through one look-up
/// must not be released through another.
template <typename T>
class PerRole {
  public:
    constexpr PerRole() = default;
    T& Of(Role role) noexcept { return role == Role::kConfig ? config_ : working_; }
    /// The calling role's instance.
    T& Mine() noexcept { return Of(CurrentRole()); }
    /// The working role's instance, for readers that use it whatever role calls them.
    T& Working() noexcept { return working_; }

  private:
    T config_{};
    T working_{};
};

}  // namespace aaadom
