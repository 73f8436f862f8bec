// Tests the register with the locations of its bits: how locations are set, its JSON form and its
// binary form, cut off at every length.
#include "model/HardwareVariable.h"

#include "tests/support/Bytes.h"
#include "tests/support/LimitedFile.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Truncation.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace consolidator::test {
namespace {

using Locations = LocationList;

HardwareVariable registerOf(std::string_view name, const Locations& locations = {}) {
    HardwareVariable result(name);
    result.locations = locations;
    return result;
}

std::string json(const HardwareVariable& variable) {
    std::ostringstream out;
    variable.writeJson(out);
    return out.str();
}

HardwareVariable readFrom(std::string_view bytes) {
    const FileHandle file = fileWith(bytes);
    return HardwareVariable::read(file.get());
}

TEST(HardwareVariable, IsMadeFromANameAsACompleteRecordWithoutLocations) {
    const HardwareVariable variable("/top/k/n");
    EXPECT_EQ(variable.name, "/top/k/n");
    EXPECT_TRUE(variable.locations.empty());
    EXPECT_TRUE(variable.valid);
}

TEST(HardwareVariable, IsEmptyAndIncompleteByDefault) {
    const HardwareVariable variable;
    EXPECT_EQ(variable.name, "");
    EXPECT_TRUE(variable.locations.empty());
    EXPECT_FALSE(variable.valid);
}

TEST(HardwareVariable, SettingBitThreeFirstGivesZeroPairsBelowIt) {
    HardwareVariable variable("/n");
    variable.setLocation(3, 4096, 31);
    EXPECT_EQ(variable.locations, (Locations{{0, 0}, {0, 0}, {0, 0}, {4096, 31}}));
}

TEST(HardwareVariable, SettingBitZeroFirstGivesOneLocation) {
    HardwareVariable variable("/n");
    variable.setLocation(0, 4096, 31);
    EXPECT_EQ(variable.locations, (Locations{{4096, 31}}));
}

TEST(HardwareVariable, SettingABitTwiceKeepsTheLaterLocation) {
    HardwareVariable variable("/n");
    variable.setLocation(1, 4096, 31);
    variable.setLocation(1, 4097, 5);
    EXPECT_EQ(variable.locations, (Locations{{0, 0}, {4097, 5}}));
}

TEST(HardwareVariable, ASetBitCanBeSetBackToZeros) {
    HardwareVariable variable("/n");
    variable.setLocation(0, 4096, 31);
    variable.setLocation(0, 0, 0);
    EXPECT_EQ(variable.locations, (Locations{{0, 0}}));
}

TEST(HardwareVariable, SettingALowerBitLeavesTheOthersAlone) {
    HardwareVariable variable("/n");
    variable.setLocation(2, 10, 11);
    variable.setLocation(0, 20, 21);
    EXPECT_EQ(variable.locations, (Locations{{20, 21}, {0, 0}, {10, 11}}));
}

TEST(HardwareVariable, TheBitBehindTheLastOneIsAppended) {
    HardwareVariable variable = registerOf("/n", {{1, 2}, {3, 4}});
    variable.setLocation(2, 5, 6);
    EXPECT_EQ(variable.locations, (Locations{{1, 2}, {3, 4}, {5, 6}}));
}

TEST(HardwareVariable, LocationsTakeTheLargestNumbers) {
    HardwareVariable variable("/n");
    variable.setLocation(0, 0xFFFFFFFF, 0xFFFFFFFE);
    EXPECT_EQ(variable.locations, (Locations{{0xFFFFFFFF, 0xFFFFFFFE}}));
}

TEST(HardwareVariable, JsonWithoutLocationsHasAnEmptyListAndEndsInABlank) {
    EXPECT_EQ(json(registerOf("/top/k/n")),
              R"({ "RTLName" : "/top/k/n", "Logic Locations" : [ ] } )");
}

TEST(HardwareVariable, JsonListsTheLocationsInBitOrder) {
    EXPECT_EQ(json(registerOf("/n", {{0, 0}})),
              R"({ "RTLName" : "/n", "Logic Locations" : [ [ 0, 0]] } )");
    EXPECT_EQ(
        json(registerOf("/n", {{4096, 31}, {0, 0}, {4294967295, 7}})),
        R"({ "RTLName" : "/n", "Logic Locations" : [ [ 4096, 31], [ 0, 0], [ 4294967295, 7]] } )");
}

TEST(HardwareVariable, JsonEscapesNothing) {
    EXPECT_EQ(json(registerOf(bytes("/a\"b\\\0\xFF"))),
              bytes("{ \"RTLName\" : \"/a\"b\\\0\xFF\", \"Logic Locations\" : [ ] } "));
}

TEST(HardwareVariable, BinaryFormWithoutLocationsIsTheNameAndACountOfZero) {
    EXPECT_EQ(binaryForm(registerOf("/k/n")), bytes("\x04\0\0\0/k/n\0\0\0\0"));
}

TEST(HardwareVariable, BinaryFormHasAddressAndOffsetOfEachLocation) {
    EXPECT_EQ(binaryForm(registerOf("/n", {{0x1000, 31}, {0, 0xFFFFFFFF}})),
              text("/n") + u32(2) + u32(0x1000) + u32(31) + u32(0) + u32(0xFFFFFFFF));
}

TEST(HardwareVariable, WriteReturnsTheNumberOfBytes) {
    const FileHandle file = fileWith({});
    EXPECT_EQ(registerOf("/n", {{1, 2}, {3, 4}}).write(file.get()), 4U + 2U + 4U + 16U);
    EXPECT_EQ(contentOf(file.get()).size(), 26U);
}

TEST(HardwareVariable, WriteWithoutAStreamReturnsNothing) {
    EXPECT_EQ(registerOf("/n").write(nullptr), 0U);
}

TEST(HardwareVariable, ShortWritesShowInTheCount) {
    expectShortWritesToShow(registerOf("/n", {{1, 2}, {3, 4}}),
                            {u32(2), "/n", u32(2), u32(1), u32(2), u32(3), u32(4)});
}

TEST(HardwareVariable, ReadingTakesBackWhatWasWritten) {
    for (const Locations& locations : {Locations{}, Locations{{0, 0}, {4294967295, 31}}}) {
        const HardwareVariable variable = registerOf("/top/k/n", locations);
        const std::string written = binaryForm(variable);
        const HardwareVariable read = readFrom(written);
        EXPECT_EQ(read, variable);
        EXPECT_EQ(binaryForm(read), written);
    }
}

TEST(HardwareVariable, ReadingStopsBehindTheRecord) {
    const FileHandle file = fileWith(hardwareVariable("/a", {location(1, 2)}) + //
                                     hardwareVariable("/b", {}));
    EXPECT_EQ(HardwareVariable::read(file.get()), registerOf("/a", {{1, 2}}));
    EXPECT_EQ(HardwareVariable::read(file.get()), registerOf("/b"));
}

TEST(HardwareVariable, ACountOfZeroIsValidAndEmpty) {
    const HardwareVariable read = readFrom(text("/n") + u32(0));
    EXPECT_TRUE(read.valid);
    EXPECT_TRUE(read.locations.empty());
}

TEST(HardwareVariable, TheNameIsWrittenWholeAndReadUpToItsFirstZeroByte) {
    const std::string written = binaryForm(registerOf(bytes("/a\"\\\xFF\0b")));
    EXPECT_EQ(written, bytes("\x07\0\0\0/a\"\\\xFF\0b\0\0\0\0"));
    EXPECT_EQ(readFrom(written), registerOf("/a\"\\\xFF"));
}

TEST(HardwareVariable, ReadingARecordCutOffAnywhereKeepsWhatCameWhole) {
    const auto setFirst = [](HardwareVariable& read) { read.locations.set(0, {1, 2}); };
    const Stages<HardwareVariable> stages{
        {text("/k/n"), [](HardwareVariable& read) { read.name = "/k/n"; }},
        {u32(2), [](HardwareVariable&) {}},
        {location(1, 2), setFirst},
        {location(3, 4),
         [](HardwareVariable& read) {
             read.locations.set(1, {3, 4});
             read.valid = true;
         }},
    };
    expectEveryPrefixRead(stages, HardwareVariable::read);
}

TEST(HardwareVariable, ReadingWithoutAStreamGivesTheDefault) {
    EXPECT_EQ(HardwareVariable::read(nullptr), HardwareVariable());
}

TEST(HardwareVariable, ANameThatClaimsFourGigabytesInASmallFileEndsTheRead) {
    for (const std::uint32_t claimed : {0xFFFFFFFFU, 0xFFFFFFFEU}) {
        EXPECT_EQ(readFrom(u32(claimed) + std::string(36, 'x')), HardwareVariable());
    }
}

TEST(HardwareVariable, TheLargestCountOfLocationsInASmallFileEndsTheRead) {
    for (const std::uint32_t claimed : {0xFFFFFFFFU, 0xFFFFFFFEU}) {
        const HardwareVariable read = readFrom(text("/n") + u32(claimed) + location(1, 2));
        EXPECT_EQ(read.name, "/n");
        EXPECT_EQ(read.locations, (Locations{{1, 2}}));
        EXPECT_FALSE(read.valid);
    }
}

} // namespace
} // namespace consolidator::test
