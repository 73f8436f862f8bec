// The example project, as scripts/demo consolidates it.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace consolidator::test {

namespace {

std::string example(const std::string& name) {
    return EXAMPLES_DIRECTORY "/" + name;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

const std::string expectedJson = bytes(
    R"({  "Kernels" : [ )"
    R"({ "Name" : "scale_rows", "Instance Paths" : [ )"
    R"("top/region_0/scale_rows_1/inst", "top/region_0/scale_rows_2/inst" ], "Type" : "HLS", )"
    R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] }, )"
    R"({ "Name" : "checksum", "Instance Paths" : [ "top/region_1/checksum_1/inst" ], )"
    R"("Type" : "C", )"
    R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] } ] })"
    "\0");

std::string expectedDatabase() {
    const std::string kernels =
        u32(2) +
        record({.name = "scale_rows",
                .instancePaths = {"top/region_0/scale_rows_1", "top/region_0/scale_rows_2"},
                .type = 4}) +
        record({.name = "checksum", .instancePaths = {"top/region_1/checksum_1"}, .type = 1});
    return DatabaseBuilder()
        .section(0, "accelerator")
        .section(1, contentOf(example("program.dwarf")))
        .section(3, expectedJson)
        .section(2, kernels)
        .bytes();
}

TEST(ExampleProject, BecomesADatabaseWhoseSectionsCanBeCopiedOut) {
    const TemporaryDirectory directory;
    const std::string here = directory.path("");
    const CommandResult silence;

    EXPECT_EQ(runConsolidator(here, {"-c", "-f", "accelerator.bin", "-p", "accelerator", "-d",
                                     example("program.dwarf"), "-h", example("system.hier")}),
              silence);
    EXPECT_EQ(directory.read("accelerator.bin"), expectedDatabase());

    EXPECT_EQ(runConsolidator(here, {"-f", "accelerator.bin", "-j", "out.json"}), silence);
    EXPECT_EQ(directory.read("out.json"), expectedJson);

    EXPECT_EQ(runConsolidator(here, {"-f", "accelerator.bin", "-u", "out.dwarf"}), silence);
    EXPECT_EQ(directory.read("out.dwarf"), contentOf(example("program.dwarf")));
    EXPECT_EQ(directory.read("out.dwarf").size(), 38U);
}

} // namespace

} // namespace consolidator::test
