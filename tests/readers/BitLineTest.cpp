// The two ways to take a line apart: where the quick one gives an answer, it is that of the stream.
#include "readers/BitLine.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

void PrintTo(const BitLine& bit, std::ostream* out) {
    *out << bit.net << '[' << bit.bitIndex << "] at " << bit.address << ", " << bit.offset;
}

} // namespace consolidator

namespace consolidator::test {
namespace {

/// The quick way as a whole: finds the net, then takes the rest apart.
bool scan(const std::string& line, BitLine& bit) {
    const std::size_t at = line.find("Net=");
    NetWord word;
    return at != std::string::npos && word.find(line, at) && bit.scan(word);
}

/// What the quick way makes of the line, which must live on; it must not refuse.
BitLine scanned(const std::string& line) {
    BitLine bit;
    bit.bitIndex = 77; // of the line before
    EXPECT_TRUE(scan(line, bit)) << line;
    return bit;
}

bool isRefused(const std::string& line) {
    BitLine bit;
    return !scan(line, bit);
}

/// What a line with a net gives.
BitLine bitOf(std::string_view net, std::uint32_t bitIndex, std::uint32_t address,
              std::uint32_t offset) {
    return {net, bitIndex, address, offset, true};
}

const std::string fields = "Bit 1 0x2 3 a 0 ";

TEST(NetWord, GivesTheNetOfTheLastWord) {
    const std::string line = "Bit 1 0x2 3 a 0 Net=top/k_1/inst/state_r[3]";
    NetWord word;
    ASSERT_TRUE(word.find(line, line.find("Net=")));
    EXPECT_EQ(word.fields, "Bit 1 0x2 3 a 0 ");
    EXPECT_EQ(word.name, "top/k_1/inst/state_r");
    EXPECT_EQ(word.lastComponent(), "state_r");
    EXPECT_TRUE(word.hasIndex);
    EXPECT_EQ(word.index, "3");
}

TEST(NetWord, TellsAnEmptyIndexFromNone) {
    NetWord word;
    word.setNet("n[]");
    EXPECT_TRUE(word.hasIndex);
    EXPECT_EQ(word.index, "");
    EXPECT_EQ(word.name, "n");
    word.setNet("a[2]_x");
    EXPECT_FALSE(word.hasIndex);
    EXPECT_EQ(word.lastComponent(), "a[2]_x");
    word.setNet("a/");
    EXPECT_EQ(word.lastComponent(), "");
}

TEST(NetWord, RefusesANetWithAnOddCharacterAnywhere) {
    for (std::size_t length = 1; length < 30; ++length) {
        for (std::size_t at = 0; at + 1 < length; ++at) {
            for (const char odd : {'\0', ' ', '\t', '\x1F', '\r'}) {
                std::string line = fields + "Net=" + std::string(length, '\xA1');
                NetWord word;
                ASSERT_TRUE(word.find(line, fields.size())) << line;
                line[fields.size() + 4 + at] = odd;
                ASSERT_FALSE(word.find(line, fields.size())) << line;
            }
        }
    }
}

TEST(BitLine, TakesAUsualLineApartEitherWay) {
    const std::string line =
        "Bit 26214438 0x00402a1f 2214 TILE_X1Y2 0 Latch=Q Net=top/k_1/inst/state_r[3]";
    const BitLine expected = bitOf("top/k_1/inst/state_r", 3, 0x402a1f, 2214);
    EXPECT_EQ(scanned(line), expected);
    EXPECT_EQ(BitLine::read(line), expected);
}

TEST(BitLine, ScansTheLargestNumbers) {
    const std::string line =
        "Bit 9999999999999999999 ffffffffffffffff 999999999 a 999999999 Net=n[4294967295]";
    EXPECT_EQ(scanned(line), bitOf("n", 0xFFFFFFFF, 0xFFFFFFFF, 999999999));
    EXPECT_EQ(BitLine::read(line), scanned(line));
}

TEST(BitLine, LeavesNumbersWithMoreDigitsToTheStream) {
    for (const std::string line :
         {"Bit 18446744073709551615 0x2 3 a 0 Net=n", "Bit 00000000000000000001 0x2 3 a 0 Net=n",
          "Bit 1 0x00000000000000012 3 a 0 Net=n", "Bit 1 0x2 4294967295 a 0 Net=n",
          "Bit 1 0x2 3 a 0000000000 Net=n"}) {
        EXPECT_TRUE(isRefused(line)) << line;
        EXPECT_TRUE(BitLine::read(line).has_value()) << line;
    }
}

TEST(BitLine, ScansNumbersWithManyZeros) {
    const std::string line = "Bit 0 0x0000000000000012 000000007 a 0 Net=n[0000000000003]";
    EXPECT_EQ(scanned(line), bitOf("n", 3, 0x12, 7));
    EXPECT_EQ(BitLine::read(line), scanned(line));
}

TEST(BitLine, ScansAnyWhiteSpace) {
    const std::string line = "Bit\t1\v0x2\f3\ra 0   x y Net=n[4] \r";
    EXPECT_EQ(scanned(line), bitOf("n", 4, 2, 3));
}

TEST(BitLine, ScansNetsWithoutAnIndex) {
    for (const std::string net : {"n", "a[2]_x", "n]", "]", "[", "a[1", "Net=a"}) {
        const std::string line = fields + "Net=" + net;
        EXPECT_EQ(scanned(line), bitOf(net, 0, 2, 3));
    }
}

TEST(BitLine, ScansANetThatIsNothingButAnIndex) {
    const std::string line = fields + "Net=[5]";
    EXPECT_EQ(scanned(line), bitOf("", 5, 2, 3));
    EXPECT_EQ(BitLine::read(line), bitOf("", 5, 2, 3));
}

TEST(BitLine, ReadsTheLastOfSeveralNets) {
    const std::string line = fields + "Net=b Net=n[1] x";
    EXPECT_EQ(BitLine::read(line), bitOf("n", 1, 2, 3));
}

TEST(BitLine, ReadsNoNetWhereNothingIsBehindTheLastOne) {
    const BitLine expected{"", 0, 2, 3, false};
    EXPECT_EQ(BitLine::read("Bit 1 0x2 3 a 0"), expected);
    EXPECT_EQ(BitLine::read("Bit 1 0x2 3 a 0 Net=a[1] Net="), expected);
}

TEST(BitLine, ReadsIndicesAsTheStreamDoes) {
    for (const auto& [index, bitIndex] :
         std::vector<std::pair<std::string, std::uint32_t>>{{"", 0},
                                                            {"x", 0},
                                                            {"1x", 1},
                                                            {"+2", 2},
                                                            {"-1", 0xFFFFFFFF},
                                                            {"4294967296", 0xFFFFFFFF}}) {
        const std::string line = fields + "Net=n[" + index + "]";
        EXPECT_EQ(BitLine::read(line), bitOf("n", bitIndex, 2, 3)) << line;
    }
}

TEST(BitLine, LeavesOddLinesToTheStream) {
    for (const char* line : {"Bit",
                             "Bit ",
                             "Bit 1",
                             "Bit 1 0x2 3 a 0",
                             "Bit 1 0x2 3 a 0 ",
                             "Bit 1 0x2 3 a 0 Net=",
                             "Bit 1 0x2 3 a 0 Net=b Net=n[1]",
                             "Bit 1 0x2 3 a Net=n",
                             "Bit 1 0x2 3 a 0Net=n",
                             "Bit 1 0x2 3 a 0 Net=n x",
                             "Bit 1 0x2 3 a 0 xNet=n",
                             "Bit +1 0x2 3 a 0 Net=n",
                             "Bit -1 0x2 3 a 0 Net=n",
                             "Bit 1 -2 3 a 0 Net=n",
                             "Bit 1 0X2 3 a 0 Net=n",
                             "Bit 1 0x 3 a 0 Net=n",
                             "Bit 1 0x0x2 3 a 0 Net=n",
                             "Bit 1x 2 3 a 0 Net=n",
                             "Bit 1 2g 3 a 0 Net=n",
                             "Bit 1 2 3. a 0 Net=n",
                             "Bit 18446744073709551616 2 3 a 0 Net=n",
                             "Bit 1 10000000000000000 3 a 0 Net=n",
                             "Bit 1 2 4294967296 a 0 Net=n",
                             "Bit 1 2 3 a 4294967296 Net=n",
                             "Bit 1 2 3 a 0 Net=n[]",
                             "Bit 1 2 3 a 0 Net=n[x]",
                             "Bit 1 2 3 a 0 Net=n[1x]",
                             "Bit 1 2 3 a 0 Net=n[-1]",
                             "Bit 1 2 3 a 0 Net=n[+1]",
                             "Bit 1 2 3 a 0 Net=n[4294967296]"}) {
        EXPECT_TRUE(isRefused(line)) << line;
    }
}

/// Lines made of pieces that mean something, and of pieces that nearly do.
class OddLines {
public:
    std::string next() {
        std::string line = "Bit";
        for (const std::vector<std::string>& field : fields) {
            line += anyOf(spaces);
            line += engine_() % 8 == 0 ? anyOf(odd) : anyOf(field);
        }
        while (engine_() % 2 == 0) {
            line += anyOf(spaces) + anyOf(engine_() % 2 == 0 ? nets : odd);
        }
        return line + anyOf(ends);
    }

private:
    using Pieces = std::vector<std::string>;

