// Every stored record against its bytes: saving the value writes the
// file under exactly its key, reading a database that holds the file gives the value. Keys, lengths
// and value types are written out here, so that a changed registry does not change the test.
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>

#include <cstring>
#include <string>

#include "tests/golden/hex_file.h"
#include "tests/golden/temporary_database.h"

namespace {

struct StoredRecord {
    const char* golden;
    uint32_t object_type;
    const char* object_name;
    std::string key;
    uint32_t kind;
};

const StoredRecord kDomainRecord{"db_domain", 1, "isp-a", "apstDomainInfoTab", DBM_KIND_ARRAY};
const StoredRecord kDefaultDomain{"db_default_domain", 2, "isp-a", "szDefaultDomain",
                                  DBM_KIND_BINARY};
const StoredRecord kUnknownDomain{"db_unknown_domain", 6, "isp-b", "szUnknownDomain",
                                  DBM_KIND_BINARY};
const StoredRecord kSessionLimit{"db_session_limit", 3, "", std::string("SessionLimit\0", 13),
                                 DBM_KIND_BINARY};
const StoredRecord kDeviceId{"db_device_id", 7, "", std::string("AaaDeviceID\0", 12),
                             DBM_KIND_BINARY};
// The entry of VLAN 258 in the list of profile "Campus".
const StoredRecord kNasIdBinding{"db_nas_id_binding", 5, "",
                                 std::string("profilename_Campus\0", 19), DBM_KIND_SORTED};
const StoredRecord kRecordSwitches{"db_record_switches", 11, "", std::string("AaaUserRecord\0", 14),
                                   DBM_KIND_BINARY};
const StoredRecord kRecordBackup{"db_record_backup", 38, "",
                                 std::string("AaaUserRecordBackup\0", 20), DBM_KIND_BINARY};
// Saved by functions of their own; the number is their value type alone.
const StoredRecord kRecordEnableDefault{"db_record_enable_default", 12, "",
                                        std::string("AaaUserRecordSwitchOn\0", 22),
                                        DBM_KIND_BINARY};
const StoredRecord kRecordBackupDefault{"db_record_backup_default", 39, "",
                                        std::string("AaaUserRecordBackupDefault\0", 27),
                                        DBM_KIND_BINARY};

void PrintTo(const StoredRecord& record, std::ostream* out) {
    *out << record.golden;
}

class DbGolden : public golden::TemporaryDatabase,
                 public ::testing::WithParamInterface<StoredRecord> {
  protected:
    void SetUp() override {
        TemporaryDatabase::SetUp();
        if (HasFatalFailure()) return;
        ASSERT_EQ(DOM_DomainInfoTableInit(), DOM_OK);
        DOM_SetDomainDBMHandle(handle_);
    }
    void TearDown() override {
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
        DOM_SetDeviceID(0);
        DOM_SetUserRecordEnableDefault(0);
        DOM_SetUserRecordBackupMethodDefault(0);
        DOM_DomainInfoTableFini();
        TemporaryDatabase::TearDown();
    }

    /// The table's state that the golden files show.
    static void FillTables() {
        ASSERT_EQ(DOM_AddDomainByName("isp-a"), DOM_ADD_OK);
        DOM_SetState("isp-a", 2);
        const SessionLimits limits{100, 200, 300, 400, 32};
        DOM_SetAllSessionLimit(&limits);
        DOM_SetDeviceID(0x01020304);
        const RecordSwitches switches{1, 0, 1, 0};
        DOM_SetRecordEnableInfoAll(&switches);
        const BackupMethods methods{1, 0, 1};
        DOM_SetAAAUserRecordBackupMethod(&methods);
        DOM_SetUserRecordEnableDefault(1);
        DOM_SetUserRecordBackupMethodDefault(6);
    }
    static uint32_t Save(const StoredRecord& record) {
        if (record.object_type == 12) return DOM_SetRecordEnableSwitchOnToDB();
        if (record.object_type == 39) return DOM_SetRecordBackupMethodDefaultToDB();
        DomDbUpdateReq request{};
        snprintf(request.nas_id_profile_name, sizeof request.nas_id_profile_name, "Campus");
        snprintf(request.nas_id, sizeof request.nas_id, "nas-a");
        request.vlan_id = 258;
        if (record.kind == DBM_KIND_SORTED) {
            request.object_type = 4;  // the profile is saved before its bindings
            request.operation = 1;
            if (DOM_SetDataToDB(&request) != DOM_OK) return DOM_ERR_FAILED;
        }
        request.object_type = record.object_type;
        snprintf(request.object_name, sizeof request.object_name, "%s", record.object_name);
        request.operation = 1;
        return DOM_SetDataToDB(&request);
    }
    std::string Stored(const StoredRecord& record) {
        std::string value(DOM_DB_VALUE_MAX, '\0');
        const uint32_t key_length = static_cast<uint32_t>(record.key.size());
        if (record.kind == DBM_KIND_SORTED) {
            const uint16_t vlan_id = 258;
            value.assign(34, '\0');
            memcpy(value.data(), &vlan_id, sizeof vlan_id);
            const int32_t found =
                DBM_GetSortList(handle_, record.key.data(), key_length, 34, value.data());
            return found == 34 ? value : std::string();
        }
        const int32_t length = record.kind == DBM_KIND_ARRAY
                                   ? DBM_GetArray(handle_, record.key.data(), key_length, 0,
                                                  DOM_DB_VALUE_MAX, value.data())
                                   : DBM_GetBinary(handle_, record.key.data(), key_length, 0,
                                                   DOM_DB_VALUE_MAX, value.data());
        value.resize(length < 0 ? 0 : static_cast<size_t>(length));
        return value;
    }
    /// Stores the golden bytes past the library.
    void Put(const StoredRecord& record) {
        const std::string value = golden::ReadHexFile(record.golden);
        ASSERT_FALSE(value.empty());
        const uint32_t key_length = static_cast<uint32_t>(record.key.size());
        const uint32_t length = static_cast<uint32_t>(value.size());
        if (record.kind == DBM_KIND_ARRAY) {
            ASSERT_GE(DBM_SetArray(handle_, record.key.data(), key_length, 0, length, value.data(),
                                   record.object_type),
                      0);
        } else if (record.kind == DBM_KIND_SORTED) {
            const uint32_t attributes[4] = {0, 2, 2, 0};
            ASSERT_EQ(DBM_CreateSortList(handle_, record.key.data(), key_length, attributes, 1,
                                         record.object_type),
                      0u);
            ASSERT_EQ(DBM_InsertSortList(handle_, record.key.data(), key_length, length,
                                         value.data(), record.object_type),
                      0u);
        } else {
            ASSERT_EQ(DBM_SetBinary(handle_, record.key.data(), key_length, -1, length,
                                    value.data(), record.object_type),
                      0u);
        }
    }
};

TEST_P(DbGolden, SavingWritesTheFile) {
    FillTables();
    ASSERT_EQ(Save(GetParam()), DOM_OK);
    EXPECT_EQ(golden::ToHex(Stored(GetParam())),
              golden::ToHex(golden::ReadHexFile(GetParam().golden)));
}

TEST_P(DbGolden, KeyKindAndValueTypeAreTheRecords) {
    FillTables();
    ASSERT_EQ(Save(GetParam()), DOM_OK);
    ASSERT_EQ(DBM_GetKeyNumByValueType(handle_, GetParam().object_type), 1u);
    void* iterator = nullptr;
    DBM_KEY_SLOT slot{};
    ASSERT_EQ(DBM_GetKeysByValueType(handle_, 1, GetParam().object_type, &iterator, &slot), 1u);
    DBM_FreeIterator(iterator);
    EXPECT_EQ(std::string(slot.key, slot.key_length), GetParam().key);
    EXPECT_EQ(slot.kind, GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(Records, DbGolden,
                         ::testing::Values(kDomainRecord, kDefaultDomain, kUnknownDomain,
                                           kSessionLimit, kDeviceId, kNasIdBinding, kRecordSwitches,
                                           kRecordBackup, kRecordEnableDefault,
                                           kRecordBackupDefault),
                         [](const auto& info) { return info.param.golden; });

using DbGoldenRead = DbGolden;

TEST_F(DbGoldenRead, Domain) {
    Put(kDomainRecord);
    DomainInfo* record = DOM_GetDomainFromDBByIndex(handle_, 0);
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->name, "isp-a");
    EXPECT_EQ(record->state, 2);
    EXPECT_EQ(record->user_addr_type, 7u);
    EXPECT_EQ(record->author_attr.kind19_word, -1);
    EXPECT_EQ(record->author_attr.kind23_word, 65535u);
    for (uint32_t row : {0u, 4u, 5u}) {
        const MethodList* list = record->method_lists[row][DOM_DEFAULT_SERVICE];
        ASSERT_NE(list, nullptr) << row;
        EXPECT_EQ(list->methods[0].method_kind, uint32_t{METHOD_DEFAULT_4});
        EXPECT_EQ(list->methods[1].method_kind, uint32_t{METHOD_EMPTY});
    }
    DOM_DestroyDomain(record);
}

TEST_F(DbGoldenRead, Names) {
    Put(kDefaultDomain);
    Put(kUnknownDomain);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetDefDomainFromDB(handle_, name), DOM_OK);
    EXPECT_STREQ(name, "isp-a");
    EXPECT_EQ(DOM_GetUnknownDomainFromDB(handle_, name), DOM_OK);
    EXPECT_STREQ(name, "isp-b");
}

TEST_F(DbGoldenRead, Numbers) {
    Put(kSessionLimit);
    Put(kDeviceId);
    uint32_t limits[5] = {};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, limits), DOM_OK);
    const uint32_t expected[5] = {100, 200, 300, 400, 32};
    EXPECT_EQ(memcmp(limits, expected, sizeof expected), 0);
    uint32_t device_id = 0;
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, &device_id), DOM_OK);
    EXPECT_EQ(device_id, 0x01020304u);
}

