// NAS-ID profiles, which the working role alone holds, and their place in the daemon's transaction.
#include <platform/aaa_tlv.h>
#include <sys/resource.h>

#include <thread>

#include "daemon_log.h"
#include "daemon_process.h"
#include "stopped_database.h"

using namespace daemon_test;

namespace {

using DaemonNasId = DaemonTest;

struct ProfileAnswer {
    uint32_t result = kNoReply;
    std::string name;
    bool operator==(const ProfileAnswer&) const = default;
};

ProfileAnswer ChangeProfile(const std::string& name, uint32_t operation) {
    ProfileAnswer answer;
    char stored[DOM_NASID_NAME_SIZE] = {};
    EXPECT_EQ(MOR_SetAaaNasIdProfile(name.c_str(), operation, &answer.result, stored), DOM_OK);
    answer.name = stored;
    return answer;
}

uint32_t Bind(const std::string& profile, uint16_t vlan, const std::string& nas_id,
              uint32_t operation = DOM_OP_SET) {
    return MOR_SetNasIdBindVlanId(profile.c_str(), nas_id.c_str(), vlan, operation);
}

/// "PROFILE VLAN NAS-ID" of the answer to a question of code 17, "" when it was refused.
std::string Binding(const std::string& profile, uint16_t vlan, uint32_t operation = DOM_OP_GET) {
    const Answer answer = Ask(DOM_EncodeNasidBindVlanId(profile.c_str(), "", vlan), operation);
    char name[DOM_NASID_NAME_SIZE] = {};
    char nas_id[DOM_NASID_NAME_SIZE] = {};
    uint16_t bound = 0;
    if (answer.kind != DOM_REPLY_KIND_DATA ||
        DOM_DecodeNasIdBindVlanId(answer.body.get(), name, nas_id, &bound) != DOM_OK) {
        return "";
    }
    return std::string(name) + " " + std::to_string(bound) + " " + nas_id;
}

/// All of a profile in the order of the walk.
std::vector<std::string> Bindings(const std::string& profile) {
    std::vector<std::string> all;
    TLV_MSG* first = CodeAlone(DOM_MSG_NASID_BIND);
    EXPECT_EQ(AAA_AppendStrTlvData(first, DOM_TLV_NASID_PROFILE, profile.c_str()), 0u);
    Answer answer = Ask(first, DOM_OP_GET_NEXT);
    while (answer.kind == DOM_REPLY_KIND_DATA && all.size() <= 65536) {
        char name[DOM_NASID_NAME_SIZE] = {};
        char nas_id[DOM_NASID_NAME_SIZE] = {};
        uint16_t vlan = 0;
        EXPECT_EQ(DOM_DecodeNasIdBindVlanId(answer.body.get(), name, nas_id, &vlan), DOM_OK);
        all.push_back(std::to_string(vlan) + " " + nas_id);
        answer = Ask(DOM_EncodeNasidBindVlanId(profile.c_str(), "", vlan), DOM_OP_GET_NEXT);
    }
    EXPECT_EQ(ResultOf(answer), static_cast<uint32_t>(DOM_WALK_NONE));
    return all;
}

TEST_F(DaemonNasId, ProfileAnswersCarryTheStoredSpelling) {
    EXPECT_EQ(ChangeProfile("Branch", DOM_OP_SET), (ProfileAnswer{DOM_NASID_OK, "Branch"}));
    EXPECT_EQ(ChangeProfile("BRANCH", DOM_OP_SET), (ProfileAnswer{DOM_NASID_UNCHANGED, "Branch"}));
    EXPECT_EQ(ChangeProfile("other", DOM_OP_DELETE), (ProfileAnswer{DOM_NASID_NOT_FOUND, "other"}));
    EXPECT_EQ(ChangeProfile("bRANCH", DOM_OP_DELETE), (ProfileAnswer{DOM_NASID_OK, "Branch"}));
    EXPECT_TRUE(ListNasIdProfiles().empty());
}

TEST_F(DaemonNasId, NameStandsInFrontOfTheResult) {
    const Answer answer = Ask(DOM_EncodeNasIdProfile("Branch"), DOM_OP_SET);
    ASSERT_EQ(answer.kind, DOM_REPLY_KIND_RESULT);
    TLV_ITER* first = TLV_GetFirst(answer.body.get());
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(TLV_GetTypeByIterator(answer.body.get(), first), DOM_TLV_NASID_PROFILE);
    TLV_ITER* second = TLV_GetNext(answer.body.get(), first);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(TLV_GetTypeByIterator(answer.body.get(), second), DOM_TLV_RESULT);
}

TEST_F(DaemonNasId, BindingResults) {
    EXPECT_EQ(Bind("branch", 10, "nas-a"), DOM_NASID_FAILED);
    ASSERT_EQ(ChangeProfile("Branch", DOM_OP_SET).result, DOM_NASID_OK);
    EXPECT_EQ(Bind("branch", 10, "nas-a"), DOM_NASID_OK);
    EXPECT_EQ(Bind("BRANCH", 10, "nas-a"), DOM_NASID_UNCHANGED);
    EXPECT_EQ(Binding("bRaNcH", 10), "Branch 10 nas-a");
    EXPECT_EQ(Bind("branch", 10, "nas-b"), DOM_NASID_OK);
    EXPECT_EQ(Binding("branch", 10), "Branch 10 nas-b");
    EXPECT_EQ(Bind("branch", 10, "nas-a", DOM_OP_DELETE), DOM_NASID_NOT_FOUND);
    EXPECT_EQ(Bind("branch", 11, "nas-b", DOM_OP_DELETE), DOM_NASID_NOT_FOUND);
    EXPECT_EQ(Binding("branch", 11), "");
    EXPECT_EQ(Bind("BRANCH", 10, "nas-b", DOM_OP_DELETE), DOM_NASID_OK);
    EXPECT_EQ(Binding("branch", 10), "");
}

TEST_F(DaemonNasId, UnknownProfileIsNotMadeByABinding) {
    EXPECT_EQ(Bind("nowhere", 1, "nas"), DOM_NASID_FAILED);
    EXPECT_TRUE(ListNasIdProfiles().empty());
    EXPECT_EQ(ChangeProfile("nowhere", DOM_OP_DELETE).result, DOM_NASID_NOT_FOUND);
}

TEST_F(DaemonNasId, DeletedProfileTakesBindingsOfEverySpellingAlong) {
    ASSERT_EQ(ChangeProfile("Branch", DOM_OP_SET).result, DOM_NASID_OK);
    ASSERT_EQ(Bind("branch", 1, "a"), DOM_NASID_OK);
    ASSERT_EQ(Bind("BRANCH", 2, "b"), DOM_NASID_OK);
    ASSERT_EQ(ChangeProfile("branch", DOM_OP_DELETE).result, DOM_NASID_OK);
    ASSERT_EQ(ChangeProfile("Branch", DOM_OP_SET).result, DOM_NASID_OK);
    EXPECT_EQ(Binding("Branch", 1), "");
    EXPECT_EQ(Binding("Branch", 2), "");
    EXPECT_TRUE(Bindings("Branch").empty());
}

TEST_F(DaemonNasId, TextsThatWouldBeCutAreRefused) {
    const std::string longest(31, 'p');
    ASSERT_EQ(ChangeProfile(longest, DOM_OP_SET).result, DOM_NASID_OK);
    EXPECT_EQ(Change(DOM_EncodeNasIdProfile((longest + "p").c_str()), DOM_OP_DELETE),
              AAAD_ERR_MALFORMED);
    EXPECT_EQ(Bind(longest + "p", 1, "nas"), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Bind(longest, 1, std::string(32, 'n')), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Bind(longest, 1, std::string(31, 'n')), DOM_NASID_OK);
    EXPECT_EQ(ChangeProfile("", DOM_OP_SET).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(ListNasIdProfiles(), std::vector<std::string>{longest});
}

TEST_F(DaemonNasId, BindingWithoutAVlanIsRefused) {
    ASSERT_EQ(ChangeProfile("p", DOM_OP_SET).result, DOM_NASID_OK);
    TLV_MSG* binding = CodeAlone(DOM_MSG_NASID_BIND);
    ASSERT_EQ(AAA_AppendStrTlvData(binding, DOM_TLV_NASID_PROFILE, "p"), 0u);
    ASSERT_EQ(AAA_AppendStrTlvData(binding, DOM_TLV_NASID, "nas"), 0u);
    EXPECT_EQ(Change(binding), AAAD_ERR_MALFORMED);
    EXPECT_TRUE(Bindings("p").empty());
}

TEST_F(DaemonNasId, WalksAscendAndReachEveryBinding) {
    for (const char* name : {"b", "B2", "a"}) {
        ASSERT_EQ(ChangeProfile(name, DOM_OP_SET).result, DOM_NASID_OK);
    }
    EXPECT_EQ(ListNasIdProfiles(), (std::vector<std::string>{"B2", "a", "b"}));
    std::vector<std::string> expected;
    // More than the reply about a profile carries, with both ends of the numbers.
    for (const int vlan : {65535, 0}) ASSERT_EQ(Bind("a", static_cast<uint16_t>(vlan), "end"), 0u);
    expected.push_back("0 end");
    for (int vlan = 300; vlan < 900; ++vlan) {
        ASSERT_EQ(Bind("a", static_cast<uint16_t>(vlan), "n"), DOM_NASID_OK);
        expected.push_back(std::to_string(vlan) + " n");
    }
    expected.push_back("65535 end");
    EXPECT_EQ(Bindings("A"), expected);
    const Answer profile = Ask(DOM_EncodeNasIdProfile("A"), DOM_OP_GET);
    ASSERT_EQ(profile.kind, DOM_REPLY_KIND_DATA);
    int in_reply = 0;
    TLV_MSG* body = profile.body.get();
    for (TLV_ITER* it = TLV_GetFirst(body); it != nullptr; it = TLV_GetNext(body, it)) {
        in_reply += TLV_GetTypeByIterator(body, it) == DOM_TLV_NASID_BINDING;
    }
    EXPECT_EQ(in_reply, 512);
    EXPECT_EQ(ResultOf(Ask(DOM_EncodeNasIdProfile("c"), DOM_OP_GET)), AAAD_ERR_NO_OBJECT);
}

TEST_F(DaemonNasId, EverythingSurvivesSigkill) {
    ASSERT_EQ(ChangeProfile("Branch", DOM_OP_SET).result, DOM_NASID_OK);
    ASSERT_EQ(ChangeProfile("gone", DOM_OP_SET).result, DOM_NASID_OK);
    ASSERT_EQ(Bind("BRANCH", 10, "nas-a"), DOM_NASID_OK);
    ASSERT_EQ(Bind("branch", 10, "nas-b"), DOM_NASID_OK);
    ASSERT_EQ(Bind("branch", 4094, "nas-c"), DOM_NASID_OK);
    ASSERT_EQ(Bind("branch", 20, "nas-d"), DOM_NASID_OK);
    ASSERT_EQ(Bind("branch", 20, "nas-d", DOM_OP_DELETE), DOM_NASID_OK);
    ASSERT_EQ(Bind("gone", 1, "nas-e"), DOM_NASID_OK);
    ASSERT_EQ(ChangeProfile("gone", DOM_OP_DELETE).result, DOM_NASID_OK);
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(Bindings("Branch"), (std::vector<std::string>{"10 nas-b", "4094 nas-c"}));
    EXPECT_EQ(Binding("branch", 10), "Branch 10 nas-b");
    EXPECT_EQ(ChangeProfile("BRANCH", DOM_OP_SET).result, DOM_NASID_UNCHANGED);
    EXPECT_EQ(Bind("branch", 10, "nas-b"), DOM_NASID_UNCHANGED);
    EXPECT_EQ(ChangeProfile("branch", DOM_OP_DELETE).result, DOM_NASID_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(ListNasIdProfiles().empty());
}

TEST_F(DaemonNasId, OneBatchWithDomainChangesIsThereAfterSigkill) {
    uint32_t of_domain = kNoReply;
    uint32_t of_other = kNoReply;
    ProfileAnswer of_profile;
    AtOnce(daemon_, {[&] { of_domain = CreateDomain("corp"); },
                     [&] { of_profile = ChangeProfile("Branch", DOM_OP_SET); },
                     [&] { of_other = CreateDomain("guest"); }});
    EXPECT_EQ(of_domain, DOM_OK);
    EXPECT_EQ(of_other, DOM_OK);
    EXPECT_EQ(of_profile, (ProfileAnswer{DOM_NASID_OK, "Branch"}));
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), (std::vector<std::string>{"corp", "guest", "system"}));
    EXPECT_EQ(ListNasIdProfiles(), std::vector<std::string>{"Branch"});
}

// The database cannot grow, so the one commit fails: neither object may be there, in memory or on
// the disk.
TEST_F(DaemonNasId, BatchThatCannotBeSavedLeavesNeitherDomainNorProfile) {
    ASSERT_EQ(ChangeProfile("kept", DOM_OP_SET).result, DOM_NASID_OK);
    ASSERT_EQ(Bind("kept", 5, "nas"), DOM_NASID_OK);
    const auto before = WholeConfiguration();
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);
    uint32_t of_domain = kNoReply;
    uint32_t of_binding = kNoReply;
    ProfileAnswer of_profile;
    ProfileAnswer of_deletion;
    AtOnce(daemon_, {[&] { of_domain = CreateDomain("corp"); },
                     [&] { of_profile = ChangeProfile("Branch", DOM_OP_SET); },
                     [&] { of_binding = Bind("kept", 5, "other"); }});
    of_deletion = ChangeProfile("kept", DOM_OP_DELETE);
    EXPECT_EQ(of_domain, AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(of_profile.result, AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(of_binding, AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(of_deletion.result, AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(Binding("kept", 5), "kept 5 nas");

    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    EXPECT_EQ(ChangeProfile("Branch", DOM_OP_SET).result, DOM_NASID_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListNasIdProfiles(), (std::vector<std::string>{"Branch", "kept"}));
    EXPECT_EQ(Binding("kept", 5), "kept 5 nas");
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(DaemonNasId, ManyClientsAtOnceEachReadTheirOwnBindings) {
    constexpr int kClients = 6;
    constexpr uint16_t kEach = 20;
    ASSERT_EQ(ChangeProfile("shared", DOM_OP_SET).result, DOM_NASID_OK);
    std::vector<int> failures(kClients, 0);
    std::vector<std::thread> clients;
    for (int client = 0; client < kClients; ++client) {
        clients.emplace_back([client, &failures] {
            for (uint16_t i = 0; i < kEach; ++i) {
                const auto vlan = static_cast<uint16_t>(client * kEach + i);
                failures[client] += Bind("SHARED", vlan, "nas") != DOM_NASID_OK;
                failures[client] +=
                    Binding("shared", vlan) != "shared " + std::to_string(vlan) + " nas";
                failures[client] += Change(DOM_EncodeSessionTime("system", vlan)) != DOM_OK;
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(failures, std::vector<int>(kClients, 0));
    EXPECT_EQ(Bindings("shared").size(), size_t{kClients} * kEach);
}

using DaemonDamagedNasIds = DaemonTestWithLog;

// A key in the place of a NAS-ID profile that was no list ended the daemon at each start: what
// could not be read there was taken for a want of memory.
TEST_F(DaemonDamagedNasIds, AreNamedInTheLogAndTheRestIsServed) {
    ASSERT_EQ(ChangeProfile("good", DOM_OP_SET).result, DOM_NASID_OK);
    ASSERT_EQ(Bind("good", 10, "nas-a"), DOM_NASID_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        database.SetBinary("profilename_branch", "x", DOM_DB_NASID_VLAN);
        database.SetBinary("somethingelse", "x", DOM_DB_NASID_VLAN);
        const std::string long_name(DOM_NASID_NAME_SIZE, 'n');
        database.SetBinary("profilename_" + long_name, "x", DOM_DB_NASID_VLAN);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(ListNasIdProfiles(), std::vector<std::string>{"good"});
    EXPECT_EQ(Bindings("good"), std::vector<std::string>{"10 nas-a"});
    EXPECT_EQ(LinesWith("\"profilename_branch\""), 1);
    EXPECT_EQ(LinesWith("\"somethingelse\""), 1);
    EXPECT_EQ(LinesWith("\"profilename_nnn"), 1);
}

// The log line says so.
TEST_F(DaemonDamagedNasIds, AreMendedByDeletingAndSettingTheProfileAnew) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        database.SetBinary("profilename_branch", "x", DOM_DB_NASID_VLAN);
    }
    ASSERT_TRUE(StartWithLog());
    (void)ChangeProfile("branch", DOM_OP_SET);
    EXPECT_EQ(ChangeProfile("branch", DOM_OP_DELETE).result, DOM_NASID_OK);
    ASSERT_EQ(ChangeProfile("branch", DOM_OP_SET).result, DOM_NASID_OK);
    ASSERT_EQ(Bind("branch", 10, "nas-a"), DOM_NASID_OK);
    daemon_.Kill();
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(Bindings("branch"), std::vector<std::string>{"10 nas-a"});
}

}  // namespace
