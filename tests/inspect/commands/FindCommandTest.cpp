// `consolidator-inspect find`, to the letter.

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

struct FindCommand : testing::Test {
    TemporaryDirectory directory;

    CommandResult find(const std::string& database, const std::vector<std::string>& words) const {
        std::vector<std::string> arguments{"find", directory.write("db", database)};
        arguments.insert(arguments.end(), words.begin(), words.end());
        return inspectRun(arguments);
    }
};

constexpr std::string_view sum = "kernel scale_rows, sum_reg\n"
                                 "  variable sum, int, 32 bits\n"
                                 "  instance 0: /top/region_0/scale_rows_1/U0/sum_reg\n"
                                 "    bit  address     offset\n"
                                 "      0  0x00001a01  160\n"
                                 "      1  0x00001a01  161\n"
                                 "      2  0x00001a01  162\n"
                                 "      3  0x00001a01  163\n"
                                 "      4  0x00001a01  164\n"
                                 "      5  0x00001a01  165\n"
                                 "      6  0x00001a01  166\n"
                                 "      7  0x00001a01  167\n"
                                 "  instance 1: /top/region_0/scale_rows_2/U0/sum_reg\n"
                                 "    bit  address     offset\n"
                                 "      0  0x00002a01  160\n"
                                 "      1  0x00002a01  161\n"
                                 "      2  0x00002a01  162\n"
                                 "      3  0x00002a01  163\n"
                                 "      4  0x00002a01  164\n"
                                 "      5  0x00002a01  165\n"
                                 "      6  not located\n"
                                 "      7  0x00002a01  167\n";

TEST_F(FindCommand, FindsASourceName) {
    EXPECT_EQ(find(exampleDatabase(), {"sum"}), (CommandResult{0, std::string(sum), ""}));
}

TEST_F(FindCommand, FindsAHardwareName) {
    EXPECT_EQ(find(exampleDatabase(), {"s[tu]m_*"}), (CommandResult{0, std::string(sum), ""}));
}

TEST_F(FindCommand, FindsByARegularExpression) {
    EXPECT_EQ(find(exampleDatabase(), {"-r", "/su[lm]_"}),
              (CommandResult{0, std::string(sum), ""}));
    EXPECT_EQ(find(exampleDatabase(), {"--regex", "^sum$"}),
              (CommandResult{0, std::string(sum), ""}));
}

TEST_F(FindCommand, FindsSingleNets) {
    EXPECT_EQ(find(exampleDatabase(), {"top/*_1/*/r*"}),
              (CommandResult{0,
                             "kernel scale_rows, row_reg\n"
                             "  variable row, int, 32 bits\n"
                             "  instance 0: /top/region_0/scale_rows_1/U0/row_reg\n"
                             "    bit  address     offset\n"
                             "      0  0x00001a00  128\n"
                             "      1  0x00001a00  129\n"
                             "      2  0x00001a00  130\n"
                             "      3  0x00001a00  131\n"
                             "\n"
                             "kernel scale_rows, rows\n"
                             "  argument rows, unsigned char, 8 bits\n"
                             "  instance 0: /top/region_0/scale_rows_1/U0/rows\n"
                             "    bit  address     offset\n"
                             "      0  0x00001a02  0\n"
                             "      1  0x00001a02  1\n"
                             "      2  0x00001a02  2\n"
                             "      3  0x00001a02  3\n"
                             "      4  0x00001a02  4\n"
                             "      5  0x00001a02  5\n"
                             "      6  0x00001a02  6\n"
                             "      7  0x00001a02  7\n"
                             "\n"
                             "kernel checksum, result\n"
                             "  argument result, int, 32 bits\n"
                             "  instance 0: /top/region_1/checksum_1/inst/result\n"
                             "    bit  address     offset\n"
                             "      0  0x00003a01  17\n",
                             ""}));
}

TEST_F(FindCommand, ShowsWhatHasNoRegister) {
    EXPECT_EQ(find(exampleDatabase(), {"gain"}), (CommandResult{0,
                                                                "kernel scale_rows, gain\n"
                                                                "  argument gain, float, 32 bits\n"
                                                                "  no register\n",
                                                                ""}));
}

