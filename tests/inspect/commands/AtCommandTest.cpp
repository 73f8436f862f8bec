// `consolidator-inspect at`, to the letter.

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

struct AtCommand : testing::Test {
    TemporaryDirectory directory;

    CommandResult at(const std::string& database, const std::vector<std::string>& place) const {
        std::vector<std::string> arguments{"at", directory.write("db", database)};
        arguments.insert(arguments.end(), place.begin(), place.end());
        return inspectRun(arguments);
    }
};

TEST_F(AtCommand, ShowsAFrameOfTheExampleProject) {
    EXPECT_EQ(
        at(exampleDatabase(), {"0x2a01"}),
        (CommandResult{
            0,
            "frame 0x00002a01\n"
            "  offsets  bits  kernel      instance  register                               holds\n"
            "  160-165  5:0   scale_rows  1         /top/region_0/scale_rows_2/U0/sum_reg  "
            "variable sum\n"
            "  167      7     scale_rows  1         /top/region_0/scale_rows_2/U0/sum_reg  "
            "variable sum\n",
            ""}));
}

TEST_F(AtCommand, ShowsOneBitOfTheExampleProject) {
    const CommandResult expected{
        0,
        "frame 0x00001a01, offset 163\n"
        "  offsets  bits  kernel      instance  register                               holds\n"
        "  163      3     scale_rows  0         /top/region_0/scale_rows_1/U0/sum_reg  variable "
        "sum\n",
        ""};
    EXPECT_EQ(at(exampleDatabase(), {"0x1a01", "163"}), expected);
    EXPECT_EQ(at(exampleDatabase(), {"6657", "0xA3"}), expected);
    EXPECT_EQ(at(exampleDatabase(), {"0X00001A01", "0xa3"}), expected);
    // Of a longer address only the low 32 bits are in a database.
    EXPECT_EQ(at(exampleDatabase(), {"0x7700001a01", "163"}), expected);
}

TEST_F(AtCommand, SaysThatNothingIsThere) {
    const std::string start = directory.path("db") + ": error: nothing lies in frame 0x00001a01";
    EXPECT_EQ(at(exampleDatabase(), {"0x1a01", "159"}),
              (CommandResult{1, "", start + ", offset 159\n"}));
    EXPECT_EQ(at(exampleDatabase(), {"0x1a01", "168"}),
              (CommandResult{1, "", start + ", offset 168\n"}));
    EXPECT_EQ(at(knownDatabase({}), {"6657"}), (CommandResult{1, "", start + "\n"}));
    EXPECT_EQ(at(exampleDatabase(), {"0x2a01", "166"}).status, 1); // bit 6 is not located
}

TEST_F(AtCommand, ExplainsThePairOfZeros) {
    const CommandResult expected{
        1, "",
        directory.path("db") + ": error: frame 0, offset 0 stands for a bit that is not located: "
                               "nothing can be found there\n"};
    EXPECT_EQ(at(exampleDatabase(), {"0", "0"}), expected);
    EXPECT_EQ(at(exampleDatabase(), {"0x100000000", "0x0"}), expected);
}

TEST_F(AtCommand, ShowsFrameZeroWithoutBitsThatAreNotLocated) {
    const KnownKernel first{.name = "k", .registers = {{"/t/x", {{0, 0}, {0, 0}, {0, 1}}}}};
    EXPECT_EQ(at(knownDatabase({first}), {"0"}),
              (CommandResult{0,
                             "frame 0x00000000\n"
                             "  offsets  bits  kernel  instance  register  holds\n"
                             "  1        2     k       -         /t/x\n",
                             ""}));
    EXPECT_EQ(at(exampleDatabase(), {"0"}).status, 1);
}

