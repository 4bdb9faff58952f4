// A real daemon on directories of its own, for tests that start, kill and ask it.
#pragma once

#include <aaadom/aaad_results.h>
#include <aaadom/aaadom.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace daemon_test {

struct MessageDestroyer {
    void operator()(TLV_MSG* message) const { TLV_Destroy(message); }
};
using Message = std::unique_ptr<TLV_MSG, MessageDestroyer>;
struct DomainDestroyer {
    void operator()(DomainInfo* record) const { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

/// What a change without any reply reads as; no daemon answers it.
constexpr uint32_t kNoReply = 0xFFFFFFFFu;

class DaemonProcess {
  public:
    /// Makes the directories and points this process's requests there; starts nothing.
    DaemonProcess();
    /// Kills what runs and removes the directories.
    ~DaemonProcess();
    DaemonProcess(const DaemonProcess&) = delete;
    DaemonProcess& operator=(const DaemonProcess&) = delete;

    /// Starts the daemon and waits until it answers. `in_child` runs before the program, e.g. to
    /// set limits. False when it ended instead.
    bool Start(const std::vector<std::string>& more_arguments = {},
               const std::function<void()>& in_child = {});
    /// The two steps of Start: the daemon runs from the first on, and serves after the second.
    void Launch(const std::vector<std::string>& more_arguments = {},
                const std::function<void()>& in_child = {});
    bool WaitUntilItServes();
    /// SIGKILL, and waits for the end.
    void Kill();
    /// SIGTERM, and waits; the exit code, -1 when a signal ended it.
    int Terminate();
    bool IsRunning();

    /// Runs the daemon's program to its end; its exit code, and what it wrote to standard error.
    int RunToEnd(const std::vector<std::string>& arguments, std::string& error_text);

    pid_t Pid() const { return pid_; }
    const std::string& StateDir() const { return state_dir_; }
    const std::string& RunDir() const { return run_dir_; }
    std::vector<std::string> DirectoryArguments() const;

  private:
    int Wait();

    std::string root_;
    std::string state_dir_;
    std::string run_dir_;
    pid_t pid_ = -1;
};

/// Sends a change; the daemon's result, kNoReply without one. `body` is consumed.
uint32_t Change(TLV_MSG* body, uint32_t operation = DOM_OP_SET);
/// Sends a read; the reply's kind and its nested message. `body` is consumed.
struct Answer {
    uint16_t kind = 0;
    Message body;
};
Answer Ask(TLV_MSG* body, uint32_t operation);
/// The result in a reply of kind DOM_REPLY_KIND_RESULT, kNoReply for any other.
uint32_t ResultOf(const Answer& answer);

uint32_t CreateDomain(const std::string& name);
uint32_t DeleteDomain(const std::string& name);
DomainPtr GetDomain(const std::string& name);
uint32_t CountDomains();
/// All names in the order of the walk, as the working role tells them.
std::vector<std::string> ListDomains();

/// Domain name and scheme index of a row of the scheme table.
using SchemeKey = std::pair<std::string, uint32_t>;
/// Both in the order of their walks.
std::vector<SchemeKey> ListSchemeRows();
std::vector<std::string> ListNasIdProfiles();

/// All replies of the walk through critical or authorization profiles, their VPN entries, or
/// accounting policies.
std::vector<Message> WalkCriticalProfiles();
std::vector<Message> WalkCriticalVpns();
std::vector<Message> WalkAuthorProfiles();
std::vector<Message> WalkAuthorVpns();
std::vector<Message> WalkAccountingPolicies();

/// A message that consists of its code.
TLV_MSG* CodeAlone(uint32_t code);
/// The bytes of a message.
std::vector<uint8_t> Image(TLV_MSG* message);

/// Every read that the daemon serves, as bytes: equal before and after means nothing got lost.
std::vector<std::vector<uint8_t>> WholeConfiguration();

/// Requests of several clients that the daemon finds together, so that it serves them in one batch.
void AtOnce(const DaemonProcess& daemon, const std::vector<std::function<void()>>& requests);

/// Runs `body` in a child process with another user and group; its return value.
int AsUser(uid_t user, gid_t group, const std::function<int()>& body);

class DaemonTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(daemon_.Start()); }
    DaemonProcess daemon_;
};

}  // namespace daemon_test
