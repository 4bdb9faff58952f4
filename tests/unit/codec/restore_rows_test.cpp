#include <aaadom/method_list.h>
#include <aaadom/rows.h>

#include "unit/codec/restore_fixture.h"

namespace aaadom {
namespace {

class RestoreRowsTest : public RestoreTest {
  protected:
    static TLV_MSG* SchemeRow(uint32_t status, uint32_t index, uint32_t kind,
                              const char* domain = "alpha") {
        return DOM_EncodeDomainSchemeFlag(0, domain, status, 0, index, kind, "scheme");
    }
    static uint32_t MethodsOfAlpha() {
        MethodList list{};
        EXPECT_EQ(DOM_GetMethodList("alpha", 0, DOM_DEFAULT_SERVICE, &list, nullptr), DOM_OK);
        uint32_t count = 0;
        for (const MethodEntry& entry : list.methods) count += entry.method_kind != METHOD_EMPTY;
        return count;
    }
};

TEST_F(RestoreRowsTest, CreatedRowIsSavedAndNamed) {
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO), 1), DOM_OK);
    EXPECT_STREQ(name1_, "alpha");
    DomainInfo* saved = DOM_GetDomainFromDBByIndex(handle_, SlotOf("alpha"));
    ASSERT_NE(saved, nullptr);
    EXPECT_STREQ(saved->name, "alpha");
    EXPECT_EQ(saved->state, 2);
    DOM_DestroyDomain(saved);
}

TEST_F(RestoreRowsTest, ModifiedRowIsSaved) {
    AddDomain("alpha");
    EXPECT_EQ(Set(DOM_EncodeDomainInfoFlag(1, "ALPHA", 2, DOM_ROW_ACTIVE), 1), DOM_OK);
    EXPECT_EQ(DOM_GetState("alpha"), 2u);
    EXPECT_EQ(Writes(), 1u);
}

TEST_F(RestoreRowsTest, DomainRowsResultsPassThrough) {
    AddDomain("alpha");
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO), 1), 15u);
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("al*pha", 2, DOM_ROW_CREATE_AND_GO), 1), 3u);
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("beta", 2, 6), 1), 1u);
    EXPECT_STREQ(name1_, "untouched") << "a refused create names nothing";
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("nobody", 2, DOM_ROW_ACTIVE), 1), 2u);
    EXPECT_STREQ(name1_, "nobody") << "a refused modify names its domain";
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreRowsTest, FullTableIs4) {
    fake::InRole(fake::kWorkingRole, [] {
        for (int i = 0; i < 1024; ++i) AddDomain(("d" + std::to_string(i)).c_str());
        return 0;
    });
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO), 1), 4u);
}

// The row was counted but not stored, so there is nothing to save and the requester hears of it.
TEST_F(RestoreRowsTest, RowWithoutASlotCannotBeSaved) {
    for (int i = 0; i < 1024; ++i) AddDomain(("d" + std::to_string(i)).c_str());
    EXPECT_EQ(Set(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_CREATE_AND_GO), 1), DOM_ERR_FAILED);
    EXPECT_STREQ(name1_, "alpha");
    EXPECT_EQ(Writes(), 0u);
}

TEST_F(RestoreRowsTest, DomainRowsCannotBeDeleted) {
    AddDomain("alpha");
    EXPECT_EQ(Delete(DOM_EncodeDomainInfo("alpha", 2, DOM_ROW_ACTIVE), 1), DOM_ERR_FAILED);
    EXPECT_EQ(Delete(DOM_EncodeDomainInfo("beta", 2, DOM_ROW_CREATE_AND_GO), 1), DOM_ERR_FAILED);
    EXPECT_EQ(DOM_IsDomainExist("alpha"), 1u);
    EXPECT_EQ(DOM_IsDomainExist("beta"), 0u);
    EXPECT_STREQ(name1_, "untouched");
}

TEST_F(RestoreRowsTest, SchemeRowIsAddedAndSaved) {
    AddDomain("alpha");
    EXPECT_EQ(Set(SchemeRow(DOM_ROW_CREATE_AND_GO, 9, METHOD_LAST_5), 1), DOM_OK);
    EXPECT_EQ(MethodsOfAlpha(), 2u);
    EXPECT_STREQ(name1_, "alpha");
    EXPECT_EQ(Writes(), 1u);
}

// The domain stays, so its record is written, not removed.
TEST_F(RestoreRowsTest, DeletedSchemeRowSavesTheDomain) {
    AddDomain("alpha");
    ASSERT_EQ(Set(SchemeRow(DOM_ROW_CREATE_AND_GO, 9, METHOD_LAST_5)), DOM_OK);
    EXPECT_EQ(Delete(SchemeRow(DOM_ROW_CREATE_AND_GO, 9, METHOD_LAST_5), 1), DOM_OK);
    EXPECT_EQ(MethodsOfAlpha(), 1u);
    const auto calls = fake::DbmCalls("DBM_SetArray");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_GT(calls[0].value_length, 0u);
}

TEST_F(RestoreRowsTest, SchemeRowsResultsPassThrough) {
    AddDomain("alpha");
    EXPECT_EQ(Set(SchemeRow(DOM_ROW_ACTIVE, 9, METHOD_SCHEME_1, "nobody"), 1), 2u);
    EXPECT_STREQ(name1_, "nobody");
    EXPECT_EQ(Set(SchemeRow(DOM_ROW_CREATE_AND_GO, 1, METHOD_LAST_5), 1), 1u);
    EXPECT_EQ(Set(SchemeRow(6, 9, METHOD_LAST_5), 1), 1u);
    EXPECT_STREQ(name1_, "alpha");
    EXPECT_EQ(Delete(SchemeRow(DOM_ROW_CREATE_AND_GO, 9, METHOD_LAST_5), 1), 1u);
    EXPECT_EQ(Set(CodeAlone(DOM_MSG_SCHEME_ROW), 1), 1u);
    EXPECT_EQ(Writes(), 0u);
}

}  // namespace
}  // namespace aaadom
