// Rows of profile.h: critical profiles.
#include <aaadom/codes.h>
#include <aaadom/profile.h>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr char kFirst[] = "Jail";  ///< stands before kCriticalProfile when it is there
constexpr char kVpn[] = "vpn-0";
constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to
constexpr uint64_t kEnd = 2;  ///< an end message, not an object

CriticalSegment NewSegment() {
    CriticalSegment segment{};
    segment.segment_id = 49;
    segment.value16 = 5;
    aaadom::CopyText(segment.segment_name, "closed");
    return segment;
}
CriticalProfile* Quarantine() {
    return DOM_critical_FindProfile(kCriticalProfile);
}
void AddFirst(Scene&) {
    (void)DOM_critical_AddProfile(kFirst);
}
/// The VPN of the golden messages.
void AddGoldenVpn(Scene&) {
    const CriticalSegment segment = NewSegment();
    (void)DOM_critical_AddVpn("vpn-a", Quarantine(), &segment);
}

Outcome NameOf(const CriticalProfile* profile) {
    return {Found(profile).result, profile == nullptr ? "" : profile->name};
}
/// A reply of a read, or what its flag says.
template <typename Read>
Outcome Reply(Read&& read) {
    uint16_t flag = 0;
    const Outcome outcome = Made(read(&flag));
    return flag == DOM_REPLY_KIND_RESULT && outcome.result == kSomething
               ? Outcome(kEnd, outcome.outputs)
               : outcome;
}
/// How many messages a call hands to the peer.
template <typename Send>
Outcome Sent(Send&& send) {
    const size_t before = fake::FlushCalls().size();
    send();
    return fake::FlushCalls().size() - before;
}

const Rows store{
    Reads("DOM_critical_InitData", [](Scene&) { return Found(DOM_critical_InitData()); })
        .On(EmptyTables)
        .Good(kSomething),
    Changes("DOM_critical_Fini", [](Scene&) { return DOM_critical_Fini(), 0; }).NeverFails(),
    Reads("DOM_critical_GetCriticalProfileInfo",
          [](Scene&) { return Found(DOM_critical_GetCriticalProfileInfo()); })
        .Good(kSomething),
    Reads("DOM_critical_GetProfileHead",
          [](Scene&) { return NameOf(*DOM_critical_GetProfileHead()); })
        .Good(kSomething),
    Reads("DOM_critical_FindProfile",
          [](Scene&) { return NameOf(DOM_critical_FindProfile("QUARANTINE")); })
        .Good(kSomething),
    Reads("DOM_critical_FindBiggerProfile",
          [](Scene&) {
              return NameOf(DOM_critical_FindBiggerProfile(DOM_critical_GetProfileHead(), kFirst));
          })
        .Good(kSomething),
    Reads("DOM_critical_FindBiggerVpn",
          [](Scene&) -> Outcome {
              const CriticalVpn* vpn = DOM_critical_FindBiggerVpn(&Quarantine()->first_vpn, "vpn");
              return {Found(vpn).result, vpn == nullptr ? "" : vpn->vpn_name};
          })
        .Good(kSomething),
    Changes("DOM_critical_AddProfile", [](Scene&) { return DOM_critical_AddProfile(kFirst); })
        .Fails({DOM_CRITICAL_FAILED}),
    Changes("DOM_critical_AddVpn/first VPN",
            [](Scene&) {
                const CriticalSegment segment = NewSegment();
                return DOM_critical_AddVpn(kVpn, DOM_critical_FindProfile(kFirst), &segment);
            })
        .After(AddFirst)
        .Fails({DOM_CRITICAL_FAILED}),
    Changes("DOM_critical_AddVpn/further VPN",
            [](Scene&) {
                const CriticalSegment segment = NewSegment();
                return DOM_critical_AddVpn("vpn-1", Quarantine(), &segment);
            })
        .Fails({DOM_CRITICAL_FAILED}),
    Changes("DOM_critical_AddVpn/VPN that exists",
            [](Scene&) {
                const CriticalSegment segment = NewSegment();
                return DOM_critical_AddVpn(kVpn, Quarantine(), &segment);
            })
        .NeverFails(),
    Reads("AAA_GetCriticalData",
          [](Scene&) -> Outcome {
              CriticalSegment segment{};
              const uint32_t result = AAA_GetCriticalData(kCriticalProfile, kVpn, &segment);
              return {result, BytesOf(segment)};
          }),
};

