// The lines of a text, piece by piece.
#include "readers/LineScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// The same a character at a time.
std::vector<std::uint32_t> endsOf(std::string_view text) {
    std::vector<std::uint32_t> ends;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n') {
            ends.push_back(static_cast<std::uint32_t>(i));
        }
    }
    return ends;
}

constexpr std::size_t longestLine = 2046;

/// The ends that a scanner finds one piece after the other, all lines of which are of use.
std::vector<std::uint32_t> foundIn(std::string_view text) {
    LineScanner scanner(longestLine);
    std::vector<std::uint32_t> ends;
    std::size_t begin = 0;
    for (auto piece = scanner.next(text); piece.lineCount() > 0;
         piece = scanner.next(text.substr(begin))) {
        for (const std::uint32_t end : piece.ends) {
            ends.push_back(static_cast<std::uint32_t>(begin) + end);
        }
        scanner.took(piece, piece.lineCount());
        begin += piece.startOf(piece.lineCount());
    }
    return ends;
}

TEST(LineScanner, FindsThePositionsOfTheNewlines) {
    EXPECT_THAT(foundIn("one\ntwo\n\nand no end"), ElementsAre(3, 7, 8));
}

TEST(LineScanner, FindsNothingWithoutANewline) {
    EXPECT_THAT(foundIn(""), IsEmpty());
    EXPECT_THAT(foundIn("a"), IsEmpty());
    EXPECT_THAT(foundIn(std::string_view()), IsEmpty());
}

TEST(LineScanner, KnowsTheLinesOfAPiece) {
    LineScanner scanner(longestLine);
    const LineScanner::Piece piece = scanner.next("one\n\nthree\nand no end");
    ASSERT_EQ(piece.lineCount(), 3U);
    EXPECT_EQ(piece.line(0), "one");
    EXPECT_EQ(piece.line(1), "");
    EXPECT_EQ(piece.line(2), "three");
    EXPECT_EQ(piece.startOf(2), 5U);
    EXPECT_EQ(piece.startOf(3), 11U);
}

TEST(LineScanner, EndsAtAZeroByte) {
    using namespace std::string_view_literals;
    EXPECT_THAT(foundIn("a\nb\0\nc\n"sv), ElementsAre(1));
    EXPECT_THAT(foundIn("\0\n"sv), IsEmpty());
}

TEST(LineScanner, FindsTheLongestLineAndNoLongerOne) {
    EXPECT_THAT(foundIn(std::string(longestLine, 'x') + '\n'), ElementsAre(longestLine));
    EXPECT_THAT(foundIn(std::string(longestLine + 1, 'x') + '\n'), IsEmpty());
}

TEST(LineScanner, LooksAtMoreWhileLinesAreOfUseAndAtLessWhenOneIsNot) {
    const std::string text(100'000, '\n');
    LineScanner scanner(longestLine);
    std::size_t size = 0;
    for (int i = 0; i < 20; ++i) {
        const LineScanner::Piece piece = scanner.next(text);
        EXPECT_GE(piece.text.size(), size);
        size = piece.text.size();
        scanner.took(piece, piece.lineCount());
    }
    EXPECT_EQ(size, 32U * 1024);
    scanner.took(scanner.next(text), 100);
    EXPECT_EQ(scanner.next(text).text.size(), 200U);
    scanner.took(scanner.next(text), 0);
    EXPECT_EQ(scanner.next(text).text.size(), 64U);
}

TEST(LineScanner, FindsEndsInTextsOfEachLengthThatHaveNothingElse) {
    for (std::size_t length = 1; length < 400; ++length) {
        const std::string text(length, '\n');
        EXPECT_THAT(foundIn(text), ElementsAreArray(endsOf(text))) << length;
    }
}

TEST(LineScanner, FindsEndsInTextsByChance) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 1000, 'x');
        const std::size_t every = 1 + random() % 100;
        for (char& c : text) {
            c = random() % every == 0 ? '\n' : 'x';
        }
        ASSERT_THAT(foundIn(text), ElementsAreArray(endsOf(text))) << text;
    }
}

} // namespace
} // namespace consolidator::test
