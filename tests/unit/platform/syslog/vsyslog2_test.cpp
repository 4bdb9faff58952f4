#include <gtest/gtest.h>
#include <platform/syslog.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace {
int logged_priority = -1;
std::string logged_line;
int logged_count = 0;
}  // namespace

// The program's own syslog, which the linker takes before the C library's: it keeps the line.
#pragma GCC visibility push(default)
extern "C" void syslog(int priority, const char* format, ...) {
    char line[8192];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof line, format, args);
    va_end(args);
    logged_priority = priority;
    logged_line = line;
    ++logged_count;
    errno = 99;
}
#pragma GCC visibility pop

namespace {

constexpr uint32_t kDebug = 0x010000BF;

void Log(uint32_t priority, const char* module, const char* label, const char* format, ...) {
    logged_line.clear();
    va_list args;
    va_start(args, format);
    vsyslog2(priority, module, label, format, args);
    va_end(args);
}

TEST(Vsyslog2, WritesModuleLabelAndText) {
    Log(kDebug, "AAA", "EVENT", "user %s, %u sessions", "bob", 3u);
    EXPECT_EQ("AAA/EVENT: user bob, 3 sessions", logged_line);
}

TEST(Vsyslog2, TakesThePlatformFlagOffThePriority) {
    Log(kDebug, "AAA", "EVENT", "x");
    EXPECT_EQ(191, logged_priority);
    Log(0xFFFFFFFF, "AAA", "EVENT", "x");
    EXPECT_EQ(0x3FF, logged_priority);
}

TEST(Vsyslog2, PercentInModuleLabelAndTextIsNoFormat) {
    Log(kDebug, "A%s", "L%n%d", "%s", "100%s");
    EXPECT_EQ("A%s/L%n%d: 100%s", logged_line);
}

TEST(Vsyslog2, MissingWordsAreLeftOut) {
    Log(kDebug, nullptr, "EVENT", "x");
    EXPECT_EQ("EVENT: x", logged_line);
    Log(kDebug, "AAA", nullptr, "x");
    EXPECT_EQ("AAA: x", logged_line);
    Log(kDebug, nullptr, nullptr, "x");
    EXPECT_EQ("x", logged_line);
}

TEST(Vsyslog2, NoFormatWritesNothing) {
    const int before = logged_count;
    Log(kDebug, "AAA", "EVENT", nullptr);
    EXPECT_EQ(before, logged_count);
}

TEST(Vsyslog2, ALongTextIsCutWithAMark) {
    const std::string text(5000, 'x');
    Log(kDebug, "AAA", "EVENT", "%s", text.c_str());
    const std::string prefix = "AAA/EVENT: ";
    EXPECT_EQ(prefix + std::string(2044, 'x') + "...", logged_line);
}

TEST(Vsyslog2, TheLongestTextIsNotCut) {
    const std::string text(2047, 'x');
    Log(kDebug, "AAA", "EVENT", "%s", text.c_str());
    EXPECT_EQ("AAA/EVENT: " + text, logged_line);
}

TEST(Vsyslog2, ACutNeverSplitsACharacter) {
    std::string text = "y";
    while (text.size() < 3000) text += "\xC3\xA4";
    Log(kDebug, "AAA", "EVENT", "%s", text.c_str());
    const std::string prefix = "AAA/EVENT: y";
    ASSERT_GT(logged_line.size(), prefix.size() + 3);
    EXPECT_EQ("...", logged_line.substr(logged_line.size() - 3));
    EXPECT_EQ(0u, (logged_line.size() - prefix.size() - 3) % 2) << "whole two-byte characters";
}

TEST(Vsyslog2, BytesThatAreNoCharactersAreCutAsOthers) {
    const std::string text(5000, '\x80');
    Log(kDebug, "AAA", "EVENT", "%s", text.c_str());
    EXPECT_EQ("AAA/EVENT: " + std::string(2044, '\x80') + "...", logged_line);
}

TEST(Vsyslog2, FormatMayNameTheCallersErrno) {
    errno = ENOENT;
    Log(kDebug, "AAA", "EVENT", "open: %m");
    EXPECT_EQ("AAA/EVENT: open: No such file or directory", logged_line);
}

TEST(Vsyslog2, ATextThatCannotBeFormattedIsSaidSo) {
    const wchar_t no_character[] = {static_cast<wchar_t>(0x7FFFFFFF), 0};
    Log(kDebug, "AAA", "EVENT", "%ls", no_character);
    EXPECT_EQ("AAA/EVENT: a line that cannot be formatted", logged_line);
}

TEST(Vsyslog2, OneCallIsOneLine) {
    Log(kDebug, "A\nB", "E\tV", "first\nsecond\r\x1b[31m\x7f");
    EXPECT_EQ("A B/E V: first second  [31m ", logged_line);
}

TEST(Vsyslog2, LongModuleAndLabelAreCut) {
    const std::string word(100, 'w');
    Log(kDebug, word.c_str(), word.c_str(), "x");
    EXPECT_EQ(std::string(63, 'w') + "/" + std::string(63, 'w') + ": x", logged_line);
}

TEST(Vsyslog2, ErrnoStaysAsItWas) {
    errno = EBUSY;
    Log(kDebug, "AAA", "EVENT", "x");
    const int after = errno;
    EXPECT_EQ(EBUSY, after);
}

}  // namespace
