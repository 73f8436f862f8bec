// `consolidator-inspect kernel`, to the letter.

#include "tests/support/Bytes.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::HasSubstr;
using testing::Not;

struct KernelCommand : testing::Test {
    TemporaryDirectory directory;

    CommandResult kernel(const std::string& database, const std::string& name) const {
        return inspectRun({"kernel", directory.write("db", database), name});
    }
};

TEST_F(KernelCommand, ShowsTheExampleProject) {
    EXPECT_EQ(
        kernel(exampleDatabase(), "scale_rows"),
        (CommandResult{0,
                       "kernel scale_rows, type HLS\n"
                       "\n"
                       "Instances (in JSON each path ends in \"/U0\")\n"
                       "  #  path\n"
                       "  0  top/region_0/scale_rows_1\n"
                       "  1  top/region_0/scale_rows_2\n"
                       "\n"
                       "Arguments\n"
                       "  source name  hardware name  type           width  registers  instances\n"
                       "  input        input_r        int*              64          0\n"
                       "  output       output_r       int*              64          0\n"
                       "  rows         rows           unsigned char      8          1  0\n"
                       "  gain         gain           float             32          0\n"
                       "\n"
                       "Variables\n"
                       "  source name  hardware name  type  width  registers  instances\n"
                       "  row          row_reg        int      32          2  0-1\n"
                       "  sum          sum_reg        int      32          2  0-1\n"
                       "\n"
                       "Registers\n"
                       "  instance 0: /top/region_0/scale_rows_1/U0/row_reg\n"
                       "    bits 3:0  frame 0x00001a00  offsets 128-131\n"
                       "  instance 0: /top/region_0/scale_rows_1/U0/sum_reg\n"
                       "    bits 7:0  frame 0x00001a01  offsets 160-167\n"
                       "  instance 0: /top/region_0/scale_rows_1/U0/rows\n"
                       "    bits 7:0  frame 0x00001a02  offsets 0-7\n"
                       "  instance 1: /top/region_0/scale_rows_2/U0/row_reg\n"
                       "    bits 3:0  frame 0x00002a00  offsets 128-131\n"
                       "  instance 1: /top/region_0/scale_rows_2/U0/sum_reg\n"
                       "    bits 5:0  frame 0x00002a01  offsets 160-165\n"
                       "    bit 6     not located\n"
                       "    bit 7     frame 0x00002a01  offset 167\n"
                       "\n"
                       "Conditions\n"
                       "  at                 condition\n"
                       "  start              == 1'b1 $i/kc_start\n"
                       "  stop               == 1'b1 $i/kc_done\n"
                       "  scale_rows.cpp:14  == 1'b1 $i/fsm_state2\n"
                       "\n"
                       "BRAMs\n"
                       "  none\n",
                       ""}));
}

constexpr std::string_view nothingElse = "\n"
                                         "Instances\n"
                                         "  none\n"
                                         "\n"
                                         "Arguments\n"
                                         "  none\n"
                                         "\n"
                                         "Variables\n"
                                         "  none\n"
                                         "\n"
                                         "Registers\n"
                                         "  none\n"
                                         "\n"
                                         "Conditions\n"
                                         "  none\n"
                                         "\n"
                                         "BRAMs\n"
                                         "  none\n";

TEST_F(KernelCommand, ShowsWhatIsNotThere) {
    EXPECT_EQ(kernel(knownDatabase({{"k", 3}}), "k"),
              (CommandResult{0, "kernel k, type Unknown\n" + std::string(nothingElse), ""}));
}

TEST_F(KernelCommand, ShowsEachOfSeveralKernelsOfTheName) {
    EXPECT_EQ(kernel(knownDatabase({{"k", 2}, {"other", 1}, {"k", 77}}), "k").out,
              "kernel k, type RTL\n" + std::string(nothingElse) +
                  "\nkernel k, type Unknown (77)\n" + std::string(nothingElse));
}

TEST_F(KernelCommand, ShowsAKernelWithoutAName) {
    EXPECT_EQ(kernel(knownDatabase({{"", 0}}), ""),
              (CommandResult{0, "kernel , type OpenCL\n" + std::string(nothingElse), ""}));
}

TEST_F(KernelCommand, ShowsWhatNoInputLeadsTo) {
    const KnownKernel odd{.name = "k",
                          .instancePaths = {"top/k_1"},
                          .variables = {{"sum", "sum_reg", "int", 32, {{}, {{9, 1}, {9, 2}}}}},
                          .registers = {{"/top/k_1/nothing", {}}},
                          .conditions = {{5, "odd"}},
                          .brams = {"top/k_1/ram", "top/k_1/ram"}};
    EXPECT_THAT(kernel(knownDatabase({odd}), "k").out,
                HasSubstr("Registers\n"
                          "  instance 0: /top/k_1/nothing\n"
                          "    no bits\n"
                          "\n"
                          "Locations of the arguments and variables themselves\n"
                          "  instance 0: variable sum\n"
                          "    no bits\n"
                          "  instance 1: variable sum\n"
                          "    bits 1:0  frame 0x00000009  offsets 1-2\n"
                          "\n"
                          "Conditions\n"
                          "  at              condition\n"
                          "  error (kind 5)  odd\n"
                          "\n"
                          "BRAMs\n"
                          "  top/k_1/ram\n"
                          "  top/k_1/ram\n"));
}

