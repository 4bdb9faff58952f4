#include <aaadom/restore.h>
#include <aaadom/results.h>

#include "base/message.h"
#include "codec/restore.h"

using namespace aaadom;

uint32_t DOM_RestoreData(TLV_MSG* msg, uint16_t save, uint32_t cap1, uint32_t cap2, char* name1_out,
                         char* name2_out) noexcept {
    return RestoreMessage(msg, save == 1, {cap1, cap2, name1_out, name2_out});
}

uint32_t DOM_UpdateCfgData(TLV_MSG* msg, uint32_t cap1, uint32_t cap2, char* name1_out,
                           char* name2_out) noexcept {
    const TlvPtr stripped(msg == nullptr ? nullptr : AAA_DelAaadHead(msg));
    if (!stripped) return DOM_ERR_FAILED;
    return RestoreMessage(stripped.get(), false, {cap1, cap2, name1_out, name2_out});
}
