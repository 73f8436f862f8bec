// The nets that almost belong to a kernel.

#include "inspect/check/NearestNets.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using consolidator::test::TemporaryDirectory;

/// Looks for the variable "sum_reg" of a kernel at "top/r/k_1" in a file with these nets, a line
/// each.
std::optional<NearNet> nearestIn(const std::vector<std::string>& nets) {
    Kernel kernel;
    kernel.addInstancePath("top/r/k_1");
    kernel.addVariable("sum", "sum_reg", "int");
    const std::vector<Kernel> kernels{kernel};
    std::vector<KernelCoverage> coverage = coverageOf(kernels);

    std::string text;
    for (const std::string& net : nets) {
        text += "Bit 1 0x1 0 DIE0 0 Latch=Q Net=" + net + "\n";
    }
    const TemporaryDirectory directory;
    std::ostringstream err;
    Progress progress(err, false);
    NearestNets(coverage).read(directory.write("top.ll", text), progress);
    return coverage.at(0).missing.at(0).nearest;
}

TEST(NearestNets, PreferTheNameUnderTheNearestPath) {
    const auto nearest = nearestIn({"top/r/k_2/sum_reg_0", "a/sum_reg[0]", "top/r/k_2/sum_reg[1]",
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
    const TemporaryDirectory directory;
    std::ostringstream err;
    Progress progress(err, false);
    NearestNets(coverage).read(
        directory.write("top.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_1/sum2_reg\n"), progress);
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

TEST(NearestNets, FindTheNetOfALine) {
    EXPECT_EQ(netOfLine("Bit 1 0x1 0 DIE0 0 Latch=Q Net=top/k[3] "), "top/k");
    EXPECT_EQ(netOfLine("Bit 1 Net=a Net=b"), "b");
    EXPECT_EQ(netOfLine("Bit 1 Net=a xNet=b"), "a");
    EXPECT_EQ(netOfLine("Bit 1 Net=a]"), "a]");
    EXPECT_EQ(netOfLine("Bit 1 Net="), "");
    EXPECT_EQ(netOfLine("Bit 1 Net= a"), "");
    EXPECT_EQ(netOfLine("; Bit 1 Net=a"), "");
    EXPECT_EQ(netOfLine("Net=a"), "");
    EXPECT_EQ(netOfLine("Bit 1 Ram=B:BIT0"), "");
}

} // namespace

} // namespace consolidator::inspect::test
