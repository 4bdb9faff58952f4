// Rows of profile.h: what authorization and critical profiles have alike.
#include <aaadom/codes.h>
#include <aaadom/profile.h>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr char kFirst[] = "Jail";  ///< stands before either profile of the stage when it is there
constexpr char kVpn[] = "vpn-0";
constexpr int32_t kPeer = 9;  // a descriptor that the platform writes to
constexpr uint64_t kEnd = 2;  ///< an end message, not an object

struct Authors {
    using Profile = AuthorProfile;
    using Segment = AuthorSegment;
    using Vpn = AuthorVpn;
    static constexpr const char* kPrefix = "DOM_author_";
    static constexpr const char* kProfile = kAuthorProfile;
    static constexpr const char* kOtherCase = "STAFF";
    static constexpr const char* kGoldenVpn = "vpn-b";
    static constexpr const char* kProfileFile = "msg_156_author_profile";
    static constexpr const char* kVpnFile = "msg_157_author_vpn";
    static constexpr const char* kSegmentFile = "msg_158_author_segment";
    static constexpr const char* kProcVpnName = "ProAuthorVpn";
    static constexpr const char* kReadName = "AAA_GetAuthorProfileData";
    static constexpr const char* kSyncAllName = "DOM_SyncAllAuthorProfile";
    static constexpr const char* kSyncSegmentName = "DOM_SyncAuthorMicroSegment";
    static constexpr const char* kSyncVpnName = "DOM_SyncAuthorVPN";
    static constexpr uint32_t kFailed = DOM_AUTHOR_FAILED;
    static constexpr uint32_t kExists = DOM_AUTHOR_PROFILE_EXISTS;
    static constexpr auto Init = DOM_author_InitData;
    static constexpr auto Fini = DOM_author_Fini;
    static constexpr auto Head = DOM_author_GetProfileHead;
    static constexpr auto Find = DOM_author_FindProfile;
    static constexpr auto FindBigger = DOM_author_FindBiggerProfile;
    static constexpr auto FindBiggerVpn = DOM_author_FindBiggerVpn;
    static constexpr auto Add = DOM_author_AddProfile;
    static constexpr auto AddVpn = DOM_author_AddVpn;
    static constexpr auto Read = AAA_GetAuthorProfileData;
    static constexpr auto ProcVpn = DOM_author_ProAuthorVpn;
    static constexpr auto ProcSegment = DOM_author_ProcMicroSegMent;
    static constexpr auto Get = DOM_author_ProcProfileGet;
    static constexpr auto GetVpn = DOM_author_ProcProfileVpnGet;
    static constexpr auto GetBulk = DOM_author_ProcProfileGetBulk;
    static constexpr auto GetVpnBulk = DOM_author_ProcProfileVpnGetBulk;
    static constexpr auto SyncAll = DOM_SyncAllAuthorProfile;
    static constexpr auto SyncSegment = DOM_SyncAuthorMicroSegment;
    static constexpr auto SyncVpn = DOM_SyncAuthorVPN;

    static auto* VpnsOf(Profile* profile) { return &profile->vpn_list; }
    static uint32_t Proc(TLV_MSG* msg, uint16_t operation, char* profile, DomDbUpdateReq* change) {
        return DOM_author_ProcProfile(msg, operation, profile, DOM_PROFILE_NAME_SIZE, change);
    }
};