TEST_F(FindCommand, ShowsAllThatGoesByAHardwareName) {
    const KnownKernel shared{.name = "k",
                             .arguments = {{"a", "r", "char", 8}},
                             .variables = {{"b", "r", "int"}},
                             .registers = {{"/t/r", {}}, {"/t/s", {{1, 2}}}}};
    EXPECT_EQ(find(knownDatabase({shared}), {"b"}), (CommandResult{0,
                                                                   "kernel k, r\n"
                                                                   "  argument a, char, 8 bits\n"
                                                                   "  variable b, int, 32 bits\n"
                                                                   "  no instance: /t/r\n"
                                                                   "    no bits\n",
                                                                   ""}));
    EXPECT_EQ(find(knownDatabase({shared}), {"s"}), (CommandResult{0,
                                                                   "kernel k, s\n"
                                                                   "  no instance: /t/s\n"
                                                                   "    bit  address     offset\n"
                                                                   "      0  0x00000001  2\n",
                                                                   ""}));
}

TEST_F(FindCommand, ShowsLocationsOfAVariableItself) {
    const KnownKernel own{.name = "k",
                          .variables = {{"b", "r", "int", 32, {{}, {{0, 0}, {1, 2}}}}}};
    EXPECT_EQ(find(knownDatabase({own}), {"b"}).out, "kernel k, r\n"
                                                     "  variable b, int, 32 bits\n"
                                                     "  instance 0: of its own\n"
                                                     "    no bits\n"
                                                     "  instance 1: of its own\n"
                                                     "    bit  address     offset\n"
                                                     "      0  not located\n"
                                                     "      1  0x00000001  2\n"
                                                     "  no register\n");
}

TEST_F(FindCommand, SaysThatNothingMatches) {
    EXPECT_EQ(
        find(exampleDatabase(), {"Sum\n"}),
        (CommandResult{1, "",
                       directory.path("db") +
                           ": error: no argument, variable or register matches \"Sum\\n\"\n"}));
}

TEST_F(FindCommand, RefusesABadPattern) {
    EXPECT_EQ(
        find(exampleDatabase(), {"sum["}),
        (CommandResult{2, "",
                       "consolidator-inspect find: error: pattern \"sum[\" cannot be understood: "
                       "its \"[\" has no \"]\" (write \"\\[\" for the character itself)\n"}));
    EXPECT_EQ(
        find(exampleDatabase(), {"-r", "sum("}),
        (CommandResult{2, "",
                       "consolidator-inspect find: error: pattern \"sum(\" cannot be understood: "
                       "missing ): sum(\n"}));
}

TEST_F(FindCommand, LetsNoNameDriveTheTerminal) {
    const std::string bad = "\x1b[2J";
    const KnownKernel hostile{
        .name = bad, .variables = {{bad, bad, bad}}, .registers = {{"/t/" + bad, {}}}};
    const CommandResult result = find(knownDatabase({hostile}), {"*"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST_F(FindCommand, SetsHeadingsInBoldOnATerminal) {
    const std::string path = directory.write("db", exampleDatabase());
    EXPECT_THAT(inspectRunInColour({"find", path, "gain"}).out,
                HasSubstr("\x1b[1mkernel scale_rows, gain\x1b[0m\n"));
}

// Registers and variables of one hardware name, and a long name of the kernel: nothing is shown for
// each pair of them.
TEST_F(FindCommand, GrowsWithTheDatabaseOnly) {
    KnownKernel hostile{.name = std::string(1'000'000, 'x')};
    for (int i = 0; i < 2000; ++i) {
        const std::string number = std::to_string(i);
        hostile.variables.push_back({"v" + number, "r", "int"});
        hostile.registers.push_back({"/t/k_" + number + "/r", {{7, 2}}});
        hostile.registers.push_back({"/t/k/s" + number, {{7, 2}}});
    }
    const CommandResult result = find(knownDatabase({hostile}), {"*"});
    EXPECT_EQ(result.status, 0);
    EXPECT_LT(result.out.size(), 2'000'000U);
}

} // namespace

} // namespace consolidator::test
