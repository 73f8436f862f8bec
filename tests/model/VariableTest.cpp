// Tests a kernel's argument or local variable: its width, its JSON form and its binary form, cut
// off at every length.
#include "model/Variable.h"

#include "tests/support/Bytes.h"
#include "tests/support/LimitedFile.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Truncation.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {
namespace {

using Locations = std::vector<std::vector<LogicLocation>>;

Variable sizeArgument(const Locations& locations = {}) {
    Variable size("size", "size_r", "int");
    size.locations = locations;
    return size;
}

std::uint32_t widthOf(std::string_view typeText) {
    return Variable("v", "v", typeText).bitWidth();
}

std::string json(const Variable& variable) {
    std::ostringstream out;
    variable.writeJson(out);
    return out.str();
}

Variable readFrom(std::string_view bytes) {
    const FileHandle file = fileWith(bytes);
    return Variable::read(file.get());
}

TEST(Variable, IsMadeFromItsTextsAsACompleteRecordWithoutLocations) {
    const Variable variable("size", "size_r", "int");
    EXPECT_EQ(variable.sourceName, "size");
    EXPECT_EQ(variable.hardwareName, "size_r");
    EXPECT_EQ(variable.typeText, "int");
    EXPECT_TRUE(variable.locations.empty());
    EXPECT_TRUE(variable.valid);
}

TEST(Variable, IsEmptyAndIncompleteByDefault) {
    const Variable variable;
    EXPECT_EQ(variable.sourceName, "");
    EXPECT_EQ(variable.hardwareName, "");
    EXPECT_EQ(variable.typeText, "");
    EXPECT_TRUE(variable.locations.empty());
    EXPECT_FALSE(variable.valid);
}

TEST(Variable, APointerIsSixtyFourBitsWide) {
    for (const char* type :
         {"int*", "float *", "*", "char*", "unsigned char**", "const char * p"}) {
        EXPECT_EQ(widthOf(type), 64U) << type;
    }
}

TEST(Variable, ACharacterIsEightBitsWide) {
    for (const char* type : {"char", "unsigned char", "uchar4", "const char&", "charter"}) {
        EXPECT_EQ(widthOf(type), 8U) << type;
    }
}

TEST(Variable, EveryOtherTypeIsThirtyTwoBitsWide) {
    for (const char* type : {"int", "", "double", "long long", "CHAR", "change", "c har"}) {
        EXPECT_EQ(widthOf(type), 32U) << type;
    }
}

TEST(Variable, JsonWithoutLocationsEndsBehindTheWidth) {
    EXPECT_EQ(json(sizeArgument()), R"([ "size", "size_r", "int", 32])");
    EXPECT_EQ(json(Variable("in", "in_r", "char*")), R"([ "in", "in_r", "char*", 64])");
    EXPECT_EQ(json(Variable("", "", "")), R"([ "", "", "", 32])");
}

TEST(Variable, JsonListsTheBitsOfAnInstance) {
    EXPECT_EQ(
        json(sizeArgument({{{4096, 31}, {4294967295, 0}}})),
        R"([ "size", "size_r", "int", 32, [ { "Instance" : 0, "Bits" : [{ 4096, 31}, { 4294967295, 0}]}]])");
}

TEST(Variable, JsonCountsInstancesFromZeroEmptyOnesIncluded) {
    EXPECT_EQ(
        json(sizeArgument({{}, {{7, 8}}})),
        R"([ "size", "size_r", "int", 32, [ { "Instance" : 0, "Bits" : []}, { "Instance" : 1, "Bits" : [{ 7, 8}]}]])");
    EXPECT_EQ(
        json(sizeArgument({{{7, 8}}, {}})),
        R"([ "size", "size_r", "int", 32, [ { "Instance" : 0, "Bits" : [{ 7, 8}]}, { "Instance" : 1, "Bits" : []}]])");
}

TEST(Variable, JsonEscapesNothing) {
    EXPECT_EQ(json(Variable("a\"b", "c\\d", bytes("e\0\xFF"))),
              bytes("[ \"a\"b\", \"c\\d\", \"e\0\xFF\", 32]"));
}

TEST(Variable, BinaryFormHasTheThreeTextsThenTheNumberOfInstances) {
    EXPECT_EQ(binaryForm(Variable("s", "hw", "int")),
              bytes("\x01\0\0\0s\x02\0\0\0hw\x03\0\0\0int\0\0\0\0"));
}

TEST(Variable, BinaryFormHasTheLocationsOfEachInstance) {
    const Variable variable = sizeArgument({{{1, 2}, {3, 4}}, {}});
    EXPECT_EQ(binaryForm(variable), text("size") + text("size_r") + text("int") + u32(2) + //
                                        u32(2) + u32(1) + u32(2) + u32(3) + u32(4) +       //
                                        u32(0));
}

TEST(Variable, WriteReturnsTheNumberOfBytes) {
    const FileHandle file = fileWith({});
    // Three texts of 4, 6 and 3 bytes, two counts of locations, one location, the instance count.
    EXPECT_EQ(sizeArgument({{{1, 2}}, {}}).write(file.get()), (12U + 13U) + 4U + (4U + 8U) + 4U);
    EXPECT_EQ(contentOf(file.get()).size(), 45U);
}

TEST(Variable, WriteWithoutAStreamReturnsNothing) {
    EXPECT_EQ(sizeArgument().write(nullptr), 0U);
}

TEST(Variable, ShortWritesShowInTheCount) {
    expectShortWritesToShow(
        sizeArgument({{{1, 2}}, {}}),
        {u32(4), "size", u32(6), "size_r", u32(3), "int", u32(2), u32(1), u32(1), u32(2), u32(0)});
}

TEST(Variable, ReadingTakesBackWhatWasWritten) {
    const Variable variable = sizeArgument({{{1, 2}, {4294967295, 4}}, {}, {{5, 6}}});
    const std::string written = binaryForm(variable);
    const Variable read = readFrom(written);
    EXPECT_EQ(read, variable);
    EXPECT_EQ(binaryForm(read), written);
}

TEST(Variable, ReadingStopsBehindTheRecord) {
    const FileHandle file = fileWith(test::variable("a", "b", "c", {u32(1) + location(1, 2)}) +
                                     test::variable("d", "e", "f"));
    EXPECT_EQ(Variable::read(file.get()).sourceName, "a");
    EXPECT_EQ(Variable::read(file.get()), Variable("d", "e", "f"));
}

TEST(Variable, EmptyTextsAreReadAsSuch) {
    EXPECT_EQ(readFrom(u32(0) + u32(0) + u32(0) + u32(0)), Variable("", "", ""));
}

TEST(Variable, TextsAreWrittenWholeAndReadUpToTheirFirstZeroByte) {
    const Variable variable(bytes("a\0b"), bytes("\0c"), bytes("int\0*"));
    const std::string written = binaryForm(variable);
    EXPECT_EQ(written, bytes("\x03\0\0\0a\0b\x02\0\0\0\0c\x05\0\0\0int\0*\0\0\0\0"));
    EXPECT_EQ(readFrom(written), Variable("a", "", "int"));
}

TEST(Variable, ReadingARecordCutOffAnywhereKeepsWhatCameWhole) {
    const auto addFirst = [](Variable& read) { read.locations[0].push_back({1, 2}); };
    const auto addSecond = [](Variable& read) { read.locations[0].push_back({3, 4}); };
    const Stages<Variable> stages{
        {text("size"), [](Variable& read) { read.sourceName = "size"; }},
        {text("size_r"), [](Variable& read) { read.hardwareName = "size_r"; }},
        {text("int"), [](Variable& read) { read.typeText = "int"; }},
        {u32(2), [](Variable&) {}},
        {u32(2), [](Variable& read) { read.locations.addInstance(); }},
        {location(1, 2), addFirst},
        {location(3, 4), addSecond},
        {u32(1), [](Variable& read) { read.locations.addInstance(); }},
        {location(5, 6),
         [](Variable& read) {
             read.locations[1].push_back({5, 6});
             read.valid = true;
         }},
    };
    expectEveryPrefixRead(stages, Variable::read);
}

TEST(Variable, ReadingWithoutAStreamGivesTheDefault) {
    EXPECT_EQ(Variable::read(nullptr), Variable());
}

TEST(Variable, ATextThatClaimsFourGigabytesInASmallFileEndsTheRead) {
    for (const std::uint32_t claimed : {0xFFFFFFFFU, 0xFFFFFFFEU}) {
        const Variable read = readFrom(text("size") + u32(claimed) + std::string(28, 'x'));
        EXPECT_EQ(read.sourceName, "size");
        EXPECT_EQ(read.hardwareName, "");
        EXPECT_FALSE(read.valid);
    }
}

TEST(Variable, TheLargestCountOfInstancesInASmallFileEndsTheRead) {
    const Variable read =
        readFrom(text("size") + text("size_r") + text("int") + u32(0xFFFFFFFF) + //
                 u32(1) + location(1, 2) + u32(0));
    EXPECT_EQ(read.locations, (Locations{{{1, 2}}, {}}));
    EXPECT_EQ(read.typeText, "int");
    EXPECT_FALSE(read.valid);
}

TEST(Variable, TheLargestCountOfLocationsInASmallFileEndsTheRead) {
    for (const std::uint32_t claimed : {0xFFFFFFFFU, 0xFFFFFFFEU}) {
        const Variable read = readFrom(text("size") + text("size_r") + text("int") + u32(1) + //
                                       u32(claimed) + location(1, 2) + location(3, 4));
        EXPECT_EQ(read.locations, (Locations{{{1, 2}, {3, 4}}}));
        EXPECT_FALSE(read.valid);
    }
}

} // namespace
} // namespace consolidator::test
