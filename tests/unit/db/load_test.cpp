#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

TEST_F(ConfigDbTest, SavedDomainComesBack) {
    AddDomain("alpha");
    DOM_SetState("alpha", 2);
    ASSERT_EQ(Save(DOM_DB_DOMAIN, "alpha"), DOM_OK);
    DomainInfo* record = DOM_GetDomainFromDBByIndex(handle_, 0);
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->name, "alpha");
    EXPECT_EQ(record->state, 2);
    DOM_DestroyDomain(record);
}

TEST_F(ConfigDbTest, ElementIsReadWithItsExactKey) {
    NameOf(DOM_GetDomainFromDBByIndex(handle_, 9));
    const auto calls = fake::DbmCalls("DBM_GetArray");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, "apstDomainInfoTab");
    EXPECT_EQ(calls[0].key_length, 17u);
    EXPECT_EQ(calls[0].index, 9);
    EXPECT_EQ(calls[0].value_length, 65535u) << "the size of the buffer";
}

// A reader may use a handle that it opened for itself while writers have another one or none.
TEST_F(ConfigDbTest, GettersUseTheHandleTheyAreGiven) {
    AddDomain("alpha");
    for (uint32_t type : {1u, 2u, 3u, 6u, 7u}) ASSERT_EQ(Save(type, "alpha"), DOM_OK) << type;
    DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    char name[DOM_NAME_SIZE] = {};
    uint32_t limits[5] = {};
    uint32_t device_id = 0;
    EXPECT_EQ(NameOf(DOM_GetDomainFromDBByIndex(handle_, 0)), "alpha");
    EXPECT_EQ(NameOf(DOM_GetDomainFromDBByName(handle_, "alpha")), "alpha");
    EXPECT_EQ(DOM_GetDefDomainFromDB(handle_, name), DOM_OK);
    EXPECT_EQ(DOM_GetUnknownDomainFromDB(handle_, name), DOM_OK);
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, limits), DOM_OK);
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, &device_id), DOM_OK);
    DOM_SetDomainDBMHandle(handle_);
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(DBM_INVALID_HANDLE, 0), nullptr);
    EXPECT_EQ(DOM_GetDomainFromDBByName(DBM_INVALID_HANDLE, "alpha"), nullptr);
    EXPECT_EQ(DOM_GetSessionLimitFromDB(DBM_INVALID_HANDLE, limits), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetDeviceIDFromDB(DBM_INVALID_HANDLE, &device_id), DOM_ERR_FAILED);
}

struct BinaryRead {
    const char* title;
    std::string key;
    uint32_t buffer_size;
    void (*get)(DBM_HANDLE handle);
};
void PrintTo(const BinaryRead& read, std::ostream* out) {
    *out << read.title;
}
class LoadedBinary : public ConfigDbTest, public ::testing::WithParamInterface<BinaryRead> {};

TEST_P(LoadedBinary, IsReadWholeWithItsExactKey) {
    GetParam().get(handle_);
    const auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].call, "DBM_GetBinary");
    EXPECT_EQ(calls[0].key, GetParam().key);
    EXPECT_EQ(calls[0].key_length, GetParam().key.size());
    EXPECT_EQ(calls[0].index, 0);
    EXPECT_EQ(calls[0].value_length, GetParam().buffer_size);
}
INSTANTIATE_TEST_SUITE_P(
    Keys, LoadedBinary,
    ::testing::Values(BinaryRead{"DefaultDomain", "szDefaultDomain", 65535,
                                 [](DBM_HANDLE handle) {
                                     char name[DOM_NAME_SIZE];
                                     DOM_GetDefDomainFromDB(handle, name);
                                 }},
                      BinaryRead{"UnknownDomain", "szUnknownDomain", 65535,
                                 [](DBM_HANDLE handle) {
                                     char name[DOM_NAME_SIZE];
                                     DOM_GetUnknownDomainFromDB(handle, name);
                                 }},
                      BinaryRead{"SessionLimit", std::string("SessionLimit\0", 13), 20,
                                 [](DBM_HANDLE handle) {
                                     uint32_t limits[5];
                                     DOM_GetSessionLimitFromDB(handle, limits);
                                 }},
                      BinaryRead{"DeviceId", std::string("AaaDeviceID\0", 12), 4,
                                 [](DBM_HANDLE handle) {
                                     uint32_t device_id;
                                     DOM_GetDeviceIDFromDB(handle, &device_id);
                                 }}),
    [](const auto& info) { return info.param.title; });

