/* The daemon's callback table and the messages that leave the library through it. */
#ifndef AAADOM_SERVICE_H
#define AAADOM_SERVICE_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef void (*AaadOpaqueSlot)(void);

/** The daemon's 21 callbacks, in slot order; an empty slot is null. */
typedef struct AAADService {
    uint32_t (*real_sync_msg)(TLV_MSG* msg); /* slot 0 */
    AaadOpaqueSlot slot_1, slot_2, slot_3, slot_4, slot_5, slot_6, slot_7, slot_8, slot_9;
    uint32_t (*cfg_real_sync_to_slave)(TLV_MSG* msg); /* slot 10 */
    AaadOpaqueSlot slot_11;
    uint32_t (*sync_msg_to_cfg_thr)(uint32_t kind, uint32_t const_4, TLV_MSG* msg); /* slot 12 */
    uint32_t (*is_cfg_thread)(void);                                                /* slot 13 */
    uint32_t (*cfg_thr_msg_to_pam)(uint32_t channel, TLV_MSG* msg);                 /* slot 14 */
    AaadOpaqueSlot slot_15, slot_16, slot_17, slot_18;
    uint32_t (*record_thread_init)(void); /* slot 19 */
    AaadOpaqueSlot slot_20;
} AAADService;

void DOM_SetAAADService(const AAADService* table);
void DOM_ResetAAADService(void);
uint32_t DOM_IsCfgThread(void);
uint32_t DOM_SendRealSyncMsg(TLV_MSG* msg);
uint32_t DOM_CfgRealSyncToSlave(TLV_MSG* msg);
uint32_t DOM_SendSyncMSgToCfgThr(uint32_t kind, TLV_MSG* msg);
uint32_t DOM_CfgThrSendMsgToPam(uint32_t channel, TLV_MSG* msg);
uint32_t DOM_RecordThreadInit(void);
uint32_t DOM_BatchSyncCfgType(TLV_MSG* msg, int32_t fd);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
