#include "record_query_readers.h"

#include <aaadom/results.h>

#include <new>

#include "record_query_answers.h"

namespace aaad {
namespace {

/// A search that memory does not suffice for is refused; it does not end the daemon.
template <class Answer>
Message WithoutException(Answer answer, const Question& question, uint32_t& refusal) {
    try {
        return answer(question.records, question.body, refusal);
    } catch (const std::bad_alloc&) {
        refusal = DOM_ERR_FAILED;
        return nullptr;
    }
}

}  // namespace

Message ReadRecordNumber(const Question& question, uint32_t& refusal) {
    return WithoutException(AnswerRecordNumber, question, refusal);
}

Message ReadRecordPage(const Question& question, uint32_t& refusal) {
    return WithoutException(AnswerRecordPage, question, refusal);
}

Message ReadRecordsByReason(const Question& question, uint32_t& refusal) {
    return WithoutException(AnswerRecordsByReason, question, refusal);
}

Message ReadRecordTop(const Question& question, uint32_t& refusal) {
    return WithoutException(AnswerRecordTop, question, refusal);
}

}  // namespace aaad
