// Both kinds of profile stores behind one interface, so that what is equal is tested once for each,
// and the messages of both, built TLV by TLV.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>
#include <aaadom/results.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstring>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "base/message.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "profile/author_profiles.h"
#include "profile/critical_profiles.h"

namespace aaadom {

using Names = std::vector<std::string>;

inline constexpr uint16_t kAdd = 1;
inline constexpr uint16_t kDelete = 0;
inline constexpr uint32_t kOk = 0;
inline constexpr uint32_t kFailed = 1;

/// A segment of either kind; authorization profiles have no `value16`.
struct Seg {
    uint32_t id = 0;
    std::string name;
    uint16_t value16 = 0;
    bool operator==(const Seg&) const = default;
};
inline void PrintTo(const Seg& seg, std::ostream* out) {
    *out << seg.id << "/" << seg.name << "/" << seg.value16;
}

/// What a change record says about a profile.
struct Changed {
    uint32_t kind = 0;
    uint16_t operation = 0;
    std::string profile, vpn;
    Seg segment;
    bool operator==(const Changed&) const = default;
};
inline void PrintTo(const Changed& changed, std::ostream* out) {
    *out << changed.kind << " op " << changed.operation << " " << changed.profile << "/"
         << changed.vpn << " ";
    PrintTo(changed.segment, out);
}

/// Appends in the order of the calls; every append must work.
class Fields {
  public:
    Fields() : msg_(TLV_Create()) {}
    Fields& Number(uint16_t type, uint32_t value) {
        EXPECT_EQ(AAA_AppendUINTTlvData(msg_.get(), type, value), DOM_OK);
        return *this;
    }
    Fields& Text(uint16_t type, const std::string& text) {
        EXPECT_EQ(AAA_AppendStrTlvData(msg_.get(), type, text.c_str()), DOM_OK);
        return *this;
    }
    TlvPtr Take() { return std::move(msg_); }

  private:
    TlvPtr msg_;
};

struct Author {
    using Kind = AuthorProfiles;
    static constexpr uint32_t kStoreFull = 20, kVpnsFull = 22, kExists = 19, kMissing = 21;
    static constexpr uint32_t kProfileCode = 156, kVpnCode = 157, kDefaultCode = 158;
    static constexpr uint32_t kProfileChange = 33, kVpnChange = 34, kSegmentChange = 35;

    static constexpr auto Init = DOM_author_InitData;
    static constexpr auto Fini = DOM_author_Fini;
    static constexpr auto Info = DOM_author_GetAuthorProfileInfo;
    static constexpr auto Head = DOM_author_GetProfileHead;
    static constexpr auto Find = DOM_author_FindProfile;
    static constexpr auto Add = DOM_author_AddProfile;
    static constexpr auto Delete = dom_author_DelProfile;
    static constexpr auto FindVpn = dom_author_FindVpnInfo;
    static constexpr auto AddVpn = DOM_author_AddVpn;
    static constexpr auto DeleteVpn = dom_author_DelVpn;
    static constexpr auto HashKey = dom_author_GetHashKey;
    static constexpr auto FindBigger = DOM_author_FindBiggerProfile;
    static AuthorVpn* FindBiggerVpn(AuthorProfile* profile, const char* name) {
        return DOM_author_FindBiggerVpn(&profile->vpn_list, name);
    }
    static constexpr auto Query = AAA_GetAuthorProfileData;
    static uint32_t ApplyProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                 DomDbUpdateReq* change) {
        return DOM_author_ProcProfile(msg, operation, name_out, 32, change);
    }
    static constexpr auto ApplyVpn = DOM_author_ProAuthorVpn;
    static constexpr auto ApplyDefault = DOM_author_ProcMicroSegMent;
    static constexpr auto Get = DOM_author_ProcProfileGet;
    static constexpr auto GetVpn = DOM_author_ProcProfileVpnGet;
    static constexpr auto GetBulk = DOM_author_ProcProfileGetBulk;
    static constexpr auto GetVpnBulk = DOM_author_ProcProfileVpnGetBulk;
    static constexpr auto SyncAll = DOM_SyncAllAuthorProfile;
    static constexpr auto SyncDefault = DOM_SyncAuthorMicroSegment;
    static constexpr auto SyncVpns = DOM_SyncAuthorVPN;

