// `consolidator-inspect check`: its command line, its text and its JSON. What it finds is shown by
// the mistakes, one by one; see MistakesTest.cpp.

#include "tests/support/Bytes.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct CheckCommand : testing::Test {
    TemporaryDirectory directory;

    std::string hier = directory.write("k.hier", "k\ntype: c\ninstance path: top/k_1\n");
    std::string hls = directory.write("k.hls", "RTL 1 s (x == 1)\nlocal v\nat: k.cpp:7\n"
                                               "end v_reg[1:0] 2\n");
    std::string ll = directory.write("k.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_1/v_reg[0]\n");

    /// Checks the three files above and what is given beside.
    CommandResult check(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words{"check", "-h", hier, "-s", hls, "-l", ll};
        words.insert(words.end(), more.begin(), more.end());
        return inspectRun(words);
    }
};

const std::string coverageOfK = "\n"
                                "Coverage\n"
                                "  kernel  instances  arguments  variables  registers\n"
                                "  k               1     0 of 0     1 of 1          1\n"
                                "\n";
const std::string nothingFound = coverageOfK + "0 errors, 0 warnings, 0 notes\n";

// Of top.ll, line 28 is the register "start_q", which is no argument or variable, and the four bits
// of "other/crc_q" lie in no instance. Line 12 of scale_rows.hls begins the second entry for line
// 14. "rows" is the only argument of scale_rows with a net, "result" that of checksum.
TEST_F(CheckCommand, HasOnlyNotesOnTheExampleProject) {
    EXPECT_EQ(
        runInspector(exampleFolder(),
                     {"check", "-d", "program.dwarf", "-h", "system.hier", "-k", "kernel.xml", "-s",
                      "scale_rows.hls", "-s", "checksum.hls", "-x", "checksum_auxiliary.xml", "-l",
                      "top.ll", "-r", "ram_utilization.rpt", "-p", "accelerator"}),
        (CommandResult{
            0,
            "scale_rows.hls:12: note: an entry for source line 14 came before; this one is passed "
            "over\n"
            "scale_rows.hls: note: condition of scale_rows.cpp:12 is always true and is left out: "
            "one cannot stop there\n"
            "top.ll:28: note: the first of 5 lines whose net belongs to no kernel\n"
            "ram_utilization.rpt:19: note: block RAM \" top/region_0/scale_rows_1/U0/"
            "line_buffer_reg   \" belongs to kernel \"scale_rows\"; its name is not stored\n"
            "ram_utilization.rpt:20: note: block RAM \" top/region_0/scale_rows_2/U0/"
            "line_buffer_reg   \" belongs to kernel \"scale_rows\"; its name is not stored\n"
            "\n"
            "Coverage\n"
            "  kernel      instances  arguments  variables  registers\n"
            "  scale_rows          2     1 of 4     2 of 2          5\n"
            "  checksum            1     1 of 3     1 of 1          2\n"
            "\n"
            "Without a location\n"
            "  kernel      name             hardware name  nearest net\n"
            "  scale_rows  argument input   input_r        none\n"
            "  scale_rows  argument output  output_r       none\n"
            "  scale_rows  argument gain    gain           none\n"
            "  checksum    argument in      in_r           none\n"
            "  checksum    argument length  length_r       none\n"
            "\n"
            "0 errors, 0 warnings, 5 notes\n",
            ""}));
}

TEST_F(CheckCommand, EndsWellWhenThereIsNothingToSay) {
    EXPECT_EQ(check(), (CommandResult{0, nothingFound, ""}));
}

TEST_F(CheckCommand, TakesTheLongNamesOfTheConsolidator) {
    EXPECT_EQ(inspectRun({"check", "--hierarchy", hier, "--hls=" + hls, "--ll", ll}), check());
    const CommandResult all =
        inspectRun({"check", "--DWARF", "m", "--kernel", "m", "--aux", "m", "--ram", "m",
                    "--consolidated_file", directory.path("db"), "--project", "p"});
    EXPECT_EQ(all.status, 1);
    EXPECT_THAT(all.out, HasSubstr("\n4 errors, "));
}

