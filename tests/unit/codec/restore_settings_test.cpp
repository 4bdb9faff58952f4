#include <aaadom/session.h>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

std::string DefaultDomain() {
    char name[DOM_NAME_SIZE] = {};
    DOM_GetDefaultDomainName(name);
    return name;
}
std::string UnknownDomain() {
    char name[DOM_NAME_SIZE] = {};
    DOM_GetUnknownDomainName(name);
    return name;
}
SessionLimits Limits() {
    SessionLimits limits{};
    DOM_GetAllSessionLimit(&limits);
    return limits;
}

class RestoreSettingsTest : public RestoreTest {
  protected:
    void TearDown() override {
        DOM_AAAResetDebugFlag(0xFFFFFFFFu);
        for (uint32_t session_class = 19; session_class <= 23; ++session_class)
            DOM_SetSessionCount(session_class, 0);
        DOM_SetDeviceID(0);
        RestoreTest::TearDown();
    }
};

TEST_F(RestoreSettingsTest, DefaultDomainIsSetAndSaved) {
    EXPECT_EQ(Set(DOM_EncodeDefaultDomain("alpha", 0), 1), DOM_OK);
    EXPECT_EQ(DefaultDomain(), "alpha");
    EXPECT_STREQ(name1_, "alpha");
    char saved[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetDefDomainFromDB(handle_, saved), DOM_OK);
    EXPECT_STREQ(saved, "alpha");
}

TEST_F(RestoreSettingsTest, DeletingTheDefaultDomainMakesItSystem) {
    ASSERT_EQ(Set(DOM_EncodeDefaultDomain("alpha", 0), 1), DOM_OK);
    EXPECT_EQ(Delete(DOM_EncodeDefaultDomain("alpha", 0), 1), DOM_OK);
    EXPECT_EQ(DefaultDomain(), "system");
    EXPECT_STREQ(name1_, "system");
    const auto calls = fake::DbmCalls("DBM_SetBinary");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].value_length, 0u) << "the stored name is emptied";
}

TEST_F(RestoreSettingsTest, UndecodableDeleteOfTheDefaultDomainChangesNothing) {
    ASSERT_EQ(Set(DOM_EncodeDefaultDomain("alpha", 0)), DOM_OK);
    EXPECT_EQ(Delete(CodeAlone(DOM_MSG_DEFAULT_DOMAIN)), DOM_ERR_FAILED);
    EXPECT_EQ(DefaultDomain(), "alpha");
}

TEST_F(RestoreSettingsTest, UnknownDomainIsSetAndSaved) {
    EXPECT_EQ(Set(DOM_EncodeUnknownDomain("beta"), 1), DOM_OK);
    EXPECT_EQ(UnknownDomain(), "beta");
    EXPECT_STREQ(name1_, "beta");
    char saved[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetUnknownDomainFromDB(handle_, saved), DOM_OK);
    EXPECT_STREQ(saved, "beta");
}

TEST_F(RestoreSettingsTest, DeletingTheUnknownDomainClearsIt) {
    ASSERT_EQ(Set(DOM_EncodeUnknownDomain("beta"), 1), DOM_OK);
    snprintf(name1_, sizeof name1_, "untouched");
    EXPECT_EQ(Delete(DOM_EncodeUnknownDomain("beta"), 1), DOM_OK);
    EXPECT_EQ(UnknownDomain(), "");
    EXPECT_STREQ(name1_, "untouched");
    char saved[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetUnknownDomainFromDB(handle_, saved), DOM_ERR_FAILED);
}

TEST_F(RestoreSettingsTest, UndecodableUnknownDomainFails) {
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_UNKNOWN_DOMAIN), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreSettingsTest, DeviceIdIsSetAndSaved) {
    EXPECT_EQ(Set(DOM_EncodeDeviceID(0x01020304), 1), DOM_OK);
    EXPECT_EQ(DOM_GetDeviceID(), 0x01020304u);
    uint32_t saved = 0;
    EXPECT_EQ(DOM_GetDeviceIDFromDB(handle_, &saved), DOM_OK);
    EXPECT_EQ(saved, 0x01020304u);
}

TEST_F(RestoreSettingsTest, DeletingTheDeviceIdMakesItZeroAndSavesIt) {
    ASSERT_EQ(Set(DOM_EncodeDeviceID(7), 1), DOM_OK);
    EXPECT_EQ(Delete(DOM_EncodeDeviceID(7), 1), DOM_OK);
    EXPECT_EQ(DOM_GetDeviceID(), 0u);
    const auto calls = fake::DbmCalls("DBM_SetBinary");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].value_length, 4u);
}