TEST_F(AtCommand, ShowsSeveralRegistersByOffset) {
    const KnownKernel one{.name = "one",
                          .instancePaths = {"t/a"},
                          .arguments = {{"p", "x", "int"}},
                          .variables = {{"q", "x", "int"}, {"w", "y", "int", 32, {{}, {{7, 12}}}}},
                          .registers = {{"/t/a/x", {{7, 20}, {7, 21}, {7, 10}}}}};
    const KnownKernel two{.name = "two",
                          .instancePaths = {"t"},
                          .registers = {{"/t/a/x", {{7, 20}, {7, 21}}}, {"/t/y", {{8, 20}}}}};
    EXPECT_EQ(at(knownDatabase({one, two}), {"7"}).out,
              "frame 0x00000007\n"
              "  offsets  bits  kernel  instance  register  holds\n"
              "  10       2     one     0         /t/a/x    argument p, variable q\n"
              "  12       0     one     1         -         variable w\n"
              "  20-21    1:0   one     0         /t/a/x    argument p, variable q\n"
              "  20-21    1:0   two     0         /t/a/x\n");
    EXPECT_EQ(at(knownDatabase({one, two}), {"7", "21"}).out,
              "frame 0x00000007, offset 21\n"
              "  offsets  bits  kernel  instance  register  holds\n"
              "  21       1     one     0         /t/a/x    argument p, variable q\n"
              "  21       1     two     0         /t/a/x\n");
}

TEST_F(AtCommand, RefusesWhatIsNoNumber) {
    for (const char* text : {"", "x", "0x", "12k", "-1", " 1", "1a01", "0x-1",
                             "18446744073709551616", "0x10000000000000000"}) {
        EXPECT_EQ(at(exampleDatabase(), {text}).status, 2) << text;
        EXPECT_EQ(at(exampleDatabase(), {"6657", text}).status, 2) << text;
    }
    EXPECT_EQ(at(exampleDatabase(), {"6657", "4294967296"}).status, 2);
    EXPECT_THAT(at(exampleDatabase(), {"\x1b[2J"}).err,
                HasSubstr("\"\\x1b[2J\" is no number up to 18446744073709551615"));
}

TEST_F(AtCommand, LetsNoNameDriveTheTerminal) {
    const std::string bad = "\x1b[2J";
    const KnownKernel hostile{
        .name = bad, .variables = {{bad, bad, bad}}, .registers = {{"/" + bad, {{7, 2}}}}};
    const CommandResult result = at(knownDatabase({hostile}), {"7"});
    EXPECT_THAT(result.out, HasSubstr("variable \\x1b[2J\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

// Long names, each with many bits that do not follow one another.
TEST_F(AtCommand, GrowsWithTheDatabaseOnly) {
    KnownRegister spread{"/" + std::string(1'000'000, 'r'), {}};
    for (std::uint32_t bit = 0; bit < 500; ++bit) {
        spread.places.push_back({7, 2 * bit + 1});
    }
    const std::string name(1'000'000, 'x');
    const KnownKernel hostile{.name = name,
                              .variables = {{name, std::string(1'000'000, 'r'), "int"}},
                              .registers = {spread}};
    const CommandResult result = at(knownDatabase({hostile}), {"7"});
    EXPECT_EQ(result.status, 0);
    EXPECT_LT(result.out.size(), 1'000'000U);
}

TEST_F(AtCommand, TakesDecimalAndHexadecimalNumbers) {
    const std::string frame = at(exampleDatabase(), {"6657"}).out;
    EXPECT_THAT(frame, HasSubstr("frame 0x00001a01\n"));
    EXPECT_EQ(at(exampleDatabase(), {"06657"}).out,
              frame); // a zero in front does not make it octal
    EXPECT_EQ(at(exampleDatabase(), {"0x1a01"}).out, frame);
    EXPECT_EQ(at(exampleDatabase(), {"0X1A01"}).out, frame);
    EXPECT_THAT(at(exampleDatabase(), {"0xffffffffffffffff"}).err,
                HasSubstr("nothing lies in frame 0xffffffff\n"));
}

} // namespace

} // namespace consolidator::test
