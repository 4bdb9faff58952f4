// Builds the data of replies, each in the role that its row of the code table names.
#pragma once

#include <aaadom/results.h>
#include <platform/dbm.h>

#include <cstdint>
#include <new>

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

/// An answer that memory does not suffice for is refused; its thread must not be left by an
/// exception.
template <class Answer>
Message WithoutException(uint32_t& refusal, const Answer& answer) {
    try {
        return answer();
    } catch (const std::bad_alloc&) {
        refusal = DOM_ERR_FAILED;
        return nullptr;
    }
}

Message ReadDefaultDomain(const Question& question, uint32_t& refusal);
Message ReadDomainCount(const Question& question, uint32_t& refusal);
Message ReadDomain(const Question& question, uint32_t& refusal);
Message ReadSessionLimits(const Question& question, uint32_t& refusal);
Message ReadNextDomainRow(const Question& question, uint32_t& refusal);
Message ReadGlobalDomain(const Question& question, uint32_t& refusal);
Message ReadDebugFlag(const Question& question, uint32_t& refusal);
Message ReadNextDomain(const Question& question, uint32_t& refusal);

}  // namespace aaad
