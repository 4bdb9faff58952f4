// The real daemon under eight client processes. Built with the thread sanitizer the daemon reports
// what its threads use without their locks, and a report is a failure here.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "daemon_log.h"
#include "record_query_client.h"
#include "record_reports.h"

using namespace daemon_test;

namespace {

constexpr int kClients = 8;
constexpr std::chrono::milliseconds kLoad{2500};

/// One client's share: changes of its own domain, changes of what all share, records, reads.
int Client(int client) {
    const std::string own = "client-" + std::to_string(client);
    const auto end = std::chrono::steady_clock::now() + kLoad;
    int wrong = 0;
    int rounds = 0;
    for (; std::chrono::steady_clock::now() < end; ++rounds) {
        wrong += CreateDomain(own) != DOM_OK;
        wrong += Change(DOM_EncodeState(own.c_str(), 1)) != DOM_OK;
        wrong += !GetDomain(own);
        wrong += Change(DOM_EncodeDeviceID(static_cast<uint32_t>(rounds))) != DOM_OK;
        wrong += Change(DOM_EncodeNasIdProfile(own.c_str())) == kNoReply;
        wrong += SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord(own)).result != DOM_OK;
        Query query(DOM_MSG_RECORD_ALL);
        query.List(static_cast<uint16_t>(DOM_RECORD_ONLINE_FAIL));
        wrong += AskPage(std::move(query)).kind == 0;
        wrong += CountDomains() == kNoReply;
        wrong += ListDomains().empty();
        wrong += Ask(CodeAlone(DOM_MSG_CMD_AUTHOR_FAIL), DOM_OP_GET).kind == 0;
        wrong += SendReport(CommandFailure("reload", own, "vty0", 1, 2)).result != DOM_OK;
        wrong += DeleteDomain(own) != DOM_OK;
    }
    return rounds == 0 ? 100 : std::min(wrong, 99);
}

using DaemonLoad = DaemonTestWithLog;

TEST_F(DaemonLoad, EightClientsFindItsThreadsInOrder) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_TRUE(StartWithLog([] {
        // All reports, and an exit code that no test expects.
        setenv("TSAN_OPTIONS", "halt_on_error=0:exitcode=66", 1);
    }));
    KeepAllRecords();
    std::vector<pid_t> clients;
    for (int client = 0; client < kClients; ++client) {
        const pid_t pid = fork();
        if (pid == 0) _exit(Client(client));
        clients.push_back(pid);
    }
    for (const pid_t pid : clients) {
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0) << "answers that were wrong";
    }
    EXPECT_EQ(CountDomains(), 1u);
    EXPECT_EQ(daemon_.Terminate(), 0);
    EXPECT_EQ(LinesWith("ThreadSanitizer"), 0);
}

}  // namespace