TEST_F(ConfigDbTest, MissingElementIsNoDomain) {
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(handle_, 5), nullptr);
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(DBM_INVALID_HANDLE, 5), nullptr);
}

TEST_F(ConfigDbTest, ElementThatIsNoMessageIsNoDomain) {
    ASSERT_GE(DBM_SetArray(handle_, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, 0, 5, "bytes",
                           DOM_DB_DOMAIN),
              0);
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(handle_, 0), nullptr);
}

TEST_F(ConfigDbTest, ElementThatIsAnotherMessageIsNoDomain) {
    const TlvPtr msg(DOM_EncodeDomainCount(3));
    const std::string image = fake::ImageOf(msg.get());
    ASSERT_GE(DBM_SetArray(handle_, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, 0,
                           static_cast<uint32_t>(image.size()), image.data(), DOM_DB_DOMAIN),
              0);
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(handle_, 0), nullptr);
}

TEST_F(ConfigDbTest, SearchByNameReturnsTheLowestIndex) {
    PutRecord(3, "alpha");
    PutRecord(7, "alpha");
    fake::ClearDbmCalls();
    EXPECT_EQ(NameOf(DOM_GetDomainFromDBByName(handle_, "alpha")), "alpha");
    EXPECT_EQ(fake::DbmCalls("DBM_GetArray").size(), 4u) << "stops at index 3";
}

TEST_F(ConfigDbTest, SearchByNameRegardsLetterCase) {
    PutRecord(0, "Alpha");
    EXPECT_EQ(DOM_GetDomainFromDBByName(handle_, "alpha"), nullptr);
    EXPECT_EQ(NameOf(DOM_GetDomainFromDBByName(handle_, "Alpha")), "Alpha");
}

TEST_F(ConfigDbTest, SearchByNamePassesOverUndecodableElements) {
    ASSERT_GE(DBM_SetArray(handle_, DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, 0, 5, "bytes",
                           DOM_DB_DOMAIN),
              0);
    PutRecord(1, "alpha");
    EXPECT_EQ(NameOf(DOM_GetDomainFromDBByName(handle_, "alpha")), "alpha");
}

TEST_F(ConfigDbTest, SearchByNameFindsIndex1023AndLooksNoFurther) {
    PutRecord(1023, "alpha");
    PutRecord(1024, "beta");
    EXPECT_EQ(NameOf(DOM_GetDomainFromDBByName(handle_, "alpha")), "alpha");
    fake::ClearDbmCalls();
    EXPECT_EQ(DOM_GetDomainFromDBByName(handle_, "beta"), nullptr);
    const auto calls = fake::DbmCalls("DBM_GetArray");
    ASSERT_EQ(calls.size(), 1024u);
    EXPECT_EQ(calls.front().index, 0);
    EXPECT_EQ(calls.back().index, 1023);
}

TEST_F(ConfigDbTest, SearchForANullNameFindsNothing) {
    PutRecord(0, "");
    EXPECT_EQ(DOM_GetDomainFromDBByName(handle_, nullptr), nullptr);
}

TEST_F(ConfigDbTest, SavedNamesComeBack) {
    ASSERT_EQ(Save(DOM_DB_DEFAULT_DOMAIN, "alpha"), DOM_OK);
    ASSERT_EQ(Save(DOM_DB_UNKNOWN_DOMAIN, "beta"), DOM_OK);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetDefDomainFromDB(handle_, name), DOM_OK);
    EXPECT_STREQ(name, "alpha");
    EXPECT_EQ(DOM_GetUnknownDomainFromDB(handle_, name), DOM_OK);
    EXPECT_STREQ(name, "beta");
}

using NameGetter = uint32_t (*)(DBM_HANDLE, char*);
struct NameRead {
    uint32_t type;
    const char* key;
    NameGetter get;
};
class LoadedName : public ConfigDbTest, public ::testing::WithParamInterface<NameRead> {};

TEST_P(LoadedName, MissingKeyFails) {
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(GetParam().get(handle_, name), DOM_ERR_FAILED);
    EXPECT_EQ(GetParam().get(DBM_INVALID_HANDLE, name), DOM_ERR_FAILED);
}

