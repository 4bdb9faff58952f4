// A temporary runtime directory with the calls that every test of the transport makes.
#pragma once

#include <gtest/gtest.h>
#include <platform/lipc.h>

#include <cstdlib>
#include <filesystem>
#include <string>

class LipcTest : public ::testing::Test {
  protected:
    static constexpr uint16_t kEndpoint = 0x660C;
    static constexpr uint16_t kSubEndpoint = 0x0080;
    static constexpr LIPC_ADDRESS kAddress{16, 37, kEndpoint, kSubEndpoint, {}};

    void SetUp() override {
        char name[] = "/tmp/aaad-lipc-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(name));
        root_ = name;
        directory_ = root_ + "/run";
        ASSERT_EQ(0u, LIPC_SetRuntimeDir(directory_.c_str()));
    }
    void TearDown() override {
        LIPC_SetWaitLimit(0);
        std::filesystem::remove_all(root_);
    }
    static int32_t Serve() { return LIPC_ServerOpen(kEndpoint, kSubEndpoint, 0666); }
    static int32_t Socket() { return LIPC_Socket(37, 2, 1); }
    static int32_t Connect(int32_t fd) { return LIPC_Connect(fd, &kAddress, sizeof kAddress); }
    std::string SocketFile() const { return directory_ + "/lipc-660c-0080.sock"; }
    std::string LockFile() const { return directory_ + "/lipc-660c-0080.lock"; }

    std::string root_;
    std::string directory_;
};
