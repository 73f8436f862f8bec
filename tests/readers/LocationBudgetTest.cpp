// What a logic-location file may add beyond its own size.

#include "readers/LocationBudget.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace consolidator::test {

namespace {

TEST(LocationBudget, HasRoomForSevenRegistersOfEmptyBits) {
    constexpr std::uint64_t emptyRegister = 16777215; // of 2^24 bits, all but the last
    LocationBudget budget;
    for (int i = 0; i < 7; ++i) {
        EXPECT_TRUE(budget.takeEmptyBits(emptyRegister));
    }
    EXPECT_FALSE(budget.takeEmptyBits(emptyRegister));
    EXPECT_FALSE(budget.takeEmptyBits(8));
    EXPECT_TRUE(budget.takeEmptyBits(7)); // a refusal takes nothing
    EXPECT_TRUE(budget.takeEmptyBits(0));
    EXPECT_FALSE(budget.takeEmptyBits(1));
}

TEST(LocationBudget, EndsSharingWhenItsBytesAreSpent) {
    LocationBudget budget(0, 16);
    EXPECT_TRUE(budget.mayShare());
    budget.shareLocation();
    EXPECT_TRUE(budget.mayShare());
    budget.shareLocation();
    EXPECT_FALSE(budget.mayShare());
}

TEST(LocationBudget, CountsARegisterWithItsName) {
    LocationBudget budget(0, 8 + 128 + 3 + 1);
    budget.shareLocation();
    budget.shareRegister(3);
    EXPECT_TRUE(budget.mayShare());
    budget.shareLocation();
    EXPECT_FALSE(budget.mayShare());
}

TEST(LocationBudget, GrowsWithTheLinesRead) {
    LocationBudget budget(0, 0);
    EXPECT_FALSE(budget.mayShare());
    budget.lineRead(0);
    EXPECT_FALSE(budget.mayShare());
    budget.lineRead(1); // 16 bytes
    budget.shareLocation();
    EXPECT_TRUE(budget.mayShare());
    budget.shareLocation();
    EXPECT_FALSE(budget.mayShare());
}

TEST(LocationBudget, AsksForOneOwnerMoreThanItCanPayFor) {
    LocationBudget budget(0, 17);
    EXPECT_EQ(budget.mostOwners(), 5); // the first, three for 17 bytes, and one more
    budget.shareLocation();
    EXPECT_EQ(budget.mostOwners(), 4);
    budget.shareRegister(0);
    EXPECT_EQ(budget.mostOwners(), 2);
    EXPECT_EQ(LocationBudget().mostOwners(), 64U * 1024 * 1024 / 8 + 2);
}

} // namespace

} // namespace consolidator::test
