// `consolidator-inspect diff`, to the letter.

#include "tests/support/Bytes.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace consolidator::test {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct DiffCommand : testing::Test {
    CommandResult run(const std::string& before, const std::string& after) const {
        return inspectRun(
            {"diff", directory.write("before", before), directory.write("after", after)});
    }

    /// The lines behind the files' names; empty if there is nothing at all.
    std::string diff(const std::string& before, const std::string& after) const {
        const CommandResult result = run(before, after);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.status, result.out.empty() ? 0 : 1);
        const std::string head =
            "--- " + directory.path("before") + "\n+++ " + directory.path("after") + "\n";
        EXPECT_TRUE(result.out.empty() || result.out.starts_with(head)) << result.out;
        return result.out.substr(std::min(result.out.size(), head.size()));
    }

    std::string diffKernels(const KnownKernel& before, const KnownKernel& after) const {
        return diff(knownDatabase({before}), knownDatabase({after}));
    }

    TemporaryDirectory directory;
};

TEST_F(DiffCommand, SaysNothingWhereNothingDiffers) {
    EXPECT_EQ(run(exampleDatabase(), exampleDatabase()), (CommandResult{0, "", ""}));
}

TEST_F(DiffCommand, ShowsWhatWasAddedRemovedAndChanged) {
    std::vector<KnownKernel> kernels = exampleKernels();
    kernels.pop_back();
    kernels.push_back({"histogram", 2, {"top/region_2/histogram_1"}});
    KnownKernel& scale = kernels.front();
    scale.instancePaths.emplace_back("top/region_0/scale_rows_3");
    scale.arguments[2].typeText = "int";
    scale.variables.pop_back();
    scale.registers[4].places[6] = {0x2a01, 166};
    scale.conditions[2].text = "== 1'b1 $i/fsm_state3";
    const std::string after = DatabaseBuilder()
                                  .section(0, "accelerator_2")
                                  .section(1, exampleDwarf() + "more")
                                  .section(3, knownJson(kernels))
                                  .section(2, knownKernelData(kernels))
                                  .bytes();
    EXPECT_EQ(
        diff(exampleDatabase(), after),
        "~ project: accelerator -> accelerator_2\n"
        "~ DWARF: 38 bytes -> 42, the first difference at 0x26\n"
        "- kernel checksum: C, 1 instance, 3 arguments, 1 variable, 2 registers, 1 condition\n"
        "+ kernel histogram: RTL, 1 instance\n"
        "kernel scale_rows\n"
        "  + instance top/region_0/scale_rows_3\n"
        "  ~ argument rows: type \"unsigned char\" -> \"int\"\n"
        "  - variable sum: hardware name sum_reg, type \"int\"\n"
        "  ~ register /top/region_0/scale_rows_2/U0/sum_reg: bit 6: not located -> 0x00002a01 166\n"
        "  ~ condition scale_rows.cpp:14: \"== 1'b1 $i/fsm_state2\" -> \"== 1'b1 "
        "$i/fsm_state3\"\n");
}

TEST_F(DiffCommand, ShowsVersionProjectAndDwarfOfOneAlone) {
    const std::string before = DatabaseBuilder().version(1, 0).section(0, "a").bytes();
    const std::string after = DatabaseBuilder().section(1, "DW").bytes();
    EXPECT_EQ(diff(before, after), "~ version: 1.0 -> 1.1\n"
                                   "- project: a\n"
                                   "+ DWARF: 2 bytes\n");
    EXPECT_THAT(diff(after, before), EndsWith("+ project: a\n- DWARF: 2 bytes\n"));
}

TEST_F(DiffCommand, ShowsWhereDwarfOfOneSizeDiffers) {
    EXPECT_EQ(diff(DatabaseBuilder().section(1, "DWARF").bytes(),
                   DatabaseBuilder().section(1, "DWaRf").bytes()),
              "~ DWARF: 5 bytes, the first difference at 0x2\n");
}

