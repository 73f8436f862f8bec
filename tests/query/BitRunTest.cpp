#include "query/BitRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();

std::vector<BitRun> runsOf(const LocationList& locations) {
    std::vector<BitRun> runs;
    forEachBitRun(locations, [&runs](const BitRun& run) { runs.push_back(run); });
    return runs;
}

std::string printed(const LocationList& locations) {
    std::ostringstream out;
    printBitRuns(out, locations, "  ");
    return out.str();
}

TEST(BitRun, JoinsNeighboursInAFrame) {
    EXPECT_THAT(runsOf({{7, 3}, {7, 4}, {7, 5}}), ElementsAre(BitRun{0, 2, {7, 3}}));
    EXPECT_THAT(runsOf({{7, 3}, {8, 4}}), ElementsAre(BitRun{0, 0, {7, 3}}, BitRun{1, 1, {8, 4}}));
    EXPECT_THAT(runsOf({{7, 3}, {7, 5}}), ElementsAre(BitRun{0, 0, {7, 3}}, BitRun{1, 1, {7, 5}}));
    EXPECT_THAT(runsOf({{7, 4}, {7, 3}}), ElementsAre(BitRun{0, 0, {7, 4}}, BitRun{1, 1, {7, 3}}));
    EXPECT_THAT(runsOf({}), IsEmpty());
}

TEST(BitRun, TakesPairsOfZerosForBitsWithoutAPlace) {
    EXPECT_THAT(runsOf({{0, 0}, {0, 0}, {0, 1}, {0, 2}}),
                ElementsAre(BitRun{0, 1, {0, 0}}, BitRun{2, 3, {0, 1}}));
    EXPECT_THAT(runsOf({{0, 1}, {0, 0}}), ElementsAre(BitRun{0, 0, {0, 1}}, BitRun{1, 1, {0, 0}}));
}

TEST(BitRun, KnowsThatNothingFollowsTheLargestOffset) {
    EXPECT_THAT(runsOf({{7, largest}, {7, 0}}),
                ElementsAre(BitRun{0, 0, {7, largest}}, BitRun{1, 1, {7, 0}}));
}

TEST(BitRun, TakesAGapOfMillionsAsOne) {
    LocationList locations;
    locations.set(0, {7, 1});
    locations.set(16'000'000, {7, 2});
    EXPECT_THAT(runsOf(locations), ElementsAre(BitRun{0, 0, {7, 1}}, BitRun{1, 15'999'999, {0, 0}},
                                               BitRun{16'000'000, 16'000'000, {7, 2}}));
}

TEST(BitRun, ShowsItselfInWords) {
    EXPECT_EQ(bitsText({3, 3, {}}), "3");
    EXPECT_EQ(bitsText({3, 12, {}}), "12:3");
    EXPECT_EQ(rangeText(5, 5), "5");
    EXPECT_EQ(rangeText(5, 17), "5-17");
    EXPECT_EQ(addressText(0x1a01), "0x00001a01");
    EXPECT_EQ(addressText(largest), "0xffffffff");
    EXPECT_EQ(addressText(0), "0x00000000");
}

// The longest are "0", "1:0", "9:8" and "10:9", which the width for "99:98" has room for.
TEST(BitRun, KnowsHowLongItsBitsMayGet) {
    EXPECT_EQ(bitsWidth(0), 1U);
    EXPECT_EQ(bitsWidth(1), 1U);
    EXPECT_EQ(bitsWidth(2), 3U);
    EXPECT_EQ(bitsWidth(10), 3U);
    EXPECT_EQ(bitsWidth(11), 5U);
    EXPECT_EQ(bitsWidth(largest), 21U);
}

TEST(BitRun, IsPrintedInColumns) {
    EXPECT_EQ(printed({{0x1a01, 160}, {0x1a01, 161}, {0, 0}, {0x1a02, 9}}),
              "  bits 1:0  frame 0x00001a01  offsets 160-161\n"
              "  bit 2     not located\n"
              "  bit 3     frame 0x00001a02  offset 9\n");
    EXPECT_EQ(printed({{0x1a01, 160}}), "  bit 0  frame 0x00001a01  offset 160\n");
    EXPECT_EQ(printed({}), "  no bits\n");
}

} // namespace

} // namespace consolidator::test
