#include "query/KernelNets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(KernelNets, TakesWhatIsBehindTheLastSlash) {
    EXPECT_EQ(lastComponent("/top/k_1/sum_reg"), "sum_reg");
    EXPECT_EQ(lastComponent("sum_reg"), "sum_reg");
    EXPECT_EQ(lastComponent("/top/"), "");
}

TEST(KernelNets, FindsTheRegistersOfAName) {
    Kernel kernel;
    kernel.addHardwareLocation("/top/k_1/sum_reg", 0, 1, 1);
    kernel.addHardwareLocation("/top/k_1/row", 0, 1, 2);
    kernel.addHardwareLocation("/top/k_2/sum_reg", 0, 1, 3);
    const KernelNets nets(kernel);
    EXPECT_THAT(nets.registersOf("sum_reg"), ElementsAre(0, 2));
    EXPECT_THAT(nets.registersOf("sum"), IsEmpty());
}

TEST(KernelNets, GivesARegisterToTheLongestPathInIt) {
    Kernel kernel;
    kernel.addInstancePath("top/k_10");
    kernel.addInstancePath("top/k_1");
    kernel.addHardwareLocation("/top/k_10/x", 0, 1, 1);
    kernel.addHardwareLocation("/top/k_1/x", 0, 1, 2);
    kernel.addHardwareLocation("/top/k_2/x", 0, 1, 3);
    const KernelNets nets(kernel);
    EXPECT_EQ(nets.instanceOf(0), std::optional<std::uint32_t>(0));
    EXPECT_EQ(nets.instanceOf(1), std::optional<std::uint32_t>(1));
    EXPECT_EQ(nets.instanceOf(2), std::nullopt);
}

} // namespace

} // namespace consolidator::test
