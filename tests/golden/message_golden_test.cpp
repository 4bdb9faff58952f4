// Every message of the library against its bytes: encoding the value
// gives the file, decoding the file gives the value.
#include <aaadom/codes.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>
#include <aaadom/results.h>
#include <aaadom/rows.h>
#include <aaadom/settings_codec.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/message.h"
#include "codec/domain_record.h"
#include "codec/message_registry.h"
#include "codec/table_rows.h"
#include "tests/golden/hex_file.h"
#include "tests/golden/record_goldens.h"

namespace {

using aaadom::TlvPtr;

template <size_t N>
void CopyText(char (&field)[N], const std::string& text) {
    ASSERT_LT(text.size(), N);
    memcpy(field, text.c_str(), text.size() + 1);
}

const char* const kName = "isp-a.example";
constexpr uint32_t kAnyValue = 0xDEADBEEF;

std::string ImageOf(TLV_MSG* msg) {
    std::string image(TLV_GetMsgLen(msg, TLV_FORM_BUFFER), '\0');
    const uint32_t length = TLV_Flush(msg, TLV_FORM_BUFFER, static_cast<uint32_t>(image.size()),
                                      reinterpret_cast<uintptr_t>(image.data()));
    image.resize(length);
    return image;
}

TlvPtr Parse(const std::string& image) {
    return TlvPtr(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(image.data()),
                                       static_cast<uint32_t>(image.size())));
}

void SetAddress(AttrAddress& field, uint16_t family, std::initializer_list<uint8_t> bytes) {
    field.family = family;
    memcpy(field.address, bytes.begin(), bytes.size());
}

AuthorAttr Attributes(uint16_t selector) {
    AuthorAttr attr{};
    attr.kind0_word1 = 11;
    attr.kind0_word2 = 10240;
    attr.kind0_word3 = 75;
    CopyText(attr.kind1_text, "one");
    CopyText(attr.kind2_text, "two");
    for (uint32_t i = 0; i < 5; ++i) attr.kind3_words[i] = 31 + i;
    CopyText(attr.kind4_text, "four");
    SetAddress(attr.kind5_addr, 2, {192, 0, 2, 5});
    SetAddress(attr.kind6_addr, 2, {192, 0, 2, 6});
    SetAddress(attr.kind16_addr, 10, {0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x10});
    SetAddress(attr.kind17_addr, 10, {0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x11});
    CopyText(attr.kind7_text, "seven");
    CopyText(attr.kind8_text, "eight");
    attr.kind9_word = 9;
    attr.kind10_word = 10;
    attr.kind11_word = 11;
    CopyText(attr.ita_policy_name, "acct-policy");
    attr.kind13_word = 13;
    attr.kind14_word1 = 141;
    attr.kind14_word2 = 142;
    attr.kind15_word = 15;
    CopyText(attr.kind18_text, "eighteen");
    attr.kind19_word = -1;
    CopyText(attr.kind20_text, "twenty");
    attr.kind21_rates[0] = 1;
    attr.kind21_rates[1] = 1000;
    attr.kind21_rates[2] = 2000000;
    attr.kind21_rates[3] = 4194303;
    attr.kind23_word = 65535;
    CopyText(attr.kind22_text, "twenty-two");
    attr.kind24_word = 24;
    CopyText(attr.author_profile_name, "profile-1");
    CopyText(attr.kind26_text, "twenty-six");
    attr.kind26_selector = selector;
    return attr;
}

MethodEntry Entry(uint32_t kind, const char* name, uint32_t index) {
    MethodEntry entry{};
    entry.method_kind = kind;
    CopyText(entry.scheme_name, name);
    entry.scheme_index = index;
    return entry;
}

struct FreeDomain {
    void operator()(DomainInfo* record) const { DOM_DestroyDomain(record); }
};
using DomainPtr = std::unique_ptr<DomainInfo, FreeDomain>;

