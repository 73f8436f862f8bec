// The stream buffer under every reader: it delivers its source's bytes unchanged and knows the
// line.

#include "consolidated/LineCountingBuffer.h"

#include "tests/support/FailingSource.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Trickle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <istream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

constexpr std::size_t block = LineCountingBuffer::blockSize;

/// A text in memory behind a LineCountingBuffer, and a stream over it.
struct Text {
    explicit Text(const std::string& text) : source(text) {}

    std::stringbuf source;
    LineCountingBuffer buffer{source};
    std::istream stream{&buffer};
};

std::string allOf(std::istream& stream) {
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::uint64_t newlinesIn(std::string_view text) {
    return static_cast<std::uint64_t>(std::ranges::count(text, '\n'));
}

/// Bytes of every value in lines of changing length, `size` of them.
std::string mixedText(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += static_cast<char>(i * i / 7 + i);
    }
    return text;
}

/// What one reading step left behind: the text it gave and the stream's state.
struct Step {
    std::string text;
    std::ios::iostate state;

    bool operator==(const Step&) const = default;
};

/// Reads words to the end, and once more.
std::vector<Step> words(std::istream& stream) {
    std::vector<Step> steps;
    std::string word;
    for (bool more = true; more;) {
        more = static_cast<bool>(stream >> word);
        steps.push_back({word, stream.rdstate()});
    }
    return steps;
}

/// Reads lines into a buffer of `size` characters to the end; a line too long is read in pieces.
std::vector<Step> lines(std::istream& stream, std::streamsize size) {
    std::vector<Step> steps;
    std::array<char, 300> line{};
    while (!stream.eof()) {
        stream.getline(line.data(), size);
        steps.push_back({line.data(), stream.rdstate()});
        stream.clear(stream.rdstate() & ~std::ios::failbit);
    }
    return steps;
}

/// Reads whole lines of any length to the end.
std::vector<Step> wholeLines(std::istream& stream) {
    std::vector<Step> steps;
    std::string line;
    for (bool more = true; more;) {
        more = static_cast<bool>(std::getline(stream, line));
        steps.push_back({line, stream.rdstate()});
    }
    return steps;
}

/// Words and rests of lines by turns, as readers with comments take them.
std::vector<Step> wordsAndRests(std::istream& stream) {
    std::vector<Step> steps;
    std::string text;
    while (!stream.eof()) {
        stream >> std::ws >> text >> std::ws;
        steps.push_back({text, stream.rdstate()});
        std::getline(stream, text);
        steps.push_back({text, stream.rdstate()});
    }
    return steps;
}

const std::vector<std::string> samples{
    "",
    "\n",
    " \t\n ",
    "one",
    "one\n",
    "one two\nthree  four\n\n five",
    "a\r\nb\r\n",
    std::string("zero\0inside\n\0\n", 14),
    std::string(299, 'x') + "\n" + std::string(300, 'y') + "\n" + std::string(600, 'z'),
    std::string(block - 1, 'x') + "\nafter the border",
    std::string(block, 'x') + "\nafter the border\n",
    std::string(block - 3, ' ') + "crossing word\n",
    mixedText(3 * block + 17),
};

/// Expects `read` to give the same steps through the buffer as through a file stream.
template <typename Read>
void expectSameAsFileStream(Read read) {
    const TemporaryDirectory directory;
    for (const std::string& sample : samples) {
        std::ifstream file(directory.write("sample", sample));
        Text text(sample);
        EXPECT_TRUE(read(text.stream) == read(file)) << "sample of " << sample.size() << " bytes";
    }
}

TEST(LineCountingBuffer, DeliversTheBytesOfItsSource) {
    for (const std::string& sample : samples) {
        Text text(sample);
        EXPECT_TRUE(allOf(text.stream) == sample) << "sample of " << sample.size() << " bytes";
        EXPECT_EQ(text.buffer.line(), newlinesIn(sample) + 1);
    }
}

TEST(LineCountingBuffer, GivesWordsAsAFileStreamDoes) {
    expectSameAsFileStream(words);
}

