#include "codec/record_batch.h"

#include <aaadom/codes.h>
#include <aaadom/method_codec.h>
#include <aaadom/record_run_db.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>
#include <stdlib.h>

namespace aaadom {
namespace {

/// A batch and the next record together stay below this: a synchronisation message carries 64 KiB,
/// of which heads and the standby board's own framing need their share.
constexpr uint64_t kBatchLimit = 59900;

uint64_t ImageLength(TLV_MSG* msg) noexcept {
    return TLV_GetMsgLen(msg, TLV_FORM_BUFFER);
}

uint32_t StoreRecord(const TlvItem& item, uint32_t kind) noexcept {
    const TlvPtr fields = item.Sub();
    if (!fields) return DOM_ERR_FAILED;
    UserRecord record{};
    const uint32_t decoded = DOM_userrecord_tlv_DecodeUserRecordStruct(fields.get(), &record);
    // One record that its list refuses, such as one that has arrived before, keeps none out.
    if (decoded == DOM_OK) (void)DOM_SetSingeRecordInfoToRunDB(kind, &record);
    free(record.detail);  // also a record that could not be decoded may have got its text
    return decoded;
}

}  // namespace

uint32_t AddToBatch(uint32_t kind, TLV_MSG* batch, TLV_MSG* scratch) noexcept {
    if (ImageLength(batch) + ImageLength(scratch) >= kBatchLimit) {
        (void)SendBatch(batch, kind);  // a board that is absent must not stop the walk over a list
        (void)DOM_ClearTlv(batch);
    }
    const uint32_t result = AAA_AppendSubTlv(batch, DOM_TLV_USER_RECORD, scratch);
    (void)DOM_ClearTlv(scratch);
    if (result != DOM_OK) (void)DOM_ClearTlv(batch);
    return result;
}

uint32_t SendBatch(TLV_MSG* batch, uint32_t kind) noexcept {
    // Behind the records: how a batch begins is known only when it is full.
    Appender append(batch);
    append.U32(DOM_TLV_MSG_CODE, DOM_MSG_USER_RECORD).U32(DOM_TLV_RECORD_KIND, kind);
    if (append.Failed()) return DOM_ERR_FAILED;
    const TlvPtr request(AAA_AddOpHead(DOM_OP_SET, batch));
    return request ? DOM_RealSync2Slave(request.get()) : DOM_ERR_FAILED;
}

uint32_t StoreBatch(TLV_MSG* batch, uint32_t kind) noexcept {
    for (TlvItem item : TlvWalk(batch)) {
        if (item.Type() != DOM_TLV_USER_RECORD) continue;
        const uint32_t result = StoreRecord(item, kind);
        if (result != DOM_OK) return result;
    }
    return DOM_OK;
}

}  // namespace aaadom
