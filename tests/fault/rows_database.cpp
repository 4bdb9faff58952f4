// Rows of database.h.
#include <aaadom/accounting_policy.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/record_switches.h>
#include <aaadom/recording_policy.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr uint32_t kSlot = 1;              ///< of kDomain in both roles' tables
constexpr char kFirstDomain[] = "system";  ///< the domain in slot 0
constexpr uint32_t kAccessType = 2;
constexpr uint32_t kLimit = 1900;  ///< saved for kAccessType
constexpr uint64_t kWrong = 2;     ///< something, but not what is saved

Outcome Closed(DBM_HANDLE handle) {
    if (handle == DBM_INVALID_HANDLE) return kNothing;
    DBM_Close(handle);
    return kSomething;
}

const Rows handles{
    Changes("DOM_CreateDomainDBM", [](Scene&) { return Closed(DOM_CreateDomainDBM()); })
        .On(Nothing)
        .Good(kSomething)
        .Fails({kNothing}),
    Loads("DOM_OpenDomainDBM", [](Scene&) { return Closed(DOM_OpenDomainDBM()); })
        .Good(kSomething)
        .Fails({kNothing}),
    Changes("DOM_SetDomainDBMHandle",
            [](Scene&) { return DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE), 0; })
        .On(Saved)
        .NeverFails(),
};

/// A change of objects that stand on the stage; VPN, segments and NAS-ID are not those saved there.
DomDbUpdateReq Request(uint32_t type, uint16_t operation) {
    DomDbUpdateReq request{};
    request.object_type = type;
    request.operation = operation;
    aaadom::CopyText(request.object_name, kDomain);
    aaadom::CopyText(request.ita_policy_name, kPolicy);
    aaadom::CopyText(request.nas_id_profile_name, kNasIdProfile);
    aaadom::CopyText(request.nas_id, "nas-8");
    request.vlan_id = 7;
    aaadom::CopyText(request.critical_profile_name, kCriticalProfile);
    request.critical_number = 49;
    aaadom::CopyText(request.critical_text, "closed");
    aaadom::CopyText(request.author_profile_name, kAuthorProfile);
    request.author_number = 58;
    aaadom::CopyText(request.author_text, "labs");
    aaadom::CopyText(request.entry_name, "vpn-0");
    request.rec_policy_index = DOM_REC_POLICY_CONNECTION;
    return request;
}

constexpr uint16_t kWrite = 1;
constexpr uint16_t kDelete = 0;

Row Save(const char* what, uint32_t type, uint16_t operation,
         void (*edit)(DomDbUpdateReq&) = nullptr) {
    return Saves(std::string("DOM_SetDataToDB/") + what, [=](Scene&) {
        DomDbUpdateReq request = Request(type, operation);
        if (edit != nullptr) edit(request);
        return DOM_SetDataToDB(&request);
    });
}
Row Write(const char* what, uint32_t type, void (*edit)(DomDbUpdateReq&) = nullptr) {
    return Save(what, type, kWrite, edit);
}
Row Delete(const char* what, uint32_t type) {
    return Save(what, type, kDelete);
}
/// What a profile's VPN or default segment was cannot be told from the result.
Row SavedOrNot(Row&& row) {
    return std::move(row)
        .On(Event::kDbm, {DOM_OK})
        .Except("database", "the result does not tell whether the database refused");
}
/// The list of a profile alone decides what the deletion of the profile gives.
Row TwoKeys(Row&& row) {
    return std::move(row)
        .On(Event::kDbm, {DOM_OK, DOM_ERR_FAILED})
        .Except("database", "the default segment goes or stays by itself");
}
/// A key that cannot be looked for counts as missing.
Row MaybeMissing(Row&& row) {
    return std::move(row).On(Event::kDbm, {DOM_OK, DOM_ERR_FAILED});
}

