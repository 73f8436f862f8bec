// One run of the driver: what it does in which order, what it says and its exit status.

#include "driver/Driver.h"

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/DriverRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/UsageText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult success{};

CommandResult printed(const std::string& text) {
    return {0, text, ""};
}

CommandResult failure(const std::string& line) {
    return {1, "", line + "\n"};
}

const std::string usage = usageText("consolidator");

/// A database of this project with one section of each kind.
std::string databaseOfProject(std::string_view project) {
    return DatabaseBuilder()
        .section(0, project)
        .section(1, "old dwarf")
        .section(3, knownJson({{"checksum"}}))
        .section(2, knownKernelData({{"checksum"}}))
        .bytes();
}

/// Tests that work on files: a database, "db", and the inputs "dwarf", "a.hier" and "b.hier".
struct Driver : testing::Test {
    Driver() {
        directory.write("dwarf", "new dwarf");
        directory.write("a.hier", "scale_rows\ntype: hls\n");
        directory.write("b.hier", "blend\ntype: c\n");
    }

    /// Runs the driver with "-f db" and more words, in which "@name" stands for a file's path.
    CommandResult runOnDatabase(const std::vector<std::string>& words) const {
        std::vector<std::string> all{"-f", db};
        for (const std::string& word : words) {
            all.push_back(word.starts_with('@') ? directory.path(word.substr(1)) : word);
        }
        return runDriver(all);
    }

    TemporaryDirectory directory;
    std::string db = directory.path("db");
};

// Runs that open nothing

TEST_F(Driver, PrintsTheVersions) {
    const CommandResult versions =
        printed("Consolidated version: 1.1\nSupported hierarchy version: 1\n");
    EXPECT_EQ(runDriver({"-v"}), versions);
    EXPECT_EQ(runOnDatabase({"-v", "-d", "@dwarf", "-u", "@out"}), versions);
    EXPECT_FALSE(directory.has("db"));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, PrintsTheUsageWhenAskedForHelpWhateverElseIsGiven) {
    EXPECT_EQ(runDriver({"--help"}), printed(usage));
    EXPECT_EQ(runDriver({"-v", "--help"}), printed(usage));
    EXPECT_EQ(runOnDatabase({"--help", "-d", "@dwarf", "-u", "@out"}), printed(usage));
    EXPECT_FALSE(directory.has("db"));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, PrintsWhatIsMissingAndTheUsage) {
    EXPECT_EQ(runDriver({}), printed("Error: A consolidated file must be specified\n" + usage));
    EXPECT_EQ(runOnDatabase({}), printed("No input meta-data files specified\n" + usage));
    EXPECT_EQ(runOnDatabase({"-p", "P"}), printed("No input meta-data files specified\n" + usage));
    EXPECT_FALSE(directory.has("db"));
}

TEST_F(Driver, PrintsTheUsageAfterAddAndCreateTogetherWhateverElseIsAskedFor) {
    const CommandResult refused = printed("Error: Cannot specify both add and create\n" + usage);
    EXPECT_EQ(runDriver({"-a", "-c"}), refused);
    EXPECT_EQ(runDriver({"-v", "-a", "-c"}), refused);
    EXPECT_EQ(runDriver({"--help", "-a", "-c"}), refused);
    EXPECT_EQ(runOnDatabase({"-d", "@dwarf", "-a", "-c"}), refused);
    EXPECT_FALSE(directory.has("db"));
}

TEST_F(Driver, PrintsOneLineAboutACommandLineThatCannotBeParsed) {
    directory.write("db", "kept");
    EXPECT_EQ(runOnDatabase({"--other", "--help", "-v", "-a", "-c"}),
              printed("Unknown option: unrecognised option '--other'\n"));
    EXPECT_EQ(runOnDatabase({"-f", "x", "--help", "-d", "@dwarf"}),
              printed("Unsupported multiple occurrences of : --consolidated_file\n"));
    EXPECT_EQ(directory.read("db"), "kept");
}

// Opening the database

