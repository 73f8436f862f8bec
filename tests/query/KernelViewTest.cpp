#include "query/KernelView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Instance = std::optional<std::uint32_t>;

TEST(LastComponent, IsWhatStandsBehindTheLastSlash) {
    EXPECT_EQ(lastComponent("/top/k_1/sum_reg"), "sum_reg");
    EXPECT_EQ(lastComponent("sum_reg"), "sum_reg");
    EXPECT_EQ(lastComponent("/top/"), "");
    EXPECT_EQ(lastComponent(""), "");
}

Kernel twoInstances() {
    Kernel kernel;
    kernel.addInstancePath("top/k_10");
    kernel.addInstancePath("top/k_1");
    kernel.addArgument("size", "x", "int");
    kernel.addVariable("i", "x", "char");
    kernel.addVariable("sum", "sum_reg", "int");
    kernel.addHardwareLocation("/top/k_10/x", 0, 1, 1);
    kernel.addHardwareLocation("/top/k_1/x", 7, 1, 2);
    kernel.addHardwareLocation("/top/k_2/x", 0, 1, 3);
    kernel.addHardwareLocation("/top/k_1/row", 0, 1, 4);
    return kernel;
}

TEST(KernelView, FindsTheRegistersOfAName) {
    const Kernel kernel = twoInstances();
    const KernelView view(kernel);
    EXPECT_THAT(view.registersOf("x"), ElementsAre(0, 1, 2));
    EXPECT_THAT(view.registersOf("row"), ElementsAre(3));
    EXPECT_THAT(view.registersOf("sum_reg"), IsEmpty());
    EXPECT_THAT(view.registersOf(""), IsEmpty());
}

TEST(KernelView, FindsTheRegistersOfAnInstance) {
    const Kernel kernel = twoInstances();
    const KernelView view(kernel);
    EXPECT_THAT(view.registersOf("x", 0U), ElementsAre(0));
    EXPECT_THAT(view.registersOf("x", 1U), ElementsAre(1));
    EXPECT_THAT(view.registersOf("x", std::nullopt), ElementsAre(2));
    EXPECT_THAT(view.registersOf("x", 7U), IsEmpty());
}

TEST(KernelView, GivesARegisterToTheLongestPathInIt) {
    const Kernel kernel = twoInstances();
    const KernelView view(kernel);
    EXPECT_EQ(view.instanceOf(std::size_t{0}), Instance(0));
    EXPECT_EQ(view.instanceOf(std::size_t{1}), Instance(1));
    EXPECT_EQ(view.instanceOf(std::size_t{2}), std::nullopt);
    EXPECT_EQ(view.instanceOf("/top/k_10/anything"), Instance(0));
}

TEST(KernelView, TellsWhatARegisterHolds) {
    const Kernel kernel = twoInstances();
    const KernelView view(kernel);
    ASSERT_EQ(view.variablesIn(1).size(), 2U);
    EXPECT_EQ(view.variablesIn(1)[0].variable, &kernel.arguments()[0]);
    EXPECT_EQ(view.variablesIn(1)[0].kind(), "argument");
    EXPECT_EQ(view.variablesIn(1)[1].variable, &kernel.variables()[0]);
    EXPECT_EQ(view.variablesIn(1)[1].kind(), "variable");
    EXPECT_EQ(view.variablesOf("sum_reg").size(), 1U);
    EXPECT_TRUE(view.variablesIn(3).empty());
}

TEST(KernelView, TellsTheRealWidthOfARegister) {
    const Kernel kernel = twoInstances();
    const KernelView view(kernel);
    EXPECT_EQ(view.widthOf(0), 1U);
    EXPECT_EQ(view.widthOf(1), 8U); // bit 7 is the only one with a place
}

TEST(KernelView, AnswersAfterItWasMoved) {
    const Kernel kernel = twoInstances();
    KernelView first(kernel);
    EXPECT_THAT(first.registersOf("row"), ElementsAre(3));
    const KernelView second = std::move(first);
    EXPECT_THAT(second.registersOf("row"), ElementsAre(3));
    EXPECT_EQ(&second.kernel(), &kernel);
}

TEST(KernelView, VisitsArgumentsBeforeVariables) {
    std::string visited;
    const Kernel kernel = twoInstances();
    forEachVariable(kernel, [&visited](const SourceVariable& variable) {
        visited += variable.variable->sourceName + ' ';
    });
    EXPECT_EQ(visited, "size i sum ");
}

} // namespace

} // namespace consolidator::test