/// The domain of the golden file for code 0.
DomainPtr SampleDomain() {
    DomainPtr record(static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo))));
    CopyText(record->name, kName);
    record->slot = 7;
    record->limit_value = DOM_DEF_LIMIT_VALUE;
    record->second_value = 4;
    record->state = 1;
    record->session_time = 38;
    record->user_addr_type = 7;
    record->acct_dual_stack_mode = 1;
    record->redirect_code = 302;
    CopyText(record->auth_rd_fail_permit_domain, "permit.example");
    record->escape_recover.setting = 1;
    CopyText(record->escape_recover.domain_name, "escape.example");
    record->escape_recover.second_setting = 2;
    CopyText(record->auth_fail_domain, "fail.example");
    record->auth_fail_domain_kind = 3;
    for (const uint32_t row : {0u, 4u, 5u}) {
        MethodList* list = DOM_CreateMethodList();
        list->aaa_type = row;
        list->service = DOM_DEFAULT_SERVICE;
        record->method_lists[row][DOM_DEFAULT_SERVICE] = list;
    }
    record->method_lists[0][5]->methods[0] = Entry(2, "radius-a", 1);
    record->method_lists[0][5]->methods[1] = Entry(4, "", 2);
    record->method_lists[4][5]->methods[0] = Entry(4, "", 3);
    record->method_lists[5][5]->methods[0] = Entry(4, "", 4);
    record->service_extras[5] = Entry(3, "extra-5", 0);
    record->author_attr = Attributes(1);
    return record;
}

void ExpectSameDomain(const DomainInfo& got, const DomainInfo& want) {
    EXPECT_STREQ(got.name, want.name);
    EXPECT_EQ(got.slot, want.slot);
    EXPECT_EQ(got.limit_value, DOM_DEF_LIMIT_VALUE);
    EXPECT_EQ(got.second_value, 0u) << "the second value is never read back";
    EXPECT_EQ(got.state, want.state);
    EXPECT_EQ(got.session_time, want.session_time);
    EXPECT_EQ(got.user_addr_type, want.user_addr_type);
    EXPECT_EQ(got.acct_dual_stack_mode, want.acct_dual_stack_mode);
    EXPECT_EQ(got.redirect_code, want.redirect_code);
    EXPECT_STREQ(got.auth_rd_fail_permit_domain, want.auth_rd_fail_permit_domain);
    EXPECT_EQ(memcmp(&got.escape_recover, &want.escape_recover, sizeof want.escape_recover), 0);
    EXPECT_STREQ(got.auth_fail_domain, want.auth_fail_domain);
    EXPECT_EQ(got.auth_fail_domain_kind, want.auth_fail_domain_kind);
    EXPECT_EQ(memcmp(&got.author_attr, &want.author_attr, sizeof want.author_attr), 0);
    EXPECT_EQ(memcmp(got.service_extras, want.service_extras, sizeof want.service_extras), 0);
    for (uint32_t row = 0; row < DOM_AAA_TYPES; ++row) {
        for (uint32_t column = 0; column < DOM_SERVICES; ++column) {
            const MethodList* a = got.method_lists[row][column];
            const MethodList* b = want.method_lists[row][column];
            ASSERT_EQ(a == nullptr, b == nullptr) << row << ' ' << column;
            if (a == nullptr) continue;
            EXPECT_EQ(memcmp(a, b, sizeof *a), 0) << row << ' ' << column;
        }
    }
}

using Golden = golden::GoldenMessage;

/// Checks of the messages that are a domain name and nothing else.
std::function<void(TLV_MSG*)> ExpectName(uint32_t (*decode)(TLV_MSG*, uint32_t, char*),
                                         const char* want = kName) {
    return [=](TLV_MSG* msg) {
        char name[DOM_NAME_SIZE] = "?";
        EXPECT_EQ(decode(msg, sizeof name, name), DOM_OK);
        EXPECT_STREQ(name, want);
    };
}

template <typename T>
std::function<void(TLV_MSG*)> ExpectNameAnd(uint32_t (*decode)(TLV_MSG*, uint32_t, char*, T*),
                                            T want) {
    return [=](TLV_MSG* msg) {
        char name[DOM_NAME_SIZE] = "?";
        T value = static_cast<T>(kAnyValue);
        EXPECT_EQ(decode(msg, sizeof name, name, &value), DOM_OK);
        EXPECT_STREQ(name, kName);
        EXPECT_EQ(value, want);
    };
}

