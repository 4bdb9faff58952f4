/* Every test gets two fresh root directories and listens to the log lines. */
#ifndef TESTS_PLATFORM_DBM_DATABASE_TEST_H
#define TESTS_PLATFORM_DBM_DATABASE_TEST_H

#include <gtest/gtest.h>
#include <platform/dbm.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "dbm/environment.h"
#include "dbm/report.h"

constexpr uint32_t kFailed = 0x40010001;

class DatabaseTest : public testing::Test {
  protected:
    void SetUp() override {
        char path[] = "/tmp/dbm_test_XXXXXX";
        ASSERT_NE(mkdtemp(path), nullptr);
        base_ = path;
        ASSERT_EQ(chmod(path, 0755), 0);
        ASSERT_EQ(DBM_SetRoot((base_ + "/lib").c_str(), (base_ + "/run").c_str()), 0u);
        Lines().clear();
        aaadom::dbm::SetReportSink([](const char* line) {
            const std::lock_guard<std::mutex> guard(LinesMutex());
            Lines().push_back(line);
        });
    }

    void TearDown() override {
        for (DBM_HANDLE handle : opened_) (void)DBM_Close(handle);
        aaadom::dbm::dbm_SetMapSize(0);
        aaadom::dbm::SetReportSink(nullptr);
        std::filesystem::remove_all(base_);
    }

    static std::mutex& LinesMutex() {
        static std::mutex mutex;
        return mutex;
    }
    static std::vector<std::string>& Lines() {
        static std::vector<std::string> lines;
        return lines;
    }

    DBM_HANDLE Create(const char* database = "DOM_DB", const char* table = "isp-domain",
                      uint32_t persistent = 1) {
        DBM_OPEN_ATTR attr{};
        attr.persistent = persistent;
        attr.text[0] = '1';
        DBM_HANDLE handle = DBM_INVALID_HANDLE;
        EXPECT_EQ(DBM_Open(database, table, DBM_MODE_CREATE, &attr, &handle), 0u);
        opened_.push_back(handle);
        return handle;
    }

    DBM_HANDLE OpenExisting(const char* database = "DOM_DB", const char* table = "isp-domain") {
        DBM_OPEN_ATTR attr{};
        DBM_HANDLE handle = DBM_INVALID_HANDLE;
        (void)DBM_Open(database, table, DBM_MODE_OPEN, &attr, &handle);
        if (handle != DBM_INVALID_HANDLE) opened_.push_back(handle);
        return handle;
    }

    void CloseAll() {
        for (DBM_HANDLE handle : opened_) ASSERT_EQ(DBM_Close(handle), 0u);
        opened_.clear();
    }

    static uint32_t Set(DBM_HANDLE handle, const std::string& key, const std::string& value,
                        uint32_t type = 2) {
        return DBM_SetBinary(handle, key.data(), static_cast<uint32_t>(key.size()), -1,
                             static_cast<uint32_t>(value.size()), value.data(), type);
    }

    static std::string Get(DBM_HANDLE handle, const std::string& key) {
        std::string buffer(200000, '\0');
        const int32_t got = DBM_GetBinary(handle, key.data(), static_cast<uint32_t>(key.size()), 0,
                                          static_cast<uint32_t>(buffer.size()), buffer.data());
        if (got < 0) return "<failed>";
        buffer.resize(static_cast<size_t>(got));
        return buffer;
    }

    static bool Exists(DBM_HANDLE handle, const std::string& key) {
        return DBM_IsKeyExist(handle, key.data(), static_cast<uint32_t>(key.size())) == 1;
    }

    /* Runs work in a child process that was forked before it opens anything; its exit code. */
    template <class Work>
    static int InChild(Work work) {
        const pid_t child = fork();
        if (child == 0) _exit(work());
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    }

    std::string DataFile(const char* database = "DOM_DB", const char* root = "lib") const {
        return base_ + "/" + root + "/" + database + "/data.mdb";
    }

    std::string base_;
    std::vector<DBM_HANDLE> opened_;
};

#endif
