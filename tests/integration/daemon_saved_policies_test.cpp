// Policies that the daemon finds in its database at the start: of former releases, half migrated,
// damaged.
#include <aaadom/db_layout.h>
#include <platform/aaa_tlv.h>
#include <sys/resource.h>

#include <cstdlib>
#include <cstring>

#include "daemon_log.h"
#include "golden/sample_policy.h"
#include "stopped_database.h"

using namespace daemon_test;

namespace {

using DaemonSavedPolicies = DaemonTestWithLog;

const std::string kOld = "dom-ita-policy-";
const std::string kCurrent = "dom-tlv-ita-policy-";

/// The tool with which an operator's database of a former release is made.
int PutOldPolicy(const DaemonProcess& daemon, const std::string& name) {
    const std::string command =
        "'" AAADOM_BINARY_DIR "/tests/put-old-policy' '" + daemon.StateDir() + "' '" + name + "'";
    return system(command.c_str());
}

std::unique_ptr<ItaPolicy> Policy(const char* name) {
    TLV_MSG* request = CodeAlone(DOM_MSG_ITA_POLICY);
    EXPECT_EQ(AAA_AppendStrTlvData(request, DOM_TLV_ITA_POLICY_NAME, name), 0u);
    const Answer answer = Ask(request, DOM_OP_GET);
    if (answer.kind != DOM_REPLY_KIND_DATA) return nullptr;
    auto policy = std::make_unique<ItaPolicy>();
    EXPECT_EQ(DOM_ita_tlv_DecodePolicy(answer.body.get(), policy.get()), DOM_OK);
    return policy;
}

/// Whether the daemon serves the sample policy under that name.
bool ServesSample(const char* name) {
    const auto policy = Policy(name);
    if (policy == nullptr) return false;
    const ItaPolicy sample = golden::SamplePolicy(name);
    const size_t begin = offsetof(ItaPolicy, name);
    const size_t end = offsetof(ItaPolicy, quota_out_state) + sizeof sample.quota_out_state;
    return memcmp(reinterpret_cast<const char*>(policy.get()) + begin,
                  reinterpret_cast<const char*>(&sample) + begin, end - begin) == 0;
}

uint32_t Delete(const char* name) {
    constexpr uint32_t kTakeAway = 0;
    return Change(DOM_ita_tlv_EncodePolicyName(name), kTakeAway);
}

TEST_F(DaemonSavedPolicies, FormerOneIsServedRewrittenAndItsOldKeyGone) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "gold"), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "silver"), 0);
    ASSERT_TRUE(StartWithLog());
    EXPECT_TRUE(ServesSample("gold"));
    EXPECT_TRUE(ServesSample("silver"));
    EXPECT_EQ(LinesWith("\"" + kOld + "gold\""), 1);
    EXPECT_EQ(LinesWith("2 of 2 accounting policies loaded"), 1);
    daemon_.Kill();
    {
        const StoppedDatabase database(daemon_);
        for (const char* name : {"gold", "silver"}) {
            EXPECT_FALSE(database.Has(kOld + name));
            EXPECT_TRUE(database.Has(kCurrent + name));
        }
    }
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(ServesSample("gold"));
    EXPECT_EQ(Delete("gold"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Policy("gold"), nullptr);
    EXPECT_TRUE(ServesSample("silver"));
}

// A crash between the two steps of a migration leaves both records. The current one is the newer;
// the former one, left in place, would bring the policy back once it is deleted.
TEST_F(DaemonSavedPolicies, FormerRecordBesideACurrentOneIsRemoved) {
    ASSERT_EQ(Change(DOM_ita_tlv_EncodePolicyName("gold"), 1), DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "gold"), 0);
    ASSERT_TRUE(StartWithLog());
    const auto policy = Policy("gold");
    ASSERT_NE(policy, nullptr);
    EXPECT_EQ(policy->level_count, 0u);
    EXPECT_EQ(LinesWith("\"" + kOld + "gold\""), 1);
    daemon_.Kill();
    const StoppedDatabase database(daemon_);
    EXPECT_FALSE(database.Has(kOld + "gold"));
    EXPECT_TRUE(database.Has(kCurrent + "gold"));
}

TEST_F(DaemonSavedPolicies, FormerRecordBesideADamagedCurrentOneIsServed) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "gold"), 0);
    {
        StoppedDatabase database(daemon_);
        database.SetBinary(kCurrent + "gold", "no policy", DOM_DB_ITA_POLICY);
    }
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(ServesSample("gold"));
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(ServesSample("gold"));
}

