// What survives the end of the daemon, however it ends.
#include <aaadom/db_layout.h>
#include <platform/dbm.h>
#include <signal.h>
#include <sys/resource.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "daemon_process.h"
#include "stopped_database.h"

using namespace daemon_test;

namespace {

using DaemonRestart = DaemonTest;

MethodList AuthenticationList() {
    MethodList list{};
    list.aaa_type = AAA_TYPE_0;
    list.service = DOM_DEFAULT_SERVICE;
    list.methods[0].method_kind = METHOD_SCHEME_2;
    snprintf(list.methods[0].scheme_name, sizeof list.methods[0].scheme_name, "radius-main");
    list.methods[1].method_kind = METHOD_DEFAULT_4;
    return list;
}

TEST_F(DaemonRestart, EverySettingSurvivesSigkill) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(CreateDomain("guest"), DOM_OK);
    const MethodList list = AuthenticationList();
    const MethodEntry no_extra{};
    ASSERT_EQ(Change(DOM_EncodeMethList("corp", &list, &no_extra)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeState("corp", 0)), DOM_OK);
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    snprintf(attributes.ita_policy_name, sizeof attributes.ita_policy_name, "monthly");
    ASSERT_EQ(Change(DOM_EncodeAuthorAttr(12, "corp", &attributes)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeSessionTime("corp", 3600)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeUserAddrType("corp", 2)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAcctDualStackMode("corp", 2)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeRedirectMoveTemporarily("corp")), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthFailDomain("corp", "guest", 0, 1)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("corp", "guest", 0)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthenEscapeRecover("corp", 1, "guest", 1, 0)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("corp", 0)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeUnknownDomain("guest")), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeDeviceID(4711)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeSessionLimit(SESSION_CLASS_21, 5000)), DOM_OK);

    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);

    const DomainPtr corp = GetDomain("corp");
    ASSERT_TRUE(corp);
    EXPECT_EQ(corp->state, 0);
    ASSERT_NE(corp->method_lists[AAA_TYPE_0][DOM_DEFAULT_SERVICE], nullptr);
    EXPECT_STREQ(corp->method_lists[AAA_TYPE_0][DOM_DEFAULT_SERVICE]->methods[0].scheme_name,
                 "radius-main");
    EXPECT_STREQ(corp->author_attr.ita_policy_name, "monthly");
    EXPECT_EQ(corp->session_time, 3600);
    EXPECT_EQ(corp->user_addr_type, 2u);
    EXPECT_EQ(corp->acct_dual_stack_mode, 2u);
    EXPECT_EQ(corp->redirect_code, 1u);
    EXPECT_STREQ(corp->auth_fail_domain, "guest");
    EXPECT_STREQ(corp->auth_rd_fail_permit_domain, "guest");
    EXPECT_STREQ(corp->escape_recover.domain_name, "guest");
    char default_name[DOM_NAME_SIZE], unknown_name[DOM_NAME_SIZE];
    uint32_t device_id = 0, value_18 = 0;
    ASSERT_EQ(MOR_GetGlobalDomain(sizeof default_name, default_name, sizeof unknown_name,
                                  unknown_name, &device_id, &value_18),
              DOM_OK);
    EXPECT_STREQ(default_name, "corp");
    EXPECT_STREQ(unknown_name, "guest");
    EXPECT_EQ(device_id, 4711u);
    SessionLimits limits{};
    ASSERT_EQ(MOR_GetXmlSessionLimit(&limits), DOM_OK);
    EXPECT_EQ(limits.class_21, 5000u);
}

TEST_F(DaemonRestart, EveryUndoSurvivesSigkill) {
    const auto fresh = WholeConfiguration();
    const auto set_and_undo = [](TLV_MSG* set, TLV_MSG* undo) {
        EXPECT_EQ(Change(set), DOM_OK);
        EXPECT_EQ(Change(undo, DOM_OP_DELETE), DOM_OK);
    };
    set_and_undo(DOM_EncodeDomainName("gone"), DOM_EncodeDomainName("gone"));
    set_and_undo(DOM_EncodeDefaultDomain("other", 0), DOM_EncodeDefaultDomain("other", 0));
    set_and_undo(DOM_EncodeUnknownDomain("other"), DOM_EncodeUnknownDomain("other"));
    set_and_undo(DOM_EncodeDeviceID(5), DOM_EncodeDeviceID(5));
    set_and_undo(DOM_EncodeState("system", 0), DOM_EncodeState("system", 0));
    set_and_undo(DOM_EncodeSessionTime("system", 5), DOM_EncodeSessionTime("system", 5));
    set_and_undo(DOM_EncodeRedirectMoveTemporarily("system"),
                 DOM_EncodeRedirectMoveTemporarily("system"));
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), fresh);
}

// A domain's slot is its index in the database. Loading the remaining domains into the first empty
// slots once made the next change of one overwrite another.
TEST_F(DaemonRestart, HolesInTheTableLoseNoDomain) {
    for (const char* name : {"a", "b", "c", "d"}) ASSERT_EQ(CreateDomain(name), DOM_OK);
    ASSERT_EQ(DeleteDomain("b"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(Change(DOM_EncodeSessionTime("d", 44)), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), (std::vector<std::string>{"a", "c", "d", "system"}));
    EXPECT_EQ(CountDomains(), 4u);
    ASSERT_TRUE(GetDomain("d"));
    EXPECT_EQ(GetDomain("d")->session_time, 44);

    ASSERT_EQ(CreateDomain("e"), DOM_OK);  // takes the hole
    ASSERT_EQ(DeleteDomain("c"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeSessionTime("e", 55)), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), (std::vector<std::string>{"a", "d", "e", "system"}));
    EXPECT_EQ(GetDomain("e")->session_time, 55);
    EXPECT_EQ(GetDomain("d")->session_time, 44);
}

