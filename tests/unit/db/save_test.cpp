#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

TEST_F(ConfigDbTest, NullRequestFails) {
    EXPECT_EQ(DOM_SetDataToDB(nullptr), DOM_ERR_FAILED);
}

class UnsavedType : public ConfigDbTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(UnsavedType, FailsAndWritesNothing) {
    EXPECT_EQ(Save(GetParam(), "alpha", 1), DOM_ERR_FAILED);
    EXPECT_EQ(Save(GetParam(), "alpha", 0), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}
INSTANTIATE_TEST_SUITE_P(Types, UnsavedType,
                         ::testing::Values(0u, 10u, 12u, 22u, 26u, 32u, 36u, 37u, 39u, 41u,
                                           0xFFFFFFFFu));

// --- domain records
// -----------------------------------------------------------------------------

TEST_F(ConfigDbTest, DomainIsStoredAtItsSlot) {
    AddDomain("alpha");
    AddDomain("beta");
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "beta"), DOM_OK);
    const auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].call, "DBM_SetArray");
    EXPECT_EQ(calls[0].key, "apstDomainInfoTab");
    EXPECT_EQ(calls[0].key_length, 17u);
    EXPECT_EQ(calls[0].index, 1);
    EXPECT_EQ(calls[0].value_type, 1u);
    const TlvPtr expected(DOM_EncodeDomain("beta"));
    EXPECT_EQ(calls[0].value, fake::ImageOf(expected.get()));
}

TEST_F(ConfigDbTest, DomainIsFlushedWithTheSizeOfItsBuffer) {
    AddDomain("alpha");
    ASSERT_EQ(Save(DOM_DB_DOMAIN, "alpha"), DOM_OK);
    EXPECT_EQ(fake::BufferFlushLimits(), (std::vector<uint32_t>{65535}));
}

TEST_F(ConfigDbTest, DomainIsFoundIgnoringCase) {
    AddDomain("alpha");
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "ALPHA"), DOM_OK);
}

TEST_F(ConfigDbTest, DomainThatIsNotInTheTableIsNotWritten) {
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "nobody"), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(ConfigDbTest, DomainOfTheOtherRoleIsNotWritten) {
    fake::InRole(fake::kWorkingRole, [] { return DOM_AddDomainByName("alpha"); });
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "alpha"), DOM_ERR_FAILED);
}

TEST_F(ConfigDbTest, DeletingADomainRecordDoesNothing) {
    AddDomain("alpha");
    for (uint16_t operation : {0, 2, 0xFFFF})
        EXPECT_EQ(Save(DOM_DB_DOMAIN, "alpha", operation), DOM_OK) << operation;
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "nobody", 0), DOM_OK);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(ConfigDbTest, NegativeArrayResultFails) {
    AddDomain("alpha");
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "alpha"), DOM_ERR_FAILED);
}

TEST_F(ConfigDbTest, EmptyFlushIsNeverStoredBecauseThatWouldDelete) {
    AddDomain("alpha");
    fake::FailFlush();
    EXPECT_EQ(Save(DOM_DB_DOMAIN, "alpha"), DOM_ERR_FAILED);
    fake::FailFlush();
    EXPECT_EQ(Save(DOM_DB_DEFAULT_DOMAIN, "alpha"), DOM_ERR_FAILED);
    EXPECT_TRUE(fake::DbmCalls().empty());
}

TEST_F(ConfigDbTest, UnterminatedNameIsReadWithinItsField) {
    DomDbUpdateReq request = Request(DOM_DB_DEFAULT_DOMAIN);
    memset(request.object_name, 'n', sizeof request.object_name);
    EXPECT_EQ(DOM_SetDataToDB(&request), DOM_OK);
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetDefDomainFromDB(handle_, name), DOM_OK);
    EXPECT_EQ(std::string(name), std::string(255, 'n'));
}

class SaveFailure : public ConfigDbTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(SaveFailure, EverySingleFailureFailsOrIsHarmlessAndLeaksNothing) {
    AddDomain("alpha");
    int failures = 0;
    for (int n = 1;; ++n) {
        fake::FailAny(n);
        const uint32_t result = Save(GetParam(), "alpha");
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(fake::LiveMessages(), 0) << n;
        EXPECT_EQ(fake::HeldLocks(), 0) << n;
        EXPECT_EQ(result, tripped ? DOM_ERR_FAILED : DOM_OK) << n;
        if (!tripped) break;
        ++failures;
    }
    EXPECT_GE(failures, 1);
}
INSTANTIATE_TEST_SUITE_P(Types, SaveFailure, ::testing::Values(1u, 2u, 3u, 6u, 7u));

// --- deletion by index
// --------------------------------------------------------------------------

TEST_F(ConfigDbTest, DeletingByIndexWritesAnEmptyElement) {
    AddDomain("alpha");
    ASSERT_EQ(Save(DOM_DB_DOMAIN, "alpha"), DOM_OK);
    fake::ClearDbmCalls();
    EXPECT_EQ(DOM_DeleteDomainToDBByIndex(0), 0u);
    const auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].call, "DBM_SetArray");
    EXPECT_EQ(calls[0].key, "apstDomainInfoTab");
    EXPECT_EQ(calls[0].key_length, 17u);
    EXPECT_EQ(calls[0].index, 0);
    EXPECT_EQ(calls[0].value_length, 0u);
    EXPECT_EQ(calls[0].value_type, 1u);
    EXPECT_EQ(DOM_GetDomainFromDBByIndex(handle_, 0), nullptr);
}

