#include <aaadom/session.h>

#include <functional>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

using Encode = TLV_MSG* (*)(const char* name);
using Read = uint32_t (*)(const char* name);

struct Option {
    const char* title;
    uint32_t code;
    Encode encode;
    Read read;
    uint32_t after_set;
    uint32_t after_delete;
    /// Result for a domain that does not exist, with save 0.
    uint32_t if_unknown;
};

uint32_t ReadPermitIsSet(const char* name) {
    char text[DOM_NAME_SIZE] = {};
    DOM_GetAuthRdFailPermitDomain(name, sizeof text, text);
    return strcmp(text, "permit") == 0;
}
uint32_t ReadFailDomainIsSet(const char* name) {
    char text[DOM_NAME_SIZE] = {};
    uint16_t kind = 0;
    DOM_GetAuthFailDomain(name, sizeof text, text, &kind);
    return strcmp(text, "fail") == 0 && kind == 3;
}
uint32_t ReadEscape(const char* name) {
    EscapeRecoverAction action{};
    DOM_GetEscapeRecoverAction(name, &action);
    if (strcmp(action.domain_name, "escape") != 0) return action.setting + action.second_setting;
    return action.setting * 100u + action.second_setting;
}

const Option kOptions[] = {
    {"State", DOM_MSG_STATE, [](const char* name) { return DOM_EncodeState(name, 2); },
     DOM_GetState, 2, 1, DOM_OK},
    {"SessionTime", DOM_MSG_SESSION_TIME,
     [](const char* name) { return DOM_EncodeSessionTime(name, 40000); }, DOM_GetSessionTime, 40000,
     0, DOM_ERR_FAILED},
    {"UserAddrType", DOM_MSG_USER_ADDR_TYPE,
     [](const char* name) { return DOM_EncodeUserAddrType(name, 3); }, DOM_GetUserAddrType, 3, 3,
     DOM_OK},
    {"DualStackMode", DOM_MSG_ACCT_DUAL_STACK,
     [](const char* name) { return DOM_EncodeAcctDualStackMode(name, 5); },
     DOM_GetAcctDualStackMode, 5, 5, DOM_OK},
    {"Redirect", DOM_MSG_REDIRECT, DOM_EncodeRedirectMoveTemporarily, DOM_GetRedirectCode, 1, 0,
     DOM_ERR_FAILED},
    {"AuthFailDomain", DOM_MSG_AUTH_FAIL_DOMAIN,
     [](const char* name) { return DOM_EncodeAuthFailDomain(name, "fail", 0, 3); },
     ReadFailDomainIsSet, 1, 1, DOM_ERR_FAILED},
    {"PermitDomain", DOM_MSG_PERMIT_DOMAIN,
     [](const char* name) { return DOM_EncodeAuthRdFailPermitDomain(name, "permit", 0); },
     ReadPermitIsSet, 1, 0, DOM_ERR_FAILED},
    {"EscapeRecover", DOM_MSG_ESCAPE_RECOVER,
     [](const char* name) { return DOM_EncodeAuthenEscapeRecover(name, 4, "escape", 9, 0); },
     ReadEscape, 409, 0, DOM_ERR_FAILED},
};

void PrintTo(const Option& option, std::ostream* out) {
    *out << option.title;
}

class RestoreOption : public RestoreTest, public ::testing::WithParamInterface<Option> {};

TEST_P(RestoreOption, SetStoresTheValue) {
    AddDomain("alpha");
    EXPECT_EQ(Set(GetParam().encode("alpha")), DOM_OK);
    EXPECT_EQ(GetParam().read("alpha"), GetParam().after_set);
    EXPECT_STREQ(name1_, "alpha");
}

TEST_P(RestoreOption, DeleteResetsWhereThereIsSomethingToResetTo) {
    AddDomain("alpha");
    ASSERT_EQ(Set(GetParam().encode("alpha")), DOM_OK);
    EXPECT_EQ(Delete(GetParam().encode("alpha")), DOM_OK);
    EXPECT_EQ(GetParam().read("alpha"), GetParam().after_delete);
}

TEST_P(RestoreOption, SetIsSaved) {
    AddDomain("alpha");
    EXPECT_EQ(Set(GetParam().encode("alpha"), 1), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_GT(calls[0].value_length, 0u);
}

TEST_P(RestoreOption, UndoIsSavedBecauseTheDomainIsStillThere) {
    AddDomain("alpha");
    EXPECT_EQ(Delete(GetParam().encode("alpha"), 1), DOM_OK);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_GT(calls[0].value_length, 0u);
}

TEST_P(RestoreOption, UnknownDomainWithoutSave) {
    EXPECT_EQ(Set(GetParam().encode("nobody")), GetParam().if_unknown);
    EXPECT_EQ(Delete(GetParam().encode("nobody")), GetParam().if_unknown);
    EXPECT_STREQ(name1_, "nobody");
}

TEST_P(RestoreOption, UnknownDomainCannotBeSaved) {
    EXPECT_EQ(Set(GetParam().encode("nobody"), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Writes(), 0u);
}

TEST_P(RestoreOption, MessageWithoutNameFails) {
    AddDomain("");
    EXPECT_EQ(Set(CodeAlone(GetParam().code), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Writes(), 0u);
    EXPECT_STREQ(name1_, "untouched");
}

INSTANTIATE_TEST_SUITE_P(Options, RestoreOption, ::testing::ValuesIn(kOptions),
                         [](const auto& info) { return info.param.title; });

TEST_F(RestoreTest, EmptyAuthFailDomainClearsIt) {
    AddDomain("alpha");
    ASSERT_EQ(Set(DOM_EncodeAuthFailDomain("alpha", "fail", 0, 3)), DOM_OK);
    EXPECT_EQ(Set(DOM_EncodeAuthFailDomain("alpha", "", 0, 0)), DOM_OK);
    char text[DOM_NAME_SIZE] = "x";
    uint16_t kind = 9;
    ASSERT_EQ(DOM_GetAuthFailDomain("alpha", sizeof text, text, &kind), DOM_OK);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(kind, 0);
}

}  // namespace
}  // namespace aaadom
