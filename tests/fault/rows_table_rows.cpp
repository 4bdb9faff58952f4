// Rows of rows.h, and of the messages that carry them.
#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/restore.h>
#include <aaadom/rows.h>
#include <platform/aaa_tlv.h>

#include "fault/sweep.h"

namespace fault {
namespace {

/// A row that is to be created must not exist.
void WithoutDomain(Scene&) {
    for (const uint32_t role : {fake::kWorkingRole, fake::kConfigRole})
        fake::InRole(role, [] { return DOM_DeleteDomainAndDBByName(kDomain, 0); });
}
Step WithRow(const char* file) {
    return [file](Scene& scene) { scene.message = scene.Golden(file); };
}

/// The table stays locked when a default list cannot be made: what DOM_MibAddDomain does, which has
/// its own tests.
template <typename Call>
auto Unlocked(Call&& call) {
    const int locks = fake::HeldLocks();
    const auto result = call();
    if (fake::HeldLocks() > locks) DOM_DomainInfoTableUnlock();
    return result;
}

Outcome Apply(TLV_MSG* row) {
    DomDbUpdateReq change{};
    const uint32_t result = Unlocked([&] { return DOM_ProcDomainTable(row, &change); });
    return {result, BytesOf(change)};
}

const Rows domain_rows{
    Changes("DOM_ProcDomainTable/create", [](Scene& scene) { return Apply(scene.message); })
        .After(WithoutDomain)
        .After(WithRow("msg_014_domain_row"))
        .Fails({DOM_ROW_FAILED}),
    Changes("DOM_ProcDomainTable/modify", [](Scene& scene) { return Apply(scene.message); })
        .After(WithRow("msg_014_domain_row_flags"))
        .Fails({DOM_ROW_FAILED}),
    Saves("DOM_RestoreData/create 014_domain_row saved",
          [](Scene& scene) {
              return Unlocked(
                  [&] { return DOM_RestoreData(scene.message, 1, 0, 0, nullptr, nullptr); });
          })
        .After(WithoutDomain)
        .After(WithRow("msg_014_domain_row"))
        .After([](Scene& scene) {
            scene.message = scene.Keep(AAA_AddOpHead(DOM_OP_SET, scene.message));
        })
        .Fails({DOM_ROW_FAILED, DOM_ERR_FAILED})
        .Except("config.", "the tables keep a change that cannot be saved")
        .Once(),
};

const Rows scheme_rows{
    Changes("DOM_ProcSchemeTable/add",
            [](Scene& scene) { return DOM_ProcSchemeTable(scene.message, DOM_PRESENT, nullptr); })
        .After([](Scene& scene) {
            scene.message = scene.Keep(DOM_EncodeDomainSchemeFlag(
                0, kDomain, DOM_ROW_CREATE_AND_GO, AAA_TYPE_5, 9, METHOD_SCHEME_2, "radius-a"));
        })
        .Fails({DOM_ROW_FAILED}),
    Changes("DOM_ProcSchemeTable/delete",
            [](Scene& scene) { return DOM_ProcSchemeTable(scene.message, DOM_ABSENT, nullptr); })
        .After(WithRow("msg_013_scheme_index"))
        .Fails({DOM_ROW_FAILED}),
};

}  // namespace
}  // namespace fault
