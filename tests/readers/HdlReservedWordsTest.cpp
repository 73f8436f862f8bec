// The reserved words of the hardware description languages, each one of them, and the two mappings
// between source and port names.

#include "readers/HdlReservedWords.h"

#include "tests/support/Bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::Contains;
using testing::Not;

/// The words between the blanks.
std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

// The words in five runs. Some stand in more than one of them.

const std::vector<std::string> keywords = wordsOf(
    "abs access after alias all and architecture array assert attribute begin block body "
    "buffer bus case casex casez cell cmos config deassign default defparam design disable "
    "edge else end endcase endconfig endmodule endfunction endgenerate endprimitive "
    "endspecify endtable endtask event for force forever fork function generate genvar highz0 "
    "highz1 if ifnone initial inout input instance integer join large liblist library "
    "localparam macromodule medium module nand negedge nmos none nor noshowcancelled not "
    "notif0 notif1 or output parameter pulsestyle_onevent pulsestyle_ondetect pmos posedge "
    "primitive pull0 pull1 pullup pulldown real realtime reg release repeat rcmos rnmos rpmos "
    "rtran rtranif0 rtanif1 scalared showcancelled signed small specify specparam strength "
    "strong0 strong1 supply0 supply1 table task time tran tranif0 tranif1 tri tri1 tri0 "
    "triand trior trireg use vectored wait wand weak0 weak1 while wire wor");

const std::vector<std::string> moreKeywords = wordsOf(
    "always assign automatic begin buf bufif0 bufif1 case component configuration constant "
    "disconnect downto else elsif end entity exit file for function generate generic group "
    "guarded if impure in inertial inout is label library linkage literal loop map mod nand "
    "new next nor not null of on open or others out package port postponed procedure process "
    "pure range record register reject rem report return rol ror select severity signal "
    "shared sla sll sra srl subtype then to transport type unaffected untis until use "
    "variable wait when while with xnor xor");

const std::vector<std::string> attributes = wordsOf(
    "active ascending base delayed driving driving_value event falling_edge high image "
    "instance_name last_active last_event last_value left leftof length low path_name pos "
    "pred quiet reverse_range right rightof rising_edge simple_name stable succ transaction "
    "val value");

const std::vector<std::string> types =
    wordsOf("bit bit_vector boolean character integer line natural positive real signed std_logic "
            "std_logic_vector string text time unsigned");

const std::vector<std::string> fileOperations =
    wordsOf("endfile file_close file_open read readline write writeline");

std::vector<std::string> allRuns() {
    std::vector<std::string> words;
    for (const auto* run : {&keywords, &moreKeywords, &attributes, &types, &fileOperations}) {
        words.insert(words.end(), run->begin(), run->end());
    }
    return words;
}

std::string sourceName(const std::string& hardwareName) {
    return HdlReservedWords().sourceName(hardwareName);
}

std::string hardwareName(const std::string& sourceName) {
    return HdlReservedWords().hardwareName(sourceName);
}

void expectKept(const std::string& hardwareName) {
    EXPECT_EQ(sourceName(hardwareName), hardwareName);
}

TEST(HdlReservedWords, AreTheDistinctWordsOfFiveRuns) {
    EXPECT_EQ(keywords.size(), 127U);
    EXPECT_EQ(moreKeywords.size(), 89U);
    EXPECT_EQ(attributes.size(), 32U);
    EXPECT_EQ(types.size(), 16U);
    EXPECT_EQ(fileOperations.size(), 7U);
    const std::vector<std::string> all = allRuns();
    const std::set<std::string> distinct(all.begin(), all.end());
    const HdlReservedWords reserved;
    const auto& words = reserved.words();
    EXPECT_EQ(words.size(), 249U);
    EXPECT_EQ(std::set<std::string>(words.begin(), words.end()), distinct);
}

