// The HLS metadata reader: which conditions and variables the lines of a file give, and which files
// are refused.

#include "readers/HLSFile.h"

#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"
#include "tests/support/Kernels.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Reading.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Reading readHls(const std::string& text) {
    return readText<HLSFile>(text);
}

/// The one kernel of a text that must be read to its end.
Kernel kernelIn(const std::string& text) {
    const Reading reading = readHls(text);
    EXPECT_TRUE(reading.succeeded) << text;
    EXPECT_FALSE(reading.diagnostic.stopped()) << text;
    EXPECT_EQ(reading.kernels.size(), 1U) << text;
    return reading.kernels.empty() ? Kernel() : reading.kernels.front();
}

std::vector<ConditionFields> conditionsIn(const std::string& text) {
    return fieldsOf(kernelIn(text).breakableConditions());
}

std::vector<VariableTexts> variablesIn(const std::string& text) {
    return textsOf(kernelIn(text).variables());
}

ConditionFields at(std::string_view file, std::uint32_t line, std::string_view condition = "(x)") {
    return fieldsOf(fileLine(condition, line, file));
}

VariableTexts held(const std::string& name, const std::string& rtlName) {
    return {name, rtlName, "int"};
}

/// The beginning of a file up to a source line, within the block of the variable "v".
const std::string openBlock = "RTL 1 state (x)\nlocal v\nat: f.cpp:1\n";

/// An entry with the condition (x), one source line and one variable.
std::string entryAt(const std::string& fileAndLine, const std::string& variable = "v",
                    const std::string& condition = "(x)") {
    return "RTL 1 state " + condition + "\nlocal " + variable + "\nat: " + fileAndLine + "\nend " +
           variable + "_reg 1\n";
}

/// The condition that an "RTL" line gives.
std::string conditionOf(const std::string& line) {
    const auto conditions = conditionsIn(line + "\nlocal v\nat: f.cpp:1\n\n");
    EXPECT_EQ(conditions.size(), 1U) << line;
    return conditions.empty() ? "none" : conditions.front().condition;
}

/// The place that a source line of a block gives.
ConditionFields placeOf(const std::string& line) {
    const auto conditions = conditionsIn("RTL 1 state (x)\nlocal v\n" + line + "\n\n");
    EXPECT_EQ(conditions.size(), 1U) << line;
    return conditions.empty() ? ConditionFields{} : conditions.front();
}

/// The register of a variable whose block is closed by this line.
std::string registerAfter(const std::string& line) {
    const Kernel kernel = kernelIn(openBlock + line + "\n");
    EXPECT_EQ(fieldsOf(kernel.breakableConditions()), std::vector{at("f.cpp", 1)}) << line;
    EXPECT_EQ(kernel.variables().size(), 1U) << line;
    return kernel.variables().empty() ? "none" : kernel.variables().front().hardwareName;
}

void expectSilentFailure(const std::string& text) {
    const Reading reading = readHls(text);
    EXPECT_FALSE(reading.succeeded) << text;
    EXPECT_TRUE(reading.diagnostic.stopped()) << text;
    EXPECT_THAT(reading.kernels, IsEmpty()) << text;
}

Finding stopOf(const std::string& text) {
    return readHls(text).stop();
}

std::vector<Finding> remarksOn(const std::string& text) {
    const Reading reading = readHls(text);
    EXPECT_TRUE(reading.succeeded) << text;
    return reading.diagnostic.remarks();
}

/// The name of the kernel that an empty file of this path gives.
std::string kernelNameFor(const std::string& name) {
    const TemporaryDirectory directory;
    std::filesystem::create_directories(std::filesystem::path(directory.path(name)).parent_path());
    const Reading reading = readFile<HLSFile>(directory.write(name, ""));
    EXPECT_EQ(reading.kernels.size(), 1U) << name;
    return reading.kernels.empty() ? "none" : reading.kernels.front().name();
}

const std::string typicalText = "Begin Function scale_rows\n"
                                "RTL 1 state_1 (1'b1 == 1'b1)\n"
                                "local row\n"
                                "at: scale_rows.cpp:12\n"
                                "end row_reg[3:0] 4\n"
                                "Begin Function inner\n"
                                "RTL 2 state_2 (fsm_state2 == 1'b1)\n"
                                "local sum\n"
                                "at: inner.cpp:4\n"
                                "at: scale_rows.cpp:14\n"
                                "reg: sum_reg[7:0]\n"
                                "  the loop over the columns\n"
                                "end sum_reg[7:0] 8\n"
                                "local carry\n"
                                "end carry_reg 1\n"
                                "End Function inner\n"
                                "\n"
                                "End Function scale_rows\n";

const std::string typicalRecord =
    record({.name = "scale_rows",
            .variables = {variable("row", "row_reg", "int"), variable("sum", "sum_reg", "int"),
                          variable("carry", "carry_reg", "int")},
            .conditions = {condition("(1'b1 == 1'b1)", 12, "scale_rows.cpp"),
                           condition("(fsm_state2 == 1'b1)", 4, "inner.cpp")}});

