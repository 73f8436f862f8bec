// Tests the kernel record: the rules of its add operations, its copies, its instance suffix.
#include "model/Kernel.h"

#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/SampleKernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Kernel kernelWithArgumentTypes(const std::vector<std::string>& types) {
    Kernel kernel;
    for (const std::string& type : types) {
        kernel.addArgument("a" + std::to_string(kernel.arguments().size()), "", type);
    }
    return kernel;
}

std::string suffixFor(const std::vector<std::string>& types) {
    return std::string(kernelWithArgumentTypes(types).instanceSuffix());
}

TEST(Kernel, ANewOneIsEmptyAndOfUnknownType) {
    const Kernel kernel;
    EXPECT_EQ(kernel.name(), "");
    EXPECT_EQ(kernel.type(), KernelType::Unknown);
    EXPECT_THAT(kernel.instancePaths(), IsEmpty());
    EXPECT_THAT(kernel.arguments(), IsEmpty());
    EXPECT_THAT(kernel.variables(), IsEmpty());
    EXPECT_THAT(kernel.hardwareVariables(), IsEmpty());
    EXPECT_THAT(kernel.breakableConditions(), IsEmpty());
    EXPECT_THAT(kernel.brams(), IsEmpty());
}

TEST(Kernel, TakesNameAndType) {
    Kernel kernel;
    kernel.setName("scale_rows");
    kernel.setType(KernelType::HLS);
    EXPECT_EQ(kernel.name(), "scale_rows");
    EXPECT_EQ(kernel.type(), KernelType::HLS);
}

TEST(Kernel, AnInstancePathIsKeptOnce) {
    Kernel kernel;
    for (const char* path : {"top/k_2", "top/k_1", "top/k_2", "top/k_1"}) {
        kernel.addInstancePath(path);
    }
    EXPECT_THAT(kernel.instancePaths(), ElementsAre("top/k_2", "top/k_1"));
}

TEST(Kernel, AnEmptyInstancePathIsKeptOnce) {
    Kernel kernel;
    kernel.addInstancePath("");
    kernel.addInstancePath("");
    EXPECT_THAT(kernel.instancePaths(), ElementsAre(""));
}

TEST(Kernel, InstancePathsAreComparedByteForByteAsAWhole) {
    Kernel kernel;
    kernel.addInstancePath("top/k");
    kernel.addInstancePath("top/K");
    kernel.addInstancePath("top/k ");
    kernel.addInstancePath("top");
    kernel.addInstancePath(bytes("top/k\0"));
    kernel.addInstancePath(bytes("top/k\0x"));
    EXPECT_THAT(kernel.instancePaths(), ElementsAre("top/k", "top/K", "top/k ", "top",
                                                    bytes("top/k\0"), bytes("top/k\0x")));
}

TEST(Kernel, TheFirstDescriptionOfAnArgumentWins) {
    Kernel kernel;
    kernel.addArgument("n", "n_r", "int");
    kernel.addArgument("in", "in_r", "float*");
    kernel.addArgument("n", "other", "char");
    EXPECT_THAT(kernel.arguments(),
                ElementsAre(Variable("n", "n_r", "int"), Variable("in", "in_r", "float*")));
}

TEST(Kernel, TheFirstDescriptionOfAVariableWins) {
    Kernel kernel;
    kernel.addVariable("sum", "sum_reg", "int");
    kernel.addVariable("i", "i_reg", "char");
    kernel.addVariable("sum", "other", "float");
    EXPECT_THAT(kernel.variables(),
                ElementsAre(Variable("sum", "sum_reg", "int"), Variable("i", "i_reg", "char")));
}

TEST(Kernel, ArgumentsAndVariablesAreToldApartBySourceNameOnly) {
    Kernel kernel;
    kernel.addArgument("n", "same", "int");
    kernel.addArgument("N", "same", "int");
    kernel.addVariable("", "same", "int");
    kernel.addVariable("n", "same", "int");
    kernel.addVariable("", "other", "int");
    EXPECT_THAT(kernel.arguments(),
                ElementsAre(Variable("n", "same", "int"), Variable("N", "same", "int")));
    EXPECT_THAT(kernel.variables(),
                ElementsAre(Variable("", "same", "int"), Variable("n", "same", "int")));
}

