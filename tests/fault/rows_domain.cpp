// Rows of domain_table.h and domain.h.
#include <aaadom/domain.h>
#include <aaadom/domain_table.h>
#include <aaadom/method_list.h>
#include <aaadom/settings.h>
#include <gtest/gtest.h>

#include <utility>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

constexpr char kNewDomain[] = "new.example";

/// What `body` gives with the calling role's table locked.
template <typename Body>
auto Locked(Body&& body) {
    DOM_DomainInfoTableLock();
    auto result = body();
    DOM_DomainInfoTableUnlock();
    return result;
}

DomainInfo* NewDomain() {
    return Quietly([] {
        DomainInfo* domain = DOM_CreateDomain();
        aaadom::CopyText(domain->name, kNewDomain);
        return domain;
    });
}

/// The name of the record that a walk gives; the caller's role holds the lock.
Outcome NameOf(const DomainInfo* domain) {
    return {domain == nullptr ? kNothing : kSomething, domain == nullptr ? "" : domain->name};
}

const char kLimits[] = "the session limits start as they do when initialisation succeeds";

const Rows tables{
    Changes("DOM_DomainInfoTableInit", [](Scene&) { return DOM_DomainInfoTableInit(); })
        .On(ServiceAlone)
        .Except("config.settings", kLimits),
    Changes("DOM_DomainInfoTableInit/working role",
            [](Scene&) { return DOM_DomainInfoTableInit(); })
        .On(ServiceAlone)
        .In(fake::kWorkingRole)
        .Except("working.settings", kLimits),
    Changes("DOM_DomainInfoTableFini", [](Scene&) { return DOM_DomainInfoTableFini(); })
        .NeverFails(),
    Reads("DOM_DomainInfoTableLock",
          [](Scene&) {
              const uint32_t result = DOM_DomainInfoTableLock();
              DOM_DomainInfoTableUnlock();
              return result;
          }),
    Reads("DOM_DomainInfoTableUnlock",
          [](Scene&) {
              DOM_DomainInfoTableLock();
              return DOM_DomainInfoTableUnlock();
          }),
    // A mutex that cannot be made is destroyed, which succeeds; the result is that of the
    // destruction.
    Reads("DOM_DomainInfoTbl_ForceInitLock",
          [](Scene&) { return DOM_DomainInfoTbl_ForceInitLock(); }),
};

const Rows domains{
    Reads("DOM_CheckDomainName", [](Scene&) { return DOM_CheckDomainName(kNewDomain); }),
    Reads("DOM_ToLowerCaseStr",
          [](Scene&) -> Outcome {
              char text[] = "ISP-A";
              DOM_ToLowerCaseStr(text);
              return {0, text};
          }),
    Reads("DOM_CreateDomain", [](Scene&) { return Made(DOM_CreateDomain()); })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_DestroyDomain", [](Scene&) { return DOM_DestroyDomain(NewDomain()), 0; }),
    Reads("DOM_CreateZorvDomain",
          [](Scene&) { return Made(DOM_CreateZorvDomain(), DOM_DestroyZorvDomain); })
        .Good(kSomething)
        .Fails({kNothing}),
    Reads("DOM_DestroyZorvDomain",
          [](Scene&) {
              return DOM_DestroyZorvDomain(Quietly([] { return DOM_CreateZorvDomain(); })), 0;
          }),
    Reads(
        "DOM_FindDomainByName",
        [](Scene&) { return Locked([] { return NameOf(DOM_FindDomainByName("ISP-A.example")); }); })
        .Good(kSomething),
    Reads("DOM_IsDomainExist", [](Scene&) { return DOM_IsDomainExist(kDomain); }).Good(1),
    Changes("DOM_AddDomain",
            [](Scene&) {
                DomainInfo* domain = NewDomain();
                SchemeResources resources{};
                ZorvDomain* node = Quietly([&] {
                    EXPECT_EQ(DOM_CreateDomainSchemeResource(domain, &resources), DOM_OK);
                    return DOM_CreateZorvDomain();
                });
                Locked([&] { return DOM_AddDomain(domain, node, &resources), 0; });
                DOM_DestroyDomainSchemeResource(&resources);
                return Outcome(domain->slot);
            })
        .NeverFails()
        .Good(3)
        .Except("config.order",
                "a domain whose node of the strcmp order cannot be made is left "
                "out of that order"),
    Changes("DOM_AddDomainByName", [](Scene&) { return DOM_AddDomainByName(kNewDomain); })
        .Fails({DOM_ADD_FAILED}),
    Changes("DOM_MibAddDomain",
            [](Scene&) {
                DomainInfo* domain = NewDomain();
                const int locks = fake::HeldLocks();
                const uint32_t result = DOM_MibAddDomain(domain);
                if (fake::HeldLocks() > locks) DOM_DomainInfoTableUnlock();  // has its own test
                if (result != DOM_ADD_OK) DOM_DestroyDomain(domain);
                return result;
            })
        .Fails({DOM_ADD_FAILED}),
    Changes("DOM_MibUpdateDomain",
            [](Scene&) {
                DomainMibRow row{};
                aaadom::CopyText(row.domain_name, kDomain);
                return DOM_MibUpdateDomain(&row, 1);
            })
        .NeverFails(),
    Changes("DOM_UpdateDomain",
            [](Scene&) {
                DomainInfo* domain = NewDomain();
                aaadom::CopyText(domain->name, kDomain);
                domain->slot = 1;
                return Locked([&] { return DOM_UpdateDomain(domain); });
            })
        .In(fake::kWorkingRole),
    Reads("DOM_DelDomainCheck", [](Scene&) { return DOM_DelDomainCheck(kDomain); }),
    Changes("DOM_DeleteDomain",
            [](Scene&) {
                return Locked([] {
                    DomainInfo* domain = DOM_FindDomainByName(kDomain);
                    DOM_DeleteDomain(domain);
                    DOM_DestroyDomain(domain);
                    return 0;
                });
            })
        .NeverFails(),
    Changes("DOM_DeleteDomainAndDBByName",
            [](Scene&) { return DOM_DeleteDomainAndDBByName(kDomain, 0); })
        .NeverFails(),
    Saves("DOM_DeleteDomainAndDBByName/from the database",
          [](Scene&) { return DOM_DeleteDomainAndDBByName(kDomain, 1); })
        .Fails({1})
        .Except("config.", "the domain leaves the table before the database is asked")
        .Once(),
    Reads("DOM_GetDomainCount",
          [](Scene&) -> Outcome {
              uint32_t count = 0;
              const uint32_t result = DOM_GetDomainCount(&count);
              return {result, BytesOf(count)};
          }),
};