// The kernel

TEST(HLSFile, ReadsConditionsAndVariables) {
    const TemporaryDirectory directory;
    const Reading reading = readFile<HLSFile>(directory.write("scale_rows.hls", typicalText));
    EXPECT_TRUE(reading.succeeded);
    ASSERT_EQ(reading.kernels.size(), 1U);
    EXPECT_EQ(binaryForm(reading.kernels.front()), typicalRecord);
    EXPECT_FALSE(reading.diagnostic.stopped());
    EXPECT_THAT(reading.diagnostic.remarks(), IsEmpty());
}

TEST(HLSFile, NamesTheKernelAfterTheFile) {
    EXPECT_EQ(kernelNameFor("scale_rows.hls"), "scale_rows");
    EXPECT_EQ(kernelNameFor("dir/scale_rows.xyz"), "scale_rows");
    EXPECT_EQ(kernelNameFor("dir.ext/a/scale_rows.xyz"), "scale_rows");
    EXPECT_EQ(kernelNameFor("two words.hls"), "two words");
}

TEST(HLSFile, DropsTheLastFourCharactersOfTheNameWhateverTheyAre) {
    EXPECT_EQ(kernelNameFor("scale_rows"), "scale_");
    EXPECT_EQ(kernelNameFor("scale.json"), "scale.");
    EXPECT_EQ(kernelNameFor("scale.tar.gz"), "scale.ta");
    EXPECT_EQ(kernelNameFor("abcde"), "a");
    EXPECT_EQ(kernelNameFor("dir.ext/scale"), "s");
}

TEST(HLSFile, NamesTheKernelNothingAfterANameOfFourCharacters) {
    EXPECT_EQ(kernelNameFor(".hls"), "");
    EXPECT_EQ(kernelNameFor("abcd"), "");
    EXPECT_EQ(kernelNameFor("scale/.hls"), "");
}

TEST(HLSFile, KeepsAShorterNameWhole) {
    EXPECT_EQ(kernelNameFor("abc"), "abc");
    EXPECT_EQ(kernelNameFor("a.b"), "a.b");
    EXPECT_EQ(kernelNameFor("scale_rows.hls/a"), "a");
}

TEST(HLSFile, GivesATextInMemoryANamelessKernel) {
    EXPECT_EQ(kernelIn(typicalText).name(), "");
}

TEST(HLSFile, MakesAKernelOfAFileWithoutEntries) {
    for (const char* text : {"", "\n", "\n\n\n", " ", "\t\n", "  text\n\n\ttext",
                             "Begin Function f\nEnd Function f\n"}) {
        EXPECT_EQ(binaryForm(kernelIn(text)), record({})) << testing::PrintToString(text);
    }
}

TEST(HLSFile, ReadsNothingFromAReaderThatIsNotOpen) {
    const TemporaryDirectory directory;
    std::ostringstream errors;
    for (const char* name : {"missing.hls", "missing/"}) {
        HLSFile reader(directory.path(name), errors);
        EXPECT_FALSE(reader.isOpen()) << name;
        EXPECT_FALSE(reader.parse()) << name;
        EXPECT_THAT(reader.kernels(), IsEmpty()) << name;
    }
    EXPECT_EQ(errors.str(), "");
}

TEST(HLSFile, ReadsItsFileOnce) {
    HLSFile reader(std::make_unique<std::stringbuf>(typicalText));
    EXPECT_TRUE(reader.parse());
    EXPECT_FALSE(reader.parse());
    EXPECT_EQ(reader.kernels().size(), 1U);
}

// Lines outside of blocks

TEST(HLSFile, SkipsLinesThatAreEmptyOrIndented) {
    EXPECT_THAT(conditionsIn("\n text\n\tRTL 1 state (y)\n\tlocal w\n Begin Function f\n" +
                             entryAt("f.cpp:1") + " \n\t\n  End Function f\n RTL"),
                ElementsAre(at("f.cpp", 1)));
}

/// The line amid others.
std::string amidOthers(const std::string& line) {
    return typicalText + line + "\n" + typicalText;
}

TEST(HLSFile, RefusesEveryOtherLine) {
    for (const char* line :
         {"text", "Begin", "Begin Func f", "begin Function f", "Begin function f",
          "BeginFunction f", "Function Begin f", "End", "End Func f", "end Function f",
          "rtl 1 s (x)", "RTL: 1 s (x)", "RTLx", "Local v", "locals v", "local: v", "#",
          "// RTL 1 s (x)", "\xC2\xA0RTL 1 s x"}) {
        expectSilentFailure(line);
        expectSilentFailure(amidOthers(line));
    }
}

TEST(HLSFile, RefusesABlockUnderAnyOtherWord) {
    for (const char* word : {"locals", "Local", "local:", "locale", "loca", "variable"}) {
        expectSilentFailure("RTL 1 s (x)\n" + std::string(word) + " v\nat: f:1\nend v_reg 1\n");
    }
}