TEST(Kernel, ALocationOfANewRegisterAddsTheRegister) {
    Kernel kernel;
    kernel.addHardwareLocation("/n", 1, 4096, 31);
    ASSERT_THAT(kernel.hardwareVariables(), SizeIs(1));
    EXPECT_EQ(kernel.hardwareVariables()[0].name, "/n");
    EXPECT_THAT(kernel.hardwareVariables()[0].locations,
                ElementsAre(LogicLocation{0, 0}, LogicLocation{4096, 31}));
    EXPECT_TRUE(kernel.hardwareVariables()[0].valid);
}

TEST(Kernel, ALocationOfAKnownRegisterJoinsIt) {
    Kernel kernel;
    kernel.addHardwareLocation("/n", 0, 1, 2);
    kernel.addHardwareLocation("/m", 0, 3, 4);
    kernel.addHardwareLocation("/n", 1, 5, 6);
    kernel.addHardwareLocation("/n", 0, 7, 8);
    ASSERT_THAT(kernel.hardwareVariables(), SizeIs(2));
    EXPECT_THAT(kernel.hardwareVariables()[0].locations,
                ElementsAre(LogicLocation{7, 8}, LogicLocation{5, 6}));
    EXPECT_THAT(kernel.hardwareVariables()[1].locations, ElementsAre(LogicLocation{3, 4}));
}

TEST(Kernel, TellsHowManyEmptyBitsALocationWouldAdd) {
    Kernel kernel;
    EXPECT_EQ(kernel.emptyBitsBefore("/n", 0), 0);
    EXPECT_EQ(kernel.emptyBitsBefore("/n", 5), 5);
    kernel.addHardwareLocation("/n", 5, 1, 2);
    EXPECT_EQ(kernel.emptyBitsBefore("/n", 3), 0);
    EXPECT_EQ(kernel.emptyBitsBefore("/n", 5), 0);
    EXPECT_EQ(kernel.emptyBitsBefore("/n", 6), 0);
    EXPECT_EQ(kernel.emptyBitsBefore("/n", 8), 2);
    EXPECT_EQ(kernel.emptyBitsBefore("/m", 8), 8);
    EXPECT_EQ(kernel.hardwareVariables().size(), 1);
}

TEST(Kernel, ABuiltRegisterIsAddedAsACopyUnlessItsNameIsKnown) {
    HardwareVariable built("/n");
    built.setLocation(0, 1, 2);
    Kernel kernel;
    EXPECT_EQ(kernel.addHardwareVariable(built), 0);
    built.setLocation(0, 3, 4);
    EXPECT_EQ(kernel.addHardwareVariable(built), 0);
    ASSERT_THAT(kernel.hardwareVariables(), SizeIs(1));
    EXPECT_THAT(kernel.hardwareVariables()[0].locations, ElementsAre(LogicLocation{1, 2}));
    kernel.addHardwareLocation("/n", 1, 5, 6);
    EXPECT_THAT(kernel.hardwareVariables()[0].locations,
                ElementsAre(LogicLocation{1, 2}, LogicLocation{5, 6}));
}

TEST(Kernel, TheSameConditionIsKeptOnce) {
    Kernel kernel;
    kernel.addBreakableCondition(0, "x");
    kernel.addBreakableCondition(1, "x");
    kernel.addBreakableCondition(0, "x");
    kernel.addBreakableCondition(BreakableCondition(1, "x"));
    kernel.addBreakableCondition(0, "y");
    EXPECT_THAT(fieldsOf(kernel.breakableConditions()),
                ElementsAre(ConditionFields{0, "x", 0, "", true},
                            ConditionFields{1, "x", 0, "", true},
                            ConditionFields{0, "y", 0, "", true}));
}

TEST(Kernel, ConditionsAreToldApartByLineAndFile) {
    Kernel kernel;
    for (const BreakableCondition& condition :
         {fileLine("x", 12, "a.cpp"), fileLine("x", 13, "a.cpp"), fileLine("x", 12, "b.cpp"),
          fileLine("x", 12, "a.cpp"), fileLine("x", 0, "")}) {
        kernel.addBreakableCondition(condition);
    }
    kernel.addBreakableCondition(2, "x");
    EXPECT_THAT(kernel.breakableConditions(),
                ElementsAre(fileLine("x", 12, "a.cpp"), fileLine("x", 13, "a.cpp"),
                            fileLine("x", 12, "b.cpp"), fileLine("x", 0, "")));
}

