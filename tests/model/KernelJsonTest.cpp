// Tests the JSON form of a kernel, byte for byte.
#include "model/Kernel.h"
#include "tests/support/Bytes.h"
#include "tests/support/Kernels.h"
#include "tests/support/SampleKernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace consolidator::test {
namespace {

using testing::HasSubstr;

std::string json(const Kernel& kernel) {
    std::ostringstream out;
    kernel.writeJson(out);
    return out.str();
}

TEST(KernelJson, OfANameAndATypeHasTheHeadingsThatAlwaysCome) {
    Kernel kernel;
    kernel.setName("k");
    kernel.setType(KernelType::HLS);
    EXPECT_EQ(json(kernel),
              R"({ "Name" : "k", "Instance Paths" : [  ], "Type" : "HLS", )"
              R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] })");
}

TEST(KernelJson, OfANewKernelIsOfUnknownType) {
    EXPECT_EQ(json(Kernel()),
              R"({ "Name" : "", "Instance Paths" : [  ], "Type" : "Unknown", )"
              R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] })");
}

TEST(KernelJson, OfAFullKernelHasEveryHeading) {
    EXPECT_EQ(
        json(sampleKernel()),
        R"({ "Name" : "scale_rows", "Instance Paths" : [ "top/k_1/inst", "top/k_2/inst" ], )"
        R"("Type" : "C", )"
        R"("Arguments" : [ [ "in", "in_r", "int*", 64], [ "n", "n_r", "int", 32]], )"
        R"("Variables" : [ [ "i", "i_reg", "char", 8], [ "sum", "sum_reg", "double", 32]], )"
        R"("Hardware Variables" : [ )"
        R"({ "RTLName" : "/top/k_1/inst/n_r", "Logic Locations" : [ [ 0, 0], [ 4096, 31]] } , )"
        R"({ "RTLName" : "/top/k_1/inst/in_r", "Logic Locations" : [ ] } ], )"
        R"("Breakable Conditions" : [{ "Start":true, "Cond":"== $i/kc_start 1'b1"}, )"
        R"({ "File":"scale.cpp", "Line":12, "Cond":"s == 1'b1"}], )"
        R"("BRAMs" : [ "buffer_U", "table_U"] })");
}

TEST(KernelJson, HasHardwareVariablesWithoutBrams) {
    Kernel kernel;
    kernel.addHardwareLocation("/n", 0, 1, 2);
    EXPECT_EQ(json(kernel),
              R"({ "Name" : "", "Instance Paths" : [  ], "Type" : "Unknown", "Arguments" : [ ], )"
              R"("Variables" : [ ], "Hardware Variables" : [ )"
              R"({ "RTLName" : "/n", "Logic Locations" : [ [ 1, 2]] } ], )"
              R"("Breakable Conditions" : [] })");
}

TEST(KernelJson, HasBramsWithoutHardwareVariables) {
    Kernel kernel;
    kernel.addBram("b");
    EXPECT_EQ(json(kernel),
              R"({ "Name" : "", "Instance Paths" : [  ], "Type" : "Unknown", "Arguments" : [ ], )"
              R"("Variables" : [ ], "Breakable Conditions" : [], "BRAMs" : [ "b"] })");
}

TEST(KernelJson, HasTheSuffixBehindEachInstancePath) {
    Kernel kernel;
    kernel.addArgument("a", "a_r", "double");
    kernel.addInstancePath("top/k_1");
    EXPECT_THAT(json(kernel), HasSubstr(R"("Instance Paths" : [ "top/k_1/U0" ], "Type")"));
    kernel.addInstancePath("");
    EXPECT_THAT(json(kernel), HasSubstr(R"("Instance Paths" : [ "top/k_1/U0", "/U0" ], "Type")"));
}

TEST(KernelJson, ShowsTheLocationsOfVariablesReadFromAFile) {
    const Kernel kernel =
        kernelOf({.variables = {variable("i", "i_r", "int", {u32(1) + location(1, 2)})}});
    EXPECT_THAT(json(kernel), HasSubstr(R"("Variables" : [ [ "i", "i_r", "int", 32, [ )"
                                        R"({ "Instance" : 0, "Bits" : [{ 1, 2}]}]]], "Breakable)"));
}

TEST(KernelJson, ShowsTypesWithoutANameAsUnknown) {
    for (const std::uint32_t type : {3U, 5U, 7U, 0xFFFFFFFFU}) {
        EXPECT_THAT(json(kernelOf({.type = type})), HasSubstr(R"("Type" : "Unknown", )"));
    }
}

TEST(KernelJson, EscapesNothing) {
    Kernel kernel;
    kernel.setName(bytes("k\"\\\0\xFF"));
    kernel.addInstancePath("a\"b");
    kernel.addBram("c\\");
    EXPECT_EQ(json(kernel), R"({ "Name" : "k"\)" + bytes("\0\xFF") +
                                R"(", "Instance Paths" : [ "a"b/inst" ], "Type" : "Unknown", )"
                                R"("Arguments" : [ ], "Variables" : [ ], )"
                                R"("Breakable Conditions" : [], "BRAMs" : [ "c\"] })");
}

TEST(KernelJson, ShowsConditionsAsTheyAre) {
    Kernel kernel;
    kernel.addBreakableCondition(3, "(1'b1 == 1'b1)");
    EXPECT_THAT(json(kernel), HasSubstr("[{ \"Error\":1, \"Cond\":\"(1'b1 == 1'b1)\"}] }"));
}

} // namespace
} // namespace consolidator::test
