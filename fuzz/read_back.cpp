#include "read_back.h"

#include <aaadom/accounting_policy.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/cmd_author_fail.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/nas_id.h>
#include <aaadom/profile.h>
#include <aaadom/record_run_db.h>
#include <aaadom/record_switches.h>
#include <aaadom/recording_policy.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <stdlib.h>

#include <vector>

#include "message.h"
#include "promise.h"

namespace fuzz {
namespace {

void ReadSettings(const char* name) {
    char text[DOM_NAME_SIZE];
    char short_text[2];
    uint16_t kind = 0;
    (void)DOM_GetAuthFailDomain(name, sizeof text, text, &kind);
    (void)DOM_GetAuthFailDomain(name, sizeof short_text, short_text, &kind);
    (void)DOM_GetAuthRdFailPermitDomain(name, sizeof text, text);
    EscapeRecoverAction action{};
    (void)DOM_GetEscapeRecoverAction(name, &action);
    AuthorAttr attributes{};
    (void)DOM_GetDomainAuthorAttrByName(name, &attributes);
    (void)DOM_GetItaPolicyName(name, sizeof text, text);
    (void)DOM_GetItaPolicyName(name, sizeof short_text, short_text);
    (void)DOM_IsItaEnabled(name);
    (void)DOM_GetState(name);
    (void)DOM_GetSessionTime(name);
    (void)DOM_DelDomainCheck(name);
    MethodList list{};
    (void)DOM_GetItaMethodList(name, &list);
    uint32_t value = 0;
    for (uint32_t code = 187; code <= 190; ++code) (void)DOM_GetAcctPolicy(name, code, &value);
    for (uint32_t type = 0; type < DOM_AAA_TYPES; ++type) {
        MethodEntry extra{};
        (void)DOM_GetMethodList(name, type, type * 2, &list, &extra);
    }
}

/// What is in the table can be sent, and what is sent can be read.
void ReadDomain(const char* name) {
    ReadSettings(name);
    const Message encoded(DOM_EncodeDomain(name));
    FUZZ_PROMISE(encoded);
    DomainInfo* decoded = DOM_DecodeDomain(encoded.get());
    FUZZ_PROMISE(decoded != nullptr && strcmp(decoded->name, name) == 0);
    DOM_DestroyDomain(decoded);
}

std::vector<std::string> DomainNames() {
    std::vector<std::string> names;
    DOM_DomainInfoTableLock();
    for (DomainInfo* domain = DOM_GetFirstDomain(); domain != nullptr;
         domain = DOM_GetNextDomain(domain->name)) {
        names.emplace_back(domain->name);
        FUZZ_PROMISE(names.size() <= DOM_MAX_DOMAINS);
    }
    DOM_DomainInfoTableUnlock();
    return names;
}

void ReadSchemeRows() {
    MibSchemeRow row{};
    uint32_t rows = 0;
    for (uint32_t result = DOM_MibGetFirstScheme(&row); result == 0 && rows < 100000; ++rows) {
        const MibSchemeRow last = row;
        result =
            DOM_MibGetNextScheme(last.domain_name, static_cast<uint32_t>(strlen(last.domain_name)),
                                 last.scheme_index, &row);
    }
    FUZZ_PROMISE(rows < 100000);
}

void ReadProfiles() {
    for (AuthorProfile* profile = DOM_author_GetFirstProfile(); profile != nullptr;
         profile = profile->next) {
        AuthorSegment segment{};
        (void)AAA_GetAuthorProfileData(profile->name, "vpn", &segment);
        uint16_t flag = 0;
        Message(DOM_author_ProcProfileGet(profile->name, &flag));
        char vpn[32] = "";
        for (int i = 0; i < 200; ++i)
            if (!Message(DOM_author_ProcProfileVpnGetBulk(profile->name, vpn))) break;
        Message(DOM_author_ProcProfileGetBulk(profile->name));
    }
    CriticalProfile** head = DOM_critical_GetProfileHead();
    for (CriticalProfile* profile = head != nullptr ? *head : nullptr; profile != nullptr;
         profile = profile->next) {
        CriticalSegment segment{};
        (void)AAA_GetCriticalData(profile->name, "vpn", &segment);
        uint16_t flag = 0;
        Message(DOM_critical_ProcProfileGet(profile->name, &flag));
        char vpn[32] = "";
        for (int i = 0; i < 200; ++i)
            if (!Message(DOM_critical_ProcProfileVpnGetBulk(profile->name, vpn))) break;
        Message(DOM_critical_ProcProfileGetBulk(profile->name));
    }
}

template <typename Node>
void FreeNames(Node* node) {
    while (node != nullptr) {
        Node* next = node->next;
        free(node);
        node = next;
    }
}

void ReadPolicies(DBM_HANDLE handle) {
    const uint32_t number = DBM_GetKeyNumByValueType(handle, DOM_DB_ITA_POLICY);
    std::vector<DBM_KEY_SLOT> slots(number);
    void* iterator = nullptr;
    std::vector<std::string> names;
    if (number > 0 &&
        DBM_GetKeysByValueType(handle, number, DOM_DB_ITA_POLICY, &iterator, slots.data()) == 0) {
        for (const DBM_KEY_SLOT& slot : slots) {
            if (slot.key == nullptr) continue;
            const std::string key(slot.key, strnlen(slot.key, slot.key_length));
            for (const char* prefix : {DOM_DB_PREFIX_ITA_POLICY, DOM_DB_PREFIX_ITA_POLICY_OLD})
                if (key.starts_with(prefix)) names.push_back(key.substr(strlen(prefix)));
        }
    }
    DBM_FreeIterator(iterator);
    for (const std::string& name : names) {
        (void)DOM_ita_db_IsPolicyExist(handle, name.c_str());
        ItaPolicy* policy = DOM_ita_db_GetMemPolicyFromDBByName(handle, name.c_str());
        if (policy == nullptr) continue;
        const Message encoded(DOM_ita_tlv_EncodePolicy(policy));
        ItaPolicy decoded{};
        FUZZ_PROMISE(encoded);
        const bool has_method = policy->acct_scheme[0].method_kind != METHOD_EMPTY;
        FUZZ_PROMISE((DOM_ita_tlv_DecodePolicy(encoded.get(), &decoded) == 0) == has_method);
        DOM_ita_policy_DestroyPolicy(policy);
    }
    free(DOM_Rec_db_GetPolicyFromDBByType(handle, DOM_REC_POLICY_CONNECTION));
    free(DOM_Rec_db_GetPolicyFromDBByType(handle, 1));
}

void ReadProfileNames(DBM_HANDLE handle) {
    for (const auto& get :
         {DOM_GetAllNasIdProfileMode, DOM_GetAllCriticalProfileMode, DOM_GetAllAuthorProfileMode}) {
        DomProfileNameList list{};
        (void)get(handle, &list);
        for (const DomProfileNameNode* node = list.head; node != nullptr; node = node->next)
            FUZZ_PROMISE(memchr(node->name, 0, sizeof node->name) != nullptr);
        FreeNames(list.head);
    }
}

void ReadDevice(DBM_HANDLE handle) {
    char text[DOM_NAME_SIZE];
    (void)DOM_GetDefDomainFromDB(handle, text);
    (void)DOM_GetUnknownDomainFromDB(handle, text);
    uint32_t limits[5];
    (void)DOM_GetSessionLimitFromDB(handle, limits);
    (void)DOM_GetDeviceIDFromDB(handle, limits);
    RecordSwitches switches{};
    (void)DOM_GetRecordEnableInfoFromDB(handle, &switches);
    BackupMethods methods{};
    (void)DOM_GetRecordBackupInfoFromDBStruct(handle, &methods);
    (void)DOM_GetUserRecordEnableDefaultFromDB(handle);
    (void)DOM_GetRecordBackupMethodDefaultFromDB(handle);
    for (uint32_t type = 0; type < 12; ++type) (void)AAA_GetSessionLimit(type);
}

}  // namespace

void ReadTables() {
    for (const uint32_t role : {0u, 1u}) {
        Stage::TakeRole(role);
        for (const std::string& name : DomainNames()) ReadDomain(name.c_str());
        ReadSchemeRows();
        ReadProfiles();
        GlobalDomain global{};
        DOM_GetGlobalDomainName(&global);
        SessionLimits limits{};
        DOM_GetAllSessionLimit(&limits);
        Message(DOM_GetAllRecordEnableInfo());
        (void)DOM_GetAllRecordBackupMethodToUint();
        char nas_id[32];
        (void)DOM_GetNasIdByProfileAndVlanId("branch", 10, nas_id);
        DOM_ita_bthsyn_SendPolicys(-1);
        (void)DOM_Rec_bthsyn_SendPolicys(-1);
        RecPolicy policy{};
        (void)DOM_Rec_GetPolicy(DOM_REC_POLICY_CONNECTION, &policy);
    }
    const Message failures(TLV_Create());
    (void)DOM_Rec_tlv_EncodeCmdAuthorFailMsg(failures.get());
}

void ReadDatabases(const Stage& stage) {
    const DBM_HANDLE handle = stage.Configuration();
    Stage::TakeRole(1);
    for (int32_t index = -1;;) {
        index = DBM_GetNextArrayIndex(handle, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index);
        if (index < 0) break;
        DOM_DestroyDomain(DOM_GetDomainFromDBByIndex(handle, static_cast<uint32_t>(index)));
    }
    DOM_DestroyDomain(DOM_GetDomainFromDBByName(handle, "corp"));
    ReadDevice(handle);
    ReadProfileNames(handle);
    ReadPolicies(handle);
    (void)DOM_IsExistProfileName(handle, "branch");
}

}  // namespace fuzz