TEST_F(CheckCommand, TakesAbbreviationsOfLongNames) {
    EXPECT_EQ(inspectRun({"check", "--hier", hier, "--hl=" + hls, "--l", ll}), check());
    const CommandResult all = inspectRun({"check", "--D", "m", "--k", "m", "--au", "m", "--r", "m",
                                          "--con", directory.path("db"), "--p", "p", "--fo=text"});
    EXPECT_EQ(all.status, 1);
    EXPECT_THAT(all.out, HasSubstr("\n4 errors, "));
    EXPECT_EQ(inspectRun({"check", "--he"}).status, 0);
    EXPECT_EQ(inspectRun({"check", "--h", hier}),
              (CommandResult{2, "",
                             "consolidator-inspect check: error: there is no option \"--h\", but "
                             "--help, --hierarchy, --hls\n"}));
    EXPECT_THAT(inspectRun({"check", "--help"}).out, HasSubstr("\n  -h,--hierarchy FILE ...  "));
}

TEST_F(CheckCommand, TakesWhetherToAddOrToCreate) {
    const std::string db = directory.write(
        "db",
        DatabaseBuilder().section(0, "p").section(2, knownKernelData({{.name = "old"}})).bytes());
    EXPECT_EQ(check({"-a"}), check());
    EXPECT_EQ(check({"--add", "-f", db}), check({"-f", db}));
    EXPECT_EQ(check({"--cr", "-f", db, "-p", "q"}), check());
    EXPECT_EQ(check({"-c", "-f", directory.write("db", "no database")}), check());
    EXPECT_THAT(check({"-c", "-f", hls}).out, HasSubstr(": error: is given with -f too: "));
    EXPECT_EQ(
        check({"-a", "-c"}),
        (CommandResult{2, "", "consolidator-inspect check: error: --add excludes --create\n"}));
}

TEST_F(CheckCommand, TakesOneFilePerOption) {
    EXPECT_EQ(inspectRun({"check", "-h", hier, hls}).status, 2);
}

TEST_F(CheckCommand, NeedsAnInput) {
    EXPECT_EQ(
        inspectRun({"check"}),
        (CommandResult{2, "", "consolidator-inspect check: error: no input file is given\n"}));
    EXPECT_EQ(inspectRun({"check", "-f", directory.write("db", exampleDatabase())}).status, 2);
    EXPECT_EQ(inspectRun({"check", "-h", hier, "--format", "xml"}).status, 2);
}

TEST_F(CheckCommand, MakesNoDatabase) {
    const CommandResult result = check({"-f", directory.path("new")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, directory.path("new") + ": note: does not exist: a run makes it\n" +
                              coverageOfK + "0 errors, 0 warnings, 1 note\n");
    EXPECT_FALSE(directory.has("new"));
}

TEST_F(CheckCommand, AddsToWhatTheDatabaseHolds) {
    const std::string db = directory.write(
        "db", DatabaseBuilder()
                  .section(0, "p")
                  .section(2, knownKernelData({{.name = "old", .instancePaths = {"top/old_1"}}}))
                  .bytes());
    const CommandResult result = check({"-f", db, "-p", "p"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("\n  old             1     0 of 0     0 of 0          0\n"));
}

TEST_F(CheckCommand, EndsAtADatabaseThatCannotBeOpened) {
    EXPECT_EQ(check({"-f", directory.path("")}),
              (CommandResult{2, "", directory.path("") + ": error: is a folder\n"}));
}

TEST_F(CheckCommand, SaysThatADatabaseIsDamaged) {
    std::string database = exampleDatabase();
    database.pop_back();
    const CommandResult result = check({"-f", directory.write("db", database)});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, StartsWith(directory.path("db") + ": error: is damaged"));
}

TEST_F(CheckCommand, SaysThatTheSameDwarfIsThere) {
    const std::string db = directory.write("db", DatabaseBuilder().section(1, "dwarf").bytes());
    const CommandResult result = check({"-f", db, "-d", directory.write("d", "dwarf")});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out,
                StartsWith(directory.path("d") + ": note: the database has this DWARF already\n"));
}

