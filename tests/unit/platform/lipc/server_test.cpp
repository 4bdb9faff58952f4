#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <vector>

#include "unit/platform/lipc/runtime_dir.h"

namespace {

class LipcServer : public LipcTest {
  protected:
    static mode_t ModeOf(const std::string& path) {
        struct stat file {};
        EXPECT_EQ(0, lstat(path.c_str(), &file)) << path;
        return file.st_mode & 07777;
    }
    /// A process that serves the endpoint until it is killed.
    static pid_t ServeInChild() {
        int ready[2];
        EXPECT_EQ(0, pipe(ready));
        const pid_t child = fork();
        if (child == 0) {
            const char ok = Serve() >= 0 ? 'y' : 'n';
            (void)!write(ready[1], &ok, 1);
            for (;;) pause();
        }
        char ok = 0;
        EXPECT_EQ(1, read(ready[0], &ok, 1));
        EXPECT_EQ('y', ok);
        close(ready[0]);
        close(ready[1]);
        return child;
    }
    static void Kill(pid_t child) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
};

TEST_F(LipcServer, MakesTheDirectoryAndTheFileWithTheirModesWhateverTheUmask) {
    const mode_t before = umask(077);
    const int32_t server = Serve();
    umask(before);
    ASSERT_GE(server, 0);
    EXPECT_EQ(0755u, ModeOf(directory_));
    EXPECT_EQ(0666u, ModeOf(SocketFile()));
    LIPC_ServerClose(server);
    const int32_t private_server = LIPC_ServerOpen(kEndpoint, kSubEndpoint, 0600);
    EXPECT_EQ(0600u, ModeOf(SocketFile()));
    LIPC_ServerClose(private_server);
}

TEST_F(LipcServer, AnExistingDirectoryKeepsItsMode) {
    ASSERT_EQ(0, mkdir(directory_.c_str(), 0700));
    const int32_t server = Serve();
    EXPECT_EQ(0700u, ModeOf(directory_));
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, AMissingParentIsAnError) {
    ASSERT_EQ(0u, LIPC_SetRuntimeDir((root_ + "/no/run").c_str()));
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(ENOENT, errno);
}

TEST_F(LipcServer, DescriptorsNeverBlockAndAreCloseOnExec) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    ASSERT_EQ(0, Connect(client));
    const int32_t accepted = LIPC_ServerAccept(server, nullptr);
    for (const int32_t fd : {server, accepted}) {
        EXPECT_TRUE(fcntl(fd, F_GETFL) & O_NONBLOCK);
        EXPECT_TRUE(fcntl(fd, F_GETFD) & FD_CLOEXEC);
    }
    LIPC_Close(accepted);
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, AcceptsNothingWhenNobodyWaits) {
    const int32_t server = Serve();
    LIPC_PEER peer{7, 7, 7};
    EXPECT_EQ(-1, LIPC_ServerAccept(server, &peer));
    EXPECT_EQ(EAGAIN, errno);
    EXPECT_EQ(7, peer.pid);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, TellsWhoConnected) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    ASSERT_EQ(0, Connect(client));
    LIPC_PEER peer{};
    const int32_t accepted = LIPC_ServerAccept(server, &peer);
    EXPECT_GE(accepted, 0);
    EXPECT_EQ(getpid(), peer.pid);
    EXPECT_EQ(getuid(), peer.uid);
    EXPECT_EQ(getgid(), peer.gid);
    LIPC_Close(accepted);
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, TellsAForeignUser) {
    if (getuid() != 0) GTEST_SKIP() << "only root can become another user";
    ASSERT_EQ(0, chmod(root_.c_str(), 0755));
    const int32_t server = Serve();
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65533) != 0) _exit(1);
        _exit(Connect(Socket()) == 0 ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status);
    LIPC_PEER peer{};
    const int32_t accepted = LIPC_ServerAccept(server, &peer);
    EXPECT_GE(accepted, 0) << "a client that died after connecting is still told apart";
    EXPECT_EQ(child, peer.pid);
    EXPECT_EQ(65533u, peer.uid);
    EXPECT_EQ(65534u, peer.gid);
    LIPC_Close(accepted);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, ManyConnectionsWaitInTheQueue) {
    const int32_t server = Serve();
    std::vector<int32_t> clients;
    for (int i = 0; i < 200; ++i) {
        clients.push_back(Socket());
        ASSERT_EQ(0, Connect(clients.back())) << i;
    }
    int accepted = 0;
    for (int32_t fd; (fd = LIPC_ServerAccept(server, nullptr)) >= 0; ++accepted) LIPC_Close(fd);
    EXPECT_EQ(200, accepted);
    for (const int32_t fd : clients) LIPC_Close(fd);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, ALivingServerIsNotReplaced) {
    const int32_t server = Serve();
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(EADDRINUSE, errno);
    const int32_t client = Socket();
    EXPECT_EQ(0, Connect(client)) << "the refused one left the endpoint alone";
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, ALivingServerOfAnotherProcessIsNotReplaced) {
    const pid_t child = ServeInChild();
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(EADDRINUSE, errno);
    Kill(child);
}