TEST_F(DbGoldenRead, NasIdProfile) {
    Put(kNasIdBinding);
    EXPECT_EQ(DOM_IsExistProfileName(handle_, "Campus"), 1u);
    DomProfileNameList list{};
    ASSERT_EQ(DOM_GetAllNasIdProfileMode(handle_, &list), DOM_OK);
    ASSERT_NE(list.head, nullptr);
    EXPECT_EQ(list.head, list.tail);
    EXPECT_STREQ(list.head->name, "Campus");
    free(list.head);
    // The stored binding is the one that would be written: saving it again replaces nothing.
    EXPECT_EQ(Save(kNasIdBinding), DOM_OK);
    EXPECT_EQ(DBM_GetEntryNum(handle_, kNasIdBinding.key.data(),
                              static_cast<uint32_t>(kNasIdBinding.key.size())),
              1u);
}

TEST_F(DbGoldenRead, Records) {
    Put(kRecordSwitches);
    Put(kRecordBackup);
    Put(kRecordEnableDefault);
    Put(kRecordBackupDefault);
    RecordSwitches switches{};
    EXPECT_EQ(DOM_GetRecordEnableInfoFromDB(handle_, &switches), DOM_OK);
    const RecordSwitches expected_switches{1, 0, 1, 0};
    EXPECT_EQ(memcmp(&switches, &expected_switches, sizeof switches), 0);
    BackupMethods methods{};
    EXPECT_EQ(DOM_GetRecordBackupInfoFromDBStruct(handle_, &methods), DOM_OK);
    const BackupMethods expected_methods{1, 0, 1};
    EXPECT_EQ(memcmp(&methods, &expected_methods, sizeof methods), 0);
    EXPECT_EQ(DOM_GetUserRecordEnableDefaultFromDB(handle_), 1u);
    EXPECT_EQ(DOM_GetRecordBackupMethodDefaultFromDB(handle_), 6u);
}

}  // namespace