TEST_F(RestoreSettingsTest, OneSessionLimitIsSetByBothOperations) {
    EXPECT_EQ(Set(DOM_EncodeSessionLimit(21, 100), 1), DOM_OK);
    EXPECT_EQ(Limits().class_21, 100u);
    EXPECT_EQ(Limits().class_19, 0x20202020u);
    EXPECT_EQ(Delete(DOM_EncodeSessionLimit(21, 200), 1), DOM_OK);
    EXPECT_EQ(Limits().class_21, 200u);
    EXPECT_EQ(Writes(), 2u);
}

TEST_F(RestoreSettingsTest, SessionLimitWithoutClassFails) {
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_SESSION_LIMIT), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Limits().class_20, 0x20202020u);
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreSettingsTest, AllSessionLimitsAreSet) {
    const SessionLimits limits{1, 2, 3, 4, 5};
    EXPECT_EQ(Set(DOM_EncodeAllSessionLimit(&limits), 1), DOM_OK);
    EXPECT_EQ(Limits().class_19, 1u);
    EXPECT_EQ(Limits().class_21, 2u);
    EXPECT_EQ(Limits().class_20, 3u);
    EXPECT_EQ(Limits().class_22, 4u);
    EXPECT_EQ(Limits().class_23, 5u);
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreSettingsTest, ClassMissingFromAllSessionLimitsBecomesTheNumber32) {
    TLV_MSG* body = CodeAlone(DOM_MSG_ALL_SESSION_LIMIT);
    AAA_AppendUINTTlvData(body, DOM_TLV_CLASS_22, 4);
    EXPECT_EQ(Set(body), DOM_OK);
    EXPECT_EQ(Limits().class_22, 4u);
    EXPECT_EQ(Limits().class_19, 32u);
    EXPECT_EQ(Limits().class_23, 32u);
}

TEST_F(RestoreSettingsTest, AllSessionLimitsWithoutAnyClassAllBecome32) {
    EXPECT_EQ(Delete(CodeAlone(DOM_MSG_ALL_SESSION_LIMIT)), DOM_OK);
    EXPECT_EQ(Limits().class_19, 32u);
    EXPECT_EQ(Limits().class_20, 32u);
    EXPECT_EQ(Limits().class_21, 32u);
    EXPECT_EQ(Limits().class_22, 32u);
    EXPECT_EQ(Limits().class_23, 32u);
}

TEST_F(RestoreSettingsTest, SessionCountIsRefusedWithoutSave) {
    EXPECT_EQ(Set(DOM_EncodeSessionCount(19, 8), 0), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetSessionCount(19), 0u);
}

TEST_F(RestoreSettingsTest, SessionCountIsSetWithSaveThoughItHasNoSavedForm) {
    EXPECT_EQ(Set(DOM_EncodeSessionCount(19, 8), 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetSessionCount(19), 8u);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreSettingsTest, DebugFlagIsSetAndReset) {
    EXPECT_EQ(Set(DOM_EncodeDebugFlag(3)), DOM_OK);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 3u);
    EXPECT_EQ(Delete(DOM_EncodeDebugFlag(1)), DOM_OK);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 2u);
}

TEST_F(RestoreSettingsTest, DebugFlagHasNoSavedForm) {
    EXPECT_EQ(Set(DOM_EncodeDebugFlag(3), 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 3u);
    EXPECT_EQ(fake::DbmCalls().size(), 0u);
}

TEST_F(RestoreSettingsTest, DebugFlagWithAStrangeTlvFails) {
    TLV_MSG* body = DOM_EncodeDebugFlag(3);
    AAA_AppendUINTTlvData(body, DOM_TLV_RESULT, 0);
    EXPECT_EQ(Set(body), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_AAAGetDebugFlag(), 0u);
}

TEST_F(RestoreSettingsTest, SettingsOfTheOtherRoleStay) {
    ASSERT_EQ(Set(DOM_EncodeDefaultDomain("alpha", 0)), DOM_OK);
    EXPECT_EQ(fake::InRole(fake::kWorkingRole, [] { return DefaultDomain(); }), "");
}

}  // namespace
}  // namespace aaadom
