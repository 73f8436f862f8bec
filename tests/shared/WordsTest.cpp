// Words: how a text falls apart at its white space, and how words are joined again.

#include "shared/Words.h"

#include "tests/support/Bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// All words of a text, taken one by one.
std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words;
    for (auto word = takeWord(text); !word.empty(); word = takeWord(text)) {
        words.emplace_back(word);
    }
    EXPECT_EQ(text, "");
    return words;
}

/// What is left of a text behind its first word.
std::string restOf(std::string_view text) {
    takeWord(text);
    return std::string(text);
}

/// The words joined again, each behind the prefix "<".
std::string marked(std::string_view text) {
    return joinedWords(text, [](std::string_view) { return std::string_view("<"); });
}

TEST(TakeWord, TakesTheWordsInOrder) {
    EXPECT_THAT(wordsOf("local sum 12"), ElementsAre("local", "sum", "12"));
    EXPECT_THAT(wordsOf("one"), ElementsAre("one"));
    EXPECT_THAT(wordsOf("a b"), ElementsAre("a", "b"));
}

TEST(TakeWord, FindsNoWordInWhiteSpace) {
    for (const char* text : {"", " ", "\r", "\t", " \t\n\v\f\r "}) {
        EXPECT_THAT(wordsOf(text), IsEmpty()) << testing::PrintToString(text);
    }
    EXPECT_THAT(wordsOf(std::string_view()), IsEmpty());
}

TEST(TakeWord, TakesEveryKindOfWhiteSpaceBetweenWords) {
    EXPECT_THAT(wordsOf("a b\tc\nd\ve\ff\rg"), ElementsAre("a", "b", "c", "d", "e", "f", "g"));
}

TEST(TakeWord, TakesRunsOfWhiteSpaceAsOne) {
    EXPECT_THAT(wordsOf("  \t a \r\n\v\f  b\t\t"), ElementsAre("a", "b"));
}

TEST(TakeWord, TakesEveryOtherByteAsPartOfAWord) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (std::string_view(" \t\n\v\f\r").find(c) == std::string_view::npos) {
            const std::string word = std::string("a") + c + "b";
            EXPECT_THAT(wordsOf(word + " z"), ElementsAre(word, "z")) << byte;
        }
    }
    EXPECT_THAT(wordsOf(bytes("\0 \xA0\x85 b")), ElementsAre(bytes("\0"), "\xA0\x85", "b"));
}

TEST(TakeWord, LeavesTheWhiteSpaceBehindTheWord) {
    EXPECT_EQ(restOf("a b"), " b");
    EXPECT_EQ(restOf(" \ta \t"), " \t");
    EXPECT_EQ(restOf("\na\r"), "\r");
}

TEST(TakeWord, LeavesNothingBehindTheLastWord) {
    for (const char* text : {"", " ", " \t\r", "a", " a"}) {
        EXPECT_EQ(restOf(text), "") << testing::PrintToString(text);
    }
}

TEST(TakeWord, TakesLongWords) {
    const std::string word(100000, 'w');
    EXPECT_THAT(wordsOf(word + std::string(100000, ' ') + word), ElementsAre(word, word));
}

TEST(JoinedWords, PutsOneBlankBetweenWords) {
    EXPECT_EQ(marked("a b"), "<a <b");
    EXPECT_EQ(marked("a  b\t\tc\r\n\v\fd"), "<a <b <c <d");
}

TEST(JoinedWords, ShrinksWhiteSpaceBehindTheLastWordToOneBlank) {
    EXPECT_EQ(marked("a "), "<a ");
    EXPECT_EQ(marked("a b \t "), "<a <b ");
    EXPECT_EQ(marked("a\r"), "<a ");
}

TEST(JoinedWords, DropsWhiteSpaceBeforeTheFirstWord) {
    EXPECT_EQ(marked("  a"), "<a");
    EXPECT_EQ(marked("\t\r\na b"), "<a <b");
}

TEST(JoinedWords, GivesNothingWithoutWords) {
    for (const char* text : {"", " ", "\t\r\n"}) {
        EXPECT_EQ(marked(text), "") << testing::PrintToString(text);
    }
}

TEST(JoinedWords, AsksForThePrefixOfEachWord) {
    const auto prefixOf = [](std::string_view word) {
        return std::string_view(word == "x" ? "$i/" : "");
    };
    EXPECT_EQ(joinedWords("x == y x", prefixOf), "$i/x == y $i/x");
}

} // namespace

} // namespace consolidator::test