TEST_F(DaemonRestart, SlotsOfBothRolesAgreeAfterHoles) {
    for (const char* name : {"a", "b", "c", "d"}) ASSERT_EQ(CreateDomain(name), DOM_OK);
    ASSERT_EQ(DeleteDomain("a"), DOM_OK);
    ASSERT_EQ(DeleteDomain("c"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(CreateDomain("e"), DOM_OK);
    std::string previous;
    for (const std::string& name : ListDomains()) {
        uint32_t result = 0;
        const DomainPtr working(MOR_GetNextDomain(previous.c_str(), DOM_OP_GET_NEXT, &result));
        const DomainPtr configuration = GetDomain(name);
        ASSERT_TRUE(working && configuration);
        EXPECT_EQ(working->slot, configuration->slot) << name;
        previous = name;
    }
}

TEST_F(DaemonRestart, WhatWasAnsweredBeforeSigkillIsThere) {
    std::atomic<bool> stop{false};
    std::vector<std::vector<std::string>> answered(4);
    std::vector<std::thread> clients;
    for (size_t client = 0; client < answered.size(); ++client) {
        clients.emplace_back([&, client] {
            for (int i = 0; i < 200 && !stop; ++i) {
                const std::string name = "k" + std::to_string(client) + "-" + std::to_string(i);
                if (CreateDomain(name) != DOM_OK) break;
                answered[client].push_back(name);
            }
        });
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    daemon_.Kill();
    stop = true;
    for (std::thread& client : clients) client.join();
    ASSERT_TRUE(daemon_.Start());
    size_t total = 0;
    for (const auto& names : answered) {
        for (const std::string& name : names) EXPECT_TRUE(GetDomain(name)) << name;
        total += names.size();
    }
    EXPECT_GT(total, 0u);
}

TEST_F(DaemonRestart, LimitsThatWereNeverSavedKeepTheirInitialValue) {
    SessionLimits before{};
    ASSERT_EQ(MOR_GetXmlSessionLimit(&before), DOM_OK);
    EXPECT_EQ(before.class_19, 0x20202020u);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    SessionLimits after{};
    ASSERT_EQ(MOR_GetXmlSessionLimit(&after), DOM_OK);
    EXPECT_EQ(after.class_19, 0x20202020u);
}

class DatabaseOfStoppedDaemon : public StoppedDatabase {
  public:
    using StoppedDatabase::StoppedDatabase;

    std::vector<uint8_t> Domain(uint32_t index) {
        std::vector<uint8_t> bytes(65536);
        const int32_t length =
            DBM_GetArray(Handle(), DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                         static_cast<uint32_t>(bytes.size()), bytes.data());
        bytes.resize(length > 0 ? static_cast<size_t>(length) : 0);
        return bytes;
    }
    void SetDomain(uint32_t index, const std::vector<uint8_t>& bytes) {
        EXPECT_GE(DBM_SetArray(Handle(), DOM_DB_KEY_DOMAINS, DOM_DB_KEY_DOMAINS_LEN, index,
                               static_cast<uint32_t>(bytes.size()), bytes.data(), DOM_DB_DOMAIN),
                  0);
    }
};

TEST_F(DaemonRestart, StaleCopyAtAHigherIndexIsRemoved) {
    ASSERT_EQ(CreateDomain("a"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeSessionTime("a", 1)), DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        DatabaseOfStoppedDaemon database(daemon_);
        database.SetDomain(9, database.Domain(1));
    }
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), (std::vector<std::string>{"a", "system"}));
    ASSERT_EQ(DeleteDomain("a"), DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        DatabaseOfStoppedDaemon database(daemon_);
        EXPECT_TRUE(database.Domain(9).empty());
    }
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), std::vector<std::string>{"system"});
}

TEST_F(DaemonRestart, ElementThatIsNoDomainIsSkippedAndItsBytesAreKept) {
    ASSERT_EQ(CreateDomain("a"), DOM_OK);
    ASSERT_EQ(CreateDomain("b"), DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    const std::vector<uint8_t> garbage = {'n', 'o', ' ', 'd', 'o', 'm', 'a', 'i', 'n'};
    {
        DatabaseOfStoppedDaemon database(daemon_);
        database.SetDomain(1, garbage);
    }
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), (std::vector<std::string>{"b", "system"}));
    ASSERT_TRUE(GetDomain("b"));
    std::ifstream file(daemon_.StateDir() + "/undecodable-domain-1.bin", std::ios::binary);
    const std::vector<uint8_t> kept((std::istreambuf_iterator<char>(file)), {});
    EXPECT_EQ(kept, garbage);
}

// The daemon's files may not grow any more: the database cannot commit.
TEST_F(DaemonRestart, ChangeThatCannotBeSavedIsTakenBackInBothRoles) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    const auto before = WholeConfiguration();
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);

    EXPECT_EQ(Change(DOM_EncodeState("corp", 0)), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(CreateDomain("other"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(DeleteDomain("corp"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(CreateDomain("no/name"), AAAD_ERR_DOMAIN_NAME);
    EXPECT_EQ(WholeConfiguration(), before);

    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    EXPECT_EQ(Change(DOM_EncodeState("corp", 0)), DOM_OK);
    const auto after = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), after);
}

}  // namespace
