// Requests to the daemon and their answers.
#pragma once

#include <aaadom/aaadom.h>

#include <memory>
#include <string>
#include <vector>

#include "failure.h"

namespace aaactl {

struct MessageDestroyer {
    void operator()(TLV_MSG* msg) const noexcept { TLV_Destroy(msg); }
};
using Message = std::unique_ptr<TLV_MSG, MessageDestroyer>;

struct DomainDestroyer {
    void operator()(DomainInfo* record) const noexcept { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, DomainDestroyer>;

/// Either data or the daemon's refusal.
struct Reply {
    Message data;          // null when refused
    uint32_t refusal = 0;  // the daemon's result when refused
};

class Client {
  public:
    void SetRunDir(const std::string& directory);
    void SetTimeout(uint32_t milliseconds);

    /// Sends a change; returns the daemon's result. Throws when no answer comes. `answer` receives
    /// what else the daemon says.
    uint32_t Change(TLV_MSG* request, uint32_t operation, Message* answer = nullptr);
    /// Sends a report as an access module does; the daemon's result and what else it says.
    uint32_t Report(TLV_MSG* report, Message* answer = nullptr);
    /// Sends a change to a domain; throws what the daemon's refusal means.
    void ChangeDomain(const std::string& domain, TLV_MSG* request, uint32_t operation);
    /// Sends a read.
    Reply Read(TLV_MSG* request, uint32_t operation = DOM_OP_GET);

    /// The domain, or null when there is none of that name.
    DomainPtr FindDomain(const std::string& name);
    /// The domain; throws when there is none of that name.
    DomainPtr NeedDomain(const std::string& name);
    /// All domains, ascending by name as text compares.
    std::vector<DomainPtr> DomainsByName();
    /// Names and states, shorter names first, equal lengths as text compares.
    std::vector<DomainMibRow> DomainsByRow();
    uint32_t CountDomains();
    GlobalDomain ReadGlobal();
    SessionLimits ReadSessionLimits();
    uint32_t ReadDebugFlag();

  private:
    Message Send(TLV_MSG* request, uint32_t operation, uint16_t* kind);
    Message NeedData(const std::string& what, TLV_MSG* request);

    std::string run_dir_ = "/run/aaad";
    uint32_t timeout_ = 10000;
};

/// Refuses a name that the library would cut or the daemon would not create.
void CheckDomainName(const std::string& name);
/// Refuses a text that does not fit its field of `capacity` bytes, terminator included.
void CheckFits(const std::string& what, const std::string& text, size_t capacity);
/// What a result that no command explains better means.
Failure Refused(const std::string& object, uint32_t code);

}  // namespace aaactl