struct Criticals {
    using Profile = CriticalProfile;
    using Segment = CriticalSegment;
    using Vpn = CriticalVpn;
    static constexpr const char* kPrefix = "DOM_critical_";
    static constexpr const char* kProfile = kCriticalProfile;
    static constexpr const char* kOtherCase = "QUARANTINE";
    static constexpr const char* kGoldenVpn = "vpn-a";
    static constexpr const char* kProfileFile = "msg_147_critical_profile";
    static constexpr const char* kVpnFile = "msg_148_critical_vpn";
    static constexpr const char* kSegmentFile = "msg_149_critical_segment";
    static constexpr const char* kProcVpnName = "ProCriticalVpn";
    static constexpr const char* kReadName = "AAA_GetCriticalData";
    static constexpr const char* kSyncAllName = "DOM_SyncAllCriticalProfile";
    static constexpr const char* kSyncSegmentName = "DOM_SyncCriticalMicroSegment";
    static constexpr const char* kSyncVpnName = "DOM_SyncCriticalVPN";
    static constexpr uint32_t kFailed = DOM_CRITICAL_FAILED;
    static constexpr uint32_t kExists = DOM_CRITICAL_PROFILE_EXISTS;
    static constexpr auto Init = DOM_critical_InitData;
    static constexpr auto Fini = DOM_critical_Fini;
    static constexpr auto Head = DOM_critical_GetProfileHead;
    static constexpr auto Find = DOM_critical_FindProfile;
    static constexpr auto FindBigger = DOM_critical_FindBiggerProfile;
    static constexpr auto FindBiggerVpn = DOM_critical_FindBiggerVpn;
    static constexpr auto Add = DOM_critical_AddProfile;
    static constexpr auto AddVpn = DOM_critical_AddVpn;
    static constexpr auto Read = AAA_GetCriticalData;
    static constexpr auto ProcVpn = DOM_critical_ProCriticalVpn;
    static constexpr auto ProcSegment = DOM_critical_ProcMicroSegMent;
    static constexpr auto Get = DOM_critical_ProcProfileGet;
    static constexpr auto GetVpn = DOM_critical_ProcProfileVpnGet;
    static constexpr auto GetBulk = DOM_critical_ProcProfileGetBulk;
    static constexpr auto GetVpnBulk = DOM_critical_ProcProfileVpnGetBulk;
    static constexpr auto SyncAll = DOM_SyncAllCriticalProfile;
    static constexpr auto SyncSegment = DOM_SyncCriticalMicroSegment;
    static constexpr auto SyncVpn = DOM_SyncCriticalVPN;

    static auto* VpnsOf(Profile* profile) { return &profile->first_vpn; }
    static uint32_t Proc(TLV_MSG* msg, uint16_t operation, char* profile, DomDbUpdateReq* change) {
        return DOM_critical_ProcProfile(msg, operation, profile, change);
    }
};

template <typename Kind>
std::string Name(const char* what) {
    return std::string(Kind::kPrefix) + what;
}
template <typename Kind>
typename Kind::Segment NewSegment() {
    typename Kind::Segment segment{};
    segment.segment_id = 58;
    aaadom::CopyText(segment.segment_name, "labs");
    return segment;
}
/// The profile of the stage.
template <typename Kind>
typename Kind::Profile* Staged() {
    return Kind::Find(Kind::kProfile);
}
template <typename Kind>
void AddFirst(Scene&) {
    (void)Kind::Add(kFirst);
}
/// The VPN of the golden messages.
template <typename Kind>
void AddGoldenVpn(Scene&) {
    const auto segment = NewSegment<Kind>();
    (void)Kind::AddVpn(Kind::kGoldenVpn, Staged<Kind>(), &segment);
}

