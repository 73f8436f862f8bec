// The two ways to take a line apart: where the quick one gives an answer, it is that of the stream.
#include "readers/BitLine.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace consolidator {

void PrintTo(const BitLine& bit, std::ostream* out) {
    *out << bit.net << '[' << bit.number << "] at " << bit.address << ", " << bit.offset;
}

} // namespace consolidator

namespace consolidator::test {
namespace {

/// What the quick way makes of the line; it must not refuse.
BitLine scanned(const std::string& line) {
    BitLine bit;
    bit.number = 77; // of the line before
    EXPECT_TRUE(bit.scan(line)) << line;
    return bit;
}

bool isRefused(const std::string& line) {
    return !BitLine().scan(line);
}

TEST(BitLine, TakesAUsualLineApartEitherWay) {
    const std::string line =
        "Bit 26214438 0x00402a1f 2214 TILE_X1Y2 0 Latch=Q Net=top/k_1/inst/state_r[3]";
    const BitLine expected{"/top/k_1/inst/state_r", 3, 0x402a1f, 2214};
    EXPECT_EQ(scanned(line), expected);
    EXPECT_EQ(BitLine::read(line), expected);
}

TEST(BitLine, ScansTheLargestNumbers) {
    EXPECT_EQ(
        scanned(
            "Bit 18446744073709551615 ffffffffffffffff 4294967295 a 4294967295 Net=n[4294967295]"),
        (BitLine{"/n", 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}));
}

TEST(BitLine, ScansNumbersWithManyZeros) {
    EXPECT_EQ(
        scanned(
            "Bit 0 0x0000000000000000000000012 00000000000000000000007 a 0 Net=n[0000000000003]"),
        (BitLine{"/n", 3, 0x12, 7}));
}

TEST(BitLine, ScansAnyWhiteSpace) {
    EXPECT_EQ(scanned("Bit\t1\v0x2\f3\ra 0   x y Net=n[4] \r"), (BitLine{"/n", 4, 2, 3}));
}

TEST(BitLine, ScansNetsWithoutAnIndex) {
    for (const std::string net : {"n", "a[2]_x", "n]", "]", "[", "a[1", "Net=a"}) {
        EXPECT_EQ(scanned("Bit 1 0x2 3 a 0 Net=" + net), (BitLine{"/" + net, 0, 2, 3}));
    }
}

TEST(BitLine, ScansAnEmptyNet) {
    EXPECT_EQ(scanned("Bit 1 0x2 3 a 0 Net="), (BitLine{"", 0, 2, 3}));
}

TEST(BitLine, ScansANetThatIsNothingButAnIndex) {
    EXPECT_EQ(scanned("Bit 1 0x2 3 a 0 Net=[5]"), (BitLine{"/", 5, 2, 3}));
}

TEST(BitLine, ScansTheLastOfSeveralNets) {
    EXPECT_EQ(scanned("Bit 1 0x2 3 a 0 Net=b Net=n[1]"), (BitLine{"/n", 1, 2, 3}));
}

TEST(BitLine, LeavesOddLinesToTheStream) {
    for (const char* line : {"Bit",
                             "Bit ",
                             "Bit 1",
                             "Bit 1 0x2 3 a 0",
                             "Bit 1 0x2 3 a 0 ",
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
        if (bit.scan(line)) {
            ++scannedLines;
            ASSERT_EQ(BitLine::read(line), bit) << line;
        }
    }
    EXPECT_GT(scannedLines, 5'000);
}

} // namespace
} // namespace consolidator::test
