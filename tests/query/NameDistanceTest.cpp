// How alike names are.

#include "query/NameDistance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

/// The whole table, in which every step costs one.
std::size_t plainDistance(const std::string& left, const std::string& right) {
    std::vector<std::vector<std::size_t>> table(left.size() + 1,
                                                std::vector<std::size_t>(right.size() + 1));
    for (std::size_t i = 0; i <= left.size(); ++i) {
        for (std::size_t j = 0; j <= right.size(); ++j) {
            if (i == 0 || j == 0) {
                table[i][j] = i + j;
                continue;
            }
            const std::size_t replaced =
                table[i - 1][j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
            table[i][j] = std::min({replaced, table[i - 1][j] + 1, table[i][j - 1] + 1});
        }
    }
    return table[left.size()][right.size()];
}

TEST(EditDistance, CountsChanges) {
    EXPECT_EQ(editDistance("", "", 4), 0U);
    EXPECT_EQ(editDistance("scale", "scale", 4), 0U);
    EXPECT_EQ(editDistance("scale", "scales", 4), 1U);
    EXPECT_EQ(editDistance("kitten", "sitting", 4), 3U);
    EXPECT_EQ(editDistance("abc", "", 4), 3U);
    EXPECT_EQ(editDistance("SCALE_Rows", "scale_rows", 4), 0U);
}

TEST(EditDistance, StopsBeyondItsLimit) {
    EXPECT_EQ(editDistance("kitten", "sitting", 3), 3U);
    EXPECT_EQ(editDistance("kitten", "sitting", 2), 3U);
    EXPECT_EQ(editDistance("abcdef", "", 2), 3U);
    EXPECT_EQ(editDistance("a", "b", 0), 1U);
}

TEST(EditDistance, AgreesWithTheWholeTable) {
    std::mt19937 random(20); // NOLINT(cert-msc51-cpp): the same texts in every run
    const auto text = [&random] {
        std::string result(random() % 9, ' ');
        std::ranges::generate(result, [&] { return static_cast<char>('a' + random() % 3); });
        return result;
    };
    for (int i = 0; i < 5000; ++i) {
        const std::string left = text();
        const std::string right = text();
        for (std::size_t limit = 0; limit < 6; ++limit) {
            EXPECT_EQ(editDistance(left, right, limit),
                      std::min(plainDistance(left, right), limit + 1))
                << left << ' ' << right << ' ' << limit;
        }
    }
}

TEST(NameDistance, CountsWhatDiffers) {
    EXPECT_EQ(nameDistance("Blend", "blend"), 1U);
    EXPECT_EQ(nameDistance("sum", "sum_reg"), 2U);
    EXPECT_EQ(nameDistance("sum_reg", "sum"), 2U);
    EXPECT_EQ(nameDistance("checksum", "checkksum"), 2U);
    EXPECT_EQ(nameDistance("checksum", "chekcsum"), 3U);
    EXPECT_EQ(nameDistance("scale_rows_a", "scael_rows_b"), 4U);
    EXPECT_EQ(nameDistance("Scale_Rows", "scale_rowz"), 2U);
}

TEST(NameDistance, IsNothingForNamesThatNobodyWouldMix) {
    EXPECT_EQ(nameDistance("gain", "sum_reg"), std::nullopt);
    EXPECT_EQ(nameDistance("a", "b"), std::nullopt);
    EXPECT_EQ(nameDistance("", ""), std::nullopt);
    EXPECT_EQ(nameDistance("", "abc"), std::nullopt);
    EXPECT_EQ(nameDistance("ab", "abc"), std::nullopt);
    EXPECT_EQ(nameDistance("abcd", "xycd"), std::nullopt);
}

TEST(NameDistance, ComparesNamesUpToALength) {
    const std::string longest(longestComparedName, 'a');
    EXPECT_EQ(nameDistance(longest, "b" + longest.substr(1)), 2U);
    EXPECT_EQ(nameDistance(longest + "a", longest), std::nullopt);
}

// A typed word of n bytes may differ in n / 4 + 1 of them, and in four at most.
TEST(TypoDistance, GrowsWithWhatWasTyped) {
    EXPECT_EQ(typoDistance("k", "x"), 1U);
    EXPECT_EQ(typoDistance("abc", "xyc"), std::nullopt);
    EXPECT_EQ(typoDistance("abcd", "xycd"), 2U);
    EXPECT_EQ(typoDistance("abcdefghijkl", "wxyzefghijkl"), 4U);
    EXPECT_EQ(typoDistance("abcdefghijklmnopqrst", "vwxyzfghijklmnopqrst"), std::nullopt);
    EXPECT_EQ(typoDistance("SUM", "sum"), 0U);
    EXPECT_EQ(typoDistance("sum", "sum_reg"), std::nullopt); // what was typed says where it ends
}

} // namespace

} // namespace consolidator::test
