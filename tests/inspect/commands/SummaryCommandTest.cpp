// `consolidator-inspect summary`, to the letter.

#include "tests/support/Bytes.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

using testing::HasSubstr;

struct SummaryCommand : testing::Test {
    TemporaryDirectory directory;
};

// Header 16 and four entries of 24 bytes make 112; project name 11, DWARF 38.
TEST_F(SummaryCommand, ShowsTheExampleProject) {
    const std::string path = directory.write("db", exampleDatabase());
    EXPECT_EQ(
        inspectRun({"summary", path}),
        (CommandResult{
            0,
            path + ": consolidated file, version 1.1, 3452 bytes\n"
                   "project: accelerator\n"
                   "DWARF:   38 bytes\n"
                   "\n"
                   "Sections\n"
                   "  #  type          offset  size\n"
                   "  0  project name     112    11\n"
                   "  1  DWARF            123    38\n"
                   "  2  kernel JSON      161  2057\n"
                   "  3  kernel data     2218  1234\n"
                   "\n"
                   "Kernels\n"
                   "  name        type  instances  arguments  variables  registers  located bits"
                   "  conditions\n"
                   "  scale_rows  HLS           2          4          2          5            31"
                   "           3\n"
                   "  checksum    C             1          3          1          2             5"
                   "           1\n",
            ""}));
}

TEST_F(SummaryCommand, ShowsWhatIsNotThere) {
    const std::string path = directory.write("db", DatabaseBuilder().bytes());
    EXPECT_EQ(inspectRun({"summary", path}),
              (CommandResult{0,
                             path + ": consolidated file, version 1.1, 16 bytes\n"
                                    "project: none\n"
                                    "DWARF:   none\n"
                                    "\n"
                                    "Sections\n"
                                    "  #  type  offset  size\n"
                                    "\n"
                                    "Kernels\n"
                                    "  none\n",
                             ""}));
}

TEST_F(SummaryCommand, SetsHeadingsInBoldOnATerminal) {
    const std::string path = directory.write("db", exampleDatabase());
    EXPECT_THAT(inspectRunInColour({"summary", path}).out, HasSubstr("\n\x1b[1mKernels\x1b[0m\n"));
}

TEST_F(SummaryCommand, LetsNoNameDriveTheTerminal) {
    const std::string path = directory.write(
        "db", DatabaseBuilder().section(2, u32(1) + record({.name = "k\x1b[2J\n"})).bytes());
    EXPECT_THAT(inspectRun({"summary", path}).out, HasSubstr("\n  k\\x1b[2J\\n  "));
}

TEST_F(SummaryCommand, ShowsThePartOfADamagedDatabaseThatCanBeRead) {
    std::string database = exampleDatabase();
    database.pop_back();
    const std::string path = directory.write("db", database);
    const CommandResult result = inspectRun({"summary", path});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, HasSubstr("\n  scale_rows "));
    EXPECT_THAT(result.err, HasSubstr(path + ": error: is damaged"));
}

} // namespace

} // namespace consolidator::test
