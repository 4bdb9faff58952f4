#include "base/batch_record.h"

#include <aaadom/codes.h>
#include <aaadom/service.h>

namespace aaadom {

uint32_t SendBatchRecord(TlvPtr msg, int32_t fd) noexcept {
    if (!msg) return DOM_ERR_FAILED;
    TlvPtr request(AAA_AddOpHead(DOM_OP_SET, msg.get()));
    msg.reset();
    if (!request) return DOM_ERR_FAILED;
    TlvPtr record(AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, request.get()));
    request.reset();
    if (!record) return DOM_ERR_FAILED;
    return DOM_BatchSyncCfgType(record.release(), fd);
}

}  // namespace aaadom
