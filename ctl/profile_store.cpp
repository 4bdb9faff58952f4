#include "profile_store.h"

#include <aaadom/profile_codec.h>
#include <strings.h>

#include "texts.h"

namespace aaactl {
namespace {

uint16_t ValueOf(const AuthorProfileMsg&) {
    return 0;
}
uint16_t ValueOf(const CriticalProfileMsg& record) {
    return record.value16;
}
void SetValue(AuthorProfileMsg&, uint16_t) {}
void SetValue(CriticalProfileMsg& record, uint16_t value) {
    record.value16 = value;
}

/// Callers have checked that the text fits.
template <size_t N>
void SetField(char (&field)[N], const std::string& text) {
    text.copy(field, N - 1);
}

template <typename Record>
TLV_MSG* EncodeEntry(const ProfileEntry& entry, TLV_MSG* (*encode_default)(const Record*),
                     TLV_MSG* (*encode_vpn)(const Record*)) {
    Record record{};
    record.segment_id = entry.segment.id;
    SetField(record.profile_name, entry.profile);
    SetField(record.segment_name, entry.segment.name);
    SetField(record.vpn_name, entry.vpn);
    SetValue(record, entry.segment.value);
    return entry.vpn.empty() ? encode_default(&record) : encode_vpn(&record);
}

/// The reader of VPN entries takes a default segment as well.
template <typename Record>
bool DecodeEntry(TLV_MSG* message, uint32_t (*decode_vpn)(TLV_MSG*, Record*), ProfileEntry& entry) {
    Record record{};
    if (decode_vpn(message, &record) != DOM_OK) return false;
    entry = {FieldText(record.profile_name),
             FieldText(record.vpn_name),
             {record.segment_id, ValueOf(record), FieldText(record.segment_name)}};
    return true;
}

bool ByText(const std::string& a, const std::string& b) {
    return a < b;
}

bool ByLengthThenText(const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

bool ByLengthThenAnyCase(const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : strcasecmp(a.c_str(), b.c_str()) < 0;
}

}  // namespace

const ProfileStore kAuthorProfiles = {
    .word = "author",
    .member = "author_profiles",
    .has_value = false,
    .exists = DOM_AUTHOR_PROFILE_EXISTS,
    .full = DOM_AUTHOR_STORE_FULL,
    .missing = DOM_AUTHOR_PROFILE_NOT_EXIST,
    .vpns_full = DOM_AUTHOR_VPN_FULL,
    .encode_profile = DOM_author_tlv_EncodeAuthorProfile,
    .encode_vpn_key = DOM_author_tlv_EncodeGetAuthorVpn,
    .encode_entry =
        [](const ProfileEntry& entry) {
            return EncodeEntry<AuthorProfileMsg>(entry, DOM_author_tlv_EncodeDefaultAuthor,
                                                 DOM_author_tlv_EncodeAuthorVpn);
        },
    .decode_entry =
        [](TLV_MSG* message, ProfileEntry& entry) {
            return DecodeEntry<AuthorProfileMsg>(message, DOM_author_tlv_DecodeAuthorVpn, entry);
        },
    .profile_before = ByText,
    .vpn_before = ByText,
};

const ProfileStore kCriticalProfiles = {
    .word = "critical",
    .member = "critical_profiles",
    .has_value = true,
    .exists = DOM_CRITICAL_PROFILE_EXISTS,
    .full = DOM_CRITICAL_STORE_FULL,
    .missing = DOM_CRITICAL_PROFILE_NOT_EXIST,
    .vpns_full = DOM_CRITICAL_VPN_FULL,
    .encode_profile = DOM_clitical_tlv_EncodeCriticalProfile,
    .encode_vpn_key = DOM_critical_tlv_EncodeGetCriticalVpn,
    .encode_entry =
        [](const ProfileEntry& entry) {
            return EncodeEntry<CriticalProfileMsg>(entry, DOM_critical_tlv_EncodeDefaultCritical,
                                                   DOM_critical_tlv_EncodeCriticalVpn);
        },
    .decode_entry =
        [](TLV_MSG* message, ProfileEntry& entry) {
            return DecodeEntry<CriticalProfileMsg>(message, DOM_critical_tlv_DecodeCriticalVpn,
                                                   entry);
        },
    .profile_before = ByLengthThenAnyCase,
    .vpn_before = ByLengthThenText,
};

std::string ProfileObject(const ProfileStore& store, const std::string& name) {
    return std::string(store.word) + " profile \"" + name + "\"";
}

Failure NoSuchProfile(const ProfileStore& store, const std::string& name, uint32_t code) {
    return Failure(kExitRefused, ProfileObject(store, name), "there is no such profile",
                   "See aaactl profile " + std::string(store.word) + " list", code);
}

namespace {

std::string StoreObject(const ProfileStore& store) {
    return std::string(store.word) + " profiles";
}

Failure Unreadable(const ProfileStore& store) {
    return Failure(kExitRefused, StoreObject(store), "the daemon's answer cannot be read",
                   "Use the aaactl of the daemon's release");
}

std::optional<ProfileEntry> ReadEntry(Client& client, const ProfileStore& store, TLV_MSG* request,
                                      uint32_t operation) {
    const Reply reply = client.Read(request, operation);
    if (!reply.data) {
        if (reply.refusal != store.missing) throw Refused(StoreObject(store), reply.refusal);
        return std::nullopt;
    }
    ProfileEntry entry;
    if (!store.decode_entry(reply.data.get(), entry)) throw Unreadable(store);
    return entry;
}

/// What a change of a segment is answered with when its profile is missing, among other reasons.
constexpr uint32_t kSegmentFailed = 1;
static_assert(kSegmentFailed == DOM_AUTHOR_FAILED);
static_assert(kSegmentFailed == DOM_CRITICAL_FAILED);

Failure NotChanged(Client& client, const ProfileStore& store, const std::string& profile,
                   uint32_t code) {
    if (code == store.vpns_full) {
        return Failure(
            kExitRefused, ProfileObject(store, profile),
            "it has " + std::to_string(DOM_PROFILE_VPN_MAX) + " VPNs, and no profile has more",
            "Take a VPN away that is no longer used: aaactl profile " + std::string(store.word) +
                " vpn unset " + profile + " VPN",
            code);
    }
    if (code == kSegmentFailed && !FindProfile(client, store, profile)) {
        return NoSuchProfile(store, profile, code);
    }
    return Refused(ProfileObject(store, profile), code);
}

}  // namespace

std::optional<ProfileEntry> FindProfile(Client& client, const ProfileStore& store,
                                        const std::string& name) {
    return ReadEntry(client, store, store.encode_profile(name.c_str()), DOM_OP_GET);
}

ProfileEntry NeedProfile(Client& client, const ProfileStore& store, const std::string& name) {
    const auto entry = FindProfile(client, store, name);
    if (!entry) throw NoSuchProfile(store, name, store.missing);
    return *entry;
}

std::optional<ProfileEntry> FindVpn(Client& client, const ProfileStore& store,
                                    const std::string& profile, const std::string& vpn) {
    return ReadEntry(client, store, store.encode_vpn_key(profile.c_str(), vpn.c_str()), DOM_OP_GET);
}

std::optional<ProfileEntry> NextProfile(Client& client, const ProfileStore& store,
                                        const std::string& name) {
    auto next = ReadEntry(client, store, store.encode_profile(name.c_str()), DOM_OP_GET_NEXT);
    // Names ascend, so a walk ends whatever other clients change meanwhile.
    if (next && !store.profile_before(name, next->profile)) throw Unreadable(store);
    return next;
}

std::optional<ProfileEntry> NextVpn(Client& client, const ProfileStore& store,
                                    const ProfileEntry& key) {
    auto next = ReadEntry(client, store, store.encode_vpn_key(key.profile.c_str(), key.vpn.c_str()),
                          DOM_OP_GET_NEXT);
    if (next) {
        const bool ascends = next->profile == key.profile
                                 ? store.vpn_before(key.vpn, next->vpn)
                                 : store.profile_before(key.profile, next->profile);
        if (!ascends) throw Unreadable(store);
    }
    return next;
}

void CreateProfile(Client& client, const ProfileStore& store, const std::string& name) {
    const uint32_t result = client.Change(store.encode_profile(name.c_str()), DOM_OP_SET);
    if (result == DOM_OK) return;
    if (result == store.exists) {
        throw Failure(kExitRefused, ProfileObject(store, name),
                      "a profile of this name exists already",
                      "See aaactl profile " + std::string(store.word) + " show " + name, result);
    }
    if (result == store.full) {
        throw Failure(kExitRefused, ProfileObject(store, name),
                      "there are " + std::to_string(DOM_PROFILE_MAX) + " " + store.word +
                          " profiles, and the daemon takes no more",
                      "Delete a profile that is no longer used", result);
    }
    throw Refused(ProfileObject(store, name), result);
}

void DeleteProfile(Client& client, const ProfileStore& store, const std::string& name) {
    const uint32_t result = client.Change(store.encode_profile(name.c_str()), DOM_OP_DELETE);
    if (result == store.missing) throw NoSuchProfile(store, name, result);
    if (result != DOM_OK) throw Refused(ProfileObject(store, name), result);
}

void SetSegment(Client& client, const ProfileStore& store, const ProfileEntry& entry) {
    const uint32_t result = client.Change(store.encode_entry(entry), DOM_OP_SET);
    if (result != DOM_OK) throw NotChanged(client, store, entry.profile, result);
}

void UnsetSegment(Client& client, const ProfileStore& store, ProfileEntry entry) {
    // A deletion stores what it carries as the default segment; nothing takes it away.
    entry.segment = {};
    const uint32_t result = client.Change(store.encode_entry(entry), DOM_OP_DELETE);
    if (result != DOM_OK) throw NotChanged(client, store, entry.profile, result);
}

}  // namespace aaactl
