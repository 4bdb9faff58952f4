#include "fakes/fake_c.h"

#include <cstring>

#include "fakes/fake_platform.h"

extern "C" {

void FAKE_Reset(void) {
    fake::Reset();
}
void FAKE_FailAppend(int n) {
    fake::FailAppend(n);
}
void FAKE_FailDbmCall(int n) {
    fake::FailDbmCall(n);
}
void FAKE_FailHashCreate(int n) {
    fake::FailHashCreate(n);
}
void FAKE_FailAny(int n) {
    fake::FailAny(n);
}
int FAKE_Tripped(void) {
    return fake::Tripped() ? 1 : 0;
}
int64_t FAKE_LiveMessages(void) {
    return fake::LiveMessages();
}
int64_t FAKE_LiveHashTables(void) {
    return fake::LiveHashTables();
}
int FAKE_OpenSockets(void) {
    return fake::OpenSockets();
}
uint32_t FAKE_Misuses(void) {
    return static_cast<uint32_t>(fake::Misuses().size());
}

uint32_t FAKE_LogLineCount(void) {
    return static_cast<uint32_t>(fake::LogLines().size());
}

uint32_t FAKE_LogText(uint32_t index, uint32_t capacity, char* text) {
    const auto lines = fake::LogLines();
    if (index >= lines.size() || capacity == 0 || text == nullptr) return 1;
    std::strncpy(text, lines[index].text.c_str(), capacity - 1);
    text[capacity - 1] = '\0';
    return 0;
}

void FAKE_SetServer(TLV_MSG* (*server)(TLV_MSG* request)) {
    if (server == nullptr) {
        fake::SetServer({});
    } else {
        fake::SetServer(server);
    }
}

TLV_MSG* FAKE_MakeReply(uint16_t kind, TLV_MSG* body) {
    return fake::MakeReply(kind, body);
}

uint32_t FAKE_DbmCallCount(const char* call) {
    return static_cast<uint32_t>(fake::DbmCalls(call).size());
}

uint32_t FAKE_DbmCall(const char* call, uint32_t n, uint32_t* key_length, int64_t* index,
                      uint32_t* value_length, uint32_t* value_type) {
    const auto calls = fake::DbmCalls(call);
    if (n >= calls.size()) return 1;
    if (key_length != nullptr) *key_length = calls[n].key_length;
    if (index != nullptr) *index = calls[n].index;
    if (value_length != nullptr) *value_length = calls[n].value_length;
    if (value_type != nullptr) *value_type = calls[n].value_type;
    return 0;
}

}  // extern "C"
