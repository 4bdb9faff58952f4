#include "base/text.h"

#include <gtest/gtest.h>

#include <string>

namespace aaadom {
namespace {

TEST(CopyText, CutsToTheCapacityAndTerminates) {
    char buffer[4] = {'x', 'x', 'x', 'x'};
    CopyText(buffer, "abcdef");
    EXPECT_STREQ(buffer, "abc");
}

TEST(CopyText, LeavesTheBytesAfterTheTerminator) {
    char buffer[6] = {'1', '2', '3', '4', '5', '6'};
    CopyText(buffer, "a");
    EXPECT_EQ(std::string(buffer, 6), std::string("a\0"
                                                  "3456",
                                                  6));
}

TEST(CopyText, CapacityZeroWritesNothing) {
    char buffer[1] = {'x'};
    CopyText(buffer, 0, "a");
    EXPECT_EQ(buffer[0], 'x');
}

TEST(CopyText, NullSourceIsTheEmptyText) {
    char buffer[2] = {'x', 'x'};
    CopyText(buffer, nullptr);
    EXPECT_STREQ(buffer, "");
}

TEST(CopyText, NullDestinationIsSkipped) {
    CopyText(nullptr, 8, "abc");
}

TEST(CopyField, UnterminatedSourceIsNotReadPastItsField) {
    struct {
        char field[3] = {'a', 'b', 'c'};
        char behind[3] = {'X', 'Y', '\0'};
    } source;
    char destination[8];
    CopyField(destination, source.field);
    EXPECT_STREQ(destination, "abc");
}

TEST(CopyBounded, SourceAndDestinationMayBeTheSame) {
    char text[4] = "abc";
    CopyBounded(text, sizeof text, text, sizeof text);
    EXPECT_STREQ(text, "abc");
}

TEST(BoundedLength, StopsAtTheFieldsEnd) {
    char full[2] = {'a', 'b'};
    EXPECT_EQ(BoundedLength(full, 2), 2u);
}

TEST(IsEmpty, NullAndEmptyTextsAreEmpty) {
    EXPECT_TRUE(IsEmpty(nullptr));
    EXPECT_TRUE(IsEmpty(""));
    EXPECT_FALSE(IsEmpty("a"));
}

TEST(EqualIgnoringCase, ComparesWholeTexts) {
    EXPECT_TRUE(EqualIgnoringCase("aBc", "AbC"));
    EXPECT_FALSE(EqualIgnoringCase("abc", "abcd"));
}

}  // namespace
}  // namespace aaadom
