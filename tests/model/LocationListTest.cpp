// The locations of a register: a plain list to its users, whatever order the bits come in and
// however far they lie apart.
#include "model/LocationList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <span>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t highest = 0xFFFFFFFE;

/// All entries, run by run.
std::vector<LogicLocation> runsOf(const LocationList& list) {
    std::vector<LogicLocation> entries;
    list.forEachRun([&](std::span<const LogicLocation> run) {
        EXPECT_FALSE(run.empty());
        entries.insert(entries.end(), run.begin(), run.end());
    });
    return entries;
}

TEST(LocationList, IsEmptyAtFirst) {
    EXPECT_EQ(LocationList().size(), 0U);
    EXPECT_TRUE(LocationList().empty());
    EXPECT_THAT(LocationList(), IsEmpty());
    EXPECT_THAT(runsOf(LocationList()), IsEmpty());
}

TEST(LocationList, HoldsWhatItIsMadeOf) {
    const LocationList list{{1, 2}, {0, 0}, {3, 4}};
    EXPECT_EQ(list.size(), 3U);
    EXPECT_FALSE(list.empty());
    EXPECT_THAT(list, ElementsAre(LogicLocation{1, 2}, LogicLocation(), LogicLocation{3, 4}));
    EXPECT_EQ(list, LocationList(std::vector<LogicLocation>{{1, 2}, {0, 0}, {3, 4}}));
}

TEST(LocationList, FillsUpWithZerosBelowABit) {
    LocationList list;
    list.set(2, {1, 2});
    EXPECT_EQ(list, (LocationList{{0, 0}, {0, 0}, {1, 2}}));
    EXPECT_EQ(runsOf(list), (std::vector<LogicLocation>{{0, 0}, {0, 0}, {1, 2}}));
}

TEST(LocationList, KeepsTheLastLocationOfABitFarBeyond) {
    LocationList list;
    list.set(1000, {1, 2});
    list.set(1500, {5, 6});
    list.set(1000, {3, 4});
    EXPECT_EQ(list.size(), 1501U);
    EXPECT_EQ(list[1000], (LogicLocation{3, 4}));
    EXPECT_EQ(runsOf(list).at(1000), (LogicLocation{3, 4}));
    EXPECT_EQ(runsOf(list).at(1500), (LogicLocation{5, 6}));
    EXPECT_EQ(list[999], LogicLocation());
}

TEST(LocationList, TakesTheHighestBitThereIs) {
    LocationList list;
    list.set(highest, {1, 2});
    EXPECT_EQ(list.size(), highest + 1);
    EXPECT_EQ(list[highest], (LogicLocation{1, 2}));
    EXPECT_EQ(list[highest - 1], LogicLocation());
}

TEST(LocationList, GivesLongGapsInPieces) {
    LocationList list;
    list.set(16'777'215, {1, 2});
    std::size_t longest = 0;
    std::size_t entries = 0;
    list.forEachRun([&](std::span<const LogicLocation> run) {
        longest = std::max(longest, run.size());
        entries += run.size();
    });
    EXPECT_EQ(entries, 16'777'216U);
    EXPECT_LE(longest, 4096U);
}

TEST(LocationList, EqualsAListWhoseBitsCameInAnotherOrder) {
    LocationList upwards;
    LocationList downwards;
    for (std::uint32_t bit = 0; bit < 2000; ++bit) {
        upwards.set(bit, {bit, 7});
        downwards.set(1999 - bit, {1999 - bit, 7});
    }
    EXPECT_EQ(upwards, downwards);
    downwards.set(500, {0, 7});
    EXPECT_NE(upwards, downwards);
}

TEST(LocationList, DiffersFromALongerListOfZeros) {
    LocationList shorter;
    LocationList longer;
    shorter.set(5, {0, 0});
    longer.set(70'000, {0, 0});
    EXPECT_NE(shorter, longer);
    EXPECT_EQ(longer, LocationList(std::vector<LogicLocation>(70'001)));
}

TEST(LocationList, ACopyIsIndependent) {
    LocationList list;
    list.set(100'000, {1, 2});
    LocationList copy = list;
    copy.set(100'000, {3, 4});
    EXPECT_EQ(list[100'000], (LogicLocation{1, 2}));
    EXPECT_EQ(copy[100'000], (LogicLocation{3, 4}));
}

/// Sets the bits that next() gives in a list and in a plain map, and compares.
template <typename Next>
void expectLikeAPlainMap(std::uint32_t settings, Next next) {
    LocationList list;
    std::map<std::uint32_t, LogicLocation> plain;
    for (std::uint32_t i = 1; i <= settings; ++i) {
        const std::uint32_t bit = next();
        list.set(bit, {i, 1});
        plain[bit] = {i, 1};
    }
    std::vector<LogicLocation> expected(plain.rbegin()->first + 1);
    for (const auto& [bit, location] : plain) {
        expected[bit] = location;
    }
    EXPECT_EQ(list.size(), expected.size());
    EXPECT_TRUE(runsOf(list) == expected);
}

TEST(LocationList, IsLikeAPlainListForBitsInAnyOrder) {
    std::mt19937 engine(20261121);
    for (const std::uint32_t bits : {1U, 40U, 1000U, 100'000U}) {
        for (const std::uint32_t settings : {1U, 10U, 3000U}) {
            SCOPED_TRACE(bits);
            SCOPED_TRACE(settings);
            expectLikeAPlainMap(settings,
                                [&] { return static_cast<std::uint32_t>(engine() % bits); });
        }
    }
}

TEST(LocationList, IsLikeAPlainListForBitsThatComeDownwards) {
    for (const std::uint32_t bits : {33U, 512U, 100'000U}) {
        std::uint32_t bit = bits;
        expectLikeAPlainMap(bits, [&] { return --bit; });
    }
}

// Far bits first, then all bits from the front: taking far ones into the row again and again would
// take hours.
TEST(LocationList, ClosesALargeGapWithoutWalkingOverTheFarBitsEachTime) {
    constexpr std::uint32_t far = 400'000;
    std::uint32_t call = 0;
    expectLikeAPlainMap(2 * far, [&]() -> std::uint32_t {
        const std::uint32_t i = call++;
        return i < far ? 16'000'000 - i : i - far;
    });
}

TEST(LocationList, FindsAtOnceWhatIsNotFarBeyond) {
    LocationList list;
    EXPECT_FALSE(list.findsAtOnce(0));
    list.set(0, {1, 2});
    list.set(1'000'000, {3, 4});
    EXPECT_TRUE(list.findsAtOnce(0));
    EXPECT_FALSE(list.findsAtOnce(1'000'000));
}

} // namespace
} // namespace consolidator::test
