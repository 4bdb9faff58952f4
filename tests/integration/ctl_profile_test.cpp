// aaactl and profiles that are as full as they can be.
#include <fstream>
#include <sstream>

#include "integration/ctl_process.h"

using namespace daemon_test;

namespace {

using CtlFullProfile = DaemonTest;

constexpr int kVpns = static_cast<int>(DOM_PROFILE_VPN_MAX);

std::string FileText(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string Vpn(int number) {
    return "vpn" + std::to_string(number);
}

void Copy(char (&field)[DOM_PROFILE_NAME_SIZE], const std::string& text) {
    text.copy(field, sizeof field - 1);
}

uint32_t SetAuthorVpn(const std::string& profile, const std::string& vpn) {
    AuthorProfileMsg entry{};
    entry.segment_id = 1;
    Copy(entry.profile_name, profile);
    Copy(entry.vpn_name, vpn);
    return Change(DOM_author_tlv_EncodeAuthorVpn(&entry));
}

uint32_t SetCriticalVpn(const std::string& profile, const std::string& vpn) {
    CriticalProfileMsg entry{};
    entry.segment_id = 1;
    Copy(entry.profile_name, profile);
    Copy(entry.vpn_name, vpn);
    return Change(DOM_critical_tlv_EncodeCriticalVpn(&entry));
}

void FillBoth() {
    ASSERT_EQ(Change(DOM_author_tlv_EncodeAuthorProfile("p")), DOM_OK);
    ASSERT_EQ(Change(DOM_clitical_tlv_EncodeCriticalProfile("p")), DOM_OK);
    for (int i = 0; i < kVpns; ++i) {
        ASSERT_EQ(SetAuthorVpn("p", Vpn(i)), DOM_AUTHOR_OK);
        ASSERT_EQ(SetCriticalVpn("p", Vpn(i)), DOM_CRITICAL_OK);
    }
}

std::string DocumentWithVpns(const std::string& member, int count) {
    std::string vpns;
    for (int i = 0; i < count; ++i) {
        vpns += (i == 0 ? "\"" : ", \"") + Vpn(i + 1) + "\": {\"id\": 2}";
    }
    return R"({"format": "aaad-config", "version": 1, ")" + member + R"(": {"p": {"vpns": {)" +
           vpns + "}}}}";
}

TEST_F(CtlFullProfile, FurtherVpnIsRefusedInWordsAndReplacingOneIsNot) {
    FillBoth();
    for (const std::string store : {"author", "critical"}) {
        const CtlAnswer more =
            RunCtl(daemon_, "profile " + store + " vpn set p one-more --segment-id 3");
        EXPECT_EQ(more.status, 1);
        EXPECT_EQ(more.text, "aaactl: " + store +
                                 " profile \"p\": it has 128 VPNs, and no profile has more. Take a "
                                 "VPN away that is no longer used: aaactl profile " +
                                 store + " vpn unset p VPN.\n");
        EXPECT_EQ(RunCtl(daemon_, "profile " + store + " vpn set p vpn0 --segment-id 3").status, 0);
        EXPECT_NE(RunCtl(daemon_, "profile " + store + " list").text.find("128 VPNs"),
                  std::string::npos);
    }
}

TEST_F(CtlFullProfile, IsExportedAndImportedWhole) {
    FillBoth();
    ASSERT_EQ(RunCtl(daemon_, "config export one").status, 0);
    ASSERT_EQ(Change(DOM_author_tlv_EncodeAuthorProfile("p"), DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(Change(DOM_clitical_tlv_EncodeCriticalProfile("p"), DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(RunCtl(daemon_, "config import one").status, 0);
    ASSERT_EQ(RunCtl(daemon_, "config export two").status, 0);
    EXPECT_EQ(FileText(daemon_.RunDir() + "/one"), FileText(daemon_.RunDir() + "/two"));
}

TEST_F(CtlFullProfile, ImportMakesRoomForTheVpnsOfTheFile) {
    FillBoth();
    // The file lacks vpn0 and has vpn128.
    for (const char* member : {"author_profiles", "critical_profiles"}) {
        std::ofstream(daemon_.RunDir() + "/file") << DocumentWithVpns(member, kVpns);
        const CtlAnswer imported = RunCtl(daemon_, "config import file");
        EXPECT_EQ(imported.status, 0) << imported.text;
    }
    for (const char* store : {"author", "critical"}) {
        const std::string shown = RunCtl(daemon_, "profile " + std::string(store) + " show p").text;
        EXPECT_EQ(shown.find("VPN vpn0 "), std::string::npos) << shown;
        EXPECT_NE(shown.find("VPN vpn128 "), std::string::npos) << shown;
    }
}

TEST_F(CtlFullProfile, FileWithTooManyVpnsChangesNothing) {
    for (const char* member : {"author_profiles", "critical_profiles"}) {
        std::ofstream(daemon_.RunDir() + "/file") << DocumentWithVpns(member, kVpns + 1);
        const CtlAnswer refused = RunCtl(daemon_, "config import file");
        EXPECT_EQ(refused.status, 2);
        EXPECT_NE(refused.text.find("129 VPNs"), std::string::npos) << refused.text;
    }
    EXPECT_EQ(RunCtl(daemon_, "profile author list").text, "");
    EXPECT_EQ(RunCtl(daemon_, "profile critical list").text, "");
}

TEST_F(CtlFullProfile, OddBytesInNamesComeBackUnchanged) {
    const std::string odd = "odd\xFF\x1B[31m\n";
    ASSERT_EQ(Change(DOM_author_tlv_EncodeAuthorProfile(odd.c_str())), DOM_OK);
    ASSERT_EQ(SetAuthorVpn(odd, odd), DOM_AUTHOR_OK);
    ASSERT_EQ(DOM_ita_mor_SetPolicy(1, odd.c_str()), DOM_OK);
    EXPECT_EQ(RunCtl(daemon_, "policy acct list").text,
              "odd\\xff\\x1b[31m\\x0a  methods none  0 levels\n");
    EXPECT_EQ(RunCtl(daemon_, "profile author list").text,
              "odd\\xff\\x1b[31m\\x0a  segment -  1 VPN\n");
    ASSERT_EQ(RunCtl(daemon_, "config export one").status, 0);
    ASSERT_EQ(Change(DOM_author_tlv_EncodeAuthorProfile(odd.c_str()), DOM_OP_DELETE), DOM_OK);
    ASSERT_EQ(DOM_ita_mor_SetPolicy(0, odd.c_str()), DOM_OK);
    ASSERT_EQ(RunCtl(daemon_, "config import one").status, 0);
    ASSERT_EQ(RunCtl(daemon_, "config export two").status, 0);
    EXPECT_EQ(FileText(daemon_.RunDir() + "/one"), FileText(daemon_.RunDir() + "/two"));
}

}  // namespace