TEST_F(CheckCommand, SaysWhyNoDwarfComesIn) {
    EXPECT_THAT(
        check({"-d", directory.write("d", "")}).out,
        StartsWith(directory.path("d") + ": warning: is empty; no DWARF gets into the database\n"));
    EXPECT_THAT(check({"-d", directory.path("")}).out, HasSubstr(": error: is a folder; no DWARF"));
    EXPECT_THAT(check({"-d", directory.path("missing")}).out,
                HasSubstr(": error: cannot be opened; no DWARF"));
    EXPECT_THAT(check({"-d", hier}).out,
                HasSubstr(": warning: looks like a hierarchy file, which belongs to -h, but is "
                          "given with -d as DWARF\n"));
}

TEST_F(CheckCommand, SaysThatAFileIsGivenTwice) {
    const CommandResult result = check({"-h", hier});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, StartsWith(hier + ": warning: is given twice\n"));
}

TEST_F(CheckCommand, SaysThatAKernelIsThereTwice) {
    directory.write("k.hier", "k\ntype: c\nk\ntype: hls\ninstance path: top/k_1\n");
    EXPECT_THAT(check().out,
                StartsWith(hier + ": warning: kernel \"k\" comes more than once; all of them "
                                  "become one\n"));
}

TEST_F(CheckCommand, SaysThatATypeIsIgnored) {
    const std::string other = directory.write("other.hier", "k\ntype: hls\ninstance path: a/k\n");
    EXPECT_THAT(check({"-h", other}).out,
                StartsWith(other +
                           ": warning: type \"hls\" of kernel \"k\" is ignored: it is "
                           "\"c\" in " +
                           hier + ", and the first known type counts\n"));
}

TEST_F(CheckCommand, SaysWhichArgumentsAKernelTakesOver) {
    const std::string xml =
        directory.write("kernel.xml", "<project><platform><device><core><kernel name=\"a\">"
                                      "<arg name=\"n\" type=\"int\"/></kernel><kernel name=\"k\"/>"
                                      "</core></device></platform></project>");
    EXPECT_THAT(check({"-k", xml}).out,
                StartsWith(xml + ": note: kernel \"k\" takes over the 1 argument of the kernels "
                                 "before it in this file\n"));
}

TEST_F(CheckCommand, SaysWhichNamesOfAKernelXmlAreNotOfItsSchema) {
    const std::string xml = directory.write(
        "kernel.xml", "<project><platform><device><core>\n<Kernel name=\"k\"/></core>"
                      "</device></platform></project>");
    EXPECT_THAT(check({"-k", xml}).out,
                StartsWith(xml +
                           ":2: warning: element \"Kernel\" in \"core\" is unknown and passed over "
                           "with all that is in it; did you mean \"kernel\"?\n" +
                           xml + ": warning: no kernel is found in it\n"));
}

TEST_F(CheckCommand, DoesNotLookAtTheNamesInAKernelXmlThatCannotBeRead) {
    const std::string xml = directory.write("kernel.xml", "<project><Platform></project>");
    EXPECT_THAT(check({"-k", xml}).out, Not(HasSubstr("unknown")));
}

TEST_F(CheckCommand, SaysThatTheFirstLocationsOfARunStay) {
    const std::string other =
        directory.write("other.ll", "Bit 1 0x9 0 DIE0 0 Net=top/k_1/v_reg[0]\n");
    EXPECT_THAT(check({"-l", ll}).out, Not(HasSubstr("ignored")));
    EXPECT_THAT(check({"-l", other}).out,
                StartsWith(other + ": warning: locations of net \"/top/k_1/v_reg\" are ignored: "
                                   "the database has others already, which stay\n"));
}