TEST_F(Driver, FailsWhereTheDatabaseCannotBeOpened) {
    db = directory.path("missing/db");
    const CommandResult failed = failure("Unable to open " + db);
    EXPECT_EQ(runOnDatabase({"-d", "@dwarf"}), failed);
    EXPECT_EQ(runOnDatabase({"-d", "@dwarf", "-c"}), failed);
    EXPECT_EQ(runOnDatabase({"-u", "@out"}), failed);
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, FailsToDumpFromADatabaseThatIsNotThere) {
    EXPECT_EQ(runOnDatabase({"-j", "@out"}), failure("Unable to open " + db));
    EXPECT_FALSE(directory.has("db"));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, FailsToDumpFromNoDatabase) {
    EXPECT_EQ(runDriver({"-u", directory.path("out")}), failure("Unable to open "));
    EXPECT_EQ(runDriver({"-j", directory.path("out")}), failure("Unable to open "));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, MakesADatabaseThatIsNotThere) {
    EXPECT_EQ(runOnDatabase({"-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
}

TEST_F(Driver, AddsToADatabaseByDefaultAndWhenAsked) {
    for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"-a"}}) {
        directory.write("db", knownDatabase({{"checksum"}}));
        std::vector<std::string> words{"-h", "@a.hier"};
        words.insert(words.end(), mode.begin(), mode.end());
        EXPECT_EQ(runOnDatabase(words), success);
        EXPECT_EQ(directory.read("db"), knownDatabase({{"checksum"}, {"scale_rows", 4}}));
    }
}

TEST_F(Driver, StartsADatabaseAfreshWhenAsked) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-c", "-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
}

// The project

TEST_F(Driver, RefusesADatabaseOfAnotherProjectAndLeavesIt) {
    for (const std::string other : {"Q", "p", "PP", "P "}) {
        directory.write("db", databaseOfProject("P"));
        EXPECT_EQ(runOnDatabase({"-p", other, "-d", "@dwarf"}),
                  failure("Error: consolidated file " + db +
                          " has meta-data for project P, not specified project " + other));
        EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
    }
}

TEST_F(Driver, RefusesToDumpFromADatabaseOfAnotherProject) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-p", "Q", "-u", "@out"}),
              failure("Error: consolidated file " + db +
                      " has meta-data for project P, not specified project Q"));
    EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, AcceptsAnotherProjectWhenItStartsAfresh) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-c", "-p", "Q", "-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("db"), DatabaseBuilder()
                                        .section(0, "Q")
                                        .section(3, knownJson({{"scale_rows", 4}}))
                                        .section(2, knownKernelData({{"scale_rows", 4}}))
                                        .bytes());
}

TEST_F(Driver, AcceptsTheSameProjectAndNotesItOnceMore) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-p", "P", "-h", "@missing"}), success);
    EXPECT_EQ(directory.read("db"), DatabaseBuilder()
                                        .section(0, "P")
                                        .section(1, "old dwarf")
                                        .section(3, knownJson({{"checksum"}}))
                                        .section(2, knownKernelData({{"checksum"}}))
                                        .section(0, "P")
                                        .bytes());
}

TEST_F(Driver, KeepsTheProjectWhenNoneIsGiven) {
    for (const std::vector<std::string>& project : {std::vector<std::string>{}, {"-p", ""}}) {
        directory.write("db", databaseOfProject("P"));
        std::vector<std::string> words{"-h", "@missing"};
        words.insert(words.end(), project.begin(), project.end());
        EXPECT_EQ(runOnDatabase(words), success);
        EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
    }
}

TEST_F(Driver, GivesAProjectToADatabaseWithoutOne) {
    directory.write("db", knownDatabase({{"checksum"}}));
    EXPECT_EQ(runOnDatabase({"-p", "P", "-h", "@missing"}), success);
    EXPECT_EQ(directory.read("db"), DatabaseBuilder()
                                        .section(3, knownJson({{"checksum"}}))
                                        .section(2, knownKernelData({{"checksum"}}))
                                        .section(0, "P")
                                        .bytes());
}

TEST_F(Driver, FillsAnEmptyStoredProjectName) {
    directory.write("db", DatabaseBuilder().section(0, "").section(3, knownJson({})).bytes());
    EXPECT_EQ(runOnDatabase({"-p", "P", "-h", "@missing"}), success);
    EXPECT_EQ(directory.read("db"),
              DatabaseBuilder().section(0, "P").section(3, knownJson({})).section(0, "P").bytes());
}

// The version

