// The rule by which a kernel from a reader joins the project's kernels.

#include "consolidated/ConsolidatedFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/Kernels.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto otherType = static_cast<KernelType>(7);

/// An argument or a variable with one instance of two bits.
std::string located(std::string_view name, std::string_view hardwareName = "size_r") {
    return variable(name, hardwareName, "int", {list({location(4096, 31), location(4096, 32)})});
}

BreakableCondition fileLine(std::string_view text, std::uint32_t line, const std::string& file) {
    BreakableCondition result(BreakableCondition::FileLine, text);
    result.line = line;
    result.file = file;
    return result;
}

/// Merges the kernels, of one name, and gives what comes of them.
Kernel merged(const std::vector<Kernel>& kernels) {
    ConsolidatedFile database;
    for (const Kernel& kernel : kernels) {
        database.mergeKernel(kernel);
    }
    EXPECT_THAT(database.kernels(), SizeIs(1));
    return database.kernels().at(0);
}

std::vector<std::string> namesAfter(const std::vector<std::string>& names) {
    ConsolidatedFile database;
    for (const std::string& name : names) {
        database.mergeKernel(kernelNamed(name));
    }
    return namesOf(database.kernels());
}

/// The type of a kernel that is first seen with one type and then with the other.
KernelType typeAfter(KernelType first, KernelType second) {
    return merged({kernelNamed("k", first), kernelNamed("k", second)}).type();
}

TEST(MergeKernel, KeepsTheOrderOfFirstAppearance) {
    EXPECT_THAT(namesAfter({"scale_rows", "checksum", "blend", "checksum", "scale_rows"}),
                ElementsAre("scale_rows", "checksum", "blend"));
}

TEST(MergeKernel, ComparesWholeNamesByteForByte) {
    EXPECT_THAT(namesAfter({"blend", "Blend", "blend ", "blen", "blend"}),
                ElementsAre("blend", "Blend", "blend ", "blen"));
    EXPECT_THAT(namesAfter({"a", bytes("a\0"), bytes("a\0b"), bytes("a\0c"), bytes("a\0b")}),
                ElementsAre("a", bytes("a\0"), bytes("a\0b"), bytes("a\0c")));
}

TEST(MergeKernel, MatchesAnEmptyNameWithAnEmptyName) {
    EXPECT_THAT(namesAfter({"", "blend", ""}), ElementsAre("", "blend"));
}

TEST(MergeKernel, LetsAnUnknownTypeTakeOverTheIncomingOne) {
    EXPECT_EQ(typeAfter(KernelType::Unknown, KernelType::HLS), KernelType::HLS);
    EXPECT_EQ(typeAfter(KernelType::Unknown, KernelType::OpenCL), KernelType::OpenCL);
    EXPECT_EQ(typeAfter(KernelType::Unknown, otherType), otherType);
    EXPECT_EQ(typeAfter(KernelType::Unknown, KernelType::Unknown), KernelType::Unknown);
}

TEST(MergeKernel, KeepsATypeThatIsKnown) {
    EXPECT_EQ(typeAfter(KernelType::RTL, KernelType::HLS), KernelType::RTL);
    EXPECT_EQ(typeAfter(KernelType::OpenCL, KernelType::C), KernelType::OpenCL);
    EXPECT_EQ(typeAfter(KernelType::HLS, KernelType::Unknown), KernelType::HLS);
    EXPECT_EQ(typeAfter(otherType, KernelType::HLS), otherType);
}

TEST(MergeKernel, TakesTheTypeOnceOnly) {
    const Kernel kernel = merged(
        {kernelNamed("k"), kernelNamed("k", KernelType::C), kernelNamed("k", KernelType::RTL)});
    EXPECT_EQ(kernel.type(), KernelType::C);
}

TEST(MergeKernel, AddsTheInstancePathsThatAreNew) {
    const Kernel kernel = merged({kernelOf({.name = "k", .instancePaths = {"top/k_1", "top/k_2"}}),
                                  kernelOf({.name = "k", .instancePaths = {"top/k_3", "top/k_1"}}),
                                  kernelOf({.name = "k", .instancePaths = {"", "top/K_1", ""}})});
    EXPECT_THAT(kernel.instancePaths(),
                ElementsAre("top/k_1", "top/k_2", "top/k_3", "", "top/K_1"));
}

