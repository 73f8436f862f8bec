// Whole databases: made, added to, refused, mended and copied out, compared byte for byte.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/Kernels.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

constexpr std::uint32_t largest = 0xFFFFFFFF;

/// A run that says nothing and ends well.
const CommandResult silence;

/// A kernel named "k" with one start condition, in a kernel section.
std::string dataWithStart(std::string_view text) {
    return list({record({.name = "k", .conditions = {condition(0, text)}})});
}

/// Runs in a directory of its own, on the database "db.bin" there.
class DatabaseTest : public testing::Test {
protected:
    /// Runs the consolidator on the database with these arguments more.
    CommandResult run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"-f", "db.bin"});
        return runConsolidator(directory_.path(""), arguments);
    }

    std::string database() const { return directory_.read("db.bin"); }

    /// The database after a run with these arguments, which must end in silence.
    std::string databaseAfter(const std::vector<std::string>& arguments) const {
        EXPECT_EQ(run(arguments), silence);
        return database();
    }

    /// The database after a run that adds nothing to it.
    std::string rewritten() const { return databaseAfter({"-d", "missing"}); }

    std::string rewritten(std::string_view content) const {
        directory_.write("db.bin", content);
        return rewritten();
    }

    /// What a run with these arguments leaves in the file "out", after one that must end in
    /// silence and leave the database alone.
    std::string dumped(std::string_view content, const std::vector<std::string>& arguments) const {
        directory_.write("db.bin", content);
        directory_.write("out", "what was there before");
        EXPECT_EQ(run(arguments), silence);
        EXPECT_EQ(database(), content);
        return directory_.read("out");
    }

    TemporaryDirectory directory_;
};

using NewDatabase = DatabaseTest;

TEST_F(NewDatabase, OfADwarfFileAloneHasTwoSections) {
    directory_.write("program.dwarf", bytes("\x7F\0\xFF"));
    EXPECT_EQ(databaseAfter({"-d", "program.dwarf"}),
              bytes("\xD4\xDA\xEF\xBE\1\0\0\0\1\0\0\0\2\0\0\0"
                    "\1\0\0\0\0\0\0\0\x40\0\0\0\0\0\0\0\3\0\0\0\0\0\0\0"
                    "\3\0\0\0\0\0\0\0\x43\0\0\0\0\0\0\0\x16\0\0\0\0\0\0\0"
                    "\x7F\0\xFF{  \"Kernels\" : [  ] }\0"));
}

TEST_F(NewDatabase, OfAHierarchyFileHasItsJsonBeforeItsKernels) {
    directory_.write("system.hier", "scale_rows type: hls instance path: top/scale_rows_1\n");
    EXPECT_EQ(databaseAfter({"-h", "system.hier"}),
              DatabaseBuilder()
                  .section(3, bytes("{  \"Kernels\" : [ { \"Name\" : \"scale_rows\", "
                                    "\"Instance Paths\" : [ \"top/scale_rows_1/inst\" ], "
                                    "\"Type\" : \"HLS\", \"Arguments\" : [ ], \"Variables\" : [ ], "
                                    "\"Breakable Conditions\" : [] } ] }\0"))
                  .section(2, u32(1) + record({.name = "scale_rows",
                                               .instancePaths = {"top/scale_rows_1"},
                                               .type = 4}))
                  .bytes());
}

TEST_F(NewDatabase, PutsProjectAndDwarfBeforeJsonAndKernels) {
    directory_.write("program.dwarf", "blob");
    directory_.write("system.hier", "checksum type: c");
    EXPECT_EQ(databaseAfter({"-h", "system.hier", "-d", "program.dwarf", "-p", "demo"}),
              DatabaseBuilder()
                  .section(0, "demo")
                  .section(1, "blob")
                  .section(3, knownJson({{.name = "checksum", .type = 1}}))
                  .section(2, knownKernelData({{.name = "checksum", .type = 1}}))
                  .bytes());
}

TEST_F(NewDatabase, OfInputsThatCannotBeReadHasAnEmptyJsonSection) {
    directory_.write("empty", "");
    for (const char* const input : {"missing", "empty", ".", "/dev/null"}) {
        EXPECT_EQ(databaseAfter({"-c", "-d", input}), knownDatabase({})) << input;
    }
    EXPECT_EQ(databaseAfter({"-c", "-h", "missing"}), knownDatabase({}));
}

TEST_F(NewDatabase, IsWrittenWithoutTheInputThatCannotBeUsed) {
    directory_.write("broken.hier", "lost type: hls instance parth: top/lost_1 other");
    directory_.write("system.hier", "checksum type: c");
    EXPECT_EQ(run({"-h", "broken.hier", "-h", "system.hier"}),
              (CommandResult{0, "", "Parse error\n"}));
    EXPECT_EQ(database(), knownDatabase({{.name = "checksum", .type = 1}}));
}

