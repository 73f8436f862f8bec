// Numbers as people write them.

#include "shared/Numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace consolidator::test {

namespace {

TEST(Numbers, HaveHexadecimalDigitsForPlaces) {
    EXPECT_EQ(inHex(0), "0x0");
    EXPECT_EQ(inHex(0x1f4), "0x1f4");
    EXPECT_EQ(inHex(0x1f4, 8), "0x000001f4");
    EXPECT_EQ(inHex(0x123456789, 8), "0x123456789");
    EXPECT_EQ(inHex(std::numeric_limits<std::uint64_t>::max()), "0xffffffffffffffff");
}

TEST(Numbers, ComeWithTheThingsThatAreCounted) {
    EXPECT_EQ(inWords(0, "kernel"), "0 kernels");
    EXPECT_EQ(inWords(1, "kernel"), "1 kernel");
    EXPECT_EQ(inWords(2, "kernel"), "2 kernels");
}

} // namespace

} // namespace consolidator::test
