// A configuration database in a directory of its own, gone with the test.
#pragma once

#include <aaadom/database.h>
#include <gtest/gtest.h>
#include <platform/dbm.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace golden {

class TemporaryDatabase : public ::testing::Test {
  protected:
    void SetUp() override {
        char pattern[] = "/tmp/aaadom-golden-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        directory_ = pattern;
        ASSERT_EQ(DBM_SetRoot(directory_.c_str(), directory_.c_str()), 0u);
        handle_ = DOM_CreateDomainDBM();
        ASSERT_NE(handle_, DBM_INVALID_HANDLE);
    }
    void TearDown() override {
        DBM_Close(handle_);
        if (!directory_.empty()) std::filesystem::remove_all(directory_);
    }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;

  private:
    std::string directory_;
};

}  // namespace golden
