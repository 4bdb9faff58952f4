// Stage of the tests that save policies: both roles, a database, and no lock around its calls.
#pragma once

#include <aaadom/database.h>
#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace aaadom {

/// `set_handle` gives the policies under test their database.
template <void (*set_handle)(DBM_HANDLE) noexcept>
class SavedPolicyTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_before_ = fake::LiveMessages();
        ASSERT_EQ(fake::InitBothRoles(), DOM_OK);
        fake::role_of_this_thread = fake::kWorkingRole;
        handle_ = DOM_CreateDomainDBM();
        ASSERT_NE(handle_, DBM_INVALID_HANDLE);
        set_handle(handle_);
        fake::ClearDbmCalls();
    }
    void TearDown() override {
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocks(), 0);
        for (const fake::DbmCall& call : fake::DbmCalls())
            EXPECT_EQ(call.held_locks, 0) << call.call << " with the policies locked";
        set_handle(DBM_INVALID_HANDLE);
        DBM_Close(handle_);
        fake::role_of_this_thread = fake::kWorkingRole;
        (void)fake::FiniBothRoles();
        EXPECT_EQ(fake::LiveMessages(), live_before_);
        EXPECT_TRUE(fake::Misuses().empty());
    }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;

  private:
    int64_t live_before_ = 0;
};

}  // namespace aaadom
