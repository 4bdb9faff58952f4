// Rows of profile.h: authorization profiles.
#include <aaadom/codes.h>
#include <aaadom/profile.h>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr char kFirst[] = "Guests";  ///< stands before kAuthorProfile when it is there
constexpr char kVpn[] = "vpn-0";
constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to
constexpr uint64_t kEnd = 2;  ///< an end message, not an object

AuthorSegment NewSegment() {
    AuthorSegment segment{};
    segment.segment_id = 58;
    aaadom::CopyText(segment.segment_name, "labs");
    return segment;
}
AuthorProfile* Staff() {
    return DOM_author_FindProfile(kAuthorProfile);
}
AuthorVpn* StaffVpn() {
    return reinterpret_cast<AuthorVpn*>(Staff()->vpn_list.next);
}
void AddFirst(Scene&) {
    (void)DOM_author_AddProfile(kFirst);
}
/// The VPN of the golden messages.
void AddGoldenVpn(Scene&) {
    const AuthorSegment segment = NewSegment();
    (void)DOM_author_AddVpn("vpn-b", Staff(), &segment);
}

Outcome NameOf(const AuthorProfile* profile) {
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
    Reads("DOM_author_InitData", [](Scene&) { return Found(DOM_author_InitData()); })
        .On(EmptyTables)
        .Good(kSomething),
    Changes("DOM_author_Fini", [](Scene&) { return DOM_author_Fini(), 0; }).NeverFails(),
    Reads("DOM_author_GetAuthorProfileInfo",
          [](Scene&) { return Found(DOM_author_GetAuthorProfileInfo()); })
        .Good(kSomething),
    Reads("DOM_author_GetProfileHead", [](Scene&) { return NameOf(*DOM_author_GetProfileHead()); })
        .Good(kSomething),
    Reads("DOM_author_GetProfileNum", [](Scene&) { return DOM_author_GetProfileNum(); }).Good(1),
    Reads("DOM_author_GetFirstProfile", [](Scene&) { return NameOf(DOM_author_GetFirstProfile()); })
        .Good(kSomething),
    Reads("DOM_author_GetNextProfile",
          [](Scene&) { return NameOf(DOM_author_GetNextProfile(kFirst)); })
        .After(AddFirst)
        .Good(kSomething),
    Reads("DOM_author_FindProfile", [](Scene&) { return NameOf(DOM_author_FindProfile("STAFF")); })
        .Good(kSomething),
    Reads("DOM_author_FindBiggerProfile",
          [](Scene&) {
              return NameOf(DOM_author_FindBiggerProfile(DOM_author_GetProfileHead(), "Sta"));
          })
        .Good(kSomething),
    Reads("DOM_author_FindBiggerVpn",
          [](Scene&) -> Outcome {
              const AuthorVpn* vpn = DOM_author_FindBiggerVpn(&Staff()->vpn_list, "vpn");
              return {Found(vpn).result, vpn == nullptr ? "" : vpn->vpn_name};
          })
        .Good(kSomething),
    Changes("DOM_author_AddProfile", [](Scene&) { return DOM_author_AddProfile(kFirst); })
        .Fails({DOM_AUTHOR_FAILED}),
    Changes("DOM_author_AddVpn/first VPN",
            [](Scene&) {
                const AuthorSegment segment = NewSegment();
                return DOM_author_AddVpn(kVpn, DOM_author_FindProfile(kFirst), &segment);
            })
        .After(AddFirst)
        .Fails({DOM_AUTHOR_FAILED}),
    Changes("DOM_author_AddVpn/further VPN",
            [](Scene&) {
                const AuthorSegment segment = NewSegment();
                return DOM_author_AddVpn("vpn-1", Staff(), &segment);
            })
        .Fails({DOM_AUTHOR_FAILED}),
    Changes("DOM_author_AddVpn/VPN that exists",
            [](Scene&) {
                const AuthorSegment segment = NewSegment();
                return DOM_author_AddVpn(kVpn, Staff(), &segment);
            })
        .NeverFails(),
    Changes("DOM_author_FreeAuthorProfileVpnNode",
            [](Scene&) { return DOM_author_FreeAuthorProfileVpnNode(StaffVpn()), 0; })
        .NeverFails(),
    Changes("DOM_author_DestroyHashNode",
            [](Scene&) { return DOM_author_DestroyHashNode(&StaffVpn()->hash), 0; })
        .NeverFails(),
    Reads("AAA_GetAuthorProfileData",
          [](Scene&) -> Outcome {
              AuthorSegment segment{};
              const uint32_t result = AAA_GetAuthorProfileData(kAuthorProfile, kVpn, &segment);
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
        .Fails({DOM_AUTHOR_FAILED});
}
Row AppliesProfile(std::string name, uint16_t operation) {
    return Applies(std::move(name), "msg_156_author_profile",
                   [operation](TLV_MSG* msg, char* profile, DomDbUpdateReq* change) {
                       return DOM_author_ProcProfile(msg, operation, profile, DOM_PROFILE_NAME_SIZE,
                                                     change);
                   });
}
Row AppliesVpn(std::string name, uint16_t operation) {
    return Applies(std::move(name), "msg_157_author_vpn",
                   [operation](TLV_MSG* msg, char*, DomDbUpdateReq* change) {
                       return DOM_author_ProAuthorVpn(msg, operation, change);
                   });
}
Row AppliesDefault(std::string name, uint16_t operation) {
    return Applies(std::move(name), "msg_158_author_segment",
                   [operation](TLV_MSG* msg, char*, DomDbUpdateReq* change) {
                       return DOM_author_ProcMicroSegMent(msg, operation, change);
                   });
}

const Rows changes{
    AppliesProfile("DOM_author_ProcProfile/add", 1).On(EmptyTables),
    AppliesProfile("DOM_author_ProcProfile/add one that exists", 1)
        .Good(DOM_AUTHOR_PROFILE_EXISTS)
        .NeverFails(),
    AppliesProfile("DOM_author_ProcProfile/delete", 0),
    AppliesVpn("DOM_author_ProAuthorVpn/set", 1),
    AppliesVpn("DOM_author_ProAuthorVpn/set one that exists", 1).After(AddGoldenVpn),
    AppliesVpn("DOM_author_ProAuthorVpn/delete", 0).After(AddGoldenVpn),
    AppliesDefault("DOM_author_ProcMicroSegMent/set", 1),
    AppliesDefault("DOM_author_ProcMicroSegMent/delete", 0),
};

const Rows management{
    Reads("DOM_author_ProcProfileGet",
          [](Scene&) {
              return Reply(
                  [](uint16_t* flag) { return DOM_author_ProcProfileGet(kAuthorProfile, flag); });
          })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_author_ProcProfileGet/no such profile",
          [](Scene&) {
              return Reply([](uint16_t* flag) { return DOM_author_ProcProfileGet(kFirst, flag); });
          })
        .Good(kEnd)
        .Fails({kNothing}),
    // The message that cannot be built is refused as an object that is not there.
    Reads("DOM_author_ProcProfileVpnGet",
          [](Scene&) {
              return Reply([](uint16_t* flag) {
                  return DOM_author_ProcProfileVpnGet(kAuthorProfile, kVpn, flag);
              });
          })
        .Good(kSomething)
        .Fails({kEnd}),
    Reads("DOM_author_ProcProfileVpnGet/no such VPN",
          [](Scene&) {
              return Reply([](uint16_t* flag) {
                  return DOM_author_ProcProfileVpnGet(kAuthorProfile, "vpn-9", flag);
              });
          })
        .Good(kEnd)
        .Fails({kNothing}),
    Encodes("DOM_author_ProcProfileGetBulk",
            [](Scene&) { return DOM_author_ProcProfileGetBulk(""); }),
    Encodes("DOM_author_ProcProfileVpnGetBulk",
            [](Scene&) {
                char vpn[DOM_PROFILE_NAME_SIZE] = "";
                return DOM_author_ProcProfileVpnGetBulk(kFirst, vpn);
            })
        .After(AddFirst),
};

const Rows batch{
    // The name, the default segment and the VPN; without the name nothing.
    Reads("DOM_SyncAllAuthorProfile",
          [](Scene&) { return Sent([] { DOM_SyncAllAuthorProfile(kPeer); }); })
        .In(fake::kWorkingRole)
        .Good(3)
        .Fails({0, 2, 3}),
    Reads("DOM_SyncAuthorMicroSegment",
          [](Scene&) { return Sent([] { DOM_SyncAuthorMicroSegment(kPeer, Staff()); }); })
        .In(fake::kWorkingRole)
        .Good(1)
        .Fails({0, 1}),
    Reads("DOM_SyncAuthorVPN",
          [](Scene&) { return Sent([] { DOM_SyncAuthorVPN(kPeer, Staff()); }); })
        .In(fake::kWorkingRole)
        .Good(1)
        .Fails({0, 1}),
};

}  // namespace
}  // namespace fault
