// The configuration in both roles and in the database: loads it, changes it, answers reads.
//
// An answer 0 to a saved change means: durable, applied in both roles, visible to the next reader.
#pragma once

#include <platform/dbm.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "administrators.h"
#include "log.h"
#include "record_store.h"
#include "request.h"
#include "role_tables.h"
#include "roles.h"
#include "working_thread.h"

namespace aaad {

/// Lives on the configuration thread, which is its only user.
class Configuration {
  public:
    /// `handle` is the one that the library writes to. `administrators`, `working` and `records`
    /// are borrowed.
    Configuration(DBM_HANDLE handle, std::string state_dir, Administrators& administrators,
                  WorkingThread& working, RecordStore& records);
    /// Tears the tables of both roles down.
    ~Configuration();
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    /// Loads both roles and gives a new database its first domain. Throws Failure.
    void Start();

    /// Decides every request: its result or its data. Changes come first, in order, in one
    /// transaction; then those of user records, one by one; then the reads, which see them all.
    /// Where memory does not suffice a request is refused with DOM_ERR_FAILED, or with
    /// AAAD_ERR_NOT_SAVED when something of it had to be taken back. Throws Failure when memory no
    /// longer holds what the database holds.
    void Serve(std::vector<Request>& requests);

    /// A record that another thread of this process sent to this role's tables.
    void TakeMail(Message message);

  private:
    enum class Outcome {
        kCommitted,
        kNotSaved,    // the database refused the transaction
        kRolesDiffer  // one role took a change that the other one refused
    };

    using Requests = std::span<Request* const>;

    bool MakeRoomFor(size_t requests);
    void Classify(Request& request);
    void Change(Requests changes);
    Outcome TryChange(Requests changes);
    void Apply(Request& request);
    void HandOver();
    static void ApplyInWorking(Request& request, bool may_save);
    void Read(Requests reads);

    void Load();
    bool LoadRest(Role role);
    void Unload();
    void TidyDatabase(const LoadReport& report);
    void KeepUndecodable(uint32_t index);
    uint32_t ChangeOfOwn(TLV_MSG* body);
    void RefuseUnsaved(Requests changes);

    const DBM_HANDLE handle_;
    const std::string state_dir_;
    Administrators& administrators_;
    WorkingThread& working_;
    RecordStore& records_;
    bool loaded_ = false;
    LoadReport report_;
    // They have room for all requests of a batch, so that nothing allocates between a change's
    // beginning and its end.
    std::vector<Request*> changes_;
    std::vector<Request*> reads_;
    std::vector<Request*> to_hand_over_;
    LogLimit denied_limit_;
};

}  // namespace aaad
