// The ends of all lines of a text, found by four searches in turn.
#include "readers/LineEnds.h"

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

TEST(LineEnds, AreThePositionsOfTheNewlines) {
    LineEnds lines;
    EXPECT_THAT(lines.find("one\ntwo\n\nand no end"), ElementsAre(3, 7, 8));
}

TEST(LineEnds, AreNoneWithoutANewline) {
    LineEnds lines;
    EXPECT_THAT(lines.find(""), IsEmpty());
    EXPECT_THAT(lines.find("a"), IsEmpty());
    EXPECT_THAT(lines.find(std::string_view()), IsEmpty());
}

TEST(LineEnds, AreFoundInTextsOfEachLengthThatHaveNothingElse) {
    LineEnds lines;
    for (std::size_t length = 1; length < 40; ++length) {
        const std::string text(length, '\n');
        EXPECT_THAT(lines.find(text), ElementsAreArray(endsOf(text))) << length;
    }
}

TEST(LineEnds, AreThoseOfTheLastText) {
    std::mt19937 random(1);
    LineEnds lines;
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 300, 'x');
        const std::size_t every = 1 + random() % 100;
        for (char& c : text) {
            c = random() % every == 0 ? '\n' : 'x';
        }
        ASSERT_THAT(lines.find(text), ElementsAreArray(endsOf(text))) << text;
    }
}

} // namespace
} // namespace consolidator::test
