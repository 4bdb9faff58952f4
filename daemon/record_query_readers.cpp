#include "record_query_readers.h"

#include "record_query_answers.h"

namespace aaad {

Message ReadRecordNumber(const Question& question, uint32_t& refusal) {
    return WithoutException(
        refusal, [&] { return AnswerRecordNumber(question.records, question.body, refusal); });
}

Message ReadRecordPage(const Question& question, uint32_t& refusal) {
    return WithoutException(
        refusal, [&] { return AnswerRecordPage(question.records, question.body, refusal); });
}

Message ReadRecordsByReason(const Question& question, uint32_t& refusal) {
    return WithoutException(
        refusal, [&] { return AnswerRecordsByReason(question.records, question.body, refusal); });
}

Message ReadRecordTop(const Question& question, uint32_t& refusal) {
    return WithoutException(
        refusal, [&] { return AnswerRecordTop(question.records, question.body, refusal); });
}

}  // namespace aaad