TEST(MergeKernel, KeepsTheFirstDescriptionOfAnArgument) {
    Kernel first = kernelNamed("k");
    first.addArgument("size", "size_r", "int");
    Kernel second = kernelNamed("k");
    second.addArgument("size", "size_port", "float*");
    second.addArgument("data", "data_r", "char*");
    EXPECT_THAT(
        merged({first, second}).arguments(),
        ElementsAre(Variable("size", "size_r", "int"), Variable("data", "data_r", "char*")));
}

TEST(MergeKernel, KeepsTheFirstDescriptionOfAVariable) {
    Kernel first = kernelNamed("k");
    first.addVariable("row", "row_reg_1", "int");
    Kernel second = kernelNamed("k");
    second.addVariable("column", "column_reg_1", "int");
    second.addVariable("row", "row_reg_2", "long");
    EXPECT_THAT(merged({first, second}).variables(),
                ElementsAre(Variable("row", "row_reg_1", "int"),
                            Variable("column", "column_reg_1", "int")));
}

TEST(MergeKernel, KeepsArgumentsAndVariablesApart) {
    Kernel first = kernelNamed("k");
    first.addArgument("size", "size_r", "int");
    Kernel second = kernelNamed("k");
    second.addVariable("size", "size_reg", "int");
    const Kernel kernel = merged({first, second});
    EXPECT_THAT(kernel.arguments(), ElementsAre(Variable("size", "size_r", "int")));
    EXPECT_THAT(kernel.variables(), ElementsAre(Variable("size", "size_reg", "int")));
}

TEST(MergeKernel, DropsTheLocationsOfIncomingArgumentsAndVariables) {
    const Kernel kernel = merged(
        {kernelNamed("k"),
         kernelOf({.name = "k", .arguments = {located("size")}, .variables = {located("row")}})});
    EXPECT_THAT(kernel.arguments(), ElementsAre(Variable("size", "size_r", "int")));
    EXPECT_THAT(kernel.variables(), ElementsAre(Variable("row", "size_r", "int")));
}

TEST(MergeKernel, DoesNotGiveKnownArgumentsTheLocationsOfTheIncomingOnes) {
    Kernel known = kernelNamed("k");
    known.addArgument("size", "size_port", "long");
    const Kernel kernel = merged({known, kernelOf({.name = "k", .arguments = {located("size")}})});
    EXPECT_THAT(kernel.arguments(), ElementsAre(Variable("size", "size_port", "long")));
}

TEST(MergeKernel, KeepsTheLocationsOfArgumentsAndVariablesOfANewKernel) {
    Variable size("size", "size_r", "int");
    size.locations = std::vector<std::vector<LogicLocation>>{{{4096, 31}, {4096, 32}}};
    Variable row = size;
    row.sourceName = "row";
    const Kernel first =
        kernelOf({.name = "k", .arguments = {located("size")}, .variables = {located("row")}});
    EXPECT_THAT(merged({first}).arguments(), ElementsAre(size));
    EXPECT_THAT(merged({first}).variables(), ElementsAre(row));
    // What comes later does not take them away again.
    Kernel later = kernelNamed("k");
    later.addArgument("size", "size_port", "long");
    EXPECT_THAT(merged({first, later}).arguments(), ElementsAre(size));
}

TEST(MergeKernel, AddsHardwareVariablesWithTheirLocationsUnlessTheirNameIsKnown) {
    Kernel first = kernelNamed("k");
    first.addHardwareLocation("/top/k_1/inst/a", 1, 4096, 31);
    Kernel second = kernelNamed("k");
    second.addHardwareLocation("/top/k_1/inst/a", 0, 8192, 7);
    second.addHardwareLocation("/top/k_1/inst/b", 0, 8192, 8);
    HardwareVariable a("/top/k_1/inst/a");
    a.locations = {{0, 0}, {4096, 31}};
    HardwareVariable b("/top/k_1/inst/b");
    b.locations = {{8192, 8}};
    EXPECT_THAT(merged({first, second}).hardwareVariables(), ElementsAre(a, b));
}

