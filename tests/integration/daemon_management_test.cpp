// The management calls that the daemon serves, each once, and changes of many clients across a
// SIGKILL.
#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

using DaemonManagement = DaemonTest;
using DaemonDurability = DaemonTest;

TEST_F(DaemonManagement, DomainCalls) {
    uint32_t result = 99;
    EXPECT_EQ(MOR_SetDomainName("corp", DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_OK);
    EXPECT_EQ(MOR_SetDomainName("guest", DOM_OP_SET, &result), DOM_OK);
    uint32_t count = 0;
    EXPECT_EQ(MOR_GetDomainCount(&count), DOM_OK);
    EXPECT_EQ(count, 3u);

    EXPECT_EQ(MOR_SetState("corp", 0), DOM_OK);
    EXPECT_EQ(MOR_SetSessionTime("corp", 60), DOM_OK);
    EXPECT_EQ(MOR_SetUserAddrType("corp", 3), DOM_OK);
    EXPECT_EQ(MOR_SetAcctDualStackMode("corp", 2), DOM_OK);
    EXPECT_EQ(MOR_SetRedirectMoveTemporarily("corp", DOM_OP_SET), DOM_OK);
    EXPECT_EQ(MOR_SetAuthFailDomain("corp", "guest", 0, 1, &result), DOM_OK);
    EXPECT_EQ(MOR_SetAuthRdFailPermitDomain("corp", "guest", 0, DOM_OP_SET), DOM_OK);
    EXPECT_EQ(MOR_SetAuthenEscapeRecover("corp", 4, "guest", 5, 0, DOM_OP_SET), DOM_OK);
    MethodList list{};
    list.aaa_type = AAA_TYPE_4;
    list.service = DOM_DEFAULT_SERVICE;
    list.methods[0].method_kind = METHOD_LAST_5;
    const MethodEntry extra{};
    EXPECT_EQ(MOR_SetMethodList("corp", &list, &extra, DOM_OP_SET), DOM_OK);
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    attributes.kind9_word = 77;
    EXPECT_EQ(MOR_SetAuthorAttr(9, "corp", &attributes, DOM_OP_SET), DOM_OK);

    const DomainPtr domain(MOR_GetDomain("corp", DOM_OP_GET, &result));
    ASSERT_TRUE(domain);
    EXPECT_EQ(domain->state, 0);
    EXPECT_EQ(domain->session_time, 60);
    EXPECT_EQ(domain->user_addr_type, 3u);
    EXPECT_EQ(domain->acct_dual_stack_mode, 2u);
    EXPECT_NE(domain->redirect_code, 0u);
    EXPECT_STREQ(domain->auth_fail_domain, "guest");
    EXPECT_STREQ(domain->auth_rd_fail_permit_domain, "guest");
    EXPECT_STREQ(domain->escape_recover.domain_name, "guest");
    EXPECT_EQ(domain->method_lists[AAA_TYPE_4][DOM_DEFAULT_SERVICE]->methods[0].method_kind,
              METHOD_LAST_5);
    EXPECT_EQ(domain->author_attr.kind9_word, 77u);

    EXPECT_EQ(MOR_DestroyDomainName("guest", &result), DOM_OK);
    EXPECT_EQ(result, DOM_DELCHK_PERMIT);
    EXPECT_EQ(MOR_DestroyDomainName("corp", &result), DOM_OK);
    EXPECT_EQ(result, DOM_OK);
    EXPECT_EQ(MOR_GetDomain("corp", DOM_OP_GET, &result), nullptr);
}

TEST_F(DaemonManagement, WalkCalls) {
    uint32_t result = 0;
    ASSERT_EQ(CreateDomain("zz"), DOM_OK);
    const DomainPtr first(MOR_GetNextDomain("", DOM_OP_GET_NEXT, &result));
    ASSERT_TRUE(first);
    EXPECT_STREQ(first->name, "system");
    DomainMibRow row{};
    EXPECT_EQ(MOR_GetDomainInfoTable("", 0, DOM_OP_GET_NEXT, &row, &result), DOM_OK);
    EXPECT_STREQ(row.domain_name, "zz");
    EXPECT_EQ(MOR_GetDomainInfoTable("system", 6, DOM_OP_GET, &row, &result), DOM_OK);
    EXPECT_STREQ(row.domain_name, "system");
}

TEST_F(DaemonManagement, AuthorizationProfileCalls) {
    uint32_t result = 99;
    char name[DOM_PROFILE_NAME_SIZE] = {};
    EXPECT_EQ(MOR_SetAaaAuthorProfile("Gold", DOM_OP_SET, &result, name), DOM_OK);
    EXPECT_STREQ(name, "Gold");
    EXPECT_EQ(MOR_SetAaaAuthorProfile("gold", DOM_OP_SET, &result, name), DOM_OK);
    EXPECT_EQ(result, DOM_AUTHOR_PROFILE_EXISTS);
    AuthorProfileMsg segment{7, "GOLD", "default", ""};
    EXPECT_EQ(MOR_SetDefaultAuthorSeg(&segment, DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_AUTHOR_OK);
    AuthorProfileMsg vpn{8, "gold", "segment", "blue"};
    EXPECT_EQ(MOR_SetVpnAuthorSeg(&vpn, DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_AUTHOR_OK);
    TLV_MSG* request = DOM_author_tlv_EncodeAuthorVpn(&vpn);
    EXPECT_EQ(MOR_AuthorSegMsgProc(request, DOM_OP_SET, &result), DOM_OK);
    TLV_Destroy(request);
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(DOM_OP_GET, &result), 1u);

    AuthorProfileMsg read{};
    EXPECT_EQ(MOR_GetAuthorPrfInfo("GOLD", DOM_OP_GET, &read, &result), DOM_OK);
    EXPECT_STREQ(read.profile_name, "Gold");
    EXPECT_STREQ(read.segment_name, "default");
    EXPECT_EQ(read.segment_id, 7u);
    EXPECT_EQ(MOR_GetAuthorPrfInfo("", DOM_OP_GET_NEXT, &read, &result), DOM_OK);
    EXPECT_STREQ(read.profile_name, "Gold");
    EXPECT_EQ(MOR_GetAuthorPrfInfo("Gold", DOM_OP_GET_NEXT, &read, &result), DOM_ERR_FAILED);
    EXPECT_EQ(result, DOM_AUTHOR_PROFILE_NOT_EXIST);
    EXPECT_EQ(MOR_GetAuthorVPNInfo("gold", "blue", DOM_OP_GET, &read, &result), DOM_OK);
    EXPECT_STREQ(read.vpn_name, "blue");
    EXPECT_EQ(read.segment_id, 8u);
    EXPECT_EQ(MOR_GetAuthorVPNInfo("", "", DOM_OP_GET_NEXT, &read, &result), DOM_OK);
    EXPECT_STREQ(read.vpn_name, "blue");

    EXPECT_EQ(MOR_SetVpnAuthorSeg(&vpn, DOM_OP_DELETE, &result), DOM_OK);
    EXPECT_EQ(MOR_SetAaaAuthorProfile("gold", DOM_OP_DELETE, &result, name), DOM_OK);
    EXPECT_STREQ(name, "Gold");
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(DOM_OP_GET, &result), 0u);
}

TEST_F(DaemonManagement, CriticalProfileCalls) {
    uint32_t result = 99;
    char name[DOM_PROFILE_NAME_SIZE] = {};
    EXPECT_EQ(MOR_SetAaaCriticalProfile("Gold", DOM_OP_SET, &result, name), DOM_OK);
    EXPECT_STREQ(name, "Gold");
    CriticalProfileMsg segment{7, "GOLD", "default", "", 70};
    EXPECT_EQ(MOR_SetDefaultCriticalSeg(&segment, DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_CRITICAL_OK);
    CriticalProfileMsg vpn{8, "gold", "segment", "blue", 80};
    EXPECT_EQ(MOR_SetVpnCriticalSeg(&vpn, DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_CRITICAL_OK);

    CriticalProfileMsg read{};
    EXPECT_EQ(MOR_GetCriticalPrfInfo("GOLD", DOM_OP_GET, &read, &result), DOM_OK);
    EXPECT_STREQ(read.profile_name, "Gold");
    EXPECT_EQ(read.segment_id, 7u);
    EXPECT_EQ(read.value16, 70);
    EXPECT_EQ(MOR_GetCriticalPrfInfo("Gold", DOM_OP_GET_NEXT, &read, &result), DOM_ERR_FAILED);
    EXPECT_EQ(result, DOM_CRITICAL_PROFILE_NOT_EXIST);
    EXPECT_EQ(MOR_GetCriticalVPNInfo("gold", "blue", DOM_OP_GET, &read, &result), DOM_OK);
    EXPECT_EQ(read.value16, 80);
    EXPECT_EQ(MOR_GetCriticalVPNInfo("", "", DOM_OP_GET_NEXT, &read, &result), DOM_OK);
    EXPECT_STREQ(read.vpn_name, "blue");

    EXPECT_EQ(MOR_SetVpnCriticalSeg(&vpn, DOM_OP_DELETE, &result), DOM_OK);
    EXPECT_EQ(MOR_SetDefaultCriticalSeg(&segment, DOM_OP_DELETE, &result), DOM_OK);
    EXPECT_EQ(MOR_GetCriticalPrfInfo("Gold", DOM_OP_GET, &read, &result), DOM_OK);
    EXPECT_EQ(read.segment_id, 0u);
    EXPECT_EQ(MOR_SetAaaCriticalProfile("GOLD", DOM_OP_DELETE, &result, name), DOM_OK);
    EXPECT_EQ(MOR_SetAaaCriticalProfile("GOLD", DOM_OP_DELETE, &result, name), DOM_OK);
    EXPECT_EQ(result, DOM_CRITICAL_PROFILE_NOT_EXIST);
}

TEST_F(DaemonManagement, DeviceCalls) {
    uint32_t result = 99;
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    EXPECT_EQ(MOR_SetDefaultDomain("corp", 0, DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(MOR_SetUnknownDomain("corp", DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_OK);
    EXPECT_EQ(MOR_SetDeviceID(42, &result), DOM_OK);
    EXPECT_EQ(MOR_SetSessionLimit(SESSION_CLASS_21, 7, &result), DOM_OK);
    EXPECT_EQ(MOR_SetAAADebugFlag(AAA_DBG_EVENT_BIT, DOM_OP_SET), DOM_OK);

    char name[DOM_NAME_SIZE] = {};
    uint32_t value_18 = 0;
    EXPECT_EQ(MOR_GetDefaultDomain(sizeof name, name, &value_18), DOM_OK);
    EXPECT_STREQ(name, "corp");
    char unknown[DOM_NAME_SIZE] = {};
    uint32_t device_id = 0;
    EXPECT_EQ(
        MOR_GetGlobalDomain(sizeof name, name, sizeof unknown, unknown, &device_id, &value_18),
        DOM_OK);
    EXPECT_STREQ(name, "corp");
    EXPECT_STREQ(unknown, "corp");
    EXPECT_EQ(device_id, 42u);
    SessionLimits limits{};
    EXPECT_EQ(MOR_GetXmlSessionLimit(&limits), DOM_OK);
    EXPECT_EQ(limits.class_21, 7u);
    uint32_t flag = 0;
    EXPECT_EQ(MOR_GetAAADebugFlag(&flag), DOM_OK);
    EXPECT_EQ(flag & AAA_DBG_EVENT_BIT, AAA_DBG_EVENT_BIT);
}

TEST_F(DaemonDurability, AnsweredChangesOfSixteenClientsSurviveSigkill) {
    constexpr size_t kClients = 16;
    const auto name_of = [](size_t client) { return "client" + std::to_string(client); };
    for (size_t client = 0; client < kClients; ++client) {
        ASSERT_EQ(CreateDomain(name_of(client)), DOM_OK);
    }
    std::atomic<bool> stop{false};
    std::atomic<uint32_t> total{0};
    std::vector<uint16_t> answered(kClients, 0);
    std::vector<std::thread> clients;
    for (size_t client = 0; client < kClients; ++client) {
        clients.emplace_back([&, client] {
            for (uint16_t value = 1; value < 60000 && !stop; ++value) {
                const std::string name = name_of(client);
                if (Change(DOM_EncodeSessionTime(name.c_str(), value)) != DOM_OK) break;
                answered[client] = value;
                ++total;
            }
        });
    }
    while (total < 20 * kClients) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    daemon_.Kill();
    stop = true;
    for (std::thread& client : clients) client.join();

    ASSERT_TRUE(daemon_.Start());
    for (size_t client = 0; client < kClients; ++client) {
        const DomainPtr domain = GetDomain(name_of(client));
        ASSERT_TRUE(domain);
        // The one change that was under way may be there, too.
        EXPECT_GE(domain->session_time, answered[client]);
        EXPECT_LE(domain->session_time, answered[client] + 1);
    }
}

}  // namespace
