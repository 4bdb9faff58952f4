#include <aaadom/settings.h>

#include <cstring>
#include <string>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

class Settings : public TablesTest {
  protected:
    Settings() { Add("a"); }
    ~Settings() override {
        DOM_SetDeviceID(0);
        InConfig([] { return DOM_SetDeviceID(0), 0; });
    }
};

TEST_F(Settings, NamesAreEmptyAtFirst) {
    char text[DOM_NAME_SIZE];
    DOM_GetDefaultDomainName(text);
    EXPECT_STREQ(text, "");
    DOM_GetUnknownDomainName(text);
    EXPECT_STREQ(text, "");
}

TEST_F(Settings, DefaultNameIsCutTo255Characters) {
    DOM_SetDefaultDomainName(std::string(300, 'x').c_str());
    char text[DOM_NAME_SIZE];
    DOM_GetDefaultDomainName(text);
    EXPECT_EQ(text, std::string(255, 'x'));
}

TEST_F(Settings, UnknownNameIsCutTo255Characters) {
    DOM_SetUnknownDomainName(std::string(300, 'x').c_str());
    char text[DOM_NAME_SIZE];
    DOM_GetUnknownDomainName(text);
    EXPECT_EQ(text, std::string(255, 'x'));
}

TEST_F(Settings, NamesAreTheCallingRoles) {
    DOM_SetDefaultDomainName("w");
    InConfig([] { return DOM_SetDefaultDomainName("c"), 0; });
    char text[DOM_NAME_SIZE];
    DOM_GetDefaultDomainName(text);
    EXPECT_STREQ(text, "w");
    DOM_GetUnknownDomainName(text);
    EXPECT_STREQ(text, "");
    InConfig([] { return DOM_SetUnknownDomainName("u"), 0; });
    DOM_GetUnknownDomainName(text);
    EXPECT_STREQ(text, "");
    InConfig([&] { return DOM_GetUnknownDomainName(text), 0; });
    EXPECT_STREQ(text, "u");
}

TEST_F(Settings, GlobalNamesAreTheWorkingRolesFromEveryRole) {
    DOM_SetDefaultDomainName("w1");
    DOM_SetUnknownDomainName("w2");
    DOM_SetDeviceID(5);
    GlobalDomain record{};
    InConfig([&] {
        DOM_SetDefaultDomainName("c1");
        DOM_SetUnknownDomainName("c2");
        DOM_SetDeviceID(6);
        DOM_GetGlobalDomainName(&record);
        return 0;
    });
    EXPECT_STREQ(record.default_domain, "w1");
    EXPECT_STREQ(record.unknown_domain, "w2");
    EXPECT_EQ(record.device_id, 5u);
}

TEST_F(Settings, DeviceIdentifierIsTheCallingRoles) {
    DOM_SetDeviceID(5);
    EXPECT_EQ(DOM_GetDeviceID(), 5u);
    EXPECT_EQ(InConfig(DOM_GetDeviceID), 0u);
}

TEST_F(Settings, NullTextsAndOutputsAreSkipped) {
    DOM_SetDefaultDomainName("w");
    DOM_SetDefaultDomainName(nullptr);
    DOM_SetUnknownDomainName(nullptr);
    DOM_GetDefaultDomainName(nullptr);
    DOM_GetUnknownDomainName(nullptr);
    DOM_GetGlobalDomainName(nullptr);
    char text[DOM_NAME_SIZE];
    DOM_GetDefaultDomainName(text);
    EXPECT_STREQ(text, "w");
}

TEST_F(Settings, StateIsPerDomain) {
    EXPECT_EQ(DOM_GetState("a"), 1u);
    DOM_SetState("A", 0xFFFF);
    EXPECT_EQ(DOM_GetState("a"), 0xFFFFu);
}

TEST_F(Settings, StateOfAnUnknownDomainIsZero) {
    DOM_SetState("nobody", 5);
    EXPECT_EQ(DOM_GetState("nobody"), 0u);
}

TEST_F(Settings, AddressTypeIsPerDomain) {
    EXPECT_EQ(DOM_GetUserAddrType("a"), 7u);
    DOM_SetUserAddrType("a", 0);
    EXPECT_EQ(DOM_GetUserAddrType("a"), 0u);
}

TEST_F(Settings, AddressTypeOfAnUnknownDomainIsSeven) {
    DOM_SetUserAddrType("nobody", 5);
    EXPECT_EQ(DOM_GetUserAddrType("nobody"), 7u);
}

TEST_F(Settings, DualStackModeIsPerDomain) {
    EXPECT_EQ(DOM_GetAcctDualStackMode("a"), 1u);
    DOM_SetAcctDualStackMode("a", 4);
    EXPECT_EQ(DOM_GetAcctDualStackMode("a"), 4u);
}

TEST_F(Settings, DualStackModeOfAnUnknownDomainIsOne) {
    DOM_SetAcctDualStackMode("nobody", 5);
    EXPECT_EQ(DOM_GetAcctDualStackMode("nobody"), 1u);
}

TEST_F(Settings, EscapeActionIsStoredWhole) {
    EscapeRecoverAction in, out;
    memset(&in, 0x5A, sizeof in);
    memset(&out, 0, sizeof out);
    EXPECT_EQ(DOM_SetEscapeRecoverAction("A", 1, &in), DOM_OK);
    EXPECT_EQ(DOM_GetEscapeRecoverAction("a", &out), DOM_OK);
    EXPECT_EQ(memcmp(&in, &out, 260), 0);
}