TEST(HLSFile, RefusesALineOfOtherWhiteSpace) {
    for (const char* line : {"\r", "\v", "\f", "\r \t"}) {
        expectSilentFailure(line);
        expectSilentFailure(entryAt("f.cpp:1") + line + "\n");
    }
}

TEST(HLSFile, FindsWordsBehindOtherWhiteSpace) {
    EXPECT_THAT(conditionsIn("\rRTL\v1\fstate\t(x)\n\vlocal\tv\n\fat:\rf.cpp:1\n\n"),
                ElementsAre(at("f.cpp", 1)));
}

TEST(HLSFile, LeavesNothingOfAFileThatIsRefusedAtItsEnd) {
    expectSilentFailure(typicalText + "text");
}

// Functions

TEST(HLSFile, AcceptsNestedFunctions) {
    EXPECT_THAT(conditionsIn("Begin Function f\nBegin Function g\nBegin Function f\n" +
                             entryAt("f.cpp:1") +
                             "End Function f\nEnd Function g\n\nEnd Function f\n"),
                ElementsAre(at("f.cpp", 1)));
}

TEST(HLSFile, DoesNotCompareTheNamesOfFunctions) {
    EXPECT_EQ(binaryForm(kernelIn("Begin Function f\nBegin Function g\n"
                                  "End Function other\nEnd Function g\n")),
              record({}));
}

TEST(HLSFile, NeedsNoNamesOfFunctions) {
    EXPECT_EQ(binaryForm(kernelIn("Begin Function\nBegin Function f\nEnd Function\n"
                                  "End Function \n")),
              record({}));
    expectSilentFailure("Begin Function\n");
}

TEST(HLSFile, IgnoresFurtherWordsBehindAName) {
    EXPECT_EQ(binaryForm(kernelIn("Begin Function f g h\nEnd Function f g h\n")), record({}));
    EXPECT_THAT(variablesIn("RTL 1 s (x)\nlocal v w z\nat: f.cpp:1\nend v_reg 1 2 3\n"),
                ElementsAre(held("v", "v_reg")));
}

TEST(HLSFile, RefusesFunctionsThatDoNotEnd) {
    expectSilentFailure("Begin Function f");
    expectSilentFailure("Begin Function f\nBegin Function f\nEnd Function f\n");
    expectSilentFailure("Begin Function f\n" + entryAt("f.cpp:1"));
    expectSilentFailure("Begin Function f\nEnd Function f\nBegin Function f\n");
}

TEST(HLSFile, RefusesFunctionsThatEndWithoutHavingBegun) {
    expectSilentFailure("End Function f\n");
    expectSilentFailure("End Function");
    expectSilentFailure("Begin Function f\nEnd Function f\nEnd Function f\n");
    expectSilentFailure("End Function f\nBegin Function f\n");
}

TEST(HLSFile, TakesEntriesOutsideOfFunctions) {
    EXPECT_THAT(conditionsIn(entryAt("f.cpp:1") + "Begin Function f\nEnd Function f\n" +
                             entryAt("f.cpp:2")),
                ElementsAre(at("f.cpp", 1), at("f.cpp", 2)));
}

// Conditions

TEST(HLSFile, JoinsTheWordsBehindTheThirdToTheCondition) {
    EXPECT_EQ(conditionOf("RTL 1 state (x)"), "(x)");
    EXPECT_EQ(conditionOf("RTL 1 state (x == 1'b1)"), "(x == 1'b1)");
    EXPECT_EQ(conditionOf("RTL 1  state \t (x   ==\t\t1'b1)"), "(x == 1'b1)");
    EXPECT_EQ(conditionOf("RTL RTL local Begin Function f"), "Begin Function f");
    EXPECT_EQ(conditionOf("RTL\t1\vstate\fx\r==\ry"), "x == y");
}

TEST(HLSFile, GivesALineWithFewerWordsAnEmptyCondition) {
    for (const char* line : {"RTL", "RTL 1", "RTL 1 state", "RTL ", "RTL 1 state  \t"}) {
        EXPECT_EQ(conditionOf(line), "") << line;
    }
}

TEST(HLSFile, KeepsOneBlankForWhiteSpaceBehindACondition) {
    for (const char* end : {" ", "\t", "    ", " \t \r", "\r"}) {
        EXPECT_EQ(conditionOf("RTL 1 state (x == y)" + std::string(end)), "(x == y) ");
        EXPECT_EQ(conditionOf("RTL 1 state x" + std::string(end)), "x ");
    }
}

TEST(HLSFile, KeepsConditionsAsTheyAre) {
    EXPECT_EQ(conditionOf("RTL 1 state (1'b1 == 1'b1)"), "(1'b1 == 1'b1)");
    EXPECT_EQ(conditionOf("RTL 1 state \"a\\\xC3\xA9:b\""), "\"a\\\xC3\xA9:b\"");
}