void NewName(DomDbUpdateReq& request) {
    aaadom::CopyText(request.nas_id_profile_name, "branch");
    aaadom::CopyText(request.critical_profile_name, "Jail");
    aaadom::CopyText(request.author_profile_name, "Guests");
}
void NewVlan(DomDbUpdateReq& request) {
    request.vlan_id = 8;
}
void SameNasId(DomDbUpdateReq& request) {
    aaadom::CopyText(request.nas_id, "nas-7");
}
void NewVpn(DomDbUpdateReq& request) {
    aaadom::CopyText(request.entry_name, "vpn-1");
}

const Rows domains{
    Write("a domain", DOM_DB_DOMAIN).After([](Scene&) { DOM_SetState(kDomain, 0); }),
    Delete("a domain is not deleted", DOM_DB_DOMAIN).NeverFails(),
    Write("the default domain", DOM_DB_DEFAULT_DOMAIN),
    Delete("no default domain", DOM_DB_DEFAULT_DOMAIN),
    Write("the unknown domain", DOM_DB_UNKNOWN_DOMAIN),
    Delete("no unknown domain", DOM_DB_UNKNOWN_DOMAIN),
    Saves("DOM_DeleteDomainToDBByIndex", [](Scene&) { return DOM_DeleteDomainToDBByIndex(kSlot); })
        .Fails({1}),
};

const Rows numbers{
    Write("session limits", DOM_DB_SESSION_LIMIT).After([](Scene&) {
        DOM_SetSessionLimit(SESSION_CLASS_21, 9);
    }),
    Write("the device identifier", DOM_DB_DEVICE_ID).After([](Scene&) { DOM_SetDeviceID(21); }),
    Write("record switches", DOM_DB_RECORD_ENABLE).After([](Scene&) {
        (void)DOM_SetRecordEnableInfo(DOM_MSG_REC_EN_OFFLINE_ALL, 1);
    }),
    Write("backup methods", DOM_DB_RECORD_BACKUP).After([](Scene&) {
        const BackupMethods methods{0, 1, 0};
        DOM_SetAAAUserRecordBackupMethod(&methods);
    }),
    Saves("DOM_SetRecordEnableSwitchOnToDB",
          [](Scene&) { return DOM_SetRecordEnableSwitchOnToDB(); })
        .After([](Scene&) { DOM_SetUserRecordEnableDefault(1); }),
    Saves("DOM_SetRecordBackupMethodDefaultToDB",
          [](Scene&) { return DOM_SetRecordBackupMethodDefaultToDB(); })
        .After([](Scene&) { DOM_SetUserRecordBackupMethodDefault(5); }),
};

const Rows policies{
    Write("an accounting policy", DOM_DB_ITA_POLICY).After([](Scene&) {
        (void)DOM_ita_policy_SetTogetherState(kPolicy, 1);
    }),
    Delete("no accounting policy", DOM_DB_ITA_POLICY).Good(DOM_ERR_FAILED),
    Write("the recording policy", DOM_DB_REC_POLICY).After([](Scene&) {
        (void)DOM_Rec_policy_UnSetAcctScheme(DOM_REC_POLICY_CONNECTION);
    }),
    Delete("no recording policy", DOM_DB_REC_POLICY),
};

const Rows nas_ids{
    MaybeMissing(Write("a NAS-ID profile", DOM_DB_NASID_PROFILE, NewName)),
    Write("a NAS-ID profile that is saved", DOM_DB_NASID_PROFILE),
    Delete("no NAS-ID profile", DOM_DB_NASID_PROFILE),
    MaybeMissing(Write("a binding", DOM_DB_NASID_VLAN, NewVlan)),
    Write("a binding that is saved", DOM_DB_NASID_VLAN, SameNasId).NeverFails(),
    MaybeMissing(Write("another NAS-ID", DOM_DB_NASID_VLAN)),
    Delete("no binding", DOM_DB_NASID_VLAN),
};

