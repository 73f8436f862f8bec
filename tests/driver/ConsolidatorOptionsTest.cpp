// The command line as the options object takes it: fields, defaults, checks and usage text.

#include "driver/ConsolidatorOptions.h"

#include "tests/support/ArgumentVector.h"
#include "tests/support/UsageText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ConsolidatorOptions construct(std::vector<std::string> words, std::ostream& out) {
    words.insert(words.begin(), "consolidator");
    const ArgumentVector vector(std::move(words));
    return {vector.count(), vector.pointers(), out};
}

/// Options from the words behind the program's name, and what was printed about them.
struct Parsed {
    explicit Parsed(const std::vector<std::string>& words) : options(construct(words, out)) {}

    bool check() { return options.check(out); }

    std::ostringstream out;
    ConsolidatorOptions options;
};

/// The options of a command line that is in order.
ConsolidatorOptions parse(const std::vector<std::string>& words) {
    const Parsed parsed(words);
    EXPECT_EQ(parsed.out.str(), "");
    EXPECT_FALSE(parsed.options.parseError);
    EXPECT_FALSE(parsed.options.optionError);
    return parsed.options;
}

void expectNoInput(const ConsolidatorOptions& options) {
    EXPECT_EQ(options.dwarfFile, "");
    EXPECT_THAT(options.hierarchyFiles, IsEmpty());
    EXPECT_THAT(options.kernelFiles, IsEmpty());
    EXPECT_THAT(options.hlsFiles, IsEmpty());
    EXPECT_THAT(options.auxFiles, IsEmpty());
    EXPECT_THAT(options.llFiles, IsEmpty());
    EXPECT_THAT(options.ramFiles, IsEmpty());
}

/// All fields but programName, add, create and the error flags have their defaults.
void expectNothingTaken(const ConsolidatorOptions& options) {
    expectNoInput(options);
    EXPECT_EQ(options.dumpDwarfFile, "");
    EXPECT_EQ(options.dumpJsonFile, "");
    EXPECT_FALSE(options.dumpRequested);
    EXPECT_FALSE(options.help);
    EXPECT_FALSE(options.version);
    EXPECT_EQ(options.consolidatedFile, "");
    EXPECT_EQ(options.project, "");
}

// Fields

TEST(ConsolidatorOptions, HasDefaultsWithoutOptions) {
    const ConsolidatorOptions options = parse({});
    EXPECT_EQ(options.programName, "consolidator");
    EXPECT_TRUE(options.add);
    EXPECT_FALSE(options.create);
    expectNothingTaken(options);
}

TEST(ConsolidatorOptions, TakesTheFirstWordForTheProgramsName) {
    std::ostringstream out;
    const char* const words[] = {"/opt/bin/other name", nullptr};
    EXPECT_EQ(ConsolidatorOptions(1, words, out).programName, "/opt/bin/other name");
    const char* const help[] = {"--help", "-v", nullptr};
    const ConsolidatorOptions options(2, help, out);
    EXPECT_EQ(options.programName, "--help");
    EXPECT_FALSE(options.help);
    EXPECT_TRUE(options.version);
}

TEST(ConsolidatorOptions, HasNoProgramNameWithoutAnyWord) {
    std::ostringstream out;
    const char* const none[] = {nullptr};
    const ConsolidatorOptions options(0, none, out);
    EXPECT_EQ(options.programName, "");
    EXPECT_FALSE(options.parseError);
    expectNothingTaken(options);
    const char* const empty[] = {"", nullptr};
    EXPECT_EQ(ConsolidatorOptions(1, empty, out).programName, "");
    EXPECT_EQ(out.str(), "");
}

TEST(ConsolidatorOptions, KeepsTheProgramsNameWhenTheCommandLineCannotBeParsed) {
    EXPECT_EQ(Parsed({"--unknown"}).options.programName, "consolidator");
}

