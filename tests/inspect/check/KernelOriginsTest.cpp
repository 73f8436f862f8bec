// Which input has told what of a kernel first.

#include "inspect/check/KernelOrigins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Kernel kernelWith(std::string_view argument, std::string_view hardware, std::string_view type) {
    Kernel kernel;
    kernel.setName("k");
    kernel.addArgument(argument, hardware, type);
    return kernel;
}

TEST(KernelOrigins, KnowTheInputsOfAKernel) {
    KernelOrigins origins;
    origins.add(0, kernelWith("a", "a", "int"));
    origins.add(2, kernelWith("b", "b", "int"));
    origins.add(2, kernelWith("c", "c", "int"));
    EXPECT_THAT(origins.inputsOf("k"), ElementsAre(0U, 2U));
    EXPECT_THAT(origins.inputsOf("other"), IsEmpty());
}

TEST(KernelOrigins, TellWhichDescriptionsAreIgnored) {
    KernelOrigins origins;
    EXPECT_THAT(origins.add(0, kernelWith("a", "a", "int")).descriptions, IsEmpty());
    EXPECT_THAT(origins.add(1, kernelWith("a", "a", "int")).descriptions, IsEmpty());
    const auto ignored = origins.add(2, kernelWith("a", "a_r", "int*")).descriptions;
    ASSERT_EQ(ignored.size(), 1U);
    EXPECT_TRUE(ignored[0].isArgument);
    EXPECT_EQ(ignored[0].sourceName, "a");
    EXPECT_EQ(ignored[0].hardwareName, "a_r");
    EXPECT_EQ(ignored[0].typeText, "int*");
    EXPECT_EQ(ignored[0].firstHardwareName, "a");
    EXPECT_EQ(ignored[0].firstTypeText, "int");
    EXPECT_EQ(ignored[0].firstInput, 0U);
}

TEST(KernelOrigins, TellWhichDescriptionsAreIgnoredWhereArgumentsAreShared) {
    const auto list = std::make_shared<VariableList>();
    for (const std::string name : {"a", "b", "c"}) {
        list->findOrAdd(name, [&] { return Variable(name, name, "int"); });
    }
    const auto kernelSharing = [&](std::size_t count) {
        Kernel kernel;
        kernel.setName("k");
        kernel.setArguments(ArgumentList(list, count));
        return kernel;
    };
    KernelOrigins origins;
    EXPECT_THAT(origins.add(0, kernelSharing(1)).descriptions, IsEmpty());
    EXPECT_THAT(origins.add(0, kernelSharing(2)).descriptions, IsEmpty()); // of the same document
    EXPECT_THAT(origins.add(1, kernelWith("c", "c_r", "int")).descriptions, IsEmpty());
    const auto second = origins.add(2, kernelWith("b", "b_r", "int")).descriptions;
    ASSERT_EQ(second.size(), 1U);
    EXPECT_EQ(second[0].firstHardwareName, "b");
    EXPECT_EQ(second[0].firstInput, 0U);
    const auto third = origins.add(3, kernelSharing(3)).descriptions; // as another document's
    ASSERT_EQ(third.size(), 1U);
    EXPECT_EQ(third[0].sourceName, "c");
    EXPECT_EQ(third[0].hardwareName, "c");
    EXPECT_EQ(third[0].firstHardwareName, "c_r");
    EXPECT_EQ(third[0].firstInput, 1U);
}

TEST(KernelOrigins, KeepArgumentsAndVariablesApart) {
    KernelOrigins origins;
    origins.add(0, kernelWith("a", "a", "int"));
    Kernel kernel;
    kernel.setName("k");
    kernel.addVariable("a", "a_reg", "int");
    EXPECT_THAT(origins.add(1, kernel).descriptions, IsEmpty());
}

TEST(KernelOrigins, TellWhichTypesAreIgnored) {
    KernelOrigins origins;
    Kernel kernel;
    EXPECT_THAT(origins.add(0, kernel).types, IsEmpty());
    kernel.setType(KernelType::C);
    EXPECT_THAT(origins.add(1, kernel).types, IsEmpty());
    kernel.setType(KernelType::HLS);
    const auto ignored = origins.add(2, kernel).types;
    ASSERT_EQ(ignored.size(), 1U);
    EXPECT_EQ(ignored[0].type, KernelType::HLS);
    EXPECT_EQ(ignored[0].firstType, KernelType::C);
    EXPECT_EQ(ignored[0].firstInput, 1U);
    kernel.setType(KernelType::Unknown);
    EXPECT_THAT(origins.add(3, kernel).types, IsEmpty());
}

} // namespace

} // namespace consolidator::inspect::test