TEST(LineCountingBuffer, GivesLinesOfLimitedLengthAsAFileStreamDoes) {
    expectSameAsFileStream([](std::istream& stream) { return lines(stream, 300); });
    expectSameAsFileStream([](std::istream& stream) { return lines(stream, 3); });
}

TEST(LineCountingBuffer, GivesWholeLinesAsAFileStreamDoes) {
    expectSameAsFileStream(wholeLines);
}

TEST(LineCountingBuffer, GivesWordsAndRestsOfLinesAsAFileStreamDoes) {
    expectSameAsFileStream(wordsAndRests);
}

TEST(LineCountingBuffer, StandsAtLineOneOfAnEmptySource) {
    Text text("");
    EXPECT_EQ(text.buffer.line(), 1U);
    EXPECT_EQ(text.stream.get(), std::char_traits<char>::eof());
    EXPECT_TRUE(text.stream.eof());
    EXPECT_FALSE(text.stream.bad());
    EXPECT_EQ(text.buffer.line(), 1U);
}

TEST(LineCountingBuffer, CountsANewlineOnceItIsRead) {
    Text text("a\n\nb");
    std::vector<std::uint64_t> numbers{text.buffer.line()};
    while (text.stream.get() != std::char_traits<char>::eof()) {
        numbers.push_back(text.buffer.line());
    }
    EXPECT_EQ(numbers, (std::vector<std::uint64_t>{1, 1, 2, 3, 3}));
}

TEST(LineCountingBuffer, DoesNotCountANewlineThatIsOnlyLookedAt) {
    Text text("a\nb");
    std::string word;
    text.stream >> word;
    EXPECT_EQ(text.stream.peek(), '\n');
    EXPECT_EQ(text.buffer.line(), 1U);
    text.stream >> std::ws;
    EXPECT_EQ(text.buffer.line(), 2U);
}

TEST(LineCountingBuffer, KnowsTheLineWhereverANewlineStandsInABlock) {
    for (const std::size_t before : {block - 2, block - 1, block, block + 1, 2 * block - 1}) {
        Text text(std::string(before, 'x') + "\nword");
        std::string word;
        text.stream >> word;
        EXPECT_EQ(word.size(), before);
        EXPECT_EQ(text.buffer.line(), 1U) << before;
        text.stream >> word;
        EXPECT_EQ(word, "word");
        EXPECT_EQ(text.buffer.line(), 2U) << before;
    }
}

TEST(LineCountingBuffer, KnowsEveryLineOfALongText) {
    std::string content;
    for (int i = 1; i <= 100000; ++i) {
        content += "line " + std::to_string(i) + "\n";
    }
    ASSERT_GT(content.size(), 4 * block);
    Text text(content);
    std::string word;
    std::uint64_t number = 0;
    std::uint64_t wrong = 0;
    std::uint64_t lineCount = 0;
    while (text.stream >> word >> number) {
        ++lineCount;
        wrong += text.buffer.line() == number ? 0U : 1U;
    }
    EXPECT_EQ(lineCount, 100000U);
    EXPECT_EQ(wrong, 0U);
}

TEST(LineCountingBuffer, CountsTheLinesOfBlocksInWhichNobodyAsked) {
    const std::string content(5 * block + 11, '\n');
    Text text(content);
    text.stream.ignore(static_cast<std::streamsize>(content.size()) - 1);
    EXPECT_EQ(text.buffer.line(), content.size());
    EXPECT_EQ(text.buffer.line(), content.size());
}

TEST(LineCountingBuffer, TakesASourceThatGivesOneByteAtATime) {
    const std::string content = mixedText(block + 100);
    Trickle source(content);
    LineCountingBuffer buffer(source);
    std::istream stream(&buffer);
    EXPECT_TRUE(allOf(stream) == content);
    EXPECT_EQ(buffer.line(), newlinesIn(content) + 1);
}

