// The saved configuration of a daemon that is not running.
#pragma once

#include <platform/dbm.h>

#include "daemon_process.h"

namespace daemon_test {

class StoppedDatabase {
  public:
    explicit StoppedDatabase(const DaemonProcess& daemon) {
        EXPECT_EQ(DBM_SetRoot(daemon.StateDir().c_str(), daemon.RunDir().c_str()), 0u);
        handle_ = DOM_OpenDomainDBM();
        EXPECT_NE(handle_, DBM_INVALID_HANDLE);
    }
    ~StoppedDatabase() { DBM_Close(handle_); }
    StoppedDatabase(const StoppedDatabase&) = delete;
    StoppedDatabase& operator=(const StoppedDatabase&) = delete;

    DBM_HANDLE Handle() const { return handle_; }

    /// Keys are stored with their terminator.
    bool Has(const std::string& key) const {
        return DBM_IsKeyExist(handle_, key.c_str(), Length(key)) == 1;
    }
    void SetBinary(const std::string& key, const std::string& value, uint32_t value_type) {
        EXPECT_EQ(DBM_SetBinary(handle_, key.c_str(), Length(key), 0,
                                static_cast<uint32_t>(value.size()), value.data(), value_type),
                  0u);
    }
    std::string Binary(const std::string& key) const {
        std::string value(65536, '\0');
        const int32_t length = DBM_GetBinary(handle_, key.c_str(), Length(key), 0,
                                             static_cast<uint32_t>(value.size()), value.data());
        value.resize(length > 0 ? static_cast<size_t>(length) : 0);
        return value;
    }

  private:
    static uint32_t Length(const std::string& key) { return static_cast<uint32_t>(key.size() + 1); }

    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
};

}  // namespace daemon_test
