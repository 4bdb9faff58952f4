// aaactl in the hands of an operator: full tables, files that are half wrong, daemons that hang.
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "integration/ctl_process.h"

using namespace daemon_test;

namespace {

using CtlFullTable = DaemonTest;
using CtlExport = DaemonTest;
using CtlImport = DaemonTest;
using CtlPermission = DaemonTest;
using CtlWaiting = DaemonTest;

std::string FileText(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

size_t Lines(const std::string& text) {
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::string Document(const std::string& domains, const std::string& more = "") {
    return R"({"format": "aaad-config", "version": 1, "domains": [)" + domains + "]" + more + "}";
}

void FillTable(const std::string& prefix) {
    for (int i = 1; i < DOM_MAX_DOMAINS; ++i) {
        ASSERT_EQ(CreateDomain(prefix + std::to_string(i)), DOM_OK);
    }
}

TEST_F(CtlFullTable, IsListedInBothOrders) {
    FillTable("d");
    const CtlAnswer by_name = RunCtl(daemon_, "domain list");
    const CtlAnswer by_row = RunCtl(daemon_, "domain list --order row");
    EXPECT_EQ(by_name.status, 0);
    EXPECT_EQ(Lines(by_name.text), 1024u);
    EXPECT_EQ(by_name.text.substr(0, 32), "d1  active\nd10  active\nd100  act");
    EXPECT_EQ(by_row.status, 0);
    EXPECT_EQ(Lines(by_row.text), 1024u);
    EXPECT_EQ(by_row.text.substr(0, 32), "d1  active\nd2  active\nd3  active");
}

TEST_F(CtlFullTable, ExportAfterReplacingEveryDomainIsByteIdentical) {
    FillTable("d");
    ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("d7", "d9", 0)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeDefaultDomain("d8", 0)), DOM_OK);
    ASSERT_EQ(RunCtl(daemon_, "config export one").status, 0);
    const std::string one = FileText(daemon_.RunDir() + "/one");

    // 1023 others fill the table, so the domains that go have to go first.
    std::string domains = R"({"name": "system"})";
    for (int i = 1; i < DOM_MAX_DOMAINS; ++i) {
        domains += R"(, {"name": "other)" + std::to_string(i) + R"("})";
    }
    std::ofstream(daemon_.RunDir() + "/two") << Document(domains);
    const CtlAnswer replaced = RunCtl(daemon_, "config import --replace two");
    EXPECT_EQ(replaced.text, "1024 domains are imported, 1023 deleted\n");
    EXPECT_FALSE(GetDomain("d7"));
    ASSERT_TRUE(GetDomain("other1023"));

    const CtlAnswer back = RunCtl(daemon_, "config import --replace one");
    EXPECT_EQ(back.text, "1024 domains are imported, 1023 deleted\n");
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(RunCtl(daemon_, "config export three").status, 0);
    EXPECT_EQ(FileText(daemon_.RunDir() + "/three"), one);
}

TEST_F(CtlFullTable, ImportThatDoesNotFitChangesNothing) {
    FillTable("d");
    std::ofstream(daemon_.RunDir() + "/more")
        << Document(R"({"name": "d1", "state": 0}, {"name": "new"})");
    const CtlAnswer refused = RunCtl(daemon_, "config import more");
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.text.find("1025"), std::string::npos) << refused.text;
    EXPECT_EQ(GetDomain("d1")->state, 1);
}

TEST_F(CtlImport, NameInOtherLettersIsTheSameDomain) {
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    std::ofstream(daemon_.RunDir() + "/file")
        << Document(R"({"name": "system"}, {"name": "CORP", "session_time": 5})");
    EXPECT_EQ(RunCtl(daemon_, "config import --replace file").text,
              "2 domains are imported, 0 deleted\n");
    const DomainPtr domain = GetDomain("corp");
    ASSERT_TRUE(domain);
    EXPECT_EQ(domain->session_time, 5);
}

