// Tests the shared pieces of the JSON forms, byte for byte.
#include "model/JsonText.h"

#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
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

std::string locationsText(const std::vector<LogicLocation>& locations, char open = '[',
                          char close = ']') {
    std::ostringstream out;
    JsonLocations(out, open, close).add(locations);
    return out.str();
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
