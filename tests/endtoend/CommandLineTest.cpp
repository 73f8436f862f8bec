// The command line of the built executable: what it accepts, prints and returns.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/UsageText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult success{};

CommandResult printed(const std::string& text) {
    return {0, text, ""};
}

CommandResult unknownOption(const std::string& reason) {
    return printed("Unknown option: " + reason + "\n");
}

CommandResult missingValue(const std::string& option) {
    return unknownOption("the required argument for option '" + option + "' is missing");
}

CommandResult repeated(const std::string& option) {
    return printed("Unsupported multiple occurrences of : " + option + "\n");
}

const CommandResult strayWord =
    unknownOption("too many positional options have been specified on the command line");

const std::string versions = "Consolidated version: 1.1\nSupported hierarchy version: 1\n";
const std::string noDatabase = "Error: A consolidated file must be specified\n";
const std::string noInput = "No input meta-data files specified\n";
const std::string addAndCreate = "Error: Cannot specify both add and create\n";

/// Runs in a folder that holds the hierarchy file "x", of one kernel, scale_rows.
struct CommandLine : testing::Test {
    CommandLine() { directory.write("x", "scale_rows\ntype: hls\n"); }

    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments);
    }

    /// That the arguments make the database "db" out of the file "x".
    void expectRead(const std::vector<std::string>& arguments) const {
        directory.write("db", "");
        EXPECT_EQ(run(arguments), success) << testing::PrintToString(arguments);
        EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}))
            << testing::PrintToString(arguments);
    }

    TemporaryDirectory directory;
    std::string usage = usageText(consolidatorPath());
};

// Usage and version

TEST_F(CommandLine, PrintsTheUsageWhenAskedForHelp) {
    EXPECT_EQ(run({"--help"}), printed(usage));
}

TEST_F(CommandLine, StartsTheUsageWithTheNameThatItWasStartedBy) {
    const std::string program = consolidatorPath();
    for (const std::string name : {"consolidator", "../bin/two words", "", "-v"}) {
        EXPECT_EQ(runProgram(directory.path("."), program, {name, "--help"}),
                  printed(usageText(name)));
    }
}

TEST_F(CommandLine, PrintsTheVersions) {
    EXPECT_EQ(run({"--version"}), printed(versions));
    EXPECT_EQ(run({"-v"}), printed(versions));
}

