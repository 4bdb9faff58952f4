// Test support: the calling thread's role, answered through slot 13 of an installed service table,
// and the tables of both roles.
#pragma once

#include <aaadom/domain_table.h>
#include <aaadom/service.h>

#include <cstdint>

namespace fake {

inline thread_local uint32_t role_of_this_thread = 0;

/// A service table whose slot 13 answers the calling thread's role; every other slot is empty.
inline AAADService RoleService() {
    AAADService service{};
    service.is_cfg_thread = [] { return role_of_this_thread; };
    return service;
}

inline constexpr uint32_t kWorkingRole = 0;
inline constexpr uint32_t kConfigRole = 1;

/// The calling thread has the role while this lives. Installs RoleService unless told that the test
/// has installed a table of its own (made from RoleService).
class ScopedRole {
  public:
    explicit ScopedRole(uint32_t role, bool install = true) : before_(role_of_this_thread) {
        if (install) {
            const AAADService service = RoleService();
            DOM_SetAAADService(&service);
        }
        role_of_this_thread = role;
    }
    ~ScopedRole() { role_of_this_thread = before_; }
    ScopedRole(const ScopedRole&) = delete;
    ScopedRole& operator=(const ScopedRole&) = delete;

  private:
    uint32_t before_;
};

/// Calls `body` in a role, keeping the installed service table.
template <typename Body>
auto InRole(uint32_t role, Body&& body) {
    ScopedRole scoped(role, false);
    return body();
}

/// Initialises the tables of the working role, then of the configuration role; the results ored.
inline uint32_t InitBothRoles() {
    const AAADService service = RoleService();
    DOM_SetAAADService(&service);
    uint32_t result = InRole(kWorkingRole, [] { return DOM_DomainInfoTableInit(); });
    result |= InRole(kConfigRole, [] { return DOM_DomainInfoTableInit(); });
    return result;
}

/// Tears both down, the configuration role first, and takes the service table away.
inline uint32_t FiniBothRoles() {
    const AAADService service = RoleService();
    DOM_SetAAADService(&service);
    uint32_t result = InRole(kConfigRole, [] { return DOM_DomainInfoTableFini(); });
    result |= InRole(kWorkingRole, [] { return DOM_DomainInfoTableFini(); });
    DOM_ResetAAADService();
    return result;
}

/// Both roles' tables for the length of a test.
class BothRoles {
  public:
    BothRoles() : init_result(InitBothRoles()) {}
    ~BothRoles() { (void)FiniBothRoles(); }
    BothRoles(const BothRoles&) = delete;
    BothRoles& operator=(const BothRoles&) = delete;

    const uint32_t init_result;
};

}  // namespace fake
