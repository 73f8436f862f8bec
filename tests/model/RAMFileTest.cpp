// The RAM report reader: which rows of a report it matches with which instances. What it finds
// shows in its diagnostic only.

#include "model/RAMFile.h"

#include "tests/support/Bytes.h"
#include "tests/support/Kernels.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Reading.h"
#include "tests/support/SampleKernel.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string heading3 = "3. Memory Utilization - Inferred";
const std::string heading4 = "4. Memory Performance - Inferred";
const std::string heading6 = "6. Memory Utilization - Instantiated";
const std::string heading7 = "7. Memory Utilization - Instantiated";
const std::string heading8 = "8. Block Ram / URAM Memory Power - Instantiated";

Kernel kernelAt(const std::string& name, const std::vector<std::string>& instancePaths) {
    return kernelOf({.name = name, .instancePaths = instancePaths});
}

const std::vector<Kernel> oneKernel = {kernelAt("scale_rows", {"top/k_1"})};

/// A row that belongs to the kernel in `oneKernel`.
const std::string matchingRow = "|top/k_1|RAMB|";

/// The remark on a match.
Finding match(std::uint64_t line, const std::string& cell,
              const std::string& kernel = "scale_rows") {
    return noteAt(line, Code::BlockRam,
                  "block RAM \"" + cell + "\" belongs to kernel \"" + kernel +
                      "\"; its name is not stored");
}

/// The remark on a match with a kernel and others.
Finding matchOfSeveral(std::uint64_t line, const std::string& cell, const std::string& kernel,
                       const std::string& others) {
    return noteAt(line, Code::BlockRam,
                  "block RAM \"" + cell + "\" belongs to kernel \"" + kernel + "\" and " + others +
                      "; its name is not stored");
}

/// A report, of which the rows begin at line 3.
std::string report(const std::string& rows) {
    return heading8 + "\n" + heading3 + "\n" + rows;
}

/// Reads a report, which must succeed.
Reading readReport(const std::string& text, const std::vector<Kernel>& kernels = oneKernel) {
    Reading reading = readText<RAMFile>(text, kernels);
    EXPECT_TRUE(reading.succeeded) << text;
    EXPECT_THAT(reading.kernels, IsEmpty()) << text;
    return reading;
}

/// The matches in a report that must be read to its end.
std::vector<Finding> matchesIn(const std::string& text,
                               const std::vector<Kernel>& kernels = oneKernel) {
    const Reading reading = readReport(text, kernels);
    EXPECT_FALSE(reading.diagnostic.stopped()) << text;
    return reading.diagnostic.remarks();
}

/// The matches of one row of a wanted table, which stands at line 3.
std::vector<Finding> matchesOf(const std::string& row,
                               const std::vector<Kernel>& kernels = oneKernel) {
    return matchesIn(report(row + "\n"), kernels);
}

/// Whether a row counts behind these lines.
bool isTableBehind(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return !matchesIn(text + matchingRow + "\n").empty();
}

/// All that the kernels hold.
std::string formOf(const std::vector<Kernel>& kernels) {
    std::string result;
    for (const Kernel& kernel : kernels) {
        result += binaryForm(kernel);
    }
    return result;
}

const std::string typicalReport = "RAM Utilization Report\n"
                                  "\n"
                                  "Table of Contents\n"
                                  "-----------------\n"
                                  "3. Memory Utilization - Inferred\n"
                                  "|top/k_1/contents|RAMB|\n"
                                  "4. Memory Performance - Inferred\n"
                                  "6. Memory Utilization - Instantiated\n"
                                  "7. Memory Utilization - Instantiated\n"
                                  "8. Block Ram / URAM Memory Power - Instantiated\n"
                                  "\n"
                                  "3. Memory Utilization - Inferred\n"
                                  "--------------------------------\n"
                                  "+-----------------+------------+-------+\n"
                                  "| Memory Name     | Type       | Depth |\n"
                                  "+-----------------+------------+-------+\n"
                                  "| top/k_1/ram_reg | RAMB_BIG   | 1024  |\n"
                                  "| top/k_1/lut_reg | LUT        | 16    |\n"
                                  "| top/k_2/ram_reg | RAMB_SMALL | 512   |\n"
                                  "+-----------------+------------+-------+\n"
                                  "\n"
                                  "4. Memory Performance - Inferred\n"
                                  "| top/k_1/speed   | RAMB_BIG   | 1024  |\n"
                                  "6. Memory Utilization - Instantiated\n"
                                  "| top/c_1/table   | RAMB_BIG   | 1024  |\n"
                                  "7. Memory Utilization - Instantiated\n"
                                  "| top/c_1/power   | RAMB_BIG   | 1024  |\n";