/// Applies a golden message; name and change record are the outputs.
template <typename Apply>
Row Applies(std::string name, std::string file, Apply apply) {
    return Changes(std::move(name),
                   [apply](Scene& scene) -> Outcome {
                       DomDbUpdateReq change{};
                       char profile[DOM_PROFILE_NAME_SIZE] = "";
                       const uint32_t result = apply(scene.message, profile, &change);
                       return {result, profile + BytesOf(change)};
                   })
        .After([file](Scene& scene) { scene.message = scene.Golden(file); })
        .Fails({DOM_CRITICAL_FAILED});
}
Row AppliesProfile(std::string name, uint16_t operation) {
    return Applies(std::move(name), "msg_147_critical_profile",
                   [operation](TLV_MSG* msg, char* profile, DomDbUpdateReq* change) {
                       return DOM_critical_ProcProfile(msg, operation, profile, change);
                   });
}
Row AppliesVpn(std::string name, uint16_t operation) {
    return Applies(std::move(name), "msg_148_critical_vpn",
                   [operation](TLV_MSG* msg, char*, DomDbUpdateReq* change) {
                       return DOM_critical_ProCriticalVpn(msg, operation, change);
                   });
}
Row AppliesDefault(std::string name, uint16_t operation) {
    return Applies(std::move(name), "msg_149_critical_segment",
                   [operation](TLV_MSG* msg, char*, DomDbUpdateReq* change) {
                       return DOM_critical_ProcMicroSegMent(msg, operation, change);
                   });
}

const Rows changes{
    AppliesProfile("DOM_critical_ProcProfile/add", 1).On(EmptyTables),
    AppliesProfile("DOM_critical_ProcProfile/add one that exists", 1)
        .Good(DOM_CRITICAL_PROFILE_EXISTS)
        .NeverFails(),
    AppliesProfile("DOM_critical_ProcProfile/delete", 0),
    AppliesVpn("DOM_critical_ProCriticalVpn/set", 1),
    AppliesVpn("DOM_critical_ProCriticalVpn/set one that exists", 1).After(AddGoldenVpn),
    AppliesVpn("DOM_critical_ProCriticalVpn/delete", 0).After(AddGoldenVpn),
    AppliesDefault("DOM_critical_ProcMicroSegMent/set", 1),
    AppliesDefault("DOM_critical_ProcMicroSegMent/delete", 0),
};

const Rows management{
    Reads("DOM_critical_ProcProfileGet",
          [](Scene&) {
              return Reply([](uint16_t* flag) {
                  return DOM_critical_ProcProfileGet(kCriticalProfile, flag);
              });
          })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_critical_ProcProfileGet/no such profile",
          [](Scene&) {
              return Reply(
                  [](uint16_t* flag) { return DOM_critical_ProcProfileGet(kFirst, flag); });
          })
        .Good(kEnd)
        .Fails({kNothing}),
    // The message that cannot be built is refused as an object that is not there.
    Reads("DOM_critical_ProcProfileVpnGet",
          [](Scene&) {
              return Reply([](uint16_t* flag) {
                  return DOM_critical_ProcProfileVpnGet(kCriticalProfile, kVpn, flag);
              });
          })
        .Good(kSomething)
        .Fails({kEnd}),
    Reads("DOM_critical_ProcProfileVpnGet/no such VPN",
          [](Scene&) {
              return Reply([](uint16_t* flag) {
                  return DOM_critical_ProcProfileVpnGet(kCriticalProfile, "vpn-9", flag);
              });
          })
        .Good(kEnd)
        .Fails({kNothing}),
    Encodes("DOM_critical_ProcProfileGetBulk",
            [](Scene&) { return DOM_critical_ProcProfileGetBulk(""); }),
    Encodes("DOM_critical_ProcProfileVpnGetBulk",
            [](Scene&) {
                char vpn[DOM_PROFILE_NAME_SIZE] = "";
                return DOM_critical_ProcProfileVpnGetBulk(kFirst, vpn);
            })
        .After(AddFirst),
};

const Rows batch{
    // The name, the default segment and the VPN; without the name nothing.
    Reads("DOM_SyncAllCriticalProfile",
          [](Scene&) { return Sent([] { DOM_SyncAllCriticalProfile(kPeer); }); })
        .In(fake::kWorkingRole)
        .Good(3)
        .Fails({0, 2, 3}),
    Reads("DOM_SyncCriticalMicroSegment",
          [](Scene&) { return Sent([] { DOM_SyncCriticalMicroSegment(kPeer, Quarantine()); }); })
        .In(fake::kWorkingRole)
        .Good(1)
        .Fails({0, 1}),
    Reads("DOM_SyncCriticalVPN",
          [](Scene&) { return Sent([] { DOM_SyncCriticalVPN(kPeer, Quarantine()); }); })
        .In(fake::kWorkingRole)
        .Good(1)
        .Fails({0, 1}),
};

}  // namespace
}  // namespace fault
