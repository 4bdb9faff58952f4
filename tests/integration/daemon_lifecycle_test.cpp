// Start, stop, and who may do what.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

using DaemonLifecycle = DaemonTest;
using DaemonPermission = DaemonTest;

constexpr uid_t kNobody = 65534;
constexpr gid_t kStrangeGroup = 54321;

TEST_F(DaemonLifecycle, SigtermStopsCleanly) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    EXPECT_EQ(daemon_.Terminate(), 0);
    EXPECT_EQ(CountDomains(), kNoReply);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(GetDomain("corp"));
}

TEST_F(DaemonLifecycle, SigintStopsCleanly) {
    kill(daemon_.Pid(), SIGINT);
    EXPECT_EQ(daemon_.Terminate(), 0);
}

TEST_F(DaemonLifecycle, StopsWhileClientsKeepAsking) {
    std::atomic<bool> stop{false};
    std::vector<std::thread> clients;
    std::atomic<int> lost{0};
    for (int client = 0; client < 4; ++client) {
        clients.emplace_back([&] {
            while (!stop) {
                if (CountDomains() == kNoReply) {
                    ++lost;
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
            }
        });
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(daemon_.Terminate(), 0);
    stop = true;
    for (std::thread& client : clients) client.join();
}

TEST_F(DaemonLifecycle, SecondDaemonIsRefusedAndToldWhoHoldsTheDirectory) {
    std::string error;
    EXPECT_EQ(daemon_.RunToEnd(daemon_.DirectoryArguments(), error), 1);
    EXPECT_NE(error.find(std::to_string(daemon_.Pid())), std::string::npos) << error;
    EXPECT_NE(error.find("aaad.lock"), std::string::npos) << error;
    EXPECT_EQ(CreateDomain("still-served"), DOM_OK);
}

TEST_F(DaemonLifecycle, SecondDaemonOnTheSameDatabaseIsRefused) {
    std::string error;
    EXPECT_EQ(daemon_.RunToEnd(
                  {"--state-dir", daemon_.StateDir(), "--run-dir", daemon_.RunDir() + "2"}, error),
              1);
    EXPECT_NE(error.find(std::to_string(daemon_.Pid())), std::string::npos) << error;
}

TEST_F(DaemonLifecycle, LockFileHoldsTheProcessId) {
    std::ifstream file(daemon_.RunDir() + "/aaad.lock");
    pid_t pid = 0;
    file >> pid;
    EXPECT_EQ(pid, daemon_.Pid());
}

TEST_F(DaemonLifecycle, OtherUsersCannotTakeTheLock) {
    for (const std::string& directory : {daemon_.RunDir(), daemon_.StateDir()}) {
        struct stat status {};
        ASSERT_EQ(stat((directory + "/aaad.lock").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600u) << directory;
    }
}

TEST_F(DaemonLifecycle, LockOfADeadDaemonIsTakenOver) {
    daemon_.Kill();
    EXPECT_TRUE(std::filesystem::exists(daemon_.RunDir() + "/aaad.lock"));
    EXPECT_TRUE(daemon_.Start());
}

TEST(DaemonUsage, WrongOptionEndsWithTwo) {
    DaemonProcess daemon;
    std::string error;
    EXPECT_EQ(daemon.RunToEnd({"--no-such-option"}, error), 2);
}

TEST(DaemonUsage, HelpAndVersionEndWithZero) {
    DaemonProcess daemon;
    std::string error;
    EXPECT_EQ(daemon.RunToEnd({"--help"}, error), 0);
    EXPECT_EQ(daemon.RunToEnd({"--version"}, error), 0);
}

TEST(DaemonUsage, UnknownAdministratorsGroupIsNamed) {
    DaemonProcess daemon;
    std::vector<std::string> arguments = daemon.DirectoryArguments();
    arguments.insert(arguments.end(), {"--admin-group", "no-such-group-here"});
    std::string error;
    EXPECT_EQ(daemon.RunToEnd(arguments, error), 1);
    EXPECT_NE(error.find("no-such-group-here"), std::string::npos) << error;
}

TEST(DaemonUsage, DirectoryBelowAMissingOneIsNamed) {
    DaemonProcess daemon;
    std::string error;
    EXPECT_EQ(daemon.RunToEnd(
                  {"--state-dir", daemon.StateDir() + "/a/b", "--run-dir", daemon.RunDir()}, error),
              1);
    EXPECT_NE(error.find("/a/b"), std::string::npos) << error;
}

TEST(DaemonUsage, FileWithTheNameOfTheSocketIsNotRemoved) {
    DaemonProcess daemon;
    std::filesystem::create_directory(daemon.RunDir());
    const std::string file = daemon.RunDir() + "/lipc-660c-0080.sock";
    std::ofstream(file) << "precious";
    std::string error;
    EXPECT_EQ(daemon.RunToEnd(daemon.DirectoryArguments(), error), 1);
    EXPECT_NE(error.find("Move the file away"), std::string::npos) << error;
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(DaemonUsage, DamagedDatabaseIsNamed) {
    DaemonProcess daemon;
    ASSERT_TRUE(daemon.Start());
    ASSERT_EQ(daemon.Terminate(), 0);
    int damaged = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(daemon.StateDir())) {
        if (entry.path().filename() != "data.mdb") continue;
        std::ofstream(entry.path(), std::ios::trunc) << "this is no database, not even nearly one";
        ++damaged;
    }
    ASSERT_EQ(damaged, 1);
    std::string error;
    EXPECT_EQ(daemon.RunToEnd(daemon.DirectoryArguments(), error), 1);
    EXPECT_NE(error.find(daemon.StateDir()), std::string::npos) << error;
}

TEST_F(DaemonPermission, StrangerMayReadButNotChange) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    EXPECT_EQ(AsUser(kNobody, kStrangeGroup,
                     [] { return CreateDomain("mine") == AAAD_ERR_DENIED ? 0 : 1; }),
              0);
    EXPECT_EQ(AsUser(kNobody, kStrangeGroup,
                     [] { return DeleteDomain("corp") == AAAD_ERR_DENIED ? 0 : 1; }),
              0);
    EXPECT_EQ(AsUser(kNobody, kStrangeGroup, [] { return GetDomain("corp") ? 0 : 1; }), 0);
    EXPECT_EQ(CountDomains(), 2u);
}

TEST(DaemonAdministrators, MemberOfTheGroupMayChange) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
    DaemonProcess daemon;
    ASSERT_TRUE(daemon.Start({"--admin-group", "nogroup"}));
    // By the group of the process, and by the user database when the process runs with another one.
    EXPECT_EQ(AsUser(12345, kNobody, [] { return CreateDomain("a") == DOM_OK ? 0 : 1; }), 0);
    EXPECT_EQ(AsUser(kNobody, kStrangeGroup, [] { return CreateDomain("b") == DOM_OK ? 0 : 1; }),
              0);
    EXPECT_EQ(
        AsUser(12345, kStrangeGroup, [] { return CreateDomain("c") == AAAD_ERR_DENIED ? 0 : 1; }),
        0);
    EXPECT_EQ(CountDomains(), 3u);
}

TEST(DaemonAdministrators, OwnUserMayChange) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
    DaemonProcess daemon;
    for (const std::string& directory : {daemon.StateDir(), daemon.RunDir()}) {
        std::filesystem::create_directory(directory);
        ASSERT_EQ(chown(directory.c_str(), 4321, 4321), 0);
    }
    ASSERT_TRUE(daemon.Start({}, [] {
        if (setgid(4321) != 0 || setuid(4321) != 0) _exit(120);
    }));
    EXPECT_EQ(AsUser(4321, kStrangeGroup, [] { return CreateDomain("own") == DOM_OK ? 0 : 1; }), 0);
    EXPECT_EQ(
        AsUser(kNobody, kStrangeGroup, [] { return CreateDomain("x") == AAAD_ERR_DENIED ? 0 : 1; }),
        0);
}

}  // namespace
