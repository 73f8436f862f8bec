#include "shared/Printable.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace consolidator::test {

namespace {

TEST(Printable, LeavesNamesAlone) {
    EXPECT_EQ(printable("/top/k_1/inst/state_r[3]"), "/top/k_1/inst/state_r[3]");
    EXPECT_EQ(printable("gr\xC3\xB6\xC3\x9F"
                        "e \xF0\x9F\x94\xA7"),
              "gr\xC3\xB6\xC3\x9F"
              "e \xF0\x9F\x94\xA7");
}

TEST(Printable, EscapesWhatATerminalWouldObey) {
    EXPECT_EQ(printable(std::string_view("a\nb\tc\x1b[0m\x7f\0", 10)), R"(a\nb\tc\x1b[0m\x7f)");
    EXPECT_EQ(printable(std::string_view("\0", 1)), R"(\x00)");
    EXPECT_EQ(printable("\xC2\x9B"), R"(\xc2\x9b)");
    EXPECT_EQ(printable("\xC2\xA0"), "\xC2\xA0");
    EXPECT_EQ(printable("\xFF"), R"(\xff)");
    EXPECT_EQ(printable(R"(\n)"), R"(\\n)");
}

TEST(Printable, CutsTextsThatComeAgainAndAgain) {
    const std::string longest(longestRepeated, 'x');
    EXPECT_EQ(shortPrintable("a\x1b"), R"(a\x1b)");
    EXPECT_EQ(shortPrintable(longest), longest);
    EXPECT_EQ(shortPrintable(longest + 'x'), longest + "\xE2\x80\xA6");
    // The four bytes of the character would be the bytes 498 to 501.
    const std::string before = longest.substr(3);
    EXPECT_EQ(shortPrintable(before + "\xF0\x9F\x94\xA7"), before + "\xE2\x80\xA6");
    // Of such bytes without end, only those of one character are looked at.
    const std::string noText(longestRepeated + 1, '\x80');
    EXPECT_EQ(columns(shortPrintable(noText)), 4 * (longestRepeated - 3) + 1);
}

TEST(Printable, CutsTextsWhereItIsTold) {
    EXPECT_EQ(shortPrintable("abc", 3), "abc");
    EXPECT_EQ(shortPrintable("abcd", 3), "abc\xE2\x80\xA6");
    EXPECT_EQ(shortPrintable("ab\xC3\xA4", 3), "ab\xE2\x80\xA6");
    EXPECT_EQ(shortPrintable("ab\x1b\x1b", 3), "ab\\x1b\xE2\x80\xA6"); // bytes as they come count
}

TEST(Printable, PutsTextsBetweenQuotes) {
    EXPECT_EQ(quotedPrintable("k"), "\"k\"");
    EXPECT_EQ(quotedPrintable(""), "\"\"");
    EXPECT_EQ(quotedPrintable("a\x1b\\\"b"), R"("a\x1b\\"b")");
    EXPECT_EQ(quotedShortPrintable("abcd", 3), "\"abc\xE2\x80\xA6\"");
    EXPECT_EQ(quotedShortPrintable("abc", 3), "\"abc\"");
}

TEST(Printable, EscapesWhatAReaderWouldNotSee) {
    EXPECT_EQ(printable("\xEF\xBB\xBFk"), R"(\xef\xbb\xbfk)"); // U+FEFF
    EXPECT_EQ(printable("a\xE2\x80\xAE"
                        "b"),
              R"(a\xe2\x80\xaeb)");                          // U+202E
    EXPECT_EQ(printable("\xE2\x81\xA6"), R"(\xe2\x81\xa6)"); // U+2066
    EXPECT_EQ(printable("\xE2\x80\x8A\xE2\x80\x90"), "\xE2\x80\x8A\xE2\x80\x90");
    EXPECT_EQ(printable("\xE2\x82\xAC"), "\xE2\x82\xAC"); // U+20AC
}

TEST(Printable, CountsCharactersAsColumns) {
    EXPECT_EQ(columns(""), 0U);
    EXPECT_EQ(columns("gr\xC3\xB6\xC3\x9F"), 4U);
}

} // namespace

} // namespace consolidator::test