TEST_F(NewDatabase, KeepsNamesAndPathsOfAnyBytesUnescaped) {
    const std::string name = "say_\"hi\"\\n\xFF\xC3";
    const std::string path = "top/\"quoted\"\\path\x80";
    directory_.write("system.hier", name + " instance path: " + path);
    EXPECT_EQ(databaseAfter({"-h", "system.hier", "-p", "my \"demo\" \\ \xFF"}),
              DatabaseBuilder()
                  .section(0, "my \"demo\" \\ \xFF")
                  .section(3, knownJson({{.name = name, .instancePaths = {path}}}))
                  .section(2, knownKernelData({{.name = name, .instancePaths = {path}}}))
                  .bytes());
}

TEST_F(NewDatabase, LosesWhatStandsBehindAZeroByteOnlyWhenItIsReadAgain) {
    const std::string name = bytes("scale\0rows");
    directory_.write("system.hier", name + " type: c");
    EXPECT_EQ(databaseAfter({"-h", "system.hier"}), knownDatabase({{.name = name, .type = 1}}));
    EXPECT_EQ(rewritten(), knownDatabase({{.name = "scale", .type = 1}}));
}

using StoredConditions = DatabaseTest;

TEST_F(StoredConditions, BehindTheJsonSectionAreStoredTranslatedAndAgainWithEveryRun) {
    const auto translated = [](std::string_view text) {
        return DatabaseBuilder()
            .section(3, jsonWithStarts("k", {std::string(text)}))
            .section(2, dataWithStart(text))
            .bytes();
    };
    EXPECT_EQ(rewritten(translated("(x == 1'b1)")), translated("== 1'b1 $i/x"));
    EXPECT_EQ(rewritten(), translated("== $i/x 1'b1"));
    EXPECT_EQ(rewritten(), translated("== 1'b1 $i/x"));
}

TEST_F(StoredConditions, BeforeTheJsonSectionAreStoredAsTheyWere) {
    const std::string expected = DatabaseBuilder()
                                     .section(2, dataWithStart("(x == 1'b1)"))
                                     .section(3, jsonWithStarts("k", {"== 1'b1 $i/x"}))
                                     .bytes();
    EXPECT_EQ(
        rewritten(
            DatabaseBuilder().section(2, dataWithStart("(x == 1'b1)")).section(3, "").bytes()),
        expected);
    EXPECT_EQ(rewritten(), expected);
    EXPECT_EQ(rewritten(), expected);
}

TEST_F(StoredConditions, BeforeAJsonSectionThatTheFileDidNotHaveAreStoredAsTheyWere) {
    EXPECT_EQ(rewritten(DatabaseBuilder().section(2, dataWithStart("(x != 0)")).bytes()),
              DatabaseBuilder()
                  .section(2, dataWithStart("(x != 0)"))
                  .section(3, jsonWithStarts("k", {"!= 0 $i/x"}))
                  .bytes());
}

TEST_F(StoredConditions, AreTranslatedOnceForEveryJsonSection) {
    EXPECT_EQ(rewritten(DatabaseBuilder()
                            .section(3, "")
                            .section(2, dataWithStart("(x == 1'b1)"))
                            .section(3, "")
                            .bytes()),
              DatabaseBuilder()
                  .section(3, jsonWithStarts("k", {"== 1'b1 $i/x"}))
                  .section(2, dataWithStart("== 1'b1 $i/x"))
                  .section(3, jsonWithStarts("k", {"== $i/x 1'b1"}))
                  .bytes());
}

TEST_F(StoredConditions, ThatAreAlwaysTrueGoWithTheTranslation) {
    const std::string always = dataWithStart("(1'b1 == 1'b1)");
    EXPECT_EQ(rewritten(DatabaseBuilder().section(3, "").section(2, always).bytes()),
              knownDatabase({{.name = "k"}}));
    EXPECT_EQ(rewritten(DatabaseBuilder().section(2, always).section(3, "").bytes()),
              DatabaseBuilder().section(2, always).section(3, knownJson({{.name = "k"}})).bytes());
}

TEST_F(StoredConditions, OfAnyBytesAreUnescapedAndCutAtAZeroByteWhenRead) {
    EXPECT_EQ(rewritten(DatabaseBuilder()
                            .section(3, "")
                            .section(2, dataWithStart(bytes("\"a\"\\\xFF $1 0\0tail")))
                            .bytes()),
              DatabaseBuilder()
                  .section(3, jsonWithStarts("k", {"\"a\"\\\xFF 0 $1"}))
                  .section(2, dataWithStart("\"a\"\\\xFF 0 $1"))
                  .bytes());
}

using AddingAProject = DatabaseTest;

TEST_F(AddingAProject, LeavesOneMoreEntryPerRun) {
    directory_.write("program.dwarf", "blob");
    directory_.write("system.hier", "checksum type: c");
    DatabaseBuilder expected;
    expected.section(0, "demo")
        .section(1, "blob")
        .section(3, knownJson({{.name = "checksum", .type = 1}}))
        .section(2, knownKernelData({{.name = "checksum", .type = 1}}));
    EXPECT_EQ(databaseAfter({"-p", "demo", "-d", "program.dwarf", "-h", "system.hier"}),
              expected.bytes());
    for (int run = 2; run <= 4; ++run) {
        expected.section(0, "demo");
        EXPECT_EQ(databaseAfter({"-p", "demo", "-h", "system.hier"}), expected.bytes()) << run;
    }
    EXPECT_EQ(rewritten(), expected.bytes());
}

