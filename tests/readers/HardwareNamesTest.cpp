// Which kernels have a hardware name.
#include "readers/HardwareNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::uint32_t> kernelsOf(const HardwareNames& names, std::string_view name) {
    const std::uint32_t number = names.numberOf(name);
    if (number == HardwareNames::none) {
        return {};
    }
    const auto kernels = names.kernelsOf(number);
    return {kernels.begin(), kernels.end()};
}

TEST(HardwareNames, KnowsTheNamesOfArgumentsAndVariables) {
    std::vector<Kernel> kernels(3);
    kernels[0].addArgument("size", "size_r", "int");
    kernels[0].addVariable("n", "n_reg", "int");
    kernels[1].addInstancePath("top");
    kernels[2].addVariable("a", "size_r", "int");
    kernels[2].addArgument("c", "", "int");
    const HardwareNames names(kernels);
    EXPECT_THAT(kernelsOf(names, "size_r"), ElementsAre(0, 2));
    EXPECT_THAT(kernelsOf(names, "n_reg"), ElementsAre(0));
    EXPECT_THAT(kernelsOf(names, ""), ElementsAre(2));
    for (const char* const stranger : {"size", "size_", "size_rr", "top", "n", "\xFF"}) {
        EXPECT_EQ(names.numberOf(stranger), HardwareNames::none) << stranger;
    }
    EXPECT_EQ(names.entryCount(), 4);
}

TEST(HardwareNames, CountsAKernelOnceThatHasANameSeveralTimes) {
    std::vector<Kernel> kernels(2);
    for (Kernel& kernel : kernels) {
        kernel.addArgument("a", "n", "int");
        kernel.addArgument("b", "m", "int");
        kernel.addVariable("a", "n", "int");
        kernel.addVariable("b", "n", "int");
    }
    const HardwareNames names(kernels);
    EXPECT_THAT(kernelsOf(names, "n"), ElementsAre(0, 1));
    EXPECT_THAT(kernelsOf(names, "m"), ElementsAre(0, 1));
    EXPECT_EQ(names.entryCount(), 4);
}

TEST(HardwareNames, MayHaveEachNameItHas) {
    std::vector<Kernel> kernels(1);
    std::string name;
    for (char c = 'a'; c <= 'z'; ++c) { // of 0 to 25 characters
        kernels[0].addVariable(name, name, "int");
        name += c;
    }
    const HardwareNames names(kernels);
    for (const Variable& variable : kernels[0].variables()) {
        EXPECT_TRUE(names.mayHave(variable.hardwareName)) << variable.hardwareName;
    }
}

TEST(HardwareNames, TellsMostStrangersAtOnce) {
    std::vector<Kernel> kernels(1);
    for (int i = 0; i < 100; ++i) {
        kernels[0].addVariable(std::to_string(i), "name_" + std::to_string(i) + "_reg", "int");
    }
    const HardwareNames names(kernels);
    int taken = 0;
    for (int i = 0; i < 1000; ++i) {
        taken += names.mayHave("stranger_" + std::to_string(i)) ? 1 : 0;
    }
    EXPECT_LT(taken, 50);
}

TEST(HardwareNames, KnowsNothingWithoutKernels) {
    const std::vector<Kernel> none;
    const HardwareNames names(none);
    EXPECT_THAT(kernelsOf(names, ""), IsEmpty());
    EXPECT_THAT(kernelsOf(names, "n"), IsEmpty());
}

TEST(HardwareNames, FindsEachOfManyNames) {
    constexpr std::uint32_t count = 5000;
    std::vector<Kernel> kernels(7);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string name = "state_" + std::to_string(i);
        kernels[i % 7].addVariable(name, name + "_reg", "int");
        kernels[6].addArgument(name, name + "_reg", "int");
    }
    const HardwareNames names(kernels);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string name = "state_" + std::to_string(i);
        std::vector<std::uint32_t> expected{i % 7};
        if (i % 7 != 6) {
            expected.push_back(6);
        }
        ASSERT_EQ(kernelsOf(names, name + "_reg"), expected) << i;
        ASSERT_EQ(names.numberOf(name), HardwareNames::none);
    }
}

} // namespace
} // namespace consolidator::test