std::function<void(TLV_MSG*)> ExpectNumber(uint32_t (*decode)(TLV_MSG*, uint32_t*), uint32_t want) {
    return [=](TLV_MSG* msg) {
        uint32_t value = kAnyValue;
        EXPECT_EQ(decode(msg, &value), DOM_OK);
        EXPECT_EQ(value, want);
    };
}

std::function<void(TLV_MSG*)> ExpectClass(uint32_t (*decode)(TLV_MSG*, uint32_t*, uint32_t*),
                                          uint32_t want_class, uint32_t want_value) {
    return [=](TLV_MSG* msg) {
        uint32_t session_class = 0;
        uint32_t value = 0;
        EXPECT_EQ(decode(msg, &session_class, &value), DOM_OK);
        EXPECT_EQ(session_class, want_class);
        EXPECT_EQ(value, want_value);
    };
}

MethodList SampleList() {
    MethodList list{};
    list.service = 3;
    list.methods[0] = Entry(2, "radius-a", 0);
    list.methods[1] = Entry(5, "", 0);
    return list;
}

void CheckMethodList(TLV_MSG* msg) {
    char name[DOM_NAME_SIZE];
    MethodList list;
    MethodEntry extra;
    ASSERT_EQ(DOM_DecodeMethList(msg, sizeof name, name, &list, &extra), DOM_OK);
    EXPECT_STREQ(name, kName);
    const MethodList want = SampleList();
    EXPECT_EQ(memcmp(&list, &want, sizeof want), 0);
    const MethodEntry want_extra = Entry(1, "tacacs-a", 0);
    EXPECT_EQ(memcmp(&extra, &want_extra, sizeof want_extra), 0);
}

std::function<void(TLV_MSG*)> ExpectDomainRow(uint64_t want_flags) {
    return [=](TLV_MSG* msg) {
        DomainMibRow row;
        uint64_t flags = kAnyValue;
        EXPECT_EQ(DOM_DecodeDomainInfoTable(msg, &row, &flags), DOM_OK);
        EXPECT_STREQ(row.domain_name, kName);
        EXPECT_EQ(row.state, 2u);
        EXPECT_EQ(flags, want_flags);
    };
}

MibSchemeRow SchemeRow(uint32_t index, uint32_t kind, uint32_t type, const char* scheme) {
    MibSchemeRow row{};
    row.scheme_index = index;
    row.method_kind = kind;
    row.row_status = DOM_ROW_ACTIVE;
    row.aaa_type = type;
    row.service = DOM_DEFAULT_SERVICE;
    CopyText(row.domain_name, kName);
    CopyText(row.scheme_name, scheme);
    return row;
}

std::function<void(TLV_MSG*)> ExpectSchemeRow(const MibSchemeRow& want) {
    return [=](TLV_MSG* msg) {
        MibSchemeRow row{};
        row.row_status = want.row_status;
        row.service = want.service;
        EXPECT_EQ(DOM_DecodeMibSchemeTable(msg, &row), DOM_OK);
        EXPECT_EQ(row.scheme_index, want.scheme_index);
        EXPECT_EQ(row.method_kind, want.method_kind);
        EXPECT_EQ(row.aaa_type, want.aaa_type);
        EXPECT_STREQ(row.domain_name, want.domain_name);
        EXPECT_STREQ(row.scheme_name, want.scheme_name);
    };
}

AAAAuthorProfile SampleProfile() {
    AAAAuthorProfile profile{};
    CopyText(profile.profile_name, "profile-1");
    profile.value_434 = 2;
    CopyText(profile.segment_name, "segment-1");
    profile.segment_id = 77;
    profile.entry_count = 2;
    profile.entries[0].number = 1;
    CopyText(profile.entries[0].text1, "vpn-a");
    CopyText(profile.entries[0].text2, "ep-a");
    profile.entries[1].number = 256;
    CopyText(profile.entries[1].text1, "vpn-b");
    return profile;
}

