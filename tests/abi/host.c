#include "host.h"

#include <platform/aaa_tlv.h>

#include "fakes/fake_c.h"

TLV_MSG* host_request(uint32_t operation, TLV_MSG* message) {
    TLV_MSG* request = AAA_AddOpHead(operation, message);
    TLV_Destroy(message);
    return request;
}

TLV_MSG* host_forward(TLV_MSG* request) {
    return AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, request);
}

uint32_t host_saved_elements(void) {
    return FAKE_DbmCallCount("DBM_SetArray");
}

void host_break_next_database_call(void) {
    FAKE_FailDbmCall(1);
}

int64_t host_leftovers(void) {
    return FAKE_LiveMessages() + FAKE_LiveHashTables() + FAKE_OpenSockets() + FAKE_Misuses();
}