TEST(ConsolidatorOptions, TakesAddAndCreateAsAPair) {
    for (const char* word : {"--add", "-a"}) {
        EXPECT_TRUE(parse({word}).add);
        EXPECT_FALSE(parse({word}).create);
        expectNothingTaken(parse({word}));
    }
    for (const char* word : {"--create", "-c"}) {
        EXPECT_FALSE(parse({word}).add);
        EXPECT_TRUE(parse({word}).create);
        expectNothingTaken(parse({word}));
    }
}

TEST(ConsolidatorOptions, TakesEachSwitchByEachOfItsNames) {
    EXPECT_TRUE(parse({"--help"}).help);
    EXPECT_FALSE(parse({"--help"}).version);
    EXPECT_TRUE(parse({"--version"}).version);
    EXPECT_TRUE(parse({"-v"}).version);
    EXPECT_FALSE(parse({"-v"}).help);
}

/// An option with a value, and the field that it sets.
template <typename Field>
struct Option {
    using Member = Field ConsolidatorOptions::*;

    const char* longName;
    const char* shortName;
    Member field;
};

const std::vector<Option<std::string>> textOptions = {
    {"--dump-dwarf", "-u", &ConsolidatorOptions::dumpDwarfFile},
    {"--dump-json", "-j", &ConsolidatorOptions::dumpJsonFile},
    {"--DWARF", "-d", &ConsolidatorOptions::dwarfFile},
    {"--consolidated_file", "-f", &ConsolidatorOptions::consolidatedFile},
    {"--project", "-p", &ConsolidatorOptions::project}};

const std::vector<Option<std::vector<std::string>>> listOptions = {
    {"--hierarchy", "-h", &ConsolidatorOptions::hierarchyFiles},
    {"--kernel", "-k", &ConsolidatorOptions::kernelFiles},
    {"--hls", "-s", &ConsolidatorOptions::hlsFiles},
    {"--aux", "-x", &ConsolidatorOptions::auxFiles},
    {"--ll", "-l", &ConsolidatorOptions::llFiles},
    {"--ram", "-r", &ConsolidatorOptions::ramFiles}};

TEST(ConsolidatorOptions, TakesEachTextByEachOfItsNames) {
    for (const auto& option : textOptions) {
        for (const std::string name : {option.longName, option.shortName}) {
            ConsolidatorOptions options = parse({name, "value"});
            EXPECT_EQ(options.*option.field, "value") << name;
            EXPECT_EQ(options.dumpRequested,
                      name.starts_with("--dump") || name == "-u" || name == "-j");
            // Nothing else has changed.
            options.*option.field = "";
            options.dumpRequested = false;
            expectNothingTaken(options);
        }
    }
}

TEST(ConsolidatorOptions, TakesEachListByEachOfItsNames) {
    for (const auto& option : listOptions) {
        for (const std::string name : {option.longName, option.shortName}) {
            ConsolidatorOptions options = parse({name, "value"});
            EXPECT_THAT(options.*option.field, ElementsAre("value")) << name;
            (options.*option.field).clear();
            expectNothingTaken(options);
        }
    }
}

TEST(ConsolidatorOptions, KeepsTheValuesOfAListInCommandLineOrder) {
    for (const auto& option : listOptions) {
        const ConsolidatorOptions options =
            parse({option.longName, "b", option.shortName, "a", "-f", "db", option.longName, "b"});
        EXPECT_THAT(options.*option.field, ElementsAre("b", "a", "b")) << option.longName;
    }
}

TEST(ConsolidatorOptions, TakesOptionsInAnyOrder) {
    const ConsolidatorOptions options =
        parse({"-v", "-r", "r", "-p", "P", "-h", "h", "-f", "db", "-d", "d", "-c"});
    EXPECT_TRUE(options.version);
    EXPECT_TRUE(options.create);
    EXPECT_EQ(options.consolidatedFile, "db");
    EXPECT_EQ(options.project, "P");
    EXPECT_EQ(options.dwarfFile, "d");
    EXPECT_THAT(options.hierarchyFiles, ElementsAre("h"));
    EXPECT_THAT(options.ramFiles, ElementsAre("r"));
}

