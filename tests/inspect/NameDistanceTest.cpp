// How alike names are.

#include "inspect/NameDistance.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace consolidator::inspect::test {

namespace {

TEST(NameDistance, CountsWhatDiffers) {
    EXPECT_EQ(nameDistance("Blend", "blend"), 1U);
    EXPECT_EQ(nameDistance("sum", "sum_reg"), 2U);
    EXPECT_EQ(nameDistance("sum_reg", "sum"), 2U);
    EXPECT_EQ(nameDistance("checksum", "checkksum"), 2U);
    EXPECT_EQ(nameDistance("checksum", "chekcsum"), 3U);
    EXPECT_EQ(nameDistance("scale_rows_a", "scael_rows_b"), 4U);
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

} // namespace

} // namespace consolidator::inspect::test