TEST_F(CtlImport, DomainsThatNameEachOtherAreReplaced) {
    for (const char* name : {"a", "b", "c"}) ASSERT_EQ(CreateDomain(name), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthRdFailPermitDomain("a", "b", 0)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthenEscapeRecover("b", 1, "c", 2, 0)), DOM_OK);
    ASSERT_EQ(Change(DOM_EncodeAuthFailDomain("c", "a", 0, 1)), DOM_OK);
    std::ofstream(daemon_.RunDir() + "/file") << Document(R"({"name": "system"})");
    EXPECT_EQ(RunCtl(daemon_, "config import --replace file").text,
              "1 domains are imported, 3 deleted\n");
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(CtlImport, HalfWrongFileChangesNothing) {
    const std::string wrong[] = {
        Document(R"({"name": "new"}, {"name": "no/name"})"),
        Document(R"({"name": "new"}, {"name": "NEW"})"),
        Document(R"({"name": "new"}, {"name": "zero\u0000byte"})"),
        Document(R"({"name": "new"}, {"name": "x", "state": 65536})"),
        Document(R"({"name": "new", "attributes": {"26": {"selector": 2}}})"),
        Document(R"({"name": "new"})", R"(, "default_domain": "nowhere")"),
        Document(R"({"name": "new"})", R"(, "session_limits": {"24": 1})"),
        Document(R"({"name": "new"}, )"),
    };
    for (const std::string& text : wrong) {
        std::ofstream(daemon_.RunDir() + "/file") << text;
        EXPECT_EQ(RunCtl(daemon_, "config import file").status, 2) << text;
        EXPECT_EQ(CountDomains(), 1u) << text;
    }
}

TEST_F(CtlExport, BytesThatAreNoUtf8ComeBackUnchanged) {
    // A byte alone, a cut sequence, control characters, and a character that stands for a byte.
    const std::string odd = "odd\xFF-\xE4\xBD-\x1B[31m\n-\xEF\x9F\xBF";
    ASSERT_EQ(CreateDomain(odd), DOM_OK);
    ASSERT_EQ(RunCtl(daemon_, "config export one").status, 0);
    ASSERT_EQ(DeleteDomain(odd), DOM_OK);
    ASSERT_EQ(RunCtl(daemon_, "config import one").status, 0);
    EXPECT_TRUE(GetDomain(odd));
    EXPECT_EQ(CountDomains(), 2u);
    ASSERT_EQ(RunCtl(daemon_, "config export two").status, 0);
    EXPECT_EQ(FileText(daemon_.RunDir() + "/one"), FileText(daemon_.RunDir() + "/two"));
}

TEST_F(CtlExport, OddBytesReachNoTerminal) {
    ASSERT_EQ(CreateDomain("odd\xFF\x1B[31m\n\xC2\x9B"), DOM_OK);
    EXPECT_EQ(RunCtl(daemon_, "domain list").text,
              "odd\\xff\\x1b[31m\\x0a\\xc2\\x9b  active\nsystem  active\n");
}

TEST_F(CtlExport, OlderFileStaysWhenTheNewOneCannotBeWritten) {
    ASSERT_EQ(RunCtl(daemon_, "config export saved").status, 0);
    const std::string before = FileText(daemon_.RunDir() + "/saved");
    for (int i = 0; i < 40; ++i) ASSERT_EQ(CreateDomain("d" + std::to_string(i)), DOM_OK);
    const CtlAnswer answer =
        RunCtl(daemon_, "status; ulimit -f 1; trap '' XFSZ; '" AAADOM_BINARY_DIR
                        "/ctl/aaactl' --run-dir '" +
                            daemon_.RunDir() + "' config export saved");
    EXPECT_EQ(answer.status, 2) << answer.text;
    EXPECT_NE(answer.text.find("saved.unfinished\": File too large"), std::string::npos)
        << answer.text;
    EXPECT_EQ(FileText(daemon_.RunDir() + "/saved"), before);
    EXPECT_FALSE(std::filesystem::exists(daemon_.RunDir() + "/saved.unfinished"));
}

