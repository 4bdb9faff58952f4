// Stages that many tests begin with: the tables of both roles, and with them a saved configuration.
#pragma once

#include <aaadom/database.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace aaadom {

/// The calling thread has the configuration role. Afterwards no lock is held, no message is left
/// and the platform was not misused.
class BothRolesTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fake::Reset();
        live_before_ = fake::LiveMessages();
        ASSERT_EQ(fake::InitBothRoles(), DOM_OK);
        fake::role_of_this_thread = fake::kConfigRole;
    }
    void TearDown() override {
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocks(), 0);
        fake::role_of_this_thread = fake::kWorkingRole;
        (void)fake::FiniBothRoles();
        EXPECT_EQ(fake::LiveMessages(), live_before_);
        EXPECT_TRUE(fake::Misuses().empty());
    }

  private:
    int64_t live_before_ = 0;
};

/// With an empty database, which `set_handle` gives to what is under test. No lock may be held
/// around its calls.
template <void (*set_handle)(DBM_HANDLE) noexcept>
class SavedRolesTest : public BothRolesTest {
  protected:
    void SetUp() override {
        BothRolesTest::SetUp();
        if (HasFatalFailure()) return;
        handle_ = DOM_CreateDomainDBM();
        ASSERT_NE(handle_, DBM_INVALID_HANDLE);
        set_handle(handle_);
        fake::ClearDbmCalls();
    }
    void TearDown() override {
        fake::DisarmFailures();
        for (const fake::DbmCall& call : fake::DbmCalls())
            EXPECT_EQ(call.held_locks, 0) << call.call << " with a lock held";
        set_handle(DBM_INVALID_HANDLE);
        DBM_Close(handle_);
        EXPECT_EQ(fake::OpenDatabaseHandles(), 0);
        BothRolesTest::TearDown();
    }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

}  // namespace aaadom
