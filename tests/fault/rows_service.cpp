// Rows of service.h, channel.h and record_switches.h.
#include <aaadom/channel.h>
#include <aaadom/codes.h>
#include <aaadom/record_switches.h>
#include <aaadom/service.h>
#include <platform/aaa_tlv.h>

#include "fault/sweep.h"
#include "golden/sample_record.h"

namespace fault {
namespace {

constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to
constexpr int32_t kNoPeer = -1;
constexpr uint32_t kBatchKind = 5;

/// A message that the call hands over.
TLV_MSG* Owned() {
    return Scene::Parse("msg_007_state");
}
/// A kept message with its operation head.
void WithRequest(Scene& scene) {
    TLV_MSG* body = Owned();
    scene.message = scene.Keep(AAA_AddOpHead(DOM_OP_SET, body));
    TLV_Destroy(body);
}

const Rows service{
    Changes("DOM_SetAAADService",
            [](Scene&) {
                const AAADService service = fake::RoleService();
                return DOM_SetAAADService(&service), 0;
            })
        .NeverFails(),
    Changes("DOM_ResetAAADService", [](Scene&) { return DOM_ResetAAADService(), 0; }).NeverFails(),
    Reads("DOM_IsCfgThread", [](Scene&) { return DOM_IsCfgThread(); }).Good(fake::kConfigRole),
    Reads("DOM_SendRealSyncMsg", [](Scene& scene) { return DOM_SendRealSyncMsg(scene.message); })
        .After(WithRequest),
    Reads("DOM_CfgRealSyncToSlave",
          [](Scene& scene) { return DOM_CfgRealSyncToSlave(scene.message); })
        .After(WithRequest),
    Reads("DOM_SendSyncMSgToCfgThr",
          [](Scene&) {
              TLV_MSG* msg = Owned();
              const int64_t others = fake::LiveMessages() - 1;
              const uint32_t result = DOM_SendSyncMSgToCfgThr(kBatchKind, msg);
              return fake::LiveMessages() == others ? result : ~result;
          }),
    Reads("DOM_CfgThrSendMsgToPam", [](Scene&) { return DOM_CfgThrSendMsgToPam(kPeer, Owned()); }),
    Reads("DOM_RecordThreadInit", [](Scene&) { return DOM_RecordThreadInit(); }),
    Reads("DOM_BatchSyncCfgType/configuration thread",
          [](Scene&) { return DOM_BatchSyncCfgType(Owned(), kNoPeer); }),
    Reads("DOM_BatchSyncCfgType/PAM side",
          [](Scene&) { return DOM_BatchSyncCfgType(Owned(), kPeer); }),
    Reads("DOM_BatchSyncCfgType/peer", [](Scene&) { return DOM_BatchSyncCfgType(Owned(), kPeer); })
        .In(fake::kWorkingRole)
        .Fails({DOM_ERR_FAILED}),
};

const Rows channel{
    Requests("DOM_lipc_SendCfgMsg",
             [](Scene& scene) {
                 uint16_t kind = 0;
                 return Made(DOM_lipc_SendCfgMsg(scene.message, DOM_OP_SET, &kind));
             })
        .After([](Scene& scene) { scene.message = scene.Golden("msg_007_state"); })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_lipc_ReplyMsgProc",
          [](Scene& scene) -> Outcome {
              uint32_t result = 0;
              const uint32_t outcome = DOM_lipc_ReplyMsgProc(scene.message, &result);
              return {outcome, BytesOf(result)};
          })
        .On(Nothing)
        .After([](Scene& scene) {
            scene.message = scene.Keep(TLV_Create());
            AAA_AppendUINTTlvData(scene.message, DOM_TLV_RESULT, 12);
        }),
    Requests("DOM_lipc_CfgMsgProc",
             [](Scene& scene) -> Outcome {
                 uint32_t result = 1;
                 const uint32_t outcome = DOM_lipc_CfgMsgProc(scene.message, DOM_OP_SET, &result);
                 return {outcome, BytesOf(result)};
             })
        .After([](Scene& scene) { scene.message = scene.Golden("msg_007_state"); }),
};

const Rows switches{
    Encodes("DOM_GetAllRecordEnableInfo", [](Scene&) { return DOM_GetAllRecordEnableInfo(); }),
    Reads("DOM_GetOnlineFailRecordEnableInfo",
          [](Scene&) { return DOM_GetOnlineFailRecordEnableInfo(); })
        .Good(1),
    Reads("DOM_GetOfflineAllRecordEnableInfo",
          [](Scene&) { return DOM_GetOfflineAllRecordEnableInfo(); }),
    Reads("DOM_GetOfflineNormalRecordEnableInfo",
          [](Scene&) { return DOM_GetOfflineNormalRecordEnableInfo(); })
        .Good(1),
    Reads("DOM_GetOfflineAbnormalRecordEnableInfo",
          [](Scene&) { return DOM_GetOfflineAbnormalRecordEnableInfo(); }),
    Reads("DOM_GetOnlineOffLineRecordEnableInfo",
          [](Scene&) { return DOM_GetOnlineOffLineRecordEnableInfo(); })
        .Good(1),
    Changes("DOM_SetRecordEnableInfo",
            [](Scene&) { return DOM_SetRecordEnableInfo(DOM_MSG_REC_EN_OFFLINE_ALL, 1); })
        .NeverFails(),
    Changes("DOM_SetRecordEnableInfoAll",
            [](Scene&) {
                const RecordSwitches all{0, 1, 0, 1};
                return DOM_SetRecordEnableInfoAll(&all), 0;
            })
        .NeverFails(),
    Changes("DOM_SetUserRecordEnableDefault",
            [](Scene&) { return DOM_SetUserRecordEnableDefault(1), 0; })
        .NeverFails(),
    Reads("DOM_GetUserRecordEnableDefault", [](Scene&) { return DOM_GetUserRecordEnableDefault(); })
        .After([](Scene&) { DOM_SetUserRecordEnableDefault(1); })
        .Good(1),
    Changes("DOM_SetUserRecordBackupMethodDefault",
            [](Scene&) { return DOM_SetUserRecordBackupMethodDefault(5), 0; })
        .NeverFails(),
    Reads("DOM_GetUserRecordBackupMethodDefault",
          [](Scene&) { return DOM_GetUserRecordBackupMethodDefault(); })
        .After([](Scene&) { DOM_SetUserRecordBackupMethodDefault(5); })
        .Good(5),
    Changes("DOM_InitRecordBackupInfo", [](Scene&) { return DOM_InitRecordBackupInfo(); }),
    Changes("DOM_FiniRecordBackupInfo", [](Scene&) { return DOM_FiniRecordBackupInfo(); })
        .NeverFails(),
    Changes("DOM_SetAAAUserRecordBackupMethod",
            [](Scene&) {
                const BackupMethods methods{0, 1, 0};
                return DOM_SetAAAUserRecordBackupMethod(&methods), 0;
            })
        .NeverFails(),
    Reads("DOM_GetAAAUserRecordBackupMethod",
          [](Scene&) -> Outcome {
              BackupMethods methods{};
              DOM_GetAAAUserRecordBackupMethod(&methods);
              return {0, BytesOf(methods)};
          }),
    Reads("DOM_GetAAAUserRecordBackupMethodByType",
          [](Scene&) { return DOM_GetAAAUserRecordBackupMethodByType(DOM_RECORD_NORMAL_OFFLINE); })
        .Good(1),
    Reads("DOM_GetAllRecordBackupMethodToUint",
          [](Scene&) { return DOM_GetAllRecordBackupMethodToUint(); })
        .Good(5),
    Reads("DOM_IsDefaultUserRecordBackupMethod",
          [](Scene&) { return DOM_IsDefaultUserRecordBackupMethod(); }),
    Changes("DOM_SetUserRecordRecoverFlag",
            [](Scene&) { return DOM_SetUserRecordRecoverFlag(1), 0; })
        .NeverFails(),
    Reads("DOM_GetUserRecordRecoverFlag", [](Scene&) { return DOM_GetUserRecordRecoverFlag(); })
        .After([](Scene&) { DOM_SetUserRecordRecoverFlag(1); })
        .Good(1),
};

const Rows standby{
    Reads("DOM_RealSync2Slave", [](Scene& scene) { return DOM_RealSync2Slave(scene.message); })
        .After(WithRequest)
        .Fails({DOM_ERR_FAILED}),
    Reads("DOM_SyncOnlineFailRecord",
          [](Scene&) {
              const UserRecord record = golden::SampleRecord();
              return DOM_SyncOnlineFailRecord(0, &record), 0;
          }),
    Reads("DOM_SyncOfflineRecord",
          [](Scene&) {
              const UserRecord record = golden::SampleRecord();
              return DOM_SyncOfflineRecord(0, 1, &record), 0;
          }),
    Reads("DOM_SyncOfflineRecord/deletion",
          [](Scene&) {
              const UserRecord record = golden::SampleRecord();
              return DOM_SyncOfflineRecord(1, 0, &record), 0;
          }),
    Reads("Dom_SyncClearUserRecord", [](Scene&) { return Dom_SyncClearUserRecord(6), 0; }),
};

}  // namespace
}  // namespace fault