TEST_F(CtlExport, FullStandardOutputIsAnError) {
    EXPECT_EQ(RunCtl(daemon_, "config export > /dev/full").status, 1);
    EXPECT_EQ(RunCtl(daemon_, "domain list > /dev/full").status, 1);
    EXPECT_EQ(RunCtl(daemon_, "domain list --json > /dev/full").status, 1);
}

TEST_F(CtlPermission, StrangerMayReadAndIsToldWhyNotToChange) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    const int unreachable = AsUser(
        65534, 54321, [] { return access(AAADOM_BINARY_DIR "/ctl/aaactl", X_OK) == 0 ? 0 : 1; });
    if (unreachable != 0) GTEST_SKIP() << "the build directory is closed to other users";
    const auto tells = [&](const std::string& command, int status, const std::string& words) {
        return AsUser(65534, 54321, [&] {
            const CtlAnswer answer = RunCtl(daemon_, command);
            if (answer.status == status && answer.text.find(words) != std::string::npos) return 0;
            fprintf(stderr, "%s: [%d] %s\n", command.c_str(), answer.status, answer.text.c_str());
            return 1;
        });
    };
    const std::string denied = "the daemon allows changes to administrators only";
    for (const char* read : {"domain list", "domain show corp", "config export"}) {
        EXPECT_EQ(tells(read, 0, "corp"), 0);
    }
    for (const char* change :
         {"domain create mine", "domain delete corp", "domain set state corp blocked",
          "global set default-domain corp", "session-limit set 19 1", "debug on",
          "domain delete corp --json", "profile author create p", "profile critical delete p",
          "profile author vpn set p v --segment-id 1", "policy acct create p",
          "policy acct delete p", "policy acct level set p 1 --value 1",
          "policy acct together p on", "policy record create", "policy record scheme set local"}) {
        EXPECT_EQ(tells(change, 1, denied), 0);
    }
    EXPECT_EQ(CountDomains(), 2u);
    EXPECT_EQ(GetDomain("corp")->state, 1);
}

TEST_F(CtlWaiting, DaemonThatHangsIsLeftAfterTheTimeout) {
    ASSERT_EQ(kill(daemon_.Pid(), SIGSTOP), 0);
    const CtlAnswer read = RunCtl(daemon_, "--timeout 200 domain list");
    const CtlAnswer change = RunCtl(daemon_, "--timeout 200 domain create x --json");
    ASSERT_EQ(kill(daemon_.Pid(), SIGCONT), 0);
    EXPECT_EQ(read.status, 3);
    EXPECT_NE(read.text.find("no answer within 200 ms"), std::string::npos) << read.text;
    EXPECT_EQ(change.status, 3);
    EXPECT_NE(change.text.find("whether the change was made"), std::string::npos) << change.text;
}

TEST_F(CtlWaiting, DeadDaemonAndMissingDirectoryDiffer) {
    daemon_.Kill();
    EXPECT_NE(RunCtl(daemon_, "status").text.find("nobody serves the request socket"),
              std::string::npos);
    EXPECT_NE(
        RunCtl(daemon_, "--run-dir /nonexistent status").text.find("there is no request socket"),
        std::string::npos);
}

TEST(CtlScripts, CompletionIsBashAndManualIsTroff) {
    const DaemonProcess daemon;
    mkdir(daemon.RunDir().c_str(), 0755);
    EXPECT_EQ(RunCtl(daemon,
                     "completion > c && bash -n c && bash -c '. ./c; COMP_WORDS=(aaactl "
                     "--json domain s); COMP_CWORD=3; _aaactl; echo ${COMPREPLY[@]}'")
                  .text,
              "set show\n");
    const CtlAnswer manual = RunCtl(daemon, "man");
    EXPECT_EQ(manual.status, 0);
    for (const char* part :
         {".TH AAACTL 1", ".SH OPTIONS", "session\\-limit set", ".SH \"EXIT STATUS\""}) {
        EXPECT_NE(manual.text.find(part), std::string::npos) << part;
    }
}

}  // namespace