const std::vector<Kernel> twoKernels = {kernelAt("scale_rows", {"top/k_1", "top/k_2"}),
                                        kernelAt("checksum", {"top/c_1"})};

const std::vector<Finding> typicalMatches = {match(17, " top/k_1/ram_reg "),
                                             match(19, " top/k_2/ram_reg "),
                                             match(25, " top/c_1/table   ", "checksum")};

// The whole

TEST(RAMFile, MatchesTheRowsOfBothTables) {
    EXPECT_EQ(matchesIn(typicalReport, twoKernels), typicalMatches);
}

TEST(RAMFile, ReadsAFileNamedByItsPath) {
    const TemporaryDirectory directory;
    const Reading reading =
        readFile<RAMFile>(directory.write("ram.rpt", typicalReport), twoKernels);
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.diagnostic.remarks(), typicalMatches);
    EXPECT_THAT(reading.kernels, IsEmpty());
}

TEST(RAMFile, LeavesTheProjectsKernelsAsTheyAre) {
    const std::vector<Kernel> kernels = {sampleKernel(), kernelAt("checksum", {"top/k_1"})};
    const std::string before = formOf(kernels);
    EXPECT_EQ(matchesOf(matchingRow, kernels).size(), 1U);
    EXPECT_EQ(formOf(kernels), before);
    EXPECT_THAT(kernels.front().brams(), ElementsAre("buffer_U", "table_U"));
    EXPECT_THAT(kernels.back().brams(), IsEmpty());
}

TEST(RAMFile, MatchesTheKernelsThatTheProjectHasWhenItIsRead) {
    std::vector<Kernel> kernels;
    std::ostringstream errors;
    RAMFile reader(std::make_unique<std::stringbuf>(report(matchingRow)), kernels, errors);
    kernels = oneKernel;
    EXPECT_TRUE(reader.parse());
    EXPECT_THAT(reader.diagnostic().remarks(), ElementsAre(match(3, "top/k_1")));
    EXPECT_EQ(errors.str(), "");
}

TEST(RAMFile, FindsNothingWithoutKernelsOrPaths) {
    EXPECT_THAT(matchesIn(typicalReport, {}), IsEmpty());
    EXPECT_THAT(matchesIn(typicalReport, {kernelAt("scale_rows", {}), kernelNamed("top/k_1")}),
                IsEmpty());
}

TEST(RAMFile, AcceptsAnyFile) {
    for (const char* text : {"", "\n", "\n\n \t\r\n", "text", "|a|b|\n", "-\n", "+\n", "\r"}) {
        EXPECT_THAT(matchesIn(text), IsEmpty()) << testing::PrintToString(text);
    }
}

TEST(RAMFile, FailsWhenTheFileIsNotOpen) {
    const TemporaryDirectory directory;
    std::ostringstream errors;
    RAMFile reader(directory.path("missing"), oneKernel, errors);
    EXPECT_FALSE(reader.isOpen());
    EXPECT_FALSE(reader.parse());
    EXPECT_EQ(errors.str(), "");
    EXPECT_EQ(reader.diagnostic().stopped(),
              stopAt(0, "cannot be opened: No such file or directory"));
}

TEST(RAMFile, TellsHowManyBlockRamsItHasSeenInTables) {
    const auto seenIn = [](const std::string& text) {
        RAMFile reader(std::make_unique<std::stringbuf>(text), oneKernel);
        EXPECT_TRUE(reader.parse());
        return std::pair(reader.hasTable(), reader.blockRamCount());
    };
    EXPECT_EQ(seenIn(""), std::pair(false, std::uint64_t{0}));
    EXPECT_EQ(seenIn(heading3 + "\n" + matchingRow + "\n" + heading8 + "\n"),
              std::pair(false, std::uint64_t{0}));
    EXPECT_EQ(seenIn(report("|a|LUT|\n")), std::pair(true, std::uint64_t{0}));
    EXPECT_EQ(seenIn(report("|a|RAMB|\n|a|LUT|\n" + matchingRow)),
              std::pair(true, std::uint64_t{2}));
}