TEST_F(Settings, EscapeActionIsClearedByEveryOtherOperation) {
    for (uint16_t operation : {0, 2, 0x101}) {
        EscapeRecoverAction in, zero{}, out;
        memset(&in, 0x5A, sizeof in);
        DOM_SetEscapeRecoverAction("a", 1, &in);
        EXPECT_EQ(DOM_SetEscapeRecoverAction("a", operation, nullptr), DOM_OK);
        EXPECT_EQ(DOM_GetEscapeRecoverAction("a", &out), DOM_OK);
        EXPECT_EQ(memcmp(&zero, &out, 260), 0);
    }
}

TEST_F(Settings, EscapeActionOfAnUnknownDomainFails) {
    EscapeRecoverAction block;
    memset(&block, 0x5A, sizeof block);
    EXPECT_EQ(DOM_SetEscapeRecoverAction("nobody", 1, &block), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetEscapeRecoverAction("nobody", 0, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetEscapeRecoverAction("a", 1, nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetEscapeRecoverAction("nobody", &block), DOM_ERR_FAILED);
    EXPECT_EQ(block.domain_name[0], 0x5A);
    EXPECT_EQ(DOM_GetEscapeRecoverAction("a", nullptr), DOM_OK);
}

TEST_F(Settings, PermitDomainIsStoredAndEmptied) {
    char text[DOM_NAME_SIZE];
    EXPECT_EQ(DOM_SetAuthRdFailPermitDomain(1, "A", std::string(300, 'p').c_str()), DOM_OK);
    EXPECT_EQ(DOM_GetAuthRdFailPermitDomain("a", sizeof text, text), DOM_OK);
    EXPECT_EQ(text, std::string(255, 'p'));
    for (uint16_t operation : {0, 2, 0x101}) {
        DOM_SetAuthRdFailPermitDomain(1, "a", "permit");
        EXPECT_EQ(DOM_SetAuthRdFailPermitDomain(operation, "a", "ignored"), DOM_OK);
        EXPECT_EQ(DOM_GetAuthRdFailPermitDomain("a", sizeof text, text), DOM_OK);
        EXPECT_STREQ(text, "");
    }
    EXPECT_EQ(DOM_SetAuthRdFailPermitDomain(0, "a", nullptr), DOM_OK);
}

TEST_F(Settings, PermitDomainIsCutToTheGivenSize) {
    DOM_SetAuthRdFailPermitDomain(1, "a", "permit");
    char text[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(DOM_GetAuthRdFailPermitDomain("a", 0, text), DOM_OK);
    EXPECT_EQ(text[0], 'x');
    EXPECT_EQ(DOM_GetAuthRdFailPermitDomain("a", 4, text), DOM_OK);
    EXPECT_STREQ(text, "per");
    EXPECT_EQ(DOM_GetAuthRdFailPermitDomain("a", 4, nullptr), DOM_OK);
}

TEST_F(Settings, PermitDomainOfAnUnknownDomainFails) {
    char text[4] = "old";
    EXPECT_EQ(DOM_SetAuthRdFailPermitDomain(1, "nobody", "x"), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetAuthRdFailPermitDomain(1, "a", nullptr), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetAuthRdFailPermitDomain("nobody", 4, text), DOM_ERR_FAILED);
    EXPECT_STREQ(text, "old");
}

TEST_F(Settings, AuthFailDomainIsStoredWithItsKind) {
    char text[DOM_NAME_SIZE];
    uint16_t kind = 0;
    EXPECT_EQ(DOM_SetAuthFailDomain("A", std::string(300, 'f').c_str(), 9), DOM_OK);
    EXPECT_EQ(DOM_GetAuthFailDomain("a", sizeof text, text, &kind), DOM_OK);
    EXPECT_EQ(text, std::string(255, 'f'));
    EXPECT_EQ(kind, 9);
    EXPECT_EQ(DOM_SetAuthFailDomain("a", "", 3), DOM_OK);
    EXPECT_EQ(DOM_GetAuthFailDomain("a", 2, text, &kind), DOM_OK);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(kind, 3);
    EXPECT_EQ(DOM_GetAuthFailDomain("a", 2, nullptr, nullptr), DOM_OK);
}

TEST_F(Settings, AuthFailDomainOfAnUnknownDomainFails) {
    char text[4] = "old";
    uint16_t kind = 5;
    EXPECT_EQ(DOM_SetAuthFailDomain("nobody", "x", 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_SetAuthFailDomain("a", nullptr, 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_GetAuthFailDomain("nobody", 4, text, &kind), DOM_ERR_FAILED);
    EXPECT_STREQ(text, "old");
    EXPECT_EQ(kind, 5);
}

TEST_F(Settings, ProfileScratchRecordsAreZeroed) {
    CriticalProfileMsg critical, critical_zero;
    AuthorProfileMsg author, author_zero;
    memset(&critical, 0xFF, sizeof critical);
    memset(&critical_zero, 0, sizeof critical_zero);
    memset(&author, 0xFF, sizeof author);
    memset(&author_zero, 0, sizeof author_zero);
    DOM_InitCriticalProfile(&critical);
    DOM_InitAuthorProfile(&author);
    EXPECT_EQ(memcmp(&critical, &critical_zero, sizeof critical), 0);
    EXPECT_EQ(memcmp(&author, &author_zero, sizeof author), 0);
    DOM_InitCriticalProfile(nullptr);
    DOM_InitAuthorProfile(nullptr);
}

}  // namespace
}  // namespace aaadom
