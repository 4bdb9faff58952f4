// Who reports, what is refused, and command lines whose authorization failed.
#include <platform/aaa_tlv.h>
#include <unistd.h>

#include <memory>

#include "raw_client.h"
#include "record_reports.h"

using namespace daemon_test;

namespace {

constexpr uint32_t kFail = DOM_RECORD_ONLINE_FAIL;

class DaemonRecordEndpoint : public DaemonTest {
  protected:
    void SetUp() override {
        DaemonTest::SetUp();
        KeepAllRecords();
    }
    size_t Stored() const { return StoredSerials(daemon_, kFail).size(); }
};

RawClient Reporter() {
    return RawClient(DOM_LIPC_RECORD_SUB_ENDPOINT);
}

Message Report() {
    const UserRecordSource record = SampleRecord("alice");
    return Message(PAM_EncUserRecordMsg(kFail, 0, &record));
}

/// A report with another list, with or without a record.
TLV_MSG* Report(const std::vector<uint32_t>& lists, bool with_record) {
    TLV_MSG* report = TLV_Create();
    for (const uint32_t list : lists) {
        EXPECT_EQ(AAA_AppendUINTTlvData(report, DOM_TLV_RECORD_KIND, list), 0u);
    }
    const UserRecordSource record = SampleRecord("alice");
    if (with_record) {
        EXPECT_EQ(DOM_userrecord_tlv_EncodeRecordContent(report, &record), DOM_OK);
    }
    return report;
}

TEST_F(DaemonRecordEndpoint, EveryTruncationIsAnsweredAndNotStored) {
    const std::vector<uint8_t> whole = Image(Report().get());
    for (size_t length = 1; length < whole.size(); ++length) {
        RawClient client = Reporter();
        ASSERT_TRUE(client.Connected());
        client.Send({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        EXPECT_EQ(client.Result(), AAAD_ERR_MALFORMED) << length;
    }
    EXPECT_EQ(Stored(), 0u);
}

TEST_F(DaemonRecordEndpoint, ByteThatIsAnotherIsAnswered) {
    const std::vector<uint8_t> whole = Image(Report().get());
    for (size_t i = 0; i < whole.size(); i += 3) {
        std::vector<uint8_t> changed = whole;
        changed[i] ^= 0xFF;
        RawClient client = Reporter();
        ASSERT_TRUE(client.Connected());
        client.Send(changed);
        EXPECT_NE(client.Result(), kNoReply) << i;
    }
    EXPECT_EQ(SendRecord(kFail, SampleRecord("alive")).result, DOM_OK);
}

TEST_F(DaemonRecordEndpoint, HugeReportIsAnswered) {
    TLV_MSG* report = Report({kFail}, true);
    const std::vector<uint8_t> filler(100000, 'x');
    ASSERT_EQ(TLV_Append_Data(report, 999, static_cast<uint32_t>(filler.size()), filler.data()),
              0u);
    EXPECT_EQ(SendReport(report).result, DOM_OK);  // unknown items are skipped, whatever their size
    EXPECT_EQ(Stored(), 1u);
}

TEST_F(DaemonRecordEndpoint, OtherListsAreRefused) {
    for (const uint32_t list : {0u, 2u, 5u, 0x10001u, 0xFFFFFFFFu}) {
        EXPECT_EQ(SendReport(Report({list}, true)).result, DOM_ERR_FAILED) << list;
    }
}

TEST_F(DaemonRecordEndpoint, IncompleteReportsAreRefused) {
    EXPECT_EQ(SendReport(TLV_Create()).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(SendReport(Report({}, true)).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(SendReport(Report({kFail}, false)).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(SendReport(Report({kFail, kFail}, true)).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(Stored(), 0u);
}

// The library's decoder takes a good TLV 185 for the success of all that stands before it.
TEST_F(DaemonRecordEndpoint, BrokenRecordIsRefusedWhateverFollows) {
    TLV_MSG* report = Report({kFail}, false);
    const uint8_t garbage[] = {1, 2, 3};
    ASSERT_EQ(TLV_Append_Data(report, DOM_TLV_USER_RECORD, sizeof garbage, garbage), 0u);
    ASSERT_EQ(AAA_AppendUSHORTTlvData(report, DOM_TLV_RECORD_FLAGS, 1), 0u);
    EXPECT_EQ(SendReport(report).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(Stored(), 0u);
}

TEST_F(DaemonRecordEndpoint, ConfigurationIsNotChangedHere) {
    const Message body(DOM_EncodeDomainName("corp"));
    EXPECT_EQ(SendReport(AAA_AddOpHead(DOM_OP_SET, body.get())).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(SendReport(DOM_EncodeDomainName("corp")).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(CountDomains(), 1u);
}

TEST_F(DaemonRecordEndpoint, ReportsAreNotTakenAtTheOtherEndpoint) {
    RawClient client;
    client.Send(Image(Report().get()));
    EXPECT_EQ(client.Result(), AAAD_ERR_MALFORMED);
    const Message failure(CommandFailure("reload", "bob", "vty0", 1, 2));
    RawClient other;
    other.Send(Image(failure.get()));
    EXPECT_EQ(other.Result(), AAAD_ERR_MALFORMED);
    EXPECT_EQ(Stored(), 0u);
}

TEST_F(DaemonRecordEndpoint, WhoeverMayNotChangeMayNotReport) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
    constexpr uid_t kNobody = 65534;
    const int refused = AsUser(kNobody, kNobody, [] {
        const bool record = SendRecord(kFail, SampleRecord("mallory")).result == AAAD_ERR_DENIED;
        const bool failure =
            SendReport(CommandFailure("reload", "mallory", "vty0", 1, 2)).result == AAAD_ERR_DENIED;
        return record && failure ? 7 : 0;
    });
    EXPECT_EQ(refused, 7);
    EXPECT_EQ(Stored(), 0u);
}

TEST_F(DaemonRecordEndpoint, ClientsThatDieOrDoNotReadStopNobody) {
    const std::vector<uint8_t> whole = Image(Report().get());
    std::vector<RawClient> deaf;
    for (int i = 0; i < 50; ++i) {
        { RawClient silent = Reporter(); }
        {
            RawClient half = Reporter();
            half.Send({whole.begin(), whole.begin() + 11});
        }
        deaf.push_back(Reporter());
        deaf.back().Send(whole);
    }
    EXPECT_EQ(SendRecord(kFail, SampleRecord("alive")).serial, 51u);
}

TEST_F(DaemonRecordEndpoint, SilentConnectionIsDroppedAfterFiveSeconds) {
    RawClient silent = Reporter();
    ASSERT_TRUE(silent.Connected());
    EXPECT_FALSE(silent.IsClosedWithin(3000));
    EXPECT_EQ(SendRecord(kFail, SampleRecord("meanwhile")).result, DOM_OK);
    EXPECT_TRUE(silent.IsClosedWithin(15000));
}

TEST_F(DaemonRecordEndpoint, HundredsOfSilentConnectionsStopNeitherEndpoint) {
    std::vector<RawClient> silent;
    for (int i = 0; i < 400; ++i) silent.push_back(Reporter());
    EXPECT_EQ(SendRecord(kFail, SampleRecord("alive")).result, DOM_OK);
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
}

struct FailureListFreer {
    void operator()(CmdAuthorFailRec* list) const {
        auto* end = reinterpret_cast<CmdAuthorFailNode*>(&list->head);
        for (CmdAuthorFailNode* node = list->head.next; node != nullptr && node != end;) {
            CmdAuthorFailNode* next = node->next;
            DOM_FreeCmdAuthorFailNode(node);
            node = next;
        }
        delete list;
    }
};

/// First texts of the reply, as the library's decoder orders them, the newest first.
std::vector<std::string> FailedCommands() {
    const Answer answer = Ask(CodeAlone(DOM_MSG_CMD_AUTHOR_FAIL), DOM_OP_GET);
    EXPECT_EQ(answer.kind, DOM_REPLY_KIND_DATA);
    const std::unique_ptr<CmdAuthorFailRec, FailureListFreer> list(new CmdAuthorFailRec{});
    EXPECT_EQ(DOM_Rec_tlv_DecodeCmdAuthorFailMsg(answer.body.get(), list.get()), DOM_ERR_NOT_FOUND);
    std::vector<std::string> commands;
    auto* end = reinterpret_cast<CmdAuthorFailNode*>(&list->head);
    for (CmdAuthorFailNode* node = list->head.next; node != nullptr && node != end;
         node = node->next) {
        commands.push_back(node->item.first_text);
    }
    EXPECT_EQ(commands.size(), list->count);
    return commands;
}

using DaemonCommandFailures = DaemonTest;

TEST_F(DaemonCommandFailures, NoneGivesTheEndMarkAlone) {
    EXPECT_EQ(FailedCommands(), std::vector<std::string>{});
}

TEST_F(DaemonCommandFailures, TenNewestOfElevenAreKept) {
    for (int i = 1; i <= 11; ++i) {
        ASSERT_EQ(
            SendReport(CommandFailure("command " + std::to_string(i), "bob", "vty0", 1, 2)).result,
            DOM_OK);
    }
    std::vector<std::string> expected;
    for (int i = 11; i >= 2; --i) expected.push_back("command " + std::to_string(i));
    EXPECT_EQ(FailedCommands(), expected);
}

TEST_F(DaemonCommandFailures, AllFieldsComeBack) {
    ASSERT_EQ(SendReport(CommandFailure("reload", "bob", "10.0.0.9", 1700000000, 105)).result,
              DOM_OK);
    const Answer answer = Ask(CodeAlone(DOM_MSG_CMD_AUTHOR_FAIL), DOM_OP_GET);
    TLV_ITER* it = TLV_GetIteratorByType(answer.body.get(), DOM_TLV_CMD_FAIL_ITEM);
    ASSERT_NE(it, nullptr);
    const Message nested(AAA_GetSubTlv(answer.body.get(), it));
    CmdAuthorFailItem item{};
    ASSERT_EQ(DOM_Rec_DecodeCmdAuthorFailItem(nested.get(), &item), DOM_OK);
    EXPECT_STREQ(item.first_text, "reload");
    EXPECT_STREQ(item.second_text, "bob");
    EXPECT_STREQ(item.third_text, "10.0.0.9");
    EXPECT_EQ(item.number64, 1700000000u);
    EXPECT_EQ(item.number32, 105u);
    TLV_ITER* end = TLV_GetIteratorByType(answer.body.get(), DOM_TLV_CMD_FAIL_END);
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(AAA_GetUINTTlvValue(answer.body.get(), end), 1u);
}

// The library would take it for a failure without a command.
TEST_F(DaemonCommandFailures, ReportWithoutACommandIsRefused) {
    EXPECT_EQ(SendReport(CodeAlone(DOM_MSG_CMD_AUTHOR_FAIL)).result, AAAD_ERR_MALFORMED);
    EXPECT_EQ(FailedCommands(), std::vector<std::string>{});
}

TEST_F(DaemonCommandFailures, OverlongCommandIsCut) {
    ASSERT_EQ(SendReport(CommandFailure(std::string(600, 'c'), "bob", "vty0", 1, 2)).result,
              DOM_OK);
    EXPECT_EQ(FailedCommands(), std::vector<std::string>{std::string(512, 'c')});
}

TEST_F(DaemonCommandFailures, EndWithTheProcess) {
    ASSERT_EQ(SendReport(CommandFailure("reload", "bob", "vty0", 1, 2)).result, DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(FailedCommands(), std::vector<std::string>{});
}

}  // namespace