std::string databaseOfVersion(std::uint32_t major, std::uint32_t minor) {
    return DatabaseBuilder().version(major, minor).section(3, knownJson({})).bytes();
}

TEST_F(Driver, RefusesANewerMajorVersionAndLeavesTheDatabase) {
    const auto refusal = [this](const std::string& version) {
        return failure("Error: consolidated file " + db + " is version " + version +
                       " and only versions up to 1.1 are supported.");
    };
    directory.write("db", databaseOfVersion(2, 7));
    EXPECT_EQ(runOnDatabase({"-h", "@a.hier"}), refusal("2.7"));
    EXPECT_EQ(directory.read("db"), databaseOfVersion(2, 7));
    directory.write("db", databaseOfVersion(0x7FFFFFFF, 0));
    EXPECT_EQ(runOnDatabase({"-h", "@a.hier"}), refusal("2147483647.0"));
    EXPECT_EQ(directory.read("db"), databaseOfVersion(0x7FFFFFFF, 0));
}

TEST_F(Driver, RefusesToDumpFromANewerMajorVersion) {
    directory.write("db", databaseOfVersion(2, 0));
    EXPECT_EQ(runOnDatabase({"-j", "@out"}),
              failure("Error: consolidated file " + db +
                      " is version 2.0 and only versions up to 1.1 are supported."));
    EXPECT_EQ(directory.read("db"), databaseOfVersion(2, 0));
    EXPECT_FALSE(directory.has("out"));
}

TEST_F(Driver, AcceptsEveryMinorVersionAndOlderMajorVersions) {
    for (const auto& [major, minor] :
         {std::pair(1U, 1U), std::pair(1U, 99U), std::pair(1U, 0xFFFFFFFFU), std::pair(1U, 0U),
          std::pair(0U, 5U)}) {
        directory.write("db", databaseOfVersion(major, minor));
        EXPECT_EQ(runOnDatabase({"-h", "@a.hier"}), success) << major << "." << minor;
        EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
    }
}

TEST_F(Driver, TakesAMajorVersionForASignedNumber) {
    for (const std::uint32_t major : {0x80000000U, 0xFFFFFFFFU}) {
        directory.write("db", databaseOfVersion(major, 0));
        EXPECT_EQ(runOnDatabase({"-h", "@a.hier"}), success);
        EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
    }
}