TEST_F(AddingAProject, ToADatabaseWithoutOnePutsItBehindTheOtherSections) {
    directory_.write("db.bin", DatabaseBuilder().section(1, "blob").section(3, "").bytes());
    EXPECT_EQ(
        databaseAfter({"-p", "demo", "-d", "missing"}),
        DatabaseBuilder().section(1, "blob").section(3, knownJson({})).section(0, "demo").bytes());
}

TEST_F(AddingAProject, GivesItsNameToAnEntryWithAnEmptyOne) {
    directory_.write("db.bin", DatabaseBuilder().section(0, "").section(3, "").bytes());
    EXPECT_EQ(
        databaseAfter({"-p", "demo", "-d", "missing"}),
        DatabaseBuilder().section(0, "demo").section(3, knownJson({})).section(0, "demo").bytes());
}

TEST_F(AddingAProject, IsCheckedAgainstTheLastNameInTheFileWhichAllEntriesTake) {
    directory_.write(
        "db.bin",
        DatabaseBuilder().section(0, "a longer name").section(3, "").section(0, "demo").bytes());
    EXPECT_EQ(databaseAfter({"-p", "demo", "-d", "missing"}), DatabaseBuilder()
                                                                  .section(0, "demo")
                                                                  .section(3, knownJson({}))
                                                                  .section(0, "demo")
                                                                  .section(0, "demo")
                                                                  .bytes());
}

TEST_F(AddingAProject, IsCheckedAgainstTheNameUpToItsFirstZeroByte) {
    directory_.write("db.bin",
                     DatabaseBuilder().section(0, bytes("demo\0rest")).section(3, "").bytes());
    EXPECT_EQ(
        databaseAfter({"-p", "demo", "-d", "missing"}),
        DatabaseBuilder().section(0, "demo").section(3, knownJson({})).section(0, "demo").bytes());
}

using AddingInputs = DatabaseTest;

TEST_F(AddingInputs, KeepsTheDwarfSectionThatIsThere) {
    directory_.write("new.dwarf", "new");
    const std::string expected =
        DatabaseBuilder().section(1, "stored").section(3, knownJson({})).bytes();
    directory_.write("db.bin", expected);
    EXPECT_EQ(databaseAfter({"-d", "new.dwarf"}), expected);
    EXPECT_EQ(databaseAfter({"-a", "-d", "new.dwarf"}), expected);
}

TEST_F(AddingInputs, KeepsADwarfSectionWithoutBytesToo) {
    directory_.write("new.dwarf", "new");
    const std::string expected = DatabaseBuilder().section(1, "").section(3, knownJson({})).bytes();
    directory_.write("db.bin", expected);
    EXPECT_EQ(databaseAfter({"-d", "new.dwarf"}), expected);
}

TEST_F(AddingInputs, PutsADwarfSectionBehindTheOthers) {
    directory_.write("new.dwarf", "new");
    directory_.write("db.bin", knownDatabase({{.name = "k"}}));
    EXPECT_EQ(databaseAfter({"-d", "new.dwarf"}), DatabaseBuilder()
                                                      .section(3, knownJson({{.name = "k"}}))
                                                      .section(2, knownKernelData({{.name = "k"}}))
                                                      .section(1, "new")
                                                      .bytes());
}

TEST_F(AddingInputs, PutsNewKernelsBehindThoseOfTheFileAndMergesTheOthers) {
    directory_.write("db.bin", knownDatabase({{.name = "scale_rows", .instancePaths = {"top/s_1"}},
                                              {.name = "checksum", .type = 2}}));
    directory_.write("system.hier",
                     "blend type: clc checksum type: hls instance path: top/c_1 "
                     "scale_rows type: hls instance path: top/s_2 instance path: top/s_1");
    EXPECT_EQ(
        databaseAfter({"-h", "system.hier"}),
        knownDatabase({{.name = "scale_rows", .type = 4, .instancePaths = {"top/s_1", "top/s_2"}},
                       {.name = "checksum", .type = 2, .instancePaths = {"top/c_1"}},
                       {.name = "blend", .type = 0}}));
}

TEST_F(AddingInputs, TheSameFileAgainChangesNothing) {
    directory_.write("system.hier", "scale_rows type: hls instance path: top/s_1\n"
                                    "checksum instance path: top/c_1\n");
    const std::string once = databaseAfter({"-h", "system.hier"});
    EXPECT_EQ(once, knownDatabase({{.name = "scale_rows", .type = 4, .instancePaths = {"top/s_1"}},
                                   {.name = "checksum", .instancePaths = {"top/c_1"}}}));
    EXPECT_EQ(databaseAfter({"-h", "system.hier"}), once);
    EXPECT_EQ(databaseAfter({"-h", "system.hier", "-h", "system.hier"}), once);
    EXPECT_EQ(databaseAfter({"-c", "-h", "system.hier", "-h", "system.hier"}), once);
}