TEST(HLSFile, KeepsEqualConditionsOfDifferentLines) {
    EXPECT_THAT(conditionsIn(entryAt("f.cpp:1") + entryAt("f.cpp:2") + entryAt("g.cpp:3")),
                ElementsAre(at("f.cpp", 1), at("f.cpp", 2), at("g.cpp", 3)));
}

// Source lines

TEST(HLSFile, TakesTheFirstSourceLineOfAnEntry) {
    EXPECT_THAT(conditionsIn("RTL 1 state (x)\nlocal v\nat: b.cpp:7\nat: a.cpp:2\n\n"
                             "local w\nat: c.cpp:1\n\n"),
                ElementsAre(at("b.cpp", 7)));
}

TEST(HLSFile, TakesASourceLineFromALaterVariableOfTheEntry) {
    const std::string text = "RTL 1 state (x)\nlocal v\nend v_reg 1\nlocal w\nat: c.cpp:1\n\n";
    EXPECT_THAT(conditionsIn(text), ElementsAre(at("c.cpp", 1)));
    EXPECT_THAT(variablesIn(text), ElementsAre(held("v", "v_reg"), held("w", "")));
}

TEST(HLSFile, TakesAnyFirstWordBeforeASourceLine) {
    for (const char* word : {"at:", "x", "Reg:", "reg", "regs:", "RTL", "local", "Begin", "End:"}) {
        EXPECT_EQ(placeOf(word + std::string(" f.cpp:12")), at("f.cpp", 12)) << word;
    }
}

TEST(HLSFile, DividesASourceLineAtItsFirstColon) {
    EXPECT_EQ(placeOf("at: a/b-c/f.cpp:12"), at("a/b-c/f.cpp", 12));
    EXPECT_EQ(placeOf("at: f.cpp:12:7"), at("f.cpp", 12));
    EXPECT_EQ(placeOf("at: d:f.cpp:12"), at("d", 0));
    EXPECT_EQ(placeOf("at: f.cpp::12"), at("f.cpp", 0));
    EXPECT_EQ(placeOf("at: :12"), at("", 12));
    EXPECT_EQ(placeOf("at: :"), at("", 0));
    EXPECT_EQ(placeOf("Begin Function:"), at("Function", 0));
}

TEST(HLSFile, ReadsTheLeadingDigitsOfALineNumber) {
    EXPECT_EQ(placeOf("at: f:7"), at("f", 7));
    EXPECT_EQ(placeOf("at: f:0"), at("f", 0));
    EXPECT_EQ(placeOf("at: f:0012"), at("f", 12));
    EXPECT_EQ(placeOf("at: f:12abc"), at("f", 12));
    EXPECT_EQ(placeOf("at: f:12.5"), at("f", 12));
    EXPECT_EQ(placeOf("at: f:0x10"), at("f", 0));
}

TEST(HLSFile, TakesALineNumberWithoutLeadingDigitsForZero) {
    for (const char* number : {"", "abc", "a12", "-5", "-0", "+5", "(12)"}) {
        EXPECT_EQ(placeOf("at: f:" + std::string(number)), at("f", 0)) << number;
    }
}

TEST(HLSFile, LimitsALineNumberToTheLargest) {
    EXPECT_EQ(placeOf("at: f:4294967294"), at("f", 4294967294));
    for (const char* number : {"4294967295", "4294967296", "4294967307", "18446744073709551616",
                               "99999999999999999999999999", "5000000000abc"}) {
        EXPECT_EQ(placeOf("at: f:" + std::string(number)), at("f", 4294967295)) << number;
    }
}

// Entries that are passed over

TEST(HLSFile, PassesOverAnEntryWithoutASourceLine) {
    const std::string text = "RTL 1 state (y)\nlocal w\nreg: w_reg[3:0]\nend w_reg[3:0] 4\n"
                             "RTL 1 state (z)\n" +
                             entryAt("f.cpp:1") + "RTL 1 state (a)\n";
    EXPECT_THAT(conditionsIn(text), ElementsAre(at("f.cpp", 1)));
    EXPECT_THAT(variablesIn(text), ElementsAre(held("v", "v_reg")));
}

TEST(HLSFile, PassesOverAnEntryWhoseFirstLineNumberCameBefore) {
    const std::string text = entryAt("f.cpp:1", "v", "(x)") + entryAt("g.cpp:1", "w", "(y)") +
                             entryAt("f.cpp:2", "u", "(z)") + entryAt("f.cpp:1", "t", "(x)");
    EXPECT_THAT(conditionsIn(text), ElementsAre(at("f.cpp", 1), at("f.cpp", 2, "(z)")));
    EXPECT_THAT(variablesIn(text), ElementsAre(held("v", "v_reg"), held("u", "u_reg")));
}

TEST(HLSFile, ComparesLineNumbersAsTheyAreRead) {
    EXPECT_THAT(conditionsIn(entryAt("a:-1") + entryAt("b:0") + entryAt("c:x") +
                             entryAt("d:4294967296") + entryAt("e:4294967295") + entryAt("f:007") +
                             entryAt("g:7")),
                ElementsAre(at("a", 0), at("d", 4294967295), at("f", 7)));
}