    static AuthorSegment Pack(const Seg& seg) {
        AuthorSegment segment{};
        segment.segment_id = seg.id;
        strcpy(segment.segment_name, seg.name.c_str());
        return segment;
    }
    static Seg Unpack(const AuthorSegment& segment) {
        return {segment.segment_id, segment.segment_name};
    }
    /// `seg` as this kind of profile keeps it.
    static Seg Kept(const Seg& seg) { return {seg.id, seg.name}; }
    static Changed ChangeOf(const DomDbUpdateReq& change) {
        return {change.object_type,
                change.operation,
                change.author_profile_name,
                change.entry_name,
                {change.author_number, change.author_text}};
    }
    static constexpr uint16_t kProfileNameTlv = DOM_TLV_AUTHOR_PROFILE_NAME;
    static constexpr uint16_t kVpnNameTlv = DOM_TLV_AUTHOR_VPN_NAME;
    static void AppendSegment(Fields& fields, const Seg& seg) {
        fields.Text(DOM_TLV_AUTHOR_SEGMENT_NAME, seg.name);
        fields.Number(DOM_TLV_AUTHOR_SEGMENT_ID, seg.id);
    }
    /// Names in list order; checks the links of both directions.
    static Names VpnNames(const AuthorProfile& profile) {
        Names names;
        const AuthorVpnLink* link = &profile.vpn_list;
        do {
            EXPECT_EQ(link->next->prev, link);
            link = link->next;
            if (link != &profile.vpn_list) {
                names.emplace_back(reinterpret_cast<const AuthorVpn*>(link)->vpn_name);
            }
        } while (link != &profile.vpn_list);
        return names;
    }
};

struct Critical {
    using Kind = CriticalProfiles;
    static constexpr uint32_t kStoreFull = 10, kVpnsFull = 11, kExists = 13, kMissing = 12;
    static constexpr uint32_t kProfileCode = 147, kVpnCode = 148, kDefaultCode = 149;
    static constexpr uint32_t kProfileChange = 23, kVpnChange = 24, kSegmentChange = 25;

    static constexpr auto Init = DOM_critical_InitData;
    static constexpr auto Fini = DOM_critical_Fini;
    static constexpr auto Info = DOM_critical_GetCriticalProfileInfo;
    static constexpr auto Head = DOM_critical_GetProfileHead;
    static constexpr auto Find = DOM_critical_FindProfile;
    static constexpr auto Add = DOM_critical_AddProfile;
    static constexpr auto Delete = dom_critical_DelProfile;
    static constexpr auto FindVpn = dom_critical_FindVpnInfo;
    static constexpr auto AddVpn = DOM_critical_AddVpn;
    static constexpr auto DeleteVpn = dom_critical_DelVpn;
    static constexpr auto HashKey = dom_critical_GetHashKey;
    static constexpr auto FindBigger = DOM_critical_FindBiggerProfile;
    static CriticalVpn* FindBiggerVpn(CriticalProfile* profile, const char* name) {
        return DOM_critical_FindBiggerVpn(&profile->first_vpn, name);
    }
    static constexpr auto Query = AAA_GetCriticalData;
    static constexpr auto ApplyProfile = DOM_critical_ProcProfile;
    static constexpr auto ApplyVpn = DOM_critical_ProCriticalVpn;
    static constexpr auto ApplyDefault = DOM_critical_ProcMicroSegMent;
    static constexpr auto Get = DOM_critical_ProcProfileGet;
    static constexpr auto GetVpn = DOM_critical_ProcProfileVpnGet;
    static constexpr auto GetBulk = DOM_critical_ProcProfileGetBulk;
    static constexpr auto GetVpnBulk = DOM_critical_ProcProfileVpnGetBulk;
    static constexpr auto SyncAll = DOM_SyncAllCriticalProfile;
    static constexpr auto SyncDefault = DOM_SyncCriticalMicroSegment;
    static constexpr auto SyncVpns = DOM_SyncCriticalVPN;

