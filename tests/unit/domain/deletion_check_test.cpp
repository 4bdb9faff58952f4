#include <aaadom/settings.h>

#include <cstring>

#include "unit/domain/tables_fixture.h"

namespace aaadom {
namespace {

class DeletionCheck : public TablesTest {
  protected:
    DeletionCheck() {
        for (const char* name : {"d0", "d1", "d2"}) AddToBoth(name);
    }
    static void Escape(const char* domain, const char* target) {
        EscapeRecoverAction action{};
        strcpy(action.domain_name, target);
        EXPECT_EQ(DOM_SetEscapeRecoverAction(domain, 1, &action), DOM_OK);
    }
};

TEST_F(DeletionCheck, FreeDomainMayGo) {
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 0u);
}

TEST_F(DeletionCheck, ExistenceIgnoresCase) {
    EXPECT_EQ(DOM_DelDomainCheck("D1"), 0u);
}

TEST_F(DeletionCheck, UnknownDomainIsOne) {
    EXPECT_EQ(DOM_DelDomainCheck("nobody"), 1u);
}

TEST_F(DeletionCheck, ExistenceIsTheCallingRoles) {
    Add("working-only");
    EXPECT_EQ(InConfig([] { return DOM_DelDomainCheck("working-only"); }), 1u);
}

TEST_F(DeletionCheck, SystemIsTwoInItsOwnSpellingOnly) {
    EXPECT_EQ(DOM_DelDomainCheck("system"), 1u);  // it must exist first
    Add("system");
    EXPECT_EQ(DOM_DelDomainCheck("system"), 2u);
    EXPECT_EQ(DOM_DelDomainCheck("System"), 0u);
}

TEST_F(DeletionCheck, DefaultDomainIsThreeInItsOwnSpellingOnly) {
    DOM_SetDefaultDomainName("d1");
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 3u);
    EXPECT_EQ(DOM_DelDomainCheck("D1"), 0u);
}

TEST_F(DeletionCheck, SystemComesBeforeDefault) {
    Add("system");
    DOM_SetDefaultDomainName("system");
    EXPECT_EQ(DOM_DelDomainCheck("system"), 2u);
}

TEST_F(DeletionCheck, PermitDomainIsFour) {
    DOM_SetAuthRdFailPermitDomain(1, "d0", "d1");
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 4u);
    EXPECT_EQ(DOM_DelDomainCheck("D1"), 0u);
}

TEST_F(DeletionCheck, EscapeDomainIsFive) {
    Escape("d0", "d1");
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 5u);
    EXPECT_EQ(DOM_DelDomainCheck("D1"), 0u);
}

TEST_F(DeletionCheck, AuthFailDomainIsSix) {
    DOM_SetAuthFailDomain("d0", "d1", 0);
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 6u);
    EXPECT_EQ(DOM_DelDomainCheck("D1"), 0u);
}

TEST_F(DeletionCheck, DomainThatNamesItselfIsRefused) {
    DOM_SetAuthFailDomain("d1", "d1", 0);
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 6u);
}

TEST_F(DeletionCheck, EarlierFieldInAHighSlotWinsOverLaterFieldInALowSlot) {
    DOM_SetAuthFailDomain("d0", "d1", 0);
    Escape("d1", "d1");
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 5u);
    DOM_SetAuthRdFailPermitDomain(1, "d2", "d1");
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 4u);
}

TEST_F(DeletionCheck, ReferencesAreTheWorkingRolesWhateverRoleAsks) {
    DOM_SetAuthFailDomain("d0", "d1", 0);
    EXPECT_EQ(InConfig([] { return DOM_DelDomainCheck("d1"); }), 6u);
    InConfig([] {
        DOM_SetDefaultDomainName("d2");
        return DOM_SetAuthFailDomain("d0", "d2", 0);
    });
    EXPECT_EQ(InConfig([] { return DOM_DelDomainCheck("d2"); }), 0u);
    EXPECT_EQ(DOM_DelDomainCheck("d2"), 0u);
}

TEST_F(DeletionCheck, UnterminatedEscapeBlockIsNotReadPastItsName) {
    EscapeRecoverAction action;
    memset(&action, 'x', sizeof action);
    ASSERT_EQ(DOM_SetEscapeRecoverAction("d0", 1, &action), DOM_OK);
    EXPECT_EQ(DOM_DelDomainCheck("d1"), 0u);
}

}  // namespace
}  // namespace aaadom
