// The nets that almost belong to a kernel.

#include "inspect/check/NearestNets.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

/// Looks for the variable "sum_reg" of a kernel at "top/r/k_1" among these nets, one on each
/// line.
std::shared_ptr<const NearNet> nearestIn(const std::vector<std::string>& nets) {
    Kernel kernel;
    kernel.addInstancePath("top/r/k_1");
    kernel.addVariable("sum", "sum_reg", "int");
    const std::vector<Kernel> kernels{kernel};
    std::vector<KernelCoverage> coverage = coverageOf(kernels);

    NearestNets search(coverage);
    const std::string file = "top.ll";
    std::uint64_t line = 0;
    for (const std::string& net : nets) {
        search.look(net, file, ++line);
    }
    return coverage.at(0).missing.at(0).nearest;
}

TEST(NearestNets, PreferTheNameUnderTheNearestPath) {
    const auto nearest = nearestIn({"top/r/k_2/sum_reg_0", "a/sum_reg", "top/r/k_2/sum_reg",
                                    "top/q/sum_reg", "top/r/k_3/sum_reg"});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->net, "/top/r/k_2/sum_reg");
    EXPECT_EQ(nearest->line, 3U);
    EXPECT_TRUE(nearest->hasName);
    EXPECT_FALSE(nearest->isInKernel);
}

TEST(NearestNets, TakeANameAlikeElse) {
    const auto nearest =
        nearestIn({"top/x/gain", "top/x/sum_rag", "top/r/k_1/sum_reg_fu_120", "top/r/k_1/other"});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->net, "/top/r/k_1/sum_reg_fu_120");
    EXPECT_FALSE(nearest->hasName);
    EXPECT_TRUE(nearest->isInKernel);
    EXPECT_EQ(nearestIn({"top/x/sum_rag"})->net, "/top/x/sum_rag");
}

TEST(NearestNets, PreferANameAlikeInAnInstance) {
    for (const std::string net : {"top/r/k_1/sum_reg_0", "top/r/k_1/\\sum_reg",
                                  "top/r/k_1/inst.sum_reg", "top.r.k_1.inst.sum_reg"}) {
        const auto nearest = nearestIn({"top/r/sum_reg", net, "top/r/k_2/sum_reg"});
        ASSERT_TRUE(nearest);
        EXPECT_EQ(nearest->net, '/' + net);
        EXPECT_FALSE(nearest->hasName);
        EXPECT_TRUE(nearest->isInKernel);
    }
}

TEST(NearestNets, LeaveNetsThatBelongToOtherNames) {
    Kernel kernel;
    kernel.addInstancePath("top/k_1");
    kernel.addVariable("sum", "sum_reg", "int");
    kernel.addVariable("sum2", "sum2_reg", "int");
    kernel.addHardwareLocation("/top/k_1/sum2_reg", 0, 1, 0);
    const std::vector<Kernel> kernels{kernel};
    std::vector<KernelCoverage> coverage = coverageOf(kernels);
    NearestNets(coverage).look("top/k_1/sum2_reg", "top.ll", 1);
    ASSERT_EQ(coverage.at(0).missing.size(), 1U);
    EXPECT_FALSE(coverage.at(0).missing.at(0).nearest);
}

TEST(NearestNets, TakeNothingFromNamesThatAreNotAlike) {
    EXPECT_FALSE(nearestIn({"top/r/k_1/gain", "top/r/k_1/start"}));
    EXPECT_FALSE(nearestIn({}));
}

TEST(NearestNets, KnowWhenThereIsNothingToLookFor) {
    std::vector<KernelCoverage> none;
    EXPECT_FALSE(NearestNets(none).anyMissing());
}

} // namespace

} // namespace consolidator::inspect::test