TEST_F(KernelCommand, CountsRegistersPerInstance) {
    const KnownKernel busy{.name = "k",
                           .instancePaths = {"t/a", "t/b", "t/c", "t/d"},
                           .variables = {{"x", "x_r", "int"}, {"y", "y_r", "int"}},
                           .registers = {{"/t/a/x_r", {}},
                                         {"/t/b/p/x_r", {}},
                                         {"/t/b/q/x_r", {}},
                                         {"/t/d/p/x_r", {}},
                                         {"/t/e/x_r", {}},
                                         {"/t/f/x_r", {}},
                                         {"/t/e/y_r", {}}}};
    const std::string out = kernel(knownDatabase({busy}), "k").out;
    EXPECT_THAT(out,
                HasSubstr("\n"
                          "  x            x_r            int      32          6  0, 1 (2 each), "
                          "3, none (2)\n"
                          "  y            y_r            int      32          1  none\n"));
    EXPECT_THAT(out, HasSubstr("\n  no instance: /t/e/x_r\n"));
}

TEST_F(KernelCommand, ShowsOnlyTheFirstOfManyInstances) {
    KnownKernel wide{.name = "k", .variables = {{"x", "x_r", "int"}}};
    for (int i = 10; i < 40; ++i) {
        const std::string path = "t/k_" + std::to_string(i);
        wide.instancePaths.push_back(path);
        if (i % 2 == 0) {
            wide.registers.push_back({"/" + path + "/x_r", {}});
        }
    }
    EXPECT_THAT(kernel(knownDatabase({wide}), "k").out,
                HasSubstr("  15  0, 2, 4, 6, 8, 10, 12, 14, … (15 in all)\n"));
}

TEST_F(KernelCommand, NamesTheNearestKernelsInstead) {
    EXPECT_EQ(kernel(exampleDatabase(), "scale_row"),
              (CommandResult{1, "",
                             directory.path("db") + ": error: has no kernel \"scale_row\"; did you "
                                                    "mean \"scale_rows\"?\n"}));
    EXPECT_EQ(
        kernel(exampleDatabase(), "\x1b[2J"),
        (CommandResult{1, "", directory.path("db") + ": error: has no kernel \"\\x1b[2J\"\n"}));
}

TEST_F(KernelCommand, LetsNoNameDriveTheTerminal) {
    const std::string bad = "\x1b[2J";
    const KnownKernel hostile{.name = bad,
                              .instancePaths = {bad},
                              .arguments = {{bad, bad, bad}},
                              .variables = {{bad, bad, bad, 32, {{}}}},
                              .registers = {{bad, {}}},
                              .conditions = {{0, bad}, {2, bad, 1, bad}},
                              .brams = {bad}};
    const CommandResult result = kernel(knownDatabase({hostile}), bad);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST_F(KernelCommand, SetsHeadingsInBoldOnATerminal) {
    const std::string path = directory.write("db", exampleDatabase());
    const std::string out = inspectRunInColour({"kernel", path, "checksum"}).out;
    EXPECT_THAT(out, HasSubstr("\x1b[1mkernel checksum\x1b[0m, type C\n"));
    EXPECT_THAT(out, HasSubstr("\n\x1b[1mRegisters\x1b[0m\n"));
}

TEST_F(KernelCommand, ShowsAKernelOfADamagedDatabase) {
    std::string database = exampleDatabase();
    database.pop_back();
    const CommandResult result = kernel(database, "scale_rows");
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, HasSubstr("kernel scale_rows, type HLS\n"));
    EXPECT_THAT(result.err, HasSubstr("db: error: is damaged"));
}

// Registers and variables of one hardware name, and one name that is long: nothing is shown for
// each pair of them, or as wide as the long one in every row.
TEST_F(KernelCommand, GrowsWithTheDatabaseOnly) {
    KnownKernel hostile{.name = "k", .variables = {{std::string(1'000'000, 'x'), "r", "int"}}};
    for (int i = 0; i < 2000; ++i) {
        const std::string number = std::to_string(i);
        hostile.instancePaths.push_back("t/k_" + number);
        hostile.variables.push_back({"v" + number, "r", "int"});
        hostile.registers.push_back({"/t/k_" + number + "/r", {{7, 2}}});
    }
    const CommandResult result = kernel(knownDatabase({hostile}), "k");
    EXPECT_EQ(result.status, 0);
    EXPECT_LT(result.out.size(), 2'000'000U);
}

} // namespace

} // namespace consolidator::test