TEST_F(AddingInputs, MergesIntoTheFirstOfTwoKernelsOfOneName) {
    directory_.write("db.bin", knownDatabase({{.name = "k", .instancePaths = {"top/k_1"}},
                                              {.name = "k", .instancePaths = {"top/k_2"}}}));
    directory_.write("system.hier", "k type: c instance path: top/k_2");
    EXPECT_EQ(databaseAfter({"-h", "system.hier"}),
              knownDatabase({{.name = "k", .type = 1, .instancePaths = {"top/k_1", "top/k_2"}},
                             {.name = "k", .instancePaths = {"top/k_2"}}}));
}

TEST_F(AddingInputs, FillsTheEmptyKernelSectionThatIsThere) {
    directory_.write("db.bin", DatabaseBuilder().section(2, u32(0)).section(3, "").bytes());
    directory_.write("system.hier", "k type: c");
    EXPECT_EQ(databaseAfter({"-h", "system.hier"}),
              DatabaseBuilder()
                  .section(2, knownKernelData({{.name = "k", .type = 1}}))
                  .section(3, knownJson({{.name = "k", .type = 1}}))
                  .bytes());
}

TEST_F(AddingInputs, KeepsWhatHierarchyFilesDoNotGive) {
    const std::string kernel =
        record({.name = "k",
                .arguments = {variable("size", "size_r", "int", {list({location(4096, 31)})})},
                .variables = {variable("row", "row_reg", "char", {list({}), list({})})},
                .hardwareVariables = {hardwareVariable("/top/a", {location(0, 0), location(1, 2)})},
                .conditions = {condition("$i/x", 12, "scale.cpp"), condition(9, "")},
                .brams = {"ram_0", "ram_0"}});
    const std::string content =
        DatabaseBuilder().section(2, u32(1) + kernel).section(3, "").bytes();
    const std::string after = rewritten(content);
    EXPECT_EQ(after.substr(64, 4 + kernel.size()), u32(1) + kernel);
    EXPECT_EQ(rewritten(), after);
}

TEST_F(AddingInputs, WritesVersionOneOneWhateverOlderVersionItRead) {
    const std::string expected = knownDatabase({{.name = "k"}});
    for (const auto& [major, minor] : {std::pair(1U, 7U), std::pair(0U, 0U), std::pair(0U, 9U),
                                       std::pair(0x80000000U, 2U), std::pair(largest, largest)}) {
        const std::string content = DatabaseBuilder()
                                        .version(major, minor)
                                        .section(3, "")
                                        .section(2, knownKernelData({{.name = "k"}}))
                                        .bytes();
        EXPECT_EQ(rewritten(content), expected) << major << "." << minor;
    }
}

TEST_F(AddingInputs, KeepsThePaddingOfTableEntries) {
    const auto padded = [](std::string_view json) {
        return header(2) + u32(3) + "pad1" + u64(64) +
               u32(static_cast<std::uint32_t>(json.size())) + "pad2" + u32(0) + "\xFF\xFF\xFF\xFF" +
               u64(64 + json.size()) + u32(4) + "last" + std::string(json) + "demo";
    };
    EXPECT_EQ(rewritten(padded("json")), padded(knownJson({})));
}

TEST_F(AddingInputs, ClosesTheGapsBetweenPayloads) {
    EXPECT_EQ(
        rewritten(header(3) + entry(1, 96, 4) + entry(0, 90, 4) + entry(3, 9999, 9) +
                  "??demo??blob and more"),
        DatabaseBuilder().section(1, "blob").section(0, "demo").section(3, knownJson({})).bytes());
}

using CreatingAfresh = DatabaseTest;

TEST_F(CreatingAfresh, ForgetsWhatTheFileHeld) {
    directory_.write("db.bin", DatabaseBuilder()
                                   .section(0, "demo")
                                   .section(1, "stored")
                                   .section(2, knownKernelData({{.name = "k"}}))
                                   .bytes());
    directory_.write("new.dwarf", "new");
    EXPECT_EQ(databaseAfter({"-c", "-d", "new.dwarf"}),
              DatabaseBuilder().section(1, "new").section(3, knownJson({})).bytes());
}

TEST_F(CreatingAfresh, TakesAnotherProject) {
    directory_.write("db.bin", DatabaseBuilder().section(0, "first").section(3, "").bytes());
    EXPECT_EQ(databaseAfter({"-c", "-p", "second", "-d", "missing"}),
              DatabaseBuilder().section(0, "second").section(3, knownJson({})).bytes());
}

TEST_F(CreatingAfresh, ReplacesAFileOfANewerVersion) {
    directory_.write("db.bin", DatabaseBuilder().version(2, 0).section(0, "demo").bytes());
    EXPECT_EQ(databaseAfter({"-c", "-d", "missing"}), knownDatabase({}));
}

using RefusingADatabase = DatabaseTest;

CommandResult otherProject(const std::string& stored, const std::string& given) {
    return {1, "",
            "Error: consolidated file db.bin has meta-data for project " + stored +
                ", not specified project " + given + "\n"};
}

