#include "domain/standby_sync.h"

#include <aaadom/codes.h>
#include <aaadom/record_switches.h>
#include <aaadom/service.h>

namespace aaadom {

void SendBatchRecord(TlvPtr msg, int32_t fd) noexcept {
    if (!msg) return;
    TlvPtr request(AAA_AddOpHead(DOM_OP_SET, msg.get()));
    msg.reset();
    if (!request) return;
    TlvPtr record(AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, request.get()));
    request.reset();
    // Whether the peer got it shows when the peer answers the batch.
    if (record) (void)DOM_BatchSyncCfgType(record.release(), fd);
}

void SendToStandby(uint32_t operation, TlvPtr msg) noexcept {
    if (!msg) return;
    const TlvPtr request(AAA_AddOpHead(operation, msg.get()));
    if (request) (void)DOM_RealSync2Slave(request.get());  // a board that is absent is no failure
}

}  // namespace aaadom
