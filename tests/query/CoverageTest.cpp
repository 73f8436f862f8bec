// What of a kernel has a place in the device, per argument and variable, and per instance.

#include "query/Coverage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Two instances. "n" is whole in both, "sum" only in the first one and without its bit 1 in the
/// second, "i" in the first one only, and "gone" nowhere.
Kernel partlyLocated() {
    Kernel kernel;
    kernel.addInstancePath("top/k_1");
    kernel.addInstancePath("top/k_2");
    kernel.addArgument("n", "n_r", "int");
    kernel.addArgument("gone", "gone", "int");
    kernel.addVariable("sum", "sum_reg", "int");
    kernel.addVariable("i", "i_reg", "char");
    kernel.addHardwareLocation("/top/k_1/n_r", 0, 1, 1);
    kernel.addHardwareLocation("/top/k_2/n_r", 0, 1, 2);
    for (const std::uint32_t bit : {0U, 1U, 2U}) {
        kernel.addHardwareLocation("/top/k_1/sum_reg", bit, 2, bit);
    }
    kernel.addHardwareLocation("/top/k_2/sum_reg", 0, 3, 7);
    kernel.addHardwareLocation("/top/k_2/sum_reg", 2, 3, 9);
    kernel.addHardwareLocation("/top/k_1/i_reg", 0, 4, 1);
    return kernel;
}

TEST(BitCoverage, TellsWhetherAllSomeOrNoBitsAreLocated) {
    EXPECT_EQ((BitCoverage{8, 8}.state()), Located::Whole);
    EXPECT_EQ((BitCoverage{1, 8}.state()), Located::InPart);
    EXPECT_EQ((BitCoverage{0, 8}.state()), Located::Missing);
    EXPECT_EQ((BitCoverage{0, 0}.state()), Located::Missing);
}

TEST(Coverage, HasWordsForWhatItFinds) {
    EXPECT_EQ(label(Located::Whole), "located");
    EXPECT_EQ(label(Located::InPart), "in part");
    EXPECT_EQ(label(Located::Missing), "missing");
}

TEST(Coverage, CountsTheBitsOfARegister) {
    const Kernel kernel = partlyLocated();
    const KernelView view(kernel);
    EXPECT_EQ(Coverage(view).ofRegister(view.registersOf("sum_reg")[0]), (BitCoverage{3, 3}));
    EXPECT_EQ(Coverage(view).ofRegister(view.registersOf("sum_reg")[1]), (BitCoverage{2, 3}));
}

TEST(Coverage, IsToldPerVariableAndInstance) {
    const Kernel kernel = partlyLocated();
    const KernelView view(kernel);
    const Coverage coverage(view);
    const VariableCoverage whole = coverage.of({&kernel.arguments()[0], true});
    EXPECT_EQ(whole.variable.variable, &kernel.arguments()[0]);
    EXPECT_TRUE(whole.variable.isArgument);
    EXPECT_THAT(whole.instances, ElementsAre(BitCoverage{1, 1}, BitCoverage{1, 1}));
    EXPECT_EQ(whole.elsewhere, BitCoverage{});
    EXPECT_EQ(whole.state(), Located::Whole);

    const VariableCoverage missing = coverage.of({&kernel.arguments()[1], true});
    EXPECT_THAT(missing.instances, ElementsAre(BitCoverage{}, BitCoverage{}));
    EXPECT_EQ(missing.state(), Located::Missing);

    const VariableCoverage bitMissing = coverage.of({&kernel.variables()[0], false});
    EXPECT_THAT(bitMissing.instances, ElementsAre(BitCoverage{3, 3}, BitCoverage{2, 3}));
    EXPECT_EQ(bitMissing.state(), Located::InPart);

    const VariableCoverage instanceMissing = coverage.of({&kernel.variables()[1], false});
    EXPECT_THAT(instanceMissing.instances, ElementsAre(BitCoverage{1, 1}, BitCoverage{}));
    EXPECT_EQ(instanceMissing.state(), Located::InPart);
}

