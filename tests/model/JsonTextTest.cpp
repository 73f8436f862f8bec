// Tests the shared pieces of the JSON forms, byte for byte.
#include "model/JsonText.h"

#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

std::string separated(const std::vector<std::string>& elements) {
    std::ostringstream out;
    writeSeparated(out, elements, [&](const std::string& element) { out << element; });
    return out.str();
}

std::string inQuotes(std::string_view text) {
    std::ostringstream out;
    writeQuoted(out, text);
    return out.str();
}

/// What write(block) puts on a stream.
template <typename Write>
std::string blockText(Write write) {
    std::ostringstream out;
    {
        JsonBlock block(out);
        write(block);
    }
    return out.str();
}

std::string locationsText(const std::vector<LogicLocation>& locations, char open = '[',
                          char close = ']') {
    return blockText([&](JsonBlock& block) { JsonLocations(block, open, close).add(locations); });
}

TEST(JsonText, ACommaAndABlankStandBetweenElementsOnly) {
    EXPECT_EQ(separated({}), "");
    EXPECT_EQ(separated({"a"}), "a");
    EXPECT_EQ(separated({"a", "b", "c"}), "a, b, c");
}

TEST(JsonText, EmptyElementsAreSeparatedToo) {
    EXPECT_EQ(separated({"", "", ""}), ", , ");
}

TEST(JsonText, ElementsCanBeChangedWhileTheyAreWritten) {
    std::vector<int> numbers{1, 2};
    std::ostringstream out;
    writeSeparated(out, numbers, [&](int& number) { out << ++number; });
    EXPECT_EQ(out.str(), "2, 3");
    EXPECT_EQ(numbers, (std::vector<int>{2, 3}));
}

TEST(JsonText, ATextStandsBetweenDoubleQuotes) {
    EXPECT_EQ(inQuotes("top/k"), "\"top/k\"");
    EXPECT_EQ(inQuotes(""), "\"\"");
}

TEST(JsonText, NothingInATextIsEscaped) {
    EXPECT_EQ(inQuotes(bytes("a\"b\\c\nd\0e\xFF/")), bytes("\"a\"b\\c\nd\0e\xFF/\""));
}

TEST(JsonText, LocationsStandInTheGivenBrackets) {
    EXPECT_EQ(locationsText({{4096, 31}, {4097, 0}}), "[ 4096, 31], [ 4097, 0]");
    EXPECT_EQ(locationsText({{4096, 31}, {4097, 0}}, '{', '}'), "{ 4096, 31}, { 4097, 0}");
}

TEST(JsonText, NoLocationsGiveNoText) {
    EXPECT_EQ(locationsText({}), "");
}

TEST(JsonText, LocationsAreWrittenInDecimalUpToTheLargestNumber) {
    EXPECT_EQ(locationsText({{0xFFFFFFFF, 0x80000000}}), "[ 4294967295, 2147483648]");
}

TEST(JsonText, NumbersOfAnyLengthAreWrittenInDecimal) {
    const std::vector<std::pair<std::uint32_t, std::string>> numbers{
        {0, "0"},
        {9, "9"},
        {10, "10"},
        {99, "99"},
        {100, "100"},
        {909, "909"},
        {1000, "1000"},
        {9999, "9999"},
        {10000, "10000"},
        {12345, "12345"},
        {99999, "99999"},
        {100000, "100000"},
        {1000000, "1000000"},
        {9999999, "9999999"},
        {10000000, "10000000"},
        {98765432, "98765432"},
        {99999999, "99999999"},
        {100000000, "100000000"},
        {200000003, "200000003"},
        {999999999, "999999999"},
        {1000000000, "1000000000"},
        {4294967295, "4294967295"},
    };
    for (const auto& [number, text] : numbers) {
        EXPECT_EQ(blockText([&, value = number](JsonBlock& block) { block.add(value); }), text);
    }
}

// Some 60,000 numbers of all lengths.
TEST(JsonText, NumbersAreWrittenAsTheLibraryWritesThem) {
    for (std::uint64_t number = 0; number <= 0xFFFFFFFF; number += 1 + number / 5000) {
        const auto same = static_cast<std::uint32_t>(number);
        ASSERT_EQ(blockText([=](JsonBlock& block) { block.add(same); }), std::to_string(number));
    }
}

TEST(JsonText, ABlockKeepsItsPiecesInOrder) {
    EXPECT_EQ(blockText([](JsonBlock& block) {
                  block.add("[ ").addQuoted("a\"b").add(", ").add(7).add("]");
              }),
              "[ \"a\"b\", 7]");
    EXPECT_EQ(blockText([](JsonBlock& /*block*/) {}), "");
}

// Around the size at which a block passes on what it holds.
TEST(JsonText, PiecesOfAnyLengthComeWhole) {
    for (const std::size_t length : {4090U, 4095U, 4096U, 4097U, 100'000U}) {
        const std::string text(length, 'x');
        std::string expected = "12";
        expected += text;
        expected += "34";
        expected += text;
        EXPECT_EQ(blockText([&](JsonBlock& block) { block.add(12).add(text).add(34).add(text); }),
                  expected);
    }
}

TEST(JsonText, ThousandsOfLocationsAreWrittenWithoutAGap) {
    std::vector<LogicLocation> locations;
    std::string expected;
    for (std::uint32_t i = 0; i < 3000; ++i) {
        locations.push_back({i, 7});
        expected += (i == 0 ? "[ " : ", [ ") + std::to_string(i) + ", 7]";
    }
    EXPECT_EQ(locationsText(locations), expected);
}

} // namespace
} // namespace consolidator::test
