#include "shared/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace consolidator::test {

namespace {

TEST(Utf8, CountsTheBytesOfACharacter) {
    EXPECT_EQ(utf8Length("a"), 1U);
    EXPECT_EQ(utf8Length(std::string_view("\0", 1)), 1U);
    EXPECT_EQ(utf8Length("\xC3\xA4x"), 2U);
    EXPECT_EQ(utf8Length("\xE2\x82\xACx"), 3U);
    EXPECT_EQ(utf8Length("\xF0\x9F\x94\xA7"), 4U);
    EXPECT_EQ(utf8Length("\xF4\x8F\xBF\xBF"), 4U);
}

TEST(Utf8, KnowsWhatIsNoCharacter) {
    for (const char* text : {"", "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3x",
                             "\xE0\x9F\xBF", "\xE2\x82", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                             "\xF4\x90\x80\x80", "\xF0\x9F\x94", "\xF5\x80\x80\x80", "\xFF"}) {
        EXPECT_EQ(utf8Length(text), 0U) << testing::PrintToString(std::string(text));
    }
}

TEST(Utf8, CutsATextBetweenCharacters) {
    EXPECT_EQ(utf8Beginning("", 0), "");
    EXPECT_EQ(utf8Beginning("abc", 3), "abc");
    EXPECT_EQ(utf8Beginning("abcd", 3), "abc");
    EXPECT_EQ(utf8Beginning("ab\xC3\xA9", 4), "ab\xC3\xA9");
    EXPECT_EQ(utf8Beginning("ab\xC3\xA9", 3), "ab");
    EXPECT_EQ(utf8Beginning("\xC3\xA9x", 2), "\xC3\xA9");
    EXPECT_EQ(utf8Beginning("\xF0\x9F\x94\xA7", 3), "");
    EXPECT_EQ(utf8Beginning("\xA9\xA9", 1), "");
    EXPECT_EQ(utf8Beginning("\x80\x80\x80\x80\x80\x80", 5), "\x80\x80"); // no character
}

TEST(Utf8, KnowsATextThatIsAllCharacters) {
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8("caf\xC3\xA9 \xF0\x9F\x94\xA7"));
    EXPECT_TRUE(isUtf8(std::string_view("\0", 1)));
    EXPECT_FALSE(isUtf8("caf\xC3"));
    EXPECT_FALSE(isUtf8("\xFF and more"));
    EXPECT_FALSE(isUtf8("\xC3\xA9\x80"));
}

TEST(Utf8, PutsAReplacementInThePlaceOfEveryOtherByte) {
    EXPECT_EQ(validUtf8("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(validUtf8("a\xE2\x82z"), "a\xEF\xBF\xBD\xEF\xBF\xBDz");
}

} // namespace

} // namespace consolidator::test