const Rows profiles{
    MaybeMissing(Write("a critical profile", DOM_DB_CRITICAL_PROFILE, NewName)),
    Write("a critical profile that is saved", DOM_DB_CRITICAL_PROFILE),
    TwoKeys(Delete("no critical profile", DOM_DB_CRITICAL_PROFILE)),
    Write("a critical VPN", DOM_DB_CRITICAL_ENTRY, NewVpn),
    Write("a critical VPN that is saved", DOM_DB_CRITICAL_ENTRY),
    SavedOrNot(Delete("no critical VPN", DOM_DB_CRITICAL_ENTRY)),
    SavedOrNot(Write("a critical default segment", DOM_DB_CRITICAL_SEGMENT)),
    SavedOrNot(Delete("no critical default segment", DOM_DB_CRITICAL_SEGMENT)),
    MaybeMissing(Write("an authorization profile", DOM_DB_AUTHOR_PROFILE, NewName)),
    Write("an authorization profile that is saved", DOM_DB_AUTHOR_PROFILE),
    TwoKeys(Delete("no authorization profile", DOM_DB_AUTHOR_PROFILE)),
    Write("an authorization VPN", DOM_DB_AUTHOR_ENTRY, NewVpn),
    Write("an authorization VPN that is saved", DOM_DB_AUTHOR_ENTRY),
    SavedOrNot(Delete("no authorization VPN", DOM_DB_AUTHOR_ENTRY)),
    SavedOrNot(Write("an authorization default segment", DOM_DB_AUTHOR_SEGMENT)),
    SavedOrNot(Delete("no authorization default segment", DOM_DB_AUTHOR_SEGMENT)),
};

/// The record that is saved under a name.
Outcome Named(Scene& scene, const char* name) {
    const Outcome found = Made(DOM_GetDomainFromDBByName(scene.config, name));
    return found.result == kSomething && found.outputs != name ? kWrong : found;
}

/// What `read(handle, output)` gives.
template <typename Output, typename Read>
Row LoadsInto(std::string name, Read read) {
    return Loads(std::move(name), [read](Scene& scene) -> Outcome {
        Output output{};
        const uint32_t result = read(scene.config, &output);
        return {result, BytesOf(output)};
    });
}
struct Name {
    char text[DOM_NAME_SIZE];
};
struct Limits {
    uint32_t of_access_type[5];
};

const Rows readers{
    Loads("DOM_GetDomainFromDBByIndex",
          [](Scene& scene) { return Made(DOM_GetDomainFromDBByIndex(scene.config, kSlot)); })
        .Good(kSomething)
        .Fails({kNothing}),
    Loads("DOM_GetDomainFromDBByName", [](Scene& scene) { return Named(scene, kFirstDomain); })
        .Good(kSomething)
        .Fails({kNothing}),
    // One that cannot be read does not keep those behind it from being found.
    Loads("DOM_GetDomainFromDBByName/behind others",
          [](Scene& scene) { return Named(scene, kOtherDomain); })
        .Good(kSomething)
        .Fails({kNothing, kSomething}),
    LoadsInto<Name>(
        "DOM_GetDefDomainFromDB",
        [](DBM_HANDLE handle, Name* name) { return DOM_GetDefDomainFromDB(handle, name->text); }),
    LoadsInto<Name>("DOM_GetUnknownDomainFromDB",
                    [](DBM_HANDLE handle, Name* name) {
                        return DOM_GetUnknownDomainFromDB(handle, name->text);
                    }),
    LoadsInto<Limits>("DOM_GetSessionLimitFromDB",
                      [](DBM_HANDLE handle, Limits* limits) {
                          return DOM_GetSessionLimitFromDB(handle, limits->of_access_type);
                      }),
    LoadsInto<uint32_t>("DOM_GetDeviceIDFromDB", DOM_GetDeviceIDFromDB),
    LoadsInto<RecordSwitches>("DOM_GetRecordEnableInfoFromDB", DOM_GetRecordEnableInfoFromDB),
    LoadsInto<BackupMethods>("DOM_GetRecordBackupInfoFromDBStruct",
                             DOM_GetRecordBackupInfoFromDBStruct),
    Loads("DOM_GetUserRecordEnableDefaultFromDB",
          [](Scene& scene) { return DOM_GetUserRecordEnableDefaultFromDB(scene.config); })
        .After([](Scene&) {
            DOM_SetUserRecordEnableDefault(1);
            EXPECT_EQ(DOM_SetRecordEnableSwitchOnToDB(), DOM_OK);
        })
        .Good(1)
        .Fails({0}),
    Loads("DOM_GetRecordBackupMethodDefaultFromDB",
          [](Scene& scene) { return DOM_GetRecordBackupMethodDefaultFromDB(scene.config); })
        .After([](Scene&) {
            DOM_SetUserRecordBackupMethodDefault(5);
            EXPECT_EQ(DOM_SetRecordBackupMethodDefaultToDB(), DOM_OK);
        })
        .Good(5)
        .Fails({0}),
    Loads("AAA_GetSessionLimit", [](Scene&) { return AAA_GetSessionLimit(kAccessType); })
        .Good(kLimit)
        .Fails({0}),
};