TEST(Coverage, IsCountedForAllVariables) {
    const Kernel kernel = partlyLocated();
    const KernelView view(kernel);
    EXPECT_EQ(Coverage(view).arguments(), (LocatedCount{1, 0, 1}));
    EXPECT_EQ(Coverage(view).variables(), (LocatedCount{0, 2, 0}));
    // n, sum, i and gone; then n, and sum in part.
    EXPECT_THAT(Coverage(view).instances(),
                ElementsAre(LocatedCount{3, 0, 1}, LocatedCount{1, 1, 2}));
}

TEST(Coverage, SumsUpTheRegistersOfOneNameInAnInstance) {
    Kernel kernel;
    kernel.addInstancePath("top/k_1");
    kernel.addVariable("x", "x", "int");
    kernel.addHardwareLocation("/top/k_1/a/x", 0, 1, 1);
    kernel.addHardwareLocation("/top/k_1/b/x", 3, 1, 2);
    const KernelView view(kernel);
    const VariableCoverage coverage = Coverage(view).of({&kernel.variables()[0], false});
    EXPECT_THAT(coverage.instances, ElementsAre(BitCoverage{2, 5}));
    EXPECT_EQ(coverage.state(), Located::InPart);
}

TEST(Coverage, CountsRegistersInNoInstanceAsOneMore) {
    Kernel kernel;
    kernel.addVariable("x", "x", "int");
    kernel.addHardwareLocation("/elsewhere/x", 0, 1, 1);
    {
        const KernelView view(kernel);
        const VariableCoverage coverage = Coverage(view).of({&kernel.variables()[0], false});
        EXPECT_THAT(coverage.instances, IsEmpty());
        EXPECT_EQ(coverage.elsewhere, (BitCoverage{1, 1}));
        EXPECT_EQ(coverage.state(), Located::Whole);
        EXPECT_THAT(Coverage(view).instances(), IsEmpty());
    }
    kernel.addInstancePath("top/k_1");
    const KernelView view(kernel);
    EXPECT_EQ(Coverage(view).of({&kernel.variables()[0], false}).state(), Located::InPart);
}

TEST(Coverage, OfAKernelWithNeitherInstancesNorRegistersIsMissing) {
    Kernel kernel;
    kernel.addVariable("x", "x", "int");
    const KernelView view(kernel);
    EXPECT_EQ(Coverage(view).variables(), (LocatedCount{0, 0, 1}));
}

TEST(Coverage, TakesRegistersWhoseBitsWereNeverSeenForMissing) {
    Kernel kernel;
    kernel.addInstancePath("top/k_1");
    kernel.addVariable("x", "x", "int");
    kernel.addHardwareLocation("/top/k_1/x", 1, 0, 0);
    const KernelView view(kernel);
    const VariableCoverage coverage = Coverage(view).of({&kernel.variables()[0], false});
    EXPECT_THAT(coverage.instances, ElementsAre(BitCoverage{0, 2}));
    EXPECT_EQ(coverage.state(), Located::Missing);
}

TEST(Coverage, CountsAVariablesOwnLocationsInTheInstancesThereAre) {
    Kernel kernel;
    kernel.addInstancePath("top/k_1");
    kernel.addInstancePath("top/k_2");
    Variable variable("x", "x", "int");
    variable.locations = std::vector<std::vector<LogicLocation>>{
        {}, {{1, 1}, {0, 0}, {1, 3}}, {{9, 9}}}; // of a third instance, which there is not
    const KernelView view(kernel);
    const VariableCoverage coverage = Coverage(view).of({&variable, false});
    EXPECT_THAT(coverage.instances, ElementsAre(BitCoverage{}, BitCoverage{2, 3}));
    EXPECT_EQ(coverage.state(), Located::InPart);
}

} // namespace

} // namespace consolidator::test