CommandResult newerVersion(const std::string& version) {
    return {1, "",
            "Error: consolidated file db.bin is version " + version +
                " and only versions up to 1.1 are supported.\n"};
}

TEST_F(RefusingADatabase, OfAnotherProjectLeavesTheFile) {
    const std::string first = DatabaseBuilder().section(0, "first").section(1, "blob").bytes();
    directory_.write("db.bin", first);
    EXPECT_EQ(run({"-p", "second", "-d", "missing"}), otherProject("first", "second"));
    EXPECT_EQ(database(), first);
}

TEST_F(RefusingADatabase, ComparesWholeProjectNames) {
    for (const char* const given : {"Demo", "dem", "demo ", "demo2"}) {
        directory_.write("db.bin", DatabaseBuilder().section(0, "demo").bytes());
        EXPECT_EQ(run({"-p", given, "-d", "missing"}), otherProject("demo", given));
    }
}

TEST_F(RefusingADatabase, OfAProjectStandsOnTheNameThatWasReadBeforeAFault) {
    const std::string first = DatabaseBuilder().section(0, "first").section(4, "odd").bytes();
    directory_.write("db.bin", first);
    EXPECT_EQ(run({"-p", "second", "-d", "missing"}), otherProject("first", "second"));
    EXPECT_EQ(database(), first);
}

TEST_F(RefusingADatabase, OfANewerVersionLeavesTheFile) {
    for (const auto& [major, text] :
         {std::pair(2U, "2.7"), std::pair(0x7FFFFFFFU, "2147483647.7")}) {
        const std::string newer = DatabaseBuilder().version(major, 7).section(1, "blob").bytes();
        directory_.write("db.bin", newer);
        EXPECT_EQ(run({"-d", "missing"}), newerVersion(text));
        EXPECT_EQ(database(), newer);
    }
}

TEST_F(RefusingADatabase, OfANewerVersionNeedsTheHeaderOnly) {
    directory_.write("db.bin", header(0, 2, 1));
    EXPECT_EQ(run({"-d", "missing"}), newerVersion("2.1"));
    directory_.write("db.bin", header(3, 2, 1) + "no table");
    EXPECT_EQ(run({"-d", "missing"}), newerVersion("2.1"));
}

TEST_F(RefusingADatabase, LooksAtTheProjectFirst) {
    directory_.write("db.bin", DatabaseBuilder().version(2, 0).section(0, "first").bytes());
    EXPECT_EQ(run({"-p", "second", "-d", "missing"}), otherProject("first", "second"));
}

TEST_F(RefusingADatabase, OfADumpLeavesTheDatabaseAndTheOutputAlone) {
    const std::string first = DatabaseBuilder().section(0, "first").section(3, "json").bytes();
    directory_.write("db.bin", first);
    EXPECT_EQ(run({"-p", "second", "-j", "out"}), otherProject("first", "second"));
    EXPECT_EQ(database(), first);

    const std::string newer = DatabaseBuilder().version(2, 0).section(3, "json").bytes();
    directory_.write("db.bin", newer);
    EXPECT_EQ(run({"-j", "out"}), newerVersion("2.0"));
    EXPECT_EQ(database(), newer);
    EXPECT_FALSE(directory_.has("out"));
}

using DamagedDatabase = DatabaseTest;

TEST_F(DamagedDatabase, WithAnotherMagicNumberCountsAsNone) {
    std::string content = DatabaseBuilder().version(9, 9).section(0, "first").bytes();
    content[0] = 'x';
    directory_.write("db.bin", content);
    EXPECT_EQ(databaseAfter({"-p", "second", "-d", "missing"}),
              DatabaseBuilder().section(0, "second").section(3, knownJson({})).bytes());
}

TEST_F(DamagedDatabase, OfAFewBytesCountsAsEmpty) {
    EXPECT_EQ(rewritten(""), knownDatabase({}));
    EXPECT_EQ(rewritten(header(0, 9, 9).substr(0, 15)), knownDatabase({}));
    EXPECT_EQ(rewritten(header(0)), knownDatabase({}));
    EXPECT_EQ(rewritten(header(0) + "x"), knownDatabase({}));
    EXPECT_EQ(rewritten(header(1)), knownDatabase({}));
    EXPECT_EQ(rewritten(header(1) + "x"), knownDatabase({}));
}

TEST_F(DamagedDatabase, WithTooFewTableEntriesKeepsThoseThatAreThere) {
    EXPECT_EQ(rewritten(header(4) + entry(0, 88, 4) + entry(1, 92, 4) + entry(2, 96, 4) +
                        "demoblob" + u32(0)),
              DatabaseBuilder()
                  .section(0, "")
                  .section(1, "")
                  .section(2, u32(0))
                  .section(3, knownJson({}))
                  .bytes());
}

TEST_F(DamagedDatabase, TakesPayloadForTableEntriesWhenTheTableIsSaidToBeLonger) {
    EXPECT_EQ(rewritten(header(3) + entry(3, 40, 24) + entry(0, 64, 0)),
              DatabaseBuilder().section(3, knownJson({})).section(0, "").bytes());
}