TEST(ConsolidatorOptions, TakesAValueInTheSameWord) {
    EXPECT_THAT(parse({"--hierarchy=x"}).hierarchyFiles, ElementsAre("x"));
    EXPECT_THAT(parse({"--hierarchy=a=b"}).hierarchyFiles, ElementsAre("a=b"));
    EXPECT_THAT(parse({"-hx"}).hierarchyFiles, ElementsAre("x"));
    EXPECT_THAT(parse({"-h=x"}).hierarchyFiles, ElementsAre("=x"));
    EXPECT_EQ(parse({"-pmy project"}).project, "my project");
}

TEST(ConsolidatorOptions, TakesSwitchesGluedTogether) {
    const ConsolidatorOptions options = parse({"-vcfdb"});
    EXPECT_TRUE(options.version);
    EXPECT_TRUE(options.create);
    EXPECT_EQ(options.consolidatedFile, "db");
}

TEST(ConsolidatorOptions, NotesADumpEvenWithoutAFileName) {
    const ConsolidatorOptions dwarf = parse({"-u", ""});
    EXPECT_EQ(dwarf.dumpDwarfFile, "");
    EXPECT_TRUE(dwarf.dumpRequested);
    EXPECT_TRUE(parse({"-j", ""}).dumpRequested);
    EXPECT_TRUE(parse({"-u", "a", "-j", "b"}).dumpRequested);
}

TEST(ConsolidatorOptions, TakesLongNamesCutShort) {
    EXPECT_THAT(parse({"--hier", "x"}).hierarchyFiles, ElementsAre("x"));
    EXPECT_EQ(parse({"--con", "db"}).consolidatedFile, "db");
    EXPECT_EQ(parse({"--DW", "x"}).dwarfFile, "x");
    EXPECT_TRUE(parse({"--ver"}).version);
}

// Refused command lines

void expectRefused(const std::vector<std::string>& words, const std::string& line) {
    const Parsed parsed(words);
    EXPECT_TRUE(parsed.options.parseError) << line;
    EXPECT_FALSE(parsed.options.optionError) << line;
    EXPECT_EQ(parsed.out.str(), line + "\n");
}

TEST(ConsolidatorOptions, RefusesASecondOccurrenceOfATextOrSwitch) {
    expectRefused({"-f", "a", "-f", "b"},
                  "Unsupported multiple occurrences of : --consolidated_file");
    expectRefused({"-p", "a", "--project", "a"}, "Unsupported multiple occurrences of : --project");
    expectRefused({"--dump-j", "a", "-j", "b"},
                  "Unsupported multiple occurrences of : --dump-json");
    expectRefused({"-c", "-c"}, "Unsupported multiple occurrences of : --create");
    expectRefused({"-vv"}, "Unsupported multiple occurrences of : --version");
}

TEST(ConsolidatorOptions, RefusesAnUnknownOption) {
    expectRefused({"--other"}, "Unknown option: unrecognised option '--other'");
    expectRefused({"-z"}, "Unknown option: unrecognised option '-z'");
}

TEST(ConsolidatorOptions, TakesNothingFromARefusedCommandLine) {
    const Parsed parsed({"-c", "-f", "db", "-h", "x", "--other"});
    EXPECT_TRUE(parsed.options.parseError);
    EXPECT_TRUE(parsed.options.add);
    EXPECT_FALSE(parsed.options.create);
    expectNothingTaken(parsed.options);
}

TEST(ConsolidatorOptions, RefusesAddTogetherWithCreateAndTakesNothingBehindThem) {
    for (const char* first : {"-a", "-c"}) {
        const std::string second = std::string(first) == "-a" ? "-c" : "-a";
        const Parsed parsed({"--help", "-v", "-f", "db", "-u", "u",  "-j",  "j",   "-d",
                             "d",      "-h", "h",  "-k", "k",  "-s", "s",   "-x",  "x",
                             "-l",     "l",  "-r", "r",  "-p", "P",  first, second});
        EXPECT_EQ(parsed.out.str(), "Error: Cannot specify both add and create\n");
        EXPECT_TRUE(parsed.options.optionError);
        EXPECT_FALSE(parsed.options.parseError);
        expectNothingTaken(parsed.options);
    }
}

