// Tests the numbers of the kernel types and the words that stand for them in JSON.
#include "model/KernelType.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace consolidator::test {
namespace {

std::string_view labelOf(std::uint32_t number) {
    return label(static_cast<KernelType>(number));
}

TEST(KernelType, EachTypeHasItsStoredNumber) {
    EXPECT_EQ(static_cast<std::uint32_t>(KernelType::OpenCL), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(KernelType::C), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(KernelType::RTL), 2U);
    EXPECT_EQ(static_cast<std::uint32_t>(KernelType::Unknown), 3U);
    EXPECT_EQ(static_cast<std::uint32_t>(KernelType::HLS), 4U);
    EXPECT_EQ(sizeof(KernelType), 4U);
}

TEST(KernelType, EachTypeHasItsLabel) {
    EXPECT_EQ(labelOf(0), "OpenCL");
    EXPECT_EQ(labelOf(1), "C");
    EXPECT_EQ(labelOf(2), "RTL");
    EXPECT_EQ(labelOf(4), "HLS");
}

TEST(KernelType, ThreeAndEveryNumberAboveFourAreUnknown) {
    for (const std::uint32_t number : {3U, 5U, 7U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(labelOf(number), "Unknown") << number;
    }
}

} // namespace
} // namespace consolidator::test
