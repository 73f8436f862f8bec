// The example project, consolidated by the command of scripts/demo: everything that its files tell
// is in the database and in the JSON text.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult silence{};

/// A register whose bits lie one behind the other in the same frame.
KnownRegister registerAt(const std::string& net, std::uint32_t address, std::uint32_t firstOffset,
                         std::uint32_t bits) {
    KnownRegister result{net, {}};
    for (std::uint32_t bit = 0; bit < bits; ++bit) {
        result.places.push_back({address, firstOffset + bit});
    }
    return result;
}

KnownKernel scaleRows() {
    // No line of the second instance names bit 6 of sum_reg.
    KnownRegister secondSum = registerAt("/top/region_0/scale_rows_2/U0/sum_reg", 0x2a01, 160, 8);
    secondSum.places[6] = {0, 0};
    return {.name = "scale_rows",
            .type = 4,
            .instancePaths = {"top/region_0/scale_rows_1", "top/region_0/scale_rows_2"},
            .arguments = {{"input", "input_r", "int*", 64},
                          {"output", "output_r", "int*", 64},
                          {"rows", "rows", "unsigned char", 8},
                          {"gain", "gain", "float", 32}},
            .variables = {{"row", "row_reg", "int"}, {"sum", "sum_reg", "int"}},
            .registers = {registerAt("/top/region_0/scale_rows_1/U0/row_reg", 0x1a00, 128, 4),
                          registerAt("/top/region_0/scale_rows_1/U0/sum_reg", 0x1a01, 160, 8),
                          registerAt("/top/region_0/scale_rows_1/U0/rows", 0x1a02, 0, 8),
                          registerAt("/top/region_0/scale_rows_2/U0/row_reg", 0x2a00, 128, 4),
                          secondSum},
            .conditions = {{0, "== 1'b1 $i/kc_start"},
                           {1, "== 1'b1 $i/kc_done"},
                           {2, "== 1'b1 $i/fsm_state2", 14, "scale_rows.cpp"}},
            .pathSuffix = "/U0"};
}

KnownKernel checksum() {
    return {.name = "checksum",
            .type = 1,
            .instancePaths = {"top/region_1/checksum_1"},
            .arguments = {{"in", "in_r", "int"},
                          {"length", "length_r", "int"},
                          {"result", "result", "int"}},
            .variables = {{"crc", "crc_q", "int"}},
            .registers = {registerAt("/top/region_1/checksum_1/inst/crc_q", 0x3a00, 200, 4),
                          registerAt("/top/region_1/checksum_1/inst/result", 0x3a01, 17, 1)},
            .conditions = {{2, "== 1'b1 $i/last_word", 21, "checksum.cpp"}}};
}