// The check

void expectCheck(const std::vector<std::string>& words, bool passes, const std::string& printed) {
    Parsed parsed(words);
    EXPECT_EQ(parsed.check(), passes) << testing::PrintToString(words);
    EXPECT_EQ(parsed.out.str(), printed) << testing::PrintToString(words);
}

TEST(ConsolidatorOptions, PassesADatabaseWithAnyOneInput) {
    for (const char* name : {"-d", "-h", "-k", "-s", "-x", "-l", "-r"}) {
        expectCheck({"-f", "db", name, "x"}, true, "");
    }
}

TEST(ConsolidatorOptions, WantsADatabase) {
    const std::string line = "Error: A consolidated file must be specified\n";
    expectCheck({}, false, line);
    expectCheck({"-h", "x"}, false, line);
    expectCheck({"-f", "", "-h", "x"}, false, line);
    expectCheck({"-c", "-p", "P"}, false, line);
}

TEST(ConsolidatorOptions, WantsAnInput) {
    const std::string line = "No input meta-data files specified\n";
    expectCheck({"-f", "db"}, false, line);
    expectCheck({"-f", "db", "-p", "P"}, false, line);
    expectCheck({"-f", "db", "-c"}, false, line);
    expectCheck({"-f", "db", "-d", ""}, false, line);
}

TEST(ConsolidatorOptions, CountsAListOfAnEmptyNameAsInput) {
    expectCheck({"-f", "db", "-h", ""}, true, "");
}

TEST(ConsolidatorOptions, WantsNeitherForVersionHelpAndDumps) {
    expectCheck({"-v"}, true, "");
    expectCheck({"--help"}, true, "");
    expectCheck({"-u", "x"}, true, "");
    expectCheck({"-j", "x"}, true, "");
}

TEST(ConsolidatorOptions, WantsBothForADumpToAnEmptyName) {
    expectCheck({"-u", ""}, false, "Error: A consolidated file must be specified\n");
    expectCheck({"-j", "", "-f", "db"}, false, "No input meta-data files specified\n");
    expectCheck({"-u", "", "-f", "db", "-h", "x"}, true, "");
}

TEST(ConsolidatorOptions, FailsOnAddAndCreateBeforeAnythingElse) {
    const std::string line = "Error: Cannot specify both add and create\n";
    expectCheck({"-a", "-c"}, false, line);
    expectCheck({"-a", "-c", "-v"}, false, line);
    expectCheck({"-a", "-c", "--help"}, false, line);
    expectCheck({"-a", "-c", "-u", "x"}, false, line);
    expectCheck({"-a", "-c", "-f", "db", "-h", "x"}, false, line);
}

// The usage text

std::string usageOf(const char* programName) {
    std::ostringstream out;
    const char* const words[] = {programName, nullptr};
    ConsolidatorOptions(1, words, out).printUsage(out);
    return out.str();
}

TEST(ConsolidatorOptions, PrintsTheUsage) {
    EXPECT_EQ(usageOf("consolidator"), usageText("consolidator"));
}

TEST(ConsolidatorOptions, PrintsTheUsageWithTheProgramsName) {
    EXPECT_EQ(usageOf("./bin/merge tool"), usageText("./bin/merge tool"));
    EXPECT_EQ(usageOf(""), usageText(""));
}

TEST(ConsolidatorOptions, PrintsTheSameUsageWhateverWasGiven) {
    Parsed parsed({"-f", "db", "-h", "x", "--help"});
    parsed.options.printUsage(parsed.out);
    EXPECT_EQ(parsed.out.str(), usageText("consolidator"));
}

} // namespace

} // namespace consolidator::test