TEST(LineCountingBuffer, MakesTheStreamBadWhenItsSourceThrows) {
    FailingSource source("");
    LineCountingBuffer buffer(source);
    std::istream stream(&buffer);
    std::string word("untouched");
    stream >> word;
    EXPECT_TRUE(stream.bad());
    EXPECT_FALSE(stream.eof());
    EXPECT_EQ(buffer.line(), 1U);
}

TEST(LineCountingBuffer, GivesWholeBlocksBeforeItsSourceThrows) {
    FailingSource source(std::string(block - 1, 'x') + "\n");
    LineCountingBuffer buffer(source);
    std::istream stream(&buffer);
    std::string word;
    stream >> word;
    EXPECT_EQ(word.size(), block - 1);
    EXPECT_TRUE(stream.good());
    stream >> word;
    EXPECT_TRUE(stream.bad());
    EXPECT_EQ(buffer.line(), 2U);
    EXPECT_EQ(buffer.line(), 2U);
}

TEST(LineCountingBuffer, MakesTheStreamBadOnADirectory) {
    const TemporaryDirectory directory;
    std::filebuf source;
    ASSERT_NE(source.open(directory.path(""), std::ios::in), nullptr);
    LineCountingBuffer buffer(source);
    std::istream stream(&buffer);
    std::string word;
    stream >> word;
    EXPECT_TRUE(stream.bad());
    EXPECT_FALSE(stream.eof());
}

TEST(LineCountingBuffer, ShowsWhatIsInTheBlockAndSkipsIt) {
    Text text("one\ntwo\nthree\nfour");
    EXPECT_EQ(text.buffer.ahead(), "");
    text.stream.peek();
    EXPECT_EQ(text.buffer.ahead(), "one\ntwo\nthree\nfour");
    text.buffer.skip(8, 2);
    EXPECT_EQ(text.buffer.ahead(), "three\nfour");
    EXPECT_EQ(text.buffer.line(), 3U);
    std::string word;
    text.stream >> word;
    EXPECT_EQ(word, "three");
    text.buffer.skip(1, 1);
    EXPECT_EQ(text.buffer.line(), 4U);
    text.stream >> word;
    EXPECT_EQ(word, "four");
    EXPECT_EQ(text.buffer.ahead(), "");
    EXPECT_EQ(text.buffer.line(), 4U);
}

TEST(LineCountingBuffer, CountsLinesThatWereReadBeforeASkip) {
    Text text("one\ntwo\nthree\nfour\nfive");
    std::string word;
    text.stream >> word >> word;
    text.buffer.skip(7, 2);
    EXPECT_EQ(text.buffer.line(), 4U);
}

TEST(LineCountingBuffer, GoesOnInTheNextBlockAfterASkip) {
    Text text(std::string(block, '\n') + "x\ny");
    text.stream.peek();
    EXPECT_EQ(text.buffer.ahead().size(), block);
    text.buffer.skip(block, block);
    EXPECT_EQ(text.buffer.line(), block + 1);
    EXPECT_EQ(text.stream.get(), 'x');
    EXPECT_EQ(text.stream.get(), '\n');
    EXPECT_EQ(text.buffer.line(), block + 2);
}

TEST(LineCountingBuffer, GoesOnAfterTheStreamIsCleared) {
    Text text("12 words\n34");
    int number = 0;
    text.stream >> number;
    EXPECT_EQ(number, 12);
    text.stream >> number;
    EXPECT_TRUE(text.stream.fail());
    text.stream.clear();
    std::string word;
    text.stream >> word >> number;
    EXPECT_EQ(word, "words");
    EXPECT_EQ(number, 34);
    EXPECT_EQ(text.buffer.line(), 2U);
}

TEST(LineCountingBuffer, TellsHowManyBytesHaveComeWithEachBlock) {
    Text text(std::string(block + 10, 'x'));
    std::vector<std::uint64_t> told;
    text.buffer.watch([&told](std::uint64_t bytes) { told.push_back(bytes); });
    EXPECT_EQ(allOf(text.stream).size(), block + 10);
    EXPECT_EQ(told, (std::vector<std::uint64_t>{block, block + 10}));
}

} // namespace

} // namespace consolidator::test