/// The JSON text, every character of it.
const std::string expectedJson = bytes(
    R"({  "Kernels" : [ )"
    // scale_rows
    R"({ "Name" : "scale_rows", "Instance Paths" : [ "top/region_0/scale_rows_1/U0", )"
    R"("top/region_0/scale_rows_2/U0" ], "Type" : "HLS", )"
    R"("Arguments" : [ [ "input", "input_r", "int*", 64], [ "output", "output_r", "int*", 64], )"
    R"([ "rows", "rows", "unsigned char", 8], [ "gain", "gain", "float", 32]], )"
    R"("Variables" : [ [ "row", "row_reg", "int", 32], [ "sum", "sum_reg", "int", 32]], )"
    R"("Hardware Variables" : [ )"
    R"({ "RTLName" : "/top/region_0/scale_rows_1/U0/row_reg", "Logic Locations" : [ )"
    R"([ 6656, 128], [ 6656, 129], [ 6656, 130], [ 6656, 131]] } , )"
    R"({ "RTLName" : "/top/region_0/scale_rows_1/U0/sum_reg", "Logic Locations" : [ )"
    R"([ 6657, 160], [ 6657, 161], [ 6657, 162], [ 6657, 163], )"
    R"([ 6657, 164], [ 6657, 165], [ 6657, 166], [ 6657, 167]] } , )"
    R"({ "RTLName" : "/top/region_0/scale_rows_1/U0/rows", "Logic Locations" : [ )"
    R"([ 6658, 0], [ 6658, 1], [ 6658, 2], [ 6658, 3], )"
    R"([ 6658, 4], [ 6658, 5], [ 6658, 6], [ 6658, 7]] } , )"
    R"({ "RTLName" : "/top/region_0/scale_rows_2/U0/row_reg", "Logic Locations" : [ )"
    R"([ 10752, 128], [ 10752, 129], [ 10752, 130], [ 10752, 131]] } , )"
    R"({ "RTLName" : "/top/region_0/scale_rows_2/U0/sum_reg", "Logic Locations" : [ )"
    R"([ 10753, 160], [ 10753, 161], [ 10753, 162], [ 10753, 163], )"
    R"([ 10753, 164], [ 10753, 165], [ 0, 0], [ 10753, 167]] } ], )"
    R"("Breakable Conditions" : [{ "Start":true, "Cond":"== 1'b1 $i/kc_start"}, )"
    R"({ "Stop":true, "Cond":"== 1'b1 $i/kc_done"}, )"
    R"({ "File":"scale_rows.cpp", "Line":14, "Cond":"== 1'b1 $i/fsm_state2"}] }, )"
    // checksum
    R"({ "Name" : "checksum", "Instance Paths" : [ "top/region_1/checksum_1/inst" ], )"
    R"("Type" : "C", "Arguments" : [ [ "in", "in_r", "int", 32], )"
    R"([ "length", "length_r", "int", 32], [ "result", "result", "int", 32]], )"
    R"("Variables" : [ [ "crc", "crc_q", "int", 32]], "Hardware Variables" : [ )"
    R"({ "RTLName" : "/top/region_1/checksum_1/inst/crc_q", "Logic Locations" : [ )"
    R"([ 14848, 200], [ 14848, 201], [ 14848, 202], [ 14848, 203]] } , )"
    R"({ "RTLName" : "/top/region_1/checksum_1/inst/result", "Logic Locations" : [ )"
    R"([ 14849, 17]] } ], "Breakable Conditions" : [)"
    R"({ "File":"checksum.cpp", "Line":21, "Cond":"== 1'b1 $i/last_word"}] } ] })"
    "\0");

/// One compile unit, scale_rows.cpp, and the abbreviation that it uses.
const std::string expectedDwarf =
    // length, version 4, abbreviations at 0, addresses of 8 bytes
    bytes("\x18\0\0\0\x04\0\0\0\0\0\x08"
          // abbreviation 1: name, language
          "\x01scale_rows.cpp\0\x04"
          // abbreviation 1: compile unit without children, name a text, language a byte
          "\x01\x11\0\x03\x08\x13\x0b\0\0\0");

struct ExampleProject : testing::Test {
    ExampleProject() {
        std::filesystem::create_directory_symlink(EXAMPLES_DIRECTORY, directory.path("examples"));
    }

    /// Runs the consolidator with these words.
    CommandResult run(const std::string& arguments) const {
        std::istringstream words(arguments);
        return runConsolidator(directory.path("."), {std::istream_iterator<std::string>(words),
                                                     std::istream_iterator<std::string>()});
    }

    /// What scripts/demo does first.
    CommandResult consolidate() const {
        return run("-c -f accelerator.bin -p accelerator"
                   " -d examples/program.dwarf -h examples/system.hier"
                   " -k examples/kernel.xml -x examples/checksum_auxiliary.xml"
                   " -s examples/scale_rows.hls -s examples/checksum.hls"
                   " -l examples/top.ll -r examples/ram_utilization.rpt");
    }

    TemporaryDirectory directory;
};

TEST_F(ExampleProject, BecomesADatabaseOfAllThatItsFilesTell) {
    EXPECT_EQ(consolidate(), silence);
    EXPECT_EQ(directory.read("accelerator.bin"),
              DatabaseBuilder()
                  .section(0, "accelerator")
                  .section(1, expectedDwarf)
                  .section(3, expectedJson)
                  .section(2, knownKernelData({scaleRows(), checksum()}))
                  .bytes());
}

TEST_F(ExampleProject, HasSectionsThatCanBeCopiedOut) {
    EXPECT_EQ(consolidate(), silence);
    EXPECT_EQ(run("-f accelerator.bin -j out.json"), silence);
    EXPECT_EQ(directory.read("out.json"), expectedJson);
    EXPECT_EQ(run("-f accelerator.bin -u out.dwarf"), silence);
    EXPECT_EQ(directory.read("out.dwarf"), expectedDwarf);
}

} // namespace

} // namespace consolidator::test
