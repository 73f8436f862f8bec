// What a line of a logic-location file means has one home: `check` says of each odd line what the
// reader, and so a run of the consolidator, makes of it.

#include "model/LocationList.h"
#include "readers/LLFile.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

/// The kernel that the files below make.
Kernel kernel() {
    Kernel result;
    result.setName("k");
    result.addInstancePath("top/k_1");
    result.addVariable("v", "v_reg", "int");
    return result;
}

/// The locations of the register "/top/k_1/v_reg" that the reader finds in a text; nothing if it
/// refuses the text, an empty list if the text does not name the register.
std::optional<LocationList> locationsIn(const std::string& text) {
    std::ostream nowhere(nullptr);
    LLFile reader(std::make_unique<std::stringbuf>(text), nowhere);
    reader.setKernels({kernel()});
    if (!reader.parse()) {
        return std::nullopt;
    }
    const auto& registers = reader.kernels().front().hardwareVariables();
    return registers.empty() ? LocationList() : registers.front().locations;
}

struct LogicLocationLines : testing::Test {
    TemporaryDirectory directory = TemporaryDirectory::inMemory();
    std::string hierarchy = directory.write("k.hier", "k\ntype: c\ninstance path: top/k_1\n");
    std::string hls = directory.write("k.hls", "RTL 1 s (x == 1)\nlocal v\nat: k.cpp:7\n"
                                               "end v_reg[1:0] 2\n");

    /// What `check` says of a file with this text and nothing more: a line for each finding that
    /// is no note, without the file's name.
    std::string findingsOf(const std::string& text) const {
        const std::string path = directory.write("a.ll", text);
        std::istringstream out(inspectRun({"check", "-h", hierarchy, "-s", hls, "-l", path}).out);
        std::string result;
        for (std::string line; std::getline(out, line);) {
            if (line.starts_with(path + ':') && line.find(": note: ") == std::string::npos) {
                result += line.substr(path.size() + 1) + '\n';
            }
        }
        return result;
    }
};

const std::string placed = "Bit 1 0x1 7 DIE0 0 Net=top/k_1/v_reg[0]\n";
const std::string elsewhere = "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[0]\n";
const LogicLocation first{1, 7};
const LogicLocation second{2, 8};

const std::string placedTwice = "places the same bit elsewhere, and the later line counts";
const std::string nothingLocated =
    " warning: no net has the name of an argument or variable of kernel \"k\"\n";

std::string repeated(int line, int before) {
    return std::to_string(line) + ": warning: line " + std::to_string(before) + " " + placedTwice +
           "\n";
}

/// A text, what the reader finds in it, and what `check` has to say.
struct Row {
    std::string text;
    LocationList locations;
    std::string findings;
};

TEST_F(LogicLocationLines, MeanTheSameToCheckAndToTheReader) {
    const std::vector<Row> rows = {
        {placed, {first}, ""},
        {placed + placed, {first}, ""},
        {placed + elsewhere, {second}, repeated(2, 1)},
        {placed + elsewhere + elsewhere, {second}, repeated(2, 1)},
        {placed + "; \n\n" + elsewhere, {second}, repeated(4, 1)},
        // Indented, after another line and as the first one.
        {placed + "  " + elsewhere, {second}, repeated(2, 1)},
        {placed + "\t" + elsewhere, {second}, repeated(2, 1)},
        {" " + placed + elsewhere, {second}, repeated(2, 1)},
        // White space of other kinds.
        {placed + "Bit\t1\t0x2\t8\tDIE0\t0\tNet=top/k_1/v_reg[0]\n", {second}, repeated(2, 1)},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[0] \r\n", {second}, repeated(2, 1)},
        // Comments, indented too.
        {placed + "; " + elsewhere, {first}, ""},
        {placed + " ; " + elsewhere, {first}, ""},
        {"Revision 1\n ; Net=top/k_1/v_reg_0\n", {}, nothingLocated},
        {"Revision 1\n\t;Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg_0\n", {}, nothingLocated},
        // Headers.
        {placed + "Bit 1 0x2 8 DIE0 0 Revision Net=top/k_1/v_reg[0]\n", {first}, ""},
        {"Revision 1 Net=top/k_1/v_reg_0\n", {}, nothingLocated},
        // Two words for a net: the last one counts.
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/x Net=top/k_1/v_reg[0]\n", {second}, repeated(2, 1)},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[0] Net=top/x\n", {first}, ""},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[0] Net=\n", {first}, ""},
        // Words that name no net.
        {placed + "Bit 1 0x2 8 DIE0 0 xNet=top/k_1/v_reg[0]\n", {first}, ""},
        {placed + "Bit 1 0x2 8 DIE0 0 Block=X Ram=B:BIT91\n", {first}, ""},
        {placed + "Bit 1 0x2 8 DIE0 0 Latch=Q Net=top/k_1/v_reg[0]\n", {second}, repeated(2, 1)},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[0] Latch=Q\n", {second}, repeated(2, 1)},
        // Numbers and bit indices that cannot be read, or mean something else.
        {placed + "Bit 1 Net=top/k_1/v_reg[0]\n",
         {first},
         "2: warning: the numbers of the line cannot be read\n"},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[a]\n",
         {second},
         "2: warning: bit index \"a\" is no number and is read as 0\n" + repeated(2, 1)},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg\n", {second}, repeated(2, 1)},
        {placed + "Bit 1 0x2 8abc 0 Net=top/k_1/v_reg[0]\n", {second}, repeated(2, 1)},
        {placed + "Bit 1 0x100000001 7 DIE0 0 Net=top/k_1/v_reg[0]\n", {first}, ""},
        {placed + "Bit 1 0x2 8 DIE0 0 Net=top/k_1/v_reg[16777216]\n",
         {first},
         "2: warning: bit 16777216 of \"/top/k_1/v_reg\" is skipped: registers of up to 16777216 "
         "bits are kept\n"},
        // A bit of a place that a bit without one would have.
        {"Bit 1 0x0 0 DIE0 0 Net=top/k_1/v_reg[0]\n" + placed, {first}, repeated(2, 1)},
        {"Bit 1 0x1 7 DIE0 0 Net=top/k_1/v_reg[1]\n" + placed, {first, first}, ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(locationsIn(row.text), row.locations) << row.text;
        EXPECT_EQ(findingsOf(row.text), row.findings) << row.text;
    }
}

