#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>
#include <vector>

#include "unit/platform/lipc/runtime_dir.h"

namespace {

class LipcClient : public LipcTest {};

TEST_F(LipcClient, OnlyTheNamedFamilyTypeAndProtocolAreServed) {
    const int32_t wrong[][3] = {{1, 2, 1}, {37, 1, 1}, {37, 2, 0}, {0, 0, 0}, {-1, -1, -1}};
    for (const auto& [family, type, protocol] : wrong) {
        errno = 0;
        EXPECT_EQ(-1, LIPC_Socket(family, type, protocol));
        EXPECT_EQ(EAFNOSUPPORT, errno);
    }
}

TEST_F(LipcClient, SocketIsSequencedPacketsAndCloseOnExec) {
    const int32_t fd = Socket();
    ASSERT_GE(fd, 0);
    int type = 0;
    socklen_t length = sizeof type;
    EXPECT_EQ(0, getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &length));
    EXPECT_EQ(SOCK_SEQPACKET, type);
    EXPECT_TRUE(fcntl(fd, F_GETFD) & FD_CLOEXEC);
    LIPC_Close(fd);
    EXPECT_EQ(-1, fcntl(fd, F_GETFD));
}

TEST_F(LipcClient, ClosingNothingIsIgnored) {
    LIPC_Close(-1);
}

TEST_F(LipcClient, AWrongAddressIsInvalid) {
    const int32_t server = Serve();
    const int32_t fd = Socket();
    LIPC_ADDRESS wrong_length = kAddress, wrong_family = kAddress;
    wrong_length.length = 15;
    wrong_family.family = 1;
    const std::pair<const void*, uint32_t> wrong[] = {{nullptr, 16},       {&kAddress, 15},
                                                      {&kAddress, 17},     {&kAddress, 0},
                                                      {&wrong_length, 16}, {&wrong_family, 16}};
    for (const auto& [address, length] : wrong) {
        errno = 0;
        EXPECT_EQ(-1, LIPC_Connect(fd, address, length));
        EXPECT_EQ(EINVAL, errno);
    }
    EXPECT_EQ(0, Connect(fd)) << "the socket is still usable";
    LIPC_Close(fd);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, AnUnalignedAddressConnects) {
    const int32_t server = Serve();
    const int32_t fd = Socket();
    char raw[17];
    memcpy(raw + 1, &kAddress, 16);
    EXPECT_EQ(0, LIPC_Connect(fd, raw + 1, 16));
    LIPC_Close(fd);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, NobodyServesGivesNoEntryOrRefused) {
    const int32_t fd = Socket();
    EXPECT_EQ(-1, Connect(fd));
    EXPECT_EQ(ENOENT, errno);
    const int32_t server = Serve();
    const std::string kept = SocketFile() + ".kept";
    ASSERT_EQ(0, rename(SocketFile().c_str(), kept.c_str()));
    LIPC_ServerClose(server);
    ASSERT_EQ(0, rename(kept.c_str(), SocketFile().c_str()));
    EXPECT_EQ(-1, Connect(fd)) << "the file of a dead server";
    EXPECT_EQ(ECONNREFUSED, errno);
    LIPC_Close(fd);
}

