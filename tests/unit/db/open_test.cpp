#include "unit/db/config_db_fixture.h"

namespace aaadom {
namespace {

TEST_F(ConfigDbTest, CreateOpensTheTableDurably) {
    const DBM_HANDLE handle = DOM_CreateDomainDBM();
    ASSERT_NE(handle, DBM_INVALID_HANDLE);
    const auto calls = fake::DbmCalls("DBM_Open");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, "DOM_DB/isp-domain");
    EXPECT_EQ(calls[0].index, 7);
    std::string attributes(32, '\0');
    attributes[8] = 1;
    attributes[16] = '1';
    EXPECT_EQ(calls[0].value, attributes);
    DBM_Close(handle);
}

TEST_F(ConfigDbTest, OpenPassesZeroAttributes) {
    const DBM_HANDLE handle = DOM_OpenDomainDBM();
    ASSERT_NE(handle, DBM_INVALID_HANDLE);
    const auto calls = fake::DbmCalls("DBM_Open");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].key, "DOM_DB/isp-domain");
    EXPECT_EQ(calls[0].index, 1);
    EXPECT_EQ(calls[0].value, std::string(32, '\0'));
    DBM_Close(handle);
}

TEST_F(ConfigDbTest, FailedCreateAndOpenGiveNoHandle) {
    fake::FailAllDbmCalls(true);
    EXPECT_EQ(DOM_CreateDomainDBM(), -1);
    EXPECT_EQ(DOM_OpenDomainDBM(), -1);
}

TEST_F(ConfigDbTest, CreateKeepsWhatIsThere) {
    ASSERT_EQ(Save(DOM_DB_DEFAULT_DOMAIN, "alpha"), DOM_OK);
    const DBM_HANDLE again = DOM_CreateDomainDBM();
    char name[DOM_NAME_SIZE] = {};
    EXPECT_EQ(DOM_GetDefDomainFromDB(again, name), DOM_OK);
    EXPECT_STREQ(name, "alpha");
    DBM_Close(again);
}

TEST_F(ConfigDbTest, InstalledHandleIsTheOneThatWritersUse) {
    EXPECT_EQ(g_hDomDbmHandle, handle_);
    DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    EXPECT_EQ(g_hDomDbmHandle, -1);
    EXPECT_EQ(Save(DOM_DB_DEVICE_ID), DOM_ERR_FAILED);
    EXPECT_EQ(Save(DOM_DB_SESSION_LIMIT), DOM_ERR_FAILED);
    EXPECT_EQ(Save(DOM_DB_DEFAULT_DOMAIN, "alpha"), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_DeleteDomainToDBByIndex(0), 1u);
}

}  // namespace
}  // namespace aaadom
