#include <aaadom/session.h>
#include <aaadom/settings.h>

#include <functional>
#include <utility>
#include <vector>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

using Operation = std::pair<const char*, std::function<void(const char* domain)>>;

/// Operations that lock the calling role's table for their whole body.
const std::vector<Operation>& LockingOperations() {
    static GlobalDomain names;
    static char text[DOM_NAME_SIZE];
    static AuthorAttr attributes;
    static EscapeRecoverAction action;
    static DomainMibRow row;
    static const std::vector<Operation> operations = {
        {"IsDomainExist", [](const char* d) { DOM_IsDomainExist(d); }},
        {"AddDomainByName", [](const char*) { DOM_AddDomainByName("a"); }},
        {"MibUpdateDomain", [](const char*) { DOM_MibUpdateDomain(&row, 1); }},
        {"DelDomainCheck", [](const char* d) { DOM_DelDomainCheck(d); }},
        {"DeleteDomainAndDBByName", [](const char*) { DOM_DeleteDomainAndDBByName("none", 0); }},
        {"AddAuthorAttr", [](const char* d) { DOM_AddAuthorAttr(d, &attributes, 0); }},
        {"DelAuthorAttr", [](const char* d) { DOM_DelAuthorAttr(d, 27); }},
        {"GetAuthorAttr", [](const char* d) { DOM_GetDomainAuthorAttrByName(d, &attributes); }},
        {"SetRedirect", [](const char* d) { DOM_SetRedirectMoveTemporarily(d, 1); }},
        {"GetRedirect", [](const char* d) { DOM_GetRedirectCode(d); }},
        {"GetDomainCount", [](const char*) { DOM_GetDomainCount(nullptr); }},
        {"GetSessionTime", [](const char* d) { DOM_GetSessionTime(d); }},
        {"SetSessionTime", [](const char* d) { DOM_SetSessionTime(d, 1); }},
        {"GetDefaultDomainName", [](const char*) { DOM_GetDefaultDomainName(text); }},
        {"SetDefaultDomainName", [](const char*) { DOM_SetDefaultDomainName("x"); }},
        {"GetUnknownDomainName", [](const char*) { DOM_GetUnknownDomainName(text); }},
        {"SetUnknownDomainName", [](const char*) { DOM_SetUnknownDomainName("x"); }},
        {"GetGlobalDomainName", [](const char*) { DOM_GetGlobalDomainName(&names); }},
        {"GetState", [](const char* d) { DOM_GetState(d); }},
        {"SetState", [](const char* d) { DOM_SetState(d, 1); }},
        {"GetUserAddrType", [](const char* d) { DOM_GetUserAddrType(d); }},
        {"SetUserAddrType", [](const char* d) { DOM_SetUserAddrType(d, 1); }},
        {"GetAcctDualStackMode", [](const char* d) { DOM_GetAcctDualStackMode(d); }},
        {"SetAcctDualStackMode", [](const char* d) { DOM_SetAcctDualStackMode(d, 1); }},
        {"SetEscape", [](const char* d) { DOM_SetEscapeRecoverAction(d, 1, &action); }},
        {"GetEscape", [](const char* d) { DOM_GetEscapeRecoverAction(d, &action); }},
        {"SetPermit", [](const char* d) { DOM_SetAuthRdFailPermitDomain(1, d, "x"); }},
        {"GetPermit", [](const char* d) { DOM_GetAuthRdFailPermitDomain(d, sizeof text, text); }},
        {"SetAuthFail", [](const char* d) { DOM_SetAuthFailDomain(d, "x", 1); }},
        {"GetAuthFail",
         [](const char* d) { DOM_GetAuthFailDomain(d, sizeof text, text, nullptr); }},
    };
    return operations;
}