TEST_F(LipcClient, ConnectingTwiceIsAlreadyConnected) {
    const int32_t server = Serve();
    const int32_t fd = Socket();
    EXPECT_EQ(0, Connect(fd));
    EXPECT_EQ(-1, Connect(fd));
    EXPECT_EQ(EISCONN, errno);
    LIPC_Close(fd);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, OtherIdentifiersAreOtherEndpoints) {
    const int32_t server = Serve();
    const int32_t fd = Socket();
    const LIPC_ADDRESS other{16, 37, kEndpoint, 0x0081, {}};
    EXPECT_EQ(-1, LIPC_Connect(fd, &other, sizeof other));
    EXPECT_EQ(ENOENT, errno);
    LIPC_Close(fd);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, ALargeMessagePassesInOnePacketBothWays) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    ASSERT_EQ(0, Connect(client));
    const int32_t accepted = LIPC_ServerAccept(server, nullptr);
    const std::vector<char> sent(200 * 1024, 'm');
    std::vector<char> received(sent.size() + 1);
    for (const auto& [from, to] : {std::pair{client, accepted}, std::pair{accepted, client}}) {
        EXPECT_EQ(static_cast<ssize_t>(sent.size()), send(from, sent.data(), sent.size(), 0));
        EXPECT_EQ(static_cast<ssize_t>(sent.size()), recv(to, received.data(), received.size(), 0));
    }
    LIPC_Close(accepted);
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, ALargeMessagePassesForAnOrdinaryUser) {
    if (getuid() != 0) GTEST_SKIP() << "the test above runs as an ordinary user already";
    ASSERT_EQ(0, chmod(root_.c_str(), 0755));
    const int32_t server = Serve();
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(2);
        const int32_t fd = Socket();
        const std::vector<char> sent(200 * 1024, 'm');
        if (Connect(fd) != 0) _exit(3);
        _exit(send(fd, sent.data(), sent.size(), 0) == static_cast<ssize_t>(sent.size()) ? 0 : 4);
    }
    int status = -1;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, ADeadServerIsNoticedAtOnce) {
    const int32_t server = Serve();
    const int32_t accepted_client = Socket(), waiting_client = Socket();
    ASSERT_EQ(0, Connect(accepted_client));
    const int32_t accepted = LIPC_ServerAccept(server, nullptr);
    ASSERT_EQ(0, Connect(waiting_client));
    LIPC_Close(accepted);
    LIPC_ServerClose(server);
    for (const int32_t fd : {accepted_client, waiting_client}) {
        pollfd poll_fd{fd, POLLIN, 0};
        EXPECT_EQ(1, poll(&poll_fd, 1, 0));
        char byte;
        EXPECT_LE(recv(fd, &byte, 1, 0), 0);
        LIPC_Close(fd);
    }
}

TEST_F(LipcClient, AFullQueueIsWaitedForWithinTheLimit) {
    const int32_t server = Serve();
    ASSERT_EQ(0, listen(server, 0)) << "room for one waiting connection";
    const int32_t first = Socket(), second = Socket();
    ASSERT_EQ(0, Connect(first));
    LIPC_SetWaitLimit(50);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(-1, Connect(second));
    EXPECT_EQ(EAGAIN, errno);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(40));
    EXPECT_LT(waited, std::chrono::seconds(20));

    LIPC_SetWaitLimit(0);
    std::thread acceptor([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        LIPC_Close(LIPC_ServerAccept(server, nullptr));
    });
    EXPECT_EQ(0, Connect(second)) << "the queue is served while the client waits";
    acceptor.join();
    LIPC_Close(first);
    LIPC_Close(second);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, ASignalInterruptsAWaitingConnect) {
    const int32_t server = Serve();
    ASSERT_EQ(0, listen(server, 0));
    const int32_t first = Socket(), second = Socket();
    ASSERT_EQ(0, Connect(first));
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ASSERT_EQ(0, sigaction(SIGUSR1, &action, nullptr));
    std::atomic<bool> done{false};
    const pthread_t self = pthread_self();
    std::thread signaller([&] {
        while (!done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            pthread_kill(self, SIGUSR1);
        }
    });
    EXPECT_EQ(-1, Connect(second));
    EXPECT_EQ(EINTR, errno);
    done = true;
    signaller.join();
    LIPC_Close(first);
    LIPC_Close(second);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, AnUnusableRuntimeDirectoryIsRefusedAndTheOldOneStays) {
    const int32_t server = Serve();
    EXPECT_EQ(0x40010001u, LIPC_SetRuntimeDir(nullptr));
    EXPECT_EQ(0x40010001u, LIPC_SetRuntimeDir(""));
    EXPECT_EQ(0x40010001u, LIPC_SetRuntimeDir(std::string(88, 'd').c_str()));
    const int32_t fd = Socket();
    EXPECT_EQ(0, Connect(fd));
    LIPC_Close(fd);
    LIPC_ServerClose(server);
}

TEST_F(LipcClient, TheLongestRuntimeDirectoryWorks) {
    const std::string directory = root_ + "/" + std::string(87 - root_.size() - 1, 'd');
    ASSERT_EQ(87u, directory.size());
    ASSERT_EQ(0u, LIPC_SetRuntimeDir(directory.c_str()));
    const int32_t server = Serve();
    EXPECT_GE(server, 0);
    const int32_t fd = Socket();
    EXPECT_EQ(0, Connect(fd));
    EXPECT_TRUE(std::filesystem::exists(directory + "/lipc-660c-0080.sock"));
    LIPC_Close(fd);
    LIPC_ServerClose(server);
}

}  // namespace