TEST_F(LipcServer, ALivingServerIsNotReplacedEvenWithoutItsLockFile) {
    const pid_t child = ServeInChild();
    ASSERT_EQ(0, unlink(LockFile().c_str()));
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(EADDRINUSE, errno);
    const int32_t client = Socket();
    EXPECT_EQ(0, Connect(client));
    LIPC_Close(client);
    Kill(child);
}

TEST_F(LipcServer, TheFileOfADeadServerIsReplaced) {
    Kill(ServeInChild());
    EXPECT_TRUE(std::filesystem::exists(SocketFile()));
    const int32_t server = Serve();
    EXPECT_GE(server, 0);
    const int32_t client = Socket();
    EXPECT_EQ(0, Connect(client));
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

TEST_F(LipcServer, SomethingThatIsNoSocketIsNotRemoved) {
    ASSERT_EQ(0, mkdir(directory_.c_str(), 0755));
    std::ofstream(SocketFile()) << "precious";
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(EEXIST, errno);
    EXPECT_EQ(8u, std::filesystem::file_size(SocketFile()));
}

TEST_F(LipcServer, ALockFileThatIsALinkIsNotFollowed) {
    ASSERT_EQ(0, mkdir(directory_.c_str(), 0755));
    ASSERT_EQ(0, symlink((root_ + "/victim").c_str(), LockFile().c_str()));
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(ELOOP, errno);
    EXPECT_FALSE(std::filesystem::exists(root_ + "/victim"));
}

TEST_F(LipcServer, ClosingRemovesTheSocketFile) {
    LIPC_ServerClose(Serve());
    EXPECT_FALSE(std::filesystem::exists(SocketFile()));
    const int32_t again = Serve();
    EXPECT_GE(again, 0);
    LIPC_ServerClose(again);
}

TEST_F(LipcServer, ClosingLeavesAFileThatIsAnothersAlone) {
    const int32_t server = Serve();
    ASSERT_EQ(0, unlink(SocketFile().c_str()));
    std::ofstream(SocketFile()) << "another's";
    LIPC_ServerClose(server);
    EXPECT_TRUE(std::filesystem::exists(SocketFile()));
}

TEST_F(LipcServer, ClosingWhatIsNoServerIsIgnored) {
    const int32_t fd = Socket();
    LIPC_ServerClose(fd);
    LIPC_ServerClose(-1);
    EXPECT_NE(-1, fcntl(fd, F_GETFD)) << "a client's socket is not the server's to close";
    LIPC_Close(fd);
}

TEST_F(LipcServer, AcceptedConnectionsOutliveTheServer) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    ASSERT_EQ(0, Connect(client));
    const int32_t accepted = LIPC_ServerAccept(server, nullptr);
    LIPC_ServerClose(server);
    char byte = 'x';
    EXPECT_EQ(1, send(client, &byte, 1, 0));
    EXPECT_EQ(1, recv(accepted, &byte, 1, 0));
    LIPC_Close(accepted);
    LIPC_Close(client);
}

TEST_F(LipcServer, TwoEndpointsAreServedSideBySide) {
    const int32_t one = Serve();
    const int32_t other = LIPC_ServerOpen(kEndpoint, 0x0081, 0666);
    EXPECT_GE(other, 0);
    LIPC_ServerClose(one);
    EXPECT_TRUE(std::filesystem::exists(directory_ + "/lipc-660c-0081.sock"));
    LIPC_ServerClose(other);
}

}  // namespace
