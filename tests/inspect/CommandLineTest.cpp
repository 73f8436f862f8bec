// The inspector's command line as a whole, and what only a process of its own shows.

#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

using testing::HasSubstr;

TEST(InspectCommandLine, TellsItsCommandsWhenAskedForHelp) {
    const CommandResult result = inspectRun({"--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, HasSubstr("Usage: consolidator-inspect [OPTIONS] COMMAND"));
    EXPECT_THAT(result.out, HasSubstr("\n  summary "));
}

TEST(InspectCommandLine, WantsACommand) {
    const CommandResult result = inspectRun({});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
}

TEST(InspectCommandLine, KnowsNoOtherCommand) {
    EXPECT_EQ(inspectRun({"summarise", "db"}).status, 2);
    EXPECT_EQ(inspectRun({"summary"}).status, 2);
    EXPECT_EQ(inspectRun({"summary", "db", "another"}).status, 2);
}

TEST(InspectDatabase, MustBeThere) {
    const TemporaryDirectory directory;
    EXPECT_EQ(
        runInspector(directory.path("."), {"summary", "missing"}),
        (CommandResult{2, "", "missing: error: cannot be opened: No such file or directory\n"}));
}

TEST(InspectDatabase, IsNoFolder) {
    const TemporaryDirectory directory;
    EXPECT_EQ(runInspector(directory.path("."), {"summary", "."}),
              (CommandResult{2, "", ".: error: is a folder\n"}));
}

TEST(InspectDatabase, OfANewerMajorVersionIsNotShown) {
    const TemporaryDirectory directory;
    std::string database = exampleDatabase();
    database[4] = 2;
    directory.write("db", database);
    EXPECT_EQ(runInspector(directory.path("."), {"summary", "db"}),
              (CommandResult{2, "",
                             "db: error: is of version 2.1; only versions up to 1.1 are known\n"}));
}

TEST(InspectProcess, NoticesThatItsOutputIsLost) {
    const TemporaryDirectory directory;
    directory.write("db", exampleDatabase());
    EXPECT_EQ(runInspector(directory.path("."), {"summary", "db"}, redirected(1, "/dev/full")),
              (CommandResult{2, "", "consolidator-inspect: standard output cannot be written\n"}));
}

} // namespace

} // namespace consolidator::test
