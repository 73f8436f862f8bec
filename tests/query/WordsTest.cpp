#include "query/Words.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace consolidator::test {

namespace {

constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();

TEST(Words, NameSections) {
    EXPECT_EQ(sectionText({.type = 0, .offset = 0, .size = 0}), "project name");
    EXPECT_EQ(sectionText({.type = 77, .offset = 0, .size = 0}), "type 77 (unknown)");
}

TEST(Words, NameKernelTypes) {
    EXPECT_EQ(typeText(KernelType::OpenCL), "OpenCL");
    EXPECT_EQ(typeText(KernelType::HLS), "HLS");
    EXPECT_EQ(typeText(KernelType::Unknown), "Unknown");
    EXPECT_EQ(typeText(static_cast<KernelType>(7)), "Unknown (7)");
}

BreakableCondition condition(std::uint32_t kind, const std::string& file = {},
                             std::uint32_t line = 0) {
    BreakableCondition result;
    result.kind = kind;
    result.file = file;
    result.line = line;
    return result;
}

TEST(Words, NameConditionsByWhereTheyStop) {
    EXPECT_EQ(conditionPlace(condition(BreakableCondition::Start)), "start");
    EXPECT_EQ(conditionPlace(condition(BreakableCondition::Stop)), "stop");
    EXPECT_EQ(conditionPlace(condition(BreakableCondition::FileLine, "a.cpp", 14)), "a.cpp:14");
    EXPECT_EQ(conditionPlace(condition(BreakableCondition::FileLine, "", 14)), "\"\":14");
    EXPECT_EQ(conditionPlace(condition(BreakableCondition::FileLine, "a\n", 1)), "a\\n:1");
    EXPECT_EQ(conditionPlace(condition(9)), "error (kind 9)");
    EXPECT_EQ(conditionKind(condition(BreakableCondition::FileLine)), "line");
    EXPECT_EQ(conditionKind(condition(9)), "error");
}

TEST(Words, NameInstances) {
    EXPECT_EQ(instanceText(3U), "instance 3");
    EXPECT_EQ(instanceText(std::nullopt), "no instance");
}

TEST(Words, NameWhatARegisterHolds) {
    Kernel kernel;
    kernel.addVariable("i", "reg_a", "int");
    kernel.addArgument("size", "reg_a", "int");
    const KernelView view(kernel);
    EXPECT_EQ(variablesText(view.variablesOf("reg_a")), "argument size, variable i");
    EXPECT_EQ(variablesText(view.variablesOf("reg_b")), "");
}

TEST(Words, NameOnlyTheFirstOfManyVariables) {
    Kernel kernel;
    for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
        kernel.addVariable(name, "reg", "int");
    }
    EXPECT_EQ(variablesText(KernelView(kernel).variablesOf("reg")),
              "variable a, variable b, variable c, variable d and 2 more");
}

TEST(Words, CutLongNames) {
    Kernel kernel;
    kernel.addVariable(std::string(501, 'x'), "reg", "int");
    EXPECT_EQ(variablesText(KernelView(kernel).variablesOf("reg")),
              "variable " + std::string(500, 'x') + "\xE2\x80\xA6");
}

TEST(Words, NameBitsAndPlaces) {
    EXPECT_EQ(bitsText({3, 3, {}}), "3");
    EXPECT_EQ(bitsText({3, 12, {}}), "12:3");
    EXPECT_EQ(rangeText(5, 5), "5");
    EXPECT_EQ(rangeText(5, 17), "5-17");
    EXPECT_EQ(addressText(0x1a01), "0x00001a01");
    EXPECT_EQ(addressText(largest), "0xffffffff");
    EXPECT_EQ(addressText(0), "0x00000000");
    EXPECT_EQ(placeText({0, 1, {0x1a01, 160}}), "frame 0x00001a01  offsets 160-161");
    EXPECT_EQ(placeText({3, 3, {0x1a02, 9}}), "frame 0x00001a02  offset 9");
    EXPECT_EQ(placeText({3, 9, {}}), "not located");
}

// The longest are "0", "1:0", "9:8" and "10:9", which the width for "99:98" has room for.
TEST(Words, KnowHowLongBitsMayGet) {
    EXPECT_EQ(bitsWidth(0), 1U);
    EXPECT_EQ(bitsWidth(1), 1U);
    EXPECT_EQ(bitsWidth(2), 3U);
    EXPECT_EQ(bitsWidth(10), 3U);
    EXPECT_EQ(bitsWidth(11), 5U);
    EXPECT_EQ(bitsWidth(largest), 21U);
}

} // namespace

} // namespace consolidator::test
