// The two thread roles and the callbacks that the library asks the daemon for.
#pragma once

#include <cstdint>
#include <vector>

#include "lock.h"
#include "message.h"

namespace aaad {

enum class Role : uint32_t {
    kWorking = 0,       // uses its copy of the tables for sessions, walks and counts
    kConfiguration = 1  // owns the endpoint, the saved configuration and all decisions
};

/// The role of the calling thread from now on; a thread without one has the working role.
void TakeRole(Role role);

/// Messages of any thread to the configuration thread (slot 12). Nobody waits for their result: the
/// configuration thread may be waiting for the sender.
class ConfigurationMail {
  public:
    ConfigurationMail();
    ~ConfigurationMail();
    ConfigurationMail(const ConfigurationMail&) = delete;
    ConfigurationMail& operator=(const ConfigurationMail&) = delete;

    /// Becomes readable when there is mail.
    int Descriptor() const { return event_fd_; }
    void Post(Message message);
    /// Allocates nothing.
    std::vector<Message> TakeAll();

  private:
    const int event_fd_;
    Mutex mutex_;
    std::vector<Message> messages_ AAAD_GUARDED_BY(mutex_);
};

/// Hands the library its callbacks while the object lives; there is one.
class Callbacks {
  public:
    Callbacks();
    ~Callbacks();
    Callbacks(const Callbacks&) = delete;
    Callbacks& operator=(const Callbacks&) = delete;

    ConfigurationMail& Mail() { return mail_; }

  private:
    ConfigurationMail mail_;
};

}  // namespace aaad
