// Stage of the tests that save policies: the working role's.
#pragma once

#include "unit/both_roles.h"

namespace aaadom {

/// `set_handle` gives the policies under test their database.
template <void (*set_handle)(DBM_HANDLE) noexcept>
class SavedPolicyTest : public SavedRolesTest<set_handle> {
  protected:
    void SetUp() override {
        SavedRolesTest<set_handle>::SetUp();
        fake::role_of_this_thread = fake::kWorkingRole;
    }
    using SavedRolesTest<set_handle>::handle_;
};

}  // namespace aaadom
