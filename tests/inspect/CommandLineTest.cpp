// The inspector's command line as a whole, and what only a process of its own shows.

#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

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

// The version alone on the first line, for scripts; below it, what a report of a fault should tell.
TEST(InspectCommandLine, TellsItsVersionAndHowItWasMade) {
    const CommandResult result = inspectRun({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out,
                testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+\n"
                                      "consolidator: C\\+\\+ library [a-z]+, Boost [^\n]+\n"
                                      "consolidator-inspect: C\\+\\+ library [a-z]+, RE2 [^\n]+\n"
                                      "made by [A-Za-z]+ [0-9.]+ for [a-z0-9_]+\n"));
}

CommandResult usageError(const std::string& text) {
    return {2, "", "consolidator-inspect" + text + "\n"};
}

TEST(InspectCommandLine, TellsInItsHelpWhichArgumentsMayBeLeftOut) {
    EXPECT_EQ(
        inspectRun({"at", "--help"}).out,
        "Show what lies at a place of the device\n"
        "Usage: consolidator-inspect at [OPTIONS] DB ADDRESS [OFFSET]\n"
        "\n"
        "Arguments:\n"
        "  DB                          The consolidated file to look into\n"
        "  ADDRESS                     Frame address, of which the low 32 bits count; decimal, "
        "or 0x and hexadecimal\n"
        "  OFFSET                      Offset in the frame; without it, all of the frame\n"
        "\n"
        "Options:\n"
        "  --help                      Print this help and exit\n"
        "\n");
}

TEST(InspectCommandLine, WantsACommand) {
    EXPECT_EQ(inspectRun({}), usageError(": error: no command is given; --help lists them"));
}

TEST(InspectCommandLine, KnowsNoOtherCommand) {
    EXPECT_EQ(inspectRun({"foo"}),
              usageError(": error: there is no command \"foo\"; --help lists them"));
    EXPECT_EQ(inspectRun({"sumary", "db"}),
              usageError(": error: there is no command \"sumary\"; did you mean \"summary\"?"));
}

TEST(InspectCommandLine, KnowsNoOtherOption) {
    EXPECT_EQ(inspectRun({"--foo", "summary", "db"}),
              usageError(" summary: error: there is no option \"--foo\""));
    EXPECT_EQ(inspectRun({"--versio"}), usageError(": error: there is no option \"--versio\", but "
                                                   "--version"));
    EXPECT_EQ(inspectRun({"json", "--prety"}),
              usageError(" json: error: there is no option \"--prety\"; did you mean "
                         "\"--pretty\"?"));
    EXPECT_EQ(inspectRun({"find", "-x=1", "db", "a"}),
              usageError(" find: error: there is no option \"-x\""));
}

TEST(InspectCommandLine, WantsAllArgumentsAndNoMore) {
    EXPECT_EQ(inspectRun({"summary"}), usageError(" summary: error: DB is required"));
    EXPECT_EQ(inspectRun({"summary", "db", "another"}),
              usageError(" summary: error: \"another\" is one argument too many"));
    EXPECT_EQ(inspectRun({"check", "-h", "a", "b", "c"}),
              usageError(" check: error: \"b\" is one argument too many"));
    EXPECT_EQ(inspectRun({"check", "-h"}),
              usageError(" check: error: --hierarchy: 1 required FILE missing"));
    EXPECT_EQ(inspectRun({"json", "--section", "--pretty", "db"}),
              usageError(" json: error: --pretty excludes --section"));
}

TEST(InspectCommandLine, WantsAFileWithAName) {
    EXPECT_EQ(inspectRun({"summary", ""}),
              usageError(" summary: error: DB: the name of the file is empty"));
    EXPECT_EQ(inspectRun({"verify", ""}).status, 2);
    EXPECT_EQ(inspectRun({"diff", "", "db"}),
              usageError(" diff: error: DB1: the name of the file is empty"));
    EXPECT_EQ(inspectRun({"check", "-l", ""}),
              usageError(" check: error: --ll: the name of the file is empty"));
}

TEST(InspectCommandLine, LetsNoArgumentDriveTheTerminal) {
    EXPECT_EQ(inspectRun({"\x1b"}),
              usageError(": error: there is no command \"\\x1b\"; --help lists them"));
    EXPECT_EQ(inspectRun({"summary", "--f\x1b"}),
              usageError(" summary: error: there is no option \"--f\\x1b\""));
    EXPECT_EQ(inspectRun({"summary", "db", "\x1b"}),
              usageError(" summary: error: \"\\x1b\" is one argument too many"));
    EXPECT_EQ(inspectRun({"check", "--format", "\x1b"}),
              usageError(" check: error: --format: \\x1b not in {text,json}"));
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

TEST(InspectDatabase, IsNoPipe) {
    const TemporaryDirectory directory;
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const CommandResult refused{2, "", "pipe: error: is no regular file\n"};
    for (const char* command : {"summary", "json", "verify"}) {
        EXPECT_EQ(runInspector(directory.path("."), {command, "pipe"}), refused) << command;
    }
    EXPECT_EQ(runInspector(directory.path("."), {"summary", "/dev/null"}).err,
              "/dev/null: error: is no regular file\n");
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

TEST(InspectDatabase, OfANewerMajorVersionIsNotCalledDamaged) {
    const TemporaryDirectory directory;
    std::string database = exampleDatabase();
    database[4] = 2;
    database[16] = 9; // the first section's type
    directory.write("db", database);
    EXPECT_EQ(runInspector(directory.path("."), {"summary", "db"}),
              (CommandResult{2, "",
                             "db: error: is of version 2.1; only versions up to 1.1 are known\n"}));
}

// The consolidator compares signed numbers, and adds to such a file.
TEST(InspectDatabase, OfAVersionWithItsHighestBitSetIsOld) {
    const TemporaryDirectory directory;
    std::string database = exampleDatabase();
    database[7] = '\x80';
    directory.write("db", database);
    const CommandResult result = runInspector(directory.path("."), {"summary", "db"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.substr(0, result.out.find(',')), "db: consolidated file");
}

TEST(InspectProcess, NoticesThatItsOutputIsLost) {
    const TemporaryDirectory directory;
    directory.write("db", exampleDatabase());
    EXPECT_EQ(runInspector(directory.path("."), {"summary", "db"}, redirected(1, "/dev/full")),
              (CommandResult{2, "",
                             "consolidator-inspect: error: standard output cannot be written: No "
                             "space left on device\n"}));
}

} // namespace

} // namespace consolidator::test