TEST(HLSFile, ComparesTheFirstLineNumbersOnly) {
    EXPECT_THAT(conditionsIn("RTL 1 s (x)\nlocal v\nat: f:1\nat: f:2\n\n"
                             "RTL 1 s (x)\nlocal v\nat: f:2\nat: f:1\n\n"
                             "RTL 1 s (x)\nlocal v\nat: f:3\nat: f:1\n\n"),
                ElementsAre(at("f", 1), at("f", 2), at("f", 3)));
}

TEST(HLSFile, TakesAnEntryWithALineNumberThatOnlyAPassedOverEntryHad) {
    // The second entry is passed over because of line 1, and so its line 2 does not count.
    EXPECT_THAT(conditionsIn(entryAt("f:1") + "RTL 1 s (x)\nlocal v\nat: f:1\nat: f:2\n\n" +
                             entryAt("f:2")),
                ElementsAre(at("f", 1), at("f", 2)));
}

// Variables

TEST(HLSFile, KeepsTheFirstVariableOfAName) {
    EXPECT_THAT(variablesIn("RTL 1 s (x)\nlocal v\nat: f:1\nend a[1:0] 2\nlocal v\nend b 1\n"
                            "RTL 1 s (x)\nlocal w\nat: f:2\nend w 1\nlocal v\nend c 1\n"),
                ElementsAre(held("v", "a"), held("w", "w")));
}

TEST(HLSFile, GivesVariablesToTheEntryBeforeThem) {
    EXPECT_THAT(variablesIn("RTL 1 s (x)\nRTL 1 s (y)\nlocal v\nat: f:1\nend v_reg 1\n"
                            "RTL 1 s (z)\nlocal w\nend w_reg 1\n"),
                ElementsAre(held("v", "v_reg")));
}

TEST(HLSFile, TakesAMissingNameForAnEmptyOne) {
    for (const char* line : {"local", "local ", "local\t \r"}) {
        const std::string text = "RTL 1 s (x)\n" + std::string(line) + "\nat: f:1\nend r 1\n";
        EXPECT_THAT(variablesIn(text), ElementsAre(held("", "r"))) << line;
    }
}

TEST(HLSFile, RefusesAVariableBeforeTheFirstEntry) {
    expectSilentFailure("local v\nat: f:1\nend r 1\n" + entryAt("f:2"));
    expectSilentFailure("local v\n");
    expectSilentFailure("local");
    expectSilentFailure("Begin Function f\nlocal v\n\nEnd Function f\n");
}

TEST(HLSFile, RefusesASourceLineBeforeTheFirstEntry) {
    expectSilentFailure("at: f:1\n" + entryAt("f:2"));
    expectSilentFailure("reg: r[1:0]\n" + entryAt("f:2"));
}

TEST(HLSFile, RefusesTheLinesOfABlockOutsideOfOne) {
    for (const char* line : {"at: f:1", "f:1", "reg: v_reg[7:0]", "end v_reg 1"}) {
        expectSilentFailure("RTL 1 s (x)\n" + std::string(line));
        expectSilentFailure(amidOthers(line));
    }
}

// The line that closes a block

TEST(HLSFile, TakesTheRegisterFromTheSecondWordOfTheClosingLine) {
    EXPECT_EQ(registerAfter("end v_reg[7:0] 8"), "v_reg");
    EXPECT_EQ(registerAfter("end v_reg 1"), "v_reg");
    EXPECT_EQ(registerAfter("end v_reg"), "v_reg");
    EXPECT_EQ(registerAfter("a b c d e"), "b");
    EXPECT_EQ(registerAfter("reg: v_reg[7:0] 8"), "v_reg");
    EXPECT_EQ(registerAfter("reg: v_reg"), "v_reg");
    EXPECT_EQ(registerAfter("at: f.cpp:12 col"), "f.cpp:12");
}

TEST(HLSFile, LeavesTheRegisterEmptyAfterAClosingLineOfOneWord) {
    for (const char* line : {"end", "end ", "v_reg[7:0]", "f.cpp:12", "reg:", "local", "RTL"}) {
        EXPECT_EQ(registerAfter(line), "") << line;
    }
}

TEST(HLSFile, ClosesABlockAtAnEmptyLine) {
    EXPECT_EQ(registerAfter(""), "");
    EXPECT_EQ(registerAfter("\r"), "");
    EXPECT_EQ(registerAfter("\v"), "");
    EXPECT_EQ(registerAfter("\n" + entryAt("g.cpp:1")), "");
}