std::vector<Golden> DomainGoldens() {
    return {
        {"msg_000_domain", DOM_MSG_DOMAIN,
         [] { return aaadom::EncodeDomainRecord(*SampleDomain()).release(); },
         [](TLV_MSG* msg) {
             const DomainPtr record(DOM_DecodeDomain(msg));
             ASSERT_NE(record, nullptr);
             ExpectSameDomain(*record, *SampleDomain());
         }},
        {"msg_001_default_domain", DOM_MSG_DEFAULT_DOMAIN,
         [] { return DOM_EncodeDefaultDomain(kName, 0); },
         ExpectNameAnd(DOM_DecodeDefaultDomain, 0u)},
        {"msg_002_domain_count", DOM_MSG_DOMAIN_COUNT, [] { return DOM_EncodeDomainCount(1024); },
         ExpectNumber(DOM_DecodeDomainCount, 1024)},
        {"msg_003_domain_name", DOM_MSG_DOMAIN_NAME, [] { return DOM_EncodeDomainName(kName); },
         ExpectName(DOM_DecodeDomainName)},
        {"msg_004_method_list", DOM_MSG_METHOD_LIST,
         [] {
             const MethodList list = SampleList();
             const MethodEntry extra = Entry(1, "tacacs-a", 0);
             return DOM_EncodeMethList(kName, &list, &extra);
         },
         CheckMethodList},
        {"msg_007_state", DOM_MSG_STATE, [] { return DOM_EncodeState(kName, 65535); },
         ExpectNameAnd<uint16_t>(DOM_DecodeState, 65535)},
        {"msg_008_session_limit", DOM_MSG_SESSION_LIMIT,
         [] { return DOM_EncodeSessionLimit(21, 4096); },
         ExpectClass(DOM_DecodeSessionLimit, 21, 4096)},
        {"msg_009_session_count", DOM_MSG_SESSION_COUNT,
         [] { return DOM_EncodeSessionCount(23, 17); },
         ExpectClass(DOM_DecodeSessionCount, 23, 17)},
        {"msg_010_all_session_limit", DOM_MSG_ALL_SESSION_LIMIT,
         [] {
             const SessionLimits limits = {190, 210, 200, 220, 230};
             return DOM_EncodeAllSessionLimit(&limits);
         },
         [](TLV_MSG* msg) {
             SessionLimits limits{};
             EXPECT_EQ(DOM_DecodeAllSessionLimit(msg, &limits), DOM_OK);
             const SessionLimits want = {190, 210, 200, 220, 230};
             EXPECT_EQ(memcmp(&limits, &want, sizeof want), 0);
         }},
        {"msg_011_author_attr", DOM_MSG_AUTHOR_ATTR,
         [] {
             const AuthorAttr attr = Attributes(0);
             return DOM_EncodeAuthorAttr(26, kName, &attr);
         },
         [](TLV_MSG* msg) {
             uint32_t kind = kAnyValue;
             char name[DOM_NAME_SIZE];
             AuthorAttr attr{};
             EXPECT_EQ(DOM_DecodeAuthorAttr(msg, &kind, sizeof name, name, &attr), DOM_OK);
             EXPECT_EQ(kind, 26u);
             EXPECT_STREQ(name, kName);
             const AuthorAttr want = Attributes(0);
             EXPECT_EQ(memcmp(&attr, &want, sizeof want), 0);
         }},
        {"msg_012_domain_name_len", DOM_MSG_DOMAIN_NAME_LEN,
         [] { return DOM_EncodeDomainNameAndLen(kName, 13); },
         ExpectNameAnd(DOM_DecodeDomainNameAndLen, 13u)},
        {"msg_013_scheme_index", DOM_MSG_SCHEME_INDEX,
         [] { return DOM_EncodeSchemeIndex(kName, 13, 3); },
         [](TLV_MSG* msg) {
             char name[DOM_NAME_SIZE];
             uint32_t length = 0;
             uint32_t index = 0;
             EXPECT_EQ(DOM_DecodeSchemeIndex(msg, sizeof name, name, &length, &index), DOM_OK);
             EXPECT_STREQ(name, kName);
             EXPECT_EQ(length, 13u);
             EXPECT_EQ(index, 3u);
         }},
        {"msg_014_domain_row", DOM_MSG_DOMAIN_ROW, [] { return DOM_EncodeDomainInfo(kName, 2, 4); },
         ExpectDomainRow(0)},
        {"msg_014_domain_row_flags", DOM_MSG_DOMAIN_ROW,
         [] { return DOM_EncodeDomainInfoFlag(1, kName, 2, 1); }, ExpectDomainRow(1)},
        {"msg_015_scheme_row", DOM_MSG_SCHEME_ROW,
         [] {
             return DOM_EncodeDomainSchemeFlag(0x8000000000000001u, kName, 4, 5, 3, 2, "radius-a");
         },
         ExpectSchemeRow(SchemeRow(3, 2, 5, "radius-a"))},
        {"msg_015_scheme_row_reply", DOM_MSG_SCHEME_ROW,
         [] { return aaadom::EncodeSchemeRow(nullptr, SchemeRow(2, 4, 4, "")).release(); },
         ExpectSchemeRow(SchemeRow(2, 4, 4, ""))},
        {"msg_018_unknown_domain", DOM_MSG_UNKNOWN_DOMAIN,
         [] { return DOM_EncodeUnknownDomain(kName); }, ExpectName(DOM_DecodeUnknownDomain)},
        {"msg_019_session_time", DOM_MSG_SESSION_TIME,
         [] { return DOM_EncodeSessionTime(kName, 3600); },
         ExpectNameAnd<uint16_t>(DOM_DecodeSessionTime, 3600)},
        {"msg_020_device_id", DOM_MSG_DEVICE_ID, [] { return DOM_EncodeDeviceID(0x01020304); },
         ExpectNumber(DOM_DecodeDeviceID, 0x01020304)},
        {"msg_021_user_addr_type", DOM_MSG_USER_ADDR_TYPE,
         [] { return DOM_EncodeUserAddrType(kName, 3); },
         ExpectNameAnd(DOM_DecodeUserAddrType, 3u)},
        {"msg_029_global_domain", DOM_MSG_GLOBAL_DOMAIN,
         [] { return DOM_EncodeGlobalDomain("default.example", "unknown.example", 9, 0); },
         [](TLV_MSG* msg) {
             char default_name[DOM_NAME_SIZE];
             char unknown_name[DOM_NAME_SIZE];
             uint32_t device = 0;
             uint32_t value_18 = kAnyValue;
             EXPECT_EQ(
                 DOM_DecodeGlobalDomain(msg, sizeof default_name, default_name, sizeof unknown_name,
                                        unknown_name, &device, &value_18),
                 DOM_OK);
             EXPECT_STREQ(default_name, "default.example");
             EXPECT_STREQ(unknown_name, "unknown.example");
             EXPECT_EQ(device, 9u);
             EXPECT_EQ(value_18, 0u);
         }},
        {"msg_030_acct_dual_stack", DOM_MSG_ACCT_DUAL_STACK,
         [] { return DOM_EncodeAcctDualStackMode(kName, 2); },
         ExpectNameAnd(DOM_DecodeAcctDualStackMode, 2u)},
        {"msg_130_redirect", DOM_MSG_REDIRECT,
         [] { return DOM_EncodeRedirectMoveTemporarily(kName); },
         ExpectName(DOM_DecodeRedirectMoveTemporarily)},
        {"msg_132_auth_fail_domain", DOM_MSG_AUTH_FAIL_DOMAIN,
         [] { return DOM_EncodeAuthFailDomain(kName, "fail.example", 0, 2); },
         [](TLV_MSG* msg) {
             char name[DOM_NAME_SIZE];
             char fail[DOM_NAME_SIZE];
             uint32_t value_18 = kAnyValue;
             uint16_t kind = 0;
             EXPECT_EQ(DOM_DecodeAuthFailDomain(msg, sizeof name, name, sizeof fail, fail,
                                                &value_18, &kind),
                       DOM_OK);
             EXPECT_STREQ(name, kName);
             EXPECT_STREQ(fail, "fail.example");
             EXPECT_EQ(value_18, 0u);
             EXPECT_EQ(kind, 2u);
         }},
        {"msg_143_permit_domain", DOM_MSG_PERMIT_DOMAIN,
         [] { return DOM_EncodeAuthRdFailPermitDomain(kName, "permit.example", 0); },
         [](TLV_MSG* msg) {
             char name[DOM_NAME_SIZE];
             char permit[DOM_NAME_SIZE];
             uint32_t value_18 = kAnyValue;
             EXPECT_EQ(DOM_DecodeAuthRdFailPermitDomain(msg, sizeof name, name, sizeof permit,
                                                        permit, &value_18),
                       DOM_OK);
             EXPECT_STREQ(name, kName);
             EXPECT_STREQ(permit, "permit.example");
             EXPECT_EQ(value_18, 0u);
         }},
        {"msg_144_escape_recover", DOM_MSG_ESCAPE_RECOVER,
         [] { return DOM_EncodeAuthenEscapeRecover(kName, 1, "escape.example", 2, 0); },
         [](TLV_MSG* msg) {
             char name[DOM_NAME_SIZE];
             char escape[DOM_NAME_SIZE];
             uint16_t setting = 0;
             uint16_t second = 0;
             uint32_t value_18 = kAnyValue;
             EXPECT_EQ(DOM_DecodeAuthenEscapeRecover(msg, sizeof name, name, &setting,
                                                     sizeof escape, escape, &second, &value_18),
                       DOM_OK);
             EXPECT_STREQ(name, kName);
             EXPECT_STREQ(escape, "escape.example");
             EXPECT_EQ(setting, 1u);
             EXPECT_EQ(second, 2u);
             EXPECT_EQ(value_18, 0u);
         }},
        {"msg_145_debug_flag", DOM_MSG_DEBUG_FLAG, [] { return DOM_EncodeDebugFlag(3); },
         ExpectNumber(DOM_DecodeDebugFlag, 3)},
        {"msg_159_author_profile_name", DOM_MSG_AAA_AUTHOR_PROFILE,
         [] { return DOM_EncodeAAAAuthorProfileName("profile-1"); },
         ExpectName(DOM_DecodeAAAAuthorProfileName, "profile-1")},
        {"msg_159_author_profile", DOM_MSG_AAA_AUTHOR_PROFILE,
         [] {
             const AAAAuthorProfile profile = SampleProfile();
             return DOM_EncodeAAAAuthorProfile(&profile);
         },
         [](TLV_MSG* msg) {
             AAAAuthorProfile profile;
             EXPECT_EQ(DOM_DecodeAAAAuthorProfile(msg, &profile), DOM_OK);
             const AAAAuthorProfile want = SampleProfile();
             EXPECT_EQ(memcmp(&profile, &want, sizeof want), 0);
         }},
        {"msg_160_author_profile_num_request", DOM_MSG_AAA_AUTHOR_PROFILE_NUM,
         [] { return DOM_EncodeAAAAuthorProfileNumRequest(); },
         [](TLV_MSG* msg) { EXPECT_EQ(DOM_DecodeAAAAuthorProfileNum(msg), 0u); }},
        {"msg_160_author_profile_num", DOM_MSG_AAA_AUTHOR_PROFILE_NUM,
         [] { return DOM_EncodeAAAAuthorProfileNum(12); },
         [](TLV_MSG* msg) { EXPECT_EQ(DOM_DecodeAAAAuthorProfileNum(msg), 12u); }},
        {"msg_165_domain_name_info", DOM_MSG_DOMAIN_NAME_INFO,
         [] { return DOM_EncodeDomainNameInfo(kName); }, ExpectName(DOM_DecodeDomainNameInfo)},
    };
}

