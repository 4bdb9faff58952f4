#include "fault_daemon/rows.h"

#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/nas_id.h>
#include <aaadom/profile.h>
#include <aaadom/results.h>
#include <aaadom/rows.h>
#include <aaadom/types.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include "golden/hex_file.h"

namespace fault_daemon {
namespace {

std::string NameOf(uint32_t code, uint32_t operation, const std::string& particular) {
    std::string name = "Code" + std::to_string(code) + "_Operation" + std::to_string(operation);
    return particular.empty() ? name : name + "_" + particular;
}

std::function<TLV_MSG*()> Golden(const std::string& file) {
    return [file] {
        TLV_MSG* message = fake::Parse(golden::ReadHexFile(file));
        EXPECT_NE(message, nullptr) << "no golden message " << file;
        return message;
    };
}

/// A change, applied on the stage or after `before`.
Row Set(uint32_t code, uint32_t operation, const std::string& file, std::vector<Row> before = {},
        uint64_t good = 0) {
    Row row;
    row.name = NameOf(code, operation, "");
    row.code = code;
    row.operation = operation;
    row.body = Golden(file);
    row.before = std::move(before);
    row.good = good;
    return row;
}

Row Get(uint32_t code, uint32_t operation, const std::string& file, uint64_t good = kData) {
    Row row = Set(code, operation, file, {}, good);
    row.reads = true;
    return row;
}

/// The code alone.
Row Bare(Row row) {
    const uint32_t code = row.code;
    row.body = [code] {
        TLV_MSG* message = TLV_Create();
        (void)AAA_AppendUINTTlvData(message, DOM_TLV_MSG_CODE, code);
        return message;
    };
    return row;
}

/// The code and one text.
Row Naming(Row row, uint16_t type, const std::string& text) {
    const std::function<TLV_MSG*()> bare = Bare(row).body;
    row.body = [bare, type, text] {
        TLV_MSG* message = bare();
        (void)AAA_AppendStrTlvData(message, type, text.c_str());
        return message;
    };
    return row;
}

Row CountedBy(Row row, uint32_t what) {
    const std::function<TLV_MSG*()> bare = Bare(row).body;
    row.body = [bare, what] {
        TLV_MSG* message = bare();
        (void)AAA_AppendUINTTlvData(message, DOM_TLV_RECORD_TOP_BY, what);
        return message;
    };
    return row;
}

Row Report(const std::string& name, const std::string& file, uint32_t code = 0) {
    Row row = Set(code, DOM_OP_SET, file);
    row.name = "Report_" + name;
    row.socket = Socket::kRecords;
    row.has_head = false;
    return row;
}

Row Called(Row row, const std::string& particular) {
    row.name += "_" + particular;
    return row;
}

Row NextVpn(uint32_t code, uint16_t profile_type, uint16_t vpn_type) {
    Row row = Get(code, DOM_OP_GET_NEXT, "");
    const std::function<TLV_MSG*()> bare = Bare(row).body;
    row.body = [bare, profile_type, vpn_type] {
        TLV_MSG* message = bare();
        (void)AAA_AppendStrTlvData(message, profile_type, "");
        (void)AAA_AppendStrTlvData(message, vpn_type, "");
        return message;
    };
    return row;
}

/// The domain of the stage refers to an accounting policy.
Row ReferTo(const std::string& policy) {
    Row row = Set(DOM_MSG_AUTHOR_ATTR, DOM_OP_SET, "");
    row.body = [policy] {
        constexpr uint32_t kPolicyName = 12;
        AuthorAttr attributes{};
        policy.copy(attributes.ita_policy_name, sizeof attributes.ita_policy_name - 1);
        return DOM_EncodeAuthorAttr(kPolicyName, "isp-a.example", &attributes);
    };
    return row;
}

Row After(Row row, Row first) {
    row.before.push_back(std::move(first));
    return row;
}

Row Also(Row row, uint64_t result) {
    row.also.insert(result);
    return row;
}

constexpr uint32_t kSet = DOM_OP_SET;
constexpr uint32_t kDelete = DOM_OP_DELETE;
constexpr uint32_t kGet = DOM_OP_GET;
constexpr uint32_t kNext = DOM_OP_GET_NEXT;
constexpr uint32_t kClear = DOM_OP_CLEAR_RECORDS;

Row DeleteDomain() {
    return Set(3, kDelete, "msg_003_domain_name");
}

std::vector<Row> DomainRows() {
    return {
        Set(0, kSet, "msg_000_domain"),
        Called(Set(0, kSet, "msg_000_domain", {DeleteDomain()}), "New"),
        Set(1, kSet, "msg_001_default_domain"),
        Set(1, kDelete, "msg_001_default_domain", {Set(1, kSet, "msg_001_default_domain")}),
        Get(1, kGet, "msg_001_default_domain"),
        Get(2, kGet, "msg_002_domain_count"),
        Set(3, kSet, "msg_003_domain_name", {DeleteDomain()}),
        DeleteDomain(),
        Get(3, kGet, "msg_003_domain_name"),
        Set(4, kSet, "msg_004_method_list"),
        Set(4, kDelete, "msg_004_method_list", {Set(4, kSet, "msg_004_method_list")}),
        Set(7, kSet, "msg_007_state"),
        Set(7, kDelete, "msg_007_state", {Set(7, kSet, "msg_007_state")}),
        Set(8, kSet, "msg_008_session_limit"),
        Get(8, kGet, "msg_008_session_limit"),
        Set(9, kSet, "msg_009_session_count", {}, DOM_ERR_FAILED),
        Set(10, kSet, "msg_010_all_session_limit"),
        Set(11, kSet, "msg_011_author_attr"),
        Set(11, kDelete, "msg_011_author_attr", {Set(11, kSet, "msg_011_author_attr")}),
        Naming(Get(12, kGet, ""), DOM_TLV_DOMAIN_NAME, ""),
        Naming(Get(12, kNext, ""), DOM_TLV_DOMAIN_NAME, ""),
        Get(13, kGet, "msg_013_scheme_index"),
        Naming(Get(13, kNext, ""), DOM_TLV_DOMAIN_NAME, ""),
        Also(Set(14, kSet, "msg_014_domain_row", {DeleteDomain()}), DOM_ROW_FAILED),
        Called(Set(14, kSet, "msg_014_domain_row_flags"), "Modify"),
        Set(15, kSet, "msg_015_scheme_row", {}, DOM_ROW_FAILED),
        Also(Set(15, kDelete, "msg_015_scheme_row"), DOM_ROW_FAILED),
        Set(18, kSet, "msg_018_unknown_domain"),
        Set(18, kDelete, "msg_018_unknown_domain", {Set(18, kSet, "msg_018_unknown_domain")}),
        Set(19, kSet, "msg_019_session_time"),
        Set(19, kDelete, "msg_019_session_time"),
        Set(20, kSet, "msg_020_device_id"),
        Set(20, kDelete, "msg_020_device_id", {Set(20, kSet, "msg_020_device_id")}),
        Set(21, kSet, "msg_021_user_addr_type"),
        Set(21, kDelete, "msg_021_user_addr_type"),
        Get(29, kGet, "msg_029_global_domain"),
        Set(30, kSet, "msg_030_acct_dual_stack"),
        Set(30, kDelete, "msg_030_acct_dual_stack"),
        Set(130, kSet, "msg_130_redirect"),
        Set(130, kDelete, "msg_130_redirect"),
        Set(132, kSet, "msg_132_auth_fail_domain"),
        Set(132, kDelete, "msg_132_auth_fail_domain"),
        Set(143, kSet, "msg_143_permit_domain"),
        Set(143, kDelete, "msg_143_permit_domain"),
        Set(144, kSet, "msg_144_escape_recover"),
        Set(144, kDelete, "msg_144_escape_recover"),
        Set(145, kSet, "msg_145_debug_flag"),
        Set(145, kDelete, "msg_145_debug_flag", {Set(145, kSet, "msg_145_debug_flag")}),
        Get(145, kGet, "msg_145_debug_flag"),
        Naming(Get(165, kGet, ""), DOM_TLV_DOMAIN_NAME, ""),
        Naming(Get(165, kNext, ""), DOM_TLV_DOMAIN_NAME, ""),
    };
}

std::vector<Row> ProfileRows() {
    return {
        Also(Set(16, kSet, "msg_016_nas_id_profile", {Set(16, kDelete, "msg_016_nas_id_profile")}),
             DOM_NASID_FAILED),
        Set(16, kDelete, "msg_016_nas_id_profile"),
        Get(16, kGet, "msg_016_nas_id_profile"),
        Naming(Get(16, kNext, ""), DOM_TLV_NASID_PROFILE, ""),
        Also(Set(17, kSet, "msg_017_nas_id_binding", {Set(17, kDelete, "msg_017_nas_id_binding")}),
             DOM_NASID_FAILED),
        Set(17, kDelete, "msg_017_nas_id_binding"),
        Get(17, kGet, "msg_017_nas_id_binding"),
        Naming(Get(17, kNext, ""), DOM_TLV_NASID_PROFILE, "office"),
        Also(Set(147, kSet, "msg_147_critical_profile",
                 {Set(147, kDelete, "msg_147_critical_profile")}),
             DOM_CRITICAL_FAILED),
        Set(147, kDelete, "msg_147_critical_profile"),
        Get(147, kGet, "msg_147_critical_profile"),
        Naming(Get(147, kNext, ""), DOM_TLV_CRITICAL_PROFILE_NAME, ""),
        Also(Set(148, kSet, "msg_148_critical_vpn", {Set(148, kDelete, "msg_148_critical_vpn")}),
             DOM_CRITICAL_FAILED),
        Set(148, kDelete, "msg_148_critical_vpn"),
        Get(148, kGet, "msg_148_critical_vpn_request"),
        NextVpn(148, DOM_TLV_CRITICAL_PROFILE_NAME, DOM_TLV_CRITICAL_VPN_NAME),
        Set(149, kSet, "msg_149_critical_segment"),
        Set(149, kDelete, "msg_149_critical_segment"),
        Also(
            Set(156, kSet, "msg_156_author_profile", {Set(156, kDelete, "msg_156_author_profile")}),
            DOM_AUTHOR_FAILED),
        Set(156, kDelete, "msg_156_author_profile"),
        Get(156, kGet, "msg_156_author_profile"),
        Naming(Get(156, kNext, ""), DOM_TLV_AUTHOR_PROFILE_NAME, ""),
        Also(Set(157, kSet, "msg_157_author_vpn", {Set(157, kDelete, "msg_157_author_vpn")}),
             DOM_AUTHOR_FAILED),
        Set(157, kDelete, "msg_157_author_vpn"),
        Get(157, kGet, "msg_157_author_vpn_request"),
        NextVpn(157, DOM_TLV_AUTHOR_PROFILE_NAME, DOM_TLV_AUTHOR_VPN_NAME),
        Set(158, kSet, "msg_158_author_segment"),
        Set(158, kDelete, "msg_158_author_segment"),
        Naming(Get(159, kGet, ""), DOM_TLV_AUTHOR_PROFILE_NAME, "Staff"),
        Get(160, kGet, "msg_160_author_profile_num_request"),
    };
}

/// Codes 23 to 27 set with operation 1 and delete with 0.
std::vector<Row> PolicyRows() {
    return {
        Set(22, kSet, "msg_022_ita_policy"),
        Get(22, kGet, "msg_022_ita_policy"),
        Naming(Get(22, kNext, ""), DOM_TLV_ITA_POLICY_NAME, ""),
        Set(23, kDelete, "msg_023_ita_policy_name", {Set(23, kSet, "msg_023_ita_policy_name")}),
        Set(23, kSet, "msg_023_ita_policy_name"),
        Set(24, kDelete, "msg_024_ita_acct_scheme"),
        Set(24, kSet, "msg_024_ita_acct_scheme"),
        After(Naming(Get(24, kGet, ""), DOM_TLV_DOMAIN_NAME, "isp-a.example"), ReferTo("gold")),
        Set(25, kDelete, "msg_025_ita_acct_together"),
        Set(25, kSet, "msg_025_ita_acct_together"),
        Set(26, kDelete, "msg_026_ita_acct_level"),
        Set(26, kSet, "msg_026_ita_acct_level", {Set(26, kDelete, "msg_026_ita_acct_level")}),
        Set(27, kDelete, "msg_027_ita_traf_seprate"),
        Set(27, kSet, "msg_027_ita_traf_seprate"),
        Set(28, kSet, "msg_028_ita_traf_quota_out"),
        Set(28, kDelete, "msg_028_ita_traf_quota_out"),
        Set(31, kSet, "msg_031_rec_policy"),
        Get(31, kGet, "msg_031_rec_policy"),
        Also(
            Set(32, kSet, "msg_032_rec_policy_type", {Set(32, kDelete, "msg_032_rec_policy_type")}),
            DOM_ERR_NO_MEMORY),
        Set(32, kDelete, "msg_032_rec_policy_type"),
        Set(33, kSet, "msg_033_rec_acct_scheme"),
        Set(33, kDelete, "msg_033_rec_acct_scheme"),
    };
}

std::vector<Row> RecordRows() {
    return {
        Set(54, kClear, "msg_054_reset_online_fail"),
        Set(55, kClear, "msg_055_reset_offline_all"),
        Set(56, kClear, "msg_056_reset_offline_normal"),
        Set(57, kClear, "msg_057_reset_offline_abnormal"),
        Get(70, kGet, "msg_070_record_number_request"),
        Bare(Get(71, kGet, "")),
        Get(72, kGet, "msg_072_record_by_time"),
        Get(73, kGet, "msg_073_record_by_no_name"),
        Get(74, kGet, "msg_074_record_by_reason"),
        CountedBy(Get(75, kGet, ""), 0),
        Called(CountedBy(Get(75, kGet, ""), 1), "Domain"),
        Called(CountedBy(Get(75, kGet, ""), 2), "Interface"),
        Set(77, kSet, "msg_077_record_online_fail",
            {Set(77, kDelete, "msg_077_record_online_fail")}),
        Set(77, kDelete, "msg_077_record_online_fail"),
        Set(78, kSet, "msg_078_record_offline_all",
            {Set(78, kDelete, "msg_078_record_offline_all")}),
        Set(78, kDelete, "msg_078_record_offline_all"),
        Set(79, kSet, "msg_079_record_offline_normal"),
        Set(79, kDelete, "msg_079_record_offline_normal"),
        Set(80, kSet, "msg_080_record_offline_abnormal"),
        Set(80, kDelete, "msg_080_record_offline_abnormal"),
        Bare(Get(81, kGet, "")),
        Bare(Get(92, kGet, "")),
        Set(164, kSet, "msg_164_backup_method"),
        Set(164, kDelete, "msg_164_backup_method"),
        Bare(Get(164, kGet, "")),
        Set(173, kSet, "msg_173_record_offline",
            {Set(173, kDelete, "msg_173_record_delete_normal")}),
        Set(173, kDelete, "msg_173_record_delete"),
        Report("Record", "report_user_record"),
        Report("CommandFailure", "msg_092_cmd_author_fail_report"),
    };
}

}  // namespace

TLV_MSG* Row::Message() const {
    TLV_MSG* inner = body();
    if (!has_head) return inner;
    TLV_MSG* message = AAA_AddOpHead(operation, inner);
    TLV_Destroy(inner);
    return message;
}

const std::vector<Row>& StageRows() {
    static const auto* rows = new std::vector<Row>{
        Set(0, kSet, "msg_000_domain"),
        Naming(Set(3, kSet, ""), DOM_TLV_DOMAIN_NAME, "other.example"),
        Set(16, kSet, "msg_016_nas_id_profile"),
        Set(17, kSet, "msg_017_nas_id_binding"),
        Set(22, kSet, "msg_022_ita_policy"),
        Set(26, kDelete, "msg_026_ita_acct_level"),
        Set(31, kSet, "msg_031_rec_policy"),
        Set(147, kSet, "msg_147_critical_profile"),
        Set(148, kSet, "msg_148_critical_vpn"),
        Set(149, kSet, "msg_149_critical_segment"),
        Set(156, kSet, "msg_156_author_profile"),
        Set(157, kSet, "msg_157_author_vpn"),
        Set(158, kSet, "msg_158_author_segment"),
        Set(77, kSet, "msg_077_record_online_fail"),
        Set(78, kSet, "msg_078_record_offline_all"),
        Set(164, kSet, "msg_164_backup_method"),
        Set(173, kSet, "msg_173_record_online_fail"),
        Set(173, kSet, "msg_173_record_offline_abnormal"),
        Set(173, kSet, "msg_173_record_offline"),
        Report("CommandFailure", "msg_092_cmd_author_fail_report"),
    };
    return *rows;
}

const std::vector<Row>& AllRows() {
    static const auto* rows = [] {
        auto* all = new std::vector<Row>;
        for (const std::vector<Row>& some :
             {DomainRows(), ProfileRows(), PolicyRows(), RecordRows(), MalformedRows()})
            all->insert(all->end(), some.begin(), some.end());
        return all;
    }();
    return *rows;
}

const Row& RowOf(const std::string& name) {
    for (const Row& row : AllRows()) {
        if (row.name == name) return row;
    }
    ADD_FAILURE() << "no row " << name;
    return AllRows().front();
}

}  // namespace fault_daemon
