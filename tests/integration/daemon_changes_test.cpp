// What a client may rely on when the daemon has answered.
#include <platform/aaa_tlv.h>
#include <thread>

#include "daemon_process.h"

using namespace daemon_test;

namespace {

using DaemonChanges = DaemonTest;
using DaemonDeletion = DaemonTest;
using DaemonNames = DaemonTest;

TEST_F(DaemonChanges, EmptyDatabaseGetsTheSystemDomainAsDefault) {
    EXPECT_EQ(ListDomains(), std::vector<std::string>{"system"});
    char name[DOM_NAME_SIZE] = {};
    uint32_t value_18 = 0;
    ASSERT_EQ(MOR_GetDefaultDomain(sizeof name, name, &value_18), DOM_OK);
    EXPECT_STREQ(name, "system");
}

TEST_F(DaemonChanges, OneChangeShowsInBothRoles) {
    uint32_t result = kNoReply;
    ASSERT_EQ(MOR_SetDomainName("corp", DOM_OP_SET, &result), DOM_OK);
    EXPECT_EQ(result, DOM_OK);
    EXPECT_EQ(MOR_SetState("corp", 0), DOM_OK);

    const DomainPtr of_configuration = GetDomain("corp");
    ASSERT_TRUE(of_configuration);
    EXPECT_EQ(of_configuration->state, 0);
    const DomainPtr of_working(MOR_GetNextDomain("", DOM_OP_GET_NEXT, &result));
    ASSERT_TRUE(of_working);
    EXPECT_STREQ(of_working->name, "corp");
    EXPECT_EQ(of_working->state, 0);
    EXPECT_EQ(CountDomains(), 2u);
}

TEST_F(DaemonChanges, CreatingAnExistingDomainChangesNothing) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    EXPECT_EQ(CreateDomain("CORP"), DOM_OK);
    EXPECT_EQ(CountDomains(), 2u);
}