    static CriticalSegment Pack(const Seg& seg) {
        CriticalSegment segment{};
        segment.segment_id = seg.id;
        segment.value16 = seg.value16;
        strcpy(segment.segment_name, seg.name.c_str());
        return segment;
    }
    static Seg Unpack(const CriticalSegment& segment) {
        return {segment.segment_id, segment.segment_name, segment.value16};
    }
    static Seg Kept(const Seg& seg) { return seg; }
    static Changed ChangeOf(const DomDbUpdateReq& change) {
        return {change.object_type,
                change.operation,
                change.critical_profile_name,
                change.entry_name,
                {change.critical_number, change.critical_text, change.critical_number16}};
    }
    static constexpr uint16_t kProfileNameTlv = DOM_TLV_CRITICAL_PROFILE_NAME;
    static constexpr uint16_t kVpnNameTlv = DOM_TLV_CRITICAL_VPN_NAME;
    static void AppendSegment(Fields& fields, const Seg& seg) {
        fields.Text(DOM_TLV_CRITICAL_SEGMENT_NAME, seg.name);
        fields.Number(DOM_TLV_CRITICAL_VALUE_16, seg.value16);
        fields.Number(DOM_TLV_CRITICAL_SEGMENT_ID, seg.id);
    }
    static Names VpnNames(const CriticalProfile& profile) {
        Names names;
        CriticalVpn* const* link = &profile.first_vpn;
        for (; *link != nullptr; link = &(*link)->next) {
            EXPECT_EQ((*link)->prev_link, link);
            names.emplace_back((*link)->vpn_name);
        }
        return names;
    }
};

/// How much the heap grows in `rounds` rounds of `body`, which should give back what it takes. The
/// first rounds do not count: caches fill in them. 0 in a sanitized build, whose leak checker sees
/// more than this.
template <typename Body>
int64_t HeapGrowth(int rounds, Body&& body) {
    for (int i = 0; i < 10; ++i) body();
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < rounds; ++i) body();
    return static_cast<int64_t>(mallinfo2().uordblks) - static_cast<int64_t>(before);
}
inline constexpr int64_t kHeapNoise = 1 << 14;  // what gtest and the fakes may note meanwhile

/// Both roles' stores of one kind for the length of a test, which begins on the working role.
template <typename Store>
class ProfileTest : public testing::Test {
  protected:
    using Profile = typename Store::Kind::Profile;
    using Vpn = typename Store::Kind::Vpn;

    ProfileTest() {
        fake::Reset();
        const AAADService service = fake::RoleService();
        DOM_SetAAADService(&service);
        Store::Init();
        InConfig([] { return Store::Init(); });
    }
    ~ProfileTest() override {
        fake::DisarmFailures();
        fake::role_of_this_thread = fake::kWorkingRole;
        Store::Fini();
        InConfig([] { return Store::Fini(), 0; });
        DOM_ResetAAADService();
        EXPECT_EQ(fake::LiveMessages(), 0);
        EXPECT_EQ(fake::LiveHashTables(), 0);
        EXPECT_TRUE(fake::Misuses().empty());
        EXPECT_EQ(fake::Count(fake::Event::kLock), 0u) << "the stores take no lock";
    }

    template <typename Body>
    static auto InConfig(Body&& body) {
        return fake::InRole(fake::kConfigRole, body);
    }

    static Profile* Add(const std::string& name) {
        EXPECT_EQ(Store::Add(name.c_str()), kOk);
        return Store::Find(name.c_str());
    }
    static uint32_t AddVpn(Profile* profile, const std::string& name, const Seg& seg = {1, "s"}) {
        const auto segment = Store::Pack(seg);
        return Store::AddVpn(name.c_str(), profile, &segment);
    }
    static Vpn* FindVpn(Profile* profile, const std::string& name) {
        return Store::FindVpn(name.c_str(), profile);
    }
    static void SetDefault(Profile* profile, const Seg& seg) {
        profile->default_segment = Store::Pack(seg);
    }
    /// Fills the working role's store.
    static void AddProfiles(uint32_t count) {
        for (uint32_t i = 0; i < count; ++i) Add("p" + std::to_string(i));
    }
    static void AddVpns(Profile* profile, uint32_t count) {
        for (uint32_t i = 0; i < count; ++i) {
            ASSERT_EQ(AddVpn(profile, "v" + std::to_string(i)), kOk);
        }
    }