TEST(RAMFile, ReadsItsFileOnce) {
    RAMFile reader(std::make_unique<std::stringbuf>(report(matchingRow)), oneKernel);
    EXPECT_TRUE(reader.parse());
    EXPECT_FALSE(reader.parse());
    EXPECT_EQ(reader.diagnostic().remarkCount(), 1U);
}

// The tables

TEST(RAMFile, ReadsNoTableBeforeTheContentsAreOver) {
    EXPECT_FALSE(isTableBehind({}));
    EXPECT_FALSE(isTableBehind({heading3}));
    EXPECT_FALSE(isTableBehind({heading6}));
    EXPECT_FALSE(isTableBehind({heading3, heading8}));
    EXPECT_FALSE(isTableBehind({heading6, heading8}));
    EXPECT_FALSE(isTableBehind({heading3, heading4, heading6, heading7, heading8}));
}

TEST(RAMFile, ReadsATableBehindItsHeadingOnceTheContentsAreOver) {
    EXPECT_FALSE(isTableBehind({heading8}));
    EXPECT_TRUE(isTableBehind({heading8, heading3}));
    EXPECT_TRUE(isTableBehind({heading8, heading6}));
    EXPECT_TRUE(isTableBehind({heading3, heading6, heading8, heading3}));
    EXPECT_TRUE(isTableBehind({heading3, heading6, heading8, heading6}));
    EXPECT_TRUE(isTableBehind({heading8, "", "text", "9. Other", heading3, "", "----", "text"}));
}

TEST(RAMFile, EndsEitherTableAtEitherEndingLine) {
    EXPECT_FALSE(isTableBehind({heading8, heading3, heading4}));
    EXPECT_FALSE(isTableBehind({heading8, heading3, heading7}));
    EXPECT_FALSE(isTableBehind({heading8, heading6, heading7}));
    EXPECT_FALSE(isTableBehind({heading8, heading6, heading4}));
}

TEST(RAMFile, EntersEitherTableAgain) {
    for (const std::string& first : {heading3, heading6}) {
        for (const std::string& end : {heading4, heading7}) {
            for (const std::string& second : {heading3, heading6}) {
                EXPECT_TRUE(isTableBehind({heading8, first, end, second}))
                    << first << ", " << end << ", " << second;
                EXPECT_FALSE(isTableBehind({heading8, first, end, second, end}))
                    << first << ", " << end << ", " << second;
            }
        }
    }
}

TEST(RAMFile, TakesNoOtherHeadingForTheEndOfATable) {
    EXPECT_TRUE(isTableBehind({heading8, heading3, heading6}));
    EXPECT_TRUE(isTableBehind({heading8, heading6, heading3}));
    EXPECT_TRUE(isTableBehind({heading8, heading3, heading3}));
    EXPECT_TRUE(isTableBehind({heading8, heading6, heading8}));
    EXPECT_TRUE(isTableBehind({heading8, heading3, "5. Memory Power - Inferred"}));
    EXPECT_FALSE(isTableBehind({heading8, heading3, heading6, heading4}));
}

TEST(RAMFile, IgnoresAnEndingLineOutsideOfATable) {
    EXPECT_FALSE(isTableBehind({heading8, heading4}));
    EXPECT_FALSE(isTableBehind({heading8, heading7, heading7, heading7}));
    EXPECT_FALSE(isTableBehind({heading8, heading3, heading4, heading4}));
    EXPECT_FALSE(isTableBehind({heading8, heading3, heading4, heading7, heading4, heading7}));
    EXPECT_TRUE(isTableBehind({heading4, heading7, heading8, heading4, heading7, heading3}));
}

TEST(RAMFile, KnowsForGoodThatTheContentsAreOver) {
    EXPECT_TRUE(isTableBehind({heading8, heading8, heading3}));
    EXPECT_TRUE(isTableBehind({heading8, heading3, heading4, heading8, heading6}));
    EXPECT_TRUE(isTableBehind({heading8, heading3, heading7, "Table of Contents", heading3}));
}