TEST_P(LoadedName, DeletedNameFails) {
    ASSERT_EQ(Save(GetParam().type, "alpha", 1), DOM_OK);
    ASSERT_EQ(Save(GetParam().type, "alpha", 0), DOM_OK);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(GetParam().get(handle_, name), DOM_ERR_FAILED);
}

TEST_P(LoadedName, ValueThatIsNoMessageFails) {
    PutBinary(GetParam().key, 15, "garbage", GetParam().type);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(GetParam().get(handle_, name), DOM_ERR_FAILED);
}

TEST_P(LoadedName, OtherMessageFails) {
    const TlvPtr msg(DOM_EncodeDomainCount(1));
    PutBinary(GetParam().key, 15, fake::ImageOf(msg.get()), GetParam().type);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_NE(GetParam().get(handle_, name), DOM_OK);
}

TEST_P(LoadedName, NullOutputFails) {
    ASSERT_EQ(Save(GetParam().type, "alpha"), DOM_OK);
    EXPECT_EQ(GetParam().get(handle_, nullptr), DOM_ERR_FAILED);
}

TEST_P(LoadedName, LongestNameFits) {
    const std::string longest(255, 'n');
    ASSERT_EQ(Save(GetParam().type, longest.c_str()), DOM_OK);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(GetParam().get(handle_, name), DOM_OK);
    EXPECT_EQ(name, longest);
}

TEST_P(LoadedName, FailedAllocationFails) {
    ASSERT_EQ(Save(GetParam().type, "alpha"), DOM_OK);
    char name[DOM_NAME_SIZE] = {};
    fake::FailAllocation(1);
    EXPECT_EQ(GetParam().get(handle_, name), DOM_ERR_FAILED);
}

INSTANTIATE_TEST_SUITE_P(
    Names, LoadedName,
    ::testing::Values(NameRead{2, "szDefaultDomain",
                               [](DBM_HANDLE h, char* n) { return DOM_GetDefDomainFromDB(h, n); }},
                      NameRead{6, "szUnknownDomain", [](DBM_HANDLE h, char* n) {
                                   return DOM_GetUnknownDomainFromDB(h, n);
                               }}));

TEST_F(ConfigDbTest, FailedAllocationIsNoDomain) {
    PutRecord(0, "alpha");
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(handle_, 0), nullptr);
    fake::FailAllocation(1);
    EXPECT_EQ(DOM_GetDomainFromDBByName(handle_, "alpha"), nullptr);
}

TEST_F(ConfigDbTest, SavedSessionLimitsComeBackInOrder) {
    const SessionLimits limits{1, 2, 3, 4, 5};
    DOM_SetAllSessionLimit(&limits);
    ASSERT_EQ(Save(DOM_DB_SESSION_LIMIT), DOM_OK);
    uint32_t read[5] = {};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, read), DOM_OK);
    for (uint32_t i = 0; i < 5; ++i) EXPECT_EQ(read[i], i + 1);
}

TEST_F(ConfigDbTest, MissingSessionLimitsFailAndReadAsThePreset) {
    uint32_t read[5] = {};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, read), DOM_ERR_FAILED);
    for (uint32_t limit : read) EXPECT_EQ(limit, 32u);
}

TEST_F(ConfigDbTest, EmptySessionLimitsAreMissing) {
    PutBinary("SessionLimit", 13, "", 3);
    uint32_t read[5] = {};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, read), DOM_ERR_FAILED);
    EXPECT_EQ(read[4], 32u);
}

TEST_F(ConfigDbTest, ShortSessionLimitsKeepThePresetInTheRest) {
    const uint32_t words[2] = {7, 8};
    PutBinary("SessionLimit", 13, std::string(reinterpret_cast<const char*>(words), sizeof words),
              3);
    uint32_t read[5] = {};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, read), DOM_OK);
    EXPECT_EQ(read[0], 7u);
    EXPECT_EQ(read[1], 8u);
    EXPECT_EQ(read[2], 32u);
    EXPECT_EQ(read[4], 32u);
}

TEST_F(ConfigDbTest, LongSessionLimitsAreReadWithinTheirBlock) {
    PutBinary("SessionLimit", 13, std::string(64, '\1'), 3);
    uint32_t read[6] = {0, 0, 0, 0, 0, 99};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, read), DOM_OK);
    EXPECT_EQ(read[4], 0x01010101u);
    EXPECT_EQ(read[5], 99u);
}