template <typename Profile>
Outcome NameOf(const Profile* profile) {
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

/// Adds a VPN to a profile.
template <typename Kind>
Row AddsVpn(const char* how, const char* profile, const char* vpn) {
    return Changes(Name<Kind>("AddVpn/") + how, [=](Scene&) {
        const auto segment = NewSegment<Kind>();
        return Kind::AddVpn(vpn, Kind::Find(profile), &segment);
    });
}

template <typename Kind>
std::vector<Row> Store() {
    return {
        Reads(Name<Kind>("InitData"), [](Scene&) { return Found(Kind::Init()); })
            .On(EmptyTables)
            .Good(kSomething),
        Changes(Name<Kind>("Fini"), [](Scene&) { return Kind::Fini(), 0; }).NeverFails(),
        Reads(Name<Kind>("GetProfileHead"), [](Scene&) { return NameOf(*Kind::Head()); })
            .Good(kSomething),
        Reads(Name<Kind>("FindProfile"),
              [](Scene&) { return NameOf(Kind::Find(Kind::kOtherCase)); })
            .Good(kSomething),
        Reads(Name<Kind>("FindBiggerProfile"),
              [](Scene&) { return NameOf(Kind::FindBigger(Kind::Head(), kFirst)); })
            .Good(kSomething),
        Reads(Name<Kind>("FindBiggerVpn"),
              [](Scene&) -> Outcome {
                  const auto* vpn = Kind::FindBiggerVpn(Kind::VpnsOf(Staged<Kind>()), "vpn");
                  return {Found(vpn).result, vpn == nullptr ? "" : vpn->vpn_name};
              })
            .Good(kSomething),
        Changes(Name<Kind>("AddProfile"), [](Scene&) { return Kind::Add(kFirst); })
            .Fails({Kind::kFailed}),
        AddsVpn<Kind>("first VPN", kFirst, kVpn).After(AddFirst<Kind>).Fails({Kind::kFailed}),
        AddsVpn<Kind>("further VPN", Kind::kProfile, "vpn-1").Fails({Kind::kFailed}),
        AddsVpn<Kind>("VPN that exists", Kind::kProfile, kVpn).NeverFails(),
        Reads(Kind::kReadName,
              [](Scene&) -> Outcome {
                  typename Kind::Segment segment{};
                  const uint32_t result = Kind::Read(Kind::kProfile, kVpn, &segment);
                  return {result, BytesOf(segment)};
              }),
    };
}

/// Applies a golden message; name and change record are the outputs.
template <typename Kind, typename Apply>
Row Applies(std::string name, const char* file, Apply apply) {
    return Changes(std::move(name),
                   [apply](Scene& scene) -> Outcome {
                       DomDbUpdateReq change{};
                       char profile[DOM_PROFILE_NAME_SIZE] = "";
                       const uint32_t result = apply(scene.message, profile, &change);
                       return {result, profile + BytesOf(change)};
                   })
        .After([file](Scene& scene) { scene.message = scene.Golden(file); })
        .Fails({Kind::kFailed});
}
template <typename Kind>
Row AppliesProfile(const char* how, uint16_t operation) {
    return Applies<Kind>(Name<Kind>("ProcProfile/") + how, Kind::kProfileFile,
                         [operation](TLV_MSG* msg, char* profile, DomDbUpdateReq* change) {
                             return Kind::Proc(msg, operation, profile, change);
                         });
}
template <typename Kind>
Row AppliesVpn(const char* how, uint16_t operation) {
    return Applies<Kind>(Name<Kind>(Kind::kProcVpnName) + how, Kind::kVpnFile,
                         [operation](TLV_MSG* msg, char*, DomDbUpdateReq* change) {
                             return Kind::ProcVpn(msg, operation, change);
                         });
}
template <typename Kind>
Row AppliesDefault(const char* how, uint16_t operation) {
    return Applies<Kind>(Name<Kind>("ProcMicroSegMent") + how, Kind::kSegmentFile,
                         [operation](TLV_MSG* msg, char*, DomDbUpdateReq* change) {
                             return Kind::ProcSegment(msg, operation, change);
                         });
}

template <typename Kind>
std::vector<Row> ProfileChanges() {
    return {
        AppliesProfile<Kind>("add", 1).On(EmptyTables),
        AppliesProfile<Kind>("add one that exists", 1).Good(Kind::kExists).NeverFails(),
        AppliesProfile<Kind>("delete", 0),
        AppliesVpn<Kind>("/set", 1),
        AppliesVpn<Kind>("/set one that exists", 1).After(AddGoldenVpn<Kind>),
        AppliesVpn<Kind>("/delete", 0).After(AddGoldenVpn<Kind>),
        AppliesDefault<Kind>("/set", 1),
        AppliesDefault<Kind>("/delete", 0),
    };
}

/// A read of a VPN of the stage's profile.
template <typename Kind>
Row ReadsVpn(const char* how, const char* vpn) {
    return Reads(Name<Kind>("ProcProfileVpnGet") + how, [vpn](Scene&) {
        return Reply([vpn](uint16_t* flag) { return Kind::GetVpn(Kind::kProfile, vpn, flag); });
    });
}
template <typename Kind>
Row ReadsProfile(const char* how, const char* profile) {
    return Reads(Name<Kind>("ProcProfileGet") + how, [profile](Scene&) {
        return Reply([profile](uint16_t* flag) { return Kind::Get(profile, flag); });
    });
}

template <typename Kind>
std::vector<Row> Management() {
    return {
        ReadsProfile<Kind>("", Kind::kProfile).Good(kSomething).Fails({kNothing}),
        ReadsProfile<Kind>("/no such profile", kFirst).Good(kEnd).Fails({kNothing}),
        // The message that cannot be built is refused as an object that is not there.
        ReadsVpn<Kind>("", kVpn).Good(kSomething).Fails({kEnd}),
        ReadsVpn<Kind>("/no such VPN", "vpn-9").Good(kEnd).Fails({kNothing}),
        Encodes(Name<Kind>("ProcProfileGetBulk"), [](Scene&) { return Kind::GetBulk(""); }),
        Encodes(Name<Kind>("ProcProfileVpnGetBulk"),
                [](Scene&) {
                    char vpn[DOM_PROFILE_NAME_SIZE] = "";
                    return Kind::GetVpnBulk(kFirst, vpn);
                })
            .After(AddFirst<Kind>),
    };
}

template <typename Kind>
std::vector<Row> Batch() {
    return {
        // The name, the default segment and the VPN; without the name nothing.
        Reads(Kind::kSyncAllName, [](Scene&) { return Sent([] { Kind::SyncAll(kPeer); }); })
            .In(fake::kWorkingRole)
            .Good(3)
            .Fails({0, 2, 3}),
        Reads(Kind::kSyncSegmentName,
              [](Scene&) { return Sent([] { Kind::SyncSegment(kPeer, Staged<Kind>()); }); })
            .In(fake::kWorkingRole)
            .Good(1)
            .Fails({0, 1}),
        Reads(Kind::kSyncVpnName,
              [](Scene&) { return Sent([] { Kind::SyncVpn(kPeer, Staged<Kind>()); }); })
            .In(fake::kWorkingRole)
            .Good(1)
            .Fails({0, 1}),
    };
}

template <typename Kind>
struct KindRows {
    const Rows store{Store<Kind>()};
    const Rows changes{ProfileChanges<Kind>()};
    const Rows management{Management<Kind>()};
    const Rows batch{Batch<Kind>()};
};
const KindRows<Authors> author_rows;
const KindRows<Criticals> critical_rows;

// What one of the two has alone.

AuthorVpn* StaffVpn() {
    return reinterpret_cast<AuthorVpn*>(Staged<Authors>()->vpn_list.next);
}

const Rows alone{
    Reads("DOM_author_GetAuthorProfileInfo",
          [](Scene&) { return Found(DOM_author_GetAuthorProfileInfo()); })
        .Good(kSomething),
    Reads("DOM_critical_GetCriticalProfileInfo",
          [](Scene&) { return Found(DOM_critical_GetCriticalProfileInfo()); })
        .Good(kSomething),
    Reads("DOM_author_GetProfileNum", [](Scene&) { return DOM_author_GetProfileNum(); }).Good(1),
    Reads("DOM_author_GetFirstProfile", [](Scene&) { return NameOf(DOM_author_GetFirstProfile()); })
        .Good(kSomething),
    Reads("DOM_author_GetNextProfile",
          [](Scene&) { return NameOf(DOM_author_GetNextProfile(kFirst)); })
        .After(AddFirst<Authors>)
        .Good(kSomething),
    Changes("DOM_author_FreeAuthorProfileVpnNode",
            [](Scene&) { return DOM_author_FreeAuthorProfileVpnNode(StaffVpn()), 0; })
        .NeverFails(),
    Changes("DOM_author_DestroyHashNode",
            [](Scene&) { return DOM_author_DestroyHashNode(&StaffVpn()->hash), 0; })
        .NeverFails(),
};

}  // namespace
}  // namespace fault