/// Operations that take no lock: the caller holds the table mutex, or serialises.
const std::vector<Operation>& LockFreeOperations() {
    static SessionLimits limits;
    static const std::vector<Operation> operations = {
        {"FindDomainByName", [](const char* d) { DOM_FindDomainByName(d); }},
        {"GetFirstDomain", [](const char*) { DOM_GetFirstDomain(); }},
        {"GetNextDomain", [](const char* d) { DOM_GetNextDomain(d); }},
        {"MibGetFirstDomain", [](const char*) { DOM_MibGetFirstDomain(); }},
        {"MibGetNextDomain", [](const char* d) { DOM_MibGetNextDomain(d, 1); }},
        {"NetConfGetFirstDomain", [](const char*) { DOM_NetConfGetFirstDomain(); }},
        {"NetConfGetNextDomain", [](const char* d) { DOM_NetConfGetNextDomain(d); }},
        {"GetAllSessionLimit", [](const char*) { DOM_GetAllSessionLimit(&limits); }},
        {"SetAllSessionLimit", [](const char*) { DOM_SetAllSessionLimit(&limits); }},
        {"SetSessionLimit", [](const char*) { DOM_SetSessionLimit(19, 1); }},
        {"GetSessionCount", [](const char*) { DOM_GetSessionCount(19); }},
        {"SetSessionCount", [](const char*) { DOM_SetSessionCount(19, 0); }},
        {"SessionIncrease", [](const char*) { DOM_SessionIncrease(19); }},
        {"SessionDecrease", [](const char*) { DOM_SessionDecrease(19); }},
        {"SetDeviceID", [](const char*) { DOM_SetDeviceID(0); }},
        {"GetDeviceID", [](const char*) { DOM_GetDeviceID(); }},
        {"CheckDomainName", [](const char* d) { DOM_CheckDomainName(d); }},
        {"CreateDomain", [](const char*) { DOM_DestroyDomain(DOM_CreateDomain()); }},
    };
    return operations;
}

class LockRules : public TablesTest {
  protected:
    LockRules() { AddToBoth("a"); }
    ~LockRules() override { DOM_SetSessionCount(19, 0); }
};

TEST_F(LockRules, OperationOnADomainTakesOneLockAndReleasesIt) {
    for (const auto& [name, operation] : LockingOperations()) {
        for (const char* domain : {"a", "nobody"}) {
            uint64_t before = fake::Count(fake::Event::kLock);
            operation(domain);
            EXPECT_EQ(fake::Count(fake::Event::kLock), before + 1) << name << ' ' << domain;
            EXPECT_EQ(fake::HeldLocks(), 0) << name << ' ' << domain;
        }
    }
}

// Hangs when an operation takes the lock of the other role.
TEST_F(LockRules, TheLockIsTheCallingRolesAlsoForReadersOfTheWorkingRolesTables) {
    MutexGuard working(Domains(Role::kWorking).mutex);
    for (const auto& [name, operation] : LockingOperations()) {
        SCOPED_TRACE(name);
        InConfig([&] { return operation("a"), 0; });
        EXPECT_EQ(fake::HeldLocks(), 1);
    }
}

TEST_F(LockRules, WorkingRoleNeedsNoLockOfTheConfigurationRole) {
    MutexGuard config(Domains(Role::kConfig).mutex);
    for (const auto& [name, operation] : LockingOperations()) {
        SCOPED_TRACE(name);
        operation("a");
        EXPECT_EQ(fake::HeldLocks(), 1);
    }
}

TEST_F(LockRules, FindWalksAndWordsTakeNoLock) {
    for (const auto& [name, operation] : LockFreeOperations()) {
        for (const char* domain : {"a", "nobody"}) {
            uint64_t before = fake::Count(fake::Event::kLock);
            operation(domain);
            EXPECT_EQ(fake::Count(fake::Event::kLock), before) << name << ' ' << domain;
        }
    }
}

TEST_F(LockRules, AdditionUpdateAndDeletionOfARecordLeaveTheLockToTheCaller) {
    MutexGuard lock(Domains(Role::kWorking).mutex);
    uint64_t before = fake::Count(fake::Event::kLock);
    DomainInfo* record = DOM_CreateDomain();
    record->name[0] = 'b';
    DOM_AddDomain(record, nullptr, nullptr);
    DomainInfo* successor = DOM_CreateDomain();
    successor->name[0] = 'b';
    successor->slot = record->slot;
    EXPECT_EQ(DOM_UpdateDomain(successor), DOM_OK);
    DOM_DeleteDomain(successor);
    DOM_DestroyDomain(successor);
    EXPECT_EQ(fake::Count(fake::Event::kLock), before);
    EXPECT_EQ(fake::HeldLocks(), 1);
}

}  // namespace
}  // namespace aaadom
