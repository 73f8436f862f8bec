#include "query/Bits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
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

TEST(LocatedBits, AreThoseWithAPlace) {
    LocationList locations;
    locations.set(1, {7, 1});
    locations.set(16'000'000, {7, 2});
    std::vector<std::uint32_t> bits;
    forEachLocatedBit(locations, [&](std::uint32_t bit, LogicLocation) { bits.push_back(bit); });
    EXPECT_THAT(bits, ElementsAre(1, 16'000'000));
    EXPECT_EQ(locatedBits(locations), 2U);
}

} // namespace

} // namespace consolidator::test