// The rewriting cannot be saved: the former record stays and is served, also by the next start.
TEST_F(DaemonSavedPolicies, FailedMigrationLosesNothing) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "gold"), 0);
    ASSERT_TRUE(StartWithLog([] {
        const rlimit no_room{4096, 4096};
        (void)setrlimit(RLIMIT_FSIZE, &no_room);
    }));
    EXPECT_TRUE(ServesSample("gold"));
    EXPECT_EQ(LinesWith("\"" + kOld + "gold\" could not be rewritten"), 1);
    daemon_.Kill();
    {
        const StoppedDatabase database(daemon_);
        EXPECT_TRUE(database.Has(kOld + "gold"));
        EXPECT_FALSE(database.Has(kCurrent + "gold"));
    }
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(ServesSample("gold"));
}

// The start could not rewrite it, but the disk has room again when the policy is deleted.
TEST_F(DaemonSavedPolicies, DeletionTakesTheFormerRecordAlong) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "gold"), 0);
    ASSERT_TRUE(daemon_.Start({}, [] {
        const rlimit no_room{4096, RLIM_INFINITY};
        (void)setrlimit(RLIMIT_FSIZE, &no_room);
    }));
    ASSERT_TRUE(ServesSample("gold"));
    const rlimit room{RLIM_INFINITY, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &room, nullptr), 0);
    EXPECT_EQ(Delete("gold"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Policy("gold"), nullptr);
}

TEST_F(DaemonSavedPolicies, DamagedOnesAreNamedAndTheRestIsServed) {
    const std::string too_long(32, 'n');
    ASSERT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    ASSERT_EQ(PutOldPolicy(daemon_, "gold"), 0);
    {
        StoppedDatabase database(daemon_);
        database.SetBinary(kOld + "long", std::string(600, 'x'), DOM_DB_ITA_POLICY);
        database.SetBinary(kOld + "garbage", std::string(500, '\xEE'), DOM_DB_ITA_POLICY);
        database.SetBinary(kCurrent + "torn", "no policy", DOM_DB_ITA_POLICY);
        database.SetBinary(kCurrent, "nameless", DOM_DB_ITA_POLICY);
        database.SetBinary("foreign", "x", DOM_DB_ITA_POLICY);
        database.SetBinary("two\nlines", "x", DOM_DB_ITA_POLICY);
        database.SetBinary(kCurrent + too_long, "x", DOM_DB_ITA_POLICY);
        database.SetBinary(kCurrent + std::string("a\0b", 3), "x", DOM_DB_ITA_POLICY);
        database.SetBinary("connection-recording-policy", "no policy", DOM_DB_REC_POLICY);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_TRUE(ServesSample("gold"));
    EXPECT_EQ(WalkAccountingPolicies().size(), 1u);
    for (const std::string& key :
         {kOld + "long", kOld + "garbage", kCurrent + "torn", kCurrent, kCurrent + too_long,
          kCurrent + "a", std::string("foreign"), std::string("connection-recording-policy")}) {
        EXPECT_EQ(LinesWith("\"" + key + "\""), 1) << key;
    }
    EXPECT_EQ(LinesWith("1 of 4 accounting policies loaded"), 1);
    // A line break in a key makes no line.
    EXPECT_EQ(LinesWith("\"two lines\""), 1);
    // What was refused can be set anew.
    EXPECT_EQ(Change(DOM_ita_tlv_EncodePolicyName("torn"), 1), DOM_OK);
    EXPECT_EQ(Change(DOM_ita_tlv_EncodePolicyName("long"), 1), DOM_OK);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), DOM_OK);
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(WalkAccountingPolicies().size(), 3u);
}

TEST_F(DaemonSavedPolicies, RecordingPolicyOfAnUnknownTypeIsRefused) {
    const std::string key = "connection-recording-policy";
    constexpr size_t kLowByteOfType = 17;  // behind two heads: the message's and its first TLV's
    ASSERT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0)), DOM_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        std::string record = database.Binary(key);
        ASSERT_GT(record.size(), kLowByteOfType);
        record[kLowByteOfType] = 1;
        database.SetBinary(key, record, DOM_DB_REC_POLICY);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(LinesWith("\"" + key + "\" is no recording policy"), 1);
    EXPECT_EQ(Change(DOM_Rec_tlv_EncodePolicyType(0), DOM_OP_DELETE), DOM_ERR_NOT_FOUND);
}

}  // namespace
