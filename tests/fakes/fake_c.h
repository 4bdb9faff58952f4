/* The fake platform for test programs in C. */
#ifndef TESTS_FAKES_FAKE_C_H
#define TESTS_FAKES_FAKE_C_H

#include <platform/tlv.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

void FAKE_Reset(void);
void FAKE_FailAppend(int n);
void FAKE_FailDbmCall(int n);
void FAKE_FailHashCreate(int n);
void FAKE_FailAny(int n);
int FAKE_Tripped(void);
int64_t FAKE_LiveMessages(void);
int64_t FAKE_LiveHashTables(void);
int FAKE_OpenSockets(void);
/** Number of things done that no caller may do. */
uint32_t FAKE_Misuses(void);

uint32_t FAKE_LogLineCount(void);
/** The text of one log line, cut to the capacity; 0 when there is that line. */
uint32_t FAKE_LogText(uint32_t index, uint32_t capacity, char* text);

/** Answers every request; see fake::SetServer. Null takes the server away. */
void FAKE_SetServer(TLV_MSG* (*server)(TLV_MSG* request));
TLV_MSG* FAKE_MakeReply(uint16_t kind, TLV_MSG* body);

/** Number of recorded calls of a DBM function, by its name. */
uint32_t FAKE_DbmCallCount(const char* call);
/** The n-th recorded call of a DBM function; null outputs are skipped; 0 when there is that call.
 */
uint32_t FAKE_DbmCall(const char* call, uint32_t n, uint32_t* key_length, int64_t* index,
                      uint32_t* value_length, uint32_t* value_type);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