/// Lines that are almost the given heading.
std::vector<std::string> almost(const std::string& heading) {
    std::string lowerCase = heading;
    lowerCase[3] = static_cast<char>(lowerCase[3] + ('a' - 'A'));
    std::string wider = heading;
    wider.insert(2, " ");
    return {heading + " ",
            heading + "\t",
            heading + "\r",
            heading + "x",
            "x" + heading,
            "1" + heading,
            "-" + heading,
            "|" + heading + "|",
            lowerCase,
            heading.substr(3),
            heading.substr(1),
            wider,
            heading[0] + heading.substr(2),
            heading.substr(0, heading.size() - 1)};
}

TEST(RAMFile, ComparesHeadingsAsWholeLines) {
    for (const std::string& line : almost(heading8)) {
        EXPECT_FALSE(isTableBehind({line, heading3})) << line;
    }
    for (const std::string& heading : {heading3, heading6}) {
        for (const std::string& line : almost(heading)) {
            EXPECT_FALSE(isTableBehind({heading8, line})) << line;
        }
    }
    for (const std::string& heading : {heading4, heading7}) {
        for (const std::string& line : almost(heading)) {
            EXPECT_TRUE(isTableBehind({heading8, heading3, line})) << line;
        }
    }
}

TEST(RAMFile, FindsNoTableInAReportWithCarriageReturns) {
    EXPECT_FALSE(isTableBehind({heading8 + "\r", heading3 + "\r", heading6 + "\r"}));
}

TEST(RAMFile, SkipsWhiteSpaceBeforeEveryLineButTheFirst) {
    for (const char* space : {" ", "\t", "\n\n", " \r\n\v\f\t "}) {
        EXPECT_TRUE(isTableBehind({heading8, space + heading3})) << space;
        EXPECT_TRUE(isTableBehind({"", space + heading8, space + heading6})) << space;
        EXPECT_FALSE(isTableBehind({heading8, heading3, space + heading4})) << space;
    }
    EXPECT_FALSE(isTableBehind({" " + heading8, heading3}));
    EXPECT_FALSE(isTableBehind({"\t" + heading8, heading3}));
}

// Rows

TEST(RAMFile, NotesTheWholeFirstCell) {
    EXPECT_THAT(matchesOf("| top/k_1/ram_reg | RAMB_BIG | 1024 |"),
                ElementsAre(match(3, " top/k_1/ram_reg ")));
    EXPECT_THAT(matchesOf("|top/k_1|RAMB|"), ElementsAre(match(3, "top/k_1")));
    EXPECT_THAT(matchesOf("| \t<a> top/k_1 \"b\"  |RAMB|"),
                ElementsAre(match(3, " \t<a> top/k_1 \"b\"  ")));
}

