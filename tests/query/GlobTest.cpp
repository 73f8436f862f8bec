// Which names a glob matches.

#include "query/NamePattern.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace consolidator::test {

namespace {

NamePattern globOf(const std::string& pattern) {
    return NamePattern(pattern, NamePattern::Kind::Glob);
}

bool matches(const std::string& pattern, std::string_view text) {
    const NamePattern glob = globOf(pattern);
    EXPECT_EQ(glob.error(), "") << pattern;
    return glob.matchesName(text);
}

TEST(Glob, MatchesWholeTexts) {
    EXPECT_TRUE(matches("sum_reg", "sum_reg"));
    EXPECT_FALSE(matches("sum", "sum_reg"));
    EXPECT_FALSE(matches("reg", "sum_reg"));
    EXPECT_FALSE(matches("Sum_reg", "sum_reg"));
    EXPECT_TRUE(matches("", ""));
    EXPECT_FALSE(matches("", "x"));
}

TEST(Glob, TakesAStarForAnyCharacters) {
    EXPECT_TRUE(matches("*", ""));
    EXPECT_TRUE(matches("*", "/top/k_1"));
    EXPECT_TRUE(matches("sum*", "sum"));
    EXPECT_TRUE(matches("*_reg", "sum_reg_reg"));
    EXPECT_TRUE(matches("/top*k*x", "/top/k_1/k_2/x"));
    EXPECT_FALSE(matches("/top*k*x", "/top/k_1/k_2/xy"));
    EXPECT_TRUE(matches("a**b", "ab"));
    EXPECT_FALSE(matches("*a", "b"));
}

TEST(Glob, TakesAQuestionMarkForOneCharacter) {
    EXPECT_TRUE(matches("k_?", "k_1"));
    EXPECT_FALSE(matches("k_?", "k_"));
    EXPECT_FALSE(matches("k_?", "k_12"));
    EXPECT_TRUE(matches("?", "\xC3\xA4"));
    EXPECT_FALSE(matches("??", "\xC3\xA4"));
    EXPECT_TRUE(matches("?", "\xFF"));
    EXPECT_TRUE(matches("?", std::string_view("\0", 1)));
}

TEST(Glob, TakesBracketsForOneOfTheirCharacters) {
    EXPECT_TRUE(matches("k_[0-3]", "k_2"));
    EXPECT_FALSE(matches("k_[0-3]", "k_4"));
    EXPECT_TRUE(matches("[abc]", "c"));
    EXPECT_FALSE(matches("[abc]", "d"));
    EXPECT_FALSE(matches("[!abc]", "c"));
    EXPECT_TRUE(matches("[^abc]", "d"));
    EXPECT_TRUE(matches("[]]", "]"));
    EXPECT_FALSE(matches("[!]]", "]"));
    EXPECT_TRUE(matches("[a-]", "-"));
    EXPECT_TRUE(matches("[a-]", "a"));
    EXPECT_FALSE(matches("[a-]", "b"));
    EXPECT_TRUE(matches("[\xC3\xA0-\xC3\xBF]", "\xC3\xA4"));
    EXPECT_FALSE(matches("[\xC3\xA0-\xC3\xBF]", "z"));
    EXPECT_FALSE(matches("[a-z]", ""));
}

TEST(Glob, TakesWhatFollowsABackslashAsItIs) {
    EXPECT_TRUE(matches("a\\*", "a*"));
    EXPECT_FALSE(matches("a\\*", "ab"));
    EXPECT_TRUE(matches("sum\\[3]", "sum[3]"));
    EXPECT_TRUE(matches("[\\]]", "]"));
    EXPECT_TRUE(matches("\\\\", "\\"));
}

TEST(Glob, TellsWhatItDoesNotUnderstand) {
    EXPECT_EQ(globOf("sum[3").error(),
              "its \"[\" has no \"]\" (write \"\\[\" for the character itself)");
    EXPECT_EQ(globOf("[]").error(),
              "its \"[\" has no \"]\" (write \"\\[\" for the character itself)");
    EXPECT_EQ(globOf("sum\\").error(), "nothing follows its last \"\\\"");
    EXPECT_EQ(globOf("[a\\").error(), "nothing follows its last \"\\\"");
    EXPECT_EQ(globOf("[[:digit:]]").error(),
              "classes of characters as \"[:digit:]\" are not known");
    EXPECT_FALSE(globOf("sum[3").matchesName("sum[3"));
    EXPECT_FALSE(globOf("[").matchesName(""));
}

// A matcher that tries every way to share out the text between the stars would never end.
TEST(Glob, TakesLittleTimeForManyStars) {
    std::string pattern;
    for (int i = 0; i < 50; ++i) {
        pattern += "*a";
    }
    EXPECT_TRUE(matches(pattern, std::string(100'000, 'a')));
    EXPECT_FALSE(matches(pattern + "b", std::string(100'000, 'a')));
}

TEST(Glob, TellsBytesThatAreNoUtf8FromCharacters) {
    EXPECT_FALSE(matches("\xC3*", "\xC3\xA4"));
    EXPECT_TRUE(matches("\xC3*", "\xC3x"));
    EXPECT_TRUE(matches("[\x80-\xFF]", "\xE2\x82\xAC")); // between them, byte by byte
    EXPECT_TRUE(matches("[\xC3\xA0-\xC3\xBF]", "\xC3\xA4"));
    EXPECT_FALSE(matches("[\xC3\xA0-\xC3\xBF]", "\xC3"));
    EXPECT_TRUE(matches("???", "\xED\xA0\x80")); // a surrogate, which is no character
    EXPECT_FALSE(matches("[\xED\x9F\xBF-\xEE\x80\x80]", "\xA0"));
}

TEST(Glob, TakesARangeThatGoesBackwardsForNoCharacter) {
    EXPECT_FALSE(matches("[z-a]", "m"));
    EXPECT_TRUE(matches("[!z-a]", "m"));
    EXPECT_TRUE(matches("[z-ac]", "c"));
}

// The system takes up to 128 KiB as one argument.
TEST(Glob, UnderstandsPatternsAsLongAsAnArgumentCanBe) {
    const auto repeated = [](std::string_view piece, std::size_t length) {
        std::string pattern;
        while (pattern.size() < length) {
            pattern += piece;
        }
        return pattern;
    };
    for (const std::string_view piece : {"a", "?", "[!a]", "[!\x80]", "?*"}) {
        EXPECT_EQ(globOf(repeated(piece, 128 * 1024)).error(), "") << piece;
    }
    const std::string text(128 * 1024, 'a');
    EXPECT_TRUE(matches(text, text));
    EXPECT_FALSE(matches(text + 'b', text));
    EXPECT_TRUE(matches(repeated("[ab]", 4 * 1000), text.substr(0, 1000)));
}

// A name of megabytes from a hostile file: a matcher that tries the pattern at each place would
// take minutes.
TEST(Glob, TakesTimeInProportionToTheText) {
    const std::string text(2'000'000, 'a');
    EXPECT_FALSE(matches('*' + std::string(500, 'a') + 'b', text));
    EXPECT_TRUE(matches('*' + std::string(500, 'a'), text));
}

} // namespace

} // namespace consolidator::test