// The second kernel of the name reaches the merge with registers of its own.
TEST_F(CheckCommand, DoesNotBlameAFileForTheSecondKernelOfAName) {
    const auto kernelWith = [](std::uint32_t offset) {
        return record(
            {.name = "k",
             .instancePaths = {"top/k_1"},
             .variables = {variable("v", "v_reg", "int", {})},
             .hardwareVariables = {hardwareVariable("/top/k_1/v_reg", {location(1, offset)})}});
    };
    const std::string database = directory.write(
        "old.bin", DatabaseBuilder().section(2, u32(2) + kernelWith(0) + kernelWith(9)).bytes());
    const auto checkOf = [&](const std::string& offset) {
        directory.write("k.ll", "Bit 1 0x1 " + offset + " DIE0 0 Net=top/k_1/v_reg[0]\n");
        return inspectRun({"check", "-f", database, "-l", ll}).out;
    };
    const std::string empty = directory.write("empty.ll", ";\n");
    EXPECT_THAT(inspectRun({"check", "-f", database, "-l", empty}).out, Not(HasSubstr("ignored")));
    EXPECT_THAT(checkOf("0"), Not(HasSubstr("and 1 more")));
    EXPECT_THAT(checkOf("5"), HasSubstr("locations of net \"/top/k_1/v_reg\" are ignored"));
}

TEST_F(CheckCommand, SaysWhatIsRenamedBesideWhatIsNot) {
    directory.write("k.hls", "RTL 1 s (x == 1)\nlocal v\nat: k.cpp:7\nend v_reg[1:0] 2\n"
                             "local w\nend sum_reg 1\n");
    directory.write("k.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_1/v_reg[0]\n"
                            "Bit 1 0x1 1 DIE0 0 Net=top/k_1/sum_reg_0\n");
    EXPECT_THAT(check().out,
                HasSubstr(ll + ":2: warning: net \"/top/k_1/sum_reg_0\" of kernel \"k\" has almost "
                               "the name of its variable \"w\": the last component must be "
                               "hardware name \"sum_reg\"\n"));
}

TEST_F(CheckCommand, SaysThatNoNetHasANameOfTheKernel) {
    directory.write("k.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_1/other[0]\n");
    EXPECT_THAT(check().out, HasSubstr(ll + ": warning: no net has the name of an argument or "
                                            "variable of kernel \"k\"\n"));
}

TEST_F(CheckCommand, SaysThatAReportHasNoTable) {
    EXPECT_THAT(check({"-r", directory.write("r", "a report\n")}).out,
                HasSubstr("r: warning: no table of block RAMs is found: "));
    EXPECT_THAT(check({"-r", directory.write("r", std::string(3000, 'x'))}).out,
                HasSubstr("r:1: error: the line has more than 2046 characters: reading stops "
                          "here\n"));
}

TEST_F(CheckCommand, LetsNoFileDriveTheTerminal) {
    directory.write("k.hier", "k\x1b[2J\ninstance path: top/k_1\n");
    const CommandResult result = check();
    EXPECT_THAT(result.out, HasSubstr("\"k\\x1b[2J\""));
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST_F(CheckCommand, FindsThatANewDatabaseCannotBeMade) {
    const std::string database = directory.path("missing/db");
    EXPECT_EQ(check({"-c", "-f", database}),
              (CommandResult{1,
                             database +
                                 ": error: does not exist and cannot be made: No such file "
                                 "or directory: a run cannot open it and does nothing\n" +
                                 coverageOfK + "1 error, 0 warnings, 0 notes\n",
                             ""}));
    const std::string folder = directory.path(".");
    EXPECT_EQ(check({"-c", "-f", folder}).out,
              folder +
                  ": error: cannot be written: Is a directory: a run cannot open it and does "
                  "nothing\n" +
                  coverageOfK + "1 error, 0 warnings, 0 notes\n");
    EXPECT_EQ(check({"-c", "-f", directory.path("db")}), (CommandResult{0, nothingFound, ""}));
}

TEST_F(CheckCommand, WarnsOfLogicLocationsWithoutAKernel) {
    const CommandResult result = inspectRun({"check", "-l", ll});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, HasSubstr(ll + ": warning: no kernel is known when it is read, so that "
                                           "none of its nets belongs to one\n"));
}

TEST_F(CheckCommand, ColoursSeveritiesOnATerminal) {
    const CommandResult result = inspectRunInColour({"check", "-h", directory.path("missing")});
    EXPECT_THAT(result.out, HasSubstr(": \x1b[31merror\x1b[0m: cannot be opened"));
    EXPECT_THAT(result.out, HasSubstr("\n\x1b[1mCoverage\x1b[0m\n"));
}

