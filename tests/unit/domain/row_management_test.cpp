#include <aaadom/method_list.h>

#include <cstring>
#include <string>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

class RowManagement : public TablesTest {
  protected:
    static DomainInfo* Record(const std::string& name) {
        DomainInfo* record = DOM_CreateDomain();
        strcpy(record->name, name.c_str());
        return record;
    }
    static uint32_t UpdateLocked(DomainInfo* record) {
        DOM_DomainInfoTableLock();
        uint32_t result = DOM_UpdateDomain(record);
        DOM_DomainInfoTableUnlock();
        return result;
    }
    static AAADOM_NO_TSA void SetWorkingCount(uint64_t count) {
        Domains(Role::kWorking).count = count;
    }
};

TEST_F(RowManagement, AddedRowIsTheTables) {
    DomainInfo* record = Record("a");
    EXPECT_EQ(DOM_MibAddDomain(record), DOM_ADD_OK);
    EXPECT_EQ(Find("A"), record);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a"}));
    EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"a"}));
}

TEST_F(RowManagement, ExistingNameInOtherCaseFails) {
    Add("abc");
    DomainInfo* record = Record("ABC");
    EXPECT_EQ(DOM_MibAddDomain(record), DOM_ADD_FAILED);
    EXPECT_EQ(fake::HeldLocks(), 0);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    DOM_DestroyDomain(record);
}

TEST_F(RowManagement, DefaultListsReplaceTheRecordsOwn) {
    DomainInfo* record = Record("a");
    record->method_lists[0][5]->methods[0].method_kind = METHOD_SCHEME_2;
    for (uint32_t row : {4u, 5u}) {  // a record may come without them
        DOM_DestroyMethodList(record->method_lists[row][5]);
        record->method_lists[row][5] = nullptr;
    }
    EXPECT_EQ(DOM_MibAddDomain(record), DOM_ADD_OK);
    for (uint32_t row : {0u, 4u, 5u}) {
        ASSERT_NE(record->method_lists[row][5], nullptr);
        EXPECT_EQ(record->method_lists[row][5]->aaa_type, row);
        EXPECT_EQ(record->method_lists[row][5]->service, 5u);
        EXPECT_EQ(record->method_lists[row][5]->methods[0].method_kind, 4u);
        EXPECT_EQ(record->method_lists[row][5]->methods[1].method_kind, 0u);
    }
}

TEST_F(RowManagement, RoomIsJudgedByTheWorkingRolesCount) {
    SetWorkingCount(1024);
    DomainInfo* record = Record("a");
    EXPECT_EQ(InConfig([&] { return DOM_MibAddDomain(record); }), DOM_ADD_TABLE_FULL);
    EXPECT_EQ(fake::HeldLocks(), 0);
    SetWorkingCount(1023);
    EXPECT_EQ(InConfig([&] { return DOM_MibAddDomain(record); }), DOM_ADD_OK);
}

TEST_F(RowManagement, RoomForANameIsJudgedByTheCallingRolesCount) {
    SetWorkingCount(1024);
    EXPECT_EQ(InConfig([] { return Add("a"); }), DOM_ADD_OK);
    EXPECT_EQ(Add("a"), DOM_ADD_TABLE_FULL);
    SetWorkingCount(1025);
    EXPECT_EQ(Add("a"), DOM_ADD_TABLE_FULL);
}

TEST_F(RowManagement, ExistingComesBeforeFull) {
    InConfig([] { return Add("a"); });
    SetWorkingCount(1024);
    DomainInfo* record = Record("a");
    EXPECT_EQ(InConfig([&] { return DOM_MibAddDomain(record); }), DOM_ADD_FAILED);
    DOM_DestroyDomain(record);
}

TEST_F(RowManagement, FullConfigurationTableCountsARowThatItCannotStore) {
    InConfig([] {
        for (int i = 0; i < 1024; ++i) Add("d" + std::to_string(i));
        return 0;
    });
    DomainInfo* record = Record("over");
    EXPECT_EQ(InConfig([&] { return DOM_MibAddDomain(record); }), DOM_ADD_OK);
    EXPECT_EQ(CountOf(Role::kConfig), 1025u);
    EXPECT_EQ(InConfig([] { return DOM_IsDomainExist("over"); }), 0u);
    // The record is the library's and destroyed: the leak check of the sanitized build sees it.
}

// Callers of the row interface find the mutex held after this one failure and release it
// themselves; releasing it here as well would unlock a mutex that another thread holds by then.
TEST_F(RowManagement, DefaultListThatFailsLeavesTheMutexLocked) {
    for (int n = 1; n <= 3; ++n) {
        DomainInfo* record = Record("a");
        fake::FailAllocation(n);
        EXPECT_EQ(DOM_MibAddDomain(record), DOM_ADD_FAILED) << n;
        EXPECT_TRUE(fake::Tripped());
        EXPECT_EQ(fake::HeldLocks(), 1) << n;
        EXPECT_EQ(DOM_DomainInfoTableUnlock(), 0u);
        EXPECT_EQ(DOM_IsDomainExist("a"), 0u);
        EXPECT_EQ(CountOf(Role::kWorking), 0u);
        DOM_DestroyDomain(record);
    }
}