TEST(HLSFile, ReadsTheClosingLineAsNothingElse) {
    EXPECT_EQ(registerAfter("RTL 2 state (y)"), "2");
    EXPECT_EQ(registerAfter("RTL r[1:0] state (y)\n local w"), "r");
    EXPECT_EQ(registerAfter("local w"), "w");
    EXPECT_EQ(registerAfter("Begin Function f"), "Function");
    EXPECT_EQ(registerAfter("End Function f"), "Function");
    expectSilentFailure("Begin Function f\n" + openBlock + "End Function f\n");
    expectSilentFailure(openBlock + "Begin Function f\nEnd Function f\n");
}

TEST(HLSFile, TakesTheLineBehindTheClosingOneForANewLine) {
    EXPECT_THAT(conditionsIn(openBlock + "RTL 2 state (y)\n" + entryAt("g.cpp:2")),
                ElementsAre(at("f.cpp", 1), at("g.cpp", 2)));
    expectSilentFailure(openBlock + "end v_reg 1\nend v_reg 1\n");
    expectSilentFailure(openBlock + "\nat: f.cpp:2\n");
}

TEST(HLSFile, LetsTheClosingLineSetTheRegisterInAnyCase) {
    EXPECT_EQ(registerAfter("reg: a[7:0]\nend a[7:0] 8"), "a");
    EXPECT_EQ(registerAfter("reg: a[7:0]\nend b[3:0] 4"), "b");
    EXPECT_EQ(registerAfter("reg: a[7:0]\nreg: b[3:0]\nend"), "");
    EXPECT_EQ(registerAfter("reg: a[7:0]\n"), "");
}

TEST(HLSFile, TakesARegisterLineForNoSourceLine) {
    EXPECT_THAT(conditionsIn("RTL 1 s (x)\nlocal v\nreg: f:1\nend f 1\n"), IsEmpty());
    EXPECT_THAT(conditionsIn("RTL 1 s (x)\nlocal v\nreg: r[7:0]\nat: f:1\nend r 8\n"),
                ElementsAre(at("f", 1)));
}

TEST(HLSFile, SkipsIndentedLinesInABlock) {
    EXPECT_THAT(variablesIn("RTL 1 s (x)\nlocal v\n \n\t\n at: g:7\nat: f:1\n\tend a 1\n"
                            "  local w\n    \nend b 1\n"),
                ElementsAre(held("v", "b")));
    EXPECT_THAT(conditionsIn("RTL 1 s (x)\nlocal v\n at: g:7\nat: f:1\n\tat: g:8\n\n"),
                ElementsAre(at("f", 1)));
}

// Registers

TEST(HLSFile, TakesTheTextBeforeTheFirstBracketForTheRegister) {
    for (const char* range : {"[7:0]",
                              "[7]",
                              "[:0]",
                              "[7:]",
                              "[:]",
                              "[]",
                              "[",
                              "[7:0",
                              "[7",
                              "[:",
                              "[]:",
                              "[]7:0",
                              "[1][7:0]",
                              "[a:b]",
                              "[7:0]x",
                              "[-1:-8]",
                              "[0:7]",
                              "[0:4294967295]",
                              "[4294967295:0]",
                              "[99999999999999999999:0]",
                              "[7:99999999999999999999]"}) {
        EXPECT_EQ(registerAfter("end v_q" + std::string(range) + " 1"), "v_q") << range;
        EXPECT_EQ(registerAfter("reg: a" + std::string(range) + ":\nend v_q 1"), "v_q") << range;
    }
    EXPECT_EQ(registerAfter("end [7:0] 8"), "");
    EXPECT_EQ(registerAfter("end a/b.c[7:0] 8"), "a/b.c");
    EXPECT_EQ(registerAfter("end v:q[7:0] 8"), "v:q");
    EXPECT_EQ(registerAfter("end v]7:0[ 8"), "v]7:0");
}

TEST(HLSFile, TakesTheWholeWordWithoutABracket) {
    for (const char* word : {"v_q", "v_q]", "v_q:0", "v_q:0]", ":", "]", "7"}) {
        EXPECT_EQ(registerAfter("end " + std::string(word) + " 1"), word);
    }
}

// The end of the file

TEST(HLSFile, NeedsNoNewlineBehindTheLastLine) {
    EXPECT_THAT(variablesIn(openBlock + "end v_reg 1"), ElementsAre(held("v", "v_reg")));
    EXPECT_EQ(binaryForm(kernelIn("Begin Function f\nEnd Function f")), record({}));
    EXPECT_EQ(binaryForm(kernelIn("RTL 1 s (x)")), record({}));
}

TEST(HLSFile, ClosesABlockAtTheEndOfTheFileWithoutARegister) {
    for (const char* end : {"", "\n", "\nreg: v_reg[7:0]", "\nreg: v_reg[7:0]\n", "\n ", "\n \n",
                            "\n\tend v_reg 1", "\n  end v_reg 1\n", "\n\n"}) {
        const std::string text = "RTL 1 s (x)\nlocal v\nat: f:1" + std::string(end);
        EXPECT_THAT(variablesIn(text), ElementsAre(held("v", ""))) << text;
        EXPECT_THAT(conditionsIn(text), ElementsAre(at("f", 1))) << text;
    }
}