    const std::string& anyOf(const Pieces& pieces) { return pieces[engine_() % pieces.size()]; }

    const Pieces spaces{" ", " ", " ", "\t", "  ", "\r", ""};
    const Pieces ends{"", "", " ", "\r", "\v\f "};
    const Pieces odd{"",
                     "x",
                     "-1",
                     "+1",
                     "0x",
                     "1.5",
                     "Net=",
                     "Bit",
                     "]",
                     "0x1",
                     "1e",
                     "00",
                     "0X3",
                     "Net",
                     "=",
                     "[",
                     "Net=a[",
                     "99999999999",
                     "18446744073709551616",
                     "\xff",
                     "1Net=a",
                     "Net=a]b"};
    const Pieces nets{"Net=a",      "Net=top/a[3]", "Net=a[]",   "Net=[1]", "Net=a[1][2]",
                      "Net=a[2]_x", "Net=a[-1]",    "Net=a[1x]", "Latch=Q", "Net=a[4294967296]"};
    const std::vector<Pieces> fields{
        {"1", "26214438"}, {"0x10", "1f", "0x00402a1f"}, {"0", "2214"}, {"DIE0", "7"}, {"0", "1"}};
    std::mt19937 engine_{20261121};
};

TEST(BitLine, EveryScannedLineIsWhatTheStreamMakesOfIt) {
    OddLines lines;
    int scannedLines = 0;
    for (int i = 0; i < 200'000; ++i) {
        const std::string line = lines.next();
        BitLine bit;
        if (scan(line, bit)) {
            ++scannedLines;
            ASSERT_EQ(BitLine::read(line), bit) << line;
        }
    }
    EXPECT_GT(scannedLines, 4'000);
}

} // namespace
} // namespace consolidator::test