/// What `check` has to say of bits that lines place twice, from what the reader makes of each line
/// alone.
std::string contradictionsIn(const std::vector<std::string>& lines) {
    std::map<std::uint32_t, std::pair<std::size_t, LogicLocation>> places; // by bit, with its line
    std::size_t count = 0;
    std::string finding;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t number = i + 2; // behind the header
        const auto locations = locationsIn("Revision\n" + lines[i]);
        if (!locations || locations->empty()) {
            continue;
        }
        const std::uint32_t bit = locations->size() - 1;
        const LogicLocation place = (*locations)[bit];
        const auto [known, isNew] = places.try_emplace(bit, number, place);
        if (!isNew && known->second.second != place && ++count == 1) {
            finding = std::to_string(number) + ": warning: line " +
                      std::to_string(known->second.first) + " " + placedTwice;
        }
        known->second = {number, place};
    }
    if (count > 1) {
        finding += "; there are " + std::to_string(count - 1) + " more such line" +
                   (count == 2 ? "" : "s");
    }
    return finding.empty() ? "" : finding + "\n";
}

TEST_F(LogicLocationLines, ContradictEachOtherAsTheReaderTakesThem) {
    std::mt19937 random(1);
    const auto anyOf = [&random](const std::vector<std::string>& choices) {
        return choices[random() % choices.size()];
    };
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> lines(2 + random() % 60);
        for (std::string& line : lines) {
            line = anyOf({"", "", "", "", " ", "\t", ";", " ;"}) + "Bit 1" +
                   anyOf({" ", " ", "\t"}) + anyOf({"0x1", "0x2", "1", "0X1", "0", "g"}) + " " +
                   anyOf({"7", "8", "07", "-1", "x", "0"}) + " DIE0 0 " +
                   anyOf({"", "", "Latch=Q ", "Revision ", "Net=top/x "}) +
                   anyOf({"", "", "", "", "x"}) + "Net=top/k_1/" +
                   anyOf({"v_reg", "v_reg", "v_reg", "v", "x/v_reg_0"}) +
                   anyOf({"", "[0]", "[1]", "[2]", "[99]", "[a]", "[-1]", "[1"}) +
                   anyOf({"", "", "", " ", "\r", " Ram=B", " Net=", " Net=top/x"}) + "\n";
        }
        std::string text = "Revision\n";
        for (const std::string& line : lines) {
            text += line;
        }
        std::istringstream all(findingsOf(text));
        std::string findings;
        for (std::string line; std::getline(all, line);) {
            findings += line.find(placedTwice) == std::string::npos ? "" : line + "\n";
        }
        const std::string expected = contradictionsIn(lines);
        ASSERT_EQ(findings, expected) << text;
        found += expected.empty() ? 0 : 1;
    }
    EXPECT_GT(found, 100);
}

} // namespace

} // namespace consolidator::test