TEST(MergeKernel, AddsTheConditionsThatDifferInAnyField) {
    Kernel first = kernelNamed("k");
    first.addBreakableCondition(BreakableCondition::Start, "== $i/kc_start 1'b1");
    first.addBreakableCondition(fileLine("(a == 1)", 12, "scale.cpp"));
    Kernel second = kernelNamed("k");
    second.addBreakableCondition(BreakableCondition::Start, "== $i/kc_start 1'b1");
    second.addBreakableCondition(BreakableCondition::Stop, "== $i/kc_start 1'b1");
    second.addBreakableCondition(fileLine("(a == 1)", 12, "scale.cpp"));
    second.addBreakableCondition(fileLine("(a == 1)", 13, "scale.cpp"));
    second.addBreakableCondition(fileLine("(a == 1)", 12, "other.cpp"));
    EXPECT_THAT(merged({first, second}).breakableConditions(),
                ElementsAre(BreakableCondition(BreakableCondition::Start, "== $i/kc_start 1'b1"),
                            fileLine("(a == 1)", 12, "scale.cpp"),
                            BreakableCondition(BreakableCondition::Stop, "== $i/kc_start 1'b1"),
                            fileLine("(a == 1)", 13, "scale.cpp"),
                            fileLine("(a == 1)", 12, "other.cpp")));
}

TEST(MergeKernel, CopiesAConditionWithItsFlag) {
    BreakableCondition incomplete(3, "(a == 1)");
    incomplete.valid = false;
    Kernel second = kernelNamed("k");
    second.addBreakableCondition(incomplete);
    const Kernel kernel = merged({kernelNamed("k"), second});
    ASSERT_THAT(kernel.breakableConditions(), ElementsAre(incomplete));
    EXPECT_FALSE(kernel.breakableConditions().front().valid);
}

TEST(MergeKernel, TakesBramNamesOnlyWithANewKernel) {
    Kernel first = kernelNamed("k");
    first.addBram("top/k_1/buffer_U/ram_0");
    first.addBram("top/k_1/buffer_U/ram_0");
    Kernel second = kernelNamed("k");
    second.addBram("top/k_1/table_U/ram_0");
    EXPECT_THAT(merged({first, second}).brams(),
                ElementsAre("top/k_1/buffer_U/ram_0", "top/k_1/buffer_U/ram_0"));
    EXPECT_THAT(merged({kernelNamed("k"), second}).brams(), IsEmpty());
}

TEST(MergeKernel, ChangesNothingWhenTheSameKernelComesAgain) {
    const Kernel whole = kernelOf({.name = "k",
                                   .instancePaths = {"top/k_1"},
                                   .type = 4,
                                   .arguments = {variable("size", "size_r", "int")},
                                   .variables = {variable("row", "row_reg", "int")},
                                   .hardwareVariables = {hardwareVariable("/top/k_1/inst/a", {})},
                                   .conditions = {condition(0, "== $i/kc_start 1'b1")},
                                   .brams = {"ram_0"}});
    EXPECT_EQ(binaryForm(merged({whole, whole, whole})), binaryForm(whole));
}

TEST(MergeKernel, CopiesANewKernelDeeply) {
    ConsolidatedFile database;
    Kernel kernel = kernelNamed("k");
    kernel.addInstancePath("top/k_1");
    database.mergeKernel(kernel);
    kernel.setName("renamed");
    kernel.setType(KernelType::RTL);
    kernel.addInstancePath("top/k_2");
    EXPECT_EQ(binaryForm(database.kernels().at(0)),
              record({.name = "k", .instancePaths = {"top/k_1"}}));
}

TEST(MergeKernel, MergesAKernelOfItsOwnListWithoutChange) {
    ConsolidatedFile database;
    Kernel kernel = kernelNamed("k");
    kernel.addInstancePath("top/k_1");
    kernel.addArgument("size", "size_r", "int");
    kernel.addBreakableCondition(BreakableCondition::Start, "a");
    database.mergeKernel(kernel);
    database.mergeKernel(database.kernels().front());
    EXPECT_THAT(database.kernels(), SizeIs(1));
    EXPECT_EQ(binaryForm(database.kernels().front()), binaryForm(kernel));
}

