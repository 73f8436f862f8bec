// What of an HLS file does not reach its kernel.

#include "inspect/check/InputCheck.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An entry with a variable, of four lines; without a place, of three.
std::string entry(const std::string& place, const std::string& variable,
                  const std::string& hardwareName) {
    return "RTL 1 s (x == 1)\nlocal " + variable + '\n' +
           (place.empty() ? "" : "at: " + place + '\n') + "end " + hardwareName + "[1:0] 2\n";
}

/// Each with its line and its code.
std::vector<std::string> lossesOf(const std::string& text) {
    const consolidator::test::TemporaryDirectory directory;
    InputPaths inputs;
    inputs.hlsFiles = {directory.write("k.hls", text)};
    ConsolidatedFile database;
    Findings findings;
    std::ostream nowhere(nullptr);
    Progress progress(nowhere, false);
    InputCheck check(database, findings, progress);
    addInputs(database, inputs, nowhere, &check);
    std::vector<std::string> result;
    for (const Finding& finding : findings.kept()) {
        if (finding.code != Code::LostSourceLine && finding.code != Code::LostVariable &&
            finding.code != Code::RepeatedVariable) {
            continue;
        }
        EXPECT_EQ(finding.file, inputs.hlsFiles.front());
        EXPECT_EQ(finding.severity, Severity::Warning);
        result.push_back(std::to_string(finding.line) + ' ' + std::string(word(finding.code)) +
                         ": " + finding.text);
    }
    return result;
}

TEST(HlsLosses, AreNoneWhereEntriesAgree) {
    EXPECT_THAT(lossesOf(""), IsEmpty());
    EXPECT_THAT(lossesOf(entry("a.cpp:1", "v", "v_reg") + entry("b.cpp:2", "w", "w_reg") +
                         entry("a.cpp:1", "v", "v_reg") + entry("", "w", "w_reg")),
                IsEmpty());
}

TEST(HlsLosses, AreSourceLinesOfTwoFilesWithOneNumber) {
    EXPECT_THAT(lossesOf(entry("a.cpp:1", "v", "v_reg") + entry("b.cpp:1", "v", "v_reg") +
                         entry("b.cpp:1", "v", "v_reg")),
                ElementsAre("5 lost-source-line: source line 1 of \"b.cpp\" is lost: entries are "
                            "told apart by the line's number alone, and the entry in line 1 has it "
                            "for \"a.cpp\""));
}

TEST(HlsLosses, AreVariablesOfEntriesThatDoNotCount) {
    EXPECT_THAT(
        lossesOf(entry("a.cpp:1", "v", "v_reg") + entry("a.cpp:1", "w", "w_reg") +
                 entry("", "x", "x_reg") + entry("a.cpp:1", "w", "w_reg") +
                 entry("a.cpp:1", "y", "y_reg") + entry("a.cpp:2", "y", "y_reg")),
        ElementsAre(
            "5 lost-variable: variable \"w\" is lost with its entry, which is passed over",
            "9 lost-variable: variable \"x\" is lost with its entry, which has no source line"));
}

TEST(HlsLosses, AreFurtherRegistersOfAVariable) {
    EXPECT_THAT(
        lossesOf(entry("a.cpp:1", "v", "v_reg") + entry("a.cpp:2", "v", "v_q") +
                 entry("a.cpp:3", "v", "v_q")),
        ElementsAre("5 repeated-variable: variable \"v\" has hardware name \"v_q\" here and "
                    "\"v_reg\" before, and the first one counts"));
}

} // namespace

} // namespace consolidator::inspect::test
