// Authorization and critical profiles through the daemon.
#include <aaadom/db_layout.h>
#include <platform/aaa_tlv.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstring>

#include "daemon_log.h"
#include "daemon_process.h"
#include "stopped_database.h"

using namespace daemon_test;

namespace {

using DaemonProfiles = DaemonTest;

void SetText(char (&field)[DOM_PROFILE_NAME_SIZE], const std::string& text) {
    snprintf(field, sizeof field, "%s", text.c_str());
}

AuthorProfileMsg AuthorMsg(const std::string& profile, const std::string& vpn, uint32_t id,
                           const std::string& name) {
    AuthorProfileMsg message{};
    SetText(message.profile_name, profile);
    SetText(message.vpn_name, vpn);
    SetText(message.segment_name, name);
    message.segment_id = id;
    return message;
}

CriticalProfileMsg CriticalMsg(const std::string& profile, const std::string& vpn, uint32_t id,
                               const std::string& name, uint16_t value) {
    CriticalProfileMsg message{};
    SetText(message.profile_name, profile);
    SetText(message.vpn_name, vpn);
    SetText(message.segment_name, name);
    message.segment_id = id;
    message.value16 = value;
    return message;
}

uint32_t ChangeAuthor(const std::string& name, uint32_t operation = DOM_OP_SET) {
    return Change(DOM_author_tlv_EncodeAuthorProfile(name.c_str()), operation);
}

uint32_t ChangeCritical(const std::string& name, uint32_t operation = DOM_OP_SET) {
    return Change(DOM_clitical_tlv_EncodeCriticalProfile(name.c_str()), operation);
}

uint32_t ChangeAuthorVpn(const std::string& profile, const std::string& vpn, uint32_t id,
                         const std::string& name = "seg", uint32_t operation = DOM_OP_SET) {
    const AuthorProfileMsg message = AuthorMsg(profile, vpn, id, name);
    return Change(DOM_author_tlv_EncodeAuthorVpn(&message), operation);
}

uint32_t ChangeCriticalVpn(const std::string& profile, const std::string& vpn, uint32_t id,
                           const std::string& name = "seg", uint16_t value = 1,
                           uint32_t operation = DOM_OP_SET) {
    const CriticalProfileMsg message = CriticalMsg(profile, vpn, id, name, value);
    return Change(DOM_critical_tlv_EncodeCriticalVpn(&message), operation);
}

uint32_t ChangeAuthorSegment(const std::string& profile, uint32_t id, const std::string& name,
                             uint32_t operation = DOM_OP_SET) {
    const AuthorProfileMsg message = AuthorMsg(profile, "", id, name);
    return Change(DOM_author_tlv_EncodeDefaultAuthor(&message), operation);
}

uint32_t ChangeCriticalSegment(const std::string& profile, uint32_t id, const std::string& name,
                               uint16_t value, uint32_t operation = DOM_OP_SET) {
    const CriticalProfileMsg message = CriticalMsg(profile, "", id, name, value);
    return Change(DOM_critical_tlv_EncodeDefaultCritical(&message), operation);
}

/// "PROFILE[/VPN] ID NAME" of each.
std::vector<std::string> AuthorProfiles() {
    std::vector<std::string> all;
    for (const Message& reply : WalkAuthorProfiles()) {
        AuthorProfileMsg profile{};
        EXPECT_EQ(DOM_author_tlv_DecodeDefaultAuthor(reply.get(), &profile), DOM_OK);
        all.push_back(std::string(profile.profile_name) + " " + std::to_string(profile.segment_id) +
                      " " + profile.segment_name);
    }
    return all;
}

std::vector<std::string> AuthorVpns() {
    std::vector<std::string> all;
    for (const Message& reply : WalkAuthorVpns()) {
        AuthorProfileMsg vpn{};
        EXPECT_EQ(DOM_author_tlv_DecodeAuthorVpn(reply.get(), &vpn), DOM_OK);
        all.push_back(std::string(vpn.profile_name) + "/" + vpn.vpn_name + " " +
                      std::to_string(vpn.segment_id) + " " + vpn.segment_name);
    }
    return all;
}

/// "PROFILE[/VPN] ID VALUE NAME" of each.
std::vector<std::string> CriticalProfiles() {
    std::vector<std::string> all;
    for (const Message& reply : WalkCriticalProfiles()) {
        CriticalProfileMsg profile{};
        EXPECT_EQ(DOM_critical_tlv_DecodeDefaultCritical(reply.get(), &profile), DOM_OK);
        all.push_back(std::string(profile.profile_name) + " " + std::to_string(profile.segment_id) +
                      " " + std::to_string(profile.value16) + " " + profile.segment_name);
    }
    return all;
}

std::vector<std::string> CriticalVpns() {
    std::vector<std::string> all;
    for (const Message& reply : WalkCriticalVpns()) {
        CriticalProfileMsg vpn{};
        EXPECT_EQ(DOM_critical_tlv_DecodeCriticalVpn(reply.get(), &vpn), DOM_OK);
        all.push_back(std::string(vpn.profile_name) + "/" + vpn.vpn_name + " " +
                      std::to_string(vpn.segment_id) + " " + std::to_string(vpn.value16) + " " +
                      vpn.segment_name);
    }
    return all;
}

using Strings = std::vector<std::string>;

struct NamedAnswer {
    uint32_t result = kNoReply;
    std::string name;
    bool operator==(const NamedAnswer&) const = default;
};

NamedAnswer NamedAuthor(const std::string& name, uint32_t operation) {
    NamedAnswer answer;
    char stored[DOM_PROFILE_NAME_SIZE] = {};
    (void)MOR_SetAaaAuthorProfile(name.c_str(), operation, &answer.result, stored);
    answer.name = stored;
    return answer;
}

NamedAnswer NamedCritical(const std::string& name, uint32_t operation) {
    NamedAnswer answer;
    char stored[DOM_PROFILE_NAME_SIZE] = {};
    (void)MOR_SetAaaCriticalProfile(name.c_str(), operation, &answer.result, stored);
    answer.name = stored;
    return answer;
}

TEST_F(DaemonProfiles, AnswersCarryTheStoredSpelling) {
    EXPECT_EQ(NamedAuthor("Gold", DOM_OP_SET), (NamedAnswer{DOM_AUTHOR_OK, "Gold"}));
    EXPECT_EQ(NamedAuthor("GOLD", DOM_OP_SET), (NamedAnswer{DOM_AUTHOR_PROFILE_EXISTS, "Gold"}));
    EXPECT_EQ(NamedAuthor("none", DOM_OP_DELETE),
              (NamedAnswer{DOM_AUTHOR_PROFILE_NOT_EXIST, "none"}));
    EXPECT_EQ(NamedAuthor("gold", DOM_OP_DELETE), (NamedAnswer{DOM_AUTHOR_OK, "Gold"}));
    EXPECT_EQ(NamedCritical("Gold", DOM_OP_SET), (NamedAnswer{DOM_CRITICAL_OK, "Gold"}));
    EXPECT_EQ(NamedCritical("GOLD", DOM_OP_SET),
              (NamedAnswer{DOM_CRITICAL_PROFILE_EXISTS, "Gold"}));
    EXPECT_EQ(NamedCritical("none", DOM_OP_DELETE),
              (NamedAnswer{DOM_CRITICAL_PROFILE_NOT_EXIST, "none"}));
    EXPECT_EQ(NamedCritical("gold", DOM_OP_DELETE), (NamedAnswer{DOM_CRITICAL_OK, "Gold"}));
}

TEST_F(DaemonProfiles, NameStandsInFrontOfTheResult) {
    for (const auto& [request, type] :
         {std::pair<TLV_MSG*, int>{DOM_author_tlv_EncodeAuthorProfile("p"),
                                   DOM_TLV_AUTHOR_PROFILE_NAME},
          std::pair<TLV_MSG*, int>{DOM_clitical_tlv_EncodeCriticalProfile("p"),
                                   DOM_TLV_CRITICAL_PROFILE_NAME}}) {
        const Answer answer = Ask(request, DOM_OP_SET);
        ASSERT_EQ(answer.kind, DOM_REPLY_KIND_RESULT);
        TLV_ITER* first = TLV_GetFirst(answer.body.get());
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(TLV_GetTypeByIterator(answer.body.get(), first), type);
        TLV_ITER* second = TLV_GetNext(answer.body.get(), first);
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(TLV_GetTypeByIterator(answer.body.get(), second), DOM_TLV_RESULT);
    }
}

TEST_F(DaemonProfiles, SeventeenthProfileIsRefused) {
    for (int i = 0; i < 16; ++i) {
        ASSERT_EQ(ChangeAuthor("p" + std::to_string(i)), DOM_AUTHOR_OK);
        ASSERT_EQ(ChangeCritical("p" + std::to_string(i)), DOM_CRITICAL_OK);
    }
    EXPECT_EQ(ChangeAuthor("more"), DOM_AUTHOR_STORE_FULL);
    EXPECT_EQ(ChangeCritical("more"), DOM_CRITICAL_STORE_FULL);
    EXPECT_EQ(AuthorProfiles().size(), 16u);
    EXPECT_EQ(CriticalProfiles().size(), 16u);
    EXPECT_EQ(ChangeAuthor("P3", DOM_OP_DELETE), DOM_AUTHOR_OK);
    EXPECT_EQ(ChangeAuthor("more"), DOM_AUTHOR_OK);
}

TEST_F(DaemonProfiles, EntryOneHundredAndTwentyNineIsRefusedAndReplacingIsNot) {
    ASSERT_EQ(ChangeAuthor("a"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("c"), DOM_CRITICAL_OK);
    for (uint32_t i = 1; i <= 128; ++i) {
        ASSERT_EQ(ChangeAuthorVpn("a", "v" + std::to_string(i), i), DOM_AUTHOR_OK);
        ASSERT_EQ(ChangeCriticalVpn("c", "v" + std::to_string(i), i), DOM_CRITICAL_OK);
    }
    EXPECT_EQ(ChangeAuthorVpn("a", "more", 1), DOM_AUTHOR_VPN_FULL);
    EXPECT_EQ(ChangeCriticalVpn("c", "more", 1), DOM_CRITICAL_VPN_FULL);
    EXPECT_EQ(ChangeAuthorVpn("a", "v7", 7000, "new"), DOM_AUTHOR_OK);
    EXPECT_EQ(ChangeCriticalVpn("c", "v7", 7000, "new", 9), DOM_CRITICAL_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    const auto has = [](const Strings& all, const std::string& text) {
        return std::find(all.begin(), all.end(), text) != all.end();
    };
    EXPECT_TRUE(has(AuthorVpns(), "a/v7 7000 new"));
    EXPECT_TRUE(has(CriticalVpns(), "c/v7 7000 9 new"));
    EXPECT_EQ(AuthorVpns().size(), 128u);
    EXPECT_EQ(CriticalVpns().size(), 128u);
    EXPECT_EQ(ChangeAuthorVpn("a", "more", 1), DOM_AUTHOR_VPN_FULL);
}

TEST_F(DaemonProfiles, UnknownProfileAndIdentifierZeroAreRefused) {
    EXPECT_EQ(ChangeAuthorVpn("none", "v", 1), DOM_AUTHOR_FAILED);
    EXPECT_EQ(ChangeAuthorSegment("none", 1, "s"), DOM_AUTHOR_FAILED);
    EXPECT_EQ(ChangeCriticalVpn("none", "v", 1), DOM_CRITICAL_FAILED);
    EXPECT_EQ(ChangeCriticalSegment("none", 1, "s", 1), DOM_CRITICAL_FAILED);
    ASSERT_EQ(ChangeAuthor("p"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("p"), DOM_CRITICAL_OK);
    EXPECT_EQ(ChangeAuthorVpn("p", "v", 0), DOM_AUTHOR_FAILED);
    EXPECT_EQ(ChangeAuthorSegment("p", 0, "s"), DOM_AUTHOR_FAILED);
    EXPECT_EQ(ChangeCriticalVpn("p", "v", 0), DOM_CRITICAL_FAILED);
    EXPECT_EQ(ChangeCriticalSegment("p", 0, "s", 1), DOM_CRITICAL_FAILED);
    EXPECT_TRUE(AuthorVpns().empty());
    EXPECT_TRUE(CriticalVpns().empty());
    EXPECT_EQ(AuthorProfiles(), Strings{"p 0 "});
}

TEST_F(DaemonProfiles, TextsThatWouldBeCutDoubledOrEmptyAreRefused) {
    const std::string longest(31, 'p');
    const std::string too_long(32, 'p');
    EXPECT_EQ(ChangeAuthor(longest), DOM_AUTHOR_OK);
    EXPECT_EQ(ChangeAuthor(too_long, DOM_OP_DELETE), AAAD_ERR_MALFORMED);
    EXPECT_EQ(ChangeCritical(too_long), AAAD_ERR_MALFORMED);
    EXPECT_EQ(ChangeAuthor(""), AAAD_ERR_MALFORMED);
    EXPECT_EQ(ChangeCritical(""), AAAD_ERR_MALFORMED);
    EXPECT_EQ(ChangeAuthorVpn(longest, "", 1), AAAD_ERR_MALFORMED);
    TLV_MSG* doubled = DOM_author_tlv_EncodeAuthorProfile("a");
    ASSERT_EQ(AAA_AppendStrTlvData(doubled, DOM_TLV_AUTHOR_PROFILE_NAME, "b"), 0u);
    EXPECT_EQ(Change(doubled), AAAD_ERR_MALFORMED);
    EXPECT_EQ(AuthorProfiles(), Strings{longest + " 0 "});
    EXPECT_TRUE(AuthorVpns().empty());
    EXPECT_TRUE(CriticalProfiles().empty());
}

TEST_F(DaemonProfiles, SegmentsWithUnusableTextsAreRefused) {
    const std::string too_long(32, 's');
    ASSERT_EQ(ChangeAuthor("p"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("p"), DOM_CRITICAL_OK);
    EXPECT_EQ(ChangeAuthorVpn("p", "", 1), AAAD_ERR_MALFORMED);
    EXPECT_EQ(ChangeCriticalVpn("p", "", 1), AAAD_ERR_MALFORMED);
    struct Kind {
        uint32_t vpn_code, segment_code;
        uint16_t profile, vpn, segment_id, segment_name;
    };
    for (const Kind& kind :
         {Kind{DOM_MSG_AUTHOR_VPN, DOM_MSG_AUTHOR_SEGMENT, DOM_TLV_AUTHOR_PROFILE_NAME,
               DOM_TLV_AUTHOR_VPN_NAME, DOM_TLV_AUTHOR_SEGMENT_ID, DOM_TLV_AUTHOR_SEGMENT_NAME},
          Kind{DOM_MSG_CRITICAL_VPN, DOM_MSG_CRITICAL_SEGMENT, DOM_TLV_CRITICAL_PROFILE_NAME,
               DOM_TLV_CRITICAL_VPN_NAME, DOM_TLV_CRITICAL_SEGMENT_ID,
               DOM_TLV_CRITICAL_SEGMENT_NAME}}) {
        const auto request = [&](uint32_t code, const std::string& vpn, const std::string& name) {
            TLV_MSG* message = CodeAlone(code);
            EXPECT_EQ(AAA_AppendStrTlvData(message, kind.profile, "p"), 0u);
            if (code == kind.vpn_code) {
                EXPECT_EQ(AAA_AppendStrTlvData(message, kind.vpn, vpn.c_str()), 0u);
            }
            EXPECT_EQ(AAA_AppendUINTTlvData(message, kind.segment_id, 1), 0u);
            EXPECT_EQ(AAA_AppendStrTlvData(message, kind.segment_name, name.c_str()), 0u);
            return message;
        };
        EXPECT_EQ(Change(request(kind.vpn_code, too_long, "s")), AAAD_ERR_MALFORMED);
        EXPECT_EQ(Change(request(kind.vpn_code, "v", too_long)), AAAD_ERR_MALFORMED);
        EXPECT_EQ(Change(request(kind.segment_code, "", too_long)), AAAD_ERR_MALFORMED);
        for (const uint32_t code : {kind.vpn_code, kind.segment_code}) {
            TLV_MSG* doubled = request(code, "v", "s");
            ASSERT_EQ(AAA_AppendStrTlvData(doubled, kind.segment_name, "t"), 0u);
            EXPECT_EQ(Change(doubled), AAAD_ERR_MALFORMED);
        }
    }
    EXPECT_TRUE(AuthorVpns().empty());
    EXPECT_TRUE(CriticalVpns().empty());
    EXPECT_EQ(AuthorProfiles(), Strings{"p 0 "});
    EXPECT_EQ(CriticalProfiles(), Strings{"p 0 0 "});
}

TEST_F(DaemonProfiles, WalksKeepTheirOrdersAndSkipProfilesWithoutEntries) {
    for (const char* name : {"b", "B2", "a", "empty"}) {
        ASSERT_EQ(ChangeAuthor(name), DOM_AUTHOR_OK);
        ASSERT_EQ(ChangeCritical(name), DOM_CRITICAL_OK);
    }
    for (const char* profile : {"b", "B2"}) {
        for (const char* vpn : {"zz", "aaa", "Z"}) {
            ASSERT_EQ(ChangeAuthorVpn(profile, vpn, 5), DOM_AUTHOR_OK);
            ASSERT_EQ(ChangeCriticalVpn(profile, vpn, 5), DOM_CRITICAL_OK);
        }
    }
    const Strings author{"B2 0 ", "a 0 ", "b 0 ", "empty 0 "};
    const Strings critical{"a 0 0 ", "b 0 0 ", "B2 0 0 ", "empty 0 0 "};
    const Strings author_vpns{"B2/Z 5 seg", "B2/aaa 5 seg", "B2/zz 5 seg",
                              "b/Z 5 seg",  "b/aaa 5 seg",  "b/zz 5 seg"};
    const Strings critical_vpns{"b/Z 5 1 seg",  "b/zz 5 1 seg",  "b/aaa 5 1 seg",
                                "B2/Z 5 1 seg", "B2/zz 5 1 seg", "B2/aaa 5 1 seg"};
    for (int start = 0; start < 2; ++start) {
        EXPECT_EQ(AuthorProfiles(), author);
        EXPECT_EQ(CriticalProfiles(), critical);
        EXPECT_EQ(AuthorVpns(), author_vpns);
        EXPECT_EQ(CriticalVpns(), critical_vpns);
        daemon_.Kill();
        ASSERT_TRUE(daemon_.Start());
    }
}

TEST_F(DaemonProfiles, ReadsOfMissingObjectsTellSo) {
    ASSERT_EQ(ChangeAuthor("p"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("p"), DOM_CRITICAL_OK);
    EXPECT_EQ(ResultOf(Ask(DOM_author_tlv_EncodeAuthorProfile("x"), DOM_OP_GET)), 21u);
    EXPECT_EQ(ResultOf(Ask(DOM_clitical_tlv_EncodeCriticalProfile("x"), DOM_OP_GET)), 12u);
    EXPECT_EQ(ResultOf(Ask(DOM_author_tlv_EncodeGetAuthorVpn("p", "v"), DOM_OP_GET)), 21u);
    EXPECT_EQ(ResultOf(Ask(DOM_critical_tlv_EncodeGetCriticalVpn("p", "v"), DOM_OP_GET)), 12u);
    EXPECT_EQ(ResultOf(Ask(DOM_author_tlv_EncodeAuthorProfile("p"), DOM_OP_GET_NEXT)), 21u);
    EXPECT_EQ(ResultOf(Ask(DOM_critical_tlv_EncodeGetCriticalVpn("", ""), DOM_OP_GET_NEXT)), 12u);
    EXPECT_EQ(
        ResultOf(Ask(DOM_author_tlv_EncodeAuthorProfile(std::string(32, 'p').c_str()), DOM_OP_GET)),
        AAAD_ERR_MALFORMED);
}

TEST_F(DaemonProfiles, EverythingSurvivesSigkill) {
    ASSERT_EQ(ChangeAuthor("Gold"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthor("gone"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorSegment("GOLD", 0xFFFFFFFF, "default"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("gold", "Blue", 1, "old"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("GOLD", "Blue", 2, "new"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("GOLD", "blue", 3, ""), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("Gold", "red", 4), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("gold", "red", 0, "", DOM_OP_DELETE), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("gold", "never", 0, "", DOM_OP_DELETE), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorSegment("gone", 9, "s"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("gone", "v", 9), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthor("GONE", DOM_OP_DELETE), DOM_AUTHOR_OK);

    ASSERT_EQ(ChangeCritical("Crit"), DOM_CRITICAL_OK);
    ASSERT_EQ(ChangeCriticalSegment("CRIT", 77, "default", 0xFEDC), DOM_CRITICAL_OK);
    ASSERT_EQ(ChangeCriticalVpn("crit", "Blue", 0x01020304, "seg", 0x0506), DOM_CRITICAL_OK);

    const Strings author_vpns{"Gold/Blue 2 new", "Gold/blue 3 "};
    EXPECT_EQ(AuthorVpns(), author_vpns);
    const auto before = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(AuthorProfiles(), Strings{"Gold 4294967295 default"});
    EXPECT_EQ(AuthorVpns(), author_vpns);
    EXPECT_EQ(CriticalProfiles(), Strings{"Crit 77 65244 default"});
    EXPECT_EQ(CriticalVpns(), Strings{"Crit/Blue 16909060 1286 seg"});

    // The longest names fit the keys.
    const std::string longest(31, 'n');
    ASSERT_EQ(ChangeAuthor(longest), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorSegment(longest, 1, longest), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn(longest, longest, 2, longest), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical(longest), DOM_CRITICAL_OK);
    ASSERT_EQ(ChangeCriticalSegment(longest, 1, longest, 1), DOM_CRITICAL_OK);
    ASSERT_EQ(ChangeCriticalVpn(longest, longest, 2, longest, 1), DOM_CRITICAL_OK);
    const auto with_longest = WholeConfiguration();
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), with_longest);
    ASSERT_EQ(ChangeAuthor(longest, DOM_OP_DELETE), DOM_AUTHOR_OK);

    // A profile of a deleted one's name begins empty.
    ASSERT_EQ(ChangeAuthor("gone"), DOM_AUTHOR_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(AuthorProfiles(), (Strings{"Gold 4294967295 default", "gone 0 "}));
    EXPECT_EQ(AuthorVpns(), author_vpns);
}

// The store takes over what a deletion carries while the database drops the segment, so without the
// daemon's help memory and database would differ until the next start.
TEST_F(DaemonProfiles, DeletedDefaultSegmentIsGoneWhateverTheDeletionCarries) {
    ASSERT_EQ(ChangeAuthor("p"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("p"), DOM_CRITICAL_OK);
    ASSERT_EQ(ChangeAuthorSegment("p", 5, "s"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCriticalSegment("p", 5, "s", 5), DOM_CRITICAL_OK);
    EXPECT_EQ(ChangeAuthorSegment("P", 6, "other", DOM_OP_DELETE), DOM_AUTHOR_OK);
    EXPECT_EQ(ChangeCriticalSegment("P", 6, "other", 6, DOM_OP_DELETE), DOM_CRITICAL_OK);
    EXPECT_EQ(ChangeAuthorSegment("none", 0, "", DOM_OP_DELETE), DOM_AUTHOR_FAILED);
    for (int start = 0; start < 2; ++start) {
        EXPECT_EQ(AuthorProfiles(), Strings{"p 0 "});
        EXPECT_EQ(CriticalProfiles(), Strings{"p 0 0 "});
        daemon_.Kill();
        ASSERT_TRUE(daemon_.Start());
    }
}

// The database cannot grow: what memory took is taken back in both roles, and the answer says so
// although the library answers an unsaved default segment with 0.
TEST_F(DaemonProfiles, UnsavedChangesAreTakenBack) {
    ASSERT_EQ(ChangeAuthor("kept"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("kept", "v", 1), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("kept"), DOM_CRITICAL_OK);
    const auto before = WholeConfiguration();
    rlimit old_limit{};
    const rlimit no_room{4096, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &no_room, &old_limit), 0);
    EXPECT_EQ(ChangeAuthor("new"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(ChangeAuthor("kept", DOM_OP_DELETE), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(ChangeAuthorVpn("kept", "v", 2), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(ChangeAuthorVpn("kept", "v", 0, "", DOM_OP_DELETE), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(ChangeAuthorSegment("kept", 2, "s"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(ChangeCriticalSegment("kept", 2, "s", 1), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(ChangeCritical("kept"), DOM_CRITICAL_PROFILE_EXISTS);
    EXPECT_EQ(WholeConfiguration(), before);
    ASSERT_EQ(prlimit(daemon_.Pid(), RLIMIT_FSIZE, &old_limit, nullptr), 0);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(WholeConfiguration(), before);
}

TEST_F(DaemonProfiles, ReportOfAProfileHoldsItsEntries) {
    ASSERT_EQ(ChangeAuthor("Gold"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorSegment("Gold", 7, "default"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("Gold", "b", 2, "two"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("Gold", "a", 1, "one"), DOM_AUTHOR_OK);
    uint32_t result = 0;
    EXPECT_EQ(MOR_GetAAAAuthorProfileNum(DOM_OP_GET, &result), 1u);
    AAAAuthorProfile report{};
    ASSERT_EQ(MOR_GetAAAAuthorProfile("gold", DOM_OP_GET, &report, &result), DOM_OK);
    EXPECT_STREQ(report.profile_name, "Gold");
    EXPECT_EQ(report.value_434, 2u);
    EXPECT_EQ(report.segment_id, 7u);
    EXPECT_STREQ(report.segment_name, "default");
    ASSERT_EQ(report.entry_count, 2u);
    EXPECT_EQ(report.entries[0].number, 1u);
    EXPECT_STREQ(report.entries[0].text1, "one");
    EXPECT_STREQ(report.entries[0].text2, "a");
    EXPECT_STREQ(report.entries[1].text2, "b");
    EXPECT_EQ(MOR_GetAAAAuthorProfile("none", DOM_OP_GET, &report, &result), DOM_OK);
    EXPECT_EQ(result, DOM_AUTHOR_PROFILE_NOT_EXIST);
}

using DaemonDamagedProfiles = DaemonTestWithLog;

TEST_F(DaemonDamagedProfiles, AreNamedInTheLogAndTheRestIsServed) {
    ASSERT_EQ(ChangeAuthor("good"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("good", "v", 1), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeCritical("crit"), DOM_CRITICAL_OK);
    ASSERT_EQ(ChangeCriticalSegment("crit", 3, "s", 4), DOM_CRITICAL_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        database.SetBinary("criticalmicrosegmentname_crit",
                           std::string(DOM_DB_CRITICAL_ENTRY_SIZE + 1, '\1'),
                           DOM_DB_CRITICAL_SEGMENT);
        database.SetBinary("authorprofilename_nolist", "x", DOM_DB_AUTHOR_ENTRY);
        database.SetBinary("somethingelse", "x", DOM_DB_CRITICAL_ENTRY);
        const uint32_t attributes[4] = {DOM_DB_AUTHOR_ENTRY_VPN_OFFSET, 32, DBM_KEY_KIND_TEXT, 0};
        for (const char* name : {"GOOD", "authorprofilename_", "authorprofilename_Good"}) {
            ASSERT_EQ(
                DBM_CreateSortList(database.Handle(), name, static_cast<uint32_t>(strlen(name) + 1),
                                   attributes, 1, DOM_DB_AUTHOR_ENTRY),
                0u);
        }
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(AuthorProfiles(), Strings{"Good 0 "});
    EXPECT_EQ(CriticalProfiles(), Strings{"crit 0 0 "});
    EXPECT_EQ(LinesWith("\"criticalmicrosegmentname_crit\""), 1);
    EXPECT_EQ(LinesWith("\"authorprofilename_nolist\""), 1);
    EXPECT_EQ(LinesWith("\"somethingelse\""), 1);
    EXPECT_EQ(LinesWith("\"GOOD\""), 1);
    EXPECT_EQ(LinesWith("\"authorprofilename_\""), 1);
    // Of two profiles that differ in letter case the first in the order of keys is served.
    EXPECT_EQ(LinesWith("\"authorprofilename_good\""), 1);
}

TEST_F(DaemonDamagedProfiles, WhatADeviceMayNotHaveIsLeftOut) {
    for (int i = 0; i < 16; ++i) ASSERT_EQ(ChangeAuthor("p" + std::to_string(i)), DOM_AUTHOR_OK);
    for (int i = 0; i < 128; ++i) {
        ASSERT_EQ(ChangeAuthorVpn("p0", "v" + std::to_string(i), 1), DOM_AUTHOR_OK);
    }
    const auto before = WholeConfiguration();
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        const uint32_t attributes[4] = {DOM_DB_AUTHOR_ENTRY_VPN_OFFSET, 32, DBM_KEY_KIND_TEXT, 0};
        ASSERT_EQ(DBM_CreateSortList(database.Handle(), "authorprofilename_z", 20, attributes, 1,
                                     DOM_DB_AUTHOR_ENTRY),
                  0u);
        std::string entry(DOM_DB_AUTHOR_ENTRY_SIZE, '\0');
        entry[0] = 1;
        entry[DOM_DB_AUTHOR_ENTRY_VPN_OFFSET] = 'z';
        ASSERT_EQ(DBM_InsertSortList(database.Handle(), "authorprofilename_p0", 21,
                                     DOM_DB_AUTHOR_ENTRY_SIZE, entry.data(), DOM_DB_AUTHOR_ENTRY),
                  0u);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(WholeConfiguration(), before);
    EXPECT_EQ(LinesWith("\"authorprofilename_z\": there are more profiles"), 1);
    EXPECT_EQ(LinesWith("\"authorprofilename_p0\": it has more VPNs"), 1);
}

// The first bytes of such an entry alone would be one of today's.
TEST_F(DaemonDamagedProfiles, EntriesOfAnotherSizeAreRefused) {
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        const uint32_t attributes[4] = {DOM_DB_AUTHOR_ENTRY_VPN_OFFSET, 32, DBM_KEY_KIND_TEXT, 0};
        ASSERT_EQ(DBM_CreateSortList(database.Handle(), "authorprofilename_p", 20, attributes, 1,
                                     DOM_DB_AUTHOR_ENTRY),
                  0u);
        std::string entry(DOM_DB_AUTHOR_ENTRY_SIZE + 1, '\0');
        entry[0] = 1;
        entry[DOM_DB_AUTHOR_ENTRY_VPN_OFFSET] = 'v';
        ASSERT_EQ(DBM_InsertSortList(database.Handle(), "authorprofilename_p", 20,
                                     static_cast<uint32_t>(entry.size()), entry.data(),
                                     DOM_DB_AUTHOR_ENTRY),
                  0u);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(AuthorProfiles(), Strings{"p 0 "});
    EXPECT_TRUE(AuthorVpns().empty());
    EXPECT_EQ(LinesWith("\"authorprofilename_p\""), 1);
}

TEST_F(DaemonDamagedProfiles, EntriesBesideADamagedOneAreServed) {
    ASSERT_EQ(ChangeAuthor("good"), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("good", "v", 1), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorVpn("good", "z", 2), DOM_AUTHOR_OK);
    ASSERT_EQ(ChangeAuthorSegment("good", 3, "s"), DOM_AUTHOR_OK);
    ASSERT_EQ(daemon_.Terminate(), 0);
    {
        StoppedDatabase database(daemon_);
        std::string endless(DOM_DB_AUTHOR_ENTRY_SIZE, 'x');
        std::string without_identifier(DOM_DB_AUTHOR_ENTRY_SIZE, '\0');
        without_identifier[DOM_DB_AUTHOR_ENTRY_VPN_OFFSET] = 'w';
        std::string without_name(DOM_DB_AUTHOR_ENTRY_SIZE, '\0');
        without_name[0] = 1;
        for (const std::string& entry : {endless, without_identifier, without_name}) {
            ASSERT_EQ(
                DBM_InsertSortList(database.Handle(), "authorprofilename_good", 23,
                                   DOM_DB_AUTHOR_ENTRY_SIZE, entry.data(), DOM_DB_AUTHOR_ENTRY),
                0u);
        }
        database.SetBinary("authormicrosegmentname_good", "short", DOM_DB_AUTHOR_SEGMENT);
    }
    ASSERT_TRUE(StartWithLog());
    EXPECT_EQ(AuthorProfiles(), Strings{"good 0 "});
    EXPECT_EQ(AuthorVpns(), (Strings{"good/v 1 seg", "good/z 2 seg"}));
    EXPECT_EQ(LinesWith("\"authorprofilename_good\""), 3);
    EXPECT_EQ(LinesWith("\"authormicrosegmentname_good\""), 1);
    ASSERT_EQ(ChangeAuthorSegment("good", 8, "t"), DOM_AUTHOR_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(AuthorProfiles(), Strings{"good 8 t"});
}

}  // namespace