TEST_F(DamagedDatabase, KeepsWhatCameBeforeASectionOfAnotherType) {
    const std::string json = knownJson({{.name = "k"}});
    EXPECT_EQ(
        rewritten(DatabaseBuilder()
                      .section(0, "demo")
                      .section(2, knownKernelData({{.name = "k"}}))
                      .section(4, "other")
                      .section(1, "lost")
                      .section(3, "json")
                      .bytes()),
        header(5) + entry(0, 136, 4) +
            entry(2, 140, static_cast<std::uint32_t>(knownKernelData({{.name = "k"}}).size())) +
            entry(4, 140 + knownKernelData({{.name = "k"}}).size(), 5) +
            entry(1, 140 + knownKernelData({{.name = "k"}}).size(), 0) +
            entry(3, 140 + knownKernelData({{.name = "k"}}).size(),
                  static_cast<std::uint32_t>(json.size())) +
            "demo" + knownKernelData({{.name = "k"}}) + json);
}

TEST_F(DamagedDatabase, LosesTheKernelsBehindASectionOfAnotherTypeAndTakesNewOnes) {
    directory_.write("db.bin", DatabaseBuilder()
                                   .section(4, "other")
                                   .section(2, knownKernelData({{.name = "lost"}}))
                                   .section(3, "")
                                   .bytes());
    directory_.write("system.hier", "k type: c");
    const std::string data = knownKernelData({{.name = "k", .type = 1}});
    const std::string json = knownJson({{.name = "k", .type = 1}});
    const auto dataSize = static_cast<std::uint32_t>(data.size());
    EXPECT_EQ(databaseAfter({"-h", "system.hier"}),
              header(3) + entry(4, 88, 5) + entry(2, 88, dataSize) +
                  entry(3, 88 + dataSize, static_cast<std::uint32_t>(json.size())) + data + json);
}

TEST_F(DamagedDatabase, KeepsTheLargestSizeLoweredByOneForASectionOfAnotherType) {
    const auto odd = [](std::uint64_t offset, std::uint32_t size) {
        return header(2) + entry(4, offset, size) + entry(3, 64, 22) + knownJson({});
    };
    EXPECT_EQ(rewritten(odd(largest, largest)), odd(64, largest - 1));
    EXPECT_EQ(rewritten(), odd(64, largest - 1));
}

TEST_F(DamagedDatabase, StopsAtAProjectNameOrBlobOfTheLargestSize) {
    for (const std::uint32_t type : {0U, 1U}) {
        EXPECT_EQ(rewritten(header(3) + entry(type, 88, largest) + entry(2, 88, 4) +
                            entry(3, 88, 0) + knownKernelData({{.name = "lost"}})),
                  DatabaseBuilder()
                      .section(type, "")
                      .section(2, u32(0))
                      .section(3, knownJson({}))
                      .bytes())
            << type;
    }
}

TEST_F(DamagedDatabase, ReadsKernelsAndPassesOverJsonOfTheLargestSize) {
    EXPECT_EQ(rewritten(header(2) + entry(3, 0, largest) + entry(2, 64, largest) +
                        knownKernelData({{.name = "k"}})),
              knownDatabase({{.name = "k"}}));
}

TEST_F(DamagedDatabase, StopsAtAnOffsetThatCannotBeReached) {
    for (const std::uint64_t offset :
         {std::uint64_t{2000}, std::uint64_t{largest}, std::uint64_t{0x180000000}}) {
        EXPECT_EQ(
            rewritten(header(3) + entry(0, offset, 4) + entry(2, 88, 4) + entry(3, 88, 0) +
                      knownKernelData({{.name = "lost"}})),
            DatabaseBuilder().section(0, "").section(2, u32(0)).section(3, knownJson({})).bytes())
            << offset;
    }
}

TEST_F(DamagedDatabase, LooksOnlyAtTheLowerHalfOfAnOffset) {
    EXPECT_EQ(rewritten(header(2) + entry(1, 0x500000000 + 65, 4) + entry(3, 0, 0) + "?blob"),
              DatabaseBuilder().section(1, "blob").section(3, knownJson({})).bytes());
}

TEST_F(DamagedDatabase, WithTwoKernelSectionsDoublesThemWithEveryRun) {
    const KnownKernel k{.name = "k"};
    const KnownKernel other{.name = "other"};
    const auto holding = [](const std::vector<KnownKernel>& kernels) {
        return DatabaseBuilder()
            .section(2, knownKernelData(kernels))
            .section(3, knownJson(kernels))
            .section(2, knownKernelData(kernels))
            .bytes();
    };
    EXPECT_EQ(rewritten(DatabaseBuilder()
                            .section(2, knownKernelData({k}))
                            .section(3, "")
                            .section(2, knownKernelData({other}))
                            .bytes()),
              holding({k, other}));
    EXPECT_EQ(rewritten(), holding({k, other, k, other}));
}