    /// The calling role's profiles in list order; checks links and count.
    static Names ProfileNames() {
        Names names;
        auto* const* link = Store::Head();
        for (; *link != nullptr; link = &(*link)->next) {
            EXPECT_EQ((*link)->prev_link, link);
            names.emplace_back((*link)->name);
        }
        EXPECT_EQ(Store::Info()->profile_count, names.size());
        return names;
    }
    /// A profile's VPNs in list order; checks links and count.
    static Names VpnNames(const Profile* profile) {
        const Names names = Store::VpnNames(*profile);
        EXPECT_EQ(profile->vpn_count, names.size());
        return names;
    }
    /// A profile's VPNs bucket by bucket, each from its head; checks links and buckets.
    static Names ChainNames(const Profile* profile) {
        Names names;
        if (profile->vpn_table == nullptr) return names;
        for (uint32_t bucket = 0; bucket < profile->vpn_table->bucket_count; ++bucket) {
            HASH_NODE* const* link = &profile->vpn_table->buckets[bucket];
            for (; *link != nullptr; link = &(*link)->next) {
                EXPECT_EQ((*link)->prev_link, link);
                const Vpn* vpn = Store::Kind::OfHashNode(*link);
                EXPECT_EQ(Store::HashKey(vpn->vpn_name), bucket);
                names.emplace_back(vpn->vpn_name);
            }
        }
        return names;
    }
    /// Everything the calling role's store holds, in words.
    static std::string Dump() {
        std::string text;
        const auto write = [&text](const auto& segment) {
            const Seg seg = Store::Unpack(segment);
            text += " " + std::to_string(seg.id) + "/" + seg.name + "/" +
                    std::to_string(seg.value16) + "\n";
        };
        for (const std::string& name : ProfileNames()) {
            Profile* profile = Store::Find(name.c_str());
            text += name;
            write(profile->default_segment);
            for (const std::string& vpn : VpnNames(profile)) {
                text += " " + vpn;
                write(FindVpn(profile, vpn)->segment);
            }
        }
        return text;
    }

    static TlvPtr ProfileMsg(const std::string& name) {
        return Fields()
            .Number(DOM_TLV_MSG_CODE, Store::kProfileCode)
            .Text(Store::kProfileNameTlv, name)
            .Take();
    }
    static TlvPtr VpnMsg(const std::string& profile, const std::string& vpn, const Seg& seg) {
        Fields fields;
        fields.Number(DOM_TLV_MSG_CODE, Store::kVpnCode);
        Store::AppendSegment(fields, seg);
        return fields.Text(Store::kProfileNameTlv, profile).Text(Store::kVpnNameTlv, vpn).Take();
    }
    static TlvPtr DefaultMsg(const std::string& profile, const Seg& seg) {
        Fields fields;
        fields.Number(DOM_TLV_MSG_CODE, Store::kDefaultCode);
        Store::AppendSegment(fields, seg);
        return fields.Text(Store::kProfileNameTlv, profile).Take();
    }
    /// What a failed read is answered with: the result alone, no message code.
    static TlvPtr EndMsg(uint32_t result) { return Fields().Number(DOM_TLV_RESULT, result).Take(); }
    /// Consumes nothing; both messages byte for byte.
    static void ExpectSame(const TlvPtr& msg, const TlvPtr& expected) {
        ASSERT_TRUE(msg);
        EXPECT_EQ(fake::ImageOf(msg.get()), fake::ImageOf(expected.get()));
    }

    static uint32_t ApplyProfile(const std::string& name, uint16_t operation,
                                 DomDbUpdateReq* change = nullptr, char* name_out = nullptr) {
        return Store::ApplyProfile(ProfileMsg(name).get(), operation, name_out, change);
    }
    static uint32_t ApplyVpn(const std::string& profile, const std::string& vpn, const Seg& seg,
                             uint16_t operation, DomDbUpdateReq* change = nullptr) {
        return Store::ApplyVpn(VpnMsg(profile, vpn, seg).get(), operation, change);
    }
    static uint32_t ApplyDefault(const std::string& profile, const Seg& seg, uint16_t operation,
                                 DomDbUpdateReq* change = nullptr) {
        return Store::ApplyDefault(DefaultMsg(profile, seg).get(), operation, change);
    }

    static DomDbUpdateReq Filled() {
        DomDbUpdateReq change;
        memset(&change, 0x5A, sizeof change);
        return change;
    }
    static bool IsFilled(const DomDbUpdateReq& change) {
        const DomDbUpdateReq filled = Filled();
        return memcmp(&change, &filled, sizeof change) == 0;
    }
};

using BothKinds = testing::Types<Author, Critical>;

struct KindNames {
    template <typename Store>
    static std::string GetName(int) {
        return std::is_same_v<Store, Author> ? "Author" : "Critical";
    }
};

}  // namespace aaadom
