#include "query/NamePattern.h"

#include <gtest/gtest.h>

#include <string>

namespace consolidator::test {

namespace {

constexpr auto glob = NamePattern::Kind::Glob;
constexpr auto regex = NamePattern::Kind::Regex;

TEST(NamePattern, MatchesWholeNamesByAGlob) {
    const NamePattern pattern("su?", glob);
    EXPECT_TRUE(pattern.matchesName("sum"));
    EXPECT_FALSE(pattern.matchesName("sum_reg"));
}

TEST(NamePattern, MatchesTheLastComponentOfANetByAGlobWithoutSlash) {
    EXPECT_TRUE(NamePattern("sum_reg", glob).matchesNet("/top/k_1/sum_reg"));
    EXPECT_FALSE(NamePattern("k_1", glob).matchesNet("/top/k_1/sum_reg"));
    EXPECT_TRUE(NamePattern("*k_1*", glob).matchesNet("/top/k_1/sum_reg"));
    EXPECT_FALSE(NamePattern("k_1/sum_reg", glob).matchesNet("/top/k_1/sum_reg"));
}

TEST(NamePattern, MatchesANetWithoutItsFirstSlashByAGlob) {
    EXPECT_TRUE(NamePattern("/top/*", glob).matchesNet("/top/k_1/sum_reg"));
    EXPECT_TRUE(NamePattern("top/*", glob).matchesNet("/top/k_1/sum_reg"));
    EXPECT_FALSE(NamePattern("op/*", glob).matchesNet("/top/k_1/sum_reg"));
}

TEST(NamePattern, MatchesAPartByARegularExpression) {
    const NamePattern pattern("k_[0-9]+/s", regex);
    EXPECT_EQ(pattern.error(), "");
    EXPECT_TRUE(pattern.matchesNet("/top/k_12/sum_reg"));
    EXPECT_FALSE(pattern.matchesNet("/top/k_/sum_reg"));
    EXPECT_TRUE(NamePattern("^sum$", regex).matchesName("sum"));
    EXPECT_FALSE(NamePattern("^sum$", regex).matchesName("sum_reg"));
    EXPECT_FALSE(NamePattern("^sum_reg$", regex).matchesNet("/top/sum_reg"));
    EXPECT_TRUE(NamePattern("a.b", regex).matchesName("a\nb"));
}

TEST(NamePattern, TellsWhatItDoesNotUnderstand) {
    EXPECT_EQ(NamePattern("su(", regex).error(), "missing ): su(");
    EXPECT_FALSE(NamePattern("su(", regex).matchesName("su("));
    EXPECT_NE(NamePattern("su[", glob).error(), "");
    EXPECT_EQ(NamePattern("\x1b(", regex).error(), "missing ): \\x1b(");
    EXPECT_NE(NamePattern("((a{1000}){1000}){1000}", regex).error(), "");
    EXPECT_NE(NamePattern("\xFF", regex).error(), "");
}

// A matcher that goes back would take exponential time, and one that calls itself for each
// character would run out of stack.
TEST(NamePattern, TakesTimeInProportionToTheText) {
    const std::string text(1'000'000, 'a');
    EXPECT_FALSE(NamePattern("(a+a+)+b", regex).matchesName(text));
    EXPECT_TRUE(NamePattern("^(a|b)*$", regex).matchesName(text));
}

} // namespace

} // namespace consolidator::test