TEST_F(DamagedDatabase, KeepsTheWholeKernelsInFrontOfTheEnd) {
    const std::string whole = knownKernelData({{.name = "k", .instancePaths = {"top/k_1"}}});
    const std::string cut = record({.name = "cut", .instancePaths = {"top/cut_1"}});
    EXPECT_EQ(rewritten(header(2) + entry(3, 64, 0) + entry(2, 64, 0) + u32(5) + whole.substr(4) +
                        cut.substr(0, cut.size() - 1)),
              knownDatabase({{.name = "k", .instancePaths = {"top/k_1"}}}));
}

TEST_F(DamagedDatabase, WithTwoBlobsWritesTheLastOneWithEachEntrysSize) {
    EXPECT_EQ(rewritten(DatabaseBuilder()
                            .section(1, "ab")
                            .section(1, "longer one")
                            .section(1, "last")
                            .section(3, "")
                            .bytes()),
              DatabaseBuilder()
                  .section(1, "la")
                  .section(1, "last")
                  .section(1, "last")
                  .section(3, knownJson({}))
                  .bytes());
}

TEST_F(DamagedDatabase, KeepsTheBlobWhenThePlaceOfTheNextOneCannotBeReached) {
    EXPECT_EQ(
        rewritten(header(3) + entry(1, 88, 4) + entry(1, largest, 2) + entry(3, 0, 0) + "blob"),
        DatabaseBuilder().section(1, "blob").section(1, "bl").section(3, knownJson({})).bytes());
}

TEST_F(DamagedDatabase, LosesTheBlobWhenTheNextOneIsCutShort) {
    EXPECT_EQ(rewritten(header(3) + entry(1, 88, 4) + entry(1, 90, 4) + entry(3, 0, 0) + "blob"),
              DatabaseBuilder().section(1, "").section(1, "").section(3, knownJson({})).bytes());
}

using DatabaseDump = DatabaseTest;

TEST_F(DatabaseDump, OfJsonGivesTheDocumentAndAZeroByte) {
    directory_.write("system.hier", "k type: c");
    databaseAfter({"-h", "system.hier", "-p", "demo"});
    EXPECT_EQ(dumped(database(), {"-j", "out"}),
              bytes("{  \"Kernels\" : [ { \"Name\" : \"k\", \"Instance Paths\" : [  ], "
                    "\"Type\" : \"C\", \"Arguments\" : [ ], \"Variables\" : [ ], "
                    "\"Breakable Conditions\" : [] } ] }\0"));
}

TEST_F(DatabaseDump, OfDwarfGivesTheBlobByteForByte) {
    std::string blob;
    for (std::uint32_t i = 0; i < 100000; ++i) {
        blob += static_cast<char>(i * i >> 3);
    }
    directory_.write("program.dwarf", blob);
    databaseAfter({"-d", "program.dwarf", "-p", "demo"});
    EXPECT_TRUE(dumped(database(), {"-u", "out"}) == blob);
}

TEST_F(DatabaseDump, GivesTheJsonSectionAsItIsStored) {
    EXPECT_EQ(dumped(DatabaseBuilder()
                         .section(3, bytes("not \0 json"))
                         .section(2, knownKernelData({{.name = "k"}}))
                         .bytes(),
                     {"-j", "out"}),
              bytes("not \0 json"));
}

TEST_F(DatabaseDump, OfASectionThatIsNotThereGivesAnEmptyFile) {
    EXPECT_EQ(dumped(DatabaseBuilder().section(1, "blob").bytes(), {"-j", "out"}), "");
    EXPECT_EQ(dumped(DatabaseBuilder().section(3, "json").bytes(), {"-u", "out"}), "");
    EXPECT_EQ(dumped(header(0), {"-u", "out"}), "");
    EXPECT_EQ(dumped("", {"-j", "out"}), "");
}

TEST_F(DatabaseDump, InCreateModeGivesAnEmptyFileAndLeavesTheDatabaseAlone) {
    const std::string content =
        DatabaseBuilder().section(0, "demo").section(1, "blob").section(3, "json").bytes();
    EXPECT_EQ(dumped(content, {"-c", "-u", "out"}), "");
    EXPECT_EQ(dumped(content, {"-c", "-j", "out", "-p", "other"}), "");
}

TEST_F(DatabaseDump, InCreateModeDoesNotMakeTheDatabase) {
    EXPECT_EQ(run({"-c", "-j", "out"}), (CommandResult{1, "", "Unable to open db.bin\n"}));
    EXPECT_FALSE(directory_.has("db.bin"));
    EXPECT_FALSE(directory_.has("out"));
}

TEST_F(DatabaseDump, OfDwarfWinsOverJson) {
    EXPECT_EQ(dumped(DatabaseBuilder().section(1, "blob").section(3, "json").bytes(),
                     {"-j", "out.json", "-u", "out"}),
              "blob");
    EXPECT_FALSE(directory_.has("out.json"));
    EXPECT_EQ(dumped(DatabaseBuilder().section(3, "json").bytes(), {"-u", "out", "-j", "out.json"}),
              "");
    EXPECT_FALSE(directory_.has("out.json"));
}