TEST_F(CheckCommand, ListsTheNamesWithoutALocationWhenItHasNowhereToLook) {
    EXPECT_THAT(inspectRun({"check", "-h", hier, "-s", hls}).out,
                HasSubstr("\nWithout a location\n"
                          "  kernel  name        hardware name\n"
                          "  k       variable v  v_reg\n"
                          "  no logic-location file was searched\n"));
}

TEST_F(CheckCommand, ListsTheFirstOfManyNames) {
    std::string text = "RTL 1 s (x == 1)\nlocal v\nat: k.cpp:7\nend v_reg[1:0] 2\n";
    for (int i = 0; i < 21; ++i) {
        text += "local w" + std::to_string(i) + "\nend w" + std::to_string(i) + "_q 1\n";
    }
    directory.write("k.hls", text);
    const CommandResult result = check();
    EXPECT_THAT(result.out, HasSubstr("\n  k       variable w19  w19_q          none\n"
                                      "  k       and 1 more\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("w20")));
}

TEST_F(CheckCommand, ShortensNamesThatComeAgain) {
    directory.write("k.hier", std::string(600, 'k') + "\ninstance path: top/k_1\n");
    EXPECT_THAT(check().out, HasSubstr("\n  " + std::string(500, 'k') + "…  "));
}

// JSON, read by a parser that shares nothing with the writer.

TEST_F(CheckCommand, GivesScriptsADocument) {
    directory.write("k.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_2/v_reg[0]\n\xFF\n");
    const std::string other =
        directory.write("other.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_2/v_reg[0]\n");
    const CommandResult result = check({"--format", "json", "-l", other});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "");
    const nlohmann::json missing = {{"kind", "variable"},
                                    {"name", "v"},
                                    {"hardwareName", "v_reg"},
                                    {"nearest",
                                     {{"net", "/top/k_2/v_reg"},
                                      {"file", other},
                                      {"line", 1},
                                      {"sameName", true},
                                      {"inInstance", false}}}};
    const nlohmann::json kernel = {{"kernel", "k"},
                                   {"instances", 1},
                                   {"arguments", {{"located", 0}, {"total", 0}}},
                                   {"variables", {{"located", 0}, {"total", 1}}},
                                   {"registers", 0},
                                   {"missing", nlohmann::json::array({missing})}};
    const nlohmann::json expected = {
        {"errors", 1},
        {"warnings", 1},
        {"notes", 2},
        {"mistakenKernels", 0},
        {"findings",
         {{{"file", ll},
           {"line", 1},
           {"severity", "note"},
           {"code", "net-of-no-kernel"},
           {"text", "its net belongs to no kernel"}},
          {{"file", ll},
           {"line", 2},
           {"severity", "error"},
           {"code", "not-merged"},
           {"text", "line begins with \"\xEF\xBF\xBD\", not \"Bit\": reading stops here and "
                    "nothing of this file is merged"}},
          {{"file", other},
           {"line", 1},
           {"severity", "note"},
           {"code", "net-of-no-kernel"},
           {"text", "its net belongs to no kernel"}},
          {{"file", other},
           {"line", 1},
           {"severity", "warning"},
           {"code", "other-path"},
           {"text", "no instance path of kernel \"k\" occurs in net \"/top/k_2/v_reg\", which has "
                    "the name of its variable \"v\": its first instance path is \"top/k_1\""}}}},
        {"coverage", nlohmann::json::array({kernel})},
    };
    EXPECT_EQ(nlohmann::json::parse(result.out), expected);
    EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
}

TEST_F(CheckCommand, GivesNullForWhatIsNotThere) {
    const auto json =
        nlohmann::json::parse(inspectRun({"check", "-h", hier, "-s", hls, "--format", "json"}).out);
    EXPECT_EQ(json["findings"], nlohmann::json::array());
    EXPECT_EQ(json["coverage"][0]["missing"][0]["nearest"], nullptr);
}

} // namespace

} // namespace consolidator::test
