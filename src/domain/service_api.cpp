#include <aaadom/results.h>
#include <aaadom/service.h>
#include <platform/tlv.h>

#include "base/role.h"
#include "domain/service_routing.h"

namespace {

// Written while no other thread uses the library, so reads take no lock.
constinit AAADService service{};

}  // namespace

extern "C" {

void DOM_SetAAADService(const AAADService* table) noexcept {
    if (table != nullptr) service = *table;
}

void DOM_ResetAAADService(void) noexcept {
    service = AAADService{};
}

uint32_t DOM_IsCfgThread(void) noexcept {
    return service.is_cfg_thread == nullptr ? 0 : service.is_cfg_thread();
}

uint32_t DOM_SendRealSyncMsg(TLV_MSG* msg) noexcept {
    return service.real_sync_msg == nullptr ? DOM_ERR_FAILED : service.real_sync_msg(msg);
}

uint32_t DOM_CfgRealSyncToSlave(TLV_MSG* msg) noexcept {
    return service.cfg_real_sync_to_slave == nullptr ? DOM_ERR_FAILED
                                                     : service.cfg_real_sync_to_slave(msg);
}

uint32_t DOM_SendSyncMSgToCfgThr(uint32_t kind, TLV_MSG* msg) noexcept {
    if (service.sync_msg_to_cfg_thr == nullptr) {
        TLV_Destroy(msg);
        return DOM_ERR_FAILED;
    }
    return service.sync_msg_to_cfg_thr(kind, aaadom::kSyncToCfgThrConstant, msg);
}

uint32_t DOM_CfgThrSendMsgToPam(uint32_t channel, TLV_MSG* msg) noexcept {
    uint32_t result = service.cfg_thr_msg_to_pam == nullptr
                          ? DOM_ERR_FAILED
                          : service.cfg_thr_msg_to_pam(channel, msg);
    TLV_Destroy(msg);
    return result;
}

// The one wrapper that does not test its slot: starting the record thread without a daemon is a
// programming error that has to show at once, not a failure to be reported.
uint32_t DOM_RecordThreadInit(void) noexcept {
    return service.record_thread_init();
}

uint32_t DOM_BatchSyncCfgType(TLV_MSG* msg, int32_t fd) noexcept {
    return msg == nullptr ? DOM_ERR_FAILED : aaadom::RouteBatchMessage(msg, fd);
}

}  // extern "C"