TEST_F(DaemonChanges, SettingOfAnUnknownDomainIsRefused) {
    EXPECT_EQ(Change(DOM_EncodeState("nowhere", 0)), DOM_ERR_FAILED);
    EXPECT_EQ(Change(DOM_EncodeUserAddrType("nowhere", 2)), DOM_ERR_FAILED);
    EXPECT_EQ(Change(DOM_EncodeSessionTime("nowhere", 2)), DOM_ERR_FAILED);
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(DaemonChanges, ManyClientsAtOnceEachReadTheirOwnWrites) {
    constexpr int kClients = 8;
    constexpr int kEach = 25;
    std::vector<int> failures(kClients, 0);
    std::vector<std::thread> clients;
    for (int client = 0; client < kClients; ++client) {
        clients.emplace_back([client, &failures] {
            for (int i = 0; i < kEach; ++i) {
                const std::string name = "c" + std::to_string(client) + "-" + std::to_string(i);
                failures[client] += CreateDomain(name) != DOM_OK;
                failures[client] += Change(DOM_EncodeSessionTime(name.c_str(), 77)) != DOM_OK;
                const DomainPtr domain = GetDomain(name);
                failures[client] += !domain || domain->session_time != 77;
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(failures, std::vector<int>(kClients, 0));
    EXPECT_EQ(CountDomains(), 1u + kClients * kEach);
    EXPECT_EQ(ListDomains().size(), 1u + kClients * kEach);
}

TEST_F(DaemonChanges, TheTableHolds1024DomainsAndRefusesAnother) {
    for (int i = 1; i < DOM_MAX_DOMAINS; ++i) {
        ASSERT_EQ(CreateDomain("d" + std::to_string(i)), DOM_OK) << i;
    }
    EXPECT_EQ(CountDomains(), 1024u);
    EXPECT_EQ(CreateDomain("one-more"), DOM_ERR_FAILED);
    EXPECT_EQ(CountDomains(), 1024u);
    EXPECT_FALSE(GetDomain("one-more"));

    // A full table still takes changes, and a deletion makes room again.
    EXPECT_EQ(Change(DOM_EncodeState("d1023", 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("d7"), DOM_OK);
    EXPECT_EQ(CreateDomain("one-more"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(CountDomains(), 1024u);
    EXPECT_TRUE(GetDomain("one-more"));
    EXPECT_FALSE(GetDomain("d7"));
}

TEST_F(DaemonChanges, AWholeRecordReplacesTheDomainOfItsName) {
    ASSERT_EQ(CreateDomain("a"), DOM_OK);
    ASSERT_EQ(CreateDomain("b"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeSessionTime("b", 9)), DOM_OK);
    Answer record = Ask(DOM_EncodeDomainName("b"), DOM_OP_GET);
    ASSERT_EQ(record.kind, DOM_REPLY_KIND_DATA);
    ASSERT_EQ(Change(DOM_EncodeSessionTime("b", 0)), DOM_OK);
    ASSERT_EQ(DeleteDomain("a"), DOM_OK);

    EXPECT_EQ(Change(record.body.release()), DOM_OK);
    ASSERT_TRUE(GetDomain("b"));
    EXPECT_EQ(GetDomain("b")->session_time, 9);
    EXPECT_EQ(CountDomains(), 2u);

    // It moved to the slot that "a" had; no copy of its old element may come back.
    ASSERT_EQ(DeleteDomain("b"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(ListDomains(), std::vector<std::string>{"system"});
}

TEST_F(DaemonChanges, DebugFlagIsSetAndCleared) {
    ASSERT_EQ(Change(DOM_EncodeDebugFlag(3)), DOM_OK);
    uint32_t flag = 0;
    ASSERT_EQ(MOR_GetAAADebugFlag(&flag), DOM_OK);
    EXPECT_EQ(flag, 3u);
    ASSERT_EQ(Change(DOM_EncodeDebugFlag(1), DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(MOR_GetAAADebugFlag(&flag), DOM_OK);
    EXPECT_EQ(flag, 2u);
}

TEST_F(DaemonNames, ForbiddenCharactersAreRefused) {
    for (const char character : std::string("\\/:*?\"<>|@")) {
        EXPECT_EQ(CreateDomain(std::string("a") + character), AAAD_ERR_DOMAIN_NAME) << character;
    }
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(DaemonNames, EmptyNameIsRefused) {
    EXPECT_EQ(CreateDomain(""), AAAD_ERR_DOMAIN_NAME);
}

TEST_F(DaemonNames, NameOf255CharactersFitsAndLongerOnesAreRefused) {
    const std::string longest(255, 'n');
    EXPECT_EQ(CreateDomain(longest), DOM_OK);
    EXPECT_TRUE(GetDomain(longest));
    EXPECT_EQ(CreateDomain(longest + "n"), AAAD_ERR_DOMAIN_NAME);
    EXPECT_FALSE(GetDomain(longest + "n"));
    EXPECT_EQ(CountDomains(), 2u);
}

// Cut to 255 characters the name would be that of another domain.
TEST_F(DaemonNames, TooLongNameReachesNoOtherDomain) {
    const std::string longest(255, 'n');
    ASSERT_EQ(CreateDomain(longest), DOM_OK);
    EXPECT_EQ(Change(DOM_EncodeState((longest + "n").c_str(), 0)), AAAD_ERR_DOMAIN_NAME);
    EXPECT_EQ(DeleteDomain(longest + "n"), DOM_DELCHK_NO_DOMAIN);
    ASSERT_TRUE(GetDomain(longest));
    EXPECT_EQ(GetDomain(longest)->state, DOM_DEF_STATE);
}

TEST_F(DaemonNames, MessageWithTwoNamesIsRefused) {
    TLV_MSG* body = DOM_EncodeDomainName("harmless");
    ASSERT_EQ(AAA_AppendStrTlvData(body, DOM_TLV_DOMAIN_NAME, "system"), 0u);
    EXPECT_EQ(Change(body, DOM_OP_DELETE), AAAD_ERR_MALFORMED);
    EXPECT_TRUE(GetDomain("system"));
}

TEST_F(DaemonDeletion, UnknownDomain) {
    EXPECT_EQ(DeleteDomain("nowhere"), DOM_DELCHK_NO_DOMAIN);
}

TEST_F(DaemonDeletion, SystemDomain) {
    EXPECT_EQ(DeleteDomain("system"), DOM_DELCHK_SYSTEM);
    EXPECT_TRUE(GetDomain("system"));
}

TEST_F(DaemonDeletion, DefaultDomain) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("corp", 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("corp"), DOM_DELCHK_DEFAULT);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("corp", 0), DOM_OP_DELETE), DOM_OK);
    EXPECT_EQ(DeleteDomain("corp"), DOM_OK);
}

TEST_F(DaemonDeletion, PermitDomainOfAnother) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(CreateDomain("guest"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("corp", "guest", 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("guest"), DOM_DELCHK_PERMIT);
    ASSERT_EQ(DeleteDomain("corp"), DOM_OK);
    EXPECT_EQ(DeleteDomain("guest"), DOM_OK);
}

TEST_F(DaemonDeletion, EscapeDomainOfAnother) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(CreateDomain("guest"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthenEscapeRecover("corp", 1, "guest", 0, 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("guest"), DOM_DELCHK_ESCAPE);
}

TEST_F(DaemonDeletion, AuthenticationFailDomainOfAnother) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    ASSERT_EQ(CreateDomain("guest"), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthFailDomain("corp", "guest", 0, 1)), DOM_OK);
    EXPECT_EQ(DeleteDomain("guest"), DOM_DELCHK_AUTHFAIL);
    EXPECT_TRUE(GetDomain("guest"));
}

// The check reads the working role's tables. Within one batch it must already see the changes that
// were asked before it: whoever loses the race is refused, and both never succeed.
TEST_F(DaemonDeletion, OtherLetterCaseIsTheSameDomain) {
    ASSERT_EQ(CreateDomain("Corp"), DOM_OK);
    EXPECT_EQ(DeleteDomain("SYSTEM"), DOM_DELCHK_SYSTEM);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("Corp", 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("CORP"), DOM_DELCHK_DEFAULT);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("CORP", 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("Corp"), DOM_DELCHK_DEFAULT);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("system", 0)), DOM_OK);

    ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("system", "cORP", 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("Corp"), DOM_DELCHK_PERMIT);
    ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("system", "", 0), DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthenEscapeRecover("system", 1, "cORP", 1, 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("Corp"), DOM_DELCHK_ESCAPE);
    ASSERT_EQ(Change(DOM_EncodeAuthenEscapeRecover("system", 0, "", 0, 0), DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthFailDomain("system", "cORP", 0, 1)), DOM_OK);
    EXPECT_EQ(DeleteDomain("Corp"), DOM_DELCHK_AUTHFAIL);
    ASSERT_EQ(Change(DOM_EncodeAuthFailDomain("system", "", 0, 0)), DOM_OK);
    EXPECT_EQ(DeleteDomain("cOrp"), DOM_OK);
}

TEST_F(DaemonDeletion, NeverLeavesAReferenceToADeletedDomain) {
    for (int round = 0; round < 40; ++round) {
        const std::string target = "t" + std::to_string(round);
        ASSERT_EQ(CreateDomain(target), DOM_OK);
        uint32_t referred = kNoReply;
        std::thread other([&] {
            referred = Change(DOM_EncodeAuthRdFailPermitDomain("system", target.c_str(), 0));
        });
        const uint32_t deleted = DeleteDomain(target);
        other.join();
        ASSERT_EQ(referred, DOM_OK);
        // The reference may come after the deletion, which the library allows; what it must not do
        // is come before it and go unseen.
        if (deleted == DOM_OK) {
            EXPECT_FALSE(GetDomain(target));
        } else {
            EXPECT_EQ(deleted, DOM_DELCHK_PERMIT);
            EXPECT_TRUE(GetDomain(target));
        }
        ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("system", "", 0), DOM_OP_DELETE), DOM_OK);
    }
}

}  // namespace
