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

/**
 * Installs the daemon's callbacks over whatever was installed before.
 * @param table  borrowed; all 21 slots are copied, so it may be freed at once. Null changes
 * nothing.
 * @thread while no other thread uses the library; before any table is initialised, because the
 *         initialisation asks slot 13 whose tables it builds.
 */
void DOM_SetAAADService(const AAADService* table) AAADOM_NOEXCEPT;

/**
 * Empties all 21 slots; every thread is then of the working role.
 * @thread while no other thread uses the library, after the tables are torn down.
 */
void DOM_ResetAAADService(void) AAADOM_NOEXCEPT;

/**
 * Asks slot 13 for the role of the calling thread.
 * @return slot 13's result, unchanged: the low 16 bits equal to 1 mean the configuration thread,
 * every other value the working role. 0 when slot 13 is empty.
 * @thread any; takes no lock, also while the caller holds some: slot 13 must answer without
 * locking.
 */
uint32_t DOM_IsCfgThread(void) AAADOM_NOEXCEPT;

/**
 * Sends a message through slot 0. The library itself never calls this.
 * @param msg  borrowed when slot 0 is empty; else what becomes of it is slot 0's contract.
 * @return slot 0's result, unchanged; DOM_ERR_FAILED when slot 0 is empty.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_SendRealSyncMsg(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Sends a message to the standby board through slot 10.
 * @param msg  borrowed: the caller destroys it in every case.
 * @return slot 10's result, unchanged; DOM_ERR_FAILED when slot 10 is empty.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_CfgRealSyncToSlave(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Sends a synchronisation message to the configuration thread: slot 12 gets (kind, 4, msg).
 * @param kind  batch kind, passed to slot 12 unchanged.
 * @param msg   consumed always: destroyed here when slot 12 is empty, else owned by the slot.
 * @return slot 12's result, unchanged; DOM_ERR_FAILED when slot 12 is empty.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_SendSyncMSgToCfgThr(uint32_t kind, TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Sends a message from the configuration thread to the PAM side through slot 14.
 * @param channel  passed to slot 14 unchanged.
 * @param msg      consumed always: destroyed here after slot 14 returned, also when it is empty.
 * @return slot 14's result, unchanged; DOM_ERR_FAILED when slot 14 is empty.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_CfgThrSendMsgToPam(uint32_t channel, TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Starts the daemon's record thread through slot 19, which must be installed: unlike every other
 * call here this one does not test its slot, and calling it without is a fault of the caller that
 * shows at once.
 * @return slot 19's result, unchanged.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_RecordThreadInit(void) AAADOM_NOEXCEPT;

/**
 * Routes one message of a batch synchronisation. A negative descriptor: to the configuration thread
 * (DOM_SendSyncMSgToCfgThr, kind 5). Else on the configuration thread: to the PAM side
 * (DOM_CfgThrSendMsgToPam, channel `fd`). Else: written to the descriptor, waiting at most 60000
 * ms.
 * @param msg  consumed always (by slot 12 where it goes there).
 * @param fd   descriptor of the peer, or negative.
 * @return the result of the call it went through; of a write 0 or DOM_ERR_FAILED. DOM_ERR_FAILED
 * for a null message.
 * @thread any; takes no lock, the caller holds none.
 */
uint32_t DOM_BatchSyncCfgType(TLV_MSG* msg, int32_t fd) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