TEST(MergeKernel, MergesIntoTheFirstOfTwoKernelsOfOneNameInAFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write(
        "db.bin", DatabaseBuilder()
                      .section(2, u32(3) + record({.name = "other"}) +
                                      record({.name = "k", .instancePaths = {"top/k_1"}}) +
                                      record({.name = "k", .instancePaths = {"top/k_2"}}))
                      .bytes());
    ConsolidatedFile database;
    ASSERT_TRUE(database.readExisting(path));
    ASSERT_THAT(database.kernels(), SizeIs(3));
    database.mergeKernel(kernelOf({.name = "k", .instancePaths = {"top/k_2"}, .type = 4}));
    ASSERT_THAT(database.kernels(), SizeIs(3));
    EXPECT_EQ(binaryForm(database.kernels()[1]),
              record({.name = "k", .instancePaths = {"top/k_1", "top/k_2"}, .type = 4}));
    EXPECT_EQ(binaryForm(database.kernels()[2]),
              record({.name = "k", .instancePaths = {"top/k_2"}}));
}

TEST(MergeKernel, PutsNewKernelsBehindThoseOfTheFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write(
        "db.bin", DatabaseBuilder()
                      .section(2, u32(2) + record({.name = "second"}) + record({.name = "first"}))
                      .bytes());
    ConsolidatedFile database;
    ASSERT_TRUE(database.readExisting(path));
    for (const char* name : {"third", "first", "fourth"}) {
        database.mergeKernel(kernelNamed(name));
    }
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("second", "first", "third", "fourth"));
}

/// Notes what it is told.
struct Notes final : MergeObserver {
    std::vector<std::string> lines;

    void beforeMerging(const Kernel& coming) override { lines.push_back("merge " + coming.name()); }
    void ignoredLocations(const Kernel& kernel, const HardwareVariable& known,
                          const HardwareVariable& ignored) override {
        lines.push_back(kernel.name() + ' ' + known.name + " keeps " +
                        std::to_string(known.locations.size()) + ", not " +
                        std::to_string(ignored.locations.size()));
    }
};

TEST(MergeKernel, TellsAnObserverOfLocationsThatItDrops) {
    ConsolidatedFile database;
    Notes notes;
    Kernel kernel = kernelNamed("k");
    kernel.addHardwareLocation("/same", 0, 1, 1);
    kernel.addHardwareLocation("/other", 0, 1, 2);
    database.mergeKernel(kernel, &notes);
    kernel.addHardwareLocation("/other", 1, 1, 3);
    kernel.addHardwareLocation("/new", 0, 1, 4);
    database.mergeKernel(kernel, &notes);
    database.mergeKernel(kernelNamed("m"), &notes);
    EXPECT_THAT(notes.lines,
                ElementsAre("merge k", "merge k", "k /other keeps 1, not 2", "merge m"));
    EXPECT_THAT(database.kernels().at(0).hardwareVariables(), SizeIs(3));
    EXPECT_EQ(database.kernels().at(0).hardwareVariables().at(1).locations.size(), 1U);
}

// A condition is known by its text as it is now: translated once the database was written.
TEST(MergeKernel, KnowsConditionsByTheirTranslatedTextAfterWriting) {
    const TemporaryDirectory directory;
    ConsolidatedFile database;
    ASSERT_TRUE(database.open(directory.path("db.bin"), true, false));
    Kernel kernel = kernelNamed("k");
    kernel.addBreakableCondition(BreakableCondition::Start, "(x == 1'b1)");
    database.mergeKernel(kernel);
    database.write();
    Kernel again = kernelNamed("k");
    again.addBreakableCondition(BreakableCondition::Start, "== 1'b1 $i/x");
    again.addBreakableCondition(BreakableCondition::Start, "(x == 1'b1)");
    database.mergeKernel(again);
    EXPECT_THAT(database.kernels().at(0).breakableConditions(),
                ElementsAre(BreakableCondition(BreakableCondition::Start, "== 1'b1 $i/x"),
                            BreakableCondition(BreakableCondition::Start, "(x == 1'b1)")));
}

} // namespace

} // namespace consolidator::test
