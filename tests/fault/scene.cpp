#include "fault/scene.h"

#include <aaadom/accounting_policy.h>
#include <aaadom/accounting_policy_codec.h>
#include <aaadom/cmd_author_fail.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/diagnostics.h>
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/nas_id.h>
#include <aaadom/profile.h>
#include <aaadom/record_run_db.h>
#include <aaadom/record_switches.h>
#include <aaadom/recording_policy.h>
#include <aaadom/service.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <cstdlib>

#include "base/text.h"
#include "db/record_lists.h"
#include "fakes/role.h"
#include "golden/hex_file.h"
#include "golden/sample_record.h"

namespace fault {
namespace {

constexpr uint32_t kEveryDebugFlag = AAA_DBG_ERROR_BIT | AAA_DBG_EVENT_BIT;

AAADService FilledService() {
    AAADService service = fake::RoleService();
    service.real_sync_msg = [](TLV_MSG*) -> uint32_t { return DOM_OK; };
    service.cfg_real_sync_to_slave = [](TLV_MSG*) -> uint32_t { return DOM_OK; };
    service.sync_msg_to_cfg_thr = [](uint32_t, uint32_t, TLV_MSG* msg) -> uint32_t {
        TLV_Destroy(msg);
        return DOM_OK;
    };
    service.cfg_thr_msg_to_pam = [](uint32_t, TLV_MSG*) -> uint32_t { return DOM_OK; };
    service.record_thread_init = []() -> uint32_t { return DOM_OK; };
    return service;
}

void ExpectOk(uint32_t result) {
    EXPECT_EQ(result, DOM_OK) << "the stage cannot be set";
}

template <typename Body>
void InEachRole(Body&& body) {
    for (const uint32_t role : {fake::kWorkingRole, fake::kConfigRole})
        fake::InRole(role, [&] {
            body();
            return 0;
        });
}

MethodEntry Method(uint32_t kind, const char* name) {
    MethodEntry entry{};
    entry.method_kind = kind;
    aaadom::CopyText(entry.scheme_name, name);
    return entry;
}

void AddDomains() {
    for (const char* name : {DOM_SYSTEM_DOMAIN, kDomain, kOtherDomain})
        ExpectOk(DOM_AddDomainByName(name));
    MethodList list{};
    list.aaa_type = AAA_TYPE_0;
    list.service = DOM_DEFAULT_SERVICE;
    list.methods[0] = Method(METHOD_SCHEME_2, "radius-a");
    list.methods[1] = Method(METHOD_DEFAULT_4, "");
    ExpectOk(DOM_AddMethodList(kDomain, &list, nullptr));
    AuthorAttr attributes{};
    aaadom::CopyText(attributes.ita_policy_name, kPolicy);
    ExpectOk(DOM_AddAuthorAttr(kDomain, &attributes, 12));
    DOM_SetDefaultDomainName(kOtherDomain);
    DOM_SetUnknownDomainName(kOtherDomain);
    DOM_SetDeviceID(20);
    const SessionLimits limits{1900, 2100, 2000, 2200, 2300};
    DOM_SetAllSessionLimit(&limits);
}

void AddProfiles() {
    ExpectOk(DOM_AddNasIdProfile(kNasIdProfile));
    ExpectOk(DOM_AddNasIdBindVlanId(kNasIdProfile, "nas-7", 7));

    CriticalSegment critical{};
    critical.segment_id = 48;
    critical.value16 = 4;
    aaadom::CopyText(critical.segment_name, "restricted");
    ExpectOk(DOM_critical_AddProfile(kCriticalProfile));
    CriticalProfile* quarantine = DOM_critical_FindProfile(kCriticalProfile);
    ExpectOk(DOM_critical_AddVpn("vpn-0", quarantine, &critical));
    quarantine->default_segment = critical;

    AuthorSegment author{};
    author.segment_id = 57;
    aaadom::CopyText(author.segment_name, "offices");
    ExpectOk(DOM_author_AddProfile(kAuthorProfile));
    AuthorProfile* staff = DOM_author_FindProfile(kAuthorProfile);
    ExpectOk(DOM_author_AddVpn("vpn-0", staff, &author));
    staff->default_segment = author;
}

void AddPolicies() {
    ExpectOk(DOM_ita_policy_Create(kPolicy));
    ExpectOk(DOM_ita_policy_SetAcctLevel(kPolicy, 3, 30, 31, 32, 33, 34,
                                         DOM_ITA_FLAG_FIRST_PAIR | DOM_ITA_FLAG_SECOND_PAIR));
    ExpectOk(DOM_Rec_CreatePolicy(DOM_REC_POLICY_CONNECTION));
    const MethodEntry scheme[DOM_METHODS] = {Method(METHOD_SCHEME_2, "radius-a")};
    ExpectOk(DOM_Rec_policy_SetAcctScheme(DOM_REC_POLICY_CONNECTION, scheme));
    const RecordSwitches switches{1, 0, 1, 0};
    DOM_SetRecordEnableInfoAll(&switches);
    const BackupMethods methods{1, 0, 1};
    DOM_SetAAAUserRecordBackupMethod(&methods);
}

void AddCommand() {
    auto* node = static_cast<CmdAuthorFailNode*>(calloc(1, sizeof(CmdAuthorFailNode)));
    aaadom::CopyText(node->item.first_text, "display aaa");
    aaadom::CopyText(node->item.second_text, "operator");
    DOM_AddCmdAuthorFailNodeToList(node);
}

DomDbUpdateReq Change(uint32_t type, const char* name = "") {
    DomDbUpdateReq change{};
    change.object_type = type;
    change.operation = 1;
    aaadom::CopyText(change.object_name, name);
    aaadom::CopyText(change.nas_id_profile_name, kNasIdProfile);
    aaadom::CopyText(change.nas_id, "nas-7");
    change.vlan_id = 7;
    aaadom::CopyText(change.critical_profile_name, kCriticalProfile);
    change.critical_number = 48;
    change.critical_number16 = 4;
    aaadom::CopyText(change.critical_text, "restricted");
    aaadom::CopyText(change.author_profile_name, kAuthorProfile);
    change.author_number = 57;
    aaadom::CopyText(change.author_text, "offices");
    aaadom::CopyText(change.entry_name, "vpn-0");
    aaadom::CopyText(change.ita_policy_name, kPolicy);
    change.rec_policy_index = DOM_REC_POLICY_CONNECTION;
    return change;
}

/// Leaves the words that neither Init nor Fini touches as the process found them at its start.
void ForgetSettings() {
    const SessionLimits no_limits{};
    InEachRole([&] {
        DOM_SetAllSessionLimit(&no_limits);
        DOM_SetDefaultDomainName("");
        DOM_SetUnknownDomainName("");
        DOM_SetDeviceID(0);
    });
    for (uint32_t session_class = 19; session_class <= 23; ++session_class)
        DOM_SetSessionCount(session_class, 0);
    DOM_AAAResetDebugFlag(kEveryDebugFlag);
    DOM_SetUserRecordEnableDefault(0);
    DOM_SetUserRecordBackupMethodDefault(0);
    DOM_SetUserRecordRecoverFlag(0);
    g_bAaaDebugSwitch = 0;
}

}  // namespace

Scene::Scene() {
    fake::Reset();
}

Scene::~Scene() {
    fake::DisarmFailures();
    for (auto action = at_end_.rbegin(); action != at_end_.rend(); ++action) (*action)();
    for (TLV_MSG* msg : messages_) TLV_Destroy(msg);
    const AAADService service = fake::RoleService();
    DOM_SetAAADService(&service);
    ForgetSettings();
    DOM_CmdAuthorFailRecFini();
    if (roles_) (void)fake::FiniBothRoles();
    DOM_ResetAAADService();
    DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
    DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
    DOM_SetRecordRunDBHandle(DBM_INVALID_HANDLE);
    if (config != DBM_INVALID_HANDLE) DBM_Close(config);
    if (run != DBM_INVALID_HANDLE) DBM_Close(run);
    aaadom::EntryBuffer::FreeIdle();
    fake::role_of_this_thread = fake::kWorkingRole;
}

void Scene::InstallService() {
    const AAADService service = FilledService();
    DOM_SetAAADService(&service);
    roles_ = true;
}

void Scene::InitRoles() {
    InstallService();
    InEachRole([] { ExpectOk(DOM_DomainInfoTableInit()); });
    (void)DOM_CmdAuthorFailRecInit();
}

void Scene::FillRoles() {
    InEachRole([] {
        AddDomains();
        AddProfiles();
        AddPolicies();
    });
    AddCommand();
}

void Scene::OpenDatabases() {
    config = DOM_CreateDomainDBM();
    run = DOM_CreateRecordRunDB();
    DOM_SetDomainDBMHandle(config);
    DOM_ita_db_SetGlobalHandle(config);
    DOM_Rec_db_SetGlobalHandle(config);
    DOM_SetRecordRunDBHandle(run);
    ExpectOk(DOM_CreateAllRecordDBAvlList());
}

void Scene::SaveAll() {
    fake::InRole(fake::kConfigRole, [] {
        for (const char* name : {DOM_SYSTEM_DOMAIN, kDomain, kOtherDomain}) {
            const DomDbUpdateReq change = Change(DOM_DB_DOMAIN, name);
            ExpectOk(DOM_SetDataToDB(&change));
        }
        for (const uint32_t type :
             {DOM_DB_DEFAULT_DOMAIN, DOM_DB_SESSION_LIMIT, DOM_DB_NASID_PROFILE, DOM_DB_NASID_VLAN,
              DOM_DB_UNKNOWN_DOMAIN, DOM_DB_DEVICE_ID, DOM_DB_ITA_POLICY, DOM_DB_REC_POLICY,
              DOM_DB_RECORD_ENABLE, DOM_DB_CRITICAL_PROFILE, DOM_DB_CRITICAL_ENTRY,
              DOM_DB_CRITICAL_SEGMENT, DOM_DB_AUTHOR_PROFILE, DOM_DB_AUTHOR_ENTRY,
              DOM_DB_AUTHOR_SEGMENT, DOM_DB_RECORD_BACKUP}) {
            const DomDbUpdateReq change = Change(type);
            EXPECT_EQ(DOM_SetDataToDB(&change), DOM_OK) << "object type " << type;
        }
        ExpectOk(DOM_SetRecordEnableSwitchOnToDB());
        ExpectOk(DOM_SetRecordBackupMethodDefaultToDB());
        UserRecord record = golden::SampleRecord();
        record.serial = 1;
        for (const uint32_t type :
             {DOM_RECORD_ONLINE_FAIL, DOM_RECORD_ABNORMAL_OFFLINE, DOM_RECORD_NORMAL_OFFLINE})
            ExpectOk(DOM_SetSingeRecordInfoToRunDB(type, &record));
        return 0;
    });
}

void Scene::Serve(uint16_t kind, std::function<TLV_MSG*()> body) {
    fake::SetServer([kind, body](TLV_MSG*) { return fake::MakeReply(kind, body()); });
}
void Scene::ServeResult(uint32_t result) {
    Serve(DOM_REPLY_KIND_RESULT, [result] {
        TLV_MSG* body = TLV_Create();
        AAA_AppendUINTTlvData(body, DOM_TLV_RESULT, result);
        return body;
    });
}
void Scene::ServeData(std::string file) {
    Serve(DOM_REPLY_KIND_DATA, [file] { return Parse(file); });
}

TLV_MSG* Scene::Keep(TLV_MSG* msg) {
    messages_.push_back(msg);
    return msg;
}

TLV_MSG* Scene::Parse(const std::string& file) {
    const fake::Quiet quiet;
    TLV_MSG* msg = fake::Parse(golden::ReadHexFile(file));
    EXPECT_NE(msg, nullptr) << "no golden message " << file;
    return msg;
}

void Nothing(Scene&) {}
void ServiceAlone(Scene& scene) {
    scene.InstallService();
}
void EmptyTables(Scene& scene) {
    scene.InitRoles();
}
void Tables(Scene& scene) {
    scene.InitRoles();
    scene.FillRoles();
}
void Saved(Scene& scene) {
    Tables(scene);
    scene.OpenDatabases();
    scene.SaveAll();
}

}  // namespace fault