TEST(HLSFile, ClosesABlockThatHasNoLines) {
    for (const char* end : {"local w", "local w\n", "local w\n \t\n"}) {
        EXPECT_THAT(variablesIn(openBlock + "end v_reg 1\n" + end),
                    ElementsAre(held("v", "v_reg"), held("w", "")))
            << end;
    }
}

TEST(HLSFile, RefusesAnOpenFunctionAlsoWhenTheFileEndsInABlock) {
    expectSilentFailure("Begin Function f\n" + openBlock);
}

// Line ends and odd bytes

TEST(HLSFile, ReadsLinesWithCarriageReturnsIntoConditionsWithABlank) {
    const std::string text = "Begin Function f\r\nRTL 1 s (x == y)\r\nlocal v\r\nat: f.cpp:1\r\n"
                             "reg: v_reg[7:0]\r\n \r\nend v_reg[7:0] 8\r\nEnd Function f\r\n";
    EXPECT_THAT(conditionsIn(text), ElementsAre(at("f.cpp", 1, "(x == y) ")));
    EXPECT_THAT(variablesIn(text), ElementsAre(held("v", "v_reg")));
}

TEST(HLSFile, ReadsARegisterThatEndsWithACarriageReturn) {
    EXPECT_EQ(registerAfter("end v_reg\r"), "v_reg");
}

TEST(HLSFile, EndsLinesAtLineFeedsOnly) {
    EXPECT_EQ(conditionOf("RTL 1 state x\rlocal w\rat: f:1"), "x local w at: f:1");
}

TEST(HLSFile, EndsALineAtItsFirstZeroByte) {
    EXPECT_EQ(conditionOf(bytes("RTL 1 state (x)\0 == y")), "(x)");
    EXPECT_EQ(conditionOf(bytes("\0text\nRTL 1 state (x)")), "(x)");
    EXPECT_EQ(placeOf(bytes("at: f:12\0003 x")), at("f", 12));
    EXPECT_EQ(registerAfter(bytes("\0end v_reg 1")), "");
    EXPECT_EQ(registerAfter(bytes("end v_reg\0x 1")), "v_reg");
    expectSilentFailure(bytes("text\0\n"));
}

TEST(HLSFile, TakesHighBytesAsPartsOfWords) {
    EXPECT_THAT(variablesIn("RTL 1 s (x)\nlocal \xC3\xA9\xA0\nat: \xFF\x85:1\nend \xE4[1:0] 2\n"),
                ElementsAre(held("\xC3\xA9\xA0", "\xE4")));
}

// Long lines

/// A line of so many characters.
std::string lineOf(std::size_t length, const std::string& begin) {
    return begin + std::string(length - begin.size(), 'c');
}

TEST(HLSFile, ReadsLinesOfUpTo1022Characters) {
    for (const std::size_t length : {1021U, 1022U}) {
        EXPECT_EQ(conditionOf(lineOf(length, "RTL 1 s ")), std::string(length - 8, 'c')) << length;
        EXPECT_THAT(variablesIn(openBlock + lineOf(length, "end ")),
                    ElementsAre(held("v", std::string(length - 4, 'c'))))
            << length;
        const std::string indented = lineOf(length, " ");
        EXPECT_EQ(registerAfter(indented + "\nend r"), "r") << length;
        EXPECT_EQ(binaryForm(kernelIn(indented)), record({})) << length;
        EXPECT_EQ(binaryForm(kernelIn(indented + "\n")), record({})) << length;
    }
}

TEST(HLSFile, FailsInSilenceOnALongerLine) {
    for (const std::size_t length : {1023U, 1024U, 100000U}) {
        for (const char* begin : {"RTL 1 s ", " ", "\t"}) {
            const std::string line = lineOf(length, begin);
            expectSilentFailure(line);
            expectSilentFailure(line + "\n");
            expectSilentFailure(amidOthers(line));
        }
        expectSilentFailure(std::string(length, '\0') + "\n");
    }
}

TEST(HLSFile, FailsInSilenceOnALongerLineInABlock) {
    for (const char* begin : {"end ", "at: f:1", "reg: a[1:0]", " ", "\t"}) {
        const std::string line = lineOf(1023, begin);
        expectSilentFailure(openBlock + line);
        expectSilentFailure(openBlock + line + "\n");
        expectSilentFailure(openBlock + line + "\nend v_reg 1\n");
    }
}

TEST(HLSFile, CountsACarriageReturnAsACharacterOfTheLine) {
    const std::string line = "RTL 1 s " + std::string(1013, 'c');
    EXPECT_EQ(conditionOf(line + "\r"), std::string(1013, 'c') + ' ');
    expectSilentFailure(line + "c\r\n");
}

// Files that cannot be read

TEST(HLSFile, FailsInSilenceOnADirectory) {
    const TemporaryDirectory directory;
    for (const char* name : {".", ""}) {
        const Reading reading = readFile<HLSFile>(directory.path(name));
        EXPECT_FALSE(reading.succeeded);
        EXPECT_THAT(reading.kernels, IsEmpty());
        EXPECT_EQ(reading.stop(), stopAt(1, "the file cannot be read"));
    }
}