TEST_F(ConfigDbTest, SessionLimitKeyWithoutTerminatorIsAnotherKey) {
    PutBinary("SessionLimit", 12, std::string(20, '\1'), 3);
    uint32_t read[5] = {};
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, read), DOM_ERR_FAILED);
}

TEST_F(ConfigDbTest, DeviceIdComesBack) {
    DOM_SetDeviceID(0x01020304);
    ASSERT_EQ(Save(DOM_DB_DEVICE_ID), DOM_OK);
    uint32_t read = 9;
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, &read), DOM_OK);
    EXPECT_EQ(read, 0x01020304u);
}

TEST_F(ConfigDbTest, LongDeviceIdIsReadWithinItsWord) {
    PutBinary("AaaDeviceID", 12, std::string(64, '\1'), 7);
    uint32_t read[2] = {0, 99};
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, read), DOM_OK);
    EXPECT_EQ(read[0], 0x01010101u);
    EXPECT_EQ(read[1], 99u);
}

TEST_F(ConfigDbTest, EmptyDeviceIdIsMissing) {
    PutBinary("AaaDeviceID", 12, "", 7);
    uint32_t read = 9;
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, &read), DOM_ERR_FAILED);
    EXPECT_EQ(read, 0u);
}

TEST_F(ConfigDbTest, MissingDeviceIdFailsAndReadsAsZero) {
    uint32_t read = 9;
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, &read), DOM_ERR_FAILED);
    EXPECT_EQ(read, 0u);
}

TEST_F(ConfigDbTest, NullOutputsOfNumbersFail) {
    EXPECT_EQ(DOM_GetSessionLimitFromDB(handle_, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, nullptr), DOM_ERR_FAILED);
}

// --- limit of an access type
// --------------------------------------------------------------------

TEST_F(ConfigDbTest, AccessTypesChooseTheirLimit) {
    const SessionLimits limits{1, 2, 3, 4, 5};
    DOM_SetAllSessionLimit(&limits);
    ASSERT_EQ(Save(DOM_DB_SESSION_LIMIT), DOM_OK);
    EXPECT_EQ(AAA_GetSessionLimit(2), 1u);
    EXPECT_EQ(AAA_GetSessionLimit(5), 2u);
    EXPECT_EQ(AAA_GetSessionLimit(6), 3u);
    EXPECT_EQ(AAA_GetSessionLimit(10), 4u);
    EXPECT_EQ(AAA_GetSessionLimit(11), 5u);
}

TEST_F(ConfigDbTest, OtherAccessTypesHaveNoLimitAndOpenNothing) {
    for (uint32_t type : {0u, 1u, 3u, 4u, 7u, 9u, 12u, 0xFFFFFFFFu})
        EXPECT_EQ(AAA_GetSessionLimit(type), 0u) << type;
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(ConfigDbTest, UnsavedLimitIsZeroNotThePreset) {
    for (uint32_t type : {2u, 5u, 6u, 10u, 11u}) EXPECT_EQ(AAA_GetSessionLimit(type), 0u) << type;
}

TEST_F(ConfigDbTest, LimitIsReadThroughAHandleOfItsOwn) {
    ASSERT_EQ(Save(DOM_DB_SESSION_LIMIT), DOM_OK);
    const int before = fake::OpenDatabaseHandles();
    AAA_GetSessionLimit(2);
    EXPECT_EQ(fake::OpenDatabaseHandles(), before);
    ASSERT_EQ(fake::DbmCalls("DBM_Open").size(), 1u);
    EXPECT_EQ(fake::DbmCalls("DBM_Open")[0].index, 1) << "opened, not created";
    EXPECT_EQ(fake::DbmCalls("DBM_Close").size(), 1u);
}

TEST_F(ConfigDbTest, LimitThatCannotBeReadIsZeroAndItsHandleIsClosed) {
    ASSERT_EQ(Save(DOM_DB_SESSION_LIMIT), DOM_OK);
    const int before = fake::OpenDatabaseHandles();
    fake::FailDbmCall(2);
    EXPECT_EQ(AAA_GetSessionLimit(2), 0u);
    EXPECT_TRUE(fake::Tripped());
    EXPECT_EQ(fake::OpenDatabaseHandles(), before);
}

TEST_F(ConfigDbTest, LimitWithoutADatabaseIsZero) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(AAA_GetSessionLimit(2), 0u);
}

}  // namespace
}  // namespace aaadom