TEST(Kernel, AnIncompleteConditionEqualsItsCompleteTwin) {
    BreakableCondition incomplete(0, "x");
    incomplete.valid = false;
    Kernel kernel;
    kernel.addBreakableCondition(incomplete);
    kernel.addBreakableCondition(0, "x");
    EXPECT_THAT(fieldsOf(kernel.breakableConditions()),
                ElementsAre(ConditionFields{0, "x", 0, "", false}));
}

TEST(Kernel, BramNamesAreKeptAsOftenAsTheyCome) {
    Kernel kernel;
    for (const char* name : {"b", "a", "b", ""}) {
        kernel.addBram(name);
    }
    EXPECT_THAT(kernel.brams(), ElementsAre("b", "a", "b", ""));
}

TEST(Kernel, TextsOfTheKernelItselfCanBeAdded) {
    Kernel kernel;
    kernel.addArgument("a", "b", "c");
    kernel.addVariable("a", "b", "c");
    kernel.addBram("bram");
    for (int i = 0; i < 20; ++i) {
        const std::string name = std::to_string(i);
        kernel.addArgument(name, kernel.arguments().front().hardwareName,
                           kernel.arguments().back().typeText);
        kernel.addVariable(name, kernel.variables().front().hardwareName,
                           kernel.variables().back().typeText);
        kernel.addBram(kernel.brams().front());
    }
    EXPECT_EQ(kernel.arguments().back(), Variable("19", "b", "c"));
    EXPECT_EQ(kernel.variables().back(), Variable("19", "b", "c"));
    EXPECT_EQ(kernel.brams().back(), "bram");
    EXPECT_THAT(kernel.brams(), SizeIs(21));
}

TEST(Kernel, EachListTakesHundredsOfThousandsOfAdditions) {
    constexpr std::uint32_t count = 100'000;
    Kernel kernel;
    for (std::uint32_t i = 0; i < 2 * count; ++i) {
        const std::string name = std::to_string(i % count); // everything comes twice
        kernel.addInstancePath(name);
        kernel.addArgument(name, "", "");
        kernel.addVariable(name, "", "");
        kernel.addHardwareLocation(name, 0, i, 0);
        kernel.addHardwareVariable(HardwareVariable(name + "r"));
        kernel.addBreakableCondition(0, name);
        kernel.addBreakableCondition(fileLine("", i % count, "a.cpp"));
        kernel.addBram(name);
    }
    EXPECT_THAT(kernel.instancePaths(), SizeIs(count));
    EXPECT_THAT(kernel.arguments(), SizeIs(count));
    EXPECT_THAT(kernel.variables(), SizeIs(count));
    EXPECT_THAT(kernel.hardwareVariables(), SizeIs(2 * count));
    EXPECT_THAT(kernel.breakableConditions(), SizeIs(2 * count));
    EXPECT_THAT(kernel.brams(), SizeIs(2 * count));
    EXPECT_EQ(kernel.instancePaths().back(), "99999");
    EXPECT_EQ(kernel.arguments()[1000], Variable("1000", "", ""));
    EXPECT_THAT(kernel.hardwareVariables()[2000].locations,
                ElementsAre(LogicLocation{count + 1000, 0}));
}

TEST(Kernel, ACopyAndItsOriginalChangeApart) {
    const Kernel original = sampleKernel();
    Kernel copy = original;
    EXPECT_EQ(binaryForm(copy), sampleRecord());
    copy.setName("checksum");
    copy.setType(KernelType::RTL);
    copy.addInstancePath("top/k_3");
    copy.addArgument("out", "out_r", "int*");
    copy.addVariable("j", "j_reg", "int");
    copy.addHardwareLocation("/top/k_1/inst/n_r", 1, 1, 1);
    copy.addHardwareVariable(HardwareVariable("/top/new"));
    copy.addBreakableCondition(1, "x");
    copy.translateConditions();
    copy.addBram("third_U");
    EXPECT_EQ(binaryForm(original), sampleRecord());
    EXPECT_EQ(copy.name(), "checksum");
    EXPECT_THAT(copy.arguments(), SizeIs(3));
    EXPECT_EQ(copy.hardwareVariables()[0].locations[1], (LogicLocation{1, 1}));
}

TEST(Kernel, AChangedOriginalLeavesItsCopyAlone) {
    Kernel original = sampleKernel();
    Kernel copy;
    copy.addArgument("forgotten", "", "");
    copy = original;
    original.addHardwareLocation("/top/k_1/inst/n_r", 1, 1, 1);
    original.clear();
    EXPECT_EQ(binaryForm(copy), sampleRecord());
}

