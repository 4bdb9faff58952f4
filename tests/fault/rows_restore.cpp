// Rows of restore.h: every message that changes something, with a database behind it and without.
#include <aaadom/codes.h>
#include <aaadom/restore.h>
#include <platform/aaa_tlv.h>

#include <string>
#include <vector>

#include "fault/sweep.h"

namespace fault {
namespace {

constexpr uint16_t kKeep = 0;
constexpr uint16_t kSave = 1;
constexpr char kNoNode[] =
    "a domain whose node of the strcmp order cannot be made is left out of that order";

/// What is particular to a row.
using Statement = Row (*)(Row&& row);

Row Ordinary(Row&& row) {
    return std::move(row);
}
Row OrderWithoutNode(Row&& row) {
    return std::move(row)
        .Fails({DOM_OK, DOM_ERR_FAILED})
        .Except("working.order", kNoNode)
        .Except("config.order", kNoNode);
}
/// A second deletion finds nothing in the table any more.
Row DeletedOnce(Row&& row) {
    return std::move(row).Once();
}
/// The same of a profile, which is deleted in two steps.
Row ProfileDeletedOnce(Row&& row) {
    return std::move(row)
        .On(Event::kDbm, {DOM_OK, DOM_ERR_FAILED})
        .Except("database",
                "the default segment goes although the list cannot be deleted, and "
                "stays when only it cannot be deleted")
        .Once();
}
/// A binding that cannot be looked up is written over. One that the table has already is refused.
Row BindingWrittenOver(Row&& row) {
    return std::move(row).On(Event::kDbm, {DOM_OK, DOM_ERR_FAILED}).Once();
}
Row ProfileFailure(Row&& row) {
    return std::move(row).Fails({1, DOM_ERR_FAILED});
}
/// Segments are saved as well as may be: a database that refuses does not change the result.
Row SavedAsMayBe(Row&& row) {
    return std::move(row)
        .On(Event::kDbm, {DOM_OK})
        .Except("database", "saving a segment does not report failures");
}

/// What a message of a golden file does when it is applied.
struct Message {
    const char* file;
    uint32_t op;
    Statement state = Ordinary;
};

void WithMessage(Scene& scene, const Message& message) {
    TLV_MSG* body = Scene::Parse(message.file);
    scene.message = scene.Keep(AAA_AddOpHead(message.op, body));
    TLV_Destroy(body);
}

Outcome Restore(Scene& scene, uint16_t save) {
    char name1[DOM_NAME_SIZE] = "", name2[32] = "";
    const uint32_t result =
        DOM_RestoreData(scene.message, save, sizeof name1, sizeof name2, name1, name2);
    return {result, std::string(name1) + '/' + name2};
}

std::string NameOf(const char* operation, const Message& message, const char* how) {
    return std::string(operation) + '/' + (message.op == DOM_OP_SET ? "set " : "delete ") +
           (message.file + 4) + how;
}

// Changes of the tables that have a saved form. A deletion follows where it is another change.
constexpr Message kSaved[] = {
    {"msg_000_domain", DOM_OP_SET, OrderWithoutNode},
    {"msg_001_default_domain", DOM_OP_SET},
    {"msg_001_default_domain", DOM_OP_DELETE},
    {"msg_003_domain_name", DOM_OP_SET},
    {"msg_003_domain_name", DOM_OP_DELETE, DeletedOnce},
    {"msg_004_method_list", DOM_OP_SET},
    {"msg_007_state", DOM_OP_SET},
    {"msg_008_session_limit", DOM_OP_SET},
    {"msg_010_all_session_limit", DOM_OP_SET},
    {"msg_011_author_attr", DOM_OP_SET},
    {"msg_011_author_attr", DOM_OP_DELETE},
    {"msg_014_domain_row_flags", DOM_OP_SET},
    {"msg_018_unknown_domain", DOM_OP_SET},
    {"msg_018_unknown_domain", DOM_OP_DELETE},
    {"msg_019_session_time", DOM_OP_SET},
    {"msg_020_device_id", DOM_OP_SET},
    {"msg_021_user_addr_type", DOM_OP_SET},
    {"msg_030_acct_dual_stack", DOM_OP_SET},
    {"msg_031_rec_policy", DOM_OP_SET},
    {"msg_032_rec_policy_type", DOM_OP_DELETE, DeletedOnce},
    {"msg_033_rec_acct_scheme", DOM_OP_SET},
    {"msg_077_record_online_fail", DOM_OP_SET},
    {"msg_130_redirect", DOM_OP_SET},
    {"msg_130_redirect", DOM_OP_DELETE},
    {"msg_132_auth_fail_domain", DOM_OP_SET},
    {"msg_143_permit_domain", DOM_OP_SET},
    {"msg_143_permit_domain", DOM_OP_DELETE},
    {"msg_144_escape_recover", DOM_OP_SET},
    {"msg_144_escape_recover", DOM_OP_DELETE},
    {"msg_147_critical_profile", DOM_OP_DELETE, ProfileDeletedOnce},
    {"msg_148_critical_vpn", DOM_OP_SET, ProfileFailure},
    {"msg_148_critical_vpn", DOM_OP_DELETE, SavedAsMayBe},
    {"msg_149_critical_segment", DOM_OP_SET, SavedAsMayBe},
    {"msg_149_critical_segment", DOM_OP_DELETE, SavedAsMayBe},
    {"msg_156_author_profile", DOM_OP_DELETE, ProfileDeletedOnce},
    {"msg_157_author_vpn", DOM_OP_SET, ProfileFailure},
    {"msg_157_author_vpn", DOM_OP_DELETE, SavedAsMayBe},
    {"msg_158_author_segment", DOM_OP_SET, SavedAsMayBe},
    {"msg_158_author_segment", DOM_OP_DELETE, SavedAsMayBe},
    {"msg_164_backup_method", DOM_OP_SET},
};

// Accounting policies and NAS-ID profiles, which the working role alone applies and saves.
constexpr Message kWorkingRoleSaved[] = {
    {"msg_016_nas_id_profile", DOM_OP_DELETE, DeletedOnce},
    {"msg_017_nas_id_binding", DOM_OP_SET, BindingWrittenOver},
    {"msg_022_ita_policy", DOM_OP_SET},
    {"msg_023_ita_policy_name", DOM_OP_SET},
    {"msg_024_ita_acct_scheme", DOM_OP_SET},
    {"msg_024_ita_acct_scheme", DOM_OP_DELETE},
    {"msg_025_ita_acct_together", DOM_OP_SET},
    {"msg_026_ita_acct_level", DOM_OP_SET},
    {"msg_027_ita_traf_seprate", DOM_OP_SET},
    {"msg_028_ita_traf_quota_out", DOM_OP_SET},
};

// What has no saved form.
constexpr Message kUnsaved[] = {
    {"msg_081_record_enable_info", DOM_OP_SET},
    {"msg_145_debug_flag", DOM_OP_SET},
    {"msg_145_debug_flag", DOM_OP_DELETE},

};

constexpr Message kUpdates[] = {
    {"msg_003_domain_name", DOM_OP_DELETE},
    {"msg_004_method_list", DOM_OP_SET},
    {"msg_007_state", DOM_OP_SET},
};

Row SavedRow(const Message& message) {
    constexpr char kReason[] = "the tables keep a change that cannot be saved";
    return message.state(Saves(NameOf("DOM_RestoreData", message, " saved"),
                               [](Scene& scene) { return Restore(scene, kSave); })
                             .After([message](Scene& scene) { WithMessage(scene, message); })
                             .Except("config.", kReason)
                             .Except("working.", kReason));
}
Row AppliedRow(const Message& message) {
    return message.state(Changes(NameOf("DOM_RestoreData", message, ""),
                                 [](Scene& scene) { return Restore(scene, kKeep); })
                             .In(fake::kWorkingRole)
                             .After([message](Scene& scene) { WithMessage(scene, message); }));
}

std::vector<Row> RestoreRows() {
    std::vector<Row> rows;
    for (const Message& message : kSaved) {
        rows.push_back(SavedRow(message));
        rows.push_back(AppliedRow(message));
    }
    for (const Message& message : kWorkingRoleSaved) {
        rows.push_back(SavedRow(message).In(fake::kWorkingRole));
        rows.push_back(AppliedRow(message));
    }
    for (const Message& message : kUnsaved) rows.push_back(AppliedRow(message));
    return rows;
}

/// The same from the other role's thread, behind the daemon's head.
std::vector<Row> UpdateRows() {
    std::vector<Row> rows;
    for (const Message& message : kUpdates) {
        rows.push_back(
            message.state(Changes(NameOf("DOM_UpdateCfgData", message, ""), [](Scene& scene) {
                              return DOM_UpdateCfgData(scene.message, 0, 0, nullptr, nullptr);
                          }).After([message](Scene& scene) {
                WithMessage(scene, message);
                scene.message = scene.Keep(AAA_AddAaadHead(7, 4, scene.message));
            })));
    }
    return rows;
}

// Counters have no saved form: they are applied when they are to be saved, and the saving fails.
const Rows counters{
    Changes("DOM_RestoreData/set 009_session_count saved",
            [](Scene& scene) { return Restore(scene, kSave); })
        .After([](Scene& scene) {
            WithMessage(scene, {"msg_009_session_count", DOM_OP_SET});
        })
        .Good(DOM_ERR_FAILED),
};
const Rows restore(RestoreRows());
const Rows update(UpdateRows());

}  // namespace
}  // namespace fault
