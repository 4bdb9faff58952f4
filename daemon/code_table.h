// Which message codes the daemon serves, and how. A code of another subsystem is one more row.
#pragma once

#include <cstdint>

#include "message.h"
#include "readers.h"
#include "request.h"
#include "roles.h"

namespace aaad {

/// Which role a change is applied in.
enum class Procedure : uint8_t {
    kNone,                // the code takes no change
    kBothRoles,           // the configuration role, then, unless refused there, the working role
    kConfigurationAlone,  // what it changes exists once a process: a second time would be wrong
    kWorkingAlone,        // what it changes exists in the working role only
    kRecordStore          // user records, in a database and a transaction of their own
};

/// Operations that the applier understands. It takes every other one for a deletion, so no other
/// one ever reaches it.
enum ChangeOperations : uint8_t {
    kNoChange = 0,
    kSet = 1,
    kDelete = 2,
    kSetAndDelete = 3,
    kClearRecords = 4
};

enum class ReadOperations : uint8_t {
    kNone,
    kGet,          // operation 2
    kAnyButChange  // every operation but 0 and 1: the front ends' walks choose their own
};

struct CodeRow {
    uint32_t code;
    Procedure procedure;
    ChangeOperations changes;
    bool save;
    /// Whether `check` reads the working role's tables, which must then hold all earlier changes.
    bool check_reads_working_role;
    /// 0, or the result with which the change is refused before it is applied; may be null.
    uint32_t (*check)(TLV_MSG* body, uint32_t operation);
    /// Procedure kRecordStore: applies the change on the configuration thread.
    void (*apply_to_records)(RecordStore& records, Request& request);
    /// Procedure kWorkingAlone: applies and saves the change on the working thread.
    void (*apply_in_working)(Request& request);
    /// Applies the change in the calling role and saves it if told to, in place of the library's
    /// applier, which null means.
    uint32_t (*apply)(const Request& request, bool save);
    /// Between the check and the change, on the configuration thread; may be null.
    void (*prepare)(Request& request);

    ReadOperations reads;
    Role read_role;
    /// The reply's data, or null and the result with which the read is refused.
    Message (*read)(const Question& question, uint32_t& refusal);

    bool TakesChange(uint32_t operation) const;
    bool TakesRead(uint32_t operation) const;
};

/// Null for a code that the daemon does not serve.
const CodeRow* FindCode(uint32_t code);

}  // namespace aaad