TEST(Kernel, ACopyKnowsTheElementsOfItsOriginal) {
    const Kernel original = sampleKernel();
    Kernel copy = original;
    copy.addInstancePath("top/k_1");
    copy.addArgument("n", "other", "char");
    copy.addVariable("sum", "other", "char");
    copy.addHardwareVariable(HardwareVariable("/top/k_1/inst/n_r"));
    copy.addBreakableCondition(0, "== $i/kc_start 1'b1");
    EXPECT_EQ(binaryForm(copy), sampleRecord());
}

TEST(Kernel, AMovedKernelTakesEverythingAlong) {
    Kernel original = sampleKernel();
    Kernel moved = std::move(original);
    moved.addArgument("n", "other", "char");
    EXPECT_EQ(binaryForm(moved), sampleRecord());
}

TEST(Kernel, AKernelMovedFromAndClearedIsAsNew) {
    Kernel original = sampleKernel();
    const Kernel moved = std::move(original);
    original.clear(); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(binaryForm(original), record({}));
    original.addArgument("n", "other", "char");
    original.addInstancePath("top/k_1");
    EXPECT_THAT(original.arguments(), ElementsAre(Variable("n", "other", "char")));
    EXPECT_THAT(original.instancePaths(), ElementsAre("top/k_1"));
    EXPECT_EQ(binaryForm(moved), sampleRecord());
}

TEST(Kernel, AClearedKernelIsAsNew) {
    Kernel kernel = sampleKernel();
    kernel.clear();
    EXPECT_EQ(binaryForm(kernel), record({}));
}

TEST(Kernel, AClearedKernelCanBeFilledAgain) {
    Kernel kernel = sampleKernel();
    kernel.clear();
    kernel.addArgument("n", "other", "char");
    kernel.addBreakableCondition(0, "== $i/kc_start 1'b1");
    EXPECT_THAT(kernel.arguments(), ElementsAre(Variable("n", "other", "char")));
    EXPECT_THAT(kernel.breakableConditions(), SizeIs(1));
}

TEST(Kernel, MergingWithItselfOrItsCopyChangesNothing) {
    Kernel kernel = sampleKernel();
    kernel.merge(kernel);
    kernel.merge(sampleKernel());
    EXPECT_EQ(binaryForm(kernel), sampleRecord());
}

TEST(Kernel, MergingIntoANewKernelTakesAllButNameAndBrams) {
    Kernel kernel;
    kernel.setName("checksum");
    kernel.merge(sampleKernel());
    EXPECT_EQ(kernel.name(), "checksum");
    EXPECT_THAT(kernel.brams(), IsEmpty());
    kernel.setName("scale_rows");
    kernel.addBram("buffer_U");
    kernel.addBram("table_U");
    EXPECT_EQ(binaryForm(kernel), sampleRecord());
}

TEST(KernelInstanceSuffix, IsU0WithAFloatingPointArgument) {
    EXPECT_EQ(suffixFor({"int", "float*"}), "/U0");
    EXPECT_EQ(suffixFor({"float"}), "/U0");
    EXPECT_EQ(suffixFor({"double"}), "/U0");
    EXPECT_EQ(suffixFor({"int", "char", "const double &"}), "/U0");
}

TEST(KernelInstanceSuffix, IsU0WithATypeThatHappensToContainTheWords) {
    EXPECT_EQ(suffixFor({"floating"}), "/U0");
    EXPECT_EQ(suffixFor({"my_double_buffer"}), "/U0");
}

TEST(KernelInstanceSuffix, IsInstWithoutThem) {
    EXPECT_EQ(suffixFor({}), "/inst");
    EXPECT_EQ(suffixFor({"int", "char*", ""}), "/inst");
    EXPECT_EQ(suffixFor({"Float", "DOUBLE", "floa", "doubl e"}), "/inst");
}

TEST(KernelInstanceSuffix, LooksAtTheTypesOfArgumentsOnly) {
    Kernel kernel;
    kernel.setName("float");
    kernel.addInstancePath("top/double");
    kernel.addArgument("float", "double", "int");
    kernel.addVariable("sum", "sum_reg", "float");
    EXPECT_EQ(kernel.instanceSuffix(), "/inst");
}

} // namespace
} // namespace consolidator::test