const std::vector<Golden>& Goldens() {
    static const std::vector<Golden> all = [] {
        std::vector<Golden> goldens = DomainGoldens();
        for (const auto& part :
             {golden::CmdAuthorFailGoldens(), golden::NasIdGoldens(), golden::RecordGoldens(),
              golden::ItaPolicyGoldens(), golden::RecPolicyGoldens(), golden::ProfileGoldens(),
              golden::RecordQueryGoldens()}) {
            goldens.insert(goldens.end(), part.begin(), part.end());
        }
        return goldens;
    }();
    return all;
}

class MessageGolden : public testing::TestWithParam<size_t> {
  protected:
    const Golden& golden() const { return Goldens()[GetParam()]; }
};

TEST_P(MessageGolden, EncodingGivesTheFile) {
    const TlvPtr msg(golden().encode());
    ASSERT_NE(msg, nullptr);
    EXPECT_EQ(golden::ToHex(ImageOf(msg.get())), golden::ToHex(golden::ReadHexFile(golden().file)));
}

TEST_P(MessageGolden, DecodingTheFileGivesTheValue) {
    const TlvPtr msg = Parse(golden::ReadHexFile(golden().file));
    ASSERT_NE(msg, nullptr);
    golden().check(msg.get());
}

TEST_P(MessageGolden, FirstTlvIsTheCode) {
    const TlvPtr msg = Parse(golden::ReadHexFile(golden().file));
    ASSERT_NE(msg, nullptr);
    TLV_ITER* first = TLV_GetFirst(msg.get());
    EXPECT_EQ(TLV_GetTypeByIterator(msg.get(), first), DOM_TLV_MSG_CODE);
    EXPECT_EQ(AAA_GetUINTTlvValue(msg.get(), first), static_cast<uint32_t>(golden().code));
}