TEST_F(DiffCommand, ShowsAnotherOrder) {
    EXPECT_EQ(
        diff(knownDatabase({{"a"}, {"b"}, {"c"}}), knownDatabase({{"a"}, {"new"}, {"c"}, {"b"}})),
        "+ kernel new: Unknown\n"
        "~ order of the kernels: c now comes before b\n");
    EXPECT_EQ(diffKernels({.name = "k", .instancePaths = {"p", "q"}, .brams = {"b"}},
                          {.name = "k", .instancePaths = {"q", "p"}, .brams = {"b"}}),
              "kernel k\n"
              "  ~ order of the instances: q now comes before p\n");
}

TEST_F(DiffCommand, ShowsTypes) {
    EXPECT_EQ(diffKernels({.name = "k", .type = 0}, {.name = "k", .type = 4}),
              "kernel k\n  ~ type: OpenCL -> HLS\n");
    EXPECT_EQ(diffKernels({.name = "k", .type = 3}, {.name = "k", .type = 5}),
              "kernel k\n  ~ type: Unknown -> Unknown (5)\n");
}

TEST_F(DiffCommand, ShowsArgumentsVariablesAndBrams) {
    EXPECT_EQ(diffKernels({.name = "k", .arguments = {{"a", "a_r", "int"}}, .brams = {"b1"}},
                          {.name = "k",
                           .arguments = {{"a", "", "char*"}},
                           .variables = {{"v", "w", "int", 32, {{{1, 2}}}}},
                           .brams = {"b2"}}),
              "kernel k\n"
              "  ~ argument a: hardware name a_r -> \"\", type \"int\" -> \"char*\"\n"
              "  + variable v: hardware name w, type \"int\", locations of 1 instance\n"
              "  - BRAM b1\n"
              "  + BRAM b2\n");
}

TEST_F(DiffCommand, ShowsLocationsOfVariables) {
    EXPECT_EQ(diffKernels({.name = "k", .variables = {{"v", "w", "int", 32, {{{1, 2}}}}}},
                          {.name = "k", .variables = {{"v", "w", "int", 32, {{{1, 3}}, {}}}}}),
              "kernel k\n"
              "  ~ variable v, instance 0: bit 0: 0x00000001 2 -> 0x00000001 3\n"
              "  ~ variable v: locations of 1 instance -> 2\n");
}

TEST_F(DiffCommand, ShowsRangesOfBits) {
    const KnownRegister before{"/r", {{1, 10}, {1, 11}, {1, 12}, {0, 0}, {2, 5}, {2, 6}}};
    const KnownRegister after{"/r",
                              {{1, 20}, {1, 21}, {1, 30}, {1, 31}, {0, 0}, {0, 0}, {3, 7}, {0, 0}}};
    EXPECT_EQ(
        diffKernels({.name = "k", .registers = {before}}, {.name = "k", .registers = {after}}),
        "kernel k\n"
        "  ~ register /r\n"
        "      bits 0-1: 0x00000001 10-11 -> 0x00000001 20-21\n"
        "      bit 2: 0x00000001 12 -> 0x00000001 30\n"
        "      bit 3: not located -> 0x00000001 31\n"
        "      bits 4-5: 0x00000002 5-6 -> not located\n"
        "      bit 6: none -> 0x00000003 7\n"
        "      bit 7: none -> not located\n");
}

TEST_F(DiffCommand, ShowsRegistersOfOneAlone) {
    const KnownKernel with{.name = "k", .registers = {{"/r", {{1, 2}, {0, 0}}}}};
    EXPECT_EQ(diffKernels({.name = "k"}, with), "kernel k\n  + register /r: 2 bits, 1 located\n");
    EXPECT_EQ(diffKernels(with, {.name = "k"}), "kernel k\n  - register /r: 2 bits, 1 located\n");
}

// None of the bits has a place but the last one: two lines, not thousands.
TEST_F(DiffCommand, ShowsEmptyBitsAsOneRange) {
    KnownKernel before{.name = "k", .registers = {{"/r", {{1, 2}}}}};
    KnownKernel after = before;
    after.registers[0].places.resize(10000);
    after.registers[0].places.back() = {7, 8};
    const auto withoutDocument = [](const KnownKernel& kernel) {
        return DatabaseBuilder().section(2, knownKernelData({kernel})).bytes();
    };
    EXPECT_EQ(diff(withoutDocument(before), withoutDocument(after)),
              "kernel k\n"
              "  ~ register /r\n"
              "      bits 1-9998: none -> not located\n"
              "      bit 9999: none -> 0x00000007 8\n");
}

