// Which bits a file has placed, and where, beside what their registers had before.
#include "readers/PlacedBits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

namespace consolidator::test {
namespace {

struct PlacedBits : testing::Test {
    LocationList locations;
    consolidator::PlacedBits placed;

    void place(std::uint32_t bit, LogicLocation location) {
        locations.set(bit, location);
        placed.add({0, 0}, bit, location, locations);
    }
    std::optional<LogicLocation> find(std::uint32_t bit) const {
        return placed.find({0, 0}, bit, locations);
    }
};

TEST_F(PlacedBits, AreNoneAtFirst) {
    locations.set(3, {1, 2});
    EXPECT_EQ(find(3), std::nullopt);
    EXPECT_EQ(find(4), std::nullopt);
}

TEST_F(PlacedBits, AreFoundWhereTheyWerePlacedLast) {
    locations.set(3, {1, 2});
    place(64, {0, 0});
    EXPECT_EQ(find(64), LogicLocation());
    EXPECT_EQ(find(3), std::nullopt);
    EXPECT_EQ(find(0), std::nullopt);
    place(64, {5, 6});
    place(3, {7, 8});
    EXPECT_EQ(find(64), (LogicLocation{5, 6}));
    EXPECT_EQ(find(3), (LogicLocation{7, 8}));
}

TEST_F(PlacedBits, AreThoseOfOneRegister) {
    place(1, {1, 2});
    EXPECT_EQ(placed.find({0, 1}, 1, locations), std::nullopt);
    EXPECT_EQ(placed.find({1, 0}, 1, locations), std::nullopt);
    placed.add({7, 9}, 1, {1, 2}, locations);
    EXPECT_EQ(placed.find({7, 9}, 1, locations), (LogicLocation{1, 2}));
    EXPECT_EQ(placed.find({7, 8}, 1, locations), std::nullopt);
}

// The first of these bits lie beyond the list's row, which grows over them in the end.
TEST_F(PlacedBits, AreFoundFarBeyondTheOthers) {
    constexpr std::uint32_t count = 1000;
    for (std::uint32_t bit = count; bit-- > 0;) {
        place(bit, {bit, 0});
        place(bit, {bit, 1});
        ASSERT_EQ(find(count - 1), (LogicLocation{count - 1, 1})) << bit;
    }
    for (std::uint32_t bit = 0; bit < count; ++bit) {
        ASSERT_EQ(find(bit), (LogicLocation{bit, 1})) << bit;
    }
    place((std::uint32_t{1} << 24) - 1, {3, 4});
    EXPECT_EQ(find((std::uint32_t{1} << 24) - 1), (LogicLocation{3, 4}));
    EXPECT_EQ(find((std::uint32_t{1} << 24) - 2), std::nullopt);
}

} // namespace
} // namespace consolidator::test