TEST(RAMFile, FindsThePathAnywhereInTheFirstCell) {
    EXPECT_THAT(matchesOf("|atop/k_10/b|RAMB|"), ElementsAre(match(3, "atop/k_10/b")));
    EXPECT_THAT(matchesOf("|top/k_|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("|TOP/K_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("|top / k_1|RAMB|"), IsEmpty());
}

TEST(RAMFile, WantsRambAnywhereInTheSecondCell) {
    EXPECT_THAT(matchesOf("|top/k_1| xRAMBy |"), ElementsAre(match(3, "top/k_1")));
    for (const char* type : {"", "RAM", "AMB", "ramb", "RAM B", "LUT", "URAM"}) {
        EXPECT_THAT(matchesOf("|top/k_1|" + std::string(type) + "|"), IsEmpty()) << type;
    }
}

TEST(RAMFile, LooksAtTheFirstTwoCellsOnly) {
    EXPECT_THAT(matchesOf("|a|top/k_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("|top/k_1|a|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("|a|top/k_1 RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("|top/k_1 RAMB|a|"), IsEmpty());
    EXPECT_THAT(matchesOf("|RAMB|top/k_1|"), IsEmpty());
    EXPECT_THAT(matchesOf("||top/k_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("|top/k_1|RAMB|a|b"), ElementsAre(match(3, "top/k_1")));
}

TEST(RAMFile, DropsTheFirstCharacterOfARow) {
    EXPECT_THAT(matchesOf("xtop/k_1|RAMB|"), ElementsAre(match(3, "top/k_1")));
    EXPECT_THAT(matchesOf("atop/k_1/b|RAMB|"), ElementsAre(match(3, "top/k_1/b")));
    EXPECT_THAT(matchesOf("top/k_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("xx|top/k_1|RAMB|"), IsEmpty());
}

TEST(RAMFile, DropsTheTextBehindTheLastBar) {
    EXPECT_THAT(matchesOf("|top/k_1|RAMB"), IsEmpty());
    EXPECT_THAT(matchesOf("|top/k_1|a|RAMB"), IsEmpty());
    EXPECT_THAT(matchesOf("|a|top/k_1 RAMB"), IsEmpty());
    EXPECT_THAT(matchesOf("|top/k_1|RAMB|top/k_1"), ElementsAre(match(3, "top/k_1")));
}

TEST(RAMFile, SkipsRowsOfFewerThanTwoCells) {
    for (const char* row : {"|top/k_1 RAMB|", "|top/k_1 RAMB", "top/k_1 RAMB", "|", "x", "|a", "x|",
                            "+---------+------+", "+top/k_1 RAMB+"}) {
        EXPECT_THAT(matchesOf(row), IsEmpty()) << row;
    }
}

TEST(RAMFile, GoesOnBehindSkippedRows) {
    EXPECT_THAT(matchesIn(report("+---+\n|\n\nx\n-\n" + matchingRow + "\n|a|\n" + matchingRow)),
                ElementsAre(match(8, "top/k_1"), match(10, "top/k_1")));
}

TEST(RAMFile, IgnoresRowsThatBeginWithAMinus) {
    EXPECT_THAT(matchesOf("-top/k_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("-|top/k_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("  -top/k_1|RAMB|"), IsEmpty());
    EXPECT_THAT(matchesOf("+top/k_1|RAMB|"), ElementsAre(match(3, "top/k_1")));
    EXPECT_THAT(matchesOf("|-top/k_1|RAMB|"), ElementsAre(match(3, "-top/k_1")));
}

TEST(RAMFile, SkipsTheBlanksBeforeARow) {
    EXPECT_THAT(matchesOf("   |top/k_1|RAMB|"), ElementsAre(match(3, "top/k_1")));
    EXPECT_THAT(matchesOf(" top/k_1|RAMB|"), IsEmpty()) << "the first letter is dropped";
    EXPECT_THAT(matchesOf("\n\n\t" + matchingRow), ElementsAre(match(5, "top/k_1")));
}

TEST(RAMFile, TakesALineThatOnlyBeginsWithAHeadingForARow) {
    EXPECT_THAT(matchesIn(report(heading4 + "|RAMB|\n"), {kernelAt("k", {"Performance"})}),
                ElementsAre(match(3, heading4.substr(1), "k")));
}

TEST(RAMFile, MatchesAnEmptyPathWithEveryBlockRam) {
    const std::vector<Kernel> kernels = {kernelAt("k", {""})};
    EXPECT_THAT(matchesOf("|a|RAMB|", kernels), ElementsAre(match(3, "a", "k")));
    EXPECT_THAT(matchesOf("||RAMB|", kernels), ElementsAre(match(3, "", "k")));
    EXPECT_THAT(matchesOf("x|RAMB|", kernels), ElementsAre(match(3, "", "k")));
    EXPECT_THAT(matchesOf("|a|LUT|", kernels), IsEmpty());
    EXPECT_THAT(matchesOf("|RAMB|", kernels), IsEmpty());
}

TEST(RAMFile, MatchesARowOnceHoweverManyPathsAndKernelsItHas) {
    const std::vector<Kernel> kernels = {kernelAt("k", {"top/k_1", "top/other", "k_1/sub", "top"}),
                                         kernelAt("m", {"top/m_1"}), kernelAt("n", {"sub"}),
                                         kernelAt("k", {"top/k_1/sub"})};
    EXPECT_THAT(matchesOf("|top/k_1/sub|RAMB|", kernels),
                ElementsAre(matchOfSeveral(3, "top/k_1/sub", "k", "2 more kernels")));
    EXPECT_THAT(matchesOf("|top/m_1/sub|RAMB|", kernels),
                ElementsAre(matchOfSeveral(3, "top/m_1/sub", "k", "2 more kernels")));
    EXPECT_THAT(matchesOf("|m/sub|RAMB|", kernels), ElementsAre(match(3, "m/sub", "n")));
    EXPECT_THAT(matchesOf("|top|RAMB|", kernels), ElementsAre(match(3, "top", "k")));
    EXPECT_THAT(matchesOf("|m/subtop|RAMB|", kernels),
                ElementsAre(matchOfSeveral(3, "m/subtop", "k", "1 more kernel")));
}

TEST(RAMFile, FindsPathsOfEveryLengthThatARowCanHave) {
    const std::string longest(2039, 'x'); // its row is a line of 2046 characters
    const std::vector<Kernel> kernels = {kernelAt("k", {longest}), kernelAt("m", {longest + "x"})};
    EXPECT_THAT(matchesOf("|" + longest + "|RAMB|", kernels), ElementsAre(match(3, longest, "k")));
    EXPECT_THAT(matchesOf(longest + "|RAMB|", kernels), IsEmpty());
}

TEST(RAMFile, ReadsManyRowsForManyKernels) {
    constexpr std::size_t count = 20000;
    std::vector<Kernel> kernels;
    std::string rows;
    for (std::size_t i = 0; i < count; ++i) {
        kernels.push_back(kernelAt("k", {"top/k_" + std::to_string(i) + "/", "top/shared"}));
        rows += "|top/k_" + std::to_string(count - 1 - i) + "/ram|RAMB|\n|top/shared/ram|RAMB|\n";
    }
    EXPECT_EQ(readReport(report(rows), kernels).diagnostic.remarkCount(), 2 * count);
}

TEST(RAMFile, MatchesEqualRowsEach) {
    EXPECT_THAT(matchesIn(report(matchingRow + "\n" + matchingRow + "\n")),
                ElementsAre(match(3, "top/k_1"), match(4, "top/k_1")));
}

// Line ends and odd bytes

TEST(RAMFile, NeedsNoNewlineBehindTheLastLine) {
    EXPECT_THAT(matchesIn(report(matchingRow)), ElementsAre(match(3, "top/k_1")));
    EXPECT_THAT(matchesIn(report("|top/k_1|RAMB")), IsEmpty());
}

TEST(RAMFile, ReadsRowsWithCarriageReturns) {
    EXPECT_THAT(matchesIn(report(matchingRow + "\r\n\r\n" + matchingRow + "\r\n")),
                ElementsAre(match(3, "top/k_1"), match(5, "top/k_1")));
}

TEST(RAMFile, EndsLinesAtLineFeedsOnly) {
    EXPECT_THAT(matchesIn(heading8 + "\r" + heading3 + "\r" + matchingRow), IsEmpty());
    EXPECT_THAT(matchesIn(report("|a|LUT|\r" + matchingRow)), IsEmpty());
}

TEST(RAMFile, EndsALineAtItsFirstZeroByte) {
    EXPECT_THAT(matchesOf(bytes("|top/k_1|RA\0RAMB|")), IsEmpty());
    EXPECT_THAT(matchesOf(bytes("|top/k_1|RAMB\0|")), IsEmpty());
    EXPECT_THAT(matchesOf(bytes("\0|top/k_1|RAMB|")), IsEmpty());
    EXPECT_THAT(matchesOf(bytes("|top/k_1|RAMB|\0")), ElementsAre(match(3, "top/k_1")));
    EXPECT_TRUE(isTableBehind({heading8 + bytes("\0 more"), heading3 + bytes("\0 more")}));
    EXPECT_FALSE(isTableBehind({heading8, heading3, heading7 + bytes("\0 more")}));
}

// Long lines

/// A matching row of so many characters, and its first cell.
struct LongRow {
    explicit LongRow(std::size_t length)
        : cell("top/k_1" + std::string(length - matchingRow.size(), 'x')), text('|' + cell) {
        text += "|RAMB|";
        EXPECT_EQ(text.size(), length);
    }

    std::string cell;
    std::string text;
};

TEST(RAMFile, ReadsLinesOfUpTo2046Characters) {
    for (const std::size_t length : {2045U, 2046U}) {
        const LongRow row(length);
        EXPECT_THAT(matchesIn(report(row.text)), ElementsAre(match(3, row.cell))) << length;
        EXPECT_THAT(matchesIn(report(row.text + "\n")), ElementsAre(match(3, row.cell))) << length;
        EXPECT_THAT(matchesIn(report(row.text + "\n" + matchingRow)),
                    ElementsAre(match(3, row.cell), match(4, "top/k_1")))
            << length;
    }
}

/// That reading ends with success at this line, behind one row that counts.
void expectEndAt(const std::string& line, const std::string& behind = "") {
    const Reading reading = readReport(report(matchingRow + "\n" + line + behind));
    EXPECT_THAT(reading.diagnostic.remarks(), ElementsAre(match(3, "top/k_1")));
    EXPECT_EQ(reading.stop(), stopAt(4, "the line has more than 2046 characters"));
}

TEST(RAMFile, EndsTheReadingWithSuccessAtALongerLine) {
    const std::string newRow = "\n" + matchingRow;
    for (const std::size_t length : {2047U, 2048U, 100000U}) {
        for (const char byte : {'x', '\0', '-', '|'}) {
            const std::string line(length, byte);
            expectEndAt(line);
            expectEndAt(line, "\n\n");
            expectEndAt(line, newRow);
        }
    }
}

TEST(RAMFile, EndsTheReadingAtALongerFirstLine) {
    const Reading reading = readReport(std::string(2047, ' ') + "\n" + report(matchingRow));
    EXPECT_THAT(reading.diagnostic.remarks(), IsEmpty());
    EXPECT_EQ(reading.stop(), stopAt(1, "the line has more than 2046 characters"));
}

TEST(RAMFile, CountsACarriageReturnAsACharacterOfTheLine) {
    const LongRow row(2045);
    EXPECT_THAT(matchesIn(report(row.text + "\r\n")), ElementsAre(match(3, row.cell)));
    EXPECT_EQ(readReport(report(LongRow(2046).text + "\r\n")).stop(),
              stopAt(3, "the line has more than 2046 characters"));
}

TEST(RAMFile, DoesNotCountTheBlanksBeforeALine) {
    EXPECT_THAT(matchesOf(std::string(100000, ' ') + matchingRow),
                ElementsAre(match(3, "top/k_1")));
    EXPECT_THAT(matchesIn(report(matchingRow + "\n" + std::string(100000, '\t'))),
                ElementsAre(match(3, "top/k_1")));
}

// Files that cannot be read

TEST(RAMFile, SucceedsInSilenceOnADirectory) {
    const TemporaryDirectory directory;
    const Reading reading = readFile<RAMFile>(directory.path("."), oneKernel);
    EXPECT_TRUE(reading.succeeded);
    EXPECT_THAT(reading.kernels, IsEmpty());
    EXPECT_EQ(reading.stop(), stopAt(1, "the file cannot be read"));
}

TEST(RAMFile, SucceedsInSilenceWhereReadingBreaksOff) {
    const Reading reading = readBroken<RAMFile>(report(matchingRow + "\n|a"), oneKernel);
    EXPECT_TRUE(reading.succeeded);
    EXPECT_THAT(reading.diagnostic.remarks(), ElementsAre(match(3, "top/k_1")));
    EXPECT_EQ(reading.stop(), stopAt(4, "the file cannot be read"));
}

// Damaged and large files

TEST(RAMFile, MatchesARowOnceItsSecondCellIsWhole) {
    const std::vector<std::size_t> ends = {typicalReport.find(" RAMB_BIG   |"),
                                           typicalReport.find(" RAMB_SMALL |"),
                                           typicalReport.find(" RAMB_BIG   | 1024  |\n7.")};
    for (std::size_t size = 0; size <= typicalReport.size(); ++size) {
        std::size_t whole = 0;
        for (const std::size_t end : ends) {
            whole += size >= end + std::string(" RAMB_BIG   |").size() ? 1U : 0U;
        }
        EXPECT_EQ(matchesIn(typicalReport.substr(0, size), twoKernels).size(), whole) << size;
    }
}

TEST(RAMFile, ReadsAReportOfManyRows) {
    constexpr std::uint64_t count = 20000;
    std::string rows;
    for (std::uint64_t i = 0; i < count; ++i) {
        rows += i % 2 == 0 ? "|a|RAMB|\n" : matchingRow + "\n";
    }
    const Reading reading = readReport(report(rows));
    EXPECT_EQ(reading.diagnostic.remarkCount(), count / 2);
    ASSERT_EQ(reading.diagnostic.remarks().size(), Diagnostic::mostRemarks);
    EXPECT_EQ(reading.diagnostic.remarks().back(), match(2002, "top/k_1"));
}

} // namespace

} // namespace consolidator::test