TEST_F(CommandLine, PrintsOnlyTheVersionsWhateverElseIsGiven) {
    EXPECT_EQ(run({"-v", "-f", "db", "-h", "x", "-u", "out", "-p", "P", "-c"}), printed(versions));
    EXPECT_EQ(run({"-f", "missing/db", "-v"}), printed(versions));
    EXPECT_FALSE(directory.has("db"));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(CommandLine, PrefersHelpToTheVersions) {
    EXPECT_EQ(run({"--version", "--help"}), printed(usage));
    EXPECT_EQ(run({"--help", "-v", "-f", "db", "-h", "x"}), printed(usage));
    EXPECT_FALSE(directory.has("db"));
}

// What is missing

TEST_F(CommandLine, WantsADatabase) {
    const CommandResult refused = printed(noDatabase + usage);
    EXPECT_EQ(run({}), refused);
    EXPECT_EQ(run({"-p", "P"}), refused);
    EXPECT_EQ(run({"-h", "x"}), refused);
    EXPECT_EQ(run({"-c"}), refused);
    EXPECT_EQ(run({"-f", "", "-h", "x"}), refused);
    EXPECT_EQ(run({"--"}), refused);
}

TEST_F(CommandLine, WantsAnInput) {
    const CommandResult refused = printed(noInput + usage);
    EXPECT_EQ(run({"-f", "db"}), refused);
    EXPECT_EQ(run({"-f", "db", "-p", "P"}), refused);
    EXPECT_EQ(run({"-f", "db", "-c"}), refused);
    EXPECT_FALSE(directory.has("db"));
}

TEST_F(CommandLine, FailsToDumpFromNoDatabase) {
    const CommandResult failed{1, "", "Unable to open \n"};
    EXPECT_EQ(run({"-u", "out"}), failed);
    EXPECT_EQ(run({"-j", "out"}), failed);
    EXPECT_EQ(run({"-u", "out", "-c", "-h", "x"}), failed);
    EXPECT_FALSE(directory.has("out"));
}

// What contradicts itself

TEST_F(CommandLine, RefusesAddTogetherWithCreate) {
    const CommandResult refused = printed(addAndCreate + usage);
    EXPECT_EQ(run({"-a", "-c"}), refused);
    EXPECT_EQ(run({"--create", "--add"}), refused);
    EXPECT_EQ(run({"-ca", "-f", "db", "-h", "x"}), refused);
    EXPECT_EQ(run({"-v", "-a", "-c"}), refused);
    EXPECT_EQ(run({"--help", "-a", "-c"}), refused);
    EXPECT_EQ(run({"-u", "out", "-a", "-c"}), refused);
    EXPECT_FALSE(directory.has("db"));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(CommandLine, RefusesTheSecondOccurrenceOfASingleOption) {
    EXPECT_EQ(run({"-f", "a", "-f", "b"}), repeated("--consolidated_file"));
    EXPECT_EQ(run({"-f", "a", "--con", "a", "-h", "x"}), repeated("--consolidated_file"));
    EXPECT_EQ(run({"-p", "P", "-p", "P"}), repeated("--project"));
    EXPECT_EQ(run({"-d", "x", "--DWARF=x"}), repeated("--DWARF"));
    EXPECT_EQ(run({"-u", "a", "-u", "b"}), repeated("--dump-dwarf"));
    EXPECT_EQ(run({"-j", "a", "-j", "b"}), repeated("--dump-json"));
    EXPECT_EQ(run({"-c", "-c"}), repeated("--create"));
    EXPECT_EQ(run({"-a", "--add"}), repeated("--add"));
    EXPECT_EQ(run({"-vv"}), repeated("--version"));
    EXPECT_EQ(run({"--help", "--help"}), repeated("--help"));
    EXPECT_FALSE(directory.has("a"));
}

TEST_F(CommandLine, LetsAWrongCommandLineWinOverEverything) {
    EXPECT_EQ(run({"--help", "-v", "--other"}), unknownOption("unrecognised option '--other'"));
    EXPECT_EQ(run({"-a", "-c", "-z"}), unknownOption("unrecognised option '-z'"));
    EXPECT_EQ(run({"--help", "-f", "a", "-f", "b"}), repeated("--consolidated_file"));
    EXPECT_EQ(run({"-a", "-c", "-v", "-v"}), repeated("--version"));
}

// What cannot be parsed

TEST_F(CommandLine, RefusesUnknownOptions) {
    EXPECT_EQ(run({"--other"}), unknownOption("unrecognised option '--other'"));
    EXPECT_EQ(run({"--other=value"}), unknownOption("unrecognised option '--other=value'"));
    EXPECT_EQ(run({"-z", "value"}), unknownOption("unrecognised option '-z'"));
    EXPECT_EQ(run({"-f", "db", "-h", "x", "--consolidated-file"}),
              unknownOption("unrecognised option '--consolidated-file'"));
    EXPECT_FALSE(directory.has("db"));
}

TEST_F(CommandLine, MindsUpperAndLowerCase) {
    EXPECT_EQ(run({"--dwarf", "x"}), unknownOption("unrecognised option '--dwarf'"));
    EXPECT_EQ(run({"--Hierarchy", "x"}), unknownOption("unrecognised option '--Hierarchy'"));
    EXPECT_EQ(run({"-D", "x"}), unknownOption("unrecognised option '-D'"));
}

TEST_F(CommandLine, RefusesStrayWords) {
    EXPECT_EQ(run({"x"}), strayWord);
    EXPECT_EQ(run({"-"}), strayWord);
    EXPECT_EQ(run({""}), strayWord);
    EXPECT_EQ(run({"--", "--help"}), strayWord);
    EXPECT_EQ(run({"-f", "db", "-h", "x", "x"}), strayWord);
    EXPECT_EQ(run({"-v", "x"}), strayWord);
    EXPECT_FALSE(directory.has("db"));
}

TEST_F(CommandLine, RefusesAnOptionWithoutItsValue) {
    EXPECT_EQ(run({"-f"}), missingValue("--consolidated_file"));
    EXPECT_EQ(run({"--project"}), missingValue("--project"));
    EXPECT_EQ(run({"-f", "db", "-h"}), missingValue("--hierarchy"));
    EXPECT_EQ(run({"-f", "-h", "x"}), missingValue("--consolidated_file"));
    EXPECT_EQ(run({"--hierarchy="}), unknownOption("the argument for option '--hierarchy' should "
                                                   "follow immediately after the equal sign"));
}

TEST_F(CommandLine, TakesTheShortLetterHForHierarchyNotForHelp) {
    EXPECT_EQ(run({"-h"}), missingValue("--hierarchy"));
}

TEST_F(CommandLine, RefusesAValueForASwitch) {
    EXPECT_EQ(run({"--create=x"}), unknownOption("option '--create' does not take any arguments"));
    EXPECT_EQ(run({"-cx"}), missingValue("--aux"));
}

TEST_F(CommandLine, RefusesAShortenedNameOfSeveralOptions) {
    EXPECT_EQ(run({"--d", "x"}),
              unknownOption("option '--d' is ambiguous and matches '--dump-dwarf', and "
                            "'--dump-json'"));
    EXPECT_EQ(run({"--h", "x"}),
              unknownOption("option '--h' is ambiguous and matches '--help', '--hierarchy', and "
                            "'--hls'"));
    EXPECT_EQ(run({"--c", "db"}),
              unknownOption("option '--c' is ambiguous and matches '--consolidated_file', and "
                            "'--create'"));
}

// What is accepted

TEST_F(CommandLine, TakesValuesInEveryForm) {
    expectRead({"-f", "db", "-h", "x"});
    expectRead({"-fdb", "-hx"});
    expectRead({"--consolidated_file", "db", "--hierarchy", "x"});
    expectRead({"--consolidated_file=db", "--hierarchy=x"});
    expectRead({"-chx", "-fdb"});
    expectRead({"-h", "x", "-f", "db", "--"});
}

TEST_F(CommandLine, TakesUnmistakablyShortenedNames) {
    expectRead({"--cons", "db", "--hier", "x"});
    expectRead({"--co=db", "--hi=x", "--cr"});
    EXPECT_EQ(run({"--ver"}), printed(versions));
    EXPECT_EQ(run({"--he"}), printed(usage));
    EXPECT_EQ(run({"-f", "db", "--DW", "missing", "--k", "missing", "--r", "missing", "--au",
                   "missing", "--ll", "missing"}),
              success);
}

TEST_F(CommandLine, TakesAddAndCreateByEachName) {
    for (const char* name : {"-a", "--add"}) {
        directory.write("db", knownDatabase({{"checksum"}}));
        EXPECT_EQ(run({name, "-f", "db", "-h", "x"}), success);
        EXPECT_EQ(directory.read("db"), knownDatabase({{"checksum"}, {"scale_rows", 4}}));
    }
    for (const char* name : {"-c", "--create"}) {
        directory.write("db", knownDatabase({{"checksum"}}));
        EXPECT_EQ(run({name, "-f", "db", "-h", "x"}), success);
        EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
    }
}

TEST_F(CommandLine, TakesProjectAndDwarfByEachName) {
    for (const std::vector<std::string>& names :
         {std::vector<std::string>{"-p", "-d"}, {"--project", "--DWARF"}}) {
        EXPECT_EQ(run({"-c", "-f", "db", names[0], "two words", names[1], "x"}), success);
        EXPECT_EQ(directory.read("db"), DatabaseBuilder()
                                            .section(0, "two words")
                                            .section(1, "scale_rows\ntype: hls\n")
                                            .section(3, knownJson({}))
                                            .bytes());
    }
}

TEST_F(CommandLine, TakesTheDumpOptionsByEachName) {
    directory.write("db", DatabaseBuilder().section(1, "blob").section(3, "json").bytes());
    for (const char* name : {"-u", "--dump-dwarf", "--dump-d"}) {
        EXPECT_EQ(run({"-f", "db", name, "out"}), success);
        EXPECT_EQ(directory.read("out"), "blob");
    }
    for (const char* name : {"-j", "--dump-json", "--dump-j"}) {
        EXPECT_EQ(run({"-f", "db", name, "out"}), success);
        EXPECT_EQ(directory.read("out"), "json");
    }
}

TEST_F(CommandLine, AcceptsEveryKindOfInputAndIsSilentWhenItIsMissing) {
    for (const char* name : {"-d", "--DWARF", "-h", "--hierarchy", "-k", "--kernel", "-s", "--hls",
                             "-x", "--aux", "-l", "--ll", "-r", "--ram"}) {
        directory.write("db", "");
        EXPECT_EQ(run({"-f", "db", name, "missing"}), success) << name;
        EXPECT_EQ(directory.read("db"), knownDatabase({})) << name;
    }
}

TEST_F(CommandLine, AcceptsAllOptionsAtOnce) {
    EXPECT_EQ(run({"-c", "-f", "db", "-p", "P", "-d", "no", "-h", "no", "-k", "no", "-s", "no",
                   "-x", "no", "-l", "no", "-r", "no"}),
              success);
    EXPECT_EQ(directory.read("db"),
              DatabaseBuilder().section(0, "P").section(3, knownJson({})).bytes());
}

TEST_F(CommandLine, AcceptsEachListOptionSeveralTimes) {
    for (const char* name : {"-h", "-k", "-s", "-x", "-l", "-r"}) {
        EXPECT_EQ(run({"-f", "db", name, "no", name, "no", name, "none"}), success) << name;
    }
}

TEST_F(CommandLine, ReadsAllFilesOfAListInOrder) {
    directory.write("a", "checksum type: c\n");
    EXPECT_EQ(run({"-f", "db", "-h", "x", "-h", "a"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}, {"checksum", 1}}));
    EXPECT_EQ(run({"-c", "-f", "db", "-h", "a", "-h", "x"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"checksum", 1}, {"scale_rows", 4}}));
}

TEST_F(CommandLine, TakesOneValuePerOccurrenceOfAList) {
    EXPECT_EQ(run({"-f", "db", "-h", "x", "a"}), strayWord);
}

// The checks on the database

TEST_F(CommandLine, RefusesADatabaseOfAnotherProject) {
    directory.write("db", DatabaseBuilder().section(0, "P").bytes());
    EXPECT_EQ(run({"-f", "./db", "-p", "Q", "-h", "x"}),
              (CommandResult{1, "",
                             "Error: consolidated file ./db has meta-data for project P, "
                             "not specified project Q\n"}));
}

TEST_F(CommandLine, RefusesADatabaseOfANewerVersion) {
    directory.write("db", DatabaseBuilder().version(2, 3).bytes());
    EXPECT_EQ(run({"-f", "db", "-h", "x"}),
              (CommandResult{1, "",
                             "Error: consolidated file db is version 2.3 and only versions "
                             "up to 1.1 are supported.\n"}));
}

TEST_F(CommandLine, FailsWhereTheDatabaseCannotBeOpened) {
    EXPECT_EQ(run({"-f", "missing/db", "-h", "x"}),
              (CommandResult{1, "", "Unable to open missing/db\n"}));
}

} // namespace

} // namespace consolidator::test
