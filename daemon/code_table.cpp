#include "code_table.h"

#include <aaadom/codes.h>

#include <algorithm>
#include <iterator>

#include "accounting_policy_changes.h"
#include "command_failures.h"
#include "domain_row.h"
#include "nas_id_changes.h"
#include "nas_id_readers.h"
#include "policy_readers.h"
#include "profile_changes.h"
#include "profile_readers.h"
#include "record_changes.h"
#include "record_query_readers.h"
#include "record_readers.h"
#include "request_checks.h"
#include "scheme_row_reader.h"

namespace aaad {
namespace {

constexpr CodeRow Saved(uint32_t code, ChangeOperations changes,
                        uint32_t (*check)(TLV_MSG*, uint32_t) = nullptr) {
    return {code,
            Procedure::kBothRoles,
            changes,
            true,
            false,
            check,
            nullptr,
            nullptr,
            nullptr,
            nullptr,
            ReadOperations::kNone,
            Role::kConfiguration,
            nullptr};
}

constexpr CodeRow ReadAlone(uint32_t code) {
    return {code,
            Procedure::kNone,
            kNoChange,
            false,
            false,
            nullptr,
            nullptr,
            nullptr,
            nullptr,
            nullptr,
            ReadOperations::kNone,
            Role::kConfiguration,
            nullptr};
}

constexpr CodeRow ProcessWide(uint32_t code, ChangeOperations changes, bool save) {
    CodeRow row = ReadAlone(code);
    row.procedure = Procedure::kConfigurationAlone;
    row.changes = changes;
    row.save = save;
    return row;
}

constexpr CodeRow InWorkingRole(uint32_t code, uint32_t (*check)(TLV_MSG*, uint32_t),
                                void (*apply)(Request&), ChangeOperations changes = kSetAndDelete) {
    CodeRow row = ReadAlone(code);
    row.procedure = Procedure::kWorkingAlone;
    row.changes = changes;
    row.save = true;
    row.check = check;
    row.apply_in_working = apply;
    return row;
}

constexpr CodeRow OfRecords(uint32_t code, ChangeOperations changes,
                            void (*apply)(RecordStore&, Request&)) {
    CodeRow row = ReadAlone(code);
    row.procedure = Procedure::kRecordStore;
    row.changes = changes;
    row.apply_to_records = apply;
    return row;
}

constexpr CodeRow WithRead(CodeRow row, ReadOperations reads, Role role,
                           Message (*read)(const Question&, uint32_t&)) {
    row.reads = reads;
    row.read_role = role;
    row.read = read;
    return row;
}

constexpr CodeRow Prepared(CodeRow row, void (*prepare)(Request&)) {
    row.prepare = prepare;
    return row;
}

constexpr CodeRow AppliedBy(CodeRow row, uint32_t (*apply)(const Request&, bool)) {
    row.apply = apply;
    return row;
}

/// One change of accounting policies.
constexpr CodeRow OfPolicy(uint32_t code, ChangeOperations changes = kSetAndDelete) {
    return InWorkingRole(code, CheckAccountingPolicy, ApplyAccountingPolicy, changes);
}

constexpr CodeRow AfterHandOver(CodeRow row) {
    row.check_reads_working_role = true;
    return row;
}

// Counts, walks and the device-wide names are the working role's own: only its thread reads them
// under their lock. NAS-ID profiles exist there alone, so their changes are saved there, too.
// Session counters and the debug flag exist once a process.
constexpr CodeRow kRows[] = {
    Saved(DOM_MSG_DOMAIN, kSet, CheckNewDomain),
    WithRead(Saved(DOM_MSG_DEFAULT_DOMAIN, kSetAndDelete, CheckNameLength), ReadOperations::kGet,
             Role::kConfiguration, ReadDefaultDomain),
    WithRead(ReadAlone(DOM_MSG_DOMAIN_COUNT), ReadOperations::kGet, Role::kWorking,
             ReadDomainCount),
    WithRead(AfterHandOver(Saved(DOM_MSG_DOMAIN_NAME, kSetAndDelete, CheckNewOrDeletedDomain)),
             ReadOperations::kGet, Role::kConfiguration, ReadDomain),
    Saved(DOM_MSG_METHOD_LIST, kSetAndDelete, CheckExistingDomain),
    Saved(DOM_MSG_STATE, kSetAndDelete, CheckExistingDomain),
    WithRead(Saved(DOM_MSG_SESSION_LIMIT, kSet), ReadOperations::kGet, Role::kConfiguration,
             ReadSessionLimits),
    ProcessWide(DOM_MSG_SESSION_COUNT, kSet, true),
    Saved(DOM_MSG_ALL_SESSION_LIMIT, kSet),
    Saved(DOM_MSG_AUTHOR_ATTR, kSetAndDelete, CheckExistingDomain),
    WithRead(ReadAlone(DOM_MSG_DOMAIN_NAME_LEN), ReadOperations::kAnyButChange, Role::kWorking,
             ReadNextDomainRow),
    WithRead(ReadAlone(DOM_MSG_SCHEME_INDEX), ReadOperations::kAnyButChange, Role::kWorking,
             ReadSchemeRow),
    AppliedBy(Saved(DOM_MSG_DOMAIN_ROW, kSet, CheckDomainRow), ApplyDomainRow),
    Saved(DOM_MSG_SCHEME_ROW, kSetAndDelete, CheckNameLength),
    WithRead(InWorkingRole(DOM_MSG_NASID_PROFILE, CheckNasIdProfile, ApplyNasIdProfile),
             ReadOperations::kAnyButChange, Role::kWorking, ReadNasIdProfile),
    WithRead(InWorkingRole(DOM_MSG_NASID_BIND, CheckNasIdBinding, ApplyNasIdBinding),
             ReadOperations::kAnyButChange, Role::kWorking, ReadNasIdBinding),
    Saved(DOM_MSG_UNKNOWN_DOMAIN, kSetAndDelete),
    Saved(DOM_MSG_SESSION_TIME, kSetAndDelete, CheckExistingDomain),
    Saved(DOM_MSG_DEVICE_ID, kSetAndDelete),
    Saved(DOM_MSG_USER_ADDR_TYPE, kSetAndDelete, CheckExistingDomain),
    // A whole policy has no deletion: code 23 deletes it.
    WithRead(OfPolicy(DOM_MSG_ITA_POLICY, kSet), ReadOperations::kAnyButChange, Role::kWorking,
             ReadAccountingPolicy),
    OfPolicy(DOM_MSG_ITA_POLICY_NAME),
    WithRead(OfPolicy(DOM_MSG_ITA_ACCT_SCHEME), ReadOperations::kGet, Role::kWorking,
             ReadDomainAccountingScheme),
    OfPolicy(DOM_MSG_ITA_ACCT_TOGETHER),
    OfPolicy(DOM_MSG_ITA_ACCT_LEVEL),
    OfPolicy(DOM_MSG_ITA_TRAF_SEPRATE),
    OfPolicy(DOM_MSG_ITA_TRAF_QUOTA_OUT),
    WithRead(ReadAlone(DOM_MSG_GLOBAL_DOMAIN), ReadOperations::kGet, Role::kWorking,
             ReadGlobalDomain),
    Saved(DOM_MSG_ACCT_DUAL_STACK, kSetAndDelete, CheckExistingDomain),
    // Its deletion would keep the policy in memory and drop it from the database: code 32 deletes.
    WithRead(Saved(DOM_MSG_REC_POLICY, kSet), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordingPolicy),
    Saved(DOM_MSG_REC_POLICY_TYPE, kSetAndDelete),
    Saved(DOM_MSG_REC_ACCT_SCHEME, kSetAndDelete),
    OfRecords(DOM_MSG_RESET_ONLINE_FAIL, kClearRecords, ClearRecords),
    OfRecords(DOM_MSG_RESET_OFFLINE_ALL, kClearRecords, ClearRecords),
    OfRecords(DOM_MSG_RESET_OFFLINE_NORMAL, kClearRecords, ClearRecords),
    OfRecords(DOM_MSG_RESET_OFFLINE_ABNORMAL, kClearRecords, ClearRecords),
    WithRead(ReadAlone(DOM_MSG_RECORD_NUMBER), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordNumber),
    WithRead(ReadAlone(DOM_MSG_RECORD_ALL), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordPage),
    WithRead(ReadAlone(DOM_MSG_RECORD_BY_TIME), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordPage),
    WithRead(ReadAlone(DOM_MSG_RECORD_BY_CONDITIONS), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordPage),
    WithRead(ReadAlone(DOM_MSG_RECORD_BY_REASON), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordsByReason),
    WithRead(ReadAlone(DOM_MSG_RECORD_TOP), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordTop),
    Saved(DOM_MSG_REC_EN_ONLINE_FAIL, kSetAndDelete),
    Saved(DOM_MSG_REC_EN_OFFLINE_ALL, kSetAndDelete),
    Saved(DOM_MSG_REC_EN_OFFLINE_NORMAL, kSetAndDelete),
    Saved(DOM_MSG_REC_EN_OFFLINE_ABNORMAL, kSetAndDelete),
    WithRead(ReadAlone(DOM_MSG_REC_ENABLE_INFO), ReadOperations::kGet, Role::kConfiguration,
             ReadRecordSwitches),
    WithRead(ReadAlone(DOM_MSG_CMD_AUTHOR_FAIL), ReadOperations::kGet, Role::kConfiguration,
             ReadCommandFailures),
    Saved(DOM_MSG_REDIRECT, kSetAndDelete, CheckExistingDomain),
    Saved(DOM_MSG_AUTH_FAIL_DOMAIN, kSetAndDelete, CheckExistingDomain),
    Saved(DOM_MSG_PERMIT_DOMAIN, kSetAndDelete, CheckExistingDomain),
    Saved(DOM_MSG_ESCAPE_RECOVER, kSetAndDelete, CheckExistingDomain),
    WithRead(ProcessWide(DOM_MSG_DEBUG_FLAG, kSetAndDelete, false), ReadOperations::kGet,
             Role::kConfiguration, ReadDebugFlag),
    WithRead(Prepared(Saved(DOM_MSG_CRITICAL_PROFILE, kSetAndDelete, CheckCriticalProfile),
                      NameCriticalProfile),
             ReadOperations::kAnyButChange, Role::kConfiguration, ReadCriticalProfile),
    WithRead(Saved(DOM_MSG_CRITICAL_VPN, kSetAndDelete, CheckCriticalVpn),
             ReadOperations::kAnyButChange, Role::kConfiguration, ReadCriticalVpn),
    Prepared(Saved(DOM_MSG_CRITICAL_SEGMENT, kSetAndDelete, CheckCriticalSegment),
             ClearDeletedCriticalSegment),
    WithRead(Prepared(Saved(DOM_MSG_AUTHOR_PROFILE, kSetAndDelete, CheckAuthorProfile),
                      NameAuthorProfile),
             ReadOperations::kAnyButChange, Role::kConfiguration, ReadAuthorProfile),
    WithRead(Saved(DOM_MSG_AUTHOR_VPN, kSetAndDelete, CheckAuthorVpn),
             ReadOperations::kAnyButChange, Role::kConfiguration, ReadAuthorVpn),
    Prepared(Saved(DOM_MSG_AUTHOR_SEGMENT, kSetAndDelete, CheckAuthorSegment),
             ClearDeletedAuthorSegment),
    WithRead(ReadAlone(DOM_MSG_AAA_AUTHOR_PROFILE), ReadOperations::kGet, Role::kConfiguration,
             ReadAuthorProfileReport),
    WithRead(ReadAlone(DOM_MSG_AAA_AUTHOR_PROFILE_NUM), ReadOperations::kGet, Role::kConfiguration,
             ReadAuthorProfileCount),
    WithRead(Saved(DOM_MSG_BACKUP_METHOD, kSetAndDelete), ReadOperations::kGet,
             Role::kConfiguration, ReadBackupMethods),
    WithRead(ReadAlone(DOM_MSG_DOMAIN_NAME_INFO), ReadOperations::kAnyButChange, Role::kWorking,
             ReadNextDomain),
    OfRecords(DOM_MSG_USER_RECORD, kSetAndDelete, ApplyRecords),
};

constexpr bool Ascending() {
    for (size_t i = 1; i < std::size(kRows); ++i) {
        if (kRows[i - 1].code >= kRows[i].code) return false;
    }
    return true;
}
static_assert(Ascending(), "FindCode searches by halves");

}  // namespace

bool CodeRow::TakesChange(uint32_t operation) const {
    return (operation == DOM_OP_SET && (changes & kSet) != 0) ||
           (operation == DOM_OP_DELETE && (changes & kDelete) != 0) ||
           (operation == DOM_OP_CLEAR_RECORDS && (changes & kClearRecords) != 0);
}

bool CodeRow::TakesRead(uint32_t operation) const {
    switch (reads) {
        case ReadOperations::kGet:
            return operation == DOM_OP_GET;
        case ReadOperations::kAnyButChange:
            return operation != DOM_OP_SET && operation != DOM_OP_DELETE;
        case ReadOperations::kNone:
            break;
    }
    return false;
}

const CodeRow* FindCode(uint32_t code) {
    const CodeRow* row =
        std::lower_bound(std::begin(kRows), std::end(kRows), code,
                         [](const CodeRow& row, uint32_t wanted) { return row.code < wanted; });
    return row != std::end(kRows) && row->code == code ? row : nullptr;
}

}  // namespace aaad