TEST(HLSFile, FailsInSilenceWhereReadingBreaksOff) {
    for (const std::string& text : {entryAt("f:1"), openBlock, openBlock + " ", openBlock + "end",
                                    std::string("RTL 1 s (x)")}) {
        const Reading reading = readBroken<HLSFile>(text);
        EXPECT_FALSE(reading.succeeded) << text;
        EXPECT_THAT(reading.kernels, IsEmpty()) << text;
        EXPECT_EQ(reading.stop().text, "the file cannot be read") << text;
    }
}

// Explanations

TEST(HLSFile, ExplainsWhyItStoppedAndWhere) {
    EXPECT_EQ(stopOf("\nBegin Function f\nBegin\n"),
              stopAt(3, "a line cannot begin with \"Begin\""));
    EXPECT_EQ(stopOf(" \n\r\n"), stopAt(2, "the line is empty but for a carriage return"));
    EXPECT_EQ(stopOf("\n\nEnd Function f\n"), stopAt(3, "a function ends that has not begun"));
    EXPECT_EQ(stopOf("Begin Function f\nBegin Function g\nEnd Function g\n"),
              stopAt(1, "function \"f\" begins and does not end"));
    EXPECT_EQ(stopOf("\nlocal v\n"), stopAt(2, "\"local\" comes before the first \"RTL\""));
}

TEST(HLSFile, CountsTheLinesOfBlocks) {
    EXPECT_EQ(stopOf(openBlock + " \n\nend v_reg 1\n"),
              stopAt(6, "a line cannot begin with \"end\""));
}

TEST(HLSFile, ExplainsThatALineIsTooLong) {
    const Finding reason = stopAt(5, "the line has more than 1022 characters");
    EXPECT_EQ(stopOf(openBlock + "\nRTL " + std::string(1019, 'c') + "\n"), reason);
    EXPECT_EQ(stopOf(openBlock + "\n " + std::string(1022, 'c') + "\n"), reason);
    EXPECT_EQ(stopOf(openBlock + "at: f:2\n " + std::string(1022, 'c') + "\n"), reason);
    EXPECT_EQ(stopOf(openBlock + " \nend " + std::string(1019, 'c') + "\n"), reason);
}

TEST(HLSFile, ExplainsThatTheFileCannotBeOpened) {
    const TemporaryDirectory directory;
    EXPECT_EQ(HLSFile(directory.path("missing")).diagnostic().stopped(),
              stopAt(0, "cannot be opened: No such file or directory"));
}

TEST(HLSFile, RemarksOnEntriesThatArePassedOver) {
    EXPECT_THAT(
        remarksOn("RTL 1 s (x)\n\n" + entryAt("f:7") + "RTL 1 s (x)\nlocal v\n\n" + entryAt("g:7")),
        ElementsAre(
            noteAt(1, Code::NoSourceLine, "the entry has no source line and is passed over"),
            noteAt(7, Code::NoSourceLine, "the entry has no source line and is passed over"),
            noteAt(10, Code::RepeatedSourceLine,
                   "an entry for source line 7 came before; this one is passed over")));
}

TEST(HLSFile, RemarksOnAFileWithoutEntries) {
    for (const char* text :
         {"", " RTL 1 s (x)\n", "Begin Function f\n\tRTL 1 s (x)\nEnd Function f\n"}) {
        EXPECT_THAT(remarksOn(text), ElementsAre(warningAt(
                                         0, Code::NoEntry,
                                         "no line begins with \"RTL\": the kernel has no variables "
                                         "and no source lines (lines that begin with a blank or a "
                                         "tab are skipped)")))
            << text;
    }
    EXPECT_THAT(remarksOn(entryAt("f:7")), IsEmpty());
}

// Damaged and large files

TEST(HLSFile, RefusesThoseBeginningsOfAFileThatLeaveItsFunctionOpen) {
    const std::size_t whole =
        typicalText.rfind("End Function") + std::string_view("End Function").size();
    for (std::size_t size = 0; size <= typicalText.size(); ++size) {
        const Reading reading = readHls(typicalText.substr(0, size));
        EXPECT_EQ(reading.succeeded, size == 0 || size >= whole) << size;
        EXPECT_EQ(reading.kernels.size(), reading.succeeded ? 1U : 0U) << size;
    }
}

TEST(HLSFile, ReadsAFileOfManyEntries) {
    std::string text;
    std::vector<ConditionFields> expected;
    for (std::uint32_t i = 1; i <= 20000; ++i) {
        text += entryAt("f.cpp:" + std::to_string(i));
        expected.push_back(at("f.cpp", i));
    }
    EXPECT_TRUE(conditionsIn(text) == expected);
    EXPECT_THAT(variablesIn(text), ElementsAre(held("v", "v_reg")));
}

} // namespace

} // namespace consolidator::test