INSTANTIATE_TEST_SUITE_P(Codes, MessageGolden, testing::Range<size_t>(0, Goldens().size()),
                         [](const testing::TestParamInfo<size_t>& info) {
                             return std::string(Goldens()[info.param].file);
                         });

// The two frames that docs/protocol.md shows byte by byte.
TEST(MessageGoldens, RequestInItsOperationHead) {
    const TlvPtr body(DOM_EncodeState("isp", 2));
    const TlvPtr request(AAA_AddOpHead(DOM_OP_SET, body.get()));
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(golden::ToHex(ImageOf(request.get())),
              golden::ToHex(golden::ReadHexFile("frame_state_request")));
}

TEST(MessageGoldens, ReplyWithAResult) {
    const TlvPtr body(TLV_Create());
    const TlvPtr reply(TLV_Create());
    ASSERT_EQ(AAA_AppendUINTTlvData(body.get(), DOM_TLV_RESULT, DOM_OK), 0u);
    ASSERT_EQ(AAA_AppendSubTlv(reply.get(), DOM_REPLY_KIND_RESULT, body.get()), 0u);
    EXPECT_EQ(golden::ToHex(ImageOf(reply.get())),
              golden::ToHex(golden::ReadHexFile("frame_result_reply")));
}

TEST(MessageGoldens, EveryCodeHasOne) {
    std::set<uint32_t> covered;
    for (const Golden& golden : Goldens()) covered.insert(golden.code);
    for (const DomMsgCode code : aaadom::kDomainMessageCodes) {
        EXPECT_TRUE(covered.count(code)) << "message code " << code << " has no golden file";
    }
    for (const DomMsgCode code : aaadom::kItaPolicyMessageCodes) {
        EXPECT_TRUE(covered.count(code)) << "message code " << code << " has no golden file";
    }
    for (const DomMsgCode code : aaadom::kProfileMessageCodes) {
        EXPECT_TRUE(covered.count(code)) << "message code " << code << " has no golden file";
    }
    for (const DomMsgCode code : aaadom::kRecPolicyMessageCodes) {
        EXPECT_TRUE(covered.count(code)) << "message code " << code << " has no golden file";
    }
    EXPECT_TRUE(covered.count(DOM_MSG_CMD_AUTHOR_FAIL));
    for (const DomMsgCode code : aaadom::kRecordMessageCodes) {
        EXPECT_TRUE(covered.count(code)) << "message code " << code << " has no golden file";
    }
}

TEST(MessageGoldens, EveryFileIsUsed) {
    std::set<std::string> used;
    for (const Golden& golden : Goldens()) used.insert(golden.file);
    std::set<std::string> unused;
    for (const std::string& name : golden::MessageFiles()) {
        if (!used.count(name)) unused.insert(name);
    }
    EXPECT_TRUE(unused.empty()) << *unused.begin();
}

}  // namespace