TEST_F(DatabaseDump, TakesTheFirstOfTwoSections) {
    const std::string content = DatabaseBuilder()
                                    .section(0, "demo")
                                    .section(3, "first json")
                                    .section(1, "first blob")
                                    .section(1, "second blob")
                                    .section(3, "second json")
                                    .bytes();
    EXPECT_EQ(dumped(content, {"-j", "out"}), "first json");
    EXPECT_EQ(dumped(content, {"-u", "out"}), "first blob");
}

TEST_F(DatabaseDump, TakesNoOtherSectionWhenTheFirstOneCannotBeRead) {
    EXPECT_EQ(dumped(header(2) + entry(3, 64, 5) + entry(3, 64, 4) + "json", {"-j", "out"}), "");
}

TEST_F(DatabaseDump, OfASectionOutsideTheFileGivesAnEmptyFile) {
    const auto json = [this](std::uint64_t offset, std::uint32_t size) {
        return dumped(header(1) + entry(3, offset, size) + "json", {"-j", "out"});
    };
    EXPECT_EQ(json(40, 4), "json");
    EXPECT_EQ(json(42, 2), "on"); // checks the helper's own numbers
    EXPECT_EQ(json(40, 5), "");
    EXPECT_EQ(json(41, 4), "");
    EXPECT_EQ(json(1000, 1), "");
    EXPECT_EQ(json(40, largest), "");
    EXPECT_EQ(json(40, largest - 1), "");
    EXPECT_EQ(json(largest, 4), "");
    EXPECT_EQ(json(0x80000000, 4), "");
}

TEST_F(DatabaseDump, LooksOnlyAtTheLowerHalfOfAnOffset) {
    EXPECT_EQ(dumped(header(1) + entry(3, 0x100000000 + 40, 4) + "json", {"-j", "out"}), "json");
    EXPECT_EQ(dumped(header(1) + entry(1, 0x100000000 + 40, 4) + "blob", {"-u", "out"}), "blob");
}

TEST_F(DatabaseDump, TakesWhatTheFileHoldsAtTheOffsetWhateverItIs) {
    EXPECT_EQ(dumped(header(1) + entry(3, 0, 40), {"-j", "out"}), header(1) + entry(3, 0, 40));
}

TEST_F(DatabaseDump, TakesTheTableAsFarAsItCouldBeRead) {
    EXPECT_EQ(dumped(header(5) + entry(3, 40, 5) + "hello", {"-j", "out"}), "hello");
    EXPECT_EQ(dumped(header(2) + entry(4, 0, 0) + entry(1, 64, 4) + "blob", {"-u", "out"}), "blob");
    EXPECT_EQ(dumped(header(2) + entry(0, largest, 4) + entry(3, 64, 4) + "json", {"-j", "out"}),
              "json");
}

TEST_F(DatabaseDump, OfAFileWithAnotherMagicNumberGivesAnEmptyFile) {
    std::string damaged = DatabaseBuilder().section(3, "json").bytes();
    damaged.front() = 'x';
    EXPECT_EQ(dumped(damaged, {"-j", "out"}), "");
}

TEST_F(DatabaseDump, OfTheSameProjectWorksAndAddsNoEntry) {
    EXPECT_EQ(dumped(DatabaseBuilder().section(0, "demo").section(3, "json").bytes(),
                     {"-j", "out", "-p", "demo"}),
              "json");
    EXPECT_EQ(dumped(DatabaseBuilder().section(3, "json").bytes(), {"-j", "out", "-p", "demo"}),
              "json");
}

TEST_F(DatabaseDump, LeavesInputsAside) {
    directory_.write("system.hier", "instance broken");
    EXPECT_EQ(dumped(DatabaseBuilder().section(3, "json").bytes(),
                     {"-j", "out", "-h", "system.hier", "-d", "system.hier"}),
              "json");
}

TEST_F(DatabaseDump, ToAFileThatCannotBeMadeIsSilent) {
    const std::string content = DatabaseBuilder().section(3, "json").bytes();
    EXPECT_EQ(dumped(content, {"-j", "missing/out"}), "what was there before");
    EXPECT_EQ(dumped(content, {"-j", "."}), "what was there before");
    EXPECT_EQ(dumped(content, {"-u", "missing/out"}), "what was there before");
}

// The output is opened, and so emptied, before the section is read.
TEST_F(DatabaseDump, OntoTheDatabaseItselfEmptiesIt) {
    directory_.write("db.bin", DatabaseBuilder().section(3, "json").bytes());
    EXPECT_EQ(databaseAfter({"-j", "db.bin"}), "");
}

using FullDisk = DatabaseTest;

TEST_F(FullDisk, IsNotNoticed) {
    directory_.write("program.dwarf", std::string(100000, 'x'));
    directory_.write("db.bin", DatabaseBuilder().section(3, "json").bytes());
    EXPECT_EQ(
        runConsolidator(directory_.path(""), {"-c", "-f", "/dev/full", "-d", "program.dwarf"}),
        silence);
    EXPECT_EQ(run({"-j", "/dev/full"}), silence);
}

} // namespace

} // namespace consolidator::test
