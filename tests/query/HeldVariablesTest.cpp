#include "query/HeldVariables.h"

#include <gtest/gtest.h>

#include <string>

namespace consolidator::test {

namespace {

TEST(HeldVariables, ListsArgumentsBeforeVariables) {
    Kernel kernel;
    kernel.addVariable("i", "reg_a", "int");
    kernel.addArgument("size", "reg_a", "int");
    kernel.addVariable("j", "reg_b", "int");
    const HeldVariables held(kernel);
    ASSERT_EQ(held.of("reg_a").size(), 2U);
    EXPECT_EQ(held.of("reg_a")[0].variable, &kernel.arguments()[0]);
    EXPECT_EQ(held.of("reg_a")[1].variable, &kernel.variables()[0]);
    EXPECT_EQ(described(held.of("reg_a")), "argument size, variable i");
    EXPECT_EQ(described(held.of("reg_b")), "variable j");
    EXPECT_EQ(described(held.of("reg_c")), "");
}

TEST(HeldVariables, DescribesOnlyTheFirstOfMany) {
    Kernel kernel;
    for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
        kernel.addVariable(name, "reg", "int");
    }
    EXPECT_EQ(described(HeldVariables(kernel).of("reg")),
              "variable a, variable b, variable c, variable d and 2 more");
}

TEST(HeldVariables, CutsLongNames) {
    Kernel kernel;
    kernel.addVariable(std::string(501, 'x'), "reg", "int");
    EXPECT_EQ(described(HeldVariables(kernel).of("reg")),
              "variable " + std::string(500, 'x') + "\xE2\x80\xA6");
}

} // namespace

} // namespace consolidator::test