/// The key that `build(key)` makes.
template <typename Build>
Row Key(std::string name, Build build, uint64_t length) {
    return Reads(std::move(name),
                 [build](Scene&) -> Outcome {
                     char key[DOM_DB_PROFILE_KEY_SIZE] = "";
                     const uint32_t result = build(key);
                     return {result, key};
                 })
        .Good(length);
}
/// The names that are appended to an empty list.
template <typename List>
Row Lists(std::string name, List list_names) {
    return Loads(std::move(name),
                 [list_names](Scene& scene) -> Outcome {
                     DomProfileNameList list{};
                     const uint32_t result = list_names(scene.config, &list);
                     std::string names;
                     while (DomProfileNameNode* node = list.head) {
                         names += node->name + std::string("\n");
                         list.head = node->next;
                         free(node);
                     }
                     return {result, names};
                 })
        // A database that does not count has none, one that does not list what it counted has
        // lost it since.
        .On(Event::kDbm, {DOM_ERR_NOT_FOUND, DOM_OK});
}

const Rows keys{
    Key(
        "DOM_GetDBkeyFromProfileName",
        [](char* key) { return DOM_GetDBkeyFromProfileName("x", key); }, sizeof "profilename_x"),
    Key(
        "DOM_GetDBkeyFromCriticalProfileName",
        [](char* key) { return DOM_GetDBkeyFromCriticalProfileName("x", key); },
        sizeof "criticalprofilename_x"),
    Key(
        "DOM_GetDBkeyFromCriticalMicroSegMent",
        [](char* key) { return DOM_GetDBkeyFromCriticalMicroSegMent("x", key); },
        sizeof "criticalmicrosegmentname_x"),
    Key(
        "DOM_GetDBkeyFromAuthorProfileName",
        [](char* key) {
            return DOM_GetDBkeyFromAuthorProfileName("x", DOM_DB_PROFILE_KEY_SIZE, key);
        },
        sizeof "authorprofilename_x"),
    Key(
        "DOM_GetDBkeyFromAuthorMicroSegMent",
        [](char* key) { return DOM_GetDBkeyFromAuthorMicroSegMent("x", key); },
        sizeof "authormicrosegmentname_x"),
    Loads("DOM_IsExistProfileName",
          [](Scene& scene) { return DOM_IsExistProfileName(scene.config, kNasIdProfile); })
        .Good(1)
        .Fails({0}),
    Loads(
        "DOM_IsExistCriticalProfileName",
        [](Scene& scene) { return DOM_IsExistCriticalProfileName(scene.config, kCriticalProfile); })
        .Good(1)
        .Fails({0}),
    Loads("DOM_IsExistAuthorProfileName",
          [](Scene& scene) { return DOM_IsExistAuthorProfileName(scene.config, kAuthorProfile); })
        .Good(1)
        .Fails({0}),
    Lists("DOM_GetAllNasIdProfileMode", DOM_GetAllNasIdProfileMode)
        .On(Event::kAllocation, {DOM_ERR_FAILED, DOM_OK}),
    Lists("DOM_GetAllCriticalProfileMode", DOM_GetAllCriticalProfileMode),
    Lists("DOM_GetAllAuthorProfileMode", DOM_GetAllAuthorProfileMode),
};

}  // namespace
}  // namespace fault