TEST_F(Driver, DoesNotLookAtTheVersionWhenItStartsAfresh) {
    directory.write("db", databaseOfVersion(2, 0));
    EXPECT_EQ(runOnDatabase({"-c", "-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
}

TEST_F(Driver, DoesNotLookAtTheVersionOfAFileThatIsNoDatabase) {
    directory.write("db", u32(0x12345678) + u32(2) + u32(0) + u32(0));
    EXPECT_EQ(runOnDatabase({"-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
}

TEST_F(Driver, ChecksTheProjectBeforeTheVersion) {
    directory.write("db", DatabaseBuilder().version(2, 0).section(0, "P").bytes());
    EXPECT_EQ(runOnDatabase({"-p", "Q", "-h", "@a.hier"}),
              failure("Error: consolidated file " + db +
                      " has meta-data for project P, not specified project Q"));
}

// Dumps

TEST_F(Driver, CopiesOneSectionOutAndChangesNothing) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-u", "@out.dwarf", "-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("out.dwarf"), "old dwarf");
    EXPECT_EQ(runOnDatabase({"-j", "@out.json", "-p", "P"}), success);
    EXPECT_EQ(directory.read("out.json"), knownJson({{"checksum"}}));
    EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
}

TEST_F(Driver, CopiesTheDwarfSectionOnlyWhenBothAreAskedFor) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-j", "@out.json", "-u", "@out.dwarf"}), success);
    EXPECT_EQ(directory.read("out.dwarf"), "old dwarf");
    EXPECT_FALSE(directory.has("out.json"));
}

TEST_F(Driver, CopiesNothingWhenItWasToStartAfresh) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-c", "-u", "@out"}), success);
    EXPECT_EQ(directory.read("out"), "");
    EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
}

TEST_F(Driver, CopiesAMissingSectionAsNothing) {
    directory.write("db", DatabaseBuilder().bytes());
    for (const char* option : {"-u", "-j"}) {
        directory.write("out", "old");
        EXPECT_EQ(runOnDatabase({option, "@out"}), success);
        EXPECT_EQ(directory.read("out"), "");
    }
}

TEST_F(Driver, ChangesNothingWhenAskedForADumpToAnEmptyName) {
    EXPECT_EQ(runOnDatabase({"-u", "", "-h", "@a.hier"}), failure("Unable to open " + db));
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-u", "", "-h", "@a.hier"}), success);
    EXPECT_EQ(runOnDatabase({"-j", "", "-h", "@a.hier"}), success);
    EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
}

TEST_F(Driver, CopiesTheJsonSectionWhenTheDwarfOneIsToGoToAnEmptyName) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-u", "", "-j", "@out"}), success);
    EXPECT_EQ(directory.read("out"), knownJson({{"checksum"}}));
}

// Consolidation

TEST_F(Driver, PutsProjectAndDwarfBeforeTheKernelsWhateverTheOrderOfTheOptions) {
    EXPECT_EQ(runOnDatabase({"-h", "@b.hier", "-d", "@dwarf", "-h", "@a.hier", "-p", "P"}),
              success);
    EXPECT_EQ(directory.read("db"),
              DatabaseBuilder()
                  .section(0, "P")
                  .section(1, "new dwarf")
                  .section(3, knownJson({{"blend", 1}, {"scale_rows", 4}}))
                  .section(2, knownKernelData({{"blend", 1}, {"scale_rows", 4}}))
                  .bytes());
}

TEST_F(Driver, AcceptsADwarfFileAlone) {
    EXPECT_EQ(runOnDatabase({"-d", "@dwarf"}), success);
    EXPECT_EQ(directory.read("db"),
              DatabaseBuilder().section(1, "new dwarf").section(3, knownJson({})).bytes());
}

TEST_F(Driver, KeepsADwarfSectionThatIsThere) {
    directory.write("db", databaseOfProject("P"));
    EXPECT_EQ(runOnDatabase({"-d", "@dwarf"}), success);
    EXPECT_EQ(directory.read("db"), databaseOfProject("P"));
}

TEST_F(Driver, PassesOverInputsThatAreNotThere) {
    for (const char* option : {"-d", "-h", "-k", "-s", "-x", "-l", "-r"}) {
        EXPECT_EQ(runOnDatabase({"-c", option, "@missing"}), success) << option;
        EXPECT_EQ(directory.read("db"), knownDatabase({})) << option;
    }
}

TEST_F(Driver, SucceedsAlthoughAnInputCannotBeParsed) {
    directory.write("bad.hier", "lost\nblend\ninstance nowhere\n");
    EXPECT_EQ(runOnDatabase({"-h", "@bad.hier", "-h", "@a.hier"}),
              (CommandResult{0, "", "Parse error\n"}));
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
}

// Flushing

/// Remembers what had been written when it was flushed.
class FlushNotingBuffer : public std::stringbuf {
public:
    const std::vector<std::string>& flushed() const { return flushed_; }

protected:
    int sync() override {
        flushed_.push_back(str());
        return 0;
    }

private:
    std::vector<std::string> flushed_;
};

TEST_F(Driver, FlushesEachLine) {
    std::ostringstream unused;
    FlushNotingBuffer versions;
    std::ostream out(&versions);
    runDriver({"-v"}, out, unused);
    EXPECT_THAT(versions.flushed(),
                testing::ElementsAre("Consolidated version: 1.1\n", versions.str()));

    FlushNotingBuffer messages;
    std::ostream err(&messages);
    runDriver({"-u", "x"}, unused, err);
    EXPECT_THAT(messages.flushed(), testing::ElementsAre("Unable to open \n"));
}

TEST_F(Driver, FlushesTheUsage) {
    std::ostringstream unused;
    FlushNotingBuffer buffer;
    std::ostream out(&buffer);
    runDriver({}, out, unused);
    const std::string message = "Error: A consolidated file must be specified\n";
    EXPECT_THAT(buffer.flushed(), testing::Contains(message));
    EXPECT_THAT(buffer.flushed(),
                testing::Contains(message + usage.substr(0, usage.find('\n') + 1)));
    EXPECT_EQ(buffer.flushed().back(), message + usage);
}

} // namespace

} // namespace consolidator::test
