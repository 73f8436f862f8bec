#include "inspect/NearestNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(NearestNames, PutsTheNearestFirst) {
    NearestNames nearest("scale_rows");
    for (const char* name : {"checksum", "scale_row_x", "scale_row", "scale_rows_2", "Scale_Rows",
                             "scale_row", "scale_rov"}) {
        nearest.add(name);
    }
    // Distances 2 for scale_row_x, scale_rows_2 and scale_rov, which come too late.
    EXPECT_THAT(nearest.names(), ElementsAre("Scale_Rows", "scale_row", "scale_row_x"));
    EXPECT_EQ(nearest.question(), R"(; did you mean "Scale_Rows", "scale_row" or "scale_row_x"?)");
}

TEST(NearestNames, KeepsSilentAboutWhatDiffersTooMuch) {
    NearestNames nearest("sum");
    nearest.add("row");
    nearest.add("");
    EXPECT_THAT(nearest.names(), IsEmpty());
    EXPECT_EQ(nearest.question(), "");
}

TEST(NearestNames, ShowsNoNameThatDrivesTheTerminal) {
    NearestNames nearest("sum_");
    nearest.add("sum\x1b");
    EXPECT_EQ(nearest.question(), R"(; did you mean "sum\x1b"?)");
}

} // namespace

} // namespace consolidator::inspect::test
