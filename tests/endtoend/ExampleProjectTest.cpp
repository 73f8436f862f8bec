// The example project, consolidated by the command of scripts/demo: everything that its files tell
// is in the database and in the JSON text.

#include "tests/support/ExampleProject.h"

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult silence{};

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

struct ExampleProject : testing::Test {
    ExampleProject() {
        std::filesystem::create_directory_symlink(exampleFolder(), directory.path("examples"));
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
    EXPECT_EQ(directory.read("accelerator.bin"), DatabaseBuilder()
                                                     .section(0, "accelerator")
                                                     .section(1, exampleDwarf())
                                                     .section(3, expectedJson)
                                                     .section(2, knownKernelData(exampleKernels()))
                                                     .bytes());
}

TEST_F(ExampleProject, HasSectionsThatCanBeCopiedOut) {
    EXPECT_EQ(consolidate(), silence);
    EXPECT_EQ(run("-f accelerator.bin -j out.json"), silence);
    EXPECT_EQ(directory.read("out.json"), expectedJson);
    EXPECT_EQ(run("-f accelerator.bin -u out.dwarf"), silence);
    EXPECT_EQ(directory.read("out.dwarf"), exampleDwarf());
}

} // namespace

} // namespace consolidator::test