TEST_F(ConfigDbTest, DeletingByIndexAnswersWithATruthValue) {
    EXPECT_EQ(DOM_DeleteDomainToDBByIndex(5), 0u) << "nothing was there";
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(DOM_DeleteDomainToDBByIndex(5), 1u);
}

// --- names
// --------------------------------------------------------------------------------------

struct NameType {
    uint32_t type;
    const char* key;
    TLV_MSG* (*encode)(const char* name);
};

class SavedName : public ConfigDbTest, public ::testing::WithParamInterface<NameType> {};

TEST_P(SavedName, IsStoredUnderItsKeyWithoutTerminator) {
    EXPECT_EQ(Save(GetParam().type, "alpha"), DOM_OK);
    const auto calls = fake::DbmCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].call, "DBM_SetBinary");
    EXPECT_EQ(calls[0].key, GetParam().key);
    EXPECT_EQ(calls[0].key_length, 15u);
    EXPECT_EQ(calls[0].index, -1);
    EXPECT_EQ(calls[0].value_type, GetParam().type);
    const TlvPtr expected(GetParam().encode("alpha"));
    EXPECT_EQ(calls[0].value, fake::ImageOf(expected.get()));
}

// Platforms see no limit here; what does not fit the buffer is turned away before.
TEST_P(SavedName, IsFlushedWithoutALimit) {
    ASSERT_EQ(Save(GetParam().type, "alpha"), DOM_OK);
    EXPECT_EQ(fake::BufferFlushLimits(), (std::vector<uint32_t>{0xFFFFFFFFu}));
}

TEST_P(SavedName, DeletingLeavesTheKeyEmpty) {
    ASSERT_EQ(Save(GetParam().type, "alpha"), DOM_OK);
    for (uint16_t operation : {0, 2, 0xFFFF}) {
        fake::ClearDbmCalls();
        EXPECT_EQ(Save(GetParam().type, "alpha", operation), DOM_OK);
        const auto calls = fake::DbmCalls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].call, "DBM_SetBinary");
        EXPECT_EQ(calls[0].key, GetParam().key);
        EXPECT_EQ(calls[0].key_length, 15u);
        EXPECT_EQ(calls[0].index, -1);
        EXPECT_EQ(calls[0].value_length, 0u);
        EXPECT_EQ(calls[0].value_type, GetParam().type);
    }
    EXPECT_EQ(DBM_IsKeyExist(handle_, GetParam().key, 15), 1u);
}

TEST_P(SavedName, DatabaseFailureFails) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(Save(GetParam().type, "alpha", 1), DOM_ERR_FAILED);
    EXPECT_EQ(Save(GetParam().type, "alpha", 0), DOM_ERR_FAILED);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SavedName,
    ::testing::Values(NameType{2, "szDefaultDomain",
                               [](const char* name) { return DOM_EncodeDefaultDomain(name, 0); }},
                      NameType{6, "szUnknownDomain", DOM_EncodeUnknownDomain}));

// --- numbers
// ------------------------------------------------------------------------------------

TEST_F(ConfigDbTest, SessionLimitsAreStoredAsFiveWords) {
    const SessionLimits limits{1, 2, 3, 4, 0x01020304};
    DOM_SetAllSessionLimit(&limits);
    for (uint16_t operation : {1, 0}) {
        fake::ClearDbmCalls();
        EXPECT_EQ(Save(DOM_DB_SESSION_LIMIT, "", operation), DOM_OK);
        const auto calls = fake::DbmCalls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].call, "DBM_SetBinary");
        EXPECT_EQ(calls[0].key, std::string("SessionLimit\0", 13));
        EXPECT_EQ(calls[0].key_length, 13u);
        EXPECT_EQ(calls[0].index, -1);
        EXPECT_EQ(calls[0].value_type, 3u);
        const uint32_t words[5] = {1, 2, 3, 4, 0x01020304};
        EXPECT_EQ(calls[0].value, std::string(reinterpret_cast<const char*>(words), sizeof words));
    }
}

TEST_F(ConfigDbTest, DeviceIdIsStoredInHostOrder) {
    DOM_SetDeviceID(0x01020304);
    for (uint16_t operation : {1, 0}) {
        fake::ClearDbmCalls();
        EXPECT_EQ(Save(DOM_DB_DEVICE_ID, "", operation), DOM_OK);
        const auto calls = fake::DbmCalls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].call, "DBM_SetBinary");
        EXPECT_EQ(calls[0].key, std::string("AaaDeviceID\0", 12));
        EXPECT_EQ(calls[0].key_length, 12u);
        EXPECT_EQ(calls[0].index, -1);
        EXPECT_EQ(calls[0].value_type, 7u);
        const uint32_t word = 0x01020304;
        EXPECT_EQ(calls[0].value, std::string(reinterpret_cast<const char*>(&word), sizeof word));
    }
}

TEST_F(ConfigDbTest, NumbersAreThoseOfTheCallingRole) {
    DOM_SetDeviceID(11);
    fake::InRole(fake::kWorkingRole, [] {
        DOM_SetDeviceID(22);
        return 0;
    });
    ASSERT_EQ(Save(DOM_DB_DEVICE_ID), DOM_OK);
    uint32_t saved = 0;
    ASSERT_EQ(DOM_GetDeviceIDFromDB(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved, 11u);
    fake::InRole(fake::kWorkingRole, [] {
        DOM_SetDeviceID(0);
        return 0;
    });
}

}  // namespace
}  // namespace aaadom