TEST(HdlReservedWords, KeepTwoOddSpellingsAndLackTheUsualOnes) {
    const auto& words = HdlReservedWords::shared().words();
    EXPECT_THAT(words, Contains("rtanif1"));
    EXPECT_THAT(words, Contains("untis"));
    EXPECT_THAT(words, Not(Contains("rtranif1")));
    EXPECT_THAT(words, Not(Contains("units")));
}

TEST(HdlReservedWords, AreTheSameInEverySet) {
    EXPECT_EQ(HdlReservedWords::shared().words(), HdlReservedWords().words());
}

TEST(HdlReservedWords, ShareOneSetInTheProcess) {
    EXPECT_EQ(&HdlReservedWords::shared(), &HdlReservedWords::shared());
}

TEST(SourceName, DropsTheSuffixOfEveryReservedWordButOne) {
    for (const std::string& word : allRuns()) {
        if (word != "reverse_range") {
            EXPECT_EQ(sourceName(word + "_r"), word);
        }
    }
}

TEST(SourceName, KeepsTheSuffixOfTheReservedWordThatHasOneInside) {
    expectKept("reverse_range_r");
}

TEST(SourceName, KeepsEveryReservedWordWithoutSuffix) {
    for (const std::string& word : allRuns()) {
        expectKept(word);
    }
}

TEST(SourceName, IsThatOfTheWellKnownPorts) {
    EXPECT_EQ(sourceName("input_r"), "input");
    EXPECT_EQ(sourceName("output_r"), "output");
    EXPECT_EQ(sourceName("wire_r"), "wire");
    EXPECT_EQ(sourceName("std_logic_r"), "std_logic");
}

TEST(SourceName, KeepsOtherWordsWithTheSuffix) {
    expectKept("data_r");
    expectKept("myarg_r");
    expectKept("inputs_r");
    expectKept("nput_r");
}

TEST(SourceName, KeepsNamesThatAreNoMoreThanTheSuffix) {
    expectKept("");
    expectKept("_");
    expectKept("r");
    expectKept("_r");
}

TEST(SourceName, ComparesLettersExactly) {
    expectKept("Input_r");
    expectKept("INPUT_r");
    expectKept("input_R");
}

TEST(SourceName, FollowsTheOddSpellings) {
    EXPECT_EQ(sourceName("rtanif1_r"), "rtanif1");
    EXPECT_EQ(sourceName("untis_r"), "untis");
    expectKept("rtranif1_r");
    expectKept("units_r");
}

TEST(SourceName, KeepsNamesWithAnEarlierSuffix) {
    expectKept("a_r_r");
    expectKept("input_r_r");
    expectKept("_r_r");
    expectKept("_rinput_r");
    expectKept("input_read_r");
}

TEST(SourceName, NeedsTheSuffixAtTheVeryEnd) {
    expectKept("input_r0");
    expectKept("input_r ");
    expectKept("input_rr");
    expectKept("inputr");
    expectKept("input_");
}

TEST(SourceName, ComparesTheWholeName) {
    expectKept(" input_r");
    expectKept("my_input_r");
    expectKept(bytes("input\0_r"));
}

TEST(SourceName, DropsTheSuffixOnceOnly) {
    EXPECT_EQ(sourceName(sourceName("in_r")), "in");
}

TEST(HardwareName, HasTheSuffixBehindEveryReservedWord) {
    for (const std::string& word : allRuns()) {
        EXPECT_EQ(hardwareName(word), word + "_r");
    }
    EXPECT_EQ(hardwareName("begin"), "begin_r");
    EXPECT_EQ(hardwareName("reverse_range"), "reverse_range_r");
}

TEST(HardwareName, IsTheSourceNameOtherwise) {
    for (const std::string name :
         {"count", "", "r", "_r", "Begin", "begin_r", "rtranif1", "units"}) {
        EXPECT_EQ(hardwareName(name), name);
    }
}

TEST(HardwareName, FollowsTheOddSpellings) {
    EXPECT_EQ(hardwareName("rtanif1"), "rtanif1_r");
    EXPECT_EQ(hardwareName("untis"), "untis_r");
}

} // namespace

} // namespace consolidator::test
