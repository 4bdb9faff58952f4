// The endpoint with each of its system calls refused in turn.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "system_faults.h"
#include "unit/platform/fault_window.h"
#include "unit/platform/lipc/runtime_dir.h"

namespace {

using fault_window::Refused;
using fault_window::Window;

class EndpointFaults : public LipcTest {
  protected:
    void TearDown() override {
        system_faults::Answer() = {};
        LipcTest::TearDown();
    }
    // The socket file of a server that was killed.
    void LeaveStaleFile() {
        std::filesystem::create_directory(directory_);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        SocketFile().copy(address.sun_path, sizeof address.sun_path - 1);
        const int fd = socket(AF_UNIX, SOCK_SEQPACKET, 0);
        ASSERT_EQ(0, bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address));
        close(fd);
    }
    // Opens again and again, each time with another call refused; begin() sets the stage.
    template <class Begin>
    void SweepOpen(Begin begin) {
        begin();
        int calls = 0;
        {
            const Window window(0, 0);
            const int32_t server = Serve();
            calls = Window::Calls();
            ASSERT_GE(server, 0);
            LIPC_ServerClose(server);
        }
        ASSERT_GT(calls, 6);
        for (int failing = 1; failing <= calls; ++failing) {
            std::filesystem::remove_all(directory_);
            begin();
            int32_t server = -1;
            int error = 0;
            {
                const Window window(failing, EIO);
                server = Serve();
                error = errno;
            }
            SCOPED_TRACE(Refused());
            const bool asks_the_stale_file = std::string(Refused()) == "connect" ||
                                             (std::string(Refused()) == "socket" && server >= 0);
            if (server < 0) {
                EXPECT_EQ(std::string(Refused()) == "new" ? ENOMEM : EIO, error);
                EXPECT_LT(Connect(Socket()), 0);
                server = Serve();
            } else {
                EXPECT_TRUE(asks_the_stale_file);
            }
            ASSERT_GE(server, 0);
            EXPECT_EQ(0, Connect(Socket()));
            LIPC_ServerClose(server);
            EXPECT_FALSE(std::filesystem::exists(SocketFile()));
        }
    }
};

TEST_F(EndpointFaults, OpeningTellsWhatWasRefusedAndLeavesNothingInTheWay) {
    (void)Socket();  // the look for the native family is done
    SweepOpen([] {});
}

// A stale file that nobody can be asked about is taken for stale: the lock is held.
TEST_F(EndpointFaults, OpeningOverAStaleFileTellsWhatWasRefused) {
    (void)Socket();
    SweepOpen([this] { LeaveStaleFile(); });
}

TEST_F(EndpointFaults, FileOfAServerWithAFullQueueIsNotReplaced) {
    LeaveStaleFile();
    const Window window(1, EAGAIN, "connect");
    EXPECT_EQ(-1, Serve());
    EXPECT_EQ(EADDRINUSE, errno);
    EXPECT_TRUE(std::filesystem::exists(SocketFile()));
}

TEST_F(EndpointFaults, InterruptedWaitForTheLockIsRepeated) {
    const Window window(1, EINTR, "flock");
    const int32_t server = Serve();
    EXPECT_GE(server, 0);
    LIPC_ServerClose(server);
}

TEST_F(EndpointFaults, AcceptingIsRepeatedWhenTheNextClientMayBeThere) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    for (const int error : {EINTR, ECONNABORTED}) {
        ASSERT_EQ(0, Connect(Socket()));
        const Window window(1, error, "accept4");
        EXPECT_GE(LIPC_ServerAccept(server, nullptr), 0) << error;
    }
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

TEST_F(EndpointFaults, AcceptingTellsThatThereIsNoDescriptor) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    ASSERT_EQ(0, Connect(client));
    {
        const Window window(1, EMFILE, "accept4");
        EXPECT_EQ(-1, LIPC_ServerAccept(server, nullptr));
        EXPECT_EQ(EMFILE, errno);
    }
    EXPECT_GE(LIPC_ServerAccept(server, nullptr), 0);
    LIPC_ServerClose(server);
}

// Whoever cannot be named gets no rights: the connection is closed.
TEST_F(EndpointFaults, ClientThatCannotBeNamedIsClosed) {
    const int32_t server = Serve();
    const int32_t client = Socket();
    ASSERT_EQ(0, Connect(client));
    LIPC_PEER peer{1, 2, 3};
    {
        const Window window(1, EIO, "getsockopt");
        EXPECT_EQ(-1, LIPC_ServerAccept(server, &peer));
        EXPECT_EQ(EIO, errno);
    }
    EXPECT_EQ(2u, peer.uid);
    char byte;
    EXPECT_EQ(0, recv(client, &byte, 1, MSG_DONTWAIT));
    LIPC_Close(client);
    LIPC_ServerClose(server);
}

// An ordinary user may not force the room for packets; the second way stays.
TEST_F(EndpointFaults, RoomForPacketsIsAskedForInTheSecondWay) {
    errno = 0;
    const Window window(1, EPERM, "setsockopt");
    const int32_t fd = Socket();
    ASSERT_GE(fd, 0);
    EXPECT_EQ(0, errno);
    EXPECT_EQ(2, Window::Calls());
    int bytes = 0;
    socklen_t length = sizeof bytes;
    ASSERT_EQ(0, getsockopt(fd, SOL_SOCKET, SO_SNDBUF, &bytes, &length));
    EXPECT_GT(bytes, 200 * 1024);
    LIPC_Close(fd);
}

TEST_F(EndpointFaults, NoDescriptorMeansNoSocket) {
    (void)Socket();
    const Window window(1, EMFILE, "socket");
    EXPECT_EQ(-1, Socket());
    EXPECT_EQ(EMFILE, errno);
}

}  // namespace
