#include "snapshot.h"

#include <platform/aaa_tlv.h>

#include <cstring>
#include <iterator>

#include "daemon/record_list_keys.h"
#include "domain_facts.h"
#include "integration/record_reports.h"
#include "integration/stopped_database.h"

using namespace daemon_test;

namespace crash {

const std::vector<std::string> kKindsOfConfiguration = {"domain", "author", "critical", "limit",
                                                        "recording"};
const std::vector<std::string> kKindsOfWorking = {"domain", "nas", "policy", "device"};

namespace {

std::string Pair(uint32_t id, const char* text) {
    return std::to_string(id) + " " + text;
}

void AskProfiles(Facts& facts) {
    for (const Message& reply : WalkAuthorProfiles()) {
        AuthorProfileMsg profile{};
        EXPECT_EQ(DOM_author_tlv_DecodeDefaultAuthor(reply.get(), &profile), DOM_OK);
        facts[FactKey("author", profile.profile_name)] =
            Pair(profile.segment_id, profile.segment_name);
    }
    for (const Message& reply : WalkAuthorVpns()) {
        AuthorProfileMsg vpn{};
        EXPECT_EQ(DOM_author_tlv_DecodeAuthorVpn(reply.get(), &vpn), DOM_OK);
        facts[FactKey("author", vpn.profile_name, vpn.vpn_name)] =
            Pair(vpn.segment_id, vpn.segment_name);
    }
    for (const Message& reply : WalkCriticalProfiles()) {
        CriticalProfileMsg profile{};
        EXPECT_EQ(DOM_critical_tlv_DecodeDefaultCritical(reply.get(), &profile), DOM_OK);
        facts[FactKey("critical", profile.profile_name)] =
            Pair(profile.segment_id, profile.segment_name);
    }
    for (const Message& reply : WalkCriticalVpns()) {
        CriticalProfileMsg vpn{};
        EXPECT_EQ(DOM_critical_tlv_DecodeCriticalVpn(reply.get(), &vpn), DOM_OK);
        facts[FactKey("critical", vpn.profile_name, vpn.vpn_name)] =
            Pair(vpn.segment_id, vpn.segment_name);
    }
}

std::string RecordingScheme(const MethodEntry (&methods)[DOM_METHODS]) {
    std::string text;
    for (const MethodEntry& method : methods) {
        if (method.method_kind == METHOD_EMPTY) break;
        text += std::to_string(method.method_kind) + ":" + method.scheme_name + " ";
    }
    return text;
}

void AskRecordingPolicy(Facts& facts) {
    TLV_MSG* request = CodeAlone(DOM_MSG_REC_POLICY);
    EXPECT_EQ(AAA_AppendUINTTlvData(request, DOM_TLV_REC_POLICY_TYPE, 0), 0u);
    const Answer answer = Ask(request, DOM_OP_GET);
    if (answer.kind != DOM_REPLY_KIND_DATA) {
        EXPECT_EQ(ResultOf(answer), DOM_ERR_NOT_FOUND);
        return;
    }
    MethodEntry methods[DOM_METHODS] = {};
    EXPECT_EQ(DOM_Rec_tlv_DecodeAcctScheme(answer.body.get(), sizeof methods, methods), 0u);
    facts[FactKey("recording", kDevice)] = RecordingScheme(methods);
}

void AskNasIds(Facts& facts) {
    for (const std::string& profile : ListNasIdProfiles()) {
        facts[FactKey("nas", profile)] = "";
        // The walk reads the database; asking for one VLAN reads the role's memory.
        for (uint16_t vlan = 0; vlan < kVlans; ++vlan) {
            const Answer answer =
                Ask(DOM_EncodeNasidBindVlanId(profile.c_str(), "", vlan), DOM_OP_GET);
            char name[DOM_NASID_NAME_SIZE] = {};
            char nas_id[DOM_NASID_NAME_SIZE] = {};
            uint16_t bound = 0;
            if (answer.kind == DOM_REPLY_KIND_DATA &&
                DOM_DecodeNasIdBindVlanId(answer.body.get(), name, nas_id, &bound) == DOM_OK) {
                facts[FactKey("nas", profile, std::to_string(bound))] = nas_id;
            }
        }
    }
}

/// Calls use(key text, key) for each key of a value type that begins with the prefix; the text is
/// what follows it.
template <class Use>
void ForEachKey(DBM_HANDLE handle, uint32_t value_type, const std::string& prefix, Use use) {
    std::vector<DBM_KEY_SLOT> slots(4096);
    const uint32_t count = DBM_GetKeysByValueType(handle, static_cast<uint32_t>(slots.size()),
                                                  value_type, nullptr, slots.data());
    for (uint32_t i = 0; i < count; ++i) {
        const std::string key(slots[i].key, slots[i].key_length);
        if (key.compare(0, prefix.size(), prefix) != 0) continue;
        use(std::string(key.c_str() + prefix.size()), key);
    }
}

template <class Use>
void ForEachEntry(DBM_HANDLE handle, const std::string& key, uint32_t size, Use use) {
    DBM_CURSOR* cursor = nullptr;
    ASSERT_EQ(DBM_CursorOpen(handle, key.data(), static_cast<uint32_t>(key.size()), &cursor), 0u);
    std::vector<uint8_t> entry(size);
    int32_t length;
    while ((length = DBM_CursorNext(cursor, size, entry.data())) > 0) use(entry.data());
    EXPECT_EQ(length, 0);
    DBM_CursorClose(cursor);
}

std::string TextAt(const uint8_t* at, size_t size) {
    return std::string(reinterpret_cast<const char*>(at),
                       strnlen(reinterpret_cast<const char*>(at), size));
}
uint32_t NumberAt(const uint8_t* at) {
    return uint32_t{at[0]} << 24 | uint32_t{at[1]} << 16 | uint32_t{at[2]} << 8 | at[3];
}

struct ProfileForm {
    const char* kind;
    uint32_t value_type;
    const char* prefix;
    const char* segment_prefix;
    uint32_t size, id_at, text_at, vpn_at;
};
constexpr ProfileForm kAuthor = {"author",
                                 DOM_DB_AUTHOR_ENTRY,
                                 DOM_DB_PREFIX_AUTHOR_PROFILE,
                                 DOM_DB_PREFIX_AUTHOR_SEGMENT,
                                 DOM_DB_AUTHOR_ENTRY_SIZE,
                                 DOM_DB_AUTHOR_ENTRY_ID_OFFSET,
                                 DOM_DB_AUTHOR_ENTRY_TEXT_OFFSET,
                                 DOM_DB_AUTHOR_ENTRY_VPN_OFFSET};
constexpr ProfileForm kCritical = {"critical",
                                   DOM_DB_CRITICAL_ENTRY,
                                   DOM_DB_PREFIX_CRITICAL_PROFILE,
                                   DOM_DB_PREFIX_CRITICAL_SEGMENT,
                                   DOM_DB_CRITICAL_ENTRY_SIZE,
                                   DOM_DB_CRITICAL_ENTRY_ID_OFFSET,
                                   DOM_DB_CRITICAL_ENTRY_TEXT_OFFSET,
                                   DOM_DB_CRITICAL_ENTRY_VPN_OFFSET};

void ReadProfiles(const StoppedDatabase& database, const ProfileForm& form, Facts& facts) {
    const auto pair = [&form](const uint8_t* entry) {
        return Pair(NumberAt(entry + form.id_at),
                    TextAt(entry + form.text_at, DOM_DB_PROFILE_TEXT_SIZE).c_str());
    };
    ForEachKey(database.Handle(), form.value_type, form.prefix,
               [&](const std::string& name, const std::string& key) {
                   std::string segment = database.Binary(form.segment_prefix + name);
                   segment.resize(form.size);
                   facts[FactKey(form.kind, name)] =
                       pair(reinterpret_cast<const uint8_t*>(segment.data()));
                   ForEachEntry(database.Handle(), key, form.size, [&](const uint8_t* entry) {
                       const std::string vpn =
                           TextAt(entry + form.vpn_at, DOM_DB_PROFILE_TEXT_SIZE);
                       facts[FactKey(form.kind, name, vpn)] = pair(entry);
                   });
               });
}

void ReadNasIds(DBM_HANDLE handle, Facts& facts) {
    ForEachKey(handle, DOM_DB_NASID_VLAN, DOM_DB_PREFIX_NASID_PROFILE,
               [&](const std::string& name, const std::string& key) {
                   facts[FactKey("nas", name)] = "";
                   ForEachEntry(handle, key, DOM_DB_NASID_ENTRY_SIZE, [&](const uint8_t* entry) {
                       uint16_t vlan;
                       memcpy(&vlan, entry + DOM_DB_NASID_ENTRY_VLAN_OFFSET, sizeof vlan);
                       facts[FactKey("nas", name, std::to_string(vlan))] = TextAt(
                           entry + DOM_DB_NASID_ENTRY_TEXT_OFFSET, DOM_DB_NASID_ENTRY_TEXT_SIZE);
                   });
               });
}

void ReadPolicies(DBM_HANDLE handle, Facts& facts) {
    ForEachKey(handle, DOM_DB_ITA_POLICY, DOM_DB_PREFIX_ITA_POLICY,
               [&](const std::string& name, const std::string&) {
                   ItaPolicy* policy = DOM_ita_db_GetMemPolicyFromDBByName(handle, name.c_str());
                   if (policy == nullptr) {
                       facts[FactKey("policy", name)] = "unreadable";
                       return;
                   }
                   AddPolicy(*policy, facts);
                   DOM_ita_policy_DestroyPolicy(policy);
               });
    ForEachKey(handle, DOM_DB_ITA_POLICY, DOM_DB_PREFIX_ITA_POLICY_OLD,
               [&](const std::string& name, const std::string&) {
                   facts[FactKey("former-policy", name)] = "";
               });
}

void ReadRecordingPolicy(DBM_HANDLE handle, Facts& facts) {
    if (DOM_Rec_PolicyIsExist(handle, 0) == 0) return;
    RecPolicy* policy = DOM_Rec_db_GetPolicyFromDBByType(handle, 0);
    facts[FactKey("recording", kDevice)] =
        policy == nullptr ? "unreadable" : RecordingScheme(policy->acct_scheme);
    free(policy);
}

void ReadRecords(const DaemonProcess& daemon, Facts& facts) {
    for (size_t i = 0; i < std::size(aaad::kRecordListKeys); ++i) {
        const uint32_t list = aaad::kRecordListKeys[i].list;
        for (const StoredRecord& stored : StoredRecords(daemon, list)) {
            const std::string serial = std::to_string(stored.record.serial);
            const std::string key = FactKey("record", RecordList(list), serial);
            // An entry that stands twice would hide behind its key.
            facts[facts.count(key) == 0 ? key : key + "/again"] =
                std::string(stored.record.second_name) + " " + stored.detail;
        }
    }
}

}  // namespace

Facts ReadDatabase(const DaemonProcess& daemon) {
    Facts facts;
    {
        const StoppedDatabase database(daemon);
        ReadDomains(database.Handle(), facts);
        ReadSettings(database.Handle(), facts);
        ReadProfiles(database, kAuthor, facts);
        ReadProfiles(database, kCritical, facts);
        ReadNasIds(database.Handle(), facts);
        ReadPolicies(database.Handle(), facts);
        ReadRecordingPolicy(database.Handle(), facts);
    }
    ReadRecords(daemon, facts);
    return facts;
}

Snapshot TakeSnapshot(const DaemonProcess& daemon) {
    Snapshot snapshot;
    AskDomains(snapshot.configuration, snapshot.working);
    AskSettings(snapshot.configuration, snapshot.working);
    AskProfiles(snapshot.configuration);
    AskRecordingPolicy(snapshot.configuration);
    AskNasIds(snapshot.working);
    for (const Message& reply : WalkAccountingPolicies()) {
        ItaPolicy policy{};
        EXPECT_EQ(DOM_ita_tlv_DecodePolicy(reply.get(), &policy), DOM_OK);
        AddPolicy(policy, snapshot.working);
    }
    snapshot.database = ReadDatabase(daemon);
    return snapshot;
}

}  // namespace crash