TEST_F(DiffCommand, ShowsConditions) {
    EXPECT_EQ(diffKernels(
                  {.name = "k",
                   .conditions = {{0, "$i/a"}, {1, "$i/b"}, {2, "$i/c", 3, "f"}, {7, "$i/d"}}},
                  {.name = "k",
                   .conditions = {{0, "$i/a"}, {1, "$i/x"}, {2, "$i/c", 4, "f"}, {2, "", 3, ""}}}),
              "kernel k\n"
              "  ~ condition stop: \"$i/b\" -> \"$i/x\"\n"
              "  - condition f:3: \"$i/c\"\n"
              "  - condition error (kind 7): \"$i/d\"\n"
              "  + condition f:4: \"$i/c\"\n"
              "  + condition \"\":3: \"\"\n");
}

// An equal one is found wherever it stands; only what is left over is a change.
TEST_F(DiffCommand, MatchesRepeatedElements) {
    EXPECT_EQ(diffKernels({.name = "k", .conditions = {{0, "$i/a"}, {0, "$i/b"}}},
                          {.name = "k", .conditions = {{0, "$i/b"}}}),
              "kernel k\n  - condition start: \"$i/a\"\n");
    EXPECT_EQ(diffKernels({.name = "k", .instancePaths = {"p", "p", "p"}},
                          {.name = "k", .instancePaths = {"p"}}),
              "kernel k\n  - instance p\n  - instance p\n");
    EXPECT_EQ(
        diff(knownDatabase({{"k", 1}, {"k", 2}}), knownDatabase({{"k", 1}, {"k", 4}, {"k", 0}})),
        "+ kernel k: OpenCL\n"
        "kernel k\n"
        "  ~ type: RTL -> HLS\n");
}

TEST_F(DiffCommand, LetsNoNameDriveTheTerminal) {
    EXPECT_EQ(diffKernels({.name = "k\x1b[2J"}, {.name = "k\x1b[2J", .instancePaths = {"a\nb"}}),
              "kernel k\\x1b[2J\n  + instance a\\nb\n");
}

TEST_F(DiffCommand, ColoursTheMarksOnATerminal) {
    const std::string before = directory.write("before", knownDatabase({{"a"}}));
    const std::string after = directory.write("after", knownDatabase({{"b"}}));
    EXPECT_THAT(inspectRunInColour({"diff", before, after}).out,
                EndsWith("\n\x1b[31m-\x1b[0m kernel a: Unknown\n"
                         "\x1b[32m+\x1b[0m kernel b: Unknown\n"));
}

TEST_F(DiffCommand, ComparesWhatCanBeReadOfADamagedDatabase) {
    std::string damaged = exampleDatabase();
    damaged.pop_back();
    const CommandResult result = run(exampleDatabase(), damaged);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, HasSubstr("\n- kernel checksum: C, "));
    EXPECT_THAT(result.err, StartsWith(directory.path("after") + ": error: is damaged at 0x68: "));
}

TEST_F(DiffCommand, CannotCompareWhatIsNoDatabase) {
    const std::string path = directory.write("text", "text");
    const std::string database = directory.write("db", exampleDatabase());
    EXPECT_EQ(
        inspectRun({"diff", database, path}),
        (CommandResult{2, "",
                       path + ": error: is no consolidated file: the file has 4 bytes, and its "
                              "header alone would have 16\n"}));
}

// A long name for many instances, in each of which the place of a bit differs.
TEST_F(DiffCommand, GrowsWithTheDatabasesOnly) {
    KnownVariable variable{std::string(1'000'000, 'v'), "w", "int", 32, {}};
    variable.instances.assign(500, std::vector<KnownPlace>{{7, 1}});
    const KnownKernel before{.name = "k", .variables = {variable}};
    variable.instances.assign(500, std::vector<KnownPlace>{{7, 2}});
    const std::string out = diffKernels(before, {.name = "k", .variables = {variable}});
    EXPECT_THAT(out, EndsWith("…, instance 499: bit 0: 0x00000007 1 -> 0x00000007 2\n"));
    EXPECT_LT(out.size(), 1'000'000U);
}

} // namespace

} // namespace consolidator::test
