// The words for reason codes: all of them against a list taken by other means, and its digest.
#include <aaadom/user_record.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <string>

namespace {

std::string Reason(uint32_t code) {
    char text[256];
    const uint32_t length = AAA_GetRecordReasonString(code, sizeof text, text);
    EXPECT_EQ(length, strlen(text));
    return text;
}

bool HasText(uint32_t code) {
    return code <= 91 || (code >= 99 && code <= 107) || code == 779 ||
           (code >= 2001 && code <= 2119);
}

/// The lines of tests/golden/reason_codes.txt: the code, a blank, the text.
std::map<uint32_t, std::string> ListedReasons() {
    std::ifstream file(AAADOM_SOURCE_DIR "/tests/golden/reason_codes.txt");
    std::map<uint32_t, std::string> reasons;
    for (std::string line; std::getline(file, line);) {
        const size_t blank = line.find(' ');
        reasons[static_cast<uint32_t>(std::stoul(line))] = line.substr(blank + 1);
    }
    return reasons;
}

TEST(ReasonTexts, EveryCodeSaysWhatTheListSays) {
    const std::map<uint32_t, std::string> listed = ListedReasons();
    ASSERT_EQ(listed.size(), 221u);
    for (uint32_t code = 0; code <= 2200; ++code) {
        const auto found = listed.find(code);
        const std::string want = found != listed.end()
                                     ? found->second
                                     : "Unknown reason code " + std::to_string(code) + ".";
        EXPECT_EQ(Reason(code), want);
    }
}

// A list and a table that were "corrected" together still differ from this number: 64-bit FNV-1a of
// "<code> <text>\n" of every code with a text.
TEST(ReasonTexts, DigestOfAllTexts) {
    uint64_t digest = 0xCBF29CE484222325u;
    for (uint32_t code = 0; code <= DOM_RECORD_REASON_MAX; ++code) {
        if (!HasText(code)) continue;
        for (const char c : std::to_string(code) + " " + Reason(code) + "\n") {
            digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
        }
    }
    EXPECT_EQ(digest, 0x53C3F58F8AC26D64u);
}

TEST(ReasonTexts, CodesWithoutATextAreUnknown) {
    for (uint32_t code = 0; code <= DOM_RECORD_REASON_MAX; ++code) {
        if (HasText(code)) continue;
        EXPECT_EQ(Reason(code), "Unknown reason code " + std::to_string(code) + ".");
    }
}

TEST(ReasonTexts, LastSlotIsEmptyAndCodesAboveAreUnknown) {
    EXPECT_EQ(Reason(2119), "PAE or BE state machine operation error.");
    EXPECT_EQ(Reason(2120), "Unknown reason code 2120.");
    EXPECT_EQ(Reason(2121), "Unknown reason code 2121.");
    EXPECT_EQ(Reason(0x80000000u), "Unknown reason code 2147483648.");
    EXPECT_EQ(Reason(0xFFFFFFFFu), "Unknown reason code 4294967295.");
}

TEST(ReasonTexts, LoneCodeBetweenEmptyOnes) {
    EXPECT_EQ(Reason(778), "Unknown reason code 778.");
    EXPECT_EQ(Reason(779), "Local-user access-limit.");
    EXPECT_EQ(Reason(780), "Unknown reason code 780.");
}

// Operators' scripts compare the texts: whoever mends one breaks them.
TEST(ReasonTexts, PeculiarTextsStayAsTheyAre) {
    EXPECT_EQ(Reason(0), "N/A");
    EXPECT_EQ(Reason(90),
              "Failed to obtain an IP address of the type specified for basicservices of users.");
    EXPECT_EQ(Reason(101),
              "The lock flag of the local user is lock in the password control blacklist.");
    EXPECT_EQ(Reason(2010), "authorization failed.");
    EXPECT_EQ(Reason(2083), "Web server unreachable.");
    EXPECT_EQ(Reason(2112), "Web server unreachable.");
}

TEST(ReasonTexts, LongTextsAreCutAndCountedAsWritten) {
    char text[] = "xxxxxx";
    EXPECT_EQ(AAA_GetRecordReasonString(1, 5, text), 4u);
    EXPECT_EQ(std::string(text, 6), std::string("Lost\0x", 6));
    EXPECT_EQ(AAA_GetRecordReasonString(2120, 5, text), 4u);
    EXPECT_STREQ(text, "Unkn");
}

TEST(ReasonTexts, TextThatJustFitsIsWhole) {
    char text[14];
    EXPECT_EQ(AAA_GetRecordReasonString(1, sizeof text, text), 13u);
    EXPECT_STREQ(text, "Lost carrier.");
    EXPECT_EQ(AAA_GetRecordReasonString(1, 13, text), 12u);
    EXPECT_STREQ(text, "Lost carrier");
}

TEST(ReasonTexts, SmallestBuffers) {
    char text[] = "xx";
    EXPECT_EQ(AAA_GetRecordReasonString(1, 0, text), 0u);
    EXPECT_STREQ(text, "xx");
    EXPECT_EQ(AAA_GetRecordReasonString(1, 1, text), 0u);
    EXPECT_EQ(std::string(text, 2), std::string("\0x", 2));
    EXPECT_EQ(AAA_GetRecordReasonString(1, 10, nullptr), 0u);
}

}  // namespace
