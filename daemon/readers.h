// Builds the data of replies, each in the role that its row of the code table names.
#pragma once

#include <platform/dbm.h>

#include <cstdint>

#include "message.h"

namespace aaad {

class RecordStore;

/// What a read asks for.
struct Question {
    TLV_MSG* body;
    uint32_t operation;
    DBM_HANDLE handle;           // for what is walked in the database alone
    const RecordStore& records;  // read without a lock
};

Message ReadDefaultDomain(const Question& question, uint32_t& refusal);
Message ReadDomainCount(const Question& question, uint32_t& refusal);
Message ReadDomain(const Question& question, uint32_t& refusal);
Message ReadSessionLimits(const Question& question, uint32_t& refusal);
Message ReadNextDomainRow(const Question& question, uint32_t& refusal);
Message ReadGlobalDomain(const Question& question, uint32_t& refusal);
Message ReadDebugFlag(const Question& question, uint32_t& refusal);
Message ReadNextDomain(const Question& question, uint32_t& refusal);

}  // namespace aaad