TEST_F(RowManagement, EveryOtherAllocationThatFailsReleasesTheMutex) {
    int n = 4;
    for (;; ++n) {
        DomainInfo* record = Record("a");
        fake::FailAllocation(n);
        uint32_t result = DOM_MibAddDomain(record);
        if (!fake::Tripped()) break;
        EXPECT_EQ(result, DOM_ADD_FAILED) << n;
        EXPECT_EQ(fake::HeldLocks(), 0) << n;
        EXPECT_EQ(CountOf(Role::kWorking), 0u);
        EXPECT_TRUE(MibOrder(Role::kWorking).empty());
        EXPECT_TRUE(NetConfOrder(Role::kWorking).empty());
        DOM_DestroyDomain(record);
    }
    fake::DisarmFailures();
    EXPECT_EQ(n, 9);  // row node, 3 scheme nodes, strcmp node
}

TEST_F(RowManagement, NullRowsFail) {
    EXPECT_EQ(DOM_MibAddDomain(nullptr), DOM_ADD_FAILED);
    EXPECT_EQ(DOM_MibUpdateDomain(nullptr, 1), DOM_MIBUPD_NO_DOMAIN);
    EXPECT_EQ(DOM_UpdateDomain(nullptr), DOM_ERR_FAILED);
}

TEST_F(RowManagement, UpdateSetsTheStateForBitZero) {
    Add("a");
    DomainMibRow row{};
    row.state = 0x10002;
    strcpy(row.domain_name, "A");
    EXPECT_EQ(DOM_MibUpdateDomain(&row, 0xFFFFFFFFFFFFFFFEu), 0u);
    EXPECT_EQ(Find("a")->state, 1);
    EXPECT_EQ(DOM_MibUpdateDomain(&row, 1), 0u);
    EXPECT_EQ(Find("a")->state, 2);
}

TEST_F(RowManagement, UpdateOfAnUnknownDomainIsTwo) {
    DomainMibRow row{};
    strcpy(row.domain_name, "nobody");
    EXPECT_EQ(DOM_MibUpdateDomain(&row, 1), 2u);
}

TEST_F(RowManagement, ReplacedRecordTakesTheSlot) {
    Add("a");
    Add("b");
    DomainInfo* record = Record("b");
    record->slot = 1;
    record->state = 9;
    EXPECT_EQ(UpdateLocked(record), 0u);
    EXPECT_EQ(Find("b"), record);
    EXPECT_EQ(CountOf(Role::kWorking), 2u);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a", "b"}));
    EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"a", "b"}));
}

TEST_F(RowManagement, RecordForAnEmptySlotIsCounted) {
    DomainInfo* record = Record("b");
    record->slot = 40;
    EXPECT_EQ(UpdateLocked(record), 0u);
    EXPECT_EQ(Find("b"), record);
    EXPECT_EQ(record->slot, 40u);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
}

TEST_F(RowManagement, FormerRecordOfAnotherNameIsGoneButLeavesItsNodes) {
    Add("old");
    DomainInfo* record = Record("new");
    record->slot = 0;
    EXPECT_EQ(UpdateLocked(record), 0u);
    EXPECT_EQ(DOM_IsDomainExist("old"), 0u);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"new", "old"}));
}

TEST_F(RowManagement, UpdateFromTheConfigurationRoleMovesTheNodesToTheWorkingRole) {
    InConfig([] { return Add("a"); });
    DomainInfo* record = Record("a");
    EXPECT_EQ(InConfig([&] { return UpdateLocked(record); }), 0u);
    EXPECT_EQ(Find("a"), record);
    EXPECT_TRUE(MibOrder(Role::kConfig).empty());
    EXPECT_TRUE(NetConfOrder(Role::kConfig).empty());
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a"}));
    EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"a"}));
}

TEST_F(RowManagement, UpdateWithTheStoredRecordItselfKeepsIt) {
    Add("a");
    DomainInfo* record = Find("a");
    EXPECT_EQ(UpdateLocked(record), 0u);
    EXPECT_EQ(Find("a"), record);
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a"}));
}

TEST_F(RowManagement, SlotOutsideTheTableDestroysTheRecordAndChangesNothing) {
    Add("a");
    DomainInfo* record = Record("a");
    record->slot = 1024;
    EXPECT_EQ(UpdateLocked(record), DOM_ERR_FAILED);
    EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a"}));
    EXPECT_EQ(CountOf(Role::kWorking), 1u);
}

TEST_F(RowManagement, UpdateThatRunsOutOfMemoryDestroysTheRecordAndChangesNothing) {
    Add("a");
    DomainInfo* before = Find("a");
    for (int n = 1; n <= 5; ++n) {
        DomainInfo* record = Record("a");
        record->slot = 0;
        fake::FailAllocation(n);
        EXPECT_EQ(UpdateLocked(record), DOM_ERR_FAILED) << n;
        EXPECT_TRUE(fake::Tripped());
        EXPECT_EQ(Find("a"), before);
        EXPECT_EQ(MibOrder(Role::kWorking), (Names{"a"}));
        EXPECT_EQ(NetConfOrder(Role::kWorking), (Names{"a"}));
    }
}

}  // namespace
}  // namespace aaadom