const Rows attributes{
    Reads("DOM_InitAuthorAttr",
          [](Scene&) -> Outcome {
              AuthorAttr block;
              DOM_InitAuthorAttr(&block);
              return {0, BytesOf(block)};
          }),
    Changes("DOM_AddAuthorAttr",
            [](Scene&) {
                AuthorAttr block{};
                aaadom::CopyText(block.kind7_text, "seven");
                return DOM_AddAuthorAttr(kDomain, &block, 7);
            })
        .NeverFails(),
    Changes("DOM_DelAuthorAttr", [](Scene&) { return DOM_DelAuthorAttr(kDomain, 12); })
        .NeverFails(),
    Reads("DOM_GetDomainAuthorAttrByName",
          [](Scene&) -> Outcome {
              AuthorAttr block{};
              const uint32_t result = DOM_GetDomainAuthorAttrByName(kDomain, &block);
              return {result, BytesOf(block)};
          }),
    Changes("DOM_SetRedirectMoveTemporarily",
            [](Scene&) { return DOM_SetRedirectMoveTemporarily(kDomain, 302); })
        .NeverFails(),
    Reads("DOM_GetRedirectCode", [](Scene&) { return DOM_GetRedirectCode(kDomain); })
        .After([](Scene&) { (void)DOM_SetRedirectMoveTemporarily(kDomain, 302); })
        .Good(302),
};

const Rows walks{
    Reads("DOM_GetFirstDomain",
          [](Scene&) { return Locked([] { return NameOf(DOM_GetFirstDomain()); }); })
        .Good(kSomething),
    Reads("DOM_GetNextDomain",
          [](Scene&) { return Locked([] { return NameOf(DOM_GetNextDomain(kDomain)); }); })
        .Good(kSomething),
    Reads("DOM_MibGetFirstDomain",
          [](Scene&) { return Locked([] { return NameOf(DOM_MibGetFirstDomain()); }); })
        .Good(kSomething),
    Reads("DOM_MibGetNextDomain",
          [](Scene&) { return Locked([] { return NameOf(DOM_MibGetNextDomain(kDomain, 13)); }); })
        .Good(kSomething),
    Reads("DOM_NetConfGetFirstDomain",
          [](Scene&) { return Locked([] { return NameOf(DOM_NetConfGetFirstDomain()); }); })
        .Good(kSomething),
    Reads("DOM_NetConfGetNextDomain",
          [](Scene&) { return Locked([] { return NameOf(DOM_NetConfGetNextDomain(kDomain)); }); })
        .Good(kSomething),
};

/// Row management answers the caller with the table still locked when a default list cannot be
/// made; its callers know that and unlock.
TEST(FaultMibAddDomain, KeepsTheTableLockWhenADefaultListCannotBeMade) {
    for (int list = 1; list <= DOM_DEFAULT_LISTS; ++list) {
        Scene scene;
        Tables(scene);
        fake::role_of_this_thread = fake::kConfigRole;
        DomainInfo* domain = NewDomain();
        fake::FailAllocation(list);
        EXPECT_EQ(DOM_MibAddDomain(domain), DOM_ADD_FAILED);
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocks(), 1) << "list " << list;
        DOM_DomainInfoTableUnlock();
        DOM_DestroyDomain(domain);
    }
}

TEST(FaultMibAddDomain, ReleasesTheTableLockWhenAnythingElseCannotBeMade) {
    for (int n = DOM_DEFAULT_LISTS + 1;; ++n) {
        Scene scene;
        Tables(scene);
        fake::role_of_this_thread = fake::kConfigRole;
        DomainInfo* domain = NewDomain();
        fake::FailAllocation(n);
        const uint32_t result = DOM_MibAddDomain(domain);
        const bool tripped = fake::Tripped();
        fake::DisarmFailures();
        EXPECT_EQ(fake::HeldLocks(), 0) << "allocation " << n;
        if (!tripped) {
            EXPECT_GT(n, DOM_DEFAULT_LISTS + 1) << "nothing else is made";
            break;
        }
        EXPECT_EQ(result, DOM_ADD_FAILED);
        DOM_DestroyDomain(domain);
    }
}

}  // namespace
}  // namespace fault
