// Rows of nas_id.h.
#include <aaadom/nas_id.h>

#include "fault/sweep.h"

namespace fault {
namespace {

constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to

const Rows rows{
    Changes("DOM_AddNasIdProfile", [](Scene&) { return DOM_AddNasIdProfile("branch"); })
        .Fails({DOM_NASID_FAILED}),
    Changes("DOM_AddNasIdBindVlanId/new binding",
            [](Scene&) { return DOM_AddNasIdBindVlanId(kNasIdProfile, "nas-8", 8); })
        .Fails({DOM_NASID_FAILED}),
    Changes("DOM_AddNasIdBindVlanId/binding that exists",
            [](Scene&) { return DOM_AddNasIdBindVlanId(kNasIdProfile, "nas-8", 7); })
        .Fails({DOM_NASID_FAILED}),
    Reads("DOM_GetNasIdByProfileAndVlanId",
          [](Scene&) -> Outcome {
              char nas_id[DOM_NASID_NAME_SIZE] = "";
              const uint32_t result = DOM_GetNasIdByProfileAndVlanId(kNasIdProfile, 7, nas_id);
              return {result, nas_id};
          }),
    Changes("DOM_ProcNasIdProfileCfg/add",
            [](Scene&) -> Outcome {
                DomDbUpdateReq change{};
                char name[DOM_NASID_NAME_SIZE] = "";
                const uint32_t result = DOM_ProcNasIdProfileCfg("branch", 1, name, &change);
                return {result, name + BytesOf(change)};
            })
        .Fails({DOM_NASID_FAILED}),
    Changes("DOM_ProcNasIdProfileCfg/delete",
            [](Scene&) { return DOM_ProcNasIdProfileCfg(kNasIdProfile, 0, nullptr, nullptr); })
        .NeverFails(),
    Changes("DOM_ProcNasIdBindVlanIdCfg/bind",
            [](Scene&) -> Outcome {
                DomDbUpdateReq change{};
                const uint32_t result =
                    DOM_ProcNasIdBindVlanIdCfg("nas-8", 8, 1, kNasIdProfile, &change);
                return {result, BytesOf(change)};
            })
        .Fails({DOM_NASID_FAILED}),
    Changes(
        "DOM_ProcNasIdBindVlanIdCfg/unbind",
        [](Scene&) { return DOM_ProcNasIdBindVlanIdCfg("nas-7", 7, 0, kNasIdProfile, nullptr); })
        .NeverFails(),
    Reads("DOM_SyncAllNasIdProfile", [](Scene&) { return DOM_SyncAllNasIdProfile(kPeer), 0; })
        .In(fake::kWorkingRole),
    Reads("DOM_SyncAllNasIdBindVlanId", [](Scene&) { return DOM_SyncAllNasIdBindVlanId(kPeer), 0; })
        .In(fake::kWorkingRole),
};

}  // namespace
}  // namespace fault
